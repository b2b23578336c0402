// SPDX-License-Identifier: MIT
// The code that the command-line programs share: languages by name, input files, printed errors.
#pragma once

#include "CommandLine.h"
#include "platform/osa/KeptScript.h"
#include "platform/osa/OSA.h"

#include <optional>
#include <string>
#include <utility>

namespace quoddle::tool {

/// Registers the languages and the standard additions. To be called once, first in main.
void setUp();

/// The component instance of a language by name ("AppleScript", without regard to case). nullopt, with a message printed, when there is
/// none.
std::optional<ComponentInstance> openLanguage(const Program& program, const std::string& name);

struct InputFault {
    OSStatus number;
    std::string message; ///< a sentence
};
/// The kinds of input, beside regular files and standard input, that a program reads.
enum class Input {
    Files,   ///< the names of open files (/dev/fd/3), which a shell makes for what a command prints, and /dev/null
    Anything ///< all pipes and devices, and links from a bundle to somewhere else
};
/// The bytes of a file, of standard input for "-", or of the main script of a bundle. Pipes and terminals are read to their end, but not
/// pipes inside a bundle.
Result<std::string, InputFault> readScript(const std::string& path, Input input);
/// As readScript(); nullopt, with a message printed, when the input cannot be read.
std::optional<std::string> readInput(const Program& program, const std::string& path, Input input);

/// A sentence for the error status with which a script could not be written.
std::string messageForWriting(OSStatus status);

/// Loads compiled input or compiles source, which the content tells apart. `id` is new and belongs to the caller.
OSStatus loadOrCompile(ComponentInstance instance, const std::string& bytes, OSAID& id, bool& isCompiled);

/// The failure of a component's call in words: the component's last error, or the status alone.
struct ScriptFailure {
    OSStatus number = noErr;
    std::string message;
    /// Start and end in the source, in UTF-16 units; nullopt when they are not known.
    std::optional<std::pair<std::size_t, std::size_t>> range;
};
ScriptFailure failureOf(ComponentInstance instance, OSStatus status);

/// Prints "FILE:START:END: KIND error: MESSAGE (NUMBER)" on standard error. `file` may be empty, and without a known range none is printed.
void printError(const ScriptFailure& failure, const std::string& file, const std::string& kind);

/// On a terminal, prints on standard error the line of the source where the failure is, with marks, and advice where there is some.
void printPlaceOnTerminal(const ScriptFailure& failure, const std::string& source);

/// Prints a value on standard output: as text for people, or as source.
void printResult(ComponentInstance instance, OSAID value, bool asSource);

} // namespace quoddle::tool
