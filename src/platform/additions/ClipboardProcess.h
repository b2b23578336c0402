// SPDX-License-Identifier: MIT
// The desktop's clipboard, reached through a process of its own: the program quoddle-clipboard.
//
// Decision: what is copied on a desktop stays with the program that has copied it, and scripts are short. So the process that sets the
// clipboard for a script stays behind and holds it until another program takes over.
#pragma once

#include "platform/additions/Clipboard.h"
#include "platform/additions/HelperProcess.h"

namespace quoddle::additions {

class ClipboardProcess : public Clipboard {
public:
    explicit ClipboardProcess(std::string program = "quoddle-clipboard");

    /// Without a display, or with one that cannot be reached, the clipboard is private to this object.
    Result<std::vector<AEDesc>, OSStatus> contents(DescType wanted, const AEHandlerContext& context) override;
    OSStatus setContents(std::vector<AEDesc> forms, const AEHandlerContext& context) override;

private:
    /// -1713 where there is no desktop.
    OSStatus ask(const AEDesc& event, AEDesc& answered, const AEHandlerContext& context);

    HelperProcess mProcess;
    std::mutex mMutex;
    std::vector<AEDesc> mForms; // without a desktop
};

} // namespace quoddle::additions
