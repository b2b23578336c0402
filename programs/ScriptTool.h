// SPDX-License-Identifier: MIT
// What the command-line programs share: languages by name, input files, errors as they print them.
#pragma once

#include "platform/osa/OSA.h"

#include <optional>
#include <string>
#include <vector>

namespace quoddle::tool {

/// Registers the languages and the standard additions. Once, first thing in main.
void setUp();

/// The instance of a language by name ("AppleScript", without regard to case); nothing, with a message printed, when there is none.
std::optional<ComponentInstance> openLanguage(const std::string& program, const std::string& name);

/// The bytes of a file, of standard input for "-", or of the main script of a bundle. Pipes and terminals are read to their end, but for
/// those inside a bundle. Nothing, with a message printed, when it cannot be read.
std::optional<std::string> readInput(const std::string& program, const std::string& path);

/// A sentence for the status with which a script could not be written.
std::string messageForWriting(OSStatus status);

/// Loads compiled input or compiles source, told by content. `id` is new.
OSStatus loadOrCompile(ComponentInstance instance, const std::string& bytes, OSAID& id, bool& isCompiled);

/// A failed call of a component, in words: the component's last error, or a bare status.
struct ScriptFailure {
    OSStatus number = noErr;
    std::string message;
    /// Start and end in the source, in UTF-16 units; nothing when the source is not known.
    std::optional<std::pair<std::size_t, std::size_t>> range;
};
ScriptFailure failureOf(ComponentInstance instance, OSStatus status);

/// "FILE:START:END: KIND error: MESSAGE (NUMBER)" on standard error. `file` may be empty, and no range is printed where none is known.
void printError(ComponentInstance instance, const std::string& file, const std::string& kind, OSStatus status);

/// A value on standard output: as people read it, or as source.
void printResult(ComponentInstance instance, OSAID value, bool asSource);

/// Prints "PROGRAM: MESSAGE" and the hint at --help on standard error.
void complain(const std::string& program, const std::string& message);

/// The arguments, options split off: "-e x" and "-ex" alike. Each option letter that takes a value is followed by ':' in `letters`.
struct Options {
    std::vector<std::pair<char, std::string>> given;
    std::vector<std::string> rest;
    bool help = false;
};
/// Options end at the first word that is none, or behind "--". Nothing, with a message printed, for an unknown one.
std::optional<Options> parseOptions(const std::string& program, const std::string& letters, const std::vector<std::string>& words,
                                    bool optionsAnywhere);

} // namespace quoddle::tool
