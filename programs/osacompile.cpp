// SPDX-License-Identifier: MIT
// osacompile: compiles source to a script file, a script bundle or an applet.
#include "ScriptTool.h"

#include "platform/base/File.h"
#include "platform/base/ProgramMain.h"
#include "platform/base/SourceEncoding.h"
#include "platform/base/Text.h"
#include "platform/osa/ScriptBundle.h"

#include <cstdio>
#include <filesystem>
#include <iostream>

using namespace quoddle;

namespace {

constexpr char kHelp[] = R"(usage: osacompile [-l LANGUAGE] [-e STATEMENT]... [-o NAME] [-x] [-s] [-u] [FILE...]

Compiles source text, or stores compiled scripts anew. The ending of NAME says what is made: a script (.scpt,
default a.scpt), a script bundle (.scptd) or an applet (.app; a droplet when the script has an open handler).

  -e STATEMENT  a line of the script; may be given more than once
  -l LANGUAGE   the language of source text (default AppleScript)
  -o NAME       the file or bundle to write
  -s            applet: stay open
  -u            applet: show the startup screen
  -x            run-only: leave the source out
  --help        this text
)";

std::string shellPath() {
    std::error_code error;
    return (std::filesystem::read_symlink("/proc/self/exe", error).parent_path() / "quoddle-shell").string();
}

/// Prints "FILE:LINE: error: MESSAGE (NUMBER)", the form of other compilers' errors, which editors read.
void printLine(const tool::ScriptFailure& failure, const std::string& file, const std::string& source) {
    const std::u16string text = utf16FromSourceBytes(source);
    const std::size_t end = std::min(failure.range ? failure.range->first : 0, text.size());
    std::size_t line = 1;
    for (std::size_t i = 0; i < end; ++i)
        line += text[i] == u'\n' || (text[i] == u'\r' && (i + 1 == text.size() || text[i + 1] != u'\n'));
    std::cerr << file << ":" << line << ": error: " << failure.message << " (" << failure.number << ")\n";
}

int perform(int argc, char** argv) {
    auto options = tool::parseOptions("osacompile", "e:l:o:xsu", {argv + 1, argv + argc}, true);
    if (!options)
        return 2;
    if (options->help) {
        std::fputs(kHelp, stdout);
        return 0;
    }
    std::string language = "AppleScript", source, name = "a.scpt";
    bool hasSource = false, isRunOnly = false;
    BundleOptions bundle;
    for (const auto& [letter, value] : options->given) {
        if (letter == 'e') {
            source += value + "\n";
            hasSource = true;
        } else if (letter == 'l') {
            language = value;
        } else if (letter == 'o') {
            name = value;
        } else {
            isRunOnly |= letter == 'x';
            bundle.stayOpen |= letter == 's';
            bundle.startupScreen |= letter == 'u';
        }
    }
    tool::setUp();
    auto instance = tool::openLanguage("osacompile", language);
    if (!instance)
        return 2;
    std::string file;
    if (!hasSource) {
        if (options->rest.empty())
            options->rest.emplace_back("-");
        // Several files are one script, in the order given.
        for (const std::string& path : options->rest) {
            auto bytes = tool::readInput("osacompile", path);
            if (!bytes)
                return 1;
            if (options->rest.size() == 1)
                source = std::move(*bytes);
            else
                source += utf8FromUTF16(utf16FromSourceBytes(*bytes)) + "\n";
        }
        if (options->rest.size() == 1 && options->rest[0] != "-")
            file = options->rest[0];
    }
    OSAID script = kOSANullScript;
    bool isCompiled = false;
    OSStatus status = tool::loadOrCompile(*instance, source, script, isCompiled);
    if (status != noErr) {
        if (isCompiled)
            tool::printError(*instance, file, "load", status);
        else
            printLine(tool::failureOf(*instance, status), file.empty() ? "-" : file, source);
        return 1;
    }
    AEDesc stored;
    status = OSAStore(*instance, script, "scpt"_4cc, isRunOnly ? kOSAModePreventGetSource : kOSAModeNull, stored);
    if (status == noErr) {
        bundle.path = name;
        bundle.shell = shellPath();
        std::int32_t isDroplet = 0;
        (void)OSAGetScriptInfo(*instance, script, "hsod"_4cc, isDroplet);
        bundle.isDroplet = isDroplet != 0;
        while (name.size() > 1 && name.ends_with('/'))
            name.pop_back();
        status = isBundleName(name) ? writeBundle(bundle, stored.data()) : writeFile(name, stored.data());
    }
    if (status == noErr)
        return 0;
    std::cerr << "osacompile: " << name << ": " << tool::messageForWriting(status) << "\n";
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    return programMain("osacompile", argc, argv, &perform);
}
