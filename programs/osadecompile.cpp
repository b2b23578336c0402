// SPDX-License-Identifier: MIT
// osadecompile: prints the source of a compiled script.
#include "ScriptTool.h"

#include "platform/base/ProgramMain.h"

#include <cstdio>
#include <iostream>

using namespace quoddle;

namespace {

int perform(int argc, char** argv) {
    auto options = tool::parseOptions("osadecompile", "", {argv + 1, argv + argc}, true);
    if (!options)
        return 2;
    if (options->help || options->rest.size() != 1) {
        std::fputs(
            "usage: osadecompile FILE\n\nPrints the source of a compiled script (.scpt), a script bundle (.scptd) or an applet (.app).\n",
            options->help ? stdout : stderr);
        return options->help ? 0 : 2;
    }
    tool::setUp();
    auto instance = tool::openLanguage("osadecompile", "AppleScript");
    auto bytes = instance ? tool::readInput("osadecompile", options->rest[0]) : std::nullopt;
    if (!bytes)
        return 1;
    OSAID script = kOSANullScript;
    bool isCompiled = false;
    OSStatus status = tool::loadOrCompile(*instance, *bytes, script, isCompiled);
    AEDesc source;
    if (status == noErr)
        status = OSAGetSource(*instance, script, "utxt"_4cc, source);
    if (status == errOSASourceNotAvailable) {
        std::cerr << "osadecompile: " << options->rest[0] << ": the script was saved run-only: it has no source\n";
        return 1;
    }
    if (status != noErr) {
        tool::printError(*instance, options->rest[0], isCompiled ? "load" : "syntax", status);
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
