// SPDX-License-Identifier: MIT
// The ranges of terms in names, in a table of cases and against a slow model that follows the rules step by step.
#include "platform/search/ranking/SpreadTerm.h"

#include "platform/base/Text.h"
#include "RandomText.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <unicode/uchar.h>
#include <unicode/ustring.h>

namespace quoddle {

void PrintTo(const NameRange& range, std::ostream* out) {
    *out << "(" << range.location << "," << range.length << ")";
}

namespace {

using Terms = std::vector<std::u16string>;

constexpr std::uint64_t kNotThere = 9223372036854775807u;

std::uint64_t modelFind(const std::u16string& name, const std::u16string& term, std::uint64_t start) {
    for (std::uint64_t at = start; at + term.size() <= name.size(); ++at)
        if (std::equal(term.begin(), term.end(), name.begin() + static_cast<std::ptrdiff_t>(at),
                       [](char16_t a, char16_t b) { return foldedASCII(a) == foldedASCII(b); }))
            return at;
    return kNotThere;
}

/// A direct model without optimizations.
std::optional<NameRanges> modelContiguous(const Terms& terms, const std::u16string& name) {
    if (name.empty())
        return {};
    std::optional<NameRanges> best;
    std::uint64_t bestMinGap = UINT64_MAX, bestMaxGap = 0, start = 0;
    while (true) {
        std::optional<NameRanges> current;
        std::uint64_t minGap = UINT64_MAX, maxGap = 0, at = start;
        NameRange previous{kNotThere, 0};
        for (const std::u16string& term : terms) {
            const std::uint64_t location = modelFind(name, term, at);
            const NameRange r{location, location == kNotThere ? 0 : term.size()};
            if (location != kNotThere) {
                if (!current)
                    current.emplace();
                current->push_back(r);
                const std::uint64_t end = r.location + r.length;
                if (end >= name.size())
                    break;
                at = end;
            }
            if (previous.location != kNotThere) {
                const std::uint64_t gap = r.location - (previous.location + previous.length);
                maxGap = std::max(maxGap, gap);
                if (gap <= minGap)
                    minGap = gap;
            }
            previous = r;
        }
        if (!best) {
            best = current;
            bestMinGap = minGap;
            bestMaxGap = maxGap;
        } else if (current && !(current->size() < best->size() || minGap > bestMinGap || maxGap > bestMaxGap)) {
            best = current;
            bestMinGap = minGap;
            bestMaxGap = maxGap;
        }
        if ((current ? current->size() : 0) != terms.size())
            return best;
        start = current->front().location + current->front().length;
        if (start >= name.size())
            return best;
    }
}

} // namespace

TEST(ContiguousRanges, ComeInOrderAndClose) {
    const struct {
        Terms terms;
        const char16_t* name;
        NameRanges ranges;
    } rows[] = {
        {{u"ab", u"cd"}, u"xxabyycd", {{2, 2}, {6, 2}}},
        {{u"ab", u"zz"}, u"abcd", {{0, 2}}},
        {{u"cd", u"ab"}, u"abcd", {{2, 2}}},
        {{u"ab", u"c"}, u"abxxxabcz", {{5, 2}, {7, 1}}}, // the second occurrence is closer
        {{u"ab", u"cd", u"e"}, u"abxcd", {{0, 2}, {3, 2}}},
        {{u"AB", u"É"}, u"xab é", {{1, 2}, {4, 1}}},
        {{u"e", u"x"}, u"éex", {{1, 1}, {2, 1}}}, // letters with different accents are different
    };
    for (const auto& row : rows)
        EXPECT_EQ(contiguousRanges(row.terms, row.name), row.ranges) << utf8FromUTF16(row.name);
    EXPECT_FALSE(contiguousRanges({u"a"}, u""));
    EXPECT_FALSE(contiguousRanges({u"a", u"b"}, u"xyz"));
}

TEST(ContiguousRanges, AgreeWithTheModel) {
    RandomText random;
    for (int i = 0; i < 50'000; ++i) {
        Terms terms(1 + random.below(4));
        for (std::u16string& term : terms)
            do
                term = random(u"aAbc", 3);
            while (term.empty());
        const std::u16string name = random(u"aAbBc", 14);
        ASSERT_EQ(contiguousRanges(terms, name), modelContiguous(terms, name)) << i << " " << utf8FromUTF16(name);
    }
}

TEST(SpreadTerm, IsAnExpression) {
    const std::pair<const char16_t*, const char16_t*> rows[] = {
        {u"report.pdf", u".*(report).*?(\\.pdf)|(re).*?(p).*?(o).*?(r).*?(t).*?(\\.pdf)"},
        {u"abc", u".*(abc)|(ab).*?(c)"},
        {u"ab", u"(ab)"},
        {u"ab.c", u"(ab).*?(\\.c)"},
        {u".txt", u"().*?(\\.txt)"},
        {u"abe\u0301", u".*(abe\u0301)|(ab).*?(e\u0301)"},
        {u"a.b.c", u".*(a.b).*?(\\.c)|(a.).*?(b).*?(\\.c)"},
        {u"abc.", u".*(abc.)|(ab).*?(c).*?(.)"},
    };
    for (const auto& [term, expression] : rows)
        EXPECT_EQ(utf8FromUTF16(SpreadTerm::expressionFor(term)), utf8FromUTF16(expression));
}

TEST(SpreadTerm, IsFoundWholeOrSpread) {
    const struct {
        const char16_t *term, *name;
        NameRanges ranges;
    } rows[] = {
        {u"prort.pdf", u"Project Report.pdf", {{0, 3}, {8, 1}, {13, 5}}},
        {u"abc", u"ABC.txt", {{0, 3}}},
        {u"abc", u"abc xabc", {{5, 3}}}, // the last occurrence
        {u"abc", u"a b c", {}},          // the first two characters must stay together
        {u"ab", u"xab", {{1, 2}}},
        {u"ab", u"axb", {}},
        {u".txt", u"note.txt", {{0, 0}, {4, 4}}},
        {u".txt", u".txt", {{0, 4}}},
        {u"ab.c", u"xab.d.c", {{1, 2}, {5, 2}}},
        {u"abc.d", u"abc.d abc", {{0, 5}}}, // the last occurrence that has the extension behind it
        {u"straße", u"STRASSE", {{0, 7}}},
        {u"b(c|d)e", u"abde", {{1, 3}, {2, 1}}}, // an expression with a group of its own
        {u"b(c", u"ab(c", {}},                   // no valid expression
        {u"abc", u"x\nabc", {{2, 3}}},
        {u"", u"x", {{0, 0}}},
        {u"abc", u"", {}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(SpreadTerm(row.term).rangesIn(row.name), row.ranges) << utf8FromUTF16(row.term) << " " << utf8FromUTF16(row.name);
        EXPECT_EQ(SpreadTerm(row.term).rangesByExpression(row.name), row.ranges) << utf8FromUTF16(row.term);
    }
}

TEST(SpreadTerm, FindsTheSameWithoutItsExpression) {
    RandomText random;
    for (int i = 0; i < 5'000; ++i) {
        const bool isASCII = i % 2 == 0;
        SpreadTerm term(random(isASCII ? u"aAbc.-" : u"aAksf.", 6));
        for (int j = 0; j < 20; ++j) {
            const std::u16string name = random(isASCII ? u"aAbBc.-\n" : u"aAkKsfﬁßKſé\u0130\u0085\u2028.日", 40);
            ASSERT_EQ(term.rangesIn(name), term.rangesByExpression(name)) << i << " " << utf8FromUTF16(name);
        }
    }
}

TEST(SpreadTerm, KnowsTheCharactersThatCountAsASCII) {
    int known = 0;
    for (char16_t unit = 0x80; unit < 0xFFFF; ++unit) {
        char16_t folded[8];
        UErrorCode status = U_ZERO_ERROR;
        const auto length = static_cast<std::size_t>(u_strFoldCase(folded, 8, &unit, 1, U_FOLD_CASE_DEFAULT, &status));
        if (std::none_of(folded, folded + length, [](char16_t each) { return each < 0x80; }))
            continue;
        ++known;
        SpreadTerm term(std::u16string_view(folded, length));
        for (const std::u16string& name : {std::u16string(1, unit), u"0123456789" + std::u16string(2, unit)})
            EXPECT_EQ(term.rangesIn(name), term.rangesByExpression(name)) << std::hex << int(unit);
        SpreadTerm pair(std::u16string(2, folded[0]));
        const std::u16string name = u"0123456789" + std::u16string(2, unit);
        EXPECT_EQ(pair.rangesIn(name), pair.rangesByExpression(name)) << std::hex << int(unit);
    }
    EXPECT_GT(known, 10);
}

TEST(SpreadTerm, GivesUpOnWhatTakesForEver) {
    SpreadTerm term(u"(a+)+(a+)+(a+)+(a+)+$x");
    const std::u16string name(2000, u'a');
    for (int i = 0; i < 1000; ++i)
        ASSERT_TRUE(term.rangesIn(name).empty());
    SpreadTerm longTerm(std::u16string(100'000, u'a'));
    EXPECT_TRUE(longTerm.rangesIn(u"aé").empty());
}

} // namespace quoddle
