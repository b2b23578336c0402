// SPDX-License-Identifier: MIT
#include "dialogs/AppDelegate+StandardAdditions.h"

#include "dialogs/CommandHandlers.h"
#include "platform/appkit/NSApplication.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/panels/DialogQueue.h"
#include "platform/panels/InteractiveCommands.h"
#include "runtime/AppDelegate.h"

namespace quoddle {

namespace {

/// Handles an event with a new handler object.
template<class Handler>
void handleEvent(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent) {
    NSApplication::sharedApplication()->activate();
    Handler().processEvent(event, replyEvent);
}

constexpr auto handleChooseFileEvent = handleEvent<ChooseFileHandler>;
constexpr auto handleChooseFileNameEvent = handleEvent<ChooseFileNameHandler>;
constexpr auto handleChooseFolderEvent = handleEvent<ChooseFolderHandler>;
constexpr auto handleChooseFromListEvent = handleEvent<ChooseFromListHandler>;
constexpr auto handleDisplayAlertEvent = handleEvent<DisplayAlertHandler>;
constexpr auto handleDisplayDialogEvent = handleEvent<DisplayDialogHandler>;

/// The interactive commands that the applet answers itself.
constexpr struct {
    MakeDialog makeDialog;
    void (*handleEvent)(const NSAppleEventDescriptorRef& event, const NSAppleEventDescriptorRef& replyEvent);
} kHandlers[] = {
    {ChooseFileHandler::makeDialog, handleChooseFileEvent},     {ChooseFileNameHandler::makeDialog, handleChooseFileNameEvent},
    {ChooseFolderHandler::makeDialog, handleChooseFolderEvent}, {ChooseFromListHandler::makeDialog, handleChooseFromListEvent},
    {DisplayAlertHandler::makeDialog, handleDisplayAlertEvent}, {DisplayDialogHandler::makeDialog, handleDisplayDialogEvent},
};

template<class Call>
void forEachHandler(Call call) {
    for (const InteractiveCommand& command : interactiveCommands())
        for (const auto& handler : kHandlers)
            if (handler.makeDialog == command.makeDialog)
                call(command, handler.handleEvent);
}

} // namespace

void installOSAXEventHandlers(AppDelegate& delegate) {
    auto& manager = NSAppleEventManager::sharedAppleEventManager();
    forEachHandler([&](const InteractiveCommand& command, auto* handleEvent) {
        manager.setEventHandler(handleEvent, command.eventClass, command.eventID);
    });
    NSNotificationCenter::defaultCenter().addObserver(
        &delegate,
        [&manager](const NSNotification&) {
            forEachHandler([&](const InteractiveCommand& command, auto*) {
                manager.removeEventHandlerForEventClass(command.eventClass, command.eventID);
            });
            DialogQueue::shared().close();
        },
        NSApplicationWillTerminateNotification);
    NSNotificationCenter::defaultCenter().addObserver(
        &delegate, [](const NSNotification&) { DialogQueue::shared().cancelAll(); }, SessionWillEndNotification);
}

} // namespace quoddle
