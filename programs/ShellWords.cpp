// SPDX-License-Identifier: MIT
#include "ShellWords.h"

#include <algorithm>
#include <cctype>
#include <span>

namespace quoddle::tool {

namespace {

constexpr int kDeepest = 20; // lines within lines

constexpr std::string_view kWordsBeforeCommands[] = {"!", "{", "if", "then", "elif", "else", "do", "while", "until", "coproc"};
constexpr std::string_view kWordsWithoutCommand[] = {"}", "fi", "done", "esac", "for", "select"};
constexpr std::string_view kShells[] = {"bash", "csh", "dash", "ksh", "sh", "tcsh", "zsh"};
constexpr std::string_view kActionsOfFind[] = {"-exec", "-execdir", "-ok", "-okdir"};

/// A command that starts the one behind it.
struct Starter {
    std::string_view name;
    std::string_view optionsWithValue; // letters, where the value is a word of its own
    int wordsInFront = 0;              // of the command that is started, which belong to the starter
};
constexpr Starter kStarters[] = {{"caffeinate", "tw"},    {"command", ""}, {"doas", "uC"},       {"env", "uSC"},          {"exec", "a"},
                                 {"ionice", "cnpPu"},     {"nice", "n"},   {"nohup", ""},        {"setsid", ""},          {"stdbuf", "ioe"},
                                 {"sudo", "ugUpCrthDRT"}, {"time", "fo"},  {"timeout", "ks", 1}, {"xargs", "EILnPsdaJRS"}};

bool isOneOf(std::span<const std::string_view> words, std::string_view word) {
    return std::ranges::find(words, word) != words.end();
}

bool endsWord(char c) {
    return std::string_view(" \t\n;&|()<>").find(c) != std::string_view::npos;
}

bool isKnown(std::string_view text) {
    return text.find(kUnknownPart) == std::string_view::npos;
}

std::string_view withoutFolder(std::string_view command) {
    return command.substr(command.rfind('/') + 1);
}

struct Word {
    std::string text;      // with kUnknownPart where a part depends on anything
    bool isQuoted = false; // and so no word of the shell itself
};

struct Commands {
    std::vector<std::string> found, functions;
};

class LineReader {
public:
    LineReader(std::string_view line, int depth, Commands& commands) : mLine(line), mDepth(depth), mCommands(commands) {}

    /// Reads the line to its end, or to a ")" that nothing in it has opened; answers where that is.
    std::size_t read() {
        while (mAt < mLine.size()) {
            const char c = mLine[mAt];
            if (c == ' ' || c == '\t')
                ++mAt;
            else if (c == '#')
                mAt = std::min(mLine.find('\n', mAt), mLine.size());
            else if (c == '<' || c == '>')
                redirection();
            else if (c == ')' && mOpen == 0)
                return mAt;
            else if (endsWord(c))
                separator();
            else
                word();
        }
        return mAt;
    }

    /// Reads a text in which there are no commands other than those in substitutions.
    void readText() {
        while (mAt < mLine.size()) {
            if (mLine[mAt] == '\\')
                mAt += 2;
            else if (mLine[mAt] == '$' || mLine[mAt] == '`')
                substitution();
            else
                ++mAt;
        }
    }

private:
    /// The readers of the words behind a command, apart from the command itself.
    enum class Taker { Nobody, Starter, Shell, Eval, Find };
    struct HereDocument {
        std::string end;
        bool isIndented, isLiteral;
    };

    void separator() {
        const std::string_view rest = mLine.substr(mAt);
        mTaker = Taker::Nobody;
        if (mIsStart && rest.starts_with("((")) { // arithmetic
            skipBehind("))");
            mIsStart = false;
            return;
        }
        if (mCases > 0 && (rest.starts_with(";;") || rest.starts_with(";&"))) {
            mAt += rest.starts_with(";;&") ? 3 : 2;
            pattern();
            return;
        }
        const char c = mLine[mAt++];
        mOpen += c == '(' ? 1 : c == ')' ? -1 : 0;
        mIsStart = c != ')';
        if (c == '\n')
            skipHereDocuments();
    }

    /// Skips "> FILE", "2>&1" and their like.
    void redirection() {
        const std::string_view rest = mLine.substr(mAt);
        const bool isHereDocument = rest.starts_with("<<") && !rest.starts_with("<<<");
        const bool isIndented = isHereDocument && rest.starts_with("<<-");
        mAt += isIndented ? 3 : 0;
        mAt = std::min(mLine.find_first_not_of("<>&|", mAt), mLine.size());
        skipBlanks();
        const Word word = takeWord();
        if (isHereDocument)
            mHereDocuments.push_back({word.text, isIndented, word.isQuoted});
    }

