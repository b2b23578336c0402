// SPDX-License-Identifier: MIT
// Cuts source text into tokens.
//
// Decision: the whole text is cut at once and words are interned, so that the parser may look ahead at no cost and compares pointers and
// numbers. The lexer knows no terminology, so terms of several words are several tokens. The lexer never fails: text that is no token
// becomes a token of kind Bad, and the parser says what it expected there.
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

/// Tokens and what they point to. Some texts point into the source, which must outlive the list.
struct TokenList {
    std::vector<Token> tokens; // the last one is of kind End
    std::deque<Word> words;
    std::deque<std::u16string> texts;
    std::unordered_map<std::u16string, Word*, StringHash, std::equal_to<>> index;
};

std::unique_ptr<TokenList> tokenize(std::u16string_view source);

} // namespace quoddle::syntax
