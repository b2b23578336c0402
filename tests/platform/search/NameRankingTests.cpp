// SPDX-License-Identifier: MIT
// The index must rank hits as a slow model does, and sort them in the order that comparing them gives.
#include "platform/search/index/NameRanking.h"

#include "platform/base/Text.h"
#include "platform/search/ranking/NameScore.h"
#include "platform/search/ranking/RankOrder.h"
#include "platform/search/ranking/SpreadTerm.h"
#include "RandomText.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <map>

namespace quoddle {

namespace {

/// A direct model without optimizations; nullopt for a hit that is not kept.
std::optional<double> modelRelevance(const NameRanges& ranges, std::size_t termCount, std::size_t longest, std::size_t nameLength) {
    const auto rangeCount = static_cast<double>(ranges.size()), longestTerm = static_cast<double>(longest);
    if (termCount != 1 && ranges.size() != termCount)
        return {};
    if (termCount == 1 && ranges.empty())
        return {};
    if (termCount == 1 && ranges.size() > 1 && !(longestTerm > rangeCount && (rangeCount < 4 || rangeCount / longestTerm * 100 < 25)))
        return {};
    double sum = 0, longestRange = 0, minGap = DBL_MAX, maxGap = 0;
    const NameRange* previous = nullptr;
    for (const NameRange& range : ranges) {
        if (previous) {
            const std::uint64_t gap = range.location - (previous->location + previous->length);
            minGap = std::min(minGap, static_cast<double>(gap));
            maxGap = std::max(maxGap, static_cast<double>(gap));
        }
        sum += static_cast<double>(range.length);
        longestRange = std::max(longestRange, static_cast<double>(range.length));
        previous = &range;
    }
    const double coverage = longestRange / longestTerm;
    const double spread = static_cast<double>(termCount) / rangeCount * coverage;
    const double base = sum / static_cast<double>(nameLength) * spread;
    double minFactor = 1;
    if (minGap < DBL_MAX)
        minFactor = minGap > 0 ? 1 / minGap : 1.0;
    else if (ranges.size() < termCount)
        minFactor = DBL_MIN;
    return base * (maxGap > 0 ? 1 / maxGap : 1.0) * minFactor;
}

std::map<FileNames::Entry, double> rankedIn(const FileNames& names, std::u16string_view term) {
    std::map<FileNames::Entry, double> ranked;
    if (const auto ranking = NameRanking::make(term))
        ranking->forEachUsable(names, 0, names.entryCount(),
                               [&](FileNames::Entry entry, double relevance) { return ranked.emplace(entry, relevance).second; });
    return ranked;
}

} // namespace

TEST(NameScore, IsThatOfTheModel) {
    RandomText random;
    int kept = 0;
    for (int i = 0; i < 100'000; ++i) {
        NameRanges ranges;
        for (std::size_t count = random.below(6); ranges.size() < count;)
            ranges.push_back({random.below(30), random.below(12)}); // some ranges overlap or go back, which gives huge gaps
        const TermCounts terms{1 + random.below(3), random.below(25)};
        const std::size_t length = random.below(40);
        const auto model = modelRelevance(ranges, terms.count, terms.longest, length);
        ASSERT_EQ(isUsableMatch(ranges, terms), model.has_value()) << i;
        if (!model)
            continue;
        ++kept;
        const double relevance = matchRelevance(ranges, terms, length);
        ASSERT_TRUE(relevance == *model || (std::isnan(relevance) && std::isnan(*model))) << i << " " << relevance << " " << *model;
    }
    EXPECT_GT(kept, 10'000);
}

TEST(NameRanking, JudgesEachNameLikeTheExpression) {
    RandomText random;
    int kept = 0, left = 0;
    for (int i = 0; i < 2'500; ++i) {
        const bool isASCII = i % 2 == 0;
        const std::u16string term = u'a' + random(isASCII ? u"aAbc.-7" : u"aAksf.", 6);
        SpreadTerm spread(term);
        FileNames names;
        std::vector<std::u16string> texts;
        for (int j = 0; j < 40; ++j) {
            // Some names are as long as a name can be or longer, and some contain the term.
            std::u16string name = random(isASCII ? u"aAbBc.-7\n" : u"aAkKsfﬁßKſé\u0130\u0085\u2028.日", j % 8 ? 40 : 280) + u'x';
            if (j % 3 == 0)
                name.insert(random.below(name.size()), term + (isASCII ? u"" : u"é😀"));
            texts.push_back(name);
            names.add(FileNames::kTop, utf8FromUTF16(name), false);
        }
        names.remove(7);
        const bool isRanked = NameRanking::make(term) != nullptr;
        const auto ranked = rankedIn(names, term);
        for (FileNames::Entry entry = 0; entry < names.entryCount() && isRanked; ++entry) {
            const auto model = modelRelevance(spread.rangesByExpression(texts[entry]), 1, term.size(), texts[entry].size());
            const auto found = ranked.find(entry);
            if (!model || entry == 7) {
                ASSERT_TRUE(found == ranked.end() || (found->second == 0 && entry != 7)) << utf8FromUTF16(texts[entry]);
                continue;
            }
            ASSERT_NE(found, ranked.end()) << utf8FromUTF16(term) << " in " << utf8FromUTF16(texts[entry]);
            ++(found->second == 0 ? left : kept);
            ASSERT_TRUE(found->second == 0 || found->second == *model) << utf8FromUTF16(term) << " in " << utf8FromUTF16(texts[entry]);
        }
    }
    EXPECT_GT(kept, 4'000);
    EXPECT_GT(left, 1'000); // names that only the expression can rank
}

TEST(NameRanking, LeavesExpressionsToOthersAndStopsWhenTold) {
    for (const char16_t* term : {u"a(b)", u"é", u"a.b.c"})
        EXPECT_FALSE(NameRanking::make(term)) << utf8FromUTF16(term);
    FileNames names;
    for (int i = 0; i < 1'000; ++i)
        names.add(FileNames::kTop, "abc", false);
    int calls = 0;
    NameRanking::make(u"abc")->forEachUsable(names, 0, names.entryCount(), [&calls](FileNames::Entry, double) { return ++calls < 300; });
    EXPECT_EQ(calls, 300);
}

TEST(RankSort, MakesTheOrderOfComparing) {
    RandomText random;
    const double relevances[] = {0.5, 0.25, 0, -0.0, -1, 1e300, INFINITY, NAN};
    for (const std::size_t count : {0, 1, 5, 24, 25, 300, 5'000}) {
        for (const std::u16string_view alphabet : {u"a", u"ab", u"abcdé\uFFFF\xD800"}) {
            std::vector<std::u16string> names(count);
            std::vector<Ranked<char16_t>> sorted;
            for (std::uint32_t i = 0; i < count; ++i) {
                names[i] = random(alphabet, i % 7 == 0 ? 3 : 20);
                sorted.emplace_back(relevances[random.below(std::size(relevances))], names[i], i);
            }
            std::vector<Ranked<char16_t>> compared = sorted;
            RankSort{std::span(sorted)};
            std::sort(compared.begin(), compared.end(), &comesBefore<char16_t>);
            for (std::size_t i = 0; i < count; ++i)
                ASSERT_EQ(sorted[i].number, compared[i].number) << count << " " << i;
        }
    }
    const double falling[] = {INFINITY, 2, 1, 1e-320, 0, -1, -INFINITY, NAN};
    for (std::size_t i = 1; i < std::size(falling); ++i)
        EXPECT_LT(rankNumber(falling[i - 1]), rankNumber(falling[i])) << falling[i];
    EXPECT_EQ(rankNumber(0.0), rankNumber(-0.0));
}

} // namespace quoddle
