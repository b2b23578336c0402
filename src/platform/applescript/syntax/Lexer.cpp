// SPDX-License-Identifier: MIT
#include "platform/applescript/syntax/Lexer.h"

#include "platform/base/Text.h"

#include <cmath>
#include <cstdlib>
#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

namespace quoddle::syntax {

namespace {

constexpr double kMaxInteger = 536870911; // larger whole numbers are reals
constexpr char16_t kContinuation = 0xAC;
constexpr char16_t kCurlyApostrophe = 0x2019;

bool isDigit(char16_t c) {
    return c >= '0' && c <= '9';
}

bool isApostrophe(char16_t c) {
    return c == '\'' || c == kCurlyApostrophe;
}

bool isBlank(char16_t c) {
    return c == ' ' || c == '\t' || c == '\v' || c == '\f' || c == 0xA0 || c == 0x3000 || c == 0xFEFF || c == 0x200B || c == 0x202F ||
           (c >= 0x2000 && c <= 0x200A);
}

bool isLineEnd(char16_t c) {
    return c == '\n' || c == '\r' || c == 0x2028 || c == 0x2029;
}

class Lexer {
public:
    Lexer(std::u16string_view source, TokenList& list) : mSource(source), mList(list) {}

    void run() {
        mList.tokens.reserve(mSource.size() / 5 + 8);
        while (mAt < mSource.size())
            next();
        Token& end = add(TokenKind::End, mSource.size(), mSource.size());
        end.afterBreak = false;
    }

private:
    char16_t peek(std::size_t ahead = 0) const { return mAt + ahead < mSource.size() ? mSource[mAt + ahead] : u'\0'; }

    Token& add(TokenKind kind, std::size_t start, std::size_t end) {
        Token& token = mList.tokens.emplace_back();
        token.kind = kind;
        token.start = static_cast<std::uint32_t>(start);
        token.end = static_cast<std::uint32_t>(end);
        token.afterBreak = std::exchange(mAfterBreak, false);
        return token;
    }

    /// Reads one token or a stretch of blanks.
    void next() {
        char16_t c = peek();
        if (isBlank(c))
            ++mAt;
        else if (isLineEnd(c))
            newline();
        else if (c == kContinuation)
            continuation();
        else if (c == '#' || (c == '-' && peek(1) == '-'))
            lineComment();
        else if (c == '(' && peek(1) == '*')
            blockComment();
        else if (isDigit(c) || (c == '.' && isDigit(peek(1))))
            number();
        else if (c == '"')
            text();
        else if (c == '|')
            barredWord();
        else if (c == u'«')
            rawCode();
        else if (std::size_t length = letterAt(mAt, true))
            word(length);
        else if (isApostrophe(c) && (peek(1) == 's' || peek(1) == 'S') && !letterAt(mAt + 2, false)) {
            add(TokenKind::PossessiveS, mAt, mAt + 2);
            mAt += 2;
        } else
            symbol();
    }

    void newline() {
        std::size_t start = mAt;
        mAt += peek() == '\r' && peek(1) == '\n' ? 2 : 1;
        add(TokenKind::Newline, start, mAt);
    }

    /// Reads a continuation mark, and the rest of its line when that is only blanks or a comment. Such a comment is dropped, because no
    /// node could keep it.
    void continuation() {
        std::size_t mark = mAt++;
        while (isBlank(peek()))
            ++mAt;
        if (peek() == '#' || (peek() == '-' && peek(1) == '-')) {
            while (mAt < mSource.size() && !isLineEnd(peek()))
                ++mAt;
        }
        if (mAt < mSource.size() && !isLineEnd(peek())) {
            add(TokenKind::Bad, mark, mark + 1);
            return;
        }
        if (mAt < mSource.size())
            mAt += peek() == '\r' && peek(1) == '\n' ? 2 : 1;
        mAfterBreak = true;
    }

    void lineComment() {
        std::size_t start = mAt;
        bool hash = peek() == '#';
        mAt += hash ? 1 : 2;
        std::size_t content = mAt;
        while (mAt < mSource.size() && !isLineEnd(peek()))
            ++mAt;
        Token& token = add(TokenKind::Comment, start, mAt);
        token.comment = hash ? CommentKind::Hash : CommentKind::Dashes;
        token.text = mSource.substr(content, mAt - content);
    }

    void blockComment() {
        std::size_t start = mAt;
        std::size_t depth = 0;
        do {
            bool opens = peek() == '(' && peek(1) == '*';
            bool closes = peek() == '*' && peek(1) == ')';
            depth += opens;
            depth -= closes;
            mAt += opens || closes ? 2 : 1;
        } while (depth > 0 && mAt < mSource.size());
        if (depth > 0) {
            bad(start, std::min(mAt, mSource.size()), u"“*)”");
            return;
        }
        Token& token = add(TokenKind::Comment, start, mAt);
        token.text = mSource.substr(start + 2, mAt - start - 4);
    }

