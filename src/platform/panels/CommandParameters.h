// SPDX-License-Identifier: MIT
// The parameters of the commands that show a prompt and buttons, read from their events and checked.
// One decision: reading stops at the first fault, in the order in which the commands have always looked, so that scripts get the errors
// they know. Texts and counts are not bounded here but
// where they are shown.
// Any thread.
#pragma once

#include "platform/panels/CommandError.h"

#include <optional>

#include <QString>
#include <QStringList>

namespace quoddle {

/// Where the text of a parameter that is absent or no text comes to nothing.
QString textParameter(const AEDesc& event, AEKeyword key);
std::optional<QString> optionalTextParameter(const AEDesc& event, AEKeyword key);
/// "appr", as a title bar can show it.
QString titleParameter(const AEDesc& event);
/// False when it is absent or no boolean.
bool booleanParameter(const AEDesc& event, AEKeyword key);
/// The parameter as a list; empty when it is absent or cannot be made one.
AEDesc listParameter(const AEDesc& event, AEKeyword key);
/// Every item as text, empty for one that is none.
QStringList textsOf(const AEDesc& list);

/// "givu", "btns", "dflt", "cbtn".
struct ButtonParameters {
    double givingUpAfter = -1;        ///< seconds; 0 and less: never
    QStringList buttons;              ///< three at most
    std::optional<int> defaultButton; ///< 0-based
    std::optional<int> cancelButton;  ///< 0-based

    /// The buttons of an event that names none count as named when they are given here.
    static std::optional<CommandError> read(const AEDesc& event, ButtonParameters& parameters, const QStringList& unlessNamed = {});
};

/// "disp".
struct IconParameter {
    enum class Kind { none, stop, note, caution, file, resource };
    Kind kind = Kind::none;
    QString name; ///< the absolute path of a file (empty: it cannot be reached by any), or the name of a resource

    /// Does not look whether there is such a file or resource.
    static std::optional<CommandError> read(const AEDesc& event, IconParameter& parameter);
};

/// -192.
CommandError resourceNotFound();

} // namespace quoddle
