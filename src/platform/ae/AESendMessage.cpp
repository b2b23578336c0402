// SPDX-License-Identifier: MIT
#include "platform/ae/AESendMessage.h"

#include "platform/ae/AEDelivery.h"
#include "platform/ae/AEWaiting.h"

#include <algorithm>
#include <mutex>
#include <unistd.h>

namespace quoddle {

namespace {

using Clock = std::chrono::steady_clock;

std::mutex sRemoteSenderMutex;
std::shared_ptr<const AERemoteSender> sRemoteSender;

constexpr DescType kAddressTypes[] = {"null"_4cc, "psn "_4cc, "kpid"_4cc, "bund"_4cc, "sign"_4cc, "aprl"_4cc, "port"_4cc, "mach"_4cc};

OSStatus sendToOtherProcess(const AEDesc& event, AEDesc* reply, AESendMode sendMode, std::int32_t timeoutInTicks,
                            const AESendOptions& options) {
    std::unique_lock lock(sRemoteSenderMutex);
    auto sender = sRemoteSender;
    lock.unlock();
    return sender ? (*sender)(event, reply, sendMode, timeoutInTicks, options) : procNotFound;
}

OSStatus statusOf(AEDelivery::Outcome outcome) {
    return outcome == AEDelivery::Outcome::TimedOut ? errAETimeout : userCanceledErr;
}

OSStatus sendHere(const AEDesc& event, AEDesc* reply, AESendMode replyMode, std::int32_t timeoutInTicks, const AESendOptions& options) {
    bool answered = replyMode == kAEWaitReply || replyMode == kAEQueueReply;
    AEDesc sent = answered ? AENumbered(event) : event;
    auto delivery = std::make_shared<AEDelivery>(sent, answered ? AEEmptyReplyTo(sent) : AEDesc(),
                                                 AEHandlerContext{options.cancelled, options.handlerRefCon},
                                                 replyMode == kAEQueueReply ? AEDispatchQueuedReply : AEDelivery::OnAnswer());
    bool taken = AEDeliverer::deliver(NSAppleEventManager::sharedAppleEventManager(), delivery);
    if (replyMode == kAEWaitReply) {
        auto outcome = delivery->wait(options.cancelled, AEDeadlineAfter(timeoutInTicks));
        if (outcome != AEDelivery::Outcome::Answered)
            return statusOf(outcome);
        if (reply)
            *reply = delivery->answeredReply();
    }
    return taken ? noErr : errAEEventNotHandled;
}

} // namespace

OSStatus AESendMessage(const AEDesc& event, AEDesc* reply, AESendMode sendMode, std::int32_t timeoutInTicks, const AESendOptions& options) {
    if (!event.isAppleEvent())
        return errAENotAppleEvent;
    AEDesc address = event.attribute("addr"_4cc).value_or(AEDesc());
    if (std::find(std::begin(kAddressTypes), std::end(kAddressTypes), address.type()) == std::end(kAddressTypes))
        return errAEUnknownAddressType;
    if (AEIsCurrentProcess(address))
        return sendHere(event, reply, sendMode & kAEReplyModes, timeoutInTicks, options);
    return sendToOtherProcess(event, reply, sendMode, timeoutInTicks, options);
}

OSErr AEDispatchAppleEvent(const AEDesc& event, AEDesc& reply, const AESendOptions& options) {
    if (!event.isAppleEvent())
        return static_cast<OSErr>(errAENotAppleEvent);
    auto delivery = std::make_shared<AEDelivery>(event, reply, AEHandlerContext{options.cancelled, options.handlerRefCon});
    AEDeliverer::deliver(NSAppleEventManager::sharedAppleEventManager(), delivery);
    auto outcome = delivery->wait(options.cancelled, Clock::time_point::max());
    if (outcome != AEDelivery::Outcome::Answered)
        return static_cast<OSErr>(statusOf(outcome));
    reply = delivery->answeredReply();
    return delivery->status();
}

bool AEIsCurrentProcess(const AEDesc& address) {
    return address.isNull() || address == AEDesc::ofCurrentProcess() || address == AEDesc::ofProcess(::getpid());
}

void AESetRemoteSender(AERemoteSender sender) {
    auto installed = sender ? std::make_shared<const AERemoteSender>(std::move(sender)) : nullptr;
    std::lock_guard lock(sRemoteSenderMutex);
    sRemoteSender.swap(installed);
}

} // namespace quoddle
