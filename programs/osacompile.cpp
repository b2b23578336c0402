// SPDX-License-Identifier: MIT
// osacompile: compiles source to a script file, a script bundle or an applet.
#include "platform/base/File.h"
#include "platform/base/ProgramMain.h"
#include "platform/base/SourceEncoding.h"
#include "platform/base/Text.h"
#include "platform/osa/ScriptBundle.h"
#include "ProgramTables.h"
#include "ScriptCheck.h"
#include "ScriptTool.h"
#include "SourcePlace.h"

#include <algorithm>
#include <filesystem>
#include <iostream>

using namespace quoddle;

namespace {

std::string shellPath() {
    std::error_code error;
    return (std::filesystem::read_symlink("/proc/self/exe", error).parent_path() / "quoddle-shell").string();
}

struct Settings {
    std::string language, source, name;
    std::vector<std::string> files; // empty when the source is given by statements
    bool isRunOnly = false;
    bool isCheck = false;
    bool asJSON = false;
    BundleOptions bundle;
};

Result<Settings, int> settingsFrom(int argc, char** argv) {
    auto arguments = tool::parseArguments(tool::kOsacompile, {argv + 1, argv + argc});
    if (!arguments)
        return Failure{arguments.error()};
    Settings settings{.language = arguments->valueOr("l", "AppleScript"), .name = arguments->valueOr("o", "a.scpt")};
    settings.isRunOnly = arguments->has("x");
    settings.isCheck = arguments->has("check");
    settings.asJSON = arguments->has("json");
    settings.bundle.stayOpen = arguments->has("s");
    settings.bundle.startupScreen = arguments->has("u");
    for (const auto& [name, value] : arguments->given)
        if (name == "e")
            settings.source += value + "\n";
    settings.files = std::move(arguments->rest);
    if (arguments->has("e") && !settings.files.empty())
        return Failure{tool::misuse(tool::kOsacompile, "a script is given by -e or by files, not by both")};
    if (!arguments->has("e") && settings.files.empty())
        settings.files.emplace_back("-");
    if (settings.asJSON && !settings.isCheck)
        return Failure{tool::misuse(tool::kOsacompile, "option --json needs --check")};
    for (const char* writing : {"o", "s", "u", "x"})
        if (settings.isCheck && arguments->has(writing))
            return Failure{tool::misuse(tool::kOsacompile, std::string("--check writes nothing: it does not go with -") + writing)};
    if (settings.name.empty())
        return Failure{tool::misuse(tool::kOsacompile, "option -o needs a name")};
    if (std::count(settings.files.begin(), settings.files.end(), "-") > 1)
        return Failure{tool::misuse(tool::kOsacompile, "standard input is given twice")};
    return settings;
}

int check(ComponentInstance instance, const Settings& settings) {
    std::vector<tool::ScriptSource> sources;
    for (const std::string& file : settings.files)
        sources.push_back({file, tool::readScript(file, tool::Input::Files)});
    if (settings.files.empty())
        sources.push_back({"-", settings.source});
    return tool::checkScripts(instance, sources, settings.asJSON);
}

/// Several files are one script, in the order given. False, with a message printed, when one cannot be read.
bool readSource(Settings& settings) {
    for (const std::string& path : settings.files) {
        auto bytes = tool::readInput(tool::kOsacompile, path, tool::Input::Anything);
        if (!bytes)
            return false;
        if (settings.files.size() == 1)
            settings.source = std::move(*bytes);
        else
            settings.source += utf8FromUTF16(utf16FromSourceBytes(*bytes)) + "\n";
    }
    return true;
}

/// Tells why the source was not compiled: as "FILE:LINE: error: MESSAGE (NUMBER)", the form of other compilers' errors, which editors read.
void printFailure(const tool::ScriptFailure& failure, const std::string& file, const std::string& source) {
    const std::size_t line = tool::placeOf(utf16FromSourceBytes(source), failure.range ? failure.range->first : 0).line;
    std::cerr << withoutControls(file) << ":" << line << ": error: " << failure.message << " (" << failure.number << ")\n";
    tool::printPlaceOnTerminal(failure, source);
}

OSStatus write(ComponentInstance instance, OSAID script, Settings& settings) {
    AEDesc stored;
    const OSStatus status = OSAStore(instance, script, "scpt"_4cc, settings.isRunOnly ? kOSAModePreventGetSource : kOSAModeNull, stored);
    if (status != noErr)
        return status;
    if (stored.data().size() > kLargestScript) // which no program would read again
        return memFullErr;
    std::int32_t isDroplet = 0;
    (void)OSAGetScriptInfo(instance, script, "hsod"_4cc, isDroplet);
    settings.bundle.path = settings.name;
    settings.bundle.shell = shellPath();
    settings.bundle.isDroplet = isDroplet != 0;
    while (settings.name.size() > 1 && settings.name.ends_with('/'))
        settings.name.pop_back();
    return isBundleName(settings.name) ? writeBundle(settings.bundle, stored.data()) : writeFile(settings.name, stored.data());
}

int perform(int argc, char** argv) {
    auto settings = settingsFrom(argc, argv);
    if (!settings)
        return settings.error();
    tool::setUp();
    const auto instance = tool::openLanguage(tool::kOsacompile, settings->language);
    if (!instance)
        return 2;
    if (settings->isCheck)
        return check(*instance, *settings);
    if (!readSource(*settings))
        return 1;
    const std::string file = settings->files.size() == 1 ? settings->files[0] : "-";
    OSAID script = kOSANullScript;
    bool isCompiled = false;
    OSStatus status = tool::loadOrCompile(*instance, settings->source, script, isCompiled);
    if (status != noErr) {
        const tool::ScriptFailure failure = tool::failureOf(*instance, status);
        if (isCompiled)
            tool::printError(failure, file == "-" ? "" : file, "load");
        else
            printFailure(failure, file, settings->source);
        return 1;
    }
    status = write(*instance, script, *settings);
    if (status == noErr)
        return 0;
    std::cerr << "osacompile: " << withoutControls(settings->name) << ": " << tool::messageForWriting(status) << "\n";
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    return programMain("osacompile", argc, argv, &perform);
}
