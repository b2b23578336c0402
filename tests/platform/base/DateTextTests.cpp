// SPDX-License-Identifier: MIT
#include "platform/base/DateText.h"

#include "platform/base/Text.h"

#include <gtest/gtest.h>

namespace quoddle {

TEST(DateText, WrittenAndRead) {
    constexpr std::int64_t kDay = 86400;
    const std::int64_t now = daysFromDate(2024, 2, 29) * kDay + 12345;
    EXPECT_EQ(daysFromDate(1904, 1, 1), 0);
    EXPECT_EQ(utf8FromUTF16(textOfDate(0)), "Friday, January 1, 1904 at 12:00:00 AM");
    EXPECT_EQ(utf8FromUTF16(textOfDate(-1)), "Thursday, December 31, 1903 at 11:59:59 PM");
    EXPECT_EQ(utf8FromUTF16(textOfDate(daysFromDate(2024, 2, 29) * kDay + 13 * 3600)), "Thursday, February 29, 2024 at 1:00:00 PM");
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
        {u"2008-01-27T14:05:01", daysFromDate(2008, 1, 27) * kDay + 50701},
        {u"12:30 am", daysFromDate(2024, 2, 29) * kDay + 1800},
        {u"3 PM", daysFromDate(2024, 2, 29) * kDay + 54000},
        {u"March 5", daysFromDate(2024, 3, 5) * kDay},
    };
    for (const auto& each : cases)
        EXPECT_EQ(dateOfText(each.text, now), each.seconds) << utf8FromUTF16(each.text);
    EXPECT_FALSE(textOfDate(INT64_MIN).empty());
    EXPECT_EQ(dateOfText(std::u16string(1000, u'1'), now), std::nullopt);
    for (const char16_t* text : {u"", u"hello", u"32/13/2008", u"25:00", u"1/2/3/4", u"13:61", u"99999999999999999999"})
        EXPECT_EQ(dateOfText(text, now), std::nullopt) << utf8FromUTF16(text);
}

} // namespace quoddle
