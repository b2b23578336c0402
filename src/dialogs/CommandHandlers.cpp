// SPDX-License-Identifier: MIT
#include "dialogs/CommandHandlers.h"

#include "platform/appkit/NSWindowController.h"
#include "platform/foundation/MainThread.h"
#include "platform/panels/DialogQueue.h"
#include "runtime/AppDelegate.h"

namespace quoddle {

namespace {

class AppletWindow final : public DialogQueue::Host {
public:
    NSWindow* sheetWindow() override {
        const auto controller = AppDelegate::instance()->mainWindowController();
        auto* withWindow = dynamic_cast<NSWindowController*>(controller.get());
        NSWindow* window = withWindow ? withWindow->window() : nullptr;
        return window && window->isVisible() ? window : nullptr;
    }
    void dialogWillShow() override {
        AppDelegate::instance()->setDisplayingPanel(true);
        AppDelegate::instance()->willDisplaySheet();
    }
    void dialogDidEnd() override {
        if (AppDelegate* delegate = AppDelegate::instance())
            delegate->setDisplayingPanel(false);
    }
};

NSAppleEventManager& eventManager() {
    return NSAppleEventManager::sharedAppleEventManager();
}

void writeError(const CommandError& error, const WorkItem& item) {
    AEDesc reply = item.back()->aeDesc();
    error.writeTo(reply);
    item.back()->setAEDesc(std::move(reply));
}

} // namespace

void processCommand(const WorkItem& item, MakeDialog makeDialog) {
    if (MainThread::isCurrent())
        continueCommand(item, makeDialog);
    else if (!MainThread::dispatchSync(eventManager().asPartOfCurrentAppleEvent([&] { continueCommand(item, makeDialog); })))
        writeError({userCanceledErr}, item); // the application is ending
}

void continueCommand(const WorkItem& item, MakeDialog makeDialog) {
    static AppletWindow sApplet;
    CommandDialog dialog = makeDialog(item.front()->aeDesc(), {Manner::applet, AppDelegate::instance()->mainBundle()});
    if (dialog.error)
        return writeError(*dialog.error, item);
    const auto suspensionID = eventManager().suspendCurrentAppleEvent();
    const auto resume = [suspensionID](const AEDesc& answered) {
        eventManager().replyAppleEventForSuspensionID(suspensionID)->setAEDesc(answered);
        eventManager().resumeWithSuspensionID(suspensionID);
    };
    const auto isAbandoned = [suspensionID] { return eventManager().senderHasGivenUpForSuspensionID(suspensionID); };
    const AEDesc reply = eventManager().replyAppleEventForSuspensionID(suspensionID)->aeDesc();
    DialogQueue::shared().add({std::move(dialog), reply, resume, &sApplet, isAbandoned});
}

} // namespace quoddle
