// SPDX-License-Identifier: MIT
#include "CommandLine.h"

#include "platform/base/ProgramMain.h"
#include "platform/base/Text.h"

#include <algorithm>
#include <iostream>

namespace quoddle::tool {

namespace {

constexpr int kUsageError = 2;
constexpr std::string_view kHelp = "--help";
constexpr std::string_view kVersion = "--version";

std::string spelled(const Option& option) {
    std::string text = (option.name.size() == 1 ? "-" : "--") + std::string(option.name);
    return option.value.empty() ? text : text + " " + std::string(option.value);
}

/// Adds a line for each line of `text`, the first one beside `head`.
void addRow(std::string& out, const std::string& head, std::size_t width, std::string_view text) {
    std::string left = head;
    for (;;) {
        const std::size_t end = text.find('\n');
        out += "  " + left + std::string(width - left.size() + 2, ' ') + std::string(text.substr(0, end)) + "\n";
        if (end == std::string_view::npos || end + 1 == text.size())
            return;
        text.remove_prefix(end + 1);
        left.clear();
    }
}

int printMisuse(const Program& program, const std::string& message, const std::string& usage) {
    std::cerr << program.name << ": " << withoutControls(message) << "\n" << usage << "Try '" << program.name << " --help'.\n";
    return kUsageError;
}

/// The first argument in a command's synopsis that has to be given.
std::string firstArgument(const Command& command) {
    std::string_view needed = command.arguments;
    while (needed.starts_with('['))
        needed.remove_prefix(needed.find("] ") + 2);
    return std::string(needed.substr(0, needed.find_first_of(" .")));
}

/// Reads the words one after the other.
class Parser {
public:
    Parser(const Program& program, const Command* command, const std::vector<std::string>& words)
        : mProgram(program), mCommand(command), mOptions(command ? command->options : program.options), mWords(words) {}

    Result<Arguments, int> parse() {
        const bool hasOptionsAnywhere = mCommand ? mCommand->hasOptionsAnywhere : mProgram.hasOptionsAnywhere;
        bool haveEnded = false;
        for (mAt = 0; mAt < mWords.size(); ++mAt) {
            const std::string& word = mWords[mAt];
            if (haveEnded || word.size() < 2 || word[0] != '-') {
                mArguments.rest.push_back(word);
                haveEnded |= !hasOptionsAnywhere;
            } else if (word == "--") {
                haveEnded = true;
            } else if (word == kHelp) {
                std::cout << (mCommand ? helpOf(mProgram, *mCommand) : helpOf(mProgram));
                return Failure{EXIT_SUCCESS};
            } else if (word == kVersion) {
                printVersion(std::string(mProgram.name).c_str());
                return Failure{EXIT_SUCCESS};
            } else if (const std::string fault = word[1] == '-' ? takeLong(word.substr(2)) : takeLetters(word); !fault.empty()) {
                return Failure{fail(fault)};
            }
        }
        if (mArguments.rest.size() < (mCommand ? mCommand->fewest : mProgram.fewest))
            return Failure{fail(mCommand ? std::string(mCommand->name) + " needs " + firstArgument(*mCommand) : "arguments are missing")};
        if (mArguments.rest.size() > (mCommand ? mCommand->most : mProgram.most))
            return Failure{fail((mCommand ? std::string(mCommand->name) + ": " : "") + "too many arguments")};
        return std::move(mArguments);
    }

private:
    int fail(const std::string& message) const { return mCommand ? misuse(mProgram, *mCommand, message) : misuse(mProgram, message); }
    const Option* find(std::string_view name) const {
        const auto found = std::find_if(mOptions.begin(), mOptions.end(), [&](const Option& o) { return o.name == name; });
        return found == mOptions.end() ? nullptr : &*found;
    }

