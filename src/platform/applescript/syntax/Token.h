// SPDX-License-Identifier: MIT
// Tokens, which the lexer makes of source text and the parser reads.
#pragma once

#include "platform/applescript/syntax/Keyword.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quoddle::syntax {

enum class TokenKind : std::uint8_t {
    End, // of the script
    Newline,
    Comment,     // `text` without its marks; `comment` says which
    Word,        // `word`
    BarredWord,  // |any characters|
    Integer,     // `number`, a whole number in the range of integers
    Real,        // `number`
    Ordinal,     // 1st, 2nd: `number`
    Text,        // `text` with its escapes resolved
    RawCode,     // «…»: `text` between the chevrons
    Symbol,      // `symbol`
    PossessiveS, // 's
    Bad,         // `text` says what was expected here; it is empty for an unknown token
};

enum class CommentKind : std::uint8_t { Block, Dashes, Hash };

enum class Symbol : std::uint8_t {
    None,
    LeftParen,
    RightParen,
    LeftBrace,
    RightBrace,
    LeftBracket,
    RightBracket,
    Comma,
    Colon,
    Plus,
    Minus,
    Times,
    Divide,
    Power,
    Ampersand,
    Equal,
    NotEqual,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
};

/// A word or barred word, apart from the case of its letters. A script has one Word for all its tokens that are the same word.
struct Word {
    std::string key;              // UTF-8; lower case, unless the word is in bars and has capitals
    std::u16string_view spelling; // that of the first token
    Keyword keyword = Keyword::None;
    bool barred = false;
};

struct Token {
    TokenKind kind = TokenKind::End;
    CommentKind comment = CommentKind::Block;
    Symbol symbol = Symbol::None;
    Keyword keyword = Keyword::None; // None unless `kind` is Word and the word a keyword
    /// Whether a continuation mark stands between the token before and this one.
    bool afterBreak = false;
    std::uint32_t start = 0; // UTF-16 units of the source
    std::uint32_t end = 0;
    const Word* word = nullptr;
    double number = 0;
    std::u16string_view text;
};

} // namespace quoddle::syntax
