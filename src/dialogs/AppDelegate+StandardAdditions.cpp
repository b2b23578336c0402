// SPDX-License-Identifier: MIT
#include "dialogs/AppDelegate+StandardAdditions.h"

#include "dialogs/ChooseFileHandler.h"
#include "dialogs/ChooseFileNameHandler.h"
#include "dialogs/ChooseFolderHandler.h"
#include "dialogs/ChooseFromListHandler.h"
#include "dialogs/DialogSession.h"
#include "dialogs/DisplayAlertHandler.h"
#include "dialogs/DisplayDialogHandler.h"
#include "platform/appkit/NSApplication.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "runtime/AppDelegate.h"

namespace quoddle {

namespace {

/// A fresh handler for each event, which keeps itself for as long as it takes.
template<class Handler>
void handleEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent) {
    const auto handler = std::make_shared<Handler>();
    NSApplication::sharedApplication()->activate();
    handler->processEvent(event, replyEvent);
}

constexpr auto handleChooseFileEvent = handleEvent<ChooseFileHandler>;
constexpr auto handleChooseFileNameEvent = handleEvent<ChooseFileNameHandler>;
constexpr auto handleChooseFolderEvent = handleEvent<ChooseFolderHandler>;
constexpr auto handleChooseFromListEvent = handleEvent<ChooseFromListHandler>;
constexpr auto handleDisplayAlertEvent = handleEvent<DisplayAlertHandler>;
constexpr auto handleDisplayDialogEvent = handleEvent<DisplayDialogHandler>;

struct EventHandlerRow {
    AEEventClass eventClass;
    AEEventID eventID;
    void (*handler)(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent);
};

constexpr EventHandlerRow kEventHandlers[] = {
    {"syso"_4cc, "stdf"_4cc, handleChooseFileEvent},   {"syso"_4cc, "nwfl"_4cc, handleChooseFileNameEvent},
    {"syso"_4cc, "stfl"_4cc, handleChooseFolderEvent}, {"gtqp"_4cc, "chlt"_4cc, handleChooseFromListEvent},
    {"syso"_4cc, "disA"_4cc, handleDisplayAlertEvent}, {"syso"_4cc, "dlog"_4cc, handleDisplayDialogEvent},
};

void removeOSAXEventHandlers() {
    for (const EventHandlerRow& row : kEventHandlers)
        NSAppleEventManager::sharedAppleEventManager().removeEventHandlerForEventClass(row.eventClass, row.eventID);
}

} // namespace

void installOSAXEventHandlers(AppDelegate& delegate) {
    auto& manager = NSAppleEventManager::sharedAppleEventManager();
    for (const EventHandlerRow& row : kEventHandlers)
        manager.setEventHandler(row.handler, row.eventClass, row.eventID);
    NSNotificationCenter::defaultCenter().addObserver(
        &delegate,
        [](const NSNotification&) {
            removeOSAXEventHandlers();
            dropWaitingDialogs();
        },
        NSApplicationWillTerminateNotification);
    NSNotificationCenter::defaultCenter().addObserver(
        &delegate, [](const NSNotification&) { cancelDialogs(); }, SessionWillEndNotification);
}

} // namespace quoddle
