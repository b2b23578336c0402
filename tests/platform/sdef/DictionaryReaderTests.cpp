// SPDX-License-Identifier: MIT
#include "platform/sdef/DictionaryReader.h"

#include "platform/base/File.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace quoddle::sdef {
namespace {

namespace fs = std::filesystem;

class DictionaryReaderTest : public testing::Test {
protected:
    DictionaryReaderTest() {
        char name[] = "/tmp/quoddle-test.XXXXXX";
        folder = mkdtemp(name);
        for (const char* part : {"/own", "/shared", "/elsewhere"})
            fs::create_directory(folder + part);
    }
    ~DictionaryReaderTest() override { fs::remove_all(folder); }

    void put(const std::string& path, const std::string& text) { ASSERT_EQ(writeFile(folder + "/" + path, text), noErr); }

    Result<Dictionary, std::string> read(const std::string& contents, const std::string& head = "") {
        put("own/main.sdef", "<?xml version=\"1.0\"?>\n" + head +
                                 "<dictionary title='T' xmlns:xi='http://www.w3.org/2001/XInclude' xmlns:q='urn:quoddle:dictionary'>" +
                                 contents + "</dictionary>");
        return readDictionary(folder + "/own/main.sdef", folder + "/shared");
    }

    /// The error without the folder; the names of the definitions where there is none.
    std::string outcome(const std::string& contents, const std::string& head = "") {
        auto dictionary = read(contents, head);
        if (!dictionary)
            return dictionary.error().starts_with(folder) ? dictionary.error().substr(folder.size() + 1) : dictionary.error();
        std::string names;
        for (const Suite& suite : dictionary->suites) {
            for (const Definition& definition : suite.definitions)
                names += std::visit([](const auto& d) { return d.name; }, definition) + " ";
        }
        return names;
    }

