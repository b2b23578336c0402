// SPDX-License-Identifier: MIT
// Writes what bash, zsh and fish offer for the words behind our programs, from the tables of their command lines.
//
//   make-completions FOLDER        below it, each shell's files are made at their places in a share/ folder
//
// Files need no help of ours: where an argument may be one, the shells' own completion is left to work.
#include "ProgramTables.h"

#include <filesystem>
#include <fstream>
#include <iostream>

using namespace quoddle::tool;

namespace {

constexpr const Program* kPrograms[] = {&kOsascript, &kOsacompile, &kOsadecompile, &kOsalang, &kQuoddle};
constexpr Option kCommonOptions[] = {{"help", "", "tell how the program is used"}, {"version", "", "tell the version"}};
const std::string kLanguages = "osalang 2>/dev/null";
const std::string kResultFlags = "h s e o";

std::vector<Option> optionsOf(const Program& program) {
    std::vector<Option> options(program.options.begin(), program.options.end());
    options.insert(options.end(), std::begin(kCommonOptions), std::end(kCommonOptions));
    return options;
}

/// The options of a command and --help; --version is an option of the program alone.
std::vector<Option> optionsOf(const Command& command) {
    std::vector<Option> options(command.options.begin(), command.options.end());
    options.push_back(kCommonOptions[0]);
    return options;
}

std::string spelled(const Option& option) {
    return (option.name.size() == 1 ? "-" : "--") + std::string(option.name);
}

/// The text in one line, for single quotes as all three shells read them, with a backslash before each of the characters `special`.
std::string escaped(std::string_view text, std::string_view special = "") {
    std::string out;
    for (char c : text) {
        if (c == '\'')
            out += "'\\'";
        else if (special.find(c) != std::string_view::npos)
            out += '\\';
        if (c == '\n')
            out += "; ";
        else if (c != ' ' || !out.ends_with(' '))
            out += c;
    }
    return out;
}

std::string inQuotes(std::string_view text, std::string_view special = "") {
    return "'" + escaped(text, special) + "'";
}

std::string forBash(const Program& program) {
    const std::string name(program.name);
    std::string words, values;
    for (const Option& option : optionsOf(program)) {
        words += (words.empty() ? "" : " ") + spelled(option);
        if (option.offer == Offer::languages)
            values += "\t" + spelled(option) + ") choices=$(" + kLanguages + ") ;;\n";
        else if (option.offer == Offer::resultFlags)
            values += "\t" + spelled(option) + ") choices=" + inQuotes(kResultFlags) + " ;;\n";
        else if (!option.value.empty())
            values += "\t" + spelled(option) + ") return ;;\n";
    }
    std::string commands, ofCommands;
    for (const Command& command : program.commands) {
        commands += (commands.empty() ? "" : " ") + std::string(command.name);
        std::string own;
        for (const Option& option : optionsOf(command))
            own += (own.empty() ? "" : " ") + spelled(option);
        ofCommands += "\t\t\t" + std::string(command.name) + ") choices=" + inQuotes(own) + " ;;\n";
    }
    std::string out = "_" + name + "() {\n\tlocal word=${COMP_WORDS[COMP_CWORD]} choices=\n\tCOMPREPLY=()\n";
    out += "\tcase ${COMP_WORDS[COMP_CWORD - 1]} in\n" + values;
    out += "\t*)\n\t\tif [[ $word == -* ]]; then\n\t\t\tchoices=" + inQuotes(words);
    if (!commands.empty())
        out += "\n\t\t\t[ \"$COMP_CWORD\" = 1 ] || case ${COMP_WORDS[1]} in\n" + ofCommands + "\t\t\tesac";
    if (!commands.empty())
        out += "\n\t\telif [ \"$COMP_CWORD\" = 1 ]; then\n\t\t\tchoices=" + inQuotes(commands);
    out += "\n\t\tfi\n\t\t;;\n\tesac\n";
    out += "\t[ -z \"$choices\" ] || mapfile -t COMPREPLY < <(compgen -W \"$choices\" -- \"$word\")\n}\n";
    return out + "complete -o default -F _" + name + " " + name + "\n";
}

/// An option for _arguments, without the quotes around it.
std::string zshOption(const Option& option) {
    std::string out = (option.mayRepeat ? "*" : "") + spelled(option) + (option.value.empty() || option.name.size() > 1 ? "" : "+") + "[" +
                      escaped(option.help, "[]:") + "]";
    if (!option.value.empty())
        out += ":" + std::string(option.value) + ":";
    if (option.offer == Offer::languages)
        out += "{compadd -- ${(f)\"$(" + kLanguages + ")\"}}";
    else if (option.offer == Offer::resultFlags)
        out += "(" + kResultFlags + ")";
    else if (!option.value.empty())
        out += option.offer == Offer::nothing ? " " : "_files";
    return out;
}

std::string forZsh(const Program& program) {
    std::string out = "#compdef " + std::string(program.name) + "\n";
    if (!program.commands.empty()) {
        out += "if (( CURRENT > 2 )); then\n\tcase $words[2] in\n";
        for (const Command& command : program.commands) {
            out += "\t" + std::string(command.name) + ") _arguments";
            for (const Option& option : optionsOf(command))
                out += " '" + zshOption(option) + "'";
            out += std::string(" '1:command: '") + (command.most > 0 ? " '*:file:_files'" : "") + " ;;\n";
        }
        out += "\tesac\n\treturn\nfi\n";
    }
    out += std::string("_arguments -s") + (program.hasOptionsAnywhere ? "" : " -A '-*'");
    for (const Option& option : optionsOf(program))
        out += " \\\n\t'" + zshOption(option) + "'";
    if (!program.commands.empty()) {
        out += " \\\n\t'1:command:((";
        for (const Command& command : program.commands)
            out += std::string(command.name) + "\\:\"" + escaped(command.summary) + "\" ";
        out += "))'";
    }
    return out + (program.most > 0 ? " \\\n\t'*:file:_files'\n" : "\n");
}

std::string fishOption(const Option& option) {
    std::string out = (option.name.size() == 1 ? " -s " : " -l ") + std::string(option.name);
    if (option.offer == Offer::languages)
        out += " -x -a " + inQuotes("(" + kLanguages + ")");
    else if (option.offer == Offer::resultFlags)
        out += " -x -a " + inQuotes(kResultFlags);
    else if (!option.value.empty())
        out += option.offer == Offer::nothing ? " -x" : " -r";
    return out + " -d " + inQuotes(option.help, "\\") + "\n";
}

std::string forFish(const Program& program) {
    const std::string start = "complete -c " + std::string(program.name);
    std::string out;
    for (const Option& option : optionsOf(program))
        out += start + fishOption(option);
    for (const Command& command : program.commands) {
        out += start + " -n __fish_use_subcommand -f -a " + std::string(command.name) + " -d " + inQuotes(command.summary, "\\") + "\n";
        for (const Option& option : command.options)
            out += start + " -n " + inQuotes("__fish_seen_subcommand_from " + std::string(command.name)) + fishOption(option);
    }
    return out + (program.most == 0 ? start + " -f\n" : "");
}

bool write(const std::filesystem::path& file, const Program& program, const std::string& text) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file);
    const std::string about = "# What the shell offers for the words behind " + std::string(program.name) + ".\n";
    // zsh looks for its mark in the first line.
    const std::size_t first = text.starts_with('#') ? text.find('\n') + 1 : 0;
    stream << text.substr(0, first) << about << text.substr(first);
    return bool(stream.flush());
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: make-completions FOLDER\n";
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    for (const Program* program : kPrograms) {
        const std::string name(program->name);
        if (!write(folder / "bash-completion/completions" / name, *program, forBash(*program)) ||
            !write(folder / "zsh/site-functions" / ("_" + name), *program, forZsh(*program)) ||
            !write(folder / "fish/vendor_completions.d" / (name + ".fish"), *program, forFish(*program))) {
            std::cerr << "make-completions: " << folder.string() << ": cannot be written\n";
            return 1;
        }
    }
    return 0;
}
