// SPDX-License-Identifier: MIT
// The words and codes that scripts get from a dictionary.
#include "platform/applescript/terminology/DictionaryTerms.h"

#include "platform/applescript/terminology/ShippedDictionaries.h"
#include "platform/applescript/terminology/Terminology.h"
#include "platform/base/File.h"
#include "platform/sdef/DictionaryReader.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace quoddle {
namespace {

namespace fs = std::filesystem;

std::unique_ptr<TermDictionary> termsOf(const std::string& suite) {
    char folder[] = "/tmp/quoddle-test.XXXXXX";
    const std::string path = std::string(mkdtemp(folder)) + "/x.sdef";
    EXPECT_EQ(writeFile(path, "<dictionary xmlns:q='urn:quoddle:dictionary'><suite name='S'>" + suite + "</suite></dictionary>"), noErr);
    const auto dictionary = sdef::readDictionary(path, "");
    fs::remove_all(folder);
    EXPECT_TRUE(dictionary) << dictionary.error();
    return dictionary ? termsOfDictionary(*dictionary) : nullptr;
}

const Term* termOf(const TermSource& source, std::string_view words, TermKind kind) {
    for (const Term& term : source.startingWith(words.substr(0, words.find(' ')))) {
        if (term.words == words && term.kind == kind)
            return &term;
    }
    return nullptr;
}

std::string codeOf(const TermSource& source, std::string_view words, TermKind kind) {
    const Term* term = termOf(source, words, kind);
    return term ? (term->group ? bytesOf(term->group) : "") + bytesOf(term->code) : "none";
}

std::string wordsOf(const TermSource& source, TermKind kind, FourCharCode code, FourCharCode group = 0) {
    const Term* term = source.find(kind, code, group);
    return term ? std::string(term->words) : "none";
}

constexpr const char* kGarden = R"(
    <class name="garden bed" code="gbed" plural="beds"><synonym name="plot"/><synonym code="gbe2"/>
        <property name="watered" code="wter" type="boolean"/><property name="owner" code="ownr" type="text"><synonym name="keeper"/></property>
        <property name="text" code="ctxt"/><contents name="soil" code="soil" type="text"/><element type="plant"/><responds-to command="dig up"/>
    </class>
    <class name="plant" code="plnt"><property name="owner" code="ownr" type="text"/></class>
    <class-extension extends="application"><property name="season" code="seas" type="seasons"/></class-extension>
    <class name="old bed" code="gbed" hidden="yes"/><class name="ghost" code="gost" hidden="yes"/>
    <command name="dig up" code="GardDigU"><direct-parameter type="plant" requires-access="r"/>
        <parameter name="with tool" code="tool" type="text"><synonym name="using"/></parameter>
        <parameter name="when" code="when" type="seasons" optional="yes"/><result><type type="garden bed" list="yes"/></result>
    </command>
    <command name="sow" code="GardSow "><synonym name="plant out"/><synonym code="GardSow2"/>
        <direct-parameter optional="yes" type="seasons"/></command>
    <command name="rest" code="GardRest"/>
    <command name="weigh" code="GardWeig"><direct-parameter q:flags="0x12" type="number or string"/><result q:flags="0x34" type="nonsense"/></command>
    <enumeration name="seasons" code="SEAS"><enumerator name="spring" code="sprg"/><enumerator name="month" code="mnth"/><enumerator name="never" code="0x00000000"/><enumerator name="date" code="dat "/><enumerator name="fall" code="fall"><synonym name="autumn"/>
        </enumerator></enumeration>
    <record-type name="forecast" code="fcst"><property name="rainfall" code="rain" type="real"/></record-type>
    <value-type name="hue" code="hue " plural="hues"/><class name="rain-barrel" code="brrl"/>)";

