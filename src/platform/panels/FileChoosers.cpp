// SPDX-License-Identifier: MIT
#include "platform/panels/FileChoosers.h"

#include "platform/additions/FileParameter.h"
#include "platform/ae/AETypeTests.h"

namespace quoddle {

namespace {

/// Reads the default location, which may be absent. A standard dialog takes files and paths and refuses a value that names no file, unless
/// it is an alias: compiled scripts bring aliases of files on other computers.
/// QUIRK: in the manner of an applet every value but a file is ignored without an error; scripts of applets that give paths as texts rely
/// on getting a dialog.
std::optional<CommandError> readLocation(const AEDesc& event, Manner manner, QString& defaultLocation) {
    const AEDesc* given = event.find("dflc"_4cc);
    if (!given || (manner == Manner::applet && !AEIsFile(*given)))
        return std::nullopt;
    const auto path = additions::filePathOf(*given);
    if (!path && manner == Manner::standard && given->type() != "alis"_4cc)
        return CommandError{errAECoercionFail, {}, *given, "furl"_4cc};
    defaultLocation = QString::fromStdString(path.value_or(std::string()));
    return std::nullopt;
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

std::optional<CommandError> ChooseFileParameters::readForFolders(const AEDesc& event, Manner manner, ChooseFileParameters& parameters) {
    parameters.message = optionalTextParameter(event, "----"_4cc);
    parameters.prompt = optionalTextParameter(event, "prmp"_4cc);
    parameters.invisibles = booleanParameter(event, "lfiv"_4cc);
    parameters.multipleSelectionsAllowed = booleanParameter(event, "mlsl"_4cc);
    parameters.showingPackageContents = booleanParameter(event, "shpc"_4cc);
    return readLocation(event, manner, parameters.defaultLocation);
}

std::optional<CommandError> ChooseFileParameters::read(const AEDesc& event, Manner manner, ChooseFileParameters& parameters) {
    if (const auto error = readTypes(event, parameters.types))
        return error;
    return readForFolders(event, manner, parameters);
}

std::optional<CommandError> ChooseFileNameParameters::read(const AEDesc& event, Manner manner, ChooseFileNameParameters& parameters) {
    parameters.message = optionalTextParameter(event, "prmt"_4cc);
    parameters.defaultName = optionalTextParameter(event, "dfnm"_4cc);
    return readLocation(event, manner, parameters.defaultLocation);
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