    void bad(std::size_t start, std::size_t end, std::u16string_view expected = {}) {
        add(TokenKind::Bad, start, end).text = expected;
        mAt = end;
    }

    void number() {
        std::size_t start = mAt;
        bool real = false;
        auto digits = [this] {
            while (isDigit(peek()))
                ++mAt;
        };
        digits();
        if (peek() == '.' && isDigit(peek(1))) {
            real = true;
            ++mAt;
            digits();
        } else if (peek() == '.' && !letterAt(mAt + 1, true)) {
            real = true;
            ++mAt;
        }
        if (peek() == 'e' || peek() == 'E') {
            std::size_t sign = peek(1) == '+' || peek(1) == '-' ? 1 : 0;
            if (isDigit(peek(1 + sign))) {
                real = true;
                mAt += 1 + sign;
                digits();
            }
        }
        std::string ascii(mSource.begin() + static_cast<std::ptrdiff_t>(start), mSource.begin() + static_cast<std::ptrdiff_t>(mAt));
        double value = std::strtod(ascii.c_str(), nullptr);
        if (!std::isfinite(value)) {
            bad(start, mAt);
            return;
        }
        bool ordinal = !real && ordinalSuffix();
        mAt += ordinal ? 2 : 0;
        TokenKind kind = ordinal ? TokenKind::Ordinal : real || value > kMaxInteger ? TokenKind::Real : TokenKind::Integer;
        add(kind, start, mAt).number = value;
    }

    bool ordinalSuffix() const {
        auto lower = [](char16_t c) { return static_cast<char16_t>(c | 0x20); };
        char16_t a = lower(peek()), b = lower(peek(1));
        bool suffix = (a == 's' && b == 't') || (a == 'n' && b == 'd') || (a == 'r' && b == 'd') || (a == 't' && b == 'h');
        return suffix && !letterAt(mAt + 2, false);
    }

    void text() {
        std::size_t start = mAt++;
        std::size_t plain = mAt;
        while (mAt < mSource.size() && peek() != '"' && peek() != '\\')
            ++mAt;
        if (peek() == '"') {
            add(TokenKind::Text, start, mAt + 1).text = mSource.substr(plain, mAt - plain);
            ++mAt;
            return;
        }
        std::u16string content(mSource.substr(plain, mAt - plain));
        while (mAt < mSource.size() && peek() != '"') {
            char16_t c = peek();
            if (c == '\\') {
                c = escaped(peek(1));
                if (!c) {
                    add(TokenKind::Bad, mAt, mAt + 1).text = u"“\"”";
                    mAt = mSource.size();
                    return;
                }
                ++mAt;
            }
            content += c;
            ++mAt;
        }
        if (mAt >= mSource.size()) {
            bad(start, mSource.size(), u"“\"”");
            return;
        }
        ++mAt;
        add(TokenKind::Text, start, mAt).text = mList.texts.emplace_back(std::move(content));
    }

    static char16_t escaped(char16_t c) {
        switch (c) {
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        case '"':
        case '\\':
            return c;
        default:
            return 0;
        }
    }

    void barredWord() {
        std::size_t start = mAt++;
        std::u16string name;
        while (mAt < mSource.size() && peek() != '|' && !isLineEnd(peek())) {
            if (peek() == '\\' && (peek(1) == '|' || peek(1) == '\\'))
                ++mAt;
            name += peek();
            ++mAt;
        }
        if (peek() != '|' || name.empty()) {
            bad(start, std::min(mAt, mSource.size()), u"“|”");
            return;
        }
        ++mAt;
        // The case of an identifier in bars matters as soon as it has capitals.
        Word* word = intern(name, u'|' + name);
        word->barred = true;
        add(TokenKind::BarredWord, start, mAt).word = word;
    }

    void rawCode() {
        std::size_t start = mAt++;
        while (mAt < mSource.size() && peek() != u'»' && !isLineEnd(peek()))
            ++mAt;
        if (peek() != u'»') {
            bad(start, std::min(mAt, mSource.size()), u"“»”");
            return;
        }
        ++mAt;
        add(TokenKind::RawCode, start, mAt).text = mSource.substr(start + 1, mAt - start - 2);
    }

    /// The length of the letter at `at` (or, unless `first`, of the digit or underscore); 0 when there is none.
    std::size_t letterAt(std::size_t at, bool first) const {
        if (at >= mSource.size())
            return 0;
        char16_t c = mSource[at];
        if (c < 0x80)
            return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || (!first && isDigit(c)) ? 1 : 0;
        UChar32 point = c;
        std::size_t length = 1;
        if (U16_IS_LEAD(c) && at + 1 < mSource.size() && U16_IS_TRAIL(mSource[at + 1])) {
            point = U16_GET_SUPPLEMENTARY(c, mSource[at + 1]);
            length = 2;
        }
        return u_isalpha(point) || (!first && u_charType(point) == U_NON_SPACING_MARK) ? length : 0;
    }

