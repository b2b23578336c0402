// SPDX-License-Identifier: MIT
// Strings tables in their three forms, and bytes that are no strings table.
#include "platform/base/strings/StringsFile.h"

#include <gtest/gtest.h>

namespace quoddle {

namespace {

using Texts = std::unordered_map<std::u16string, std::u16string>;

std::string bigEndian(std::uint64_t number, int size) {
    std::string bytes;
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        bytes += static_cast<char>(number >> shift);
    return bytes;
}

/// A binary property list with a dictionary. `keys` and `values` are indexes into `objects`.
std::string binary(const std::vector<std::string>& objects, const std::vector<unsigned>& keys, const std::vector<unsigned>& values) {
    std::string bytes = "bplist00", offsets;
    for (const std::string& object : objects) {
        offsets += bigEndian(bytes.size(), 4);
        bytes += object;
    }
    offsets += bigEndian(bytes.size(), 4);
    bytes += static_cast<char>(0xDF);
    bytes += "\x12" + bigEndian(keys.size(), 4);
    for (const auto& references : {keys, values})
        for (const unsigned reference : references)
            bytes += bigEndian(reference, 2);
    const std::size_t table = bytes.size();
    return bytes + offsets + std::string(6, '\0') + "\4\2" + bigEndian(objects.size() + 1, 8) + bigEndian(objects.size(), 8) +
           bigEndian(table, 8);
}

std::string inXML(const std::string& body) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//X//DTD\" \"x\">\n<plist version=\"1.0\">" + body +
           "</plist>";
}

} // namespace

TEST(StringsFile, ReadsTheThreeForms) {
    const struct {
        std::string bytes;
        Texts texts;
    } rows[] = {
        {"", {}},
        {"/* nothing */", {}},
        {"{}", {}},
        {"\"a b\" = \"x\\n\\U00e9\\\"\"; // said\nbare = word;\n\"alone\";",
         {{u"a b", u"x\n\u00e9\""}, {u"bare", u"word"}, {u"alone", u"alone"}}},
        {"{ a = 'b'; c = { d = \"}\"; }; e = (f, /* ) */ g); h = <00>; i = j }", {{u"a", u"b"}, {u"i", u"j"}}},
        {"a = b; a = c;", {{u"a", u"c"}}},
        {std::string("\0a\0=\0b\0;", 8), {{u"a", u"b"}}},
        {inXML("<dict><key>a</key><string>b &lt;&#xe9;&#128512;<![CDATA[<&]]></string><!-- no --><key>e</key><string/></dict>"),
         {{u"a", u"b <\u00e9\U0001F600<&"}, {u"e", u""}}},
        {inXML("<dict><key>n</key><dict><key>x</key><string>y</string></dict><key>t</key><true/><key>a</key><string>b</string></dict>"),
         {{u"a", u"b"}}},
        {inXML("<dict/>"), {}},
        {binary({"Qa", "Qb", std::string("b\0c\0\xe9", 5), "\x10\x05"}, {0, 1, 2}, {1, 2, 3}), {{u"a", u"b"}, {u"b", u"c\u00e9"}}},
        {binary({}, {}, {}), {}},
    };
    for (const auto& row : rows) {
        const StringsTable table = readStrings(row.bytes);
        EXPECT_EQ(table.error, "") << row.bytes;
        EXPECT_EQ(table.texts, row.texts) << row.bytes;
    }
}

TEST(StringsFile, WhatIsBrokenEndsWithASentenceAndKeepsWhatCameBefore) {
    const std::string good = binary({"Qa", "Qb"}, {0}, {1});
    const struct {
        std::string bytes;
        Texts texts;
    } rows[] = {
        {"a = b; \"cut", {{u"a", u"b"}}},
        {"a = b; c = (((", {{u"a", u"b"}}},
        {"a = b; /* ", {{u"a", u"b"}}},
        {"plain word", {}},
        {"a = b c", {}},
        {"= b;", {}},
        {std::string(100'000, '('), {}},
        {inXML("<dict><key>a</key><string>b</string><key>c</key><string>d &unknown; </string></dict>"), {{u"a", u"b"}}},
        {inXML("<dict><key>a</key><string>b</string>"), {{u"a", u"b"}}},
        {inXML("<dict><key>a</key><string>b"), {}},
        {inXML("<array><string>b</string></array>"), {}},
        {inXML("<dict><key>a</key><string>&#xD800;</string></dict>"), {}},
        {"<!DOCTYPE x [", {}},
        {"bplist00", {}},
        {good.substr(0, good.size() - 1), {}},
        {binary({"Qa"}, {0}, {9}), {}},
        {binary({"Qa", "_\x13\xff\xff\xff\xff\xff\xff\xff\xff"}, {0}, {1}), {}},
        {binary({"\x10\x05"}, {0}, {0}), {}},
    };
    for (const auto& row : rows) {
        const StringsTable table = readStrings(row.bytes);
        EXPECT_NE(table.error, "") << row.bytes.substr(0, 200);
        EXPECT_EQ(table.texts, row.texts) << row.bytes.substr(0, 200);
    }
}

TEST(StringsFile, OneLongTextUnderManyKeysIsRefused) {
    const std::string text = "_\x12" + bigEndian(30'000, 4) + std::string(30'000, 'x');
    EXPECT_NE(readStrings(binary({"Qa", text}, std::vector<unsigned>(10'000, 0), std::vector<unsigned>(10'000, 1))).error, "");
}

TEST(StringsFile, NoDamageIsFollowed) {
    const std::string whole[] = {"{ \"a\" = \"b\\U00e9\"; c = { d = (e); }; }",
                                 inXML("<dict><key>a</key><string>b&amp;</string><key>c</key><array/></dict>"),
                                 binary({"Qa", "Qb", std::string("b\0c\0\xe9", 5)}, {0, 1}, {1, 2})};
    for (const std::string& good : whole)
        for (std::size_t at = 0; at < good.size(); ++at)
            for (const int change : {0, 1, 0x7F, 0xFF}) {
                std::string bad = good;
                bad[at] = static_cast<char>(change);
                EXPECT_LE(readStrings(bad).texts.size(), 3u);
                EXPECT_LE(readStrings(good.substr(0, at)).texts.size(), 3u);
            }
}

} // namespace quoddle
