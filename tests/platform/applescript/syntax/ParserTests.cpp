// SPDX-License-Identifier: MIT
// The trees that the parser makes of source: those of compiled scripts.
#include "platform/applescript/syntax/NodeKind.h"
#include "platform/applescript/syntax/Parser.h"
#include "platform/applescript/syntax/TreeText.h"
#include "platform/base/Text.h"

#include <gtest/gtest.h>

namespace quoddle::syntax {

namespace {

struct Case {
    const char* source;
    const char* tree;
};

std::string tree(const char* source) {
    ObjectStore store;
    auto parsed = parse(utf16FromUTF8(source), store);
    if (!parsed)
        return "error " + std::to_string(parsed.error().number) + ": " + utf8FromUTF16(parsed.error().message);
    const Object* root = *parsed;
    // A script of one statement is that statement in a line without a comment.
    if (root->isNode(tagOf(NodeKind::Line)) && root->flags == 2)
        root = root->children[0];
    return treeText(root);
}

template<std::size_t N>
void expectTrees(const Case (&cases)[N]) {
    for (const Case& each : cases)
        EXPECT_EQ(tree(each.source), each.tree) << each.source;
}

} // namespace

TEST(Parser, Literals) {
    expectTrees({
        {"-128", "-128"},
        {"536870911", "536870911"},
        {"536870912", "536870912r"},
        {"1.5E+3", "1500r"},
        {".5", "0.5r"},
        {"true", "`boov/true`"},
        {"missing value", "`msng`"},
        {"current application", "`misc/cura`"},
        {"{1, {}, \"x\"}", "(List [1 (List []) \"x\"])"},
        {"{name:1, foo:2, text returned:3, |Foo|:4}", "(Record <pnam 1 'foo' 2 ttxt 3 'Foo' 4>)"},
        {"[1, 2]", "(LinkedList [1 2])"},
        {"application \"Finder\"", "application:Finder"},
        {"app \"Finder\"", "application:Finder"},
        {"application id \"com.x\"", "(ElementByKey capp \"com.x\" kfrm/ID  )"},
        {"application x", "(Element capp $x)"},
        {"date \"January 1, 2001 10:00 AM\"", "data:ldt "},
        {"alias \"a:b\"", "(Element alis \"a:b\")"},
        {"«data utxt0041»", "data:utxt"},
        {"«constant savoask »", "`savo/ask `"},
    });
}

TEST(Parser, Operators) {
    expectTrees({
        {"-2 ^ 2", "(Power -2 2)"},
        {"2 ^ 3 ^ 2", "(Power 2 (Power 3 2))"},
        {"1 + 2 * 3 - 4", "(Subtract (Add 1 (Multiply 2 3)) 4)"},
        {"a and b or not c", "(Or (And $a $b) (Not $c))"},
        {"not a = b", "(Not (Equal $a $b))"},
        {"a is not equal to b", "(NotEqual#1 $a $b)"},
        {"a isn't b", "(NotEqual#100 $a $b)"},
        {"a does not contain b", "(Not (Contains $a $b))"},
        {"a is in {1, 2}", "(Contains#1 (List [1 2]) $a)"},
        {"a is not in b", "(Not (Contains#1 $b $a))"},
        {"a comes before b", "(Less#101 $a $b)"},
        {"a does not come after b", "(LessOrEqual#101 $a $b)"},
        {"a is not greater than or equal to b", "(Less#100 $a $b)"},
        {"a >= b", "(GreaterOrEqual $a $b)"},
        {"a /= b", "(NotEqual $a $b)"},
        {"a begins with b", "(StartsWith#100 $a $b)"},
        {"a does not end with b", "(Not (EndsWith $a $b))"},
        {"1 as text as list", "(As (As 1 `ctxt`) `list`)"},
        {"x as {integer, text}", "(As $x (List [`long` `ctxt`]))"},
        {"x is running", "(Equal#2 (Of .prun $x) `boov/true`)"},
        {"x is not running", "(NotEqual#2 (Of .prun $x) `boov/true`)"},
        {"name of x is y", "(Equal#3 (Of .pnam $x) $y)"},
    });
}

TEST(Parser, References) {
    expectTrees({
        {"item 1 of x", "(Of (Element cobj 1) $x)"},
        {"item -1 of x", "(Of (Element cobj -1) $x)"},
        {"items - 1", "(Subtract (Every#1 cobj) 1)"},
        {"items 1 thru -2 of x", "(Of (Range#100 cobj 1 -2) $x)"},
        {"characters 1 through n of x", "(Of (Range#101 cha  1 $n) $x)"},
        {"text from word 1 to word 3 of x", "(Of (Range ctxt (Element cwor 1) (Element cwor 3)) $x)"},
        {"text beginning thru word 3 of x", "(Of (Range#100 ctxt (Beginning) (Element cwor 3)) $x)"},
        {"every word of x whose it is \"a\"", "(Filter#100 (Of (Every cwor) $x) (Equal#3 (It) \"a\"))"},
        {"name of every file of x whose size > 5", "(Filter#100 (Of .pnam (Of (Every file) $x)) (Greater .ptsz 5))"},
        {"every file where size > 5", "(Filter#1 (Every file) (Greater .ptsz 5))"},
        {"every file that size > 5", "(Filter#2 (Every file) (Greater .ptsz 5))"},
        {"first word of x", "(Of (Element#1 cwor 1) $x)"},
        {"11th word of x", "(Of (Element#102 cwor 11) $x)"},
        {"back window", "(Element#100 cwin -1)"},
        {"some item of x", "(Of (Some cobj) $x)"},
        {"middle item of x", "(Of (Middle cobj) $x)"},
        {"last paragraph of x", "(Of (Element#1 cpar -1) $x)"},
        {"words of x", "(Of (Every#1 cwor) $x)"},
        {"any item", "(Element **** `cobj`)"},
        {"window \"a\"", "(Element cwin \"a\")"},
        {"window named \"a\"", "(ElementByKey cwin \"a\" kfrm/name)"},
        {"window id 5", "(ElementByKey cwin 5 kfrm/ID  )"},
        {"window index 2", "(ElementByKey cwin 2 kfrm/indx)"},
        {"item (n + 1) of x", "(Of (Element cobj (Line#5 (Add $n 1) nil nil)) $x)"},
        {"item n's name", "(Of#3 .pnam (Element cobj $n))"},
        {"x's y's z", "(Of#3 $z (Of#3 $y $x))"},
        {"name of x's y", "(Of .pnam (Of#3 $y $x))"},
        {"my f(1) of y", "(Of#1 (Of (Call 'f' [1] []) $y) (Me))"},
        {"item 1 of my x", "(Of (Element cobj 1) (Of#1 $x (Me)))"},
        {"its name", "(Of#2 .pnam (It))"},
        {"it's name", "(Of#3 .pnam (It))"},
        {"the name of the x", "(Line#100 (Of .pnam (Line#100 $x nil nil)) nil nil)"},
        {"name in x", "(Of#100 .pnam $x)"},
        {"before word 1 of x", "(Of (Before insl) (Of (Element cwor 1) $x))"},
        {"word after word 3 of x", "(Of (After cwor) (Of (Element cwor 3) $x))"},
        {"in front of x", "(Of (Before#100 insl) $x)"},
        {"in back of x", "(Of (After#100 insl) $x)"},
        {"behind x", "(Of (After#1 insl) $x)"},
        {"a reference to item 1 of x", "(ReferenceTo (Of (Element cobj 1) $x))"},
        {"x exists", "(Call#3 core/doex $x [])"},
        {"weekday of x", "(Of `wkdy` $x)"},
        {"class of x", "(Of .pcls $x)"},
        {"class of 5", "{21 5 pcls}"},
        {"class of 5 is integer", "(Equal#3 {21 5 pcls} `long`)"},
        {"class of \"5\"", "(Of .pcls \"5\")"},
        {"«class abcd» of x", "(Of .abcd $x)"},
        {"class of x is «class abcd»", "(Equal#3 (Of .pcls $x) `abcd`)"},
        {"x is «class pnam»", "(Equal#3 $x .pnam)"},
        {"x as «class abcd»", "(As $x `abcd`)"},
        {"every «class abcd»", "(Every abcd)"},
    });
}

TEST(Parser, Commands) {
    expectTrees({
        {"display dialog \"a\" buttons {\"x\"} default button 1 with title \"t\" giving up after 5",
         "(Call#2 syso/dlog \"a\" <btns (List [\"x\"]) dflt 1 appr \"t\" givu 5>)"},
        {"display dialog \"a\" with hidden answer default answer \"\"", "(Call#2 syso/dlog \"a\" <htxt `boov/true` dtxt \"\">)"},
        {"choose file of type {\"a\"} with multiple selections allowed and invisibles without showing package contents",
         "(Call#2 syso/stdf nil <ftyp (List [\"a\"]) mlsl `boov/true` lfiv `boov/true` shpc `boov/fals`>)"},
        {"do shell script \"a\" & b as text", "(Call#2 syso/exec (Concatenate \"a\" $b) <rtyp `ctxt`>)"},
        {"do shell script (x as text)", "(Call#2 syso/exec (Line#5 (As $x `ctxt`) nil nil) [])"},
        {"set the clipboard to x & y", "(Call#2 Jons/pClp (Concatenate $x $y) [])"},
        {"set volume output volume 5", "(Call#2 aevt/stvl nil <ouvl 5>)"},
        {"set eof of f to 0", "(Call#1 rdwr/seof $f <set2 0>)"},
        {"offset of \"a\" in b", "(Call#2 syso/offs nil <psof \"a\" psin $b>)"},
        {"path to desktop folder from user domain as text", "(Call#2 ears/ffdr `afdm/desk` <from `fldm/fldu` rtyp `ctxt`>)"},
        {"round 1.5 rounding as taught in school", "(Call#2 syso/rond 1.5r <dire `olie/rndS`>)"},
        {"read f from 1 to 5 as text", "(Call#2 rdwr/read $f <rdfm 1 rdto 5 as   `ctxt`>)"},
        {"count of x", "(Call#1 core/cnte $x [])"},
        {"count each word of x", "(Call#1 core/cnte $x <kocl `cwor`>)"},
        {"exists x and y", "(And (Call#2 core/doex $x []) $y)"},
        {"a + count b", "(Add $a (Call#2 core/cnte $b []))"},
        {"(count b) + a", "(Add (Line#5 (Call#2 core/cnte $b []) nil nil) $a)"},
        {"«event abcdefgh» x given «class ijkl»:y, «class mnop»:z", "(Call#2 abcd/efgh $x <ijkl $y mnop $z>)"},
        {"get x", "(Get $x)"},
        {"continue quit", "(Continue (Call#2 aevt/quit nil []))"},
    });
}

TEST(Parser, Calls) {
    expectTrees({
        {"f(1, {2}, g())", "(Call 'f' [1 (List [2]) (Call 'g' [] [])] [])"},
        {"f of x given y:1, z:2", "(Call#1 'f' $x <'y' 1 'z' 2>)"},
        {"f from 1 to 2", "(Call#1 'f' nil <from 1 to   2>)"},
        {"f of x at y with a, b and c without d",
         "(Call#1 'f' $x <at   $y 'a' `boov/true` 'b' `boov/true` 'c' `boov/true` 'd' `boov/fals`>)"},
        {"my foo:1 bar:2", "(Of#1 (Call 'foo_bar_' [1 2] []) (Me))"},
        {"x's foo:1 bar:(2 + 3)", "(Of#3 (Call 'foo_bar_' [1 (Line#5 (Add 2 3) nil nil)] []) $x)"},
        {"foo() returning x", "(Set (Call 'foo' [] []) $x)"},
        {"continue f(1)", "(Continue (Call 'f' [1] []))"},
    });
}

TEST(Parser, Statements) {
    expectTrees({
        {"set {a, b} to {1, 2}", "(Set (List [1 2]) (List [$a $b]))"},
        {"set {name:n} to r", "(Set $r (Record <pnam $n>))"},
        {"copy x to end of y", "(Copy $x (Of (End) $y))"},
        {"put x into y", "(Copy $x $y)"},
        {"return", "(Return nil)"},
        {"error \"a\" number 5 from x to integer partial result {1}",
         "(Error ascr/err  \"a\" <errn 5 erob $x errt `long` ptlr (List [1])>)"},
        {"error number -128", "(Error ascr/err  nil <errn -128>)"},
        {"exit", "(Exit)"},
        {"local a, name", "(Local ['a' pnam])"},
        {"if a then b else c", "(If#1 $a $b [] $c)"},
        {"if a then ¬\n\tb", "(If#1 $a (Line#9 $b nil nil) [] nil)"},
        {"if a then ¬\n\tset b to c", "(If#1 $a (Line#9 (Set $c $b) nil nil) [] nil)"},
        {"if a then\n\tb\nelse if c then\n\td\nelse\n\te\nend if", "(If $a $b [$c $d] $e)"},
        {"tell application \"Finder\" to activate", "(Tell#1 (Call#2 misc/actv nil []) application:Finder)"},
        {"repeat\n\texit repeat\nend repeat", "(Repeat (Exit))"},
        {"repeat 3 times\n\tx\nend repeat", "(RepeatTimes $x 3)"},
        {"repeat while x\nend repeat", "(RepeatWhile nil $x)"},
        {"repeat with i from 1 to 10 by 2\n\tx\nend repeat", "(RepeatFrom $x 'i' 1 10 2)"},
        {"repeat with i in {1, 2} -- all\n\tx\nend repeat", "(RepeatIn (Line#3 $x \" all\" \" all\") 'i' (List [1 2]))"},
        {"try\n\tx\nend try", "(Try $x (Error ascr/err  nil []) nil)"},
        {"try\n\tx\non error msg number n from o to t partial result p\n\ty\nend try",
         "(Try $x (Error ascr/err  $msg <errn $n erob $o errt $t ptlr $p>) $y)"},
        {"try\n\tx\non error number -128\n\ty\nend try", "(Try $x (Error ascr/err  nil <errn (Negate 128)>) $y)"},
        {"considering case, white space but ignoring hyphens and punctuation\n\tx\nend considering",
         "(Considering $x [cons/case cons/whit] [cons/hyph cons/punc])"},
        {"ignoring application responses\n\tx\nend ignoring", "(Considering $x [] [cons/rmte])"},
        {"with timeout of 5 seconds\n\tx\nend timeout", "(Timeout $x 5)"},
        {"with transaction\n\tx\nend transaction", "(Transaction $x nil)"},
        {"using terms from application \"Mail\"\n\tx\nend using terms from", "(UsingTerms $x application:Mail)"},
    });
}

TEST(Parser, Definitions) {
    expectTrees({
        {"on run {a, b}\n\tx\nend run", "(Handler (Call#2 aevt/oapp (List [$a $b]) []) $x)"},
        {"on open these\n\tx\nend open", "(Handler (Call#2 aevt/odoc $these []) $x)"},
        {"on f()\nend", "(Handler (Call 'f' [] []) nil)"},
        {"on f(a, {b, c}, {d:e}, g as text)\n\tx\nend f",
         "(Handler (Call 'f' [$a (List [$b $c]) (Record <'d' $e>) (As $g `ctxt`)] []) $x)"},
        {"on f(a : 1)\n\tx\nend f", "(Handler (Call 'f' [{124 0 0 $a nil 1}] []) $x)"},
        {"to f of x given y:z, w:v\n\tx\nend f", "(Handler#100 (Call 'f' $x <'y' $z 'w' $v>) $x)"},
        {"on f from a to b\n\tx\nend f", "(Handler (Call 'f' [] <from $a to   $b>) $x)"},
        {"on foo:a bar:b\n\tx\nend foo:bar:", "(Handler (Call 'foo_bar_' [$a $b] []) $x)"},
        {"on adding folder items to x after receiving y\n\tz\nend adding folder items to", "(Handler (Call#2 faco/fget $x <flst $y>) $z)"},
        {"on «event abcdefgh» x given «class ijkl»:y\n\tz\nend «event abcdefgh»", "(Handler (Call#2 abcd/efgh $x <ijkl $y>) $z)"},
        {"script s\n\tproperty a : 1\n\ton f()\n\t\ta\n\tend f\nend script",
         "(Script 's' (Block [(Property 'a' 1) (Handler (Call 'f' [] []) $a)]))"},
        {"script\n\tx\n\ty\nend script", "(Script nil (Block [(Line#2 $x nil nil) (Line#2 $y nil nil)]))"},
        {"property parent : x", "(Property pare $x)"},
        {"use AppleScript version \"2.4\"", "(Use nil .ascr <minv \"2.4\">)"},
        {"use scripting additions", "(Use nil (Every#1 osax) [])"},
        {"use framework \"Foundation\"", "(Use nil (Element frmk \"Foundation\") [])"},
        {"use x : script \"Lib\" version \"1.0\"", "(Use 'x' (Element scpt \"Lib\") <minv \"1.0\">)"},
    });
}

TEST(Parser, LinesAndComments) {
    expectTrees({
        {"-- a", "(Line#1 nil \" a\" \" a\")"},
        {"(* a (* b *) c *)", "(Line nil \" a (* b *) c \" \" a (* b *) c \")"},
        {"# a", "(Line#6 nil \" a\" \" a\")"},
        {"x -- a", "(Line#1 $x \" a\" \" a\")"},
        {"x (* a *)", "(Line $x \" a \" \" a \")"},
        {"--", "(Line#1 nil nil nil)"},
        {"x\n\ny", "(Block [(Line#2 $x nil nil) (Line#2 nil nil nil) (Line#2 $y nil nil)])"},
        {"x\n", "(Block [(Line#2 $x nil nil) (Line#2 nil nil nil)])"},
        {"(* a *) x", "(Block [(Line nil \" a \" \" a \") (Line#2 $x nil nil)])"},
        {"set x to (* a *) 1", "(Line (Set 1 $x) \" a \" \" a \")"},
        {"x\non f()\nend f", "(Block [(Line#2 $x nil nil) (Handler (Call 'f' [] []) nil)])"},
        {"set x to \"a\" & ¬\n\t\"b\"", "(Set (Concatenate \"a\" (Line#9 \"b\" nil nil)) $x)"},
        {"set x to a ¬\n\t& b", "(Set (Concatenate (Line#a $a nil nil) $b) $x)"},
        {"{a:1, ¬\n\tb:2}", "(Record <'a' 1 'b' (Line#9 2 nil nil)>)"},
        {"display dialog \"a\" ¬\n\tbuttons {\"b\"}", "(Call#2 syso/dlog (Line#a \"a\" nil nil) <btns (List [\"b\"])>)"},
    });
}

} // namespace quoddle::syntax
