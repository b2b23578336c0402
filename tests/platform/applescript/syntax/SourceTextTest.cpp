// SPDX-License-Identifier: MIT
#include "platform/applescript/syntax/SourceText.h"

#include "platform/applescript/syntax/ApplicationLiteral.h"
#include "platform/base/Text.h"

#include <gtest/gtest.h>

namespace quoddle {

using namespace sourcetext;

TEST(SourceText, Numbers) {
    const struct {
        double value;
        const char *shown, *exact;
    } cases[] = {
        {0, "0.0", "0.0"},
        {-0.0, "-0.0", "-0.0"},
        {1, "1.0", "1.0"},
        {-2.5, "-2.5", "-2.5"},
        {0.1 + 0.2, "0.3", "0.30000000000000004"},
        {1.0 / 3, "0.333333333333", "0.3333333333333333"},
        {9999.5, "9999.5", "9999.5"},
        {10000, "1.0E+4", "1.0E+4"},
        {123456789, "1.23456789E+8", "1.23456789E+8"},
        {0.001, "0.001", "0.001"},
        {0.00099, "9.9E-4", "9.9E-4"},
        {1e300, "1.0E+300", "1.0E+300"},
        {3.14159265358979, "3.14159265359", "3.14159265358979"},
        {99999.99999999999, "1.0E+5", "9.999999999999999E+4"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(utf8FromUTF16(real(each.value)), each.shown);
        EXPECT_EQ(utf8FromUTF16(exactReal(each.value)), each.exact);
    }
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

TEST(SourceText, Dates) {
    constexpr std::int64_t kDay = 86400;
    const std::int64_t now = daysFromDate(2024, 2, 29) * kDay + 12345;
    EXPECT_EQ(daysFromDate(1904, 1, 1), 0);
    EXPECT_EQ(utf8FromUTF16(date(0)), "Friday, January 1, 1904 at 12:00:00 AM");
    EXPECT_EQ(utf8FromUTF16(date(-1)), "Thursday, December 31, 1903 at 11:59:59 PM");
    EXPECT_EQ(utf8FromUTF16(date(daysFromDate(2024, 2, 29) * kDay + 13 * 3600)), "Thursday, February 29, 2024 at 1:00:00 PM");
    const struct {
        const char16_t* text;
        std::int64_t seconds;
    } cases[] = {
        {u"Friday, November 9, 2007 at 11:35:50 AM", daysFromDate(2007, 11, 9) * kDay + 41750},
        {u"Friday, November 9, 2007 11:35:50 AM", daysFromDate(2007, 11, 9) * kDay + 41750},
        {u"9 nov 2007", daysFromDate(2007, 11, 9) * kDay},
        {u"1/27/08", daysFromDate(2008, 1, 27) * kDay},
        {u"27/1/2008", daysFromDate(2008, 1, 27) * kDay},
        {u"2008-01-27 14:05", daysFromDate(2008, 1, 27) * kDay + 50700},
        {u"12:30 am", daysFromDate(2024, 2, 29) * kDay + 1800},
        {u"3 PM", daysFromDate(2024, 2, 29) * kDay + 54000},
        {u"March 5", daysFromDate(2024, 3, 5) * kDay},
    };
    for (const auto& each : cases)
        EXPECT_EQ(parseDate(each.text, now), each.seconds) << utf8FromUTF16(each.text);
    for (const char16_t* text : {u"", u"hello", u"32/13/2008", u"25:00", u"1/2/3/4", u"13:61", u"99999999999999999999"})
        EXPECT_EQ(parseDate(text, now), std::nullopt) << utf8FromUTF16(text);
}

TEST(SourceText, ApplicationLiterals) {
    for (const char16_t* name : {u"Finder", u"Übersicht ☃", u"eppc://host/Finder"})
        EXPECT_EQ(applicationName(applicationData(name)), name);
    std::string data = applicationData(u"Finder");
    for (std::size_t length = 0; length < data.size(); ++length)
        applicationName(std::string_view(data).substr(0, length)); // whatever it answers, it reads no further
}

} // namespace quoddle