    /// Skips the texts that were announced in the line before, one after the other.
    void skipHereDocuments() {
        for (const HereDocument& document : mHereDocuments) {
            const std::size_t start = mAt;
            std::size_t end = mAt;
            for (bool hasEnded = false; mAt < mLine.size() && !hasEnded;) {
                end = mAt;
                const std::size_t lineEnd = std::min(mLine.find('\n', mAt), mLine.size());
                std::string_view line = mLine.substr(mAt, lineEnd - mAt);
                while (document.isIndented && line.starts_with('\t'))
                    line.remove_prefix(1);
                hasEnded = line == document.end;
                mAt = std::min(lineEnd + 1, mLine.size());
            }
            if (!document.isLiteral && mDepth < kDeepest)
                LineReader(mLine.substr(start, end - start), mDepth + 1, mCommands).readText();
        }
        mHereDocuments.clear();
    }

    void word() {
        const Word word = takeWord();
        const char next = mAt < mLine.size() ? mLine[mAt] : '\0';
        const bool isNumber = !word.text.empty() && word.text.find_first_not_of("0123456789") == std::string::npos;
        if (isNumber && (next == '<' || next == '>'))
            return;
        if (!mIsStart) {
            argument(word);
            return;
        }
        if (isAssignment(word)) {
            if (next == '(' && word.text.ends_with('=')) // the items of an array
                skipBehind(")");
            return;
        }
        if (mTaker == Taker::Starter && isOfStarter(word))
            return;
        if (mTaker == Taker::Nobody && (isFunction(word) || (!word.isQuoted && isKeyword(word.text))))
            return;
        command(word.text);
    }

    bool isFunction(const Word& word) {
        std::string name = word.text;
        const bool isAnnounced = !word.isQuoted && name == "function";
        if (isAnnounced) {
            skipBlanks();
            name = takeWord().text;
        }
        const std::size_t sign = std::min(mLine.find_first_not_of(" \t", mAt), mLine.size());
        const bool hasSign = mLine.substr(sign).starts_with("()");
        if (hasSign)
            mAt = sign + 2;
        if (isAnnounced || hasSign)
            mCommands.functions.push_back(name);
        return isAnnounced || hasSign;
    }

    /// Whether the word is one of the shell's own, which is followed in the line then.
    bool isKeyword(std::string_view word) {
        if (isOneOf(kWordsBeforeCommands, word))
            return true;
        if (word == "[[") {
            skipBehind("]]");
            mIsStart = false;
            return true;
        }
        if (word == "case") {
            skipBlanks();
            takeWord();
            mAt = std::min(mLine.find_first_not_of(" \t\n", mAt), mLine.size());
            ++mCases;
            if (takeWord().text == "in")
                pattern();
            return true;
        }
        if (!isOneOf(kWordsWithoutCommand, word))
            return false;
        mCases -= word == "esac" && mCases > 0;
        mIsStart = false;
        return true;
    }

    /// Skips "PATTERN | PATTERN)" in front of a branch of a "case", or the end of it all.
    void pattern() {
        mIsStart = true;
        while (mAt < mLine.size()) {
            mAt = std::min(mLine.find_first_not_of(" \t\n(|", mAt), mLine.size());
            if (mAt == mLine.size())
                return;
            if (mLine[mAt] == '#') {
                mAt = std::min(mLine.find('\n', mAt), mLine.size());
            } else if (mLine[mAt] == ')') {
                ++mAt;
                return;
            } else if (endsWord(mLine[mAt])) {
                ++mAt; // no shell takes it
            } else if (const Word word = takeWord(); !word.isQuoted && word.text == "esac") {
                --mCases;
                mIsStart = false;
                return;
            }
        }
    }

    void command(const std::string& text) {
        mIsStart = false;
        mTaker = Taker::Nobody;
        if (!isKnown(text) || text.empty())
            return;
        mCommands.found.push_back(text);
        const std::string_view name = withoutFolder(text);
        const auto starter = std::ranges::find(kStarters, name, &Starter::name);
        mHasText = false;
        if (starter != std::end(kStarters)) {
            mIsStart = true;
            mTaker = Taker::Starter;
            mStarter = starter;
            mWordsInFront = starter->wordsInFront;
            mSkipsWord = mIsBehindOptions = false;
        } else if (isOneOf(kShells, name)) {
            mTaker = Taker::Shell;
            mSkipsWord = false;
        } else if (name == "eval" || name == "find") {
            mTaker = name == "eval" ? Taker::Eval : Taker::Find;
        }
    }

    /// Whether the word belongs to a command that starts another one, and not to that other.
    bool isOfStarter(const Word& word) {
        const std::string& text = word.text;
        if (mSkipsWord) {
            mSkipsWord = false;
            return true;
        }
        if (!mIsBehindOptions && text.size() > 1 && text[0] == '-') {
            mIsBehindOptions = text == "--";
            mSkipsWord = text[1] != '-' && mStarter->optionsWithValue.find(text.back()) != std::string_view::npos;
            const bool onlyAsks = mStarter->name == "command" && text.find_first_of("vV") != std::string::npos;
            // An unknown long option may have taken the next word.
            const bool isDoubtful = text.size() > 2 && text[1] == '-' && text.find('=') == std::string::npos;
            if (onlyAsks || isDoubtful) {
                mIsStart = false;
                mTaker = Taker::Nobody;
            }
            return true;
        }
        mIsBehindOptions = true;
        return mWordsInFront-- > 0;
    }

