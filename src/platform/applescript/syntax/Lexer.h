// SPDX-License-Identifier: MIT
// Cuts source text into tokens.
//
// Decision: the whole text is cut at once and words are interned, so that the parser may look ahead at no cost and compares pointers and
// numbers. Terms of several words are not the lexer's: it knows no terminology. It never fails; what is no token becomes one of kind Bad,
// for the parser to say what it expected there.
#pragma once

#include "platform/applescript/syntax/Token.h"

#include <deque>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quoddle::syntax {

struct StringHash {
    using is_transparent = void;
    std::size_t operator()(std::u16string_view text) const { return std::hash<std::u16string_view>()(text); }
};

/// Tokens and what they point to. Texts may point into the source, which must live as long.
struct TokenList {
    std::vector<Token> tokens; // ends with one of kind End
    std::deque<Word> words;
    std::deque<std::u16string> texts;
    std::unordered_map<std::u16string, Word*, StringHash, std::equal_to<>> index;
};

std::unique_ptr<TokenList> tokenize(std::u16string_view source);

} // namespace quoddle::syntax
