// SPDX-License-Identifier: MIT
// display alert for any script. Its record says whether it gave up only when it could have.
#include "platform/appkit/BundleIcon.h"
#include "platform/foundation/NSBundle.h"
#include "platform/panels/CommandDialog.h"
#include "platform/panels/DisplayAlertPanel.h"

#include <tuple>

namespace quoddle {

CommandDialog displayAlertDialog(const AEDesc& event, AEDesc& reply) {
    DisplayAlertParameters parameters;
    if (const auto error = DisplayAlertParameters::read(event, parameters, true)) {
        error->writeTo(reply);
        return {};
    }
    std::ignore = applicationIcon(NSBundle::mainBundle().get()); // alerts show it
    auto panel = std::make_shared<DisplayAlertPanel>(parameters);
    panel->alert().layout();
    const bool canGiveUp = parameters.buttons.givingUpAfter > 0;
    const DisplayAlertPanel* shown = panel.get();
    return {std::shared_ptr<QDialog>(panel, &panel->alert().window()),
            [=](int returnCode, AEDesc& answer) {
                if (returnCode != kGaveUp && shown->isCancel(returnCode))
                    return setCancelled(answer);
                AEDesc record = AEDesc::record();
                (void)record.put("bhit"_4cc, descriptorOf(shown->buttonReturned(returnCode)));
                if (canGiveUp)
                    (void)record.put("gavu"_4cc, AEDesc::ofBoolean(returnCode == kGaveUp));
                setResult(answer, std::move(record));
            },
            parameters.buttons.givingUpAfter};
}

} // namespace quoddle
