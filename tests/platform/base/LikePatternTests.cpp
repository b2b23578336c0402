// SPDX-License-Identifier: MIT
#include "platform/base/LikePattern.h"

#include "platform/base/Text.h"

#include <gtest/gtest.h>

namespace quoddle {
namespace {

constexpr std::uint8_t kCD = LikePattern::ignoresCase | LikePattern::ignoresDiacritics;
constexpr std::uint8_t kCDW = kCD | LikePattern::matchesWords;

TEST(LikePattern, MatchesByItsOptions) {
    const struct {
        const char16_t* pattern;
        std::uint8_t options;
        const char16_t* text;
        bool matches;
    } rows[] = {
        {u"abc", 0, u"abc", true},
        {u"abc", 0, u"abcd", false},
        {u"abc", 0, u"Abc", false},
        {u"", 0, u"", true},
        {u"", 0, u"a", false},
        {u"*", 0, u"", true},
        {u"a*c", 0, u"abcbc", true},
        {u"a*c", 0, u"abcb", false},
        {u"a*bc*c", 0, u"abcc", true},
        {u"a*bc*c", 0, u"abc", false}, // the same letters are not matched twice
        {u"a?c", 0, u"abc", true},
        {u"a?c", 0, u"ac", false},
        {u"a?c", 0, u"a😀c", true},
        {u"*?", 0, u"😀", true},
        {u"a\\*c", 0, u"a*c", true},
        {u"a\\*c", 0, u"abc", false},
        {u"r*sum*", kCD, u"RÉSUMÉ.pdf", true},
        {u"résumé", kCD, u"Re\u0301sume", true},
        {u"résumé", LikePattern::ignoresCase, u"RESUME", false},
        // With the option w the pattern may match anywhere, but only whole words.
        {u".pdf", kCDW, u"Report.PDF", true},
        {u".pdf", kCDW, u"Report.pdfx", false},
        {u".pdf", kCDW, u"Report.pdf.zip", true},
        {u"re*p*o", kCDW, u"My Repo", true},
        {u"re*p*o*", kCDW, u"My Repository", true},
        {u"re*p*o*", kCDW, u"Prepost", false},
        {u"repo*", kCDW, u"MyRepo", true},
        {u"repo*", kCDW, u"my_repo", true},
        {u"repo*", kCDW, u"2repo", true},
        {u"*epo*", kCDW, u"Repository", true},
        {u"port", kCDW, u"Report port", true},
        {u"port", kCDW, u"Report", false},
        {u"a*port", kCDW, u"a ports port", true},
        {u"a*port", kCDW, u"a ports", false},
        {u"s", kCDW, u"ß", false}, // half of a character does not match
    };
    for (const auto& row : rows)
        EXPECT_EQ(LikePattern(row.pattern, row.options).matches(row.text), row.matches)
            << utf8FromUTF16(row.pattern) << " " << int(row.options) << " " << utf8FromUTF16(row.text);
}

TEST(LikePattern, NoPatternTakesForEver) {
    std::u16string pattern, text(20'000, u'a');
    for (int i = 0; i < 1'000; ++i)
        pattern += u"a*";
    EXPECT_FALSE(LikePattern(pattern + u"b", kCDW).matches(text));
    EXPECT_TRUE(LikePattern(pattern, kCDW).matches(text));
}

} // namespace
} // namespace quoddle
