// SPDX-License-Identifier: MIT
#include "platform/ae/NSAppleEventManager.h"

#include "platform/ae/AEDelivery.h"
#include "platform/ae/AEMainThread.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <new>
#include <unordered_map>

namespace quoddle {

namespace {

constexpr FourCharCode kWildCard = "****"_4cc;

std::uint64_t keyOf(AEEventClass eventClass, AEEventID eventID) {
    return static_cast<std::uint64_t>(eventClass) << 32 | eventID;
}

// Handlers by class and ID. Callers copy a handler before they run it, because a handler may replace itself.
template<class Handler>
class HandlerTable {
public:
    void set(Handler handler, AEEventClass eventClass, AEEventID eventID) { mHandlers[keyOf(eventClass, eventID)] = std::move(handler); }
    void remove(AEEventClass eventClass, AEEventID eventID) { mHandlers.erase(keyOf(eventClass, eventID)); }

    // The most specific handler; null when there is none.
    const Handler* first(AEEventClass eventClass, AEEventID eventID) const {
        for (std::uint64_t key : keysOf(eventClass, eventID))
            if (auto handler = mHandlers.find(key); handler != mHandlers.end())
                return &handler->second;
        return nullptr;
    }
    // All handlers that match, the most specific first.
    std::vector<Handler> all(AEEventClass eventClass, AEEventID eventID) const {
        std::vector<Handler> found;
        for (std::uint64_t key : keysOf(eventClass, eventID))
            if (auto handler = mHandlers.find(key); handler != mHandlers.end())
                found.push_back(handler->second);
        return found;
    }

private:
    static std::array<std::uint64_t, 4> keysOf(AEEventClass eventClass, AEEventID eventID) {
        return {keyOf(eventClass, eventID), keyOf(eventClass, kWildCard), keyOf(kWildCard, eventID), keyOf(kWildCard, kWildCard)};
    }

    std::unordered_map<std::uint64_t, Handler> mHandlers;
};

} // namespace

class NSAppleEventSuspension {
public:
    explicit NSAppleEventSuspension(std::shared_ptr<AEDelivery> suspended) : delivery(std::move(suspended)) {}
    ~NSAppleEventSuspension() { delivery->answer(static_cast<OSErr>(errAEEventFailed)); }
    NSAppleEventSuspension(const NSAppleEventSuspension&) = delete;
    NSAppleEventSuspension& operator=(const NSAppleEventSuspension&) = delete;

