// SPDX-License-Identifier: MIT
#include "ShellWords.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <span>
#include <sstream>
#include <unistd.h>

namespace quoddle::tool {

namespace {

constexpr int kDeepestSubstitution = 20;

constexpr std::string_view kBuiltins[] = {
    ".",        ":",        "[",       "alias", "bg",        "bind",     "break",  "builtin", "caller",  "cd",     "command", "compgen",
    "complete", "continue", "declare", "dirs",  "disown",    "echo",     "enable", "eval",    "exec",    "exit",   "export",  "false",
    "fg",       "getopts",  "hash",    "help",  "history",   "jobs",     "kill",   "let",     "local",   "logout", "mapfile", "popd",
    "printf",   "pushd",    "pwd",     "read",  "readarray", "readonly", "return", "set",     "shift",   "shopt",  "source",  "suspend",
    "test",     "times",    "trap",    "true",  "type",      "typeset",  "ulimit", "umask",   "unalias", "unset",  "wait"};
constexpr std::string_view kWordsBeforeCommands[] = {"!", "{", "if", "then", "elif", "else", "do", "while", "until", "time", "coproc"};
constexpr std::string_view kWordsWithoutCommand[] = {"}", "fi", "done", "esac", "for", "select"};
constexpr std::string_view kStarters[] = {"command", "env", "exec", "nice", "nohup", "sudo", "xargs"};

bool isOneOf(std::span<const std::string_view> words, std::string_view word) {
    return std::ranges::find(words, word) != words.end();
}

bool endsWord(char c) {
    return std::string_view(" \t\r\n;&|()<>").find(c) != std::string_view::npos;
}

struct Word {
    std::string text;
    bool isKnown = true;   // no part depends on anything
    bool isQuoted = false; // and so no word of the shell itself
};

class LineReader {
public:
    LineReader(std::string_view line, int depth, std::vector<std::string>& found) : mLine(line), mDepth(depth), mFound(found) {}

    void read() {
        while (mAt < mLine.size() && !mHasEnded) {
            const char c = mLine[mAt];
            if (c == ' ' || c == '\t')
                ++mAt;
            else if (c == '#')
                mAt = std::min(mLine.find_first_of("\r\n", mAt), mLine.size());
            else if (c == '<' || c == '>')
                redirection();
            else if (endsWord(c))
                separator();
            else
                word();
        }
    }

    const std::vector<std::string>& functions() const { return mFunctions; }

private:
    void separator() {
        if (mIsStart && mLine.substr(mAt).starts_with("((")) { // arithmetic
            skipBehind("))");
            mIsStart = false;
            return;
        }
        mIsStart = mLine[mAt++] != ')';
        mIsBehindStarter = false;
    }

    /// Skips "> FILE", "2>&1" and their like.
    void redirection() {
        const std::string_view rest = mLine.substr(mAt);
        if (rest.starts_with("<<") && !rest.starts_with("<<<")) {
            mHasEnded = true;
            return;
        }
        mAt = std::min(mLine.find_first_not_of("<>&|", mAt), mLine.size());
        mAt = std::min(mLine.find_first_not_of(" \t", mAt), mLine.size());
        takeWord();
    }

    void word() {
        const Word word = takeWord();
        const char next = mAt < mLine.size() ? mLine[mAt] : '\0';
        const bool isNumber = !word.text.empty() && word.text.find_first_not_of("0123456789") == std::string::npos;
        if (!mIsStart || (isNumber && (next == '<' || next == '>')))
            return;
        if (isAssignment(word)) {
            if (next == '(' && word.text.ends_with('=')) // the items of an array
                skipBehind(")");
            return;
        }
        if (mLine.substr(mAt).starts_with("()")) {
            mFunctions.push_back(word.text);
            mAt += 2;
            return;
        }
        if (!word.isQuoted && word.text == "[[") {
            skipBehind("]]");
            mIsStart = false;
            return;
        }
        if (!word.isQuoted && word.text == "function") {
            mAt = std::min(mLine.find_first_not_of(" \t", mAt), mLine.size());
            mFunctions.push_back(takeWord().text);
            if (mLine.substr(mAt).starts_with("()"))
                mAt += 2;
            return;
        }
        if (!word.isQuoted && word.text == "case") {
            mHasEnded = true;
            return;
        }
        if (!word.isQuoted && isOneOf(kWordsBeforeCommands, word.text))
            return;
        mIsStart = false;
        if ((!word.isQuoted && isOneOf(kWordsWithoutCommand, word.text)) || (mIsBehindStarter && word.text.starts_with('-')))
            return;
        if (!word.isKnown || word.text.empty())
            return;
        mFound.push_back(word.text);
        mIsStart = mIsBehindStarter = isOneOf(kStarters, word.text);
    }

