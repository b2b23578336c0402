// SPDX-License-Identifier: MIT
// Commands that only compute with numbers and texts.
#include "Additions.h"

#include <cmath>
#include <ctime>
#include <set>

namespace quoddle::testing_additions {

TEST(NumberCommands, RoundInEveryDirection) {
    const struct {
        double number;
        std::int64_t nearest, up, down, zero, school;
    } kCases[] = {
        {2.5, 2, 3, 2, 2, 3},
        {3.5, 4, 4, 3, 3, 4},
        {-2.5, -2, -2, -3, -2, -3},
        {-3.5, -4, -3, -4, -3, -4},
        {0.49999999999999994, 0, 1, 0, 0, 0},
        {-0.2, 0, 0, -1, 0, 0},
        {7, 7, 7, 7, 7, 7},
        {5e9 + 0.5, 5000000000, 5000000001, 5000000000, 5000000000, 5000000001},
    };
    for (const auto& row : kCases) {
        const auto rounded = [&](FourCharCode way) {
            return send("sysorond", {{"----"_4cc, real(row.number)}, {"dire"_4cc, AEDesc::ofEnum(way)}}).number();
        };
        EXPECT_EQ(send("sysorond", {{"----"_4cc, real(row.number)}}).number(), row.nearest) << row.number;
        EXPECT_EQ(rounded("rndN"_4cc), row.nearest) << row.number;
        EXPECT_EQ(rounded("rndU"_4cc), row.up) << row.number;
        EXPECT_EQ(rounded("rndD"_4cc), row.down) << row.number;
        EXPECT_EQ(rounded("rndZ"_4cc), row.zero) << row.number;
        EXPECT_EQ(rounded("rndS"_4cc), row.school) << row.number;
    }
    EXPECT_EQ(send("sysorond", {{"----"_4cc, real(1e300)}}).real(), 1e300);
    EXPECT_EQ(send("sysorond", {{"----"_4cc, real(NAN)}}).error(), errAECoercionFail);
    EXPECT_EQ(send("sysorond", {{"----"_4cc, text("many")}}).error(), errAECoercionFail);
    EXPECT_EQ(send("sysorond", {{"----"_4cc, real(1)}, {"dire"_4cc, AEDesc::ofEnum("side"_4cc)}}).error(), errAECoercionFail);
    EXPECT_EQ(send("sysorond").error(), errAEDescNotFound);
}

TEST(NumberCommands, RandomNumbersReachBothLimitsAndNothingElse) {
    std::set<std::int64_t> seen;
    for (int i = 0; i < 500; ++i)
        seen.insert(send("sysorand", {{"from"_4cc, whole(-1)}, {"to  "_4cc, whole(2)}}).number().value_or(99));
    EXPECT_EQ(seen, (std::set<std::int64_t>{-1, 0, 1, 2}));
    for (int i = 0; i < 50; ++i) {
        const Answer upTo = send("sysorand", {{"----"_4cc, whole(3)}}), real01 = send("sysorand"),
                     mixed = send("sysorand", {{"from"_4cc, whole(2)}, {"to  "_4cc, real(2.5)}});
        EXPECT_TRUE(*upTo.number() >= 0 && *upTo.number() <= 3);
        EXPECT_TRUE(*real01.real() >= 0 && *real01.real() <= 1);
        EXPECT_EQ(real01.value().type(), "doub"_4cc);
        EXPECT_TRUE(*mixed.real() >= 2 && *mixed.real() <= 2.5);
    }
    EXPECT_NE(send("sysorand").real(), send("sysorand").real());
    EXPECT_EQ(send("sysorand", {{"from"_4cc, whole(9)}, {"to  "_4cc, whole(9)}}).number(), 9);
    const auto reversed = send("sysorand", {{"from"_4cc, whole(6)}, {"to  "_4cc, whole(5)}}).number();
    EXPECT_TRUE(reversed == 5 || reversed == 6);
    EXPECT_EQ(send("sysorand", {{"----"_4cc, text("x")}}).error(), errAECoercionFail);
    EXPECT_EQ(send("sysorand", {{"to  "_4cc, real(INFINITY)}}).error(), errAECoercionFail);
}

TEST(NumberCommands, ASeedRepeatsTheNumbersThatFollow) {
    const auto sequence = [](std::int32_t seed) {
        std::vector<std::int64_t> numbers{*send("sysorand", {{"----"_4cc, whole(1000000)}, {"seed"_4cc, whole(seed)}}).number()};
        for (int i = 0; i < 3; ++i)
            numbers.push_back(*send("sysorand", {{"----"_4cc, whole(1000000)}}).number());
        return numbers;
    };
    const auto first = sequence(42);
    EXPECT_EQ(first, sequence(42));
    EXPECT_NE(first, sequence(43));
    EXPECT_EQ(sequence(-1), sequence(-1));
}

TEST(TextCommands, OffsetsCountCharactersOfTheLanguage) {
    const struct {
        const char *of, *in;
        std::int64_t offset;
    } kCases[] = {
        {"l", "Hello", 3},
        {"LO", "hello", 4},
        {"x", "Hello", 0},
        {"", "Hello", 0},
        {"Hello!", "Hello", 0},
        {"É", "caf\u00e9", 4},
        {"d", "e\u0301😀👍🏽d", 4},
        {"e", "é", 0},
        {"ß", "STRAßE", 5},
        {"Ω", "aω", 2},
        {"\n", "a\r\nb", 2},
        {"b", "a\r\nb", 3},
    };
    for (const auto& row : kCases)
        EXPECT_EQ(send("sysooffs", {{"psof"_4cc, text(row.of)}, {"psin"_4cc, text(row.in)}}).number(), row.offset)
            << row.of << " in " << row.in;
    EXPECT_EQ(send("sysooffs", {{"psof"_4cc, text("LO")}, {"psin"_4cc, text("hello")}}, {}, {{"csig"_4cc, whole(1)}}).number(), 0);
    EXPECT_EQ(send("sysooffs", {{"psof"_4cc, text("a")}}).error(), errAEDescNotFound);
}

TEST(TextCommands, TextsThatAreAlikeNearlyEverywhereAreSearchedInAMoment) {
    std::string searched(300'001, 'a');
    searched.back() = 'b';
    const std::clock_t start = std::clock(); // processor time, which other processes do not change
    EXPECT_EQ(send("sysooffs", {{"psof"_4cc, text(searched)}, {"psin"_4cc, text(std::string(600'000, 'A'))}}).number(), 0);
    EXPECT_LT(std::clock() - start, 3 * CLOCKS_PER_SEC);
}

TEST(TextCommands, CharactersAndTheirNumbers) {
    const std::pair<std::int32_t, const char*> kCases[] = {{65, "A"}, {10, "\n"}, {13, "\r"}, {0xA5, "•"}, {0x8A, "ä"}, {255, "ˇ"}};
    for (const auto& [number, character] : kCases) {
        EXPECT_EQ(send("sysontoc", {{"----"_4cc, whole(number)}}).text(), character);
        EXPECT_EQ(send("sysocton", {{"----"_4cc, text(character)}}).number(), number);
    }
    EXPECT_EQ(send("sysocton", {{"----"_4cc, text("BCD")}}).number(), 66);
    EXPECT_EQ(send("sysocton", {{"----"_4cc, text("")}}).number(), 0);
    EXPECT_EQ(send("sysontoc", {{"----"_4cc, whole(256)}}).error(), paramErr);
    EXPECT_EQ(send("sysontoc", {{"----"_4cc, whole(-1)}}).error(), paramErr);
}

} // namespace quoddle::testing_additions
