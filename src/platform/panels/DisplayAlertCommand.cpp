// SPDX-License-Identifier: MIT
// The command "display alert".
#include "platform/appkit/BundleIcon.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/NSLog.h"
#include "platform/panels/CommandDialog.h"
#include "platform/panels/DisplayAlertPanel.h"

#include <tuple>

namespace quoddle {

CommandDialog displayAlertDialog(const AEDesc& event, const Asker& asker) {
    DisplayAlertParameters parameters;
    if (const auto error = DisplayAlertParameters::read(event, parameters, asker.manner == Manner::standard))
        return {.error = error};
    std::ignore = applicationIcon(asker.bundle.get()); // sets the icon of the application's windows, which the alert shows
    auto panel = std::make_shared<DisplayAlertPanel>(parameters);
    // QUIRK: the result says whether the alert gave up only when it could give up, but in the manner of an applet always; scripts written
    // for either manner rely on their record.
    const bool canGiveUp = asker.manner == Manner::applet || parameters.buttons.givingUpAfter > 0;
    DisplayAlertPanel* const shown = panel.get();
    const auto isSheet = std::make_shared<bool>(false);
    return {.dialog = std::shared_ptr<QDialog>(panel, &panel->alert().window()),
            .answer =
                [=](int returnCode, AEDesc& reply) {
                    if (returnCode != kGaveUp && shown->isCancel(returnCode)) {
                        if (*isSheet)
                            NSLogTrace(QStringLiteral("cancelled...!"));
                        return setCancelled(reply);
                    }
                    AEDesc record = AEDesc::record({{"bhit"_4cc, descriptorOf(shown->buttonReturned(returnCode))}});
                    if (canGiveUp)
                        (void)record.put("gavu"_4cc, AEDesc::ofBoolean(returnCode == kGaveUp));
                    setResult(reply, std::move(record));
                },
            .givingUpAfter = parameters.buttons.givingUpAfter,
            .prepare =
                [=](const QMainWindow* parent) {
                    *isSheet = parent != nullptr;
                    shown->alert().layout();
                }};
}

} // namespace quoddle
