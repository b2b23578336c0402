// SPDX-License-Identifier: MIT
#include "platform/panels/StandardCommands.h"

#include "platform/foundation/NSBundle.h"
#include "platform/panels/DialogQueue.h"
#include "platform/panels/InteractiveCommands.h"
#include "platform/panels/Notification.h"

#include <QDialog>

namespace quoddle {

std::uint64_t performStandardCommand(const AEDesc& event, const AEDesc& reply, std::function<void(const AEDesc& reply)> completion) {
    if (event.eventClass() == "syso"_4cc && event.eventID() == "notf"_4cc) {
        sendNotification(event, reply, std::move(completion)); // a notification has no answer, so it has no place in the queue
        return 0;
    }
    const InteractiveCommand* command = interactiveCommandOf(event);
    const Asker asker{Manner::standard, NSBundle::mainBundle()};
    CommandDialog dialog = command ? command->makeDialog(event, asker) : CommandDialog{.error = CommandError{errAEEventNotHandled}};
    if (!dialog.error)
        return DialogQueue::shared().add({std::move(dialog), reply, std::move(completion)});
    AEDesc refusal = reply;
    dialog.error->writeTo(refusal);
    completion(refusal);
    return 0;
}

} // namespace quoddle
