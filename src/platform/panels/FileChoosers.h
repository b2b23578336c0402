// SPDX-License-Identifier: MIT
// The panels of "choose file", "choose folder" and "choose file name", made ready from the commands' events.
// One decision: the caller decides how a panel is shown and in which form the answer goes back.
// Main thread only, but for reading parameters.
#pragma once

#include "platform/appkit/NSOpenPanel.h"
#include "platform/panels/CommandDialog.h"
#include "platform/panels/CommandParameters.h"

namespace quoddle {

/// The parameters of "choose file" and "choose folder", the commands that choose existing files; "choose folder" has no types.
struct ChooseFileParameters {
    std::optional<QString> message;
    std::optional<QString> prompt;
    QStringList types;       ///< empty: all types
    QString defaultLocation; ///< empty: the panel's own choice
    bool invisibles = false;
    bool multipleSelectionsAllowed = false;
    bool showingPackageContents = false;

    static std::optional<CommandError> read(const AEDesc& event, Manner manner, ChooseFileParameters& parameters);
    static std::optional<CommandError> readForFolders(const AEDesc& event, Manner manner, ChooseFileParameters& parameters);
};

struct ChooseFileNameParameters {
    std::optional<QString> message;
    std::optional<QString> defaultName;
    QString defaultLocation; ///< empty: the panel's own choice

    static std::optional<CommandError> read(const AEDesc& event, Manner manner, ChooseFileNameParameters& parameters);
};

std::unique_ptr<NSOpenPanel> makeChooseFilePanel(const ChooseFileParameters& parameters);
std::unique_ptr<NSOpenPanel> makeChooseFolderPanel(const ChooseFileParameters& parameters);
std::unique_ptr<NSSavePanel> makeChooseFileNamePanel(const ChooseFileNameParameters& parameters);

} // namespace quoddle
