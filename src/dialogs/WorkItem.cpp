// SPDX-License-Identifier: MIT
#include "dialogs/WorkItem.h"

#include "platform/foundation/MainThread.h"

namespace quoddle {

void performOnMainThread(const WorkItem& item, const std::function<void(const WorkItem& item)>& continueProcess) {
    auto& manager = NSAppleEventManager::sharedAppleEventManager();
    if (MainThread::isCurrent())
        continueProcess(item);
    else if (!MainThread::dispatchSync(manager.asPartOfCurrentAppleEvent([&] { continueProcess(item); })))
        writeError({userCanceledErr}, item); // the application is ending
}

void writeError(const CommandError& error, const WorkItem& item) {
    AEDesc reply = item.back()->aeDesc();
    error.writeTo(reply);
    item.back()->setAEDesc(std::move(reply));
}

} // namespace quoddle