    void skipBehind(std::string_view end) {
        const std::size_t found = mLine.find(end, mAt);
        mAt = found == std::string_view::npos ? mLine.size() : found + end.size();
    }

    static bool isAssignment(const Word& word) {
        const std::size_t sign = word.text.find('=');
        return sign != 0 && sign != std::string::npos && !std::isdigit(static_cast<unsigned char>(word.text[0])) &&
               std::all_of(word.text.begin(), word.text.begin() + static_cast<std::ptrdiff_t>(sign),
                           [](unsigned char c) { return std::isalnum(c) || c == '_'; });
    }

    Word takeWord() {
        Word word;
        for (bool isInQuotes = false; mAt < mLine.size() && (isInQuotes || !endsWord(mLine[mAt]));) {
            const char c = mLine[mAt];
            if (c == '"') {
                isInQuotes = !isInQuotes;
                word.isQuoted = true;
                ++mAt;
            } else if (c == '\'' && !isInQuotes) {
                const std::size_t end = std::min(mLine.find('\'', mAt + 1), mLine.size());
                add(word, mLine.substr(mAt + 1, end - mAt - 1));
                word.isQuoted = true;
                mAt = std::min(end + 1, mLine.size());
            } else if (c == '\\') {
                add(word, mLine.substr(std::min(mAt + 1, mLine.size()), 1));
                word.isQuoted = true;
                mAt = std::min(mAt + 2, mLine.size());
            } else if (c == '$' || c == '`') {
                word.isKnown = false;
                substitution();
            } else {
                add(word, mLine.substr(mAt++, 1));
            }
        }
        return word;
    }

    static void add(Word& word, std::string_view text) {
        word.text += text;
        word.isKnown = word.isKnown && text.find(kUnknownPart) == std::string_view::npos;
    }

    /// Steps over "$", or over "$(…)" or "`…`" with the commands in it.
    void substitution() {
        const bool isOld = mLine[mAt] == '`';
        const bool isArithmetic = mLine.substr(mAt).starts_with("$((");
        if (!isOld && !mLine.substr(mAt).starts_with("$(")) {
            ++mAt;
            return;
        }
        mAt += isOld ? 1 : 2;
        const std::size_t start = mAt;
        for (int open = 1; mAt < mLine.size(); ++mAt) {
            const char c = mLine[mAt];
            open += isOld ? (c == '`' ? -1 : 0) : c == '(' ? 1 : c == ')' ? -1 : 0;
            if (open == 0)
                break;
        }
        if (!isArithmetic && mDepth < kDeepestSubstitution)
            LineReader(mLine.substr(start, mAt - start), mDepth + 1, mFound).read();
        mAt = std::min(mAt + 1, mLine.size());
    }

    std::string_view mLine;
    int mDepth;
    std::vector<std::string>& mFound;
    std::vector<std::string> mFunctions;
    std::size_t mAt = 0;
    bool mIsStart = true; // of a command
    bool mIsBehindStarter = false;
    bool mHasEnded = false;
};

bool isProgram(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error) && ::access(path.c_str(), X_OK) == 0;
}

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

/// The text without line ends behind a backslash, over which a line goes on.
std::string joined(std::string_view text) {
    std::string line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool goesOn = text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == '\n' || text[i + 1] == '\r');
        if (goesOn)
            ++i;
        else
            line += text[i];
    }
    return line;
}

} // namespace

std::vector<std::string> commandsIn(std::string_view text) {
    const std::string line = joined(text);
    std::vector<std::string> found;
    LineReader reader(line, 0, found);
    reader.read();
    std::erase_if(found,
                  [&](const std::string& command) { return std::ranges::find(reader.functions(), command) != reader.functions().end(); });
    return found;
}

bool isCommandHere(const std::string& command) {
    if (command.starts_with("~/"))
        return isProgram(variable("HOME") + command.substr(1));
    if (command.find('/') != std::string::npos)
        return command[0] != '/' || isProgram(command);
    if (isOneOf(kBuiltins, command))
        return true;
    std::istringstream folders(variable("PATH"));
    for (std::string folder; std::getline(folders, folder, ':');)
        if (isProgram(folder + "/" + command))
            return true;
    return false;
}

} // namespace quoddle::tool
