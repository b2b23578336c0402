// SPDX-License-Identifier: MIT
// display dialog for any script. Its record has a text only when there was a field, and says whether it gave up only when it could have.
#include "platform/appkit/BundleIcon.h"
#include "platform/foundation/NSBundle.h"
#include "platform/panels/CommandDialog.h"
#include "platform/panels/DialogIcon.h"
#include "platform/panels/DisplayDialogPanel.h"

#include <QApplication>

namespace quoddle {

namespace {

/// A name stands for a picture among the resources of the application, if it has any.
std::optional<CommandError> readIcon(IconParameter parameter, QPixmap& icon) {
    const auto bundle = NSBundle::mainBundle();
    if (parameter.kind == IconParameter::Kind::resource) {
        const QString path = bundle ? pathForImageResource(*bundle, parameter.name) : QString();
        if (path.isEmpty())
            return resourceNotFound();
        parameter = {IconParameter::Kind::file, path};
    }
    return readDialogIcon(
        parameter, [&bundle] { return applicationIcon(bundle.get()); }, qApp->devicePixelRatio(), icon);
}

} // namespace

CommandDialog displayDialogDialog(const AEDesc& event, AEDesc& reply) {
    DisplayDialogParameters parameters;
    QPixmap icon;
    auto error = DisplayDialogParameters::read(event, parameters, true);
    if (!error)
        error = readIcon(parameters.icon, icon);
    if (error) {
        error->writeTo(reply);
        return {};
    }
    auto panel = std::make_shared<DisplayDialogPanel>(parameters, icon);
    const bool hasAnswer = parameters.defaultAnswer.has_value();
    const bool canGiveUp = parameters.buttons.givingUpAfter > 0;
    const DisplayDialogPanel* shown = panel.get();
    return {std::shared_ptr<QDialog>(panel, &panel->window()),
            [=](int returnCode, AEDesc& answer) {
                if (returnCode != kGaveUp && shown->isCancel(returnCode))
                    return setCancelled(answer);
                AEDesc record = AEDesc::record();
                (void)record.put("bhit"_4cc, descriptorOf(shown->buttonReturned(returnCode)));
                if (hasAnswer)
                    (void)record.put("ttxt"_4cc, descriptorOf(shown->textReturned()));
                if (canGiveUp)
                    (void)record.put("gavu"_4cc, AEDesc::ofBoolean(returnCode == kGaveUp));
                setResult(answer, std::move(record));
            },
            parameters.buttons.givingUpAfter};
}

} // namespace quoddle