    const std::shared_ptr<AEDelivery> delivery;
};

struct NSAppleEventManager::Private {
    mutable std::mutex mutex;
    HandlerTable<Handler> handlers;
    HandlerTable<AdditionHandler> additionHandlers;
    std::vector<std::weak_ptr<NSAppleEventSuspension>> suspensions;
};

NSAppleEventManager::NSAppleEventManager() : d(std::make_unique<Private>()) {}

NSAppleEventManager::~NSAppleEventManager() {
    answerSuspendedEvents();
}

NSAppleEventManager& NSAppleEventManager::sharedAppleEventManager() {
    static NSAppleEventManager manager;
    return manager;
}

void NSAppleEventManager::setEventHandler(Handler handler, AEEventClass forEventClass, AEEventID andEventID) {
    std::lock_guard lock(d->mutex);
    d->handlers.set(std::move(handler), forEventClass, andEventID);
}

void NSAppleEventManager::removeEventHandlerForEventClass(AEEventClass forEventClass, AEEventID andEventID) {
    std::lock_guard lock(d->mutex);
    d->handlers.remove(forEventClass, andEventID);
}

void NSAppleEventManager::setAdditionHandler(AdditionHandler handler, AEEventClass forEventClass, AEEventID andEventID) {
    std::lock_guard lock(d->mutex);
    d->additionHandlers.set(std::move(handler), forEventClass, andEventID);
}

void NSAppleEventManager::removeAdditionHandlerForEventClass(AEEventClass forEventClass, AEEventID andEventID) {
    std::lock_guard lock(d->mutex);
    d->additionHandlers.remove(forEventClass, andEventID);
}

bool NSAppleEventManager::hasEventHandlerForEventClass(AEEventClass forEventClass, AEEventID andEventID) const {
    std::lock_guard lock(d->mutex);
    return d->handlers.first(forEventClass, andEventID) != nullptr;
}

bool NSAppleEventManager::hasAdditionHandlerForEventClass(AEEventClass forEventClass, AEEventID andEventID) const {
    std::lock_guard lock(d->mutex);
    return d->additionHandlers.first(forEventClass, andEventID) != nullptr;
}

OSErr NSAppleEventManager::dispatchRawAppleEvent(const AEDesc& theAppleEvent, AEDesc& withRawReply, const void* handlerRefCon) {
    auto delivery = std::make_shared<AEDelivery>(theAppleEvent, withRawReply, AEHandlerContext{.handlerRefCon = handlerRefCon});
    AEDeliverer::deliverHere(*this, delivery);
    if (!delivery->isAnswered())
        return noErr;
    withRawReply = delivery->answeredReply();
    return delivery->status();
}

NSAppleEventDescriptorRef NSAppleEventManager::currentAppleEvent() const {
    AEDelivery* current = AEDelivery::current();
    return current ? current->event() : nullptr;
}

NSAppleEventDescriptorRef NSAppleEventManager::currentReplyAppleEvent() const {
    AEDelivery* current = AEDelivery::current();
    return current ? current->reply() : nullptr;
}

NSAppleEventManagerSuspensionID NSAppleEventManager::suspendCurrentAppleEvent() {
    AEDelivery* current = AEDelivery::current();
    if (!current || current->isAnswered() || !current->suspend())
        return nullptr;
    auto suspension = std::make_shared<NSAppleEventSuspension>(current->shared_from_this());
    std::lock_guard lock(d->mutex);
    std::erase_if(d->suspensions, [](const auto& other) { return other.expired(); });
    d->suspensions.push_back(suspension);
    return suspension;
}

NSAppleEventDescriptorRef NSAppleEventManager::appleEventForSuspensionID(const NSAppleEventManagerSuspensionID& suspensionID) const {
    return suspensionID ? suspensionID->delivery->event() : nullptr;
}

NSAppleEventDescriptorRef NSAppleEventManager::replyAppleEventForSuspensionID(const NSAppleEventManagerSuspensionID& suspensionID) const {
    return suspensionID ? suspensionID->delivery->reply() : nullptr;
}

bool NSAppleEventManager::senderHasGivenUpForSuspensionID(const NSAppleEventManagerSuspensionID& suspensionID) const {
    return suspensionID && suspensionID->delivery->context().isCancelled();
}

std::function<void()> NSAppleEventManager::asPartOfCurrentAppleEvent(std::function<void()> work) const {
    return [delivery = AEDelivery::current(), work = std::move(work)] {
        AEDelivery::Scope scope(delivery);
        work();
    };
}

void NSAppleEventManager::setCurrentAppleEventAndReplyEventWithSuspensionID(const NSAppleEventManagerSuspensionID& suspensionID) {
    if (suspensionID && AEDelivery::current())
        suspensionID->delivery->makeCurrent();
}

void NSAppleEventManager::resumeWithSuspensionID(const NSAppleEventManagerSuspensionID& suspensionID) {
    if (suspensionID)
        suspensionID->delivery->answer(noErr);
}

void NSAppleEventManager::answerSuspendedEvents() {
    std::vector<std::weak_ptr<NSAppleEventSuspension>> suspensions;
    {
        std::lock_guard lock(d->mutex);
        suspensions.swap(d->suspensions);
    }
    for (const auto& suspension : suspensions)
        if (auto held = suspension.lock())
            held->delivery->breakOff(static_cast<OSErr>(connectionInvalid));
}

namespace {

// Turns an exception of a handler into an answer, since no caller could handle it.
template<class Run>
OSErr guarded(AEDelivery& delivery, Run run) {
    AEDelivery::Scope scope(&delivery);
    try {
        return run();
    } catch (const std::bad_alloc&) {
        return static_cast<OSErr>(memFullErr);
    } catch (const std::exception& exception) {
        delivery.reply()->setDescriptor(NSAppleEventDescriptor::descriptorWithString(exception.what()), "errs"_4cc);
    } catch (...) {
    }
    return static_cast<OSErr>(errAEEventFailed);
}

void answerUnlessSuspended(AEDelivery& delivery, OSErr status) {
    if (status != noErr || !delivery.isSuspended())
        delivery.answer(status);
}

void runApplicationHandler(const NSAppleEventManager::Handler& handler, AEDelivery& delivery) {
    OSErr status = guarded(delivery, [&] {
        handler(delivery.event(), delivery.reply());
        return OSErr{noErr};
    });
    answerUnlessSuspended(delivery, status);
}

bool runAdditionHandlers(const std::vector<NSAppleEventManager::AdditionHandler>& handlers, AEDelivery& delivery) {
    for (const auto& handler : handlers) {
        OSErr status = guarded(delivery, [&] {
            AEDesc reply = delivery.reply()->aeDesc();
            OSErr result = handler(delivery.event()->aeDesc(), reply, delivery.context());
            delivery.reply()->setAEDesc(std::move(reply));
            return result;
        });
        if (status == errAEEventNotHandled)
            continue;
        answerUnlessSuspended(delivery, status);
        return true;
    }
    delivery.answer(static_cast<OSErr>(errAEEventNotHandled));
    return false;
}

// A delivery posted to the main thread. Its sender is answered even when the work is destroyed unrun because the process ends.
class PostedDelivery {
public:
    PostedDelivery(NSAppleEventManager::Handler handler, std::shared_ptr<AEDelivery> delivery)
        : mHandler(std::move(handler)), mDelivery(std::move(delivery)) {}
    ~PostedDelivery() {
        if (!mRan)
            mDelivery->answer(static_cast<OSErr>(connectionInvalid));
    }
    PostedDelivery(const PostedDelivery&) = delete;
    PostedDelivery& operator=(const PostedDelivery&) = delete;

