// SPDX-License-Identifier: MIT
// The rows of the coercion table.
#include "platform/ae/AECoercion.h"
#include "platform/ae/AEObjects.h"

#include <gtest/gtest.h>

namespace quoddle {

namespace {

template<class T>
AEDesc number(DescType type, T value) {
    return {type, {reinterpret_cast<const char*>(&value), sizeof value}};
}

AEDesc text(const char* utf8, DescType type = "utxt"_4cc) {
    return *AECoerced(AEDesc::ofUTF8(utf8), type);
}

constexpr DescType kTexts[] = {"utxt"_4cc, "utf8"_4cc, "TEXT"_4cc, "ut16"_4cc, "itxt"_4cc,
                               "STXT"_4cc, "sutx"_4cc, "encs"_4cc, "cstr"_4cc, "pstr"_4cc};
constexpr DescType kNumbers[] = {"shor"_4cc, "ushr"_4cc, "long"_4cc, "magn"_4cc, "comp"_4cc,
                                 "ucom"_4cc, "sing"_4cc, "doub"_4cc, "ldbl"_4cc};

} // namespace

TEST(AECoercion, EveryTextIntoEveryText) {
    for (DescType from : kTexts)
        for (DescType to : kTexts) {
            auto coerced = AECoerced(text("na\u00efve", from), to);
            ASSERT_TRUE(coerced) << bytesOf(from) << bytesOf(to);
            EXPECT_EQ(coerced->type(), to);
            EXPECT_EQ(coerced->asUTF8(), "na\u00efve") << bytesOf(from) << bytesOf(to);
        }
    EXPECT_EQ(text("\u00e9", "TEXT"_4cc).data(), "\x8e");
}

TEST(AECoercion, ExternalUTF16FollowsItsMark) {
    EXPECT_EQ(AEDesc("ut16"_4cc, std::string("\xFF\xFE"
                                             "a\0",
                                             4))
                  .asUTF8(),
              "a");
    EXPECT_EQ(AEDesc("ut16"_4cc, std::string("\xFE\xFF\0a", 4)).asUTF8(), "a");
    EXPECT_EQ(AEDesc("ut16"_4cc, std::string("\0a", 2)).asUTF8(), "a");
    EXPECT_EQ(AEDesc("utxt"_4cc, "odd").asText()->size(), 1u);
    EXPECT_FALSE(AECoerced(AEDesc::ofUTF8(std::string(256, 'x')), "pstr"_4cc));
}

TEST(AECoercion, EveryNumberIntoEveryNumber) {
    for (DescType from : kNumbers)
        for (DescType to : kNumbers) {
            auto narrow = AECoerced(AEDesc::ofInt32(100), from);
            ASSERT_TRUE(narrow);
            EXPECT_EQ(AECoerced(*narrow, to)->asInt32(), 100) << bytesOf(from) << bytesOf(to);
        }
}

TEST(AECoercion, NumbersThatDoNotFitAreRefused) {
    const std::pair<AEDesc, DescType> kRefused[] = {
        {AEDesc::ofInt32(-1), "magn"_4cc},
        {AEDesc::ofInt32(-1), "ucom"_4cc},
        {AEDesc::ofInt32(32768), "shor"_4cc},
        {number("ucom"_4cc, ~std::uint64_t{0}), "comp"_4cc},
        {AEDesc::ofDouble(2147483648.0), "long"_4cc},
        {AEDesc::ofDouble(9223372036854775808.0), "comp"_4cc},
        {AEDesc::ofDouble(18446744073709551616.0), "ucom"_4cc},
        {AEDesc::ofDouble(std::numeric_limits<double>::quiet_NaN()), "long"_4cc},
        {AEDesc("long"_4cc, "abc"), "comp"_4cc},
    };
    for (const auto& [desc, to] : kRefused)
        EXPECT_FALSE(AECoerced(desc, to)) << bytesOf(desc.type()) << bytesOf(to);
    const std::pair<double, std::int32_t> kRounded[] = {{2.5, 2}, {3.5, 4}, {-2.5, -2}, {2.51, 3}, {2147483647.4, 2147483647}};
    for (auto [real, whole] : kRounded)
        EXPECT_EQ(AEDesc::ofDouble(real).asInt32(), whole);
    EXPECT_EQ(AEDesc::ofInt64(INT64_MAX).asInt64(), INT64_MAX);
    EXPECT_EQ(number("ucom"_4cc, ~std::uint64_t{0}).asUInt64(), ~std::uint64_t{0});
}

TEST(AECoercion, TextAndNumber) {
    const std::pair<const char*, double> kNumbersInText[] = {{"12", 12},   {" -3 ", -3},  {"+4", 4},
                                                             {"1.5", 1.5}, {"1e3", 1000}, {"9223372036854775807", 9223372036854775807.0}};
    for (auto [spelled, value] : kNumbersInText)
        EXPECT_EQ(AEDesc::ofUTF8(spelled).asDouble(), value) << spelled;
    for (const char* spelled : {"", " ", "12a", "a", "1 2", "0x10", "inf", "nan", "+-1", "--1", "1e999", "\u0661"})
        EXPECT_FALSE(AEDesc::ofUTF8(spelled).asDouble()) << spelled;
    EXPECT_EQ(AEDesc::ofUTF8("9223372036854775807").asInt64(), INT64_MAX);
    EXPECT_EQ(AEDesc::ofInt32(-7).asUTF8(), "-7");
    EXPECT_EQ(AEDesc::ofDouble(0.1).asUTF8(), "0.1");
    EXPECT_EQ(AEDesc::ofDouble(100000).asUTF8(), "1.0E+5"); // in the form that scripts use for reals
}

TEST(AECoercion, Booleans) {
    EXPECT_EQ(AEDesc::ofBoolean(true).asInt32(), 1);
    EXPECT_EQ(AEDesc("fals"_4cc, "").asUTF8(), "false");
    EXPECT_EQ(AEDesc("true"_4cc, "").asBoolean(), true);
    EXPECT_EQ(AEDesc::ofUTF8("TRUE").asBoolean(), true);
    EXPECT_EQ(AEDesc::ofUTF8("yes").asBoolean(), std::nullopt);
    EXPECT_EQ(AEDesc::ofInt32(2).asBoolean(), true);
    EXPECT_TRUE(AECoerced(AEDesc::ofBoolean(true), "true"_4cc));
    EXPECT_FALSE(AECoerced(AEDesc::ofBoolean(true), "fals"_4cc));
    EXPECT_FALSE(AEDesc("bool"_4cc, "").asBoolean());
}

TEST(AECoercion, CodesFilesDates) {
    EXPECT_EQ(AEDesc::ofType("docu"_4cc).asUTF8(), "docu");
    EXPECT_EQ(AEDesc::ofUTF8("docu").asType(), "docu"_4cc);
    EXPECT_EQ(AEDesc::ofUTF8("doc").asType(), std::nullopt);
    EXPECT_EQ(AEDesc::ofEnum("yes "_4cc).asType(), "yes "_4cc);
    EXPECT_EQ(AEDesc::ofFilePath("/a b").asUTF8(), "/a b");
    EXPECT_EQ(AEDesc::ofUTF8("/a b").asFilePath(), "/a b");
    EXPECT_EQ(AEDesc::ofUTF8("file:///a%20b").asFilePath(), "/a b");
    EXPECT_EQ(AEDesc::ofUTF8("a b").asFilePath(), std::nullopt);
    EXPECT_EQ(AECoerced(AEDesc::ofFilePath("/x"), "alis"_4cc)->asFilePath(), "/x");
    EXPECT_EQ(AEDesc::ofDate(0).asUTF8(), "Friday, January 1, 1904 at 12:00:00 AM");
    EXPECT_EQ(AEDesc::ofDate(-1).asUTF8(), "Thursday, December 31, 1903 at 11:59:59 PM");
    EXPECT_EQ(AECoerced(AEDesc::ofUTF8("1904-01-02 00:00:01"), "ldt "_4cc), AEDesc::ofDate(86401));
    EXPECT_EQ(AECoerced(AEDesc::ofUTF8("1904-01-02"), "ldt "_4cc), AEDesc::ofDate(86400));
    for (const char* spelled : {"1904-13-30", "1904-01-02T25:00:00", "1904-01-02x", "yesterday", "1904-01-02T00:00:00Z", "40000-01-01"})
        EXPECT_FALSE(AECoerced(AEDesc::ofUTF8(spelled), "ldt "_4cc)) << spelled;
    EXPECT_TRUE(AEDesc::ofDate(INT64_MIN).asText());
    EXPECT_EQ(AECoerced(AEDesc::ofUTF8(*AEDesc::ofDate(86401).asUTF8()), "ldt "_4cc), AEDesc::ofDate(86401));
}

TEST(AECoercion, ListsAndRecords) {
    AEDesc one = AEDesc::list({AEDesc::list({AEDesc::ofInt32(5)})});
    EXPECT_EQ(one.asInt32(), 5);
    EXPECT_FALSE(AEDesc::list().asInt32());
    EXPECT_FALSE(AEDesc::list({AEDesc::ofInt32(1), AEDesc::ofInt32(2)}).asText());
    EXPECT_EQ(AECoerced(AEDesc::ofInt32(5), "list"_4cc), AEDesc::list({AEDesc::ofInt32(5)}));
    AEDesc record = AEDesc::record({{"a   "_4cc, AEDesc::ofInt32(1)}, {"b   "_4cc, AEDesc::ofInt32(2)}});
    EXPECT_EQ(AECoerced(record, "list"_4cc), AEDesc::list({AEDesc::ofInt32(1), AEDesc::ofInt32(2)}));
    AEDesc specifier;
    CreateObjSpecifier("docu"_4cc, {}, "indx"_4cc, AEDesc::ofInt32(1), specifier);
    for (DescType type : {"reco"_4cc, "rang"_4cc, "cmpd"_4cc, "logi"_4cc, "insl"_4cc, "docu"_4cc}) {
        auto other = AECoerced(specifier, type);
        ASSERT_TRUE(other) << bytesOf(type);
        EXPECT_EQ(AECoerced(*other, "obj "_4cc), specifier);
    }
    EXPECT_EQ(AECoerced(specifier, "list"_4cc), AEDesc::list({specifier}));
    EXPECT_FALSE(AECoerced(record, "utxt"_4cc));
    AEDesc event = AEDesc::appleEvent("aevt"_4cc, "odoc"_4cc);
    EXPECT_TRUE(AECoerced(event, "reco"_4cc)->isRecord());
    EXPECT_FALSE(AECoerced(event, "list"_4cc));
    EXPECT_FALSE(AECoerced(record, "aevt"_4cc));
}

TEST(AECoercion, WildCardAndNull) {
    for (const AEDesc& desc : {AEDesc(), AEDesc::ofInt32(1), AEDesc::list(), AEDesc("zzzz"_4cc, "bytes")})
        EXPECT_EQ(AECoerced(desc, "****"_4cc), desc);
    AEDesc result = AEDesc::ofInt32(1);
    for (DescType type : {"utxt"_4cc, "list"_4cc, "reco"_4cc, "long"_4cc})
        EXPECT_EQ(AECoerceDesc(AEDesc(), type, result), errAECoercionFail);
    EXPECT_EQ(AECoerceDesc(AEDesc::ofInt32(1), "null"_4cc, result), errAECoercionFail);
    EXPECT_EQ(AECoerceDesc(AEDesc("zzzz"_4cc, "bytes"), "utxt"_4cc, result), errAECoercionFail);
    EXPECT_EQ(result, AEDesc::ofInt32(1)) << "a failure leaves the result alone";
    EXPECT_EQ(AECoerceDesc(result, "utxt"_4cc, result), noErr);
    EXPECT_EQ(result, AEDesc::ofUTF8("1"));
}

} // namespace quoddle
