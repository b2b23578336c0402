// SPDX-License-Identifier: MIT
// choose file, choose folder, choose file name for any script: aliases of what is there, a file for a name. One decision: the prompt is
// shown above the files, for it says what they are wanted for; the button keeps the panel's own title.
#include "platform/additions/FileParameter.h"
#include "platform/panels/CommandDialog.h"
#include "platform/panels/FileChoosers.h"

#include <QDialog>

namespace quoddle {

namespace {

/// Where to begin. Nothing given is no error; nor is an alias that leads nowhere here, for scripts bring those that other computers have
/// stored in them.
std::optional<CommandError> readLocation(const AEDesc& event, QString& defaultLocation) {
    const AEDesc* location = event.find("dflc"_4cc);
    if (!location)
        return std::nullopt;
    const auto path = additions::filePathOf(*location);
    if (!path && location->type() != "alis"_4cc)
        return CommandError{errAECoercionFail, {}, *location, "furl"_4cc};
    defaultLocation = QString::fromStdString(path.value_or(std::string()));
    return std::nullopt;
}

CommandDialog refused(const CommandError& error, AEDesc& reply) {
    error.writeTo(reply);
    return {};
}

AEDesc descriptorOfFile(const QUrl& url, DescType asClass) {
    return additions::fileResult(url.toLocalFile().toStdString(), asClass);
}

template<class Panel>
CommandDialog dialogOf(const std::shared_ptr<Panel>& panel, std::function<void(AEDesc& reply)> answer) {
    panel->layout();
    return {std::shared_ptr<QDialog>(panel, panel->dialog()), [answer = std::move(answer)](int returnCode, AEDesc& reply) {
                returnCode == NSModalResponseOK ? answer(reply) : setCancelled(reply);
            }};
}

CommandDialog openPanelDialog(std::shared_ptr<NSOpenPanel> panel, bool multiple) {
    return dialogOf(panel, [shown = panel.get(), multiple](AEDesc& answer) {
        AEDesc list = AEDesc::list();
        for (const QUrl& url : shown->urls())
            (void)list.insertItem(0, descriptorOfFile(url, "alis"_4cc));
        setResult(answer, multiple ? list : descriptorOfFile(shown->url(), "alis"_4cc));
    });
}

void showPromptAboveFiles(ChooseFileParameters& parameters) {
    parameters.message = std::exchange(parameters.prompt, std::nullopt);
}

} // namespace

CommandDialog chooseFileDialog(const AEDesc& event, AEDesc& reply) {
    ChooseFileParameters parameters;
    if (const auto error = ChooseFileParameters::read(event, parameters))
        return refused(*error, reply);
    if (const auto error = readLocation(event, parameters.defaultLocation))
        return refused(*error, reply);
    showPromptAboveFiles(parameters);
    return openPanelDialog(makeChooseFilePanel(parameters), parameters.multipleSelectionsAllowed);
}

CommandDialog chooseFolderDialog(const AEDesc& event, AEDesc& reply) {
    ChooseFileParameters parameters = ChooseFileParameters::readForFolders(event);
    if (const auto error = readLocation(event, parameters.defaultLocation))
        return refused(*error, reply);
    showPromptAboveFiles(parameters);
    return openPanelDialog(makeChooseFolderPanel(parameters), parameters.multipleSelectionsAllowed);
}

CommandDialog chooseFileNameDialog(const AEDesc& event, AEDesc& reply) {
    ChooseFileNameParameters parameters = ChooseFileNameParameters::read(event);
    if (const auto error = readLocation(event, parameters.defaultLocation))
        return refused(*error, reply);
    const std::shared_ptr<NSSavePanel> panel = makeChooseFileNamePanel(parameters);
    return dialogOf(panel, [shown = panel.get()](AEDesc& answer) { setResult(answer, descriptorOfFile(shown->url(), "furl"_4cc)); });
}

} // namespace quoddle
