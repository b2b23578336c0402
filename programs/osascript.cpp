// SPDX-License-Identifier: MIT
// osascript: runs a script given as statements, as a file or on standard input.
#include "Interaction.h"
#include "platform/base/File.h"
#include "platform/base/ProgramMain.h"
#include "platform/base/Text.h"
#include "platform/osa/KeptScript.h"
#include "platform/osa/ScriptBundle.h"
#include "ProgramTables.h"
#include "ScriptTool.h"

#include <filesystem>
#include <iostream>
#include <iterator>
#include <sstream>
#include <unistd.h>

using namespace quoddle;

namespace {

struct Settings {
    std::string statements;
    bool hasStatements = false;
    bool asSource = false;
    bool errorsOnOutput = false;
};

/// The properties of a compiled script, which last from one run to the next: they are stored when a run has changed them. The file of an
/// applet is left alone, because the applet stores its properties itself.
class StoredProperties {
public:
    /// `file` is the script's file; empty when there is none.
    StoredProperties(ComponentInstance instance, OSAID script, const std::string& file) : mInstance(instance), mScript(script) {
        if (file.empty())
            return;
        const std::string scriptFile = scriptFileOf(file);
        AEDesc names;
        std::error_code error;
        // Properties cannot be stored in a pipe or in an open file without a name.
        if (bundleOfScriptFile(scriptFile).ends_with(".app") || !std::filesystem::is_regular_file(scriptFile, error) ||
            !writtenPath(scriptFile) || OSAGetPropertyNames(instance, kOSAModeNull, script, names) != noErr || names.count() == 0)
            return;
        if (OSASetScriptInfo(instance, script, "modi"_4cc, 0) == noErr)
            mFile = scriptFile;
    }

    /// Stores changed properties. False, with a message printed, when that failed.
    bool keep() const {
        std::int32_t isModified = 0;
        if (mFile.empty() || OSAGetScriptInfo(mInstance, mScript, "modi"_4cc, isModified) != noErr || !isModified)
            return true;
        AEDesc bytes;
        OSStatus status = OSAStore(mInstance, mScript, "scpt"_4cc, kOSAModeNull, bytes);
        if (status == noErr)
            status = keepScript(mFile, bytes.data());
        if (status == noErr)
            return true;
        std::cerr << "osascript: " << withoutControls(mFile) << ": the properties could not be stored: " << tool::messageForWriting(status)
                  << "\n";
        return false;
    }

private:
    ComponentInstance mInstance;
    OSAID mScript;
    std::string mFile; // empty when nothing is to be stored
};

OSStatus run(ComponentInstance instance, OSAID script, const std::vector<std::string>& arguments, OSAID& result) {
    AEDesc list = AEDesc::list();
    for (const std::string& argument : arguments)
        (void)list.insertItem(0, AEDesc::ofUTF8(argument));
    AEDesc event = AEDesc::appleEvent("aevt"_4cc, "oapp"_4cc, AEDesc::ofCurrentProcess());
    (void)event.put("----"_4cc, std::move(list));
    return OSAExecuteEvent(instance, event, script, kOSAModeNull, result);
}

/// Tells why the script failed. `source` is what was compiled; empty when it is not known.
int fail(ComponentInstance instance, OSStatus status, const std::string& file, const std::string& kind, const std::string& source) {
    const tool::ScriptFailure failure = tool::failureOf(instance, status);
    tool::printError(failure, file, kind);
    if (!source.empty())
        tool::printPlaceOnTerminal(failure, source);
    return 1;
}

/// The arguments as words. In the first line of a script file all options arrive as one word: "-l AppleScript -s s".
std::vector<std::string> wordsFrom(int argc, char** argv) {
    std::vector<std::string> words(argv + 1, argv + argc);
    if (words.size() < 2 || !words[0].starts_with('-') || words[0].starts_with("-e"))
        return words;
    std::istringstream line(words[0]);
    std::vector<std::string> split(std::istream_iterator<std::string>(line), {});
    split.insert(split.end(), words.begin() + 1, words.end());
    return split;
}

int perform(int argc, char** argv) {
    const auto options = tool::parseArguments(tool::kOsascript, wordsFrom(argc, argv));
    if (!options)
        return options.error();
    Settings settings;
    for (const auto& [name, value] : options->given) {
        if (name == "e") {
            settings.statements += value + "\n";
            settings.hasStatements = true;
        }
        for (char flag : name == "s" ? value : "") {
            if (std::string_view("hseo").find(flag) == std::string_view::npos)
                return tool::misuse(tool::kOsascript, std::string("option -s has no flag ") + flag);
            settings.asSource = flag == 's' || (flag != 'h' && settings.asSource);
            settings.errorsOnOutput = flag == 'o' || (flag != 'e' && settings.errorsOnOutput);
        }
    }
    tool::setUp();
    auto instance = tool::openLanguage(tool::kOsascript, options->valueOr("l", "AppleScript"));
    if (!instance)
        return 2;
    if (settings.errorsOnOutput)
        ::dup2(STDOUT_FILENO, STDERR_FILENO);
    if (options->has("i") && !settings.hasStatements && options->rest.empty())
        return tool::interact(*instance, settings.asSource);

    std::string file;
    std::vector<std::string> arguments = options->rest;
    std::string bytes = settings.statements;
    if (!settings.hasStatements) {
        file = arguments.empty() ? "-" : arguments.front();
        if (!arguments.empty())
            arguments.erase(arguments.begin());
        std::error_code error; // a stream can be read only once
        const bool isFile = file != "-" && std::filesystem::is_regular_file(scriptFileOf(file), error);
        auto input = tool::readInput(tool::kOsascript, isFile ? fileOfLastRun(scriptFileOf(file)) : file, tool::Input::Anything);
        if (!input)
            return 1;
        bytes = std::move(*input);
        if (file == "-")
            file.clear();
    }
    OSAID script = kOSANullScript, result = kOSANullScript;
    bool isCompiled = false;
    OSStatus status = tool::loadOrCompile(*instance, bytes, script, isCompiled);
    if (status != noErr)
        return fail(*instance, status, file, isCompiled ? "load" : file.empty() ? "syntax" : "script", isCompiled ? "" : bytes);
    const StoredProperties properties(*instance, script, isCompiled ? file : std::string());
    // The script's file answers "path to me".
    if (std::error_code error; !file.empty())
        (void)OSASetScriptInfo(*instance, script, "fref"_4cc,
                               std::filesystem::absolute(scriptFileOf(file), error).lexically_normal().string());
    status = run(*instance, script, arguments, result);
    if (status != noErr)
        return fail(*instance, status, file, "execution", isCompiled ? "" : bytes);
    if (result != kOSANullScript)
        tool::printResult(*instance, result, settings.asSource);
    return properties.keep() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    return programMain("osascript", argc, argv, &perform);
}
