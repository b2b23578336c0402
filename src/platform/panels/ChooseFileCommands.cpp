// SPDX-License-Identifier: MIT
// choose file, choose folder, choose file name for any script: aliases of what is there, a file for a name. One decision: the prompt is
// shown above the files, for it says what they are wanted for; the button keeps the panel's own title.
#include "platform/additions/FileParameter.h"
#include "platform/appkit/NSOpenPanel.h"
#include "platform/panels/CommandDialog.h"
#include "platform/panels/CommandParameters.h"

#include <QDialog>

namespace quoddle {

namespace {

/// Where to begin. Nothing given is no error; nor is an alias that leads nowhere here, for scripts bring those that other computers have
/// stored in them.
std::optional<CommandError> readLocation(const AEDesc& event, NSSavePanel& panel) {
    const AEDesc* location = event.find("dflc"_4cc);
    if (!location)
        return std::nullopt;
    const auto path = additions::filePathOf(*location);
    if (path)
        panel.setDirectory(QString::fromStdString(*path));
    else if (location->type() != "alis"_4cc)
        return CommandError{errAECoercionFail, {}, *location, "furl"_4cc};
    return std::nullopt;
}

std::optional<CommandError> readTypes(const AEDesc& event, NSOpenPanel& panel) {
    const AEDesc types = listParameter(event, "ftyp"_4cc);
    for (const AEDesc& type : types.items())
        if (!type.asText())
            return CommandError{errAECoercionFail, {}, type, "utf8"_4cc};
    if (types.count() > 0)
        panel.setAllowedFileTypes(textsOf(types));
    return std::nullopt;
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

CommandDialog openPanelDialog(const std::shared_ptr<NSOpenPanel>& panel, const AEDesc& event, AEDesc& reply) {
    if (const auto error = readLocation(event, *panel)) {
        error->writeTo(reply);
        return {};
    }
    const bool multiple = booleanParameter(event, "mlsl"_4cc);
    panel->setMessage(textParameter(event, "prmp"_4cc));
    panel->setShowsHiddenFiles(booleanParameter(event, "lfiv"_4cc));
    panel->setAllowsMultipleSelection(multiple);
    panel->setTreatsFilePackagesAsDirectories(booleanParameter(event, "shpc"_4cc));
    return dialogOf(panel, [shown = panel.get(), multiple](AEDesc& answer) {
        AEDesc list = AEDesc::list();
        for (const QUrl& url : shown->urls())
            (void)list.insertItem(0, descriptorOfFile(url, "alis"_4cc));
        setResult(answer, multiple ? list : descriptorOfFile(shown->url(), "alis"_4cc));
    });
}

} // namespace

CommandDialog chooseFileDialog(const AEDesc& event, AEDesc& reply) {
    auto panel = std::make_shared<NSOpenPanel>();
    if (const auto error = readTypes(event, *panel)) {
        error->writeTo(reply);
        return {};
    }
    return openPanelDialog(panel, event, reply);
}

CommandDialog chooseFolderDialog(const AEDesc& event, AEDesc& reply) {
    auto panel = std::make_shared<NSOpenPanel>();
    panel->setCanChooseFiles(false);
    panel->setCanChooseDirectories(true);
    return openPanelDialog(panel, event, reply);
}

CommandDialog chooseFileNameDialog(const AEDesc& event, AEDesc& reply) {
    auto panel = std::make_shared<NSSavePanel>();
    if (const auto error = readLocation(event, *panel)) {
        error->writeTo(reply);
        return {};
    }
    panel->setMessage(textParameter(event, "prmt"_4cc));
    if (const auto name = optionalTextParameter(event, "dfnm"_4cc))
        panel->setNameFieldStringValue(*name);
    return dialogOf(panel, [shown = panel.get()](AEDesc& answer) { setResult(answer, descriptorOfFile(shown->url(), "furl"_4cc)); });
}

} // namespace quoddle
