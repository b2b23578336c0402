// SPDX-License-Identifier: MIT
// How trees are printed, and that the printed text gives the same tree again.
#include "platform/applescript/syntax/Printer.h"

#include "platform/applescript/syntax/NodeKind.h"
#include "platform/applescript/syntax/TreeText.h"
#include "platform/applescript/terminology/TermDictionary.h"
#include "platform/base/Text.h"

#include <gtest/gtest.h>

namespace quoddle::syntax {

namespace {

std::string reprinted(std::string_view source, const PrintOptions& options = {}) {
    ObjectStore store;
    ParseOptions parseOptions;
    parseOptions.applicationTerms = options.applicationTerms;
    auto parsed = parse(utf16FromUTF8(source), store, parseOptions);
    if (!parsed)
        return "error: " + utf8FromUTF16(parsed.error().message);
    return utf8FromUTF16(printTree(*parsed, options));
}

Object* node(ObjectStore& store, NodeKind kind, std::initializer_list<Object*> children, std::uint16_t flags = 0) {
    return store.node(tagOf(kind), children, flags);
}

Object* variable(ObjectStore& store, std::string_view name) {
    return node(store, NodeKind::Variable, {store.identifier(name)});
}

Object* number(ObjectStore& store, int value) {
    return node(store, NodeKind::Literal, {store.integer(value)});
}

} // namespace

// Sources that are printed unchanged: every form of statement, and every spelling that flags keep.
constexpr std::string_view kCanonical = R"(#!/usr/bin/osascript
use AppleScript version "2.4" -- or later
use scripting additions
use lib : script "Library" version "1.0"

property parent : AppleScript
property theList : {1, 2.5, 1.0E+4, 3.31E-8, -5, "a \"quoted\" \\ text", missing value, {}}
property theRecord : {name:"a", |from|:2, |Foo Bar|:3, text returned:4, «class abcd»:5}
global a, b

(* a comment
	of two lines *)
on run argv -- on the header
	local c, d
	set {c, d} to {1, 2}
	set {name:c} to theRecord
	copy d to end of theList
	set c to -c ^ 2 + (1 - 2) * 3 / 4 div 5 mod 6 & "x" as text
	set the second item of theList to "two"
	return
	my foo(1, {2})
	its foo()
	theList's bar's baz
	my alpha:1 beta:(c + d)
	its theLibrary's foo(1)'s bar's baz
	its (theLibrary's alpha:1 beta:2)
	(my size of c)'s length
	set c to (theList count) + (count theList)
	foo given x:1, y:2
	foo of c from 1 to 2 with flag and other without sound
	continue quit
end run

to foo of x at y given |from|:z
	exit repeat
end foo

on alpha:x beta:y
	error "message" number 5 from x to integer partial result {1}
end alpha:beta:

on opt(x, y as text, {z, w}, {name:v})
end opt

on open these
	if a is b then return 1
	if a is not b then return 2
	if a = b or a ≠ b and not (c is in d) then
		if c contains d then beep
		if c does not contain d then beep 2
		if c is not in d then beep
		if c starts with d then beep
		if c begins with d then beep
		if c does not begin with d then beep
		if c ends with d then beep
	else if a comes before b then
		if a does not come after b then beep
		if a is not greater than or equal to b then beep
		if a is greater than b then beep
		if a ≤ b then beep
	else
		if a exists then beep
		if application "Finder" is not running then beep
	end if
end open

on adding folder items to f after receiving g
	tell application "Finder"
		tell «class abcd» 1 of f to «event abcdefgh» g given «class ijkl»:1, «class mnop»:2
	end tell
	tell application id "com.example.x" to activate
	repeat
	end repeat
	repeat 3 times -- header
		beep
		-- last
	end repeat
	repeat while true
		beep
	end repeat
	repeat until false
		beep
	end repeat
	repeat with i in (words of "a b")
		beep
	end repeat
	repeat with i from 1 to 10 by 2
		beep
	end repeat
	try
		beep
	end try
	try
		beep
	on error msg number n from o to t partial result p
		beep
	end try
	considering case and white space but ignoring hyphens
		beep
	end considering
	ignoring application responses
		beep
	end ignoring
	with timeout of 5 seconds
		beep
	end timeout
	with transaction
		beep
	end transaction
end adding folder items to

using terms from application "Mail"
	on «event emalcpma» m
	end «event emalcpma»
end using terms from

script
	property x : a reference to item 1 of theList
end script

script second_one
	set x to every character of "abc" whose it is not "b"
	set x to (every file where size > 5)
	set x to name of first window
	set x to 22nd word in back window
	set x to middle item of some list
	set x to text from word 1 to word -1 of x
	set x to characters 2 through -2 of x
	set x to items 2 thru (n - 1) of x
	set x to window id 5's name
	set x to window named "a"
	set x to window index 2
	set x to any item
	set x to before word 1
	set x to word after word 3 of x
	set x to in front of x
	set x to class of x is text
	set x to class of 5 is class of true
	set x to date "Friday, November 9, 2007 at 11:35:50 AM"
	set x to count of words
	set x to (count words) - 1
	set x to "one" & ¬
		"two" & ¬
		"three"
	set x to {a:1 ¬
		, b:2, ¬
		c:3}
	set x to [1, 2]
	display dialog "x" with hidden answer default answer "" buttons {"OK"} with icon stop
	choose file of type {"txt"} with multiple selections allowed and invisibles without showing package contents
	set the clipboard to (do shell script (a as text) as text)
	set eof of f to 0
	set x to offset of "a" in (item 1 of y)
	if a then ¬
		set x to 1
	tell x to ¬
		foo()
end script)";

TEST(Printer, PrintsCanonicalSourceAsItStands) {
    EXPECT_EQ(reprinted(kCanonical), kCanonical);
}

TEST(Printer, ReadsBackTheSameTree) {
    ObjectStore store;
    auto tree = parse(utf16FromUTF8(kCanonical), store);
    ASSERT_TRUE(tree);
    auto again = parse(printTree(*tree), store);
    ASSERT_TRUE(again);
    EXPECT_EQ(treeText(*again), treeText(*tree));
}

TEST(Printer, PutsSourceIntoItsCanonicalForm) {
    const char* cases[][2] = {
        {"SET   X TO app \"Finder\"", "set X to application \"Finder\""},
        {"set Foo to 1\nset foo to FOO", "set Foo to 1\nset Foo to Foo"},
        {"a <= b", "a ≤ b"},
        {"a /= b", "a ≠ b"},
        {"a isn't equal b", "a is not equal to b"},
        {"a is contained by b", "a is in b"},
        {"put x into y", "copy x to y"},
        {"set x to any(1, {2, 3})", "set x to |any|(1, {2, 3})"}, // a call of a handler that another script has
        {"first(x, y)", "|first|(x, y)"},
        {"item(1) of x", "item (1) of x"},
        {"+5", "5"},
        {"1.50", "1.5"},
        {"12345.0", "1.2345E+4"},
        {"ref x", "a reference to x"},
        {"prop x : 1", "property x : 1"},
        {"repeat 2\nend", "repeat 2 times\nend repeat"},
        {"if a\nend", "if a then\nend if"},
        {"on f()\nend g", "on f()\nend f"},
        {"f (1)", "f(1)"},
        {"choose file multiple selections allowed true", "choose file with multiple selections allowed"},
        {"x as metres", "x as meters"},
        {"«class pnam» of x", "name of x"},
        {"|foo| + |Foo|", "foo + |Foo|"},
        {"set x to y   -- c ", "set x to y -- c "},
        {"tell x\n\n y\nend", "tell x\n\t\n\ty\nend tell"}, // blank lines are indented
    };
    for (const auto& [source, printed] : cases)
        EXPECT_EQ(reprinted(source), printed);
}

// Trees that no parser made have no wrappers for parentheses: the printer adds those without which the text would mean something else.
TEST(Printer, AddsTheParenthesesThatTheTreeNeeds) {
    ObjectStore s;
    auto a = [&] { return variable(s, "a"); };
    auto sum = [&] { return node(s, NodeKind::Add, {a(), number(s, 1)}); };
    auto call = [&] { return node(s, NodeKind::Call, {s.event("corecnte"), a(), s.list({})}, 2); };
    auto of = [&](Object* part, Object* container) { return node(s, NodeKind::Of, {part, container}); };
    auto element = [&](Object* index) { return node(s, NodeKind::Element, {s.code("cobj"_4cc), index}); };
    struct {
        Object* tree;
        const char* printed;
    } cases[] = {
        {node(s, NodeKind::Multiply, {sum(), sum()}), "(a + 1) * (a + 1)"},
        {node(s, NodeKind::Subtract, {a(), sum()}), "a - (a + 1)"},
        {node(s, NodeKind::Subtract, {sum(), a()}), "a + 1 - a"},
        {node(s, NodeKind::Equal, {node(s, NodeKind::Equal, {a(), a()}), a()}), "(a = a) = a"},
        {node(s, NodeKind::Power, {node(s, NodeKind::Power, {a(), a()}), a()}), "(a ^ a) ^ a"},
        {node(s, NodeKind::Not, {node(s, NodeKind::And, {a(), a()})}), "not (a and a)"},
        {node(s, NodeKind::Negate, {number(s, -1)}), "- -1"},
        {node(s, NodeKind::Add, {call(), a()}), "(count a) + a"},
        {node(s, NodeKind::Add, {a(), call()}), "a + count a"},
        {of(of(a(), a()), a()), "(a of a) of a"},
        {of(a(), of(a(), a())), "a of a of a"},
        {of(a(), sum()), "a of (a + 1)"},
        {element(sum()), "item (a + 1)"},
        {element(of(a(), a())), "item (a of a)"},
        {of(a(), node(s, NodeKind::Filter, {node(s, NodeKind::Every, {s.code("cobj"_4cc)}), a()}, 0x100)), "a of (every item whose a)"},
        {node(s, NodeKind::Of, {a(), of(a(), a())}, 3), "(a of a)'s a"},
        {node(s, NodeKind::Call, {s.event("sysoexec"), node(s, NodeKind::As, {a(), a()}), s.list({})}, 2), "do shell script (a as a)"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(utf8FromUTF16(printTree(each.tree)), each.printed);
        EXPECT_TRUE(parse(printTree(each.tree), s)) << each.printed;
    }
}

TEST(Printer, BarsAndRawCodesKeepNamesApart) {
    ObjectStore s;
    const char* cases[][2] = {{"name", "|name|"},     {"repeat", "|repeat|"}, {"two words", "|two words|"}, {"Case", "|Case|"},
                              {"plain_1", "plain_1"}, {"1st", "|1st|"},       {"display", "display"},       {"λ", "|λ|"}};
    for (const auto& [key, printed] : cases)
        EXPECT_EQ(utf8FromUTF16(printTree(variable(s, key))), printed);
    auto of = [&](std::string_view code) {
        return node(s, NodeKind::Of, {node(s, NodeKind::Term, {s.code(fourCharCode(code))}), variable(s, "x")});
    };
    EXPECT_EQ(utf8FromUTF16(printTree(of("leng"))), "length of x");
    EXPECT_EQ(utf8FromUTF16(printTree(of("zzzz"))), "«class zzzz» of x");
    EXPECT_EQ(utf8FromUTF16(printTree(of("desk"))), "«class desk» of x"); // the code of a constant only is no property
    EXPECT_EQ(utf8FromUTF16(printTree(node(s, NodeKind::Literal, {s.constant("afdr"_4cc, "desk"_4cc)}))), "desktop");
    EXPECT_EQ(utf8FromUTF16(printTree(node(s, NodeKind::Literal, {s.constant("zzzz"_4cc, "desk"_4cc)}))), "«constant zzzzdesk»");
}

TEST(Printer, UsesTheDictionaryOfTheTarget) {
    TermDictionary dictionary;
    dictionary.addClass("song list", "song lists", "cSon"_4cc);
    dictionary.addProperty("mood", "mood"_4cc);
    dictionary.finish();
    PrintOptions options;
    options.applicationTerms = [&](const ApplicationName& name) { return name.text == u"Player" ? &dictionary : nullptr; };
    constexpr std::string_view kSource =
        "tell application \"Player\"\n\tset mood of song list 1 to |mood|\nend tell\nset mood to every «class cSon»";
    EXPECT_EQ(reprinted(kSource, options), kSource);
    ObjectStore store;
    ParseOptions parseOptions;
    parseOptions.applicationTerms = options.applicationTerms;
    auto parsed = parse(utf16FromUTF8(kSource), store, parseOptions);
    ASSERT_TRUE(parsed);
    EXPECT_EQ(utf8FromUTF16(printTree(*parsed)),
              "tell application \"Player\"\n\tset «class mood» of «class cSon» 1 to mood\nend tell\nset mood to every «class cSon»");
}

// Trees from files may be malformed.
TEST(Printer, RefusesWhatIsNoTree) {
    ObjectStore s;
    Object* loop = node(s, NodeKind::Of, {variable(s, "a"), variable(s, "b")});
    loop->children[1] = loop;
    Object* doubled = variable(s, "a");
    for (int i = 0; i < 60; ++i)
        doubled = node(s, NodeKind::Add, {doubled, doubled});
    Object* deep = variable(s, "a");
    for (int i = 0; i < 20000; ++i)
        deep = node(s, NodeKind::Not, {deep});
    Object* bad[] = {
        loop,
        doubled,
        deep,
        node(s, NodeKind::Set, {variable(s, "a")}),
        node(s, NodeKind::If, {}),
        node(s, NodeKind::Handler, {variable(s, "f"), s.nil()}),
        s.node(200, {s.nil()}),
        node(s, NodeKind::Block, {s.list({node(s, NodeKind::RepeatFrom, {s.nil()})})}),
    };
    for (const Object* tree : bad)
        EXPECT_EQ(printTree(tree), u"");
    // A tree with children of the wrong kind is printed all the same.
    Object* odd[] = {
        node(s, NodeKind::Call, {s.nil(), s.nil(), s.nil()}),
        node(s, NodeKind::Term, {s.list({})}),
        node(s, NodeKind::ElementByKey, {s.text(u"x"), s.nil(), s.nil()}),
        node(s, NodeKind::Try, {s.nil(), s.nil(), s.integer(1)}),
        node(s, NodeKind::Use, {s.nil(), s.nil(), s.record({})}),
        node(s, NodeKind::Line, {s.nil(), s.nil()}, 0x100),
        s.integer(5),
        s.nil(),
    };
    for (const Object* tree : odd)
        printTree(tree);
    Object* deepEnough = variable(s, "a");
    for (int i = 0; i < 2000; ++i)
        deepEnough = node(s, NodeKind::List, {s.list({deepEnough})});
    EXPECT_NE(printTree(deepEnough).find(u"«…»"), std::u16string::npos);
}

TEST(Printer, RunsCoverTheText) {
    ObjectStore store;
    auto parsed = parse(u"set x to count of {1, \"a\"} -- c", store);
    ASSERT_TRUE(parsed);
    std::vector<PrintedRun> runs;
    PrintOptions options;
    options.runs = &runs;
    std::u16string text = printTree(*parsed, options);
    std::size_t at = 0;
    std::string kinds;
    for (const PrintedRun& run : runs) {
        EXPECT_EQ(run.start, at);
        at += run.length;
        kinds += static_cast<char>('0' + static_cast<int>(run.kind));
    }
    EXPECT_EQ(at, text.size());
    EXPECT_EQ(runs.back().kind, PrintedKind::Comment);
    EXPECT_EQ(kinds, "1301201050506");
}

} // namespace quoddle::syntax
