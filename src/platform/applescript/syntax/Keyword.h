// SPDX-License-Identifier: MIT
// The reserved words. One list: the lexer marks them, the parser asks for them, the printer puts bars around identifiers that are spelled
// like one.

#pragma once

#include <cstdint>
#include <string_view>

namespace quoddle {

// name, spelling, whether an identifier spelled so needs bars
// clang-format off
#define QUODDLE_KEYWORDS(X) \
    X(A, "a", false) X(About, "about", true) X(Above, "above", true) X(After, "after", true) X(Against, "against", true) \
    X(An, "an", false) X(And, "and", true) X(Apart, "apart", false) X(App, "app", true) X(Around, "around", true) X(As, "as", true) \
    X(Aside, "aside", false) X(At, "at", true) X(Back, "back", true) X(Before, "before", true) \
    X(Beginning, "beginning", true) X(Begins, "begins", true) X(Begin, "begin", true) X(Behind, "behind", true) X(Below, "below", true) \
    X(Beneath, "beneath", true) X(Beside, "beside", true) X(Between, "between", true) X(But, "but", true) X(By, "by", true) \
    X(Come, "come", false) X(Comes, "comes", false) X(Considering, "considering", true) X(Contain, "contain", true) \
    X(Contained, "contained", false) X(Contains, "contains", true) X(Continue, "continue", true) X(Copy, "copy", true) \
    X(Div, "div", true) X(Does, "does", true) X(Doesnt, "doesn't", true) X(Eighth, "eighth", true) X(Else, "else", true) \
    X(End, "end", true) X(Ends, "ends", true) X(Equal, "equal", true) X(Equals, "equals", true) X(Error, "error", true) X(Every, "every", true) \
    X(Exit, "exit", true) X(Fifth, "fifth", true) X(First, "first", true) X(For, "for", true) X(Fourth, "fourth", true) \
    X(From, "from", true) X(Front, "front", true) X(Get, "get", true) X(Given, "given", true) X(Global, "global", true) \
    X(Greater, "greater", false) X(If, "if", true) X(Ignoring, "ignoring", true) X(In, "in", true) X(Instead, "instead", false) \
    X(Into, "into", true) X(Is, "is", true) X(Isnt, "isn't", true) X(It, "it", true) X(Its, "its", true) X(Last, "last", true) \
    X(Less, "less", false) X(Local, "local", true) X(Me, "me", true) X(Middle, "middle", true) X(Mod, "mod", true) X(My, "my", true) \
    X(Named, "named", true) X(Ninth, "ninth", true) X(Not, "not", true) X(Of, "of", true) X(On, "on", true) X(Onto, "onto", true) \
    X(Or, "or", true) X(Out, "out", false) X(Over, "over", true) X(Prop, "prop", true) X(Property, "property", true) X(Put, "put", true) \
    X(Ref, "ref", true) X(Reference, "reference", true) X(Repeat, "repeat", true) X(Return, "return", true) \
    X(Returning, "returning", true) X(Script, "script", true) X(Second, "second", true) X(Set, "set", true) X(Seventh, "seventh", true) \
    X(Since, "since", true) X(Sixth, "sixth", true) X(Some, "some", true) X(Start, "start", false) X(Starts, "starts", true) \
    X(Tell, "tell", true) X(Tenth, "tenth", true) X(Terms, "terms", false) X(Than, "than", false) X(That, "that", true) X(The, "the", true) \
    X(Then, "then", true) X(Third, "third", true) X(Through, "through", true) X(Thru, "thru", true) X(Timeout, "timeout", true) \
    X(Times, "times", true) X(To, "to", true) X(Transaction, "transaction", true) X(Try, "try", true) X(Under, "under", true) \
    X(Until, "until", true) X(Use, "use", true) X(Using, "using", true) X(Where, "where", true) X(While, "while", true) \
    X(Whose, "whose", true) X(With, "with", true) X(Without, "without", true)
// clang-format on

enum class Keyword : std::uint8_t {
    None,
#define QUODDLE_KEYWORD(name, spelling, reserved) name,
    QUODDLE_KEYWORDS(QUODDLE_KEYWORD)
#undef QUODDLE_KEYWORD
};

/// Keyword::None when `word` (lower case) is none.
Keyword keywordOf(std::string_view word);
/// The word may not be the name of anything unless it stands in bars.
bool isReserved(Keyword keyword);
std::string_view spellingOf(Keyword keyword);

} // namespace quoddle