    void word(std::size_t length) {
        std::size_t start = mAt;
        mAt += length;
        while (std::size_t more = letterAt(mAt, false))
            mAt += more;
        // The apostrophe of isn't and doesn't is part of the word.
        if (isApostrophe(peek()) && (peek(1) == 't' || peek(1) == 'T') && (mSource[mAt - 1] | 0x20) == 'n' && !letterAt(mAt + 2, false))
            mAt += 2;
        std::u16string_view spelling = mSource.substr(start, mAt - start);
        Word* word = intern(spelling, folded(spelling));
        Token& token = add(TokenKind::Word, start, mAt);
        token.word = word;
        token.keyword = word->keyword;
    }

    static std::u16string folded(std::u16string_view name) {
        std::u16string key(name);
        bool ascii = true;
        for (char16_t& c : key) {
            ascii = ascii && c < 0x80;
            if (c >= 'A' && c <= 'Z')
                c = static_cast<char16_t>(c + 32);
            else if (c == kCurlyApostrophe)
                c = '\'';
        }
        if (ascii)
            return key;
        std::u16string lower(key.size() * 3, u'\0');
        UErrorCode status = U_ZERO_ERROR;
        std::int32_t length = u_strToLower(lower.data(), static_cast<std::int32_t>(lower.size()), key.data(),
                                           static_cast<std::int32_t>(key.size()), "", &status);
        lower.resize(U_FAILURE(status) ? 0 : static_cast<std::size_t>(length));
        return lower;
    }

    Word* intern(std::u16string_view spelling, std::u16string key) {
        auto [at, isNew] = mList.index.try_emplace(std::move(key), nullptr);
        if (isNew) {
            Word& word = mList.words.emplace_back();
            bool barred = at->first[0] == '|';
            word.key = utf8FromUTF16(barred ? std::u16string_view(at->first).substr(1) : std::u16string_view(at->first));
            word.spelling = barred ? mList.texts.emplace_back(spelling) : spelling;
            word.keyword = barred ? Keyword::None : keywordOf(word.key);
            at->second = &word;
        }
        return at->second;
    }

    void symbol() {
        struct Row {
            char16_t first, second;
            Symbol symbol;
        };
        static constexpr Row kRows[] = {{'<', '=', Symbol::LessOrEqual},
                                        {'>', '=', Symbol::GreaterOrEqual},
                                        {'/', '=', Symbol::NotEqual},
                                        {'(', 0, Symbol::LeftParen},
                                        {')', 0, Symbol::RightParen},
                                        {'{', 0, Symbol::LeftBrace},
                                        {'}', 0, Symbol::RightBrace},
                                        {'[', 0, Symbol::LeftBracket},
                                        {']', 0, Symbol::RightBracket},
                                        {',', 0, Symbol::Comma},
                                        {':', 0, Symbol::Colon},
                                        {'+', 0, Symbol::Plus},
                                        {'-', 0, Symbol::Minus},
                                        {0x2212, 0, Symbol::Minus},
                                        {0x2013, 0, Symbol::Minus},
                                        {'*', 0, Symbol::Times},
                                        {0xD7, 0, Symbol::Times},
                                        {'/', 0, Symbol::Divide},
                                        {0xF7, 0, Symbol::Divide},
                                        {'^', 0, Symbol::Power},
                                        {'&', 0, Symbol::Ampersand},
                                        {'=', 0, Symbol::Equal},
                                        {0x2260, 0, Symbol::NotEqual},
                                        {'<', 0, Symbol::Less},
                                        {0x2264, 0, Symbol::LessOrEqual},
                                        {'>', 0, Symbol::Greater},
                                        {0x2265, 0, Symbol::GreaterOrEqual}};
        for (const Row& row : kRows) {
            if (peek() != row.first || (row.second && peek(1) != row.second))
                continue;
            std::size_t length = row.second ? 2 : 1;
            add(TokenKind::Symbol, mAt, mAt + length).symbol = row.symbol;
            mAt += length;
            return;
        }
        bad(mAt, mAt + 1);
    }

    std::u16string_view mSource;
    TokenList& mList;
    std::size_t mAt = 0;
    bool mAfterBreak = false;
};

} // namespace

std::unique_ptr<TokenList> tokenize(std::u16string_view source) {
    auto list = std::make_unique<TokenList>();
    Lexer(source, *list).run();
    return list;
}

} // namespace quoddle::syntax
