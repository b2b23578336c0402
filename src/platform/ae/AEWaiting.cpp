// SPDX-License-Identifier: MIT
#include "platform/ae/AEWaiting.h"

#include "platform/ae/AEMainThread.h"
#include "platform/ae/NSAppleEventManager.h"

#include <algorithm>
#include <atomic>

namespace quoddle {

using Clock = std::chrono::steady_clock;

std::chrono::steady_clock::time_point AEDeadlineAfter(std::int32_t timeoutInTicks) {
    constexpr std::int32_t kDefaultTicks = 120 * 60;
    if (timeoutInTicks == kNoTimeOut)
        return Clock::time_point::max();
    std::int64_t ticks = timeoutInTicks == kAEDefaultTimeout ? kDefaultTicks : std::max(timeoutInTicks, 0);
    return Clock::now() + std::chrono::microseconds(ticks * 1'000'000 / 60);
}

AEDesc AENumbered(const AEDesc& event) {
    static std::atomic<std::uint16_t> sLast = 0;
    if (event.attribute("rtid"_4cc)->asInt32() != kAutoGenerateReturnID)
        return event;
    AEDesc result = event;
    result.setAttribute("rtid"_4cc, AEDesc::ofInt32(++sLast & 0x7FFF));
    return result;
}

AEDesc AEEmptyReplyTo(const AEDesc& event) {
    return AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc, {}, static_cast<std::int16_t>(event.attribute("rtid"_4cc)->asInt32().value_or(0)),
                              event.attribute("tran"_4cc)->asInt32().value_or(0));
}

void AEDispatchQueuedReply(const AEDesc& reply) {
    AEPostToMainThread([reply] {
        AEDesc none;
        NSAppleEventManager::sharedAppleEventManager().dispatchRawAppleEvent(reply, none, nullptr);
    });
}

} // namespace quoddle
