// SPDX-License-Identifier: MIT
// The parameters of the commands that show a prompt and buttons, read from their events and checked.
// One decision: reading stops at the first fault, and the order of the checks never changes, because scripts know the errors that it leads
// to. Texts and counts are bounded where they are shown, not here.
// Any thread.
#pragma once

#include "platform/panels/CommandError.h"

#include <optional>

#include <QString>
#include <QStringList>

namespace quoddle {

/// The parameter as text; empty when it is absent or has no text.
QString textParameter(const AEDesc& event, AEKeyword key);
std::optional<QString> optionalTextParameter(const AEDesc& event, AEKeyword key);
/// The parameter "appr" as a title bar can show it.
QString titleParameter(const AEDesc& event);
/// The parameter as a boolean; false when it is absent or no boolean.
bool booleanParameter(const AEDesc& event, AEKeyword key);
/// The parameter as a list; empty when it is absent or cannot be coerced to one.
AEDesc listParameter(const AEDesc& event, AEKeyword key);
/// Each item as text; empty for an item that has none.
QStringList textsOf(const AEDesc& list);

/// The parameters "givu", "btns", "dflt" and "cbtn".
struct ButtonParameters {
    double givingUpAfter = -1;        ///< seconds; 0 and less: never
    QStringList buttons;              ///< three at most
    bool areStandard = false;         ///< the event gives none: people see the titles in their language, scripts see them as they are
    std::optional<int> defaultButton; ///< 0-based
    std::optional<int> cancelButton;  ///< 0-based

    /// `unlessNamed` are the buttons of an event that gives none; the default and the cancel button may then be named among them.
    static std::optional<CommandError> read(const AEDesc& event, ButtonParameters& parameters, const QStringList& unlessNamed = {});
};

/// The parameter "disp".
struct IconParameter {
    enum class Kind { none, stop, note, caution, file, resource };
    Kind kind = Kind::none;
    QString name; ///< the absolute path of a file (empty: the file has no path), or the name of a resource

    /// Reads the parameter without checking that there is such a file or resource.
    static std::optional<CommandError> read(const AEDesc& event, IconParameter& parameter);
};

/// The error -192.
CommandError resourceNotFound();

} // namespace quoddle
