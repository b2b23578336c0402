// SPDX-License-Identifier: MIT
// The commands that a user answers, passed to the presenter, and display notification, which writes to standard error without one.
#include "platform/additions/Commands.h"
#include "platform/additions/DialogProcess.h"
#include "platform/additions/Interaction.h"
#include "platform/base/Text.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace quoddle {

namespace {

std::mutex sMutex;
std::shared_ptr<const InteractionPresenter> sPresenter;

OSErr presentInProcessOfItsOwn(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    static additions::DialogProcess sProcess;
    return sProcess.present(event, reply, context);
}

OSErr present(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    std::unique_lock lock(sMutex);
    const auto presenter = sPresenter;
    lock.unlock();
    return presenter ? (*presenter)(event, reply, context) : presentInProcessOfItsOwn(event, reply, context);
}

} // namespace

void setInteractionPresenter(InteractionPresenter presenter) {
    auto installed = presenter ? std::make_shared<const InteractionPresenter>(std::move(presenter)) : nullptr;
    std::lock_guard lock(sMutex);
    sPresenter.swap(installed);
}

bool hasDisplay() {
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (const char* value = std::getenv(variable); value && *value)
            return true;
    return false;
}

namespace additions {

namespace {

/// The notification in one line for a terminal or a log: "Title: Subtitle: text".
std::string notificationLine(const AEDesc& event) {
    std::u16string line;
    for (const AEKeyword key : {"appr"_4cc, "subt"_4cc, "----"_4cc})
        if (const auto part = textParameter(event, key); part && !part->empty())
            line += (line.empty() ? u"" : u": ") + *part;
    return utf8FromUTF16(line);
}

} // namespace

OSErr interact(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    return present(event, reply, context);
}

OSErr displayNotification(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    if (notificationLine(event).empty())
        return fail(reply, paramErr, u"A notification needs a text or a title.");
    const OSErr status = present(event, reply, context);
    const AEDesc* number = reply.find("errn"_4cc);
    const OSStatus error = status != noErr ? status : number ? number->asInt32().value_or(errAEEventFailed) : noErr;
    if (error != errAENoUserInteraction)
        return status;
    // A notification wants no answer, so the script goes on without a user. The text is written out so that it is not lost.
    (void)reply.remove("errn"_4cc);
    (void)reply.remove("errs"_4cc);
    std::fprintf(stderr, "%s\n", notificationLine(event).c_str());
    return noErr;
}

OSErr chooseRemoteApplication(const AEDesc&, AEDesc& reply, const AEHandlerContext&) {
    return fail(reply, errAEEventFailed, u"Applications on other computers are not available on this system.");
}

} // namespace additions

} // namespace quoddle
