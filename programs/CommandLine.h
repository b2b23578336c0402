// SPDX-License-Identifier: MIT
// The command line of a program: its options as a table, and what follows from the table: the parsing, the usage and the help. The shells'
// completions are made from the same tables.
#pragma once

#include "platform/base/Result.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quoddle::tool {

/// The values that a shell offers for an option.
enum class Offer { nothing, files, languages, resultFlags };

struct Option {
    std::string_view name;  ///< one letter ("-x"), or a word ("--check")
    std::string_view value; ///< what stands behind it, in capitals; empty when nothing does
    std::string_view help;  ///< lines
    bool mayRepeat = false;
    Offer offer = Offer::nothing;
};

/// A command of a program that has several.
struct Command {
    std::string_view name;
    std::string_view arguments;
    std::string_view summary;
    std::string_view help; ///< lines, each with its end
    std::size_t fewest;    ///< arguments
    std::size_t most;
    std::span<const Option> options = {};
    bool hasOptionsAnywhere = true; ///< false: the first word that is no option ends them
};

struct Program {
    std::string_view name;
    std::string_view synopsis; ///< without the name
    std::string_view about;    ///< lines
    std::string_view note;     ///< lines at the end of the help, and of the help on its commands; may be empty
    std::span<const Option> options;
    std::span<const Command> commands; ///< empty for a program that has options only
    std::size_t fewest = 0;            ///< words that are no options
    std::size_t most = SIZE_MAX;
    bool hasOptionsAnywhere = true; ///< false: the first word that is no option ends them
};

/// The arguments with options split off.
struct Arguments {
    std::vector<std::pair<std::string_view, std::string>> given; ///< by the options' names, in order
    std::vector<std::string> rest;

    bool has(std::string_view name) const;
    /// The value of an option that is given once at most.
    std::string valueOr(std::string_view name, std::string fallback) const;
};

/// Splits the arguments; "-e x" and "-ex" are the same, and so are "-x -s" and "-xs". Options end behind "--". Answers the exit status
/// instead when the program is to end at once: 0 when help or version were asked for and have been printed, 2 when the words are wrong,
/// with a message printed.
Result<Arguments, int> parseArguments(const Program& program, const std::vector<std::string>& words);
/// The same for the words behind a command.
Result<Arguments, int> parseArguments(const Program& program, const Command& command, const std::vector<std::string>& words);

std::string usageOf(const Program& program);
std::string usageOf(const Program& program, const Command& command);
/// The whole text of --help; the second form, of that behind a command.
std::string helpOf(const Program& program);
std::string helpOf(const Program& program, const Command& command);

/// Prints what is wrong with the command line, and the usage, on standard error. Answers the exit status, 2.
int misuse(const Program& program, const std::string& message);
int misuse(const Program& program, const Command& command, const std::string& message);

} // namespace quoddle::tool
