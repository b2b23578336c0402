// SPDX-License-Identifier: MIT
// The reserved words, and those that may label parameters. One list: the lexer marks the words, the parser asks for them, the printer puts
// bars around identifiers that are spelled like one.
#pragma once

#include "platform/base/FourCharCode.h"

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace quoddle::syntax {

// name, spelling, use
// clang-format off
#define QUODDLE_KEYWORDS(X) \
    X(A, "a", Free) X(About, "about", Reserved) X(Above, "above", Reserved) X(After, "after", Starts) X(Against, "against", Reserved) \
    X(An, "an", Free) X(And, "and", Reserved) X(Apart, "apart", Free) X(App, "app", Starts) X(Around, "around", Reserved) X(As, "as", Reserved) \
    X(Aside, "aside", Free) X(At, "at", Reserved) X(Back, "back", Picks) X(Before, "before", Starts) \
    X(Beginning, "beginning", Starts) X(Begins, "begins", Reserved) X(Begin, "begin", Reserved) X(Behind, "behind", Starts) X(Below, "below", Reserved) \
    X(Beneath, "beneath", Reserved) X(Beside, "beside", Reserved) X(Between, "between", Reserved) X(But, "but", Reserved) X(By, "by", Reserved) \
    X(Come, "come", Free) X(Comes, "comes", Free) X(Considering, "considering", Reserved) X(Contain, "contain", Reserved) \
    X(Contained, "contained", Free) X(Contains, "contains", Reserved) X(Continue, "continue", Starts) X(Copy, "copy", Reserved) \
    X(Div, "div", Reserved) X(Does, "does", Reserved) X(Doesnt, "doesn't", Reserved) X(Eighth, "eighth", Picks) X(Else, "else", Reserved) \
    X(End, "end", Reserved) X(Ends, "ends", Reserved) X(Equal, "equal", Reserved) X(Equals, "equals", Reserved) X(Error, "error", Reserved) X(Every, "every", Picks) \
    X(Exit, "exit", Reserved) X(Fifth, "fifth", Picks) X(First, "first", Picks) X(For, "for", Reserved) X(Fourth, "fourth", Picks) \
    X(From, "from", Reserved) X(Front, "front", Picks) X(Get, "get", Starts) X(Given, "given", Reserved) X(Global, "global", Reserved) \
    X(Greater, "greater", Free) X(If, "if", Reserved) X(Ignoring, "ignoring", Reserved) X(In, "in", Reserved) X(Instead, "instead", Free) \
    X(Into, "into", Reserved) X(Is, "is", Reserved) X(Isnt, "isn't", Reserved) X(It, "it", Starts) X(Its, "its", Starts) X(Last, "last", Picks) \
    X(Less, "less", Free) X(Local, "local", Reserved) X(Me, "me", Starts) X(Middle, "middle", Picks) X(Mod, "mod", Reserved) X(My, "my", Starts) \
    X(Named, "named", Reserved) X(Ninth, "ninth", Picks) X(Not, "not", Starts) X(Of, "of", Reserved) X(On, "on", Reserved) X(Onto, "onto", Reserved) \
    X(Or, "or", Reserved) X(Out, "out", Free) X(Over, "over", Reserved) X(Prop, "prop", Reserved) X(Property, "property", Starts) X(Put, "put", Reserved) \
    X(Ref, "ref", Starts) X(Reference, "reference", Starts) X(Repeat, "repeat", Reserved) X(Return, "return", Starts) \
    X(Returning, "returning", Reserved) X(Script, "script", Starts) X(Second, "second", Picks) X(Set, "set", Reserved) X(Seventh, "seventh", Picks) \
    X(Since, "since", Reserved) X(Sixth, "sixth", Picks) X(Some, "some", Picks) X(Start, "start", Free) X(Starts, "starts", Reserved) \
    X(Tell, "tell", Reserved) X(Tenth, "tenth", Picks) X(Terms, "terms", Free) X(Than, "than", Free) X(That, "that", Reserved) X(The, "the", Starts) \
    X(Then, "then", Reserved) X(Third, "third", Picks) X(Through, "through", Reserved) X(Thru, "thru", Reserved) X(Timeout, "timeout", Reserved) \
    X(Times, "times", Reserved) X(To, "to", Reserved) X(Transaction, "transaction", Reserved) X(Try, "try", Reserved) X(Under, "under", Reserved) \
    X(Until, "until", Reserved) X(Use, "use", Reserved) X(Using, "using", Reserved) X(Where, "where", Reserved) X(While, "while", Reserved) \
    X(Whose, "whose", Reserved) X(With, "with", Reserved) X(Without, "without", Reserved)
// clang-format on

enum class Keyword : std::uint8_t {
    None,
#define QUODDLE_KEYWORD(name, spelling, use) name,
    QUODDLE_KEYWORDS(QUODDLE_KEYWORD)
#undef QUODDLE_KEYWORD
};

enum class KeywordUse : std::uint8_t {
    Free,     // may also be an identifier
    Reserved, // may be an identifier only in bars; so may Starts and Picks
    Starts,   // reserved, and can begin an operand
    Picks,    // reserved, and begins an operand with a class behind: every, first, back
};

/// Keyword::None when `word` (lower case) is no keyword.
Keyword keywordOf(std::string_view word);
KeywordUse useOf(Keyword keyword);
inline bool isReserved(Keyword keyword) {
    return useOf(keyword) != KeywordUse::Free;
}
std::string_view spellingOf(Keyword keyword);
/// All keywords, in lower case.
std::vector<std::string_view> keywords();

struct Preposition {
    std::array<Keyword, 2> words; // the second is None for a preposition of one word
    FourCharCode code;
    std::string_view spelling;
};

std::span<const Preposition> prepositions();

/// The words of a preposition; empty when the code is not one's.
std::string_view prepositionOf(FourCharCode code);

} // namespace quoddle::syntax
