// SPDX-License-Identifier: MIT
// choose from list for any script: always a list, or false.
#include "platform/panels/ChooseFromListPanel.h"
#include "platform/panels/CommandDialog.h"

namespace quoddle {

CommandDialog chooseFromListDialog(const AEDesc& event, AEDesc& reply) {
    ChooseFromListParameters parameters;
    if (const auto error = ChooseFromListParameters::read(event, parameters)) {
        error->writeTo(reply);
        return {};
    }
    auto panel = std::make_shared<ChooseFromListPanel>(parameters);
    panel->prepareForModalForm();
    const ChooseFromListPanel* shown = panel.get();
    return {std::shared_ptr<QDialog>(panel, &panel->window()), [shown](int returnCode, AEDesc& answer) {
                setResult(answer,
                          returnCode == ChooseFromListViewController::kOKReturn ? shown->selectedItems() : AEDesc::ofBoolean(false));
            }};
}

} // namespace quoddle
