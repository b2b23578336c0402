// SPDX-License-Identifier: MIT
#include "platform/applescript/terminology/Terminology.h"

#include "platform/applescript/terminology/TermDictionary.h"

#include <gtest/gtest.h>

namespace quoddle {

namespace {

std::vector<std::string_view> split(std::string_view words) {
    std::vector<std::string_view> parts;
    while (!words.empty()) {
        std::size_t blank = std::min(words.find(' '), words.size());
        parts.push_back(words.substr(0, blank));
        words.remove_prefix(std::min(blank + 1, words.size()));
    }
    return parts;
}

constexpr Terminology::Kinds kAll = {TermKind::Event, TermKind::Property, TermKind::Class, TermKind::Plural, TermKind::Constant};

std::string matched(const Terminology& terms, std::string_view words, Terminology::Kinds kinds = kAll) {
    TermMatch match = terms.match(split(words), kinds);
    return match ? std::string(match.term->words) + "/" + std::to_string(match.words) : "none";
}

} // namespace

TEST(Terminology, TheLongestTermWins) {
    Terminology terms;
    const char* cases[][2] = {
        {"text", "text/1"},
        {"text item x", "text item/2"},
        {"text item delimiters of", "text item delimiters/3"},
        {"choose file name with", "choose file name/3"},
        {"choose file with", "choose file/2"},
        {"set the clipboard to x", "set the clipboard to/4"},
        {"path to resource x", "path to resource/3"},
        {"display", "none"},
        {"textual", "none"},
        {"applescript", "AppleScript/1"},
        {"ipv4 address", "IPv4 address/2"},
    };
    for (const auto& [words, expected] : cases)
        EXPECT_EQ(matched(terms, words), expected) << words;
    EXPECT_EQ(matched(terms, "version", {TermKind::Class}), "none");
    EXPECT_EQ(matched(terms, "windows", {TermKind::Plural}), "windows/1");
}

TEST(Terminology, TermsAndCodesLeadToEachOther) {
    for (std::string_view word :
         {"beep", "choose", "display", "text", "item", "window", "month", "short", "ask", "path", "system", "user", "square"}) {
        for (const TermSource* source : {&languageTerms(), &standardAdditionsTerms()}) {
            for (const Term& term : source->startingWith(word)) {
                const Term* named = source->find(term.kind, term.code, term.group);
                ASSERT_NE(named, nullptr) << term.words;
                EXPECT_EQ(named->code, term.code);
                EXPECT_FALSE(named->synonym) << named->words;
                EXPECT_EQ(term.kind == TermKind::Event, term.event != nullptr) << term.words;
            }
        }
    }
    const Term* dialog = standardAdditionsTerms().find(TermKind::Event, "dlog"_4cc, "syso"_4cc);
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->event->parameters.size(), 8u);
    EXPECT_EQ(dialog->event->replyType, "askr"_4cc);
}

TEST(Terminology, CodesAreNamedByKindAndGroup) {
    Terminology terms;
    EXPECT_EQ(terms.name("desk"_4cc, {TermKind::Constant}, "afdr"_4cc)->words, "desktop");
    EXPECT_EQ(terms.name("desk"_4cc, {TermKind::Constant}, "afdm"_4cc)->words, "desktop folder");
    EXPECT_EQ(terms.name("desk"_4cc, {TermKind::Property, TermKind::Class}), nullptr);
    EXPECT_EQ(terms.name("metr"_4cc, {TermKind::Class})->words, "meters"); // not the synonym
    EXPECT_EQ(terms.name("hour"_4cc, {TermKind::Class, TermKind::Property})->words, "hours");
    EXPECT_EQ(terms.event("zzzz"_4cc, "zzzz"_4cc), nullptr);
    EXPECT_TRUE(terms.isTerm("text item"));
    EXPECT_FALSE(terms.isTerm("text it"));
    terms.dropAdditions();
    EXPECT_EQ(matched(terms, "display dialog"), "none");
    EXPECT_EQ(matched(terms, "delay"), "delay/1");
}

TEST(Terminology, TheInnermostApplicationIsAskedFirst) {
    TermDictionary outer, inner;
    outer.addClass("window", "windows", "ourW"_4cc);
    outer.addProperty("mood", "mood"_4cc);
    outer.finish();
    // Of a class and a property with the same words the later one is meant.
    inner.addClass("box", "boxes", "boxC"_4cc);
    inner.addProperty("box", "boxP"_4cc);
    inner.addProperty("bag", "bagP"_4cc);
    inner.addClass("bag", "bags", "bagC"_4cc);
    inner.addProperty("old name", "same"_4cc);
    inner.addProperty("new name", "same"_4cc);
    ParameterTerm parameter{"with force", "forc"_4cc, "bool"_4cc};
    inner.addEvent("close", "core"_4cc, "clos"_4cc, {"null"_4cc, 0, 0, "obj "_4cc, {&parameter, 1}});
    inner.finish();

    Terminology terms;
    auto code = [&](std::string_view words) {
        TermMatch match = terms.match(split(words), kAll);
        return match ? bytesOf(match.term->code) : "none";
    };
    EXPECT_EQ(code("window"), "cwin");
    terms.push(&outer);
    EXPECT_EQ(code("window"), "ourW");
    EXPECT_EQ(code("mood"), "mood");
    terms.push(&inner);
    EXPECT_EQ(code("window"), "cwin"); // the dictionary of the outer tell is hidden
    EXPECT_EQ(code("mood"), "none");
    EXPECT_EQ(code("box"), "boxP");
    EXPECT_EQ(code("bag"), "bagC");
    EXPECT_EQ(terms.name("same"_4cc, {TermKind::Property})->words, "new name");
    EXPECT_EQ(terms.event("core"_4cc, "clos"_4cc)->event->parameters[0].words, "with force");
    terms.push(nullptr);
    EXPECT_TRUE(terms.lacksDictionary());
    EXPECT_EQ(code("box"), "none");
    terms.pop();
    terms.pop();
    EXPECT_EQ(code("mood"), "mood");
}

} // namespace quoddle
