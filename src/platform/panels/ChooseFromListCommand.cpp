// SPDX-License-Identifier: MIT
// The command "choose from list". Its result is a list, also for a single item, or false when the user cancelled.
#include "platform/panels/ChooseFromListPanel.h"
#include "platform/panels/CommandDialog.h"

namespace quoddle {

CommandDialog chooseFromListDialog(const AEDesc& event, const Asker&) {
    ChooseFromListParameters parameters;
    if (const auto error = ChooseFromListParameters::read(event, parameters))
        return {.error = error};
    auto panel = std::make_shared<ChooseFromListPanel>(parameters);
    ChooseFromListPanel* const shown = panel.get();
    return {.dialog = std::shared_ptr<QDialog>(panel, &panel->window()),
            .answer =
                [shown](int returnCode, AEDesc& reply) {
                    setResult(reply,
                              returnCode == ChooseFromListViewController::kOKReturn ? shown->selectedItems() : AEDesc::ofBoolean(false));
                },
            .prepare = [shown](const QMainWindow* parent) { parent ? shown->prepareForSheetOn(*parent) : shown->prepareForModalForm(); }};
}

} // namespace quoddle
