// SPDX-License-Identifier: MIT
// The commands "choose file", "choose folder" and "choose file name". In the standard manner "choose file" and "choose folder" answer
// aliases and show the prompt above the files; "choose file name" answers a file. In the manner of an applet all of them answer files.
#include "platform/additions/FileParameter.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/UTType.h"
#include "platform/panels/CommandDialog.h"
#include "platform/panels/FileChoosers.h"

#include <QDialog>

namespace quoddle {

namespace {

AEDesc descriptorOfFile(const QUrl& url, DescType asClass) {
    return additions::fileResult(url.toLocalFile().toStdString(), asClass);
}

template<class Panel>
CommandDialog dialogOf(const std::shared_ptr<Panel>& panel, std::function<AEDesc()> result) {
    return {.dialog = std::shared_ptr<QDialog>(panel, panel->dialog()),
            .answer =
                [result = std::move(result)](int returnCode, AEDesc& reply) {
                    returnCode == NSModalResponseOK ? setResult(reply, result()) : setCancelled(reply);
                },
            .prepare = [shown = panel.get()](const QMainWindow*) { shown->layout(); }};
}

CommandDialog openPanelDialog(std::shared_ptr<NSOpenPanel> panel, bool multiple, Manner manner) {
    const DescType asClass = manner == Manner::applet ? "furl"_4cc : "alis"_4cc;
    return dialogOf(panel, [shown = panel.get(), multiple, asClass] {
        if (!multiple)
            return descriptorOfFile(shown->url(), asClass);
        AEDesc list = AEDesc::list();
        for (const QUrl& url : shown->urls())
            (void)list.insertItem(0, descriptorOfFile(url, asClass));
        return list;
    });
}

/// Shows the prompt, which says what the files are wanted for, above the files; the button keeps the panel's own title.
/// QUIRK: in the manner of an applet this is not done and the prompt is the title of the confirming button; scripts of applets rely on it
/// and give titles as prompts.
void showPromptAboveFiles(ChooseFileParameters& parameters) {
    parameters.message = std::exchange(parameters.prompt, std::nullopt);
}

} // namespace

CommandDialog chooseFileDialog(const AEDesc& event, const Asker& asker) {
    ChooseFileParameters parameters;
    if (const auto error = ChooseFileParameters::read(event, asker.manner, parameters))
        return {.error = error};
    if (asker.bundle)
        UTTypeDeclareTypesOfBundle(asker.bundle->infoDictionary()); // the script may ask for types that only its bundle declares
    if (asker.manner == Manner::standard)
        showPromptAboveFiles(parameters);
    return openPanelDialog(makeChooseFilePanel(parameters), parameters.multipleSelectionsAllowed, asker.manner);
}

CommandDialog chooseFolderDialog(const AEDesc& event, const Asker& asker) {
    ChooseFileParameters parameters;
    if (const auto error = ChooseFileParameters::readForFolders(event, asker.manner, parameters))
        return {.error = error};
    if (asker.manner == Manner::standard)
        showPromptAboveFiles(parameters);
    return openPanelDialog(makeChooseFolderPanel(parameters), parameters.multipleSelectionsAllowed, asker.manner);
}

CommandDialog chooseFileNameDialog(const AEDesc& event, const Asker& asker) {
    ChooseFileNameParameters parameters;
    if (const auto error = ChooseFileNameParameters::read(event, asker.manner, parameters))
        return {.error = error};
    const std::shared_ptr<NSSavePanel> panel = makeChooseFileNamePanel(parameters);
    return dialogOf(panel, [shown = panel.get()] { return descriptorOfFile(shown->url(), "furl"_4cc); });
}

} // namespace quoddle
