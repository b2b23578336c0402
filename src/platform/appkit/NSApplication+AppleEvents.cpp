// SPDX-License-Identifier: MIT
// The framework's own handlers of Apple events. An event comes here after the application and its script had their turn: when neither
// handles it, or a script continues it.
#include "platform/appkit/NSApplication.h"

#include "platform/ae/AEReply.h"
#include "platform/ae/NSAppleEventManager.h"
#include "platform/appkit/NSWindow.h"

namespace quoddle {

namespace {

constexpr struct {
    AEEventClass eventClass;
    AEEventID eventID;
} kHandledEvents[] = {{"aevt"_4cc, "oapp"_4cc}, {"aevt"_4cc, "rapp"_4cc}, {"aevt"_4cc, "odoc"_4cc},
                      {"aevt"_4cc, "quit"_4cc}, {"misc"_4cc, "actv"_4cc}, {"ascr"_4cc, "noop"_4cc}};

/// Whether another process has sent the event, and not the application's own script.
bool isFromOther(const NSAppleEventDescriptorRef& event) {
    return event->aeDesc().attribute("esrc"_4cc).has_value();
}

/// The paths of the files of an open event; files without a path are left out.
QStringList filesOf(const NSAppleEventDescriptorRef& event) {
    QStringList files;
    const AEDesc* direct = event->aeDesc().find("----"_4cc);
    if (!direct)
        return files;
    auto add = [&files](const AEDesc& file) {
        if (const auto path = file.asFilePath())
            files << QString::fromStdString(*path);
    };
    if (direct->isList())
        std::for_each(direct->items().begin(), direct->items().end(), add);
    else
        add(*direct);
    return files;
}

OSStatus statusOf(NSApplicationDelegateReply reply) {
    switch (reply) {
    case NSApplicationDelegateReply::success:
        return noErr;
    case NSApplicationDelegateReply::cancel:
        return userCanceledErr;
    default:
        return errAEEventFailed;
    }
}

} // namespace

void NSApplication::handleOpenEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& reply) {
    const QStringList files = filesOf(event);
    if (files.isEmpty())
        return AEPutError(reply, errAEParamMissed);
    auto& manager = NSAppleEventManager::sharedAppleEventManager();
    if (AEIsContinued(reply))
        return openFiles(files);
    const auto suspended = manager.suspendCurrentAppleEvent();
    openFiles(files, [&manager, suspended](NSApplicationDelegateReply answer) {
        AEPutError(manager.replyAppleEventForSuspensionID(suspended), statusOf(answer));
        manager.resumeWithSuspensionID(suspended);
    });
}

/// A quit event is answered when it is clear whether the application ends. A script that continues the event is answered at once, because
/// the decision may depend on that script.
void NSApplication::handleQuitEvent(const NSAppleEventDescriptorRef& reply) {
    const bool mayWait = !AEIsContinued(reply);
    const auto suspended = mayWait ? NSAppleEventManager::sharedAppleEventManager().suspendCurrentAppleEvent() : nullptr;
    if (suspended)
        mQuitEvents.push_back(suspended);
    terminate();
    const bool undecided = isDecidingTermination();
    if (mTerminating || undecided)
        return;
    AEPutError(reply, userCanceledErr);
    answerQuitEvents(userCanceledErr);
}

void NSApplication::answerQuitEvents(OSStatus status) {
    auto& manager = NSAppleEventManager::sharedAppleEventManager();
    for (const auto& suspended : std::exchange(mQuitEvents, {})) {
        AEPutError(manager.replyAppleEventForSuspensionID(suspended), status);
        manager.resumeWithSuspensionID(suspended);
    }
}

void NSApplication::handleAppleEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& reply) {
    switch (event->eventID()) {
    case "odoc"_4cc:
        handleOpenEvent(event, reply);
        break;
    case "quit"_4cc:
        handleQuitEvent(reply);
        break;
    case "rapp"_4cc:
        reopen(isFromOther(event));
        break;
    case "actv"_4cc:
        if (mDelegate)
            mDelegate->applicationWillActivate(isFromOther(event));
        activate();
        break;
    default: // a running application has nothing to do for "oapp" and "noop"
        break;
    }
}

void NSApplication::reopen(bool isAskedByOther) {
    if (mDelegate)
        mDelegate->applicationWillReopen(isAskedByOther);
    activate();
}

void NSApplication::activate() {
    for (QWidget* widget : topLevelWidgets())
        if (auto* window = qobject_cast<NSWindow*>(widget); window && window->isVisible())
            window->makeKeyAndOrderFront();
    if (QWidget* modal = activeModalWidget()) { // a dialog without a window, or a sheet that asks a question of its own
        modal->raise();
        modal->activateWindow();
    }
}

void NSApplication::registerAppleEventHandlers() {
    for (const auto& handled : kHandledEvents)
        NSAppleEventManager::sharedAppleEventManager().setEventHandler(
            [this](const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& reply) { handleAppleEvent(event, reply); },
            handled.eventClass, handled.eventID);
}

void NSApplication::removeAppleEventHandlers() {
    for (const auto& handled : kHandledEvents)
        NSAppleEventManager::sharedAppleEventManager().removeEventHandlerForEventClass(handled.eventClass, handled.eventID);
}

} // namespace quoddle
