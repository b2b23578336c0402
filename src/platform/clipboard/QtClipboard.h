// SPDX-License-Identifier: MIT
// The clipboard as Qt has it: whole on X11. On Wayland Qt reaches it only while a window of this process has the keyboard.
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

/// Hands over what the user has copied from a window of this program, which is about to end, to the process that keeps what scripts copy.
/// Does nothing when the clipboard is somebody else's, and gives up after some seconds.
void leaveClipboardBehind();

} // namespace quoddle
