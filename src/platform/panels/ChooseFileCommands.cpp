// SPDX-License-Identifier: MIT
// choose file, choose folder, choose file name. In the standard manner: aliases of what is there, a file for a name; the prompt is shown
// above the files and the button keeps the panel's own title. In that of an applet: files, and the prompt is the title of the button.
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

/// The prompt says what the files are wanted for.
void showPromptAboveFiles(ChooseFileParameters& parameters) {
    parameters.message = std::exchange(parameters.prompt, std::nullopt);
}

} // namespace

CommandDialog chooseFileDialog(const AEDesc& event, const Asker& asker) {
    ChooseFileParameters parameters;
    if (const auto error = ChooseFileParameters::read(event, asker.manner, parameters))
        return {.error = error};
    if (asker.bundle)
        UTTypeDeclareTypesOfBundle(asker.bundle->infoDictionary()); // its script may ask for them
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
