// SPDX-License-Identifier: MIT
// What the parser refuses, with which message and where; and that no source makes it crash.
#include "platform/applescript/syntax/Parser.h"
#include "platform/applescript/syntax/Printer.h"
#include "platform/base/Text.h"

#include <gtest/gtest.h>

namespace quoddle::syntax {

namespace {

struct Case {
    const char* source;
    OSStatus number;
    const char* message;
    const char* offending;
};

std::u16string repeated(std::u16string_view text, std::size_t times) {
    std::u16string all;
    for (std::size_t i = 0; i < times; ++i)
        all += text;
    return all;
}

} // namespace

TEST(ParseError, SaysWhatWasExpectedAndWhere) {
    const Case cases[] = {
        {"set x to", -2741, "Expected expression but found end of script.", ""},
        {"set x to\n", -2741, "Expected expression but found end of line.", "\n"},
        {"get my", -2741, "Expected expression but found end of script.", ""},
        {"f(its)", -2741, "Expected expression but found “)”.", ")"},
        {"f(my if)", -2741, "Expected expression but found “if”.", "if"},
        {"set x 5", -2741, "Expected “to” but found number.", "5"},
        {"foo bar", -2740, "A identifier can’t go after this identifier.", "foo bar"},
        {"foo 5", -2741, "Expected end of line but found number.", "5"},
        {"foo \"a\"", -2741, "Expected end of line but found “\"”.", "\"a\""},
        {"display dialog \"a\" foo", -2740, "A identifier can’t go after this “\"”.", "\"a\" foo"},
        {"x text 5", -2740, "A class name can’t go after this identifier.", "x text"},
        {"x by 5 5", -2740, "A number can’t go after this number.", "5 5"},
        {"if a thn b", -2741, "Expected “then”, etc. but found identifier.", "thn"},
        {"f(1 2)", -2741, "Expected “,” but found number.", "2"},
        {"(1 + 2", -2741, "Expected “)” but found end of script.", ""},
        {"{1, 2)", -2741, "Expected “,” but found “)”.", ")"},
        {"\"abc", -2741, "Expected “\"” but found end of script.", ""},
        {"\"a\\d\"", -2741, "Expected “\"” but found unknown token.", "\\"},
        {"(* abc", -2741, "Expected “*)” but found end of script.", ""},
        {"x ? y", -2741, "Expected end of line but found unknown token.", "?"},
        {"every foo", -2741, "Expected class name but found identifier.", "foo"},
        {"a = b = c", -2741, "Expected end of line but found “=”.", "="},
        {"tell x\ny", -2741, "Expected “end” but found end of script.", ""},
        {"end tell", -2741, "Expected end of script but found “end”.", "end"},
        {"on f(a\nend f", -2741, "Expected “,” but found end of line.", "\n"},
        {"repeat\nend tell", -2741, "Expected “repeat” but found “tell”.", "tell"},
        {"date \"nonsense\"", -30720, "Invalid date and time date nonsense.", "\"nonsense\""},
        {"display dialog \"a\" buttons 1 buttons 2", -2750, "The buttons parameter is specified more than once.", "buttons"},
        {"property a : 1\nproperty A : 2", -2751, "The a property is specified more than once.", "property A : 2"},
        {"on f()\nend\non F(x)\nend", -2752, "The f handler is specified more than once.", "F(x)"},
        {"on f()\nlocal a\nglobal a\nend", -2754, "Can’t declare a as both a local and global variable.", "global a"},
        {"beep\non run\nend", -2789,
         "The run handler is specified more than once, or there were top-level commands in addition to the run handler.", "run"},
        {"considering case but ignoring case\nend", -2720, "Can’t both consider and ignore this.", "considering"},
    };
    for (const Case& each : cases) {
        std::u16string source = utf16FromUTF8(each.source);
        ObjectStore store;
        auto parsed = parse(source, store);
        ASSERT_FALSE(parsed) << each.source;
        const ParseError& error = parsed.error();
        EXPECT_EQ(error.number, each.number) << each.source;
        EXPECT_EQ(utf8FromUTF16(error.message), each.message) << each.source;
        ASSERT_LE(error.end, source.size());
        EXPECT_EQ(utf8FromUTF16(source.substr(error.start, error.end - error.start)), each.offending) << each.source;
    }
}

TEST(ParseError, KnowsWhereEveryNodeWasWritten) {
    std::u16string source = u"set x to (a & item 2 of b)";
    ObjectStore store;
    SourceMap map;
    ParseOptions options;
    options.sourceMap = &map;
    auto parsed = parse(source, store, options);
    ASSERT_TRUE(parsed);
    auto textOf = [&](const Object* node) {
        auto range = map.find(node);
        return range ? utf8FromUTF16(source.substr(range->start, range->end - range->start)) : "none";
    };
    const Object* set = (*parsed)->children[0];
    const Object* concatenation = set->children[0]->children[0];
    EXPECT_EQ(textOf(set), "set x to (a & item 2 of b)");
    EXPECT_EQ(textOf(set->children[0]), "(a & item 2 of b)");
    EXPECT_EQ(textOf(concatenation), "a & item 2 of b");
    EXPECT_EQ(textOf(concatenation->children[1]), "item 2 of b");
    EXPECT_EQ(textOf(concatenation->children[1]->children[1]), "b");
    EXPECT_EQ(textOf(store.nil()), "none");
}

TEST(ParseError, SaysHowManyBlocksAreOpen) {
    const std::pair<const char16_t*, std::optional<std::size_t>> cases[] = {
        {u"on f()\nif a then\nb\nelse\n", 2},
        {u"on f()\nif a then\nb\nend if\n", 1},
        {u"script s\ntell a to tell b -- c\nrepeat with i in 1\ntry\non error\n", 4},
        {u"tell a\nset b to \"c\n", 0},
        {u"tell a\n(* b\n", 0},
        {u"tell a\nset b to\n", std::nullopt},
        {u"tell a\nend if\n", std::nullopt},
        {u"(1 +\n", std::nullopt},
        {u"property p : 1\nproperty p : 2\n", std::nullopt},
    };
    for (const auto& [source, open] : cases) {
        ObjectStore store;
        const auto parsed = parse(source, store);
        ASSERT_FALSE(parsed) << utf8FromUTF16(source);
        EXPECT_EQ(parsed.error().openBlocks, open) << utf8FromUTF16(source);
    }
}

TEST(ParseError, TooDeepIsAnErrorAndLongIsNot) {
    const std::u16string deep[] = {
        repeated(u"(", 100000),        repeated(u"{", 100000),           repeated(u"[", 100000),     repeated(u"{a:", 100000),
        repeated(u"f(", 100000),       repeated(u"not ", 100000),        repeated(u"- ", 100000),    repeated(u"the ", 100000),
        repeated(u"my ", 100000),      repeated(u"get ", 100000),        repeated(u"log ", 100000),  repeated(u"if a then\n", 100000),
        repeated(u"tell a to ", 9999), repeated(u"script\n", 9999),      repeated(u"before ", 9999), u"x" + repeated(u" & x", 100000),
        repeated(u"a of ", 9999),      u"a" + repeated(u"'s a", 100000), repeated(u"on f({", 9999),  repeated(u"(*", 100000),
    };
    for (const std::u16string& source : deep) {
        ObjectStore store;
        const auto parsed = parse(source, store);
        ASSERT_FALSE(parsed) << utf8FromUTF16(source.substr(0, 20));
        const std::u16string& message = parsed.error().message;
        EXPECT_TRUE(parsed.error().number != errOSAInternalTableOverflow || message.find(u" can have ") != std::u16string::npos)
            << utf8FromUTF16(message);
    }
    const std::u16string wide[] = {
        u"x" + repeated(u" & x", 1000),
        repeated(u"(", 60) + u"x" + repeated(u")", 60),
        repeated(u"if a then\n", 60) + repeated(u"end if\n", 60),
        u"if a then\n" + repeated(u"else if b then\n", 10000) + u"end if",
        repeated(u"beep\n", 20000),
        u"{1" + repeated(u", 2", 20000) + u"}",
    };
    for (const std::u16string& source : wide) {
        ObjectStore store;
        auto parsed = parse(source, store);
        ASSERT_TRUE(parsed) << utf8FromUTF16(parsed.error().message);
        EXPECT_TRUE(parse(printTree(*parsed), store));
    }
}

// Every beginning of a script, and the script with any one character spoilt, gives an error or a tree.
TEST(ParseError, DamagedSourceIsRefusedOrReadAgain) {
    const std::u16string source =
        u"use scripting additions\non f of x given y:{a, b:1}\n\ttell application \"Finder\" to set name of «class abcd» 1 whose "
        u"its size ≥ 5 to (text 1 thru -2 of \"a\\\"b\") & ¬\n\t\tx's foo:1 bar:[2] -- c\nend f\n(* (* *) *)";
    std::vector<std::u16string> damaged;
    for (std::size_t i = 0; i < source.size(); ++i) {
        damaged.push_back(source.substr(0, i));
        for (char16_t c : {u'(', u'"', u'¬', u'\n', u'|', u'\'', u'«', u':', static_cast<char16_t>(0xD800)}) {
            damaged.push_back(source);
            damaged.back()[i] = c;
        }
    }
    for (const std::u16string& each : damaged) {
        ObjectStore store;
        if (auto parsed = parse(each, store)) {
            EXPECT_TRUE(parse(printTree(*parsed), store)) << utf8FromUTF16(each);
        } else {
            EXPECT_NE(parsed.error().number, noErr);
            EXPECT_FALSE(parsed.error().message.empty());
            EXPECT_LE(parsed.error().start, parsed.error().end);
            EXPECT_LE(parsed.error().end, each.size());
        }
    }
}

} // namespace quoddle::syntax
