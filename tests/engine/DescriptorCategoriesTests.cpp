// SPDX-License-Identifier: MIT
// The two groups of operations on descriptors, including their quirks.
#include "Fixture.h"

#include "engine/BridgedObjects.h"

namespace quoddle {

namespace {

NSAppleEventDescriptorRef recordWith(std::initializer_list<NSAppleEventDescriptorRef> fields) {
    auto list = Descriptor::listDescriptor();
    for (const auto& field : fields)
        list->insertDescriptor(field, 0);
    auto record = Descriptor::recordDescriptor();
    record->setDescriptor(list, "usrf"_4cc);
    return record;
}

} // namespace

TEST(DescriptorCategories, SpecialValuesAreShared) {
    EXPECT_EQ(descriptorWithMissingValue(), descriptorWithMissingValue());
    EXPECT_EQ(descriptorWithUndefinedValue(), descriptorWithUndefinedValue());
    EXPECT_EQ(Additions::descriptorWithUndefinedValue(), Additions::descriptorWithUndefinedValue());
    EXPECT_NE(Additions::descriptorWithUndefinedValue(), descriptorWithUndefinedValue());
    EXPECT_EQ(Additions::descriptorWithUndefinedValue()->aeDesc(), descriptorWithUndefinedValue()->aeDesc());
    EXPECT_TRUE(isMissingValue(descriptorWithMissingValue()));
    EXPECT_FALSE(isMissingValue(descriptorWithUndefinedValue()));
    EXPECT_TRUE(isUndefinedValue(descriptorWithUndefinedValue()));
    EXPECT_FALSE(isMissingValue(Descriptor::descriptorWithEnumCode("msng"_4cc)));
    EXPECT_EQ(descriptorWithAbsoluteOrdinal("all "_4cc)->aeDesc(), AEDesc::ofCode("abso"_4cc, "all "_4cc));
}

TEST(DescriptorCategories, TypeTests) {
    struct Row {
        bool (*test)(const NSAppleEventDescriptorRef&);
        std::vector<DescType> types;
    };
    const Row kRows[] = {
        {isText, {"STXT"_4cc, "TEXT"_4cc, "cstr"_4cc, "encs"_4cc, "itxt"_4cc, "pstr"_4cc, "sutx"_4cc, "ut16"_4cc, "utf8"_4cc, "utxt"_4cc}},
        {isInteger, {"comp"_4cc, "long"_4cc, "magn"_4cc, "shor"_4cc, "ucom"_4cc, "ushr"_4cc}},
        {isReal, {"doub"_4cc, "ldbl"_4cc, "sing"_4cc}},
        {isFile, {"alis"_4cc, "bmrk"_4cc, "file"_4cc, "fsrf"_4cc, "furl"_4cc, "psxf"_4cc}},
    };
    for (const Row& row : kRows) {
        for (const Row& other : kRows)
            for (DescType type : other.types)
                EXPECT_EQ(row.test(ofType(type)), row.test == other.test) << bytesOf(type);
        for (DescType type : {"type"_4cc, "list"_4cc, "obj "_4cc, "null"_4cc})
            EXPECT_FALSE(row.test(ofType(type))) << bytesOf(type);
        EXPECT_FALSE(row.test(nullptr));
    }
    EXPECT_TRUE(isReallyARecord(Descriptor::descriptorWithAEDesc(AEDesc::record("docu"_4cc))));
    EXPECT_FALSE(isReallyARecord(ofType("reco"_4cc)));
}

TEST(DescriptorCategories, SpecifiersOfFiles) {
    EXPECT_TRUE(isFile(fileSpecifier("file"_4cc, "name"_4cc, "utxt"_4cc)));
    EXPECT_TRUE(isFile(fileSpecifier("alis"_4cc, "name"_4cc, "furl"_4cc)));
    EXPECT_FALSE(isFile(fileSpecifier("type"_4cc, "name"_4cc, "utxt"_4cc)));
    EXPECT_FALSE(isFile(fileSpecifier("file"_4cc, "indx"_4cc, "utxt"_4cc)));
    EXPECT_FALSE(isFile(fileSpecifier("file"_4cc, "name"_4cc, "long"_4cc)));
    // An ordinary specifier has the wanted class as a code, which does not count.
    EXPECT_FALSE(isFile(descriptorForObjectSpecifierFor("file"_4cc, nullptr, "name"_4cc, Descriptor::descriptorWithString("x"))));
    auto withoutContainer = fileSpecifier("file"_4cc, "name"_4cc, "utxt"_4cc);
    withoutContainer->removeDescriptorWithKeyword("from"_4cc);
    EXPECT_FALSE(isFile(withoutContainer));
    EXPECT_FALSE(isFile(Descriptor::descriptorWithString("/tmp/x")));
}

TEST(DescriptorCategories, Specifiers) {
    auto first = descriptorForObjectSpecifierFor("docu"_4cc, nullptr, "indx"_4cc, Descriptor::descriptorWithInt32(1));
    ASSERT_TRUE(first);
    EXPECT_EQ(first->descriptorType(), "obj "_4cc);
    EXPECT_EQ(first->descriptorForKeyword("from"_4cc)->descriptorType(), "null"_4cc);
    EXPECT_FALSE(descriptorForObjectSpecifierFor("docu"_4cc, Descriptor::descriptorWithInt32(1), "indx"_4cc, first));
    auto second = descriptorForObjectSpecifierFor("word"_4cc, first, "indx"_4cc, Descriptor::descriptorWithInt32(2));
    EXPECT_EQ(second->descriptorForKeyword("want"_4cc)->typeCodeValue(), "word"_4cc);
    EXPECT_EQ(second->descriptorForKeyword("from"_4cc)->aeDesc(), first->aeDesc());
    auto range = descriptorForRangeObjectSpecifierFrom(first, second);
    EXPECT_EQ(range->descriptorType(), "rang"_4cc);
    EXPECT_EQ(range->descriptorForKeyword("star"_4cc)->aeDesc(), first->aeDesc());
    EXPECT_EQ(range->descriptorForKeyword("stop"_4cc)->aeDesc(), second->aeDesc());
}

TEST(DescriptorCategories, IntegersOfAnything) {
    EXPECT_EQ(KVBintegerValue(Descriptor::descriptorWithString("12")), 12);
    EXPECT_EQ(integerValue(Descriptor::descriptorWithAEDesc(AEDesc::ofInt64(INT64_MIN))), INT64_MIN);
    EXPECT_EQ(KVBunsignedIntegerValue(Descriptor::descriptorWithString("18446744073709551615")), UINT64_MAX);
    EXPECT_EQ(unsignedIntegerValue(Descriptor::descriptorWithInt32(-1)), 0u);
    const auto listOfOne = Descriptor::descriptorWithAEDesc(AEDesc::list({AEDesc::ofInt32(12)}));
    EXPECT_EQ(KVBintegerValue(listOfOne), 0);
    EXPECT_EQ(KVBunsignedIntegerValue(listOfOne), 0u);
    EXPECT_EQ(KVBintegerValue(Descriptor::descriptorWithString("twelve")), 0);
    EXPECT_EQ(KVBintegerValue(nullptr), 0);
}

TEST(DescriptorCategories, BridgedObjectsAreFoundByTicket) {
    std::uint64_t ticket = BridgedObjects::add(QStringLiteral("an object"));
    auto reference = BridgedObjects::descriptor(ticket);
    EXPECT_TRUE(isASObjCReference(reference));
    EXPECT_EQ(ASObjCReference(reference), QVariant(QStringLiteral("an object")));
    BridgedObjects::withdraw(ticket);
    EXPECT_FALSE(ASObjCReference(reference).isValid());
    EXPECT_FALSE(ASObjCReference(BridgedObjects::descriptor(0x7fff12345678)).isValid()) << "an address is no ticket";
    auto other = descriptorForObjectSpecifierFor("docu"_4cc, nullptr, "ID  "_4cc, ofType("ocid"_4cc));
    EXPECT_FALSE(isASObjCReference(other));
    auto truncated = descriptorForObjectSpecifierFor("ocid"_4cc, nullptr, "ID  "_4cc, Descriptor::descriptorWithInt32(1));
    EXPECT_TRUE(isASObjCReference(truncated));
    EXPECT_FALSE(ASObjCReference(truncated).isValid());
    EXPECT_FALSE(isASObjCReference(nullptr));
}

TEST(DescriptorCategories, UserFieldsByName) {
    auto name = Descriptor::descriptorWithString("Name"), value = Descriptor::descriptorWithInt32(1);
    auto record = recordWith({name, value, Descriptor::descriptorWithString("odd")});
    EXPECT_EQ(descriptorForPropertyName(record, "Name")->int32Value(), 1);
    EXPECT_FALSE(descriptorForPropertyName(record, "name"));
    EXPECT_FALSE(descriptorForPropertyName(record, "odd"));
    EXPECT_FALSE(descriptorForPropertyName(recordWith({name}), "Name"));
    EXPECT_FALSE(descriptorForPropertyName(Descriptor::recordDescriptor(), "Name"));
    EXPECT_FALSE(descriptorForPropertyName(Descriptor::descriptorWithInt32(1), "Name"));
    EXPECT_FALSE(descriptorForPropertyName(nullptr, "Name"));
    // Setting changes only a copy of the fields.
    const AEDesc before = record->aeDesc();
    setDescriptorForPropertyName(record, Descriptor::descriptorWithInt32(2), "Name");
    setDescriptorForPropertyName(record, Descriptor::descriptorWithInt32(2), "Other");
    EXPECT_EQ(record->aeDesc(), before);
    auto empty = Descriptor::recordDescriptor();
    setDescriptorForPropertyName(empty, value, "Name");
    EXPECT_EQ(empty->numberOfItems(), 0u);
}

TEST(DescriptorCategories, ReplacingOnlyInserts) {
    auto list = Descriptor::descriptorWithAEDesc(AEDesc::list({AEDesc::ofInt32(1), AEDesc::ofInt32(2)}));
    replaceDescriptorAtIndex(list, Descriptor::descriptorWithInt32(9), 2);
    EXPECT_EQ(list->aeDesc(), AEDesc::list({AEDesc::ofInt32(1), AEDesc::ofInt32(9), AEDesc::ofInt32(2)}));
}

TEST(DescriptorCategories, FileURLsAsBytes) {
    EXPECT_FALSE(descriptorWithFileURLLegacy(QUrl()));
    auto descriptor = descriptorWithFileURLLegacy(QUrl::fromLocalFile(QStringLiteral("/tmp/a b")));
    EXPECT_EQ(descriptor->descriptorType(), "furl"_4cc);
    EXPECT_EQ(descriptor->data(), "file:///tmp/a%20b");
    QUrl broken;
    broken.setScheme(QStringLiteral("file"));
    broken.setPath(QStringLiteral("//a"));
    try {
        descriptorWithFileURLLegacy(broken);
        FAIL();
    } catch (const QXOSAException& exception) {
        EXPECT_EQ(exception.name(), QStringLiteral("NSInternalInconsistencyException"));
        EXPECT_TRUE(exception.reason().startsWith(QStringLiteral("Unable to extract bytes of URL (")));
    }
}

} // namespace quoddle