    /// Looks at a word behind a command.
    void argument(const Word& word) {
        const std::string& text = word.text;
        if (mTaker == Taker::Find) {
            mIsStart = isOneOf(kActionsOfFind, text);
        } else if (mTaker == Taker::Eval) {
            readLine(text);
            mTaker = Taker::Nobody;
        } else if (mTaker == Taker::Shell) {
            if (mSkipsWord) {
                mSkipsWord = false;
            } else if (text == "--" && !mHasText) {
                mTaker = Taker::Nobody; // a file is next
            } else if (text.size() > 1 && (text[0] == '-' || text[0] == '+')) {
                mHasText = mHasText || (text[0] == '-' && text[1] != '-' && text.find('c') != std::string::npos);
                mSkipsWord = text[1] != '-' && (text.ends_with('o') || text.ends_with('O'));
            } else {
                if (mHasText)
                    readLine(text);
                mTaker = Taker::Nobody;
            }
        }
    }

    void readLine(std::string_view line) {
        if (mDepth < kDeepest)
            LineReader(line, mDepth + 1, mCommands).read();
    }

    void skipBlanks() { mAt = std::min(mLine.find_first_not_of(" \t", mAt), mLine.size()); }

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
                word.text += mLine.substr(mAt + 1, end - mAt - 1);
                word.isQuoted = true;
                mAt = std::min(end + 1, mLine.size());
            } else if (c == '\\') {
                const std::string_view next = mLine.substr(mAt + 1, 1);
                if (isInQuotes && next.find_first_of("$`\"\\") == std::string_view::npos)
                    word.text += c;
                word.text += next;
                word.isQuoted = true;
                mAt = std::min(mAt + 2, mLine.size());
            } else if (c == '$' || c == '`') {
                word.text += kUnknownPart;
                substitution();
            } else {
                word.text += c;
                ++mAt;
            }
        }
        return word;
    }

    /// Steps over "$", or over "$(…)" or "`…`" with the commands in it.
    void substitution() {
        if (mLine[mAt] == '`') {
            std::string text;
            for (++mAt; mAt < mLine.size() && mLine[mAt] != '`'; ++mAt) {
                const bool isEscape = mLine[mAt] == '\\' && mAt + 1 < mLine.size();
                mAt += isEscape && std::string_view("$`\\").find(mLine[mAt + 1]) != std::string_view::npos;
                text += mLine[mAt];
            }
            readLine(text);
            mAt = std::min(mAt + 1, mLine.size());
            return;
        }
        const bool isArithmetic = mLine.substr(mAt).starts_with("$((");
        const bool hasCommands = mLine.substr(mAt).starts_with("$(") && !isArithmetic;
        mAt += hasCommands ? 2 : 1;
        if (hasCommands && mDepth < kDeepest)
            mAt += LineReader(mLine.substr(mAt), mDepth + 1, mCommands).read();
        else if (hasCommands || isArithmetic)
            skipBehindParentheses(hasCommands ? 1 : 0);
        if (hasCommands)
            mAt = std::min(mAt + 1, mLine.size());
    }

    /// `open`: the parentheses in front. Ends at the last that closes, or behind it when there were none in front.
    void skipBehindParentheses(int open) {
        const bool endsBehind = open == 0;
        for (; mAt < mLine.size(); ++mAt) {
            open += mLine[mAt] == '(' ? 1 : mLine[mAt] == ')' ? -1 : 0;
            if (open == 0)
                break;
        }
        mAt = std::min(mAt + (endsBehind ? 1 : 0), mLine.size());
    }

    std::string_view mLine;
    int mDepth;
    Commands& mCommands;
    std::vector<HereDocument> mHereDocuments; // that begin in the next line
    std::size_t mAt = 0;
    int mOpen = 0; // parentheses
    int mCases = 0;
    bool mIsStart = true; // of a command
    Taker mTaker = Taker::Nobody;
    const Starter* mStarter = nullptr;
    int mWordsInFront = 0;
    bool mSkipsWord = false, mIsBehindOptions = false, mHasText = false;
};

/// The text with line feeds as line ends, and without those behind a backslash, over which a line goes on.
std::string joined(std::string_view text) {
    std::string line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isLineEnd = text[i] == '\r' || text[i] == '\n';
        i += text.substr(i).starts_with("\r\n");
        if (isLineEnd && line.ends_with('\\'))
            line.pop_back();
        else
            line += isLineEnd ? '\n' : text[i];
    }
    return line;
}

} // namespace

std::vector<std::string> commandsIn(std::string_view text) {
    const std::string line = joined(text);
    Commands commands;
    for (std::size_t at = 0; at < line.size(); ++at) // behind a ")" that nothing has opened
        at += LineReader(std::string_view(line).substr(at), 0, commands).read();
    std::erase_if(commands.found,
                  [&](const std::string& command) { return std::ranges::find(commands.functions, command) != commands.functions.end(); });
    return std::move(commands.found);
}

} // namespace quoddle::tool