    std::string folder;
};

TEST_F(DictionaryReaderTest, EverythingThatADictionarySays) {
    auto dictionary = read(R"(<suite name="S" code="????" hidden="yes">
        <class name="disk  item" plural="disk items" code="ditm" inherits="item">
            <synonym name="item" code="cobj" hidden="yes"/>
            <contents name="text" type="text" access="r"/>
            <property name="locked" code="aslk" type="boolean" in-properties="no"><synonym code="lck2"/></property>
            <property name="parts" code="0x7061727A" access="w"><type type="text" list="yes"/><type type="integer"/></property>
            <element type="file" access="r"><accessor style="name"/><accessor style="id"/></element>
            <responds-to command="open"><cocoa method="x"/></responds-to>
            <documentation><html>Words &amp; more</html></documentation>
        </class></suite><suite name="T"><class-extension extends="application"><element type="disk item"/></class-extension>
        <command name="move" code="coremov&#402;"><direct-parameter type="specifier" requires-access="r" optional="yes"/>
            <parameter name="to" code="insh" type="location specifier" optional="yes" hidden="yes"/>
            <result q:flags="0x4000"><type type="file" list="yes"/></result></command>
        <event name="moved" code="TESTmvd "/>
        <enumeration name="kinds" code="kind"><enumerator name="one" code="kin1"><synonym name="uno"/></enumerator></enumeration>
        <record-type name="reply" code="rply"><property name="button" code="butt" type="text"/></record-type>
        <value-type name="color" code="cRGB"/></suite>)");
    ASSERT_TRUE(dictionary) << dictionary.error();
    EXPECT_EQ(dictionary->title, "T");
    EXPECT_EQ(dictionary->files, std::vector<std::string>{fs::canonical(folder + "/own/main.sdef").string()});
    ASSERT_EQ(dictionary->suites.size(), 2u);
    const auto& item = std::get<Class>(dictionary->suites[0].definitions.at(0));
    EXPECT_EQ(item.name + "/" + item.plural + "/" + item.inherits, "disk item/disk items/item");
    EXPECT_TRUE(item.hidden) << "of a suite that is hidden";
    EXPECT_EQ(item.code, "ditm"_4cc);
    ASSERT_EQ(item.synonyms.size(), 1u);
    EXPECT_TRUE(item.synonyms[0].name == "item" && item.synonyms[0].code == "cobj"_4cc && item.synonyms[0].hidden);
    ASSERT_EQ(item.properties.size(), 3u);
    EXPECT_TRUE(item.properties[0].isContents && item.properties[0].code == "pcnt"_4cc && item.properties[0].access == Access::Read);
    EXPECT_TRUE(!item.properties[1].inProperties && item.properties[1].synonyms.at(0).code == "lck2"_4cc);
    EXPECT_TRUE(item.properties[2].code == "parz"_4cc && item.properties[2].access == Access::Write);
    ASSERT_EQ(item.properties[2].types.size(), 2u);
    EXPECT_TRUE(item.properties[2].types[0].isList && !item.properties[2].types[1].isList);
    EXPECT_EQ(item.elements.at(0).keyForms, (std::vector<std::string>{"name", "id"}));
    EXPECT_EQ(item.respondsTo, std::vector<std::string>{"open"});
    EXPECT_TRUE(std::get<Class>(dictionary->suites[1].definitions.at(0)).isExtension);
    const auto& move = std::get<Command>(dictionary->suites[1].definitions.at(1));
    EXPECT_EQ(move.eventID, "mov\xC4"_4cc);
    EXPECT_TRUE(move.direct && move.direct->isOptional && move.direct->isReadOnly);
    EXPECT_TRUE(move.parameters.at(0).hidden && move.parameters[0].isOptional &&
                move.parameters[0].types.at(0).name == "location specifier");
    EXPECT_TRUE(move.result.at(0).isList && move.storedResultFlags == 0x4000u);
    EXPECT_TRUE(std::get<Command>(dictionary->suites[1].definitions.at(2)).isEvent);
    EXPECT_EQ(std::get<Enumeration>(dictionary->suites[1].definitions.at(3)).enumerators.at(0).synonyms.at(0).name, "uno");
    EXPECT_EQ(std::get<RecordType>(dictionary->suites[1].definitions.at(4)).properties.at(0).name, "button");
    EXPECT_EQ(std::get<ValueType>(dictionary->suites[1].definitions.at(5)).code, "cRGB"_4cc);
}

TEST_F(DictionaryReaderTest, WhatIsWrongIsSaidWithItsLine) {
    const std::pair<const char*, const char*> cases[] = {
        {"<suite><class name='a' code='abc'/></suite>", "own/main.sdef:2: “abc” is no code of four characters"},
        {"<suite>\n<class code='abcd'/></suite>", "own/main.sdef:3: “class” has no name, or one that is too long"},
        {"<suite><class name=' ' code='abcd'/></suite>", "own/main.sdef:2: “class” has no name, or one that is too long"},
        {"<suite><command name='a' code='abcd'/></suite>", "own/main.sdef:2: “abcd” is no code of eight characters"},
        {"<suite><command name='a' code='0x616263646162636'/></suite>",
         "own/main.sdef:2: “0x616263646162636” is no code of eight characters"},
        {"<suite><value-type name='a' code='0xZZZZZZZZ'/></suite>", "own/main.sdef:2: “0xZZZZZZZZ” is no code of four characters"},
        {"<suite><value-type name='a' code='ab\xE6\xBC\xA2z'/></suite>",
         "own/main.sdef:2: “ab\xE6\xBC\xA2z” is no code of four characters"},
        {"<suite><class-extension/></suite>", "own/main.sdef:2: an extension names no class"},
        {"<suite><class name='a' code='abcd'><synonym/></class></suite>", "own/main.sdef:2: a synonym has neither a name nor a code"},
        {"<suite><class name='a' code='abcd'><element/></class></suite>", "own/main.sdef:2: an element has no type"},
        {"<suite><command name='a' code='abcdefgh'><result q:flags='12'/></command></suite>", "own/main.sdef:2: “12” are no flags"},
    };
    for (const auto& [contents, expected] : cases)
        EXPECT_EQ(outcome(contents), expected) << contents;
    EXPECT_EQ(outcome("<suite>").substr(0, 16), "own/main.sdef:2:");
    put("own/list.sdef", "<plist/>");
    EXPECT_EQ(readDictionary(folder + "/own/list.sdef", "").error(), folder + "/own/list.sdef:1: this is no dictionary but “plist”");
    EXPECT_EQ(readDictionary(folder + "/own/none.sdef", "").error(), folder + "/own/none.sdef: the file cannot be read");
}

TEST_F(DictionaryReaderTest, InclusionsStayInTheirFolders) {
    const std::string text = "<dictionary><suite><class name='a' code='aaaa'/><class name='b' code='bbbb'/></suite></dictionary>";
    for (const char* path : {"own/part.sdef", "shared/Common.sdef", "elsewhere/secret.sdef"})
        put(path, text);
    fs::create_symlink(folder + "/elsewhere/secret.sdef", folder + "/own/link.sdef");
    const std::string outside = " is outside of the folders from which a dictionary may include";
    const std::pair<std::string, std::string> cases[] = {
        {"href='part.sdef'", "a b "},
        {"href='part.sdef' xpointer='xpointer(/dictionary/suite)'", "a b "},
        {"href='Common.sdef'", "a b "},
        {"href='file:///System/Library/ScriptingDefinitions/Common.sdef'", "a b "},
        {"href='file://localhost/System/Library/ScriptingDefinitions/Common.sdef'", "a b "},
        {"href='/System/Library/ScriptingDefinitions/../elsewhere/secret.sdef'", ""},
        {"href='../elsewhere/secret.sdef'", ""},
        {"href='link.sdef'", ""},
        {"href='" + folder + "/elsewhere/secret.sdef'", ""},
        {"href='http://example.com/part.sdef'", ""},
        {"href='none.sdef'", "own/main.sdef:2: there is no “none.sdef” to include"},
        {"href='part.sdef' parse='text'", "own/main.sdef:2: only XML can be included"},
        {"href='part.sdef' xpointer='element(/1)'", "own/main.sdef:2: the xpointer “element(/1)” is not understood"},
    };
    for (const auto& [attributes, expected] : cases) {
        const std::string found = outcome("<xi:include " + attributes + "/>");
        if (expected.empty())
            EXPECT_TRUE(found.ends_with(outside)) << attributes << ": " << found;
        else
            EXPECT_EQ(found, expected) << attributes;
    }
    // The definitions of a suite, but for one; and what stands in place of a file that is missing.
    EXPECT_EQ(
        outcome("<suite><xi:include href='part.sdef' xpointer=\"xpointer(/dictionary/suite/node()[not(self::class and @name='a')])\"/>"
                "<xi:include href='none'><xi:fallback><value-type name='c' code='cccc'/></xi:fallback></xi:include></suite>"),
        "b c ");
}

TEST_F(DictionaryReaderTest, HostileFilesEndInAnErrorSoon) {
    put("own/self.sdef", "<dictionary xmlns:xi='http://www.w3.org/2001/XInclude'><xi:include href='self.sdef'/></dictionary>");
    std::string many, deep, suites;
    for (int i = 0; i < 60; ++i)
        many += "<xi:include href='none'><xi:fallback/></xi:include>";
    for (int i = 0; i < 5000; ++i) {
        deep += "<documentation>";
        suites += "<suite><a/><a/><a/><a/></suite>";
    }
    put("own/broad.sdef", "<dictionary>" + suites + "</dictionary>");
    std::string definitions = "<suite>";
    for (int i = 0; i < 200'001; ++i)
        definitions += "<a/>";
    const std::string bomb = "<!DOCTYPE dictionary [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;'>]>";
    const auto started = std::chrono::steady_clock::now();
    EXPECT_EQ(outcome("<suite name='&b;'/>", bomb), "own/main.sdef: a dictionary cannot declare entities");
    EXPECT_EQ(outcome("<suite/>", "<!DOCTYPE dictionary [<!ENTITY x SYSTEM 'file:///etc/passwd'>]>"),
              "own/main.sdef: a dictionary cannot declare entities");
    EXPECT_TRUE(outcome("<xi:include href='self.sdef'/>").ends_with("inclusions are nested too deeply"));
    EXPECT_TRUE(outcome(many).ends_with("there are too many inclusions"));
    EXPECT_TRUE(outcome("<xi:include href='broad.sdef' xpointer='xpointer(//*[count(//*[count(//*) > 1]) > 1])'/>")
                    .ends_with("is not understood, or takes too long"));
    EXPECT_TRUE(outcome(definitions + "</suite>").ends_with("the dictionary has too many definitions"));
    EXPECT_TRUE(outcome(std::string(std::size_t(5) << 20, ' ')).ends_with("the dictionary is too large"));
    EXPECT_NE(outcome(deep), "");
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(60)) << "an error that takes hours is none";
}

TEST_F(DictionaryReaderTest, DictionariesOfOurOwnAreRead) {
    const fs::path ours = fs::path(QUODDLE_TEST_SOURCE_DIR).parent_path() / "resources/dictionaries";
    int count = 0;
    for (const auto& entry : fs::directory_iterator(ours)) {
        if (entry.path().extension() != ".sdef")
            continue;
        auto dictionary = readDictionary(entry.path().string(), ours.string());
        EXPECT_TRUE(dictionary) << dictionary.error();
        ++count;
    }
    EXPECT_GE(count, 26);
}

} // namespace
} // namespace quoddle::sdef
