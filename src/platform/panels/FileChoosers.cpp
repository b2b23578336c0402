// SPDX-License-Identifier: MIT
#include "platform/panels/FileChoosers.h"

#include "platform/additions/FileParameter.h"
#include "platform/ae/AETypeTests.h"

namespace quoddle {

namespace {

/// Only what is a file says where to begin.
QString locationParameter(const AEDesc& event) {
    const AEDesc* given = event.find("dflc"_4cc);
    const auto path = given && AEIsFile(*given) ? additions::filePathOf(*given) : std::nullopt;
    return QString::fromStdString(path.value_or(std::string()));
}

std::optional<CommandError> readTypes(const AEDesc& event, QStringList& types) {
    const AEDesc list = listParameter(event, "ftyp"_4cc);
    for (const AEDesc& item : list.items()) {
        const auto text = item.asText();
        if (!text)
            return CommandError{errAECoercionFail, {}, item, "utf8"_4cc};
        types << QString::fromStdU16String(*text);
    }
    return std::nullopt;
}

std::unique_ptr<NSOpenPanel> makeOpenPanel(const ChooseFileParameters& parameters) {
    auto panel = std::make_unique<NSOpenPanel>();
    if (parameters.message)
        panel->setMessage(*parameters.message);
    if (parameters.prompt)
        panel->setPrompt(*parameters.prompt);
    panel->setDirectory(parameters.defaultLocation);
    panel->setResolvesAliases(true);
    panel->setShowsHiddenFiles(parameters.invisibles);
    panel->setAllowsMultipleSelection(parameters.multipleSelectionsAllowed);
    panel->setTreatsFilePackagesAsDirectories(parameters.showingPackageContents);
    return panel;
}

} // namespace

ChooseFileParameters ChooseFileParameters::readForFolders(const AEDesc& event) {
    ChooseFileParameters parameters;
    parameters.message = optionalTextParameter(event, "----"_4cc);
    parameters.prompt = optionalTextParameter(event, "prmp"_4cc);
    parameters.defaultLocation = locationParameter(event);
    parameters.invisibles = booleanParameter(event, "lfiv"_4cc);
    parameters.multipleSelectionsAllowed = booleanParameter(event, "mlsl"_4cc);
    parameters.showingPackageContents = booleanParameter(event, "shpc"_4cc);
    return parameters;
}

std::optional<CommandError> ChooseFileParameters::read(const AEDesc& event, ChooseFileParameters& parameters) {
    parameters = readForFolders(event);
    return readTypes(event, parameters.types);
}

ChooseFileNameParameters ChooseFileNameParameters::read(const AEDesc& event) {
    return {optionalTextParameter(event, "prmt"_4cc), optionalTextParameter(event, "dfnm"_4cc), locationParameter(event)};
}

std::unique_ptr<NSOpenPanel> makeChooseFilePanel(const ChooseFileParameters& parameters) {
    auto panel = makeOpenPanel(parameters);
    panel->setCanChooseFiles(true);
    panel->setCanChooseDirectories(false);
    panel->setAllowedFileTypes(parameters.types);
    return panel;
}

std::unique_ptr<NSOpenPanel> makeChooseFolderPanel(const ChooseFileParameters& parameters) {
    auto panel = makeOpenPanel(parameters);
    panel->setCanChooseFiles(false);
    panel->setCanChooseDirectories(true);
    return panel;
}

std::unique_ptr<NSSavePanel> makeChooseFileNamePanel(const ChooseFileNameParameters& parameters) {
    auto panel = std::make_unique<NSSavePanel>();
    if (parameters.message)
        panel->setMessage(*parameters.message);
    if (parameters.defaultName)
        panel->setNameFieldStringValue(*parameters.defaultName);
    panel->setDirectory(parameters.defaultLocation);
    return panel;
}

} // namespace quoddle
