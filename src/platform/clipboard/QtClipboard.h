// SPDX-License-Identifier: MIT
// The clipboard by way of Qt. Complete on X11; on Wayland Qt reaches it only while a window of this process has the keyboard focus.
#pragma once

#include "platform/clipboard/DesktopClipboard.h"

namespace quoddle {

class QtClipboard : public DesktopClipboard {
public:
    explicit QtClipboard(QObject* parent = nullptr);

    std::vector<AEDesc> contents(DescType wanted) override;
    bool setContents(const std::vector<AEDesc>& forms) override;
    bool isOwner() const override;
};

/// Hands over what the user has copied from a window of this program to the process that keeps what scripts copy. Called before the program
/// ends. Does nothing when another program owns the clipboard, and gives up after some seconds.
void leaveClipboardBehind();

} // namespace quoddle