TEST(DictionaryTermsTest, WordsAndTheirCodes) {
    const auto terms = termsOf(kGarden);
    const struct {
        const char* words;
        TermKind kind;
        const char* code;
    } cases[] = {
        {"garden bed", TermKind::Class, "gbed"},    {"beds", TermKind::Plural, "gbed"},       {"garden beds", TermKind::Plural, "none"},
        {"plot", TermKind::Class, "gbed"},          {"plots", TermKind::Plural, "gbed"},      {"plants", TermKind::Plural, "plnt"},
        {"watered", TermKind::Property, "wter"},    {"keeper", TermKind::Property, "ownr"},   {"soil", TermKind::Property, "soil"},
        {"season", TermKind::Property, "seas"},     {"application", TermKind::Class, "none"}, {"ghost", TermKind::Class, "gost"},
        {"autumn", TermKind::Constant, "SEASfall"}, {"sow", TermKind::Event, "GardSow "},     {"plant out", TermKind::Event, "GardSow "},
        {"forecast", TermKind::Class, "fcst"},      {"forecasts", TermKind::Plural, "none"},  {"rainfall", TermKind::Property, "rain"},
        {"properties", TermKind::Property, "pALL"}, {"month", TermKind::Constant, "none"},    {"date", TermKind::Constant, "SEASdat "},
        {"text", TermKind::Property, "none"},       {"hues", TermKind::Plural, "hue "},       {"rain-barrel", TermKind::Class, "none"},
    };
    for (const auto& [words, kind, code] : cases)
        EXPECT_EQ(codeOf(*terms, words, kind), code) << words;
    EXPECT_TRUE(termOf(*terms, "watered", TermKind::Property)->boolean);
    EXPECT_FALSE(termOf(*terms, "owner", TermKind::Property)->boolean);
    EXPECT_EQ(terms->startingWith("owner").size(), 1u) << "what two classes say alike stands once";
}

TEST(DictionaryTermsTest, CodesAndTheirWords) {
    const auto terms = termsOf(kGarden);
    EXPECT_EQ(wordsOf(*terms, TermKind::Class, "gbed"_4cc), "garden bed") << "and not the hidden class after it, nor a synonym";
    EXPECT_EQ(wordsOf(*terms, TermKind::Plural, "gbed"_4cc), "beds");
    EXPECT_EQ(wordsOf(*terms, TermKind::Class, "gbe2"_4cc), "garden bed") << "another code of the same words";
    EXPECT_EQ(wordsOf(*terms, TermKind::Class, "gost"_4cc), "ghost") << "hidden, but nothing else names it";
    EXPECT_EQ(wordsOf(*terms, TermKind::Property, "ownr"_4cc), "owner");
    EXPECT_EQ(wordsOf(*terms, TermKind::Constant, "fall"_4cc, "SEAS"_4cc), "fall");
    EXPECT_EQ(wordsOf(*terms, TermKind::Constant, "fall"_4cc, "else"_4cc), "none");
    EXPECT_EQ(wordsOf(*terms, TermKind::Constant, 0, "SEAS"_4cc), "never");
    EXPECT_EQ(wordsOf(*terms, TermKind::Event, "Sow2"_4cc, "Gard"_4cc), "sow");
}

TEST(DictionaryTermsTest, WhatCompiledScriptsStoreOfACommand) {
    const auto terms = termsOf(kGarden);
    const EventTerm& dig = *termOf(*terms, "dig up", TermKind::Event)->event;
    EXPECT_TRUE(dig.replyType == "gbed"_4cc && dig.replyFlags == 0x4000 && dig.directType == "plnt"_4cc && dig.directFlags == 0);
    ASSERT_EQ(dig.parameters.size(), 3u);
    EXPECT_TRUE(dig.parameters[0].words == "with tool" && dig.parameters[0].type == "ctxt"_4cc);
    EXPECT_TRUE(dig.parameters[1].words == "using" && dig.parameters[1].code == "tool"_4cc);
    EXPECT_TRUE(dig.parameters[2].words == "when" && dig.parameters[2].type == "SEAS"_4cc);
    const EventTerm& sow = *termOf(*terms, "sow", TermKind::Event)->event;
    EXPECT_TRUE(sow.replyType == "null"_4cc && sow.replyFlags == 0xFFFF8000 && sow.directType == "SEAS"_4cc);
    EXPECT_EQ(sow.directFlags, 0xFFFF8000u | 0x2000 | 0x1000) << "optional, one of an enumeration, may change it";
    const EventTerm& rest = *termOf(*terms, "rest", TermKind::Event)->event;
    EXPECT_TRUE(rest.directType == "null"_4cc && rest.directFlags == 0xFFFF8000);
    const EventTerm& weigh = *termOf(*terms, "weigh", TermKind::Event)->event;
    EXPECT_TRUE(weigh.directType == "ns  "_4cc && weigh.directFlags == 0x12 && weigh.replyType == "****"_4cc && weigh.replyFlags == 0x34);
}

