// SPDX-License-Identifier: MIT
// The desktop's clipboard, reached through a process of its own: the program quoddle-clipboard.
//
// Decision: on a desktop the program that has copied keeps the contents, but scripts end soon. So the process that sets the clipboard for a
// script goes on holding it until another program replaces the contents.
#pragma once

#include "platform/additions/Clipboard.h"
#include "platform/additions/HelperProcess.h"

namespace quoddle::additions {

class ClipboardProcess : public Clipboard {
public:
    explicit ClipboardProcess(std::string program = "quoddle-clipboard");

    /// Without a display, or when it cannot be reached, the clipboard is private to this object.
    Result<std::vector<AEDesc>, OSStatus> contents(DescType wanted, const AEHandlerContext& context) override;
    OSStatus setContents(std::vector<AEDesc> forms, const AEHandlerContext& context) override;

private:
    /// -1713 when there is no desktop.
    OSStatus ask(const AEDesc& event, AEDesc& answered, const AEHandlerContext& context);

    HelperProcess mProcess;
    std::mutex mMutex;
    std::vector<AEDesc> mForms; // the contents without a desktop
};

} // namespace quoddle::additions
