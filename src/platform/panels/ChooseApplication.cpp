// SPDX-License-Identifier: MIT
// The command "choose application".
#include "platform/panels/ApplicationList.h"
#include "platform/panels/ChooseApplicationPanel.h"
#include "platform/panels/CommandDialog.h"
#include "platform/panels/CommandParameters.h"

namespace quoddle {

CommandDialog chooseApplicationDialog(const AEDesc& event, const Asker&) {
    const bool multiple = booleanParameter(event, "mlsl"_4cc);
    const AEDesc* wanted = event.find("rtyp"_4cc);
    const bool asAlias = wanted && wanted->code() == "alis"_4cc;
    auto panel = std::make_shared<ChooseApplicationPanel>(listApplications(), multiple);
    if (const auto title = optionalTextParameter(event, "appr"_4cc))
        panel->setWindowTitle(*title);
    if (const auto prompt = optionalTextParameter(event, "prmp"_4cc))
        panel->setPrompt(*prompt);
    const ChooseApplicationPanel* shown = panel.get();
    return {.dialog = panel, .answer = [=](int returnCode, AEDesc& reply) {
                const std::vector<ListedApplication> chosen = shown->chosen();
                if (returnCode != QDialog::Accepted || chosen.empty())
                    return setCancelled(reply);
                AEDesc list = AEDesc::list();
                for (const ListedApplication& application : chosen)
                    (void)list.insertItem(0, descriptorOfApplication(application, asAlias));
                setResult(reply, multiple ? list : *list.itemAt(1));
            }};
}

} // namespace quoddle