TEST(DictionaryTermsTest, OfAClassAndAPropertyWithOneWordTheLaterIsMeant) {
    const std::string inner = "<property name='shed' code='prop'/>", outer = "<class name='shed' code='clas'/>";
    const std::string yard = "<class name='yard' code='yard'>" + inner + "</class>";
    for (const auto& [suite, kind] : {std::pair(yard + outer, TermKind::Class), std::pair(outer + yard, TermKind::Property)}) {
        const auto terms = termsOf(suite);
        Terminology all;
        all.push(terms.get());
        const std::string_view words[] = {"shed"};
        EXPECT_EQ(all.match(words, {TermKind::Property, TermKind::Class}).term->kind, kind) << suite;
        EXPECT_EQ(all.match(words, {TermKind::Class, TermKind::Property}).term->kind, kind) << suite;
    }
}

TEST(DictionaryTermsTest, TheCompactFormSaysTheSame) {
    const auto terms = termsOf(kGarden);
    const std::string compact = terms->compactForm();
    const auto again = TermDictionary::fromCompactForm(compact);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->compactForm(), compact);
    ASSERT_EQ(again->terms().size(), terms->terms().size());
    for (std::size_t i = 0; i < again->terms().size(); ++i) {
        const Term &a = terms->terms()[i], &b = again->terms()[i];
        EXPECT_TRUE(a.words == b.words && a.kind == b.kind && a.code == b.code && a.group == b.group && a.boolean == b.boolean &&
                    a.synonym == b.synonym && a.order == b.order && !a.event == !b.event)
            << a.words;
        EXPECT_EQ(wordsOf(*again, a.kind, a.code, a.group), wordsOf(*terms, a.kind, a.code, a.group));
    }
    EXPECT_EQ(termOf(*again, "dig up", TermKind::Event)->event->parameters[1].words, "using");
    for (std::size_t length = 0; length < compact.size(); ++length)
        EXPECT_FALSE(TermDictionary::fromCompactForm(compact.substr(0, length))) << length;
    EXPECT_FALSE(TermDictionary::fromCompactForm(compact + "x"));
    EXPECT_FALSE(TermDictionary::fromCompactForm(std::string(64, '\xFF')));
}

TEST(DictionaryTermsTest, EveryDictionaryOfOursServesAnApplication) {
    std::set<std::string> files;
    for (const auto& entry : fs::directory_iterator(shippedDictionariesFolder())) {
        if (entry.path().extension() == ".sdef")
            files.insert(entry.path().filename().string());
    }
    for (const auto& [name, isIdentifier] :
         {std::pair("finder", false), {"ITUNES", false}, {"com.apple.SystemEvents", true}, {"System Settings", false}})
        EXPECT_TRUE(files.contains(std::string(shippedDictionaryFor(name, isIdentifier)))) << name;
    EXPECT_EQ(shippedDictionaryFor("com.apple.finder", false), "");
    EXPECT_EQ(shippedDictionaryFor("Find", false), "");
    std::size_t served = 0;
    for (const std::string& file : files) {
        // The name of an application, whose words are run together in the name of the file.
        std::string name;
        for (const char c : fs::path(file).stem().string())
            name += (c >= 'A' && c <= 'Z' && !name.empty() ? " " : "") + std::string(1, c);
        served += shippedDictionaryFor(name, false) == file || shippedDictionaryFor(fs::path(file).stem().string(), false) == file ||
                  name == "Quick Time Player";
    }
    EXPECT_EQ(served, files.size() - 2) << "the part that is shared and the additions belong to no application";
}

} // namespace
} // namespace quoddle
