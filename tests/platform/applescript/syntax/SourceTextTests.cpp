// SPDX-License-Identifier: MIT
#include "platform/applescript/syntax/SourceText.h"

#include "platform/applescript/syntax/ApplicationLiteral.h"
#include "platform/base/Text.h"

#include <gtest/gtest.h>

namespace quoddle::syntax {

using namespace sourcetext;

TEST(SourceText, Ordinals) {
    EXPECT_EQ(ordinal(1) + ordinal(12) + ordinal(22) + ordinal(103), u"1st12th22nd103rd");
}

TEST(SourceText, TextsNamesAndCodes) {
    EXPECT_EQ(quoted(u"a\"b\\c\nd"), u"\"a\\\"b\\\\c\nd\"");
    EXPECT_EQ(identifier("foo", "Foo", false), u"Foo");
    EXPECT_EQ(identifier("foo", "", true), u"|foo|");
    EXPECT_EQ(identifier("Foo", "", false), u"|Foo|");
    EXPECT_EQ(identifier("a|b", "", false), u"|a\\|b|");
    EXPECT_EQ(identifier("caf\x8E", "", false), u"café"); // stored in Mac Roman by an old system
    EXPECT_EQ(rawCode(u"class", "sc\xC4x"), u"«class scƒx»");
    EXPECT_EQ(rawData(std::string_view("utxt\0\xE9", 6)), u"«data utxt00E9»");
}

TEST(SourceText, ApplicationLiterals) {
    for (const char16_t* name : {u"Finder", u"Übersicht ☃", u"eppc://host/Finder"})
        EXPECT_EQ(applicationName(applicationData(name)), name);
    std::string data = applicationData(u"Finder");
    for (std::size_t length = 0; length < data.size(); ++length)
        applicationName(std::string_view(data).substr(0, length)); // the answer does not matter, but nothing behind the data may be read
}

} // namespace quoddle::syntax