    // Both answer what is wrong; empty when nothing is.
    std::string takeLong(const std::string& name) {
        const Option* option = name.size() > 1 ? find(name) : nullptr;
        return option ? add(*option, "", false) : "unknown option --" + name;
    }
    std::string takeLetters(const std::string& word) {
        for (std::size_t i = 1; i < word.size(); ++i) {
            const Option* option = find(std::string_view(word).substr(i, 1));
            if (!option) {
                std::size_t end = i + 1;
                while (end < word.size() && (word[end] & 0xC0) == 0x80) // the other bytes of a character
                    ++end;
                return "unknown option -" + word.substr(i, end - i);
            }
            const bool takesRest = !option->value.empty();
            if (std::string fault = add(*option, takesRest ? word.substr(i + 1) : "", takesRest && i + 1 == word.size()); !fault.empty())
                return fault;
            if (takesRest)
                break;
        }
        return "";
    }

    std::string add(const Option& option, std::string value, bool isValueNext) {
        const std::string shown = (option.name.size() == 1 ? "-" : "--") + std::string(option.name);
        if (!option.mayRepeat && mArguments.has(option.name))
            return "option " + shown + " is given twice";
        if (isValueNext && mAt + 1 >= mWords.size())
            return "option " + shown + " needs a value";
        mArguments.given.emplace_back(option.name, isValueNext ? mWords[++mAt] : std::move(value));
        return "";
    }

    const Program& mProgram;
    const Command* const mCommand; ///< null for the words of the program itself
    const std::span<const Option> mOptions;
    const std::vector<std::string>& mWords;
    std::size_t mAt = 0;
    Arguments mArguments;
};

} // namespace

bool Arguments::has(std::string_view name) const {
    return std::any_of(given.begin(), given.end(), [&](const auto& one) { return one.first == name; });
}

std::string Arguments::valueOr(std::string_view name, std::string fallback) const {
    for (const auto& [option, value] : given)
        if (option == name)
            return value;
    return fallback;
}

Result<Arguments, int> parseArguments(const Program& program, const std::vector<std::string>& words) {
    return Parser(program, nullptr, words).parse();
}

Result<Arguments, int> parseArguments(const Program& program, const Command& command, const std::vector<std::string>& words) {
    return Parser(program, &command, words).parse();
}

std::string usageOf(const Program& program) {
    return "usage: " + std::string(program.name) + " " + std::string(program.synopsis) + "\n";
}

std::string usageOf(const Program& program, const Command& command) {
    return "usage: " + std::string(program.name) + " " + std::string(command.name) + (command.arguments.empty() ? "" : " ") +
           std::string(command.arguments) + "\n";
}

std::string helpOf(const Program& program) {
    std::vector<std::pair<std::string, std::string_view>> rows;
    for (const Command& command : program.commands)
        rows.emplace_back(std::string(command.name) + (command.arguments.empty() ? "" : " ") + std::string(command.arguments),
                          command.summary);
    for (const Option& option : program.options)
        rows.emplace_back(spelled(option), option.help);
    rows.emplace_back(kHelp, program.commands.empty() ? "this text" : "this text; behind a command, more about it");
    rows.emplace_back(kVersion, "the version");
    std::size_t width = 0;
    for (const auto& row : rows)
        width = std::max(width, row.first.size());
    std::string out = usageOf(program) + "\n" + std::string(program.about) + "\n";
    for (const auto& [head, text] : rows)
        addRow(out, head, width, text);
    return out + (program.note.empty() ? "" : "\n") + std::string(program.note);
}

std::string helpOf(const Program& program, const Command& command) {
    std::string out = usageOf(program, command) + "\n" + std::string(command.help);
    std::size_t width = 0;
    for (const Option& option : command.options)
        width = std::max(width, spelled(option).size());
    for (const Option& option : command.options)
        addRow(out, spelled(option), width, option.help);
    return out + (firstArgument(command) == "APPLET" ? std::string(program.note) : "");
}

int misuse(const Program& program, const std::string& message) {
    return printMisuse(program, message, usageOf(program));
}

int misuse(const Program& program, const Command& command, const std::string& message) {
    return printMisuse(program, message, usageOf(program, command));
}

} // namespace quoddle::tool
