// SPDX-License-Identifier: MIT
// osadecompile: prints the source of a compiled script.
#include "platform/base/Text.h"
#include "ProgramTables.h"
#include "ScriptTool.h"

#include "platform/base/ProgramMain.h"

#include <iostream>

using namespace quoddle;

namespace {

int perform(int argc, char** argv) {
    const auto arguments = tool::parseArguments(tool::kOsadecompile, {argv + 1, argv + argc});
    if (!arguments)
        return arguments.error();
    const std::string& file = arguments->rest[0];
    tool::setUp();
    auto instance = tool::openLanguage(tool::kOsadecompile, "AppleScript");
    auto bytes = instance ? tool::readInput(tool::kOsadecompile, file, tool::Input::Anything) : std::nullopt;
    if (!bytes)
        return 1;
    OSAID script = kOSANullScript;
    bool isCompiled = false;
    OSStatus status = tool::loadOrCompile(*instance, *bytes, script, isCompiled);
    AEDesc source;
    if (status == noErr)
        status = OSAGetSource(*instance, script, "utxt"_4cc, source);
    if (status == errOSASourceNotAvailable) {
        std::cerr << "osadecompile: " << withoutControls(file) << ": the script was saved run-only: it has no source\n";
        return 1;
    }
    if (status != noErr) {
        tool::printError(tool::failureOf(*instance, status), file, isCompiled ? "load" : "syntax");
        return 1;
    }
    const std::string text = source.asUTF8().value_or("");
    std::cout << text << (text.ends_with('\n') ? "" : "\n");
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    return programMain("osadecompile", argc, argv, &perform);
}
