// SPDX-License-Identifier: MIT
#include "platform/applescript/syntax/Lexer.h"

#include "platform/base/Text.h"

#include <gtest/gtest.h>

namespace quoddle::syntax {

namespace {

/// One word for each token: its kind and its content. `~` in front of a token marks a line break that was continued before it.
std::string tokens(std::u16string_view source) {
    std::string text;
    auto list = tokenize(source);
    for (const Token& token : list->tokens) {
        text += text.empty() ? "" : " ";
        text += token.afterBreak ? "~" : "";
        switch (token.kind) {
        case TokenKind::End:
            text += "end";
            break;
        case TokenKind::Newline:
            text += "nl";
            break;
        case TokenKind::Comment:
            text += std::string("c") + static_cast<char>('0' + static_cast<int>(token.comment)) + "<" + utf8FromUTF16(token.text) + ">";
            break;
        case TokenKind::Word:
            text += (token.keyword == Keyword::None ? "w:" : "k:") + token.word->key;
            break;
        case TokenKind::BarredWord:
            text += "b:" + token.word->key;
            break;
        case TokenKind::Integer:
        case TokenKind::Real:
        case TokenKind::Ordinal:
            text += (token.kind == TokenKind::Integer ? "i"
                     : token.kind == TokenKind::Real  ? "r"
                                                      : "o") +
                    std::to_string(token.number).substr(0, 6);
            break;
        case TokenKind::Text:
            text += "t<" + utf8FromUTF16(token.text) + ">";
            break;
        case TokenKind::RawCode:
            text += "raw<" + utf8FromUTF16(token.text) + ">";
            break;
        case TokenKind::Symbol:
            text += "s" + std::to_string(static_cast<int>(token.symbol));
            break;
        case TokenKind::PossessiveS:
            text += "'s";
            break;
        case TokenKind::Bad:
            text += "bad";
            break;
        }
    }
    return text;
}

} // namespace

TEST(Lexer, CutsTextIntoTokens) {
    const struct {
        std::u16string_view source;
        const char* tokens;
    } cases[] = {
        {u"", "end"},
        {u"a\nb\rc\r\nd\u2028e", "k:a nl w:b nl w:c nl w:d nl w:e end"},
        {u"Foo fOO _x1 ünï π", "w:foo w:foo w:_x1 w:ünï w:π end"},
        {u"|a b| |X| |a\\|b|", "b:a b b:X b:a|b end"},
        {u"isn't x’s y's doesn’t", "k:isn't w:x 's w:y 's k:doesn't end"},
        {u"1 1.5 .5 1E3 1.5e-2 2nd 11rd 536870911 536870912",
         "i1.0000 r1.5000 r0.5000 r1000.0 r0.0150 o2.0000 o11.000 i536870 r536870 end"},
        {u"1.2.3 5th2 3x", "r1.2000 r0.3000 i5.0000 w:th2 i3.0000 w:x end"},
        {u"\"a\\\"b\\\\\\n\\r\\t\" \"x\ny\"", "t<a\"b\\\n\r\t> t<x\ny> end"},
        {u"<= ≤ < >= ≥ > /= ≠ / ÷ *", "s18 s18 s17 s20 s20 s19 s16 s16 s12 s12 s11 end"},
        {u"a--b\n#c\n(* d (* e *) f *)g", "k:a c1<b> nl c2<c> nl c0< d (* e *) f > w:g end"},
        {u"a ¬\nb ¬ -- c\n\td", "k:a ~w:b ~w:d end"},
        {u"a ¬ b", "k:a bad w:b end"},
        {u"«class abcd» «data utxt00E9»", "raw<class abcd> raw<data utxt00E9> end"},
        {u"\"abc", "bad end"},
        {u"\"a\\q", "bad end"},
        {u"(* a", "bad end"},
        {u"|a\n", "bad nl end"},
        {u"«a", "bad end"},
        {u"1E999 ? ☃", "bad bad bad end"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(tokens(each.source), each.tokens) << utf8FromUTF16(each.source);
}

TEST(Lexer, KeepsTheFirstSpellingAndEveryPosition) {
    auto list = tokenize(u"myVar MYVAR |myvar|");
    EXPECT_EQ(list->tokens[0].word, list->tokens[1].word);
    EXPECT_EQ(utf8FromUTF16(list->tokens[1].word->spelling), "myVar");
    EXPECT_NE(list->tokens[2].word, list->tokens[1].word);
    EXPECT_EQ(list->tokens[2].word->key, "myvar");
    EXPECT_EQ(list->tokens[1].start, 6u);
    EXPECT_EQ(list->tokens[1].end, 11u);
}

} // namespace quoddle::syntax