    void run() {
        mRan = true;
        runApplicationHandler(mHandler, *mDelivery);
    }

private:
    const NSAppleEventManager::Handler mHandler;
    const std::shared_ptr<AEDelivery> mDelivery;
    bool mRan = false;
};

} // namespace

bool AEDeliverer::deliver(NSAppleEventManager& manager, const std::shared_ptr<AEDelivery>& delivery) {
    if (AEIsMainThread())
        return deliverHere(manager, delivery);
    std::unique_lock lock(manager.d->mutex);
    const auto* registered = manager.d->handlers.first(delivery->event()->eventClass(), delivery->event()->eventID());
    auto handler = registered ? *registered : nullptr;
    lock.unlock();
    if (!handler)
        return deliverHere(manager, delivery);
    auto posted = std::make_shared<PostedDelivery>(std::move(handler), delivery);
    AEPostToMainThread([posted = std::move(posted)] { posted->run(); });
    return true;
}

bool AEDeliverer::deliverHere(NSAppleEventManager& manager, const std::shared_ptr<AEDelivery>& delivery) {
    AEEventClass eventClass = delivery->event()->eventClass();
    AEEventID eventID = delivery->event()->eventID();
    std::unique_lock lock(manager.d->mutex);
    if (const auto* registered = manager.d->handlers.first(eventClass, eventID)) {
        const auto handler = *registered;
        lock.unlock();
        runApplicationHandler(handler, *delivery);
        return true;
    }
    const auto additionHandlers = manager.d->additionHandlers.all(eventClass, eventID);
    lock.unlock();
    return runAdditionHandlers(additionHandlers, *delivery);
}

} // namespace quoddle
