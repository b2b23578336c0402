// SPDX-License-Identifier: MIT
// Descriptors as values: storage, sharing, lists, records, events, specifiers.
#include "platform/ae/AEDesc.h"
#include "platform/ae/AEObjects.h"

#include <gtest/gtest.h>

namespace quoddle {

TEST(AEDesc, KeepsBytesOfEveryLength) {
    for (std::size_t length : {0u, 1u, 7u, 8u, 9u, 100u}) {
        std::string bytes(length, 'x');
        AEDesc desc("tdta"_4cc, bytes);
        AEDesc copy = desc;
        desc = AEDesc();
        EXPECT_EQ(copy.data(), bytes);
        EXPECT_TRUE(desc.isNull());
        EXPECT_EQ(desc.data(), "");
    }
    static_assert(sizeof(AEDesc) == 16);
}

TEST(AEDesc, CopiesAreIndependent) {
    AEDesc inner = AEDesc::list({AEDesc::ofInt32(1)});
    AEDesc outer = AEDesc::list({inner, inner});
    AEDesc copy = outer;
    inner.insertItem(0, AEDesc::ofInt32(2));
    outer.removeItem(1);
    outer.insertItem(0, inner);
    EXPECT_EQ(copy.count(), 2u);
    EXPECT_EQ(copy.itemAt(1)->count(), 1u);
    EXPECT_EQ(outer.itemAt(2)->count(), 2u);
    AEDesc self = AEDesc::record();
    self.put("a   "_4cc, self);
    EXPECT_EQ(self.find("a   "_4cc)->count(), 0u);
}

TEST(AEDesc, InsertsInFrontAndAppendsAtZero) {
    AEDesc list = AEDesc::list();
    EXPECT_EQ(list.insertItem(2, AEDesc::ofInt32(9)), errAEIllegalIndex);
    for (std::int32_t value : {1, 2})
        EXPECT_EQ(list.insertItem(0, AEDesc::ofInt32(value)), noErr);
    EXPECT_EQ(list.insertItem(3, AEDesc::ofInt32(3)), noErr);
    EXPECT_EQ(list.insertItem(1, AEDesc::ofInt32(0)), noErr);
    EXPECT_EQ(list, AEDesc::list({AEDesc::ofInt32(0), AEDesc::ofInt32(1), AEDesc::ofInt32(2), AEDesc::ofInt32(3)}));
    EXPECT_EQ(list.removeItem(5), errAEIllegalIndex);
    EXPECT_EQ(list.removeItem(0), errAEIllegalIndex);
    EXPECT_EQ(list.removeItem(4), noErr);
    EXPECT_EQ(list.itemAt(4), nullptr);
    EXPECT_EQ(AEDesc::ofInt32(1).insertItem(0, {}), errAEWrongDataType);
    EXPECT_EQ(list.put("a   "_4cc, {}), errAEWrongDataType);
}

TEST(AEDesc, RecordsOfAnyTypeAreRecords) {
    AEDesc record = AEDesc::record({{"pnam"_4cc, AEDesc::ofUTF8("x")}}, "docu"_4cc);
    EXPECT_TRUE(AECheckIsRecord(record));
    EXPECT_TRUE(AECheckIsRecord(record.withType("obj "_4cc)));
    EXPECT_FALSE(AECheckIsRecord(AEDesc("reco"_4cc, "bytes only")));
    EXPECT_EQ(record.keyAt(1), "pnam"_4cc);
    EXPECT_EQ(record.put("pnam"_4cc, AEDesc::ofUTF8("y")), noErr);
    EXPECT_EQ(record.count(), 1u);
    EXPECT_EQ(record.remove("none"_4cc), errAEDescNotFound);
    EXPECT_EQ(record.remove("pnam"_4cc), noErr);
    EXPECT_EQ(record.count(), 0u);
}

TEST(AEDesc, EventsHaveAttributesBesideParameters) {
    AEDesc event = AEDesc::appleEvent("aevt"_4cc, "odoc"_4cc, AEDesc::ofCurrentProcess(), 7, 8);
    event.put("----"_4cc, AEDesc::ofInt32(1));
    event.setAttribute("subj"_4cc, AEDesc::ofInt32(2));
    EXPECT_EQ(event.attribute("evcl"_4cc)->asType(), "aevt"_4cc);
    EXPECT_EQ(event.attribute("evid"_4cc)->asType(), "odoc"_4cc);
    EXPECT_EQ(event.attribute("rtid"_4cc)->asInt32(), 7);
    EXPECT_EQ(event.attribute("tran"_4cc)->asInt32(), 8);
    EXPECT_EQ(event.attribute("addr"_4cc), AEDesc::ofCurrentProcess());
    EXPECT_EQ(event.attribute("subj"_4cc)->asInt32(), 2);
    EXPECT_EQ(event.attribute("----"_4cc), std::nullopt);
    EXPECT_EQ(event.find("subj"_4cc), nullptr);
    event.setAttribute("evid"_4cc, AEDesc::ofType("pdoc"_4cc));
    EXPECT_EQ(event.eventID(), "pdoc"_4cc);
    EXPECT_EQ(AEDesc::record().setAttribute("subj"_4cc, {}), errAENotAppleEvent);
    EXPECT_FALSE(event.withType("reco"_4cc).isAppleEvent());
    EXPECT_EQ(event.withType("reco"_4cc), AEDesc::record({{"----"_4cc, AEDesc::ofInt32(1)}}));
}

TEST(AEDesc, DeepNestingIsTakenDownWithoutRecursion) {
    AEDesc nested = AEDesc::ofInt32(1);
    for (int i = 0; i < 1'000'000; ++i)
        nested = i % 2 ? AEDesc::list({std::move(nested)}) : AEDesc::record({{"x   "_4cc, std::move(nested)}});
    EXPECT_TRUE(nested.isList());
}

TEST(AEObjects, SpecifiersAreRecordsOfFourKeys) {
    AEDesc specifier, range, comparison, logical, location;
    ASSERT_EQ(CreateObjSpecifier("cwin"_4cc, {}, "indx"_4cc, CreateAbsoluteOrdinal("all "_4cc), specifier), noErr);
    EXPECT_EQ(specifier.type(), "obj "_4cc);
    EXPECT_EQ(specifier.find("want"_4cc)->asType(), "cwin"_4cc);
    EXPECT_EQ(specifier.find("form"_4cc)->asEnum(), "indx"_4cc);
    EXPECT_EQ(*specifier.find("seld"_4cc), AEDesc::ofCode("abso"_4cc, "all "_4cc));
    EXPECT_TRUE(specifier.find("from"_4cc)->isNull());
    EXPECT_EQ(CreateObjSpecifier("cwin"_4cc, AEDesc::ofInt32(1), "indx"_4cc, {}, range), errAENotAEDesc);
    ASSERT_EQ(CreateRangeDescriptor(specifier, specifier, range), noErr);
    EXPECT_EQ(*range.find("stop"_4cc), specifier);
    ASSERT_EQ(CreateCompDescriptor("=   "_4cc, specifier, AEDesc::ofInt32(1), comparison), noErr);
    EXPECT_EQ(comparison.find("relo"_4cc)->asEnum(), "=   "_4cc);
    EXPECT_EQ(CreateLogicalDescriptor(comparison, "NOT "_4cc, logical), errAEWrongDataType);
    ASSERT_EQ(CreateLogicalDescriptor(AEDesc::list({comparison}), "NOT "_4cc, logical), noErr);
    EXPECT_EQ(logical.find("term"_4cc)->count(), 1u);
    ASSERT_EQ(CreateInsertionLocation(specifier, "end "_4cc, location), noErr);
    EXPECT_EQ(*location.find("kobj"_4cc), specifier);
}

} // namespace quoddle
