// SPDX-License-Identifier: MIT
#include "platform/additions/ClipboardProcess.h"

#include "platform/additions/Interaction.h"

#include <cstdlib>
#include <string_view>

namespace quoddle::additions {

namespace {

/// Whether there is a desktop clipboard. Qt's invisible platforms have one that no other program sees.
bool hasDesktop() {
    const char* chosen = std::getenv("QT_QPA_PLATFORM");
    const std::string_view platform = chosen ? chosen : "";
    return hasDisplay() && (platform.empty() || platform.starts_with("xcb") || platform.starts_with("wayland"));
}

} // namespace

ClipboardProcess::ClipboardProcess(std::string program) : mProcess(std::move(program), HelperProcess::Ending::stays) {}

OSStatus ClipboardProcess::ask(const AEDesc& event, AEDesc& answered, const AEHandlerContext& context) {
    if (!hasDesktop())
        return errAENoUserInteraction;
    switch (mProcess.ask(event, answered, context)) {
    case HelperProcess::Outcome::noDisplay:
        return errAENoUserInteraction;
    case HelperProcess::Outcome::cancelled:
        return userCanceledErr;
    case HelperProcess::Outcome::notFound:
    case HelperProcess::Outcome::ended:
        return connectionInvalid;
    case HelperProcess::Outcome::answered:
        break;
    }
    const AEDesc* number = answered.find("errn"_4cc);
    return number ? number->asInt32().value_or(errAEEventFailed) : noErr;
}

Result<std::vector<AEDesc>, OSStatus> ClipboardProcess::contents(DescType wanted, const AEHandlerContext& context) {
    AEDesc event = AEDesc::appleEvent("Jons"_4cc, "gClp"_4cc), answered;
    if (wanted)
        (void)event.put("rtyp"_4cc, AEDesc::ofType(wanted));
    const OSStatus status = ask(event, answered, context);
    if (status == errAENoUserInteraction) {
        std::lock_guard lock(mMutex);
        return mForms;
    }
    if (status != noErr)
        return Failure{status};
    const AEDesc* forms = answered.find("----"_4cc);
    return forms ? std::vector<AEDesc>(forms->items().begin(), forms->items().end()) : std::vector<AEDesc>();
}

OSStatus ClipboardProcess::setContents(std::vector<AEDesc> forms, const AEHandlerContext& context) {
    AEDesc event = AEDesc::appleEvent("Jons"_4cc, "pClp"_4cc), answered;
    (void)event.put("----"_4cc, AEDesc::list(forms));
    const OSStatus status = ask(event, answered, context);
    if (status != errAENoUserInteraction)
        return status;
    std::lock_guard lock(mMutex);
    mForms = std::move(forms);
    return noErr;
}

} // namespace quoddle::additions
