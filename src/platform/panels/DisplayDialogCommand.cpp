// SPDX-License-Identifier: MIT
// The command "display dialog".
#include "platform/appkit/BundleIcon.h"
#include "platform/foundation/NSBundle.h"
#include "platform/panels/CommandDialog.h"
#include "platform/panels/DialogIcon.h"
#include "platform/panels/DisplayDialogPanel.h"

#include <QApplication>

namespace quoddle {

namespace {

/// Reads the picture. A name stands for a picture among the resources of the application.
/// QUIRK: in the manner of an applet a named resource must exist, error -192 otherwise, but its picture is not shown; scripts of applets
/// rely on that error and on a dialog of that layout.
std::optional<CommandError> readIcon(IconParameter parameter, const Asker& asker, QPixmap& icon) {
    if (parameter.kind == IconParameter::Kind::resource) {
        const QString path = asker.bundle ? pathForImageResource(*asker.bundle, parameter.name) : QString();
        if (path.isEmpty())
            return resourceNotFound();
        if (asker.manner == Manner::standard)
            parameter = {IconParameter::Kind::file, path};
    }
    return readDialogIcon(
        parameter, [&asker] { return applicationIcon(asker.bundle.get()); }, qApp->devicePixelRatio(), icon);
}

} // namespace

CommandDialog displayDialogDialog(const AEDesc& event, const Asker& asker) {
    DisplayDialogParameters parameters;
    QPixmap icon;
    auto error = DisplayDialogParameters::read(event, parameters, asker.manner == Manner::standard);
    if (!error)
        error = readIcon(parameters.icon, asker, icon);
    if (error)
        return {.error = error};
    auto panel = std::make_shared<DisplayDialogPanel>(parameters, icon);
    // QUIRK: in the manner of an applet the result always has all fields, otherwise a text only when there was a field and a "gave up" only
    // when the dialog could give up; scripts written for either manner rely on their record.
    const bool showsAll = asker.manner == Manner::applet;
    const bool hasAnswer = showsAll || parameters.defaultAnswer.has_value();
    const bool canGiveUp = showsAll || parameters.buttons.givingUpAfter > 0;
    const DisplayDialogPanel* shown = panel.get();
    return {.dialog = std::shared_ptr<QDialog>(panel, &panel->window()),
            .answer =
                [=](int returnCode, AEDesc& reply) {
                    if (returnCode != kGaveUp && shown->isCancel(returnCode))
                        return setCancelled(reply);
                    AEDesc record = AEDesc::record({{"bhit"_4cc, descriptorOf(shown->buttonReturned(returnCode))}});
                    if (hasAnswer)
                        (void)record.put("ttxt"_4cc, descriptorOf(shown->textReturned()));
                    if (canGiveUp)
                        (void)record.put("gavu"_4cc, AEDesc::ofBoolean(returnCode == kGaveUp));
                    setResult(reply, std::move(record));
                },
            .givingUpAfter = parameters.buttons.givingUpAfter};
}

} // namespace quoddle
