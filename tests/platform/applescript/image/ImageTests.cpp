// SPDX-License-Identifier: MIT
#include "platform/applescript/image/Block.h"
#include "platform/applescript/image/Image.h"

#include <gtest/gtest.h>
#include <random>

namespace quoddle {
namespace {

/// Makes a script with a slot for each value.
Object* scriptWith(ObjectStore& store, const std::vector<Object*>& values) {
    std::vector<Object*> names, table{store.nil(), nullptr};
    for (std::size_t i = 0; i < values.size(); ++i) {
        names.push_back(store.identifier("v" + std::to_string(i)));
        table.push_back(values[i]);
    }
    table[1] = store.vector(names);
    return store.block(block::Script, {store.nil(), store.nil(), store.block(block::Script, {}), store.vector(table)});
}

const Object* slot(const Image& image, std::size_t index) {
    return image.root->children[block::kScriptTable]->children[index + 2];
}

std::string written(const Object* root) {
    auto bytes = writeImage(root);
    return bytes ? *bytes : std::string();
}

TEST(Image, KeepsEveryKindOfObject) {
    ObjectStore store;
    std::vector<Object*> many(5000, store.integer(7));
    const std::u16string longText(70000, u'ä');
    Object* old = store.text(u"oldé");
    old->flags = 1;
    const std::string bytes = written(scriptWith(store, {
                                                            store.integer(-5),
                                                            store.integer(100000),
                                                            store.real(1.5),
                                                            store.code("pnam"_4cc),
                                                            store.constant("boov"_4cc, "true"_4cc),
                                                            store.identifier("name", "Name"),
                                                            store.text(longText),
                                                            old,
                                                            store.data(13, "ldt 12345678"),
                                                            store.list(many),
                                                            store.list({}),
                                                            store.record(std::vector<Object*>{store.code("aaaa"_4cc), store.integer(1)}),
                                                            store.raw("\x01\x02"),
                                                        }));
    ASSERT_FALSE(bytes.empty());
    EXPECT_EQ(bytes.size() % 2, 0u);
    auto image = readImage(bytes);
    ASSERT_TRUE(image);
    EXPECT_EQ(slot(*image, 0)->integer, -5);
    EXPECT_EQ(slot(*image, 1)->integer, 100000);
    EXPECT_EQ(slot(*image, 2)->real, 1.5);
    EXPECT_EQ(slot(*image, 3)->code(), "pnam"_4cc);
    EXPECT_EQ(slot(*image, 4)->code(1), "true"_4cc);
    EXPECT_EQ(slot(*image, 5)->spelledName(), "Name");
    EXPECT_EQ(slot(*image, 6)->text, longText);
    EXPECT_EQ(slot(*image, 7)->text, u"oldé");
    EXPECT_EQ(slot(*image, 7)->flags, 1);
    EXPECT_EQ(slot(*image, 8)->bytes, "ldt 12345678");
    EXPECT_EQ(slot(*image, 9)->children.size(), 5000u);
    EXPECT_TRUE(slot(*image, 10)->children.empty());
    EXPECT_EQ(slot(*image, 11)->children[1]->integer, 1);
    EXPECT_EQ(slot(*image, 12)->bytes, "\x01\x02");
}

TEST(Image, KeepsSharingAndCycles) {
    ObjectStore store;
    Object* shared = store.block(block::List, {store.integer(0), store.nil()});
    Object* knot = store.unfinished(ObjectKind::Block, block::List, 2);
    knot->children[0] = store.integer(1);
    knot->children[1] = store.block(block::Storage, {knot});
    auto image = readImage(written(scriptWith(store, {shared, shared, knot})));
    ASSERT_TRUE(image);
    EXPECT_EQ(slot(*image, 0), slot(*image, 1));
    EXPECT_EQ(slot(*image, 2)->children[1]->children[0], slot(*image, 2));
}

TEST(Image, SaysWhenAScriptIsTooLargeToStore) {
    ObjectStore store;
    std::vector<Object*> texts, blocks;
    for (int i = 0; i < 40000; ++i) {
        texts.push_back(store.text(i % 2 == 0 ? u"even" : u"odd"));
        blocks.push_back(store.block(block::Storage, {}));
    }
    const auto withTwo = [&](const std::vector<Object*>& items) {
        return writeImage(scriptWith(store, {store.block(block::Storage, items), store.block(block::Storage, items)}));
    };
    auto many = withTwo(texts); // texts are written again rather than shared when there are too many
    ASSERT_TRUE(many);
    auto image = readImage(*many);
    ASSERT_TRUE(image);
    EXPECT_EQ(slot(*image, 1)->children[39999]->text, u"odd");
    auto bytes = withTwo(blocks);
    ASSERT_FALSE(bytes);
    EXPECT_EQ(bytes.error(), errOSAInternalTableOverflow);

    Object* deep = store.nil();
    for (int i = 0; i < 3000; ++i)
        deep = store.block(block::Storage, {deep});
    auto nested = writeImage(scriptWith(store, {deep}));
    ASSERT_FALSE(nested);
    EXPECT_EQ(nested.error(), errOSADataBlockTooLarge);
}

TEST(Image, RefusesWhatIsNoCompiledScript) {
    ObjectStore store;
    std::string good = written(scriptWith(store, {store.integer(1)}));
    const auto with = [&](std::size_t at, const std::string& bytes) { return std::string(good).replace(at, bytes.size(), bytes); };
    const struct {
        std::string bytes;
        OSStatus status;
    } kCases[] = {
        {"", errOSABadStorageType},
        {"set x to 1", errOSABadStorageType},
        {"JsOsaDAS1.001.00bplist", errOSABadStorageType},
        {"Fasd", errOSACorruptData},
        {with(0, "FasdXXXX"), errOSACorruptData},
        {with(8, "0.900.90"), errOSADataFormatObsolete},
        {with(12, "1.20"), errOSADataFormatTooNew},
        {with(16, std::string("\x05", 1)), errOSACorruptData},           // unknown kind of record
        {with(16, std::string("\x03\0\0\0\x07", 5)), errOSACorruptData}, // the root is a number
    };
    for (const auto& row : kCases) {
        auto image = readImage(row.bytes);
        ASSERT_FALSE(image) << row.bytes;
        EXPECT_EQ(image.error(), row.status) << row.bytes;
    }
    EXPECT_TRUE(readImage("#!/usr/bin/osascript\n" + good));
    EXPECT_TRUE(readImage(good + "bytes of another system"));
}

TEST(Image, SurvivesDamage) {
    ObjectStore store;
    std::vector<Object*> items(20, store.text(u"some text"));
    const std::string good = written(scriptWith(store, {store.list(items), store.block(block::Storage, items), store.real(2)}));
    for (std::size_t length = 0; length + 14 < good.size(); ++length)
        EXPECT_FALSE(readImage(std::string_view(good).substr(0, length))) << length;
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        std::string bad = good;
        for (int i = 0; i < 1 + round % 4; ++i)
            bad[16 + random() % (bad.size() - 16)] = static_cast<char>(random());
        (void)readImage(bad); // a script or an error, but no crash
    }
}

TEST(Image, BoundsWhatSharedTailsCost) {
    // 20,000 lists that all end in the cells of the first, which has 20,000.
    std::string bytes = "FasdUAS 1.101.10";
    const auto put = [&](int kind, int reference, int size) {
        bytes += {static_cast<char>(kind), static_cast<char>(reference >> 8), static_cast<char>(reference), static_cast<char>(size >> 8),
                  static_cast<char>(size)};
    };
    const auto put16 = [&](int value) { bytes += {static_cast<char>(value >> 8), static_cast<char>(value)}; };
    put(0x0E, 0, 2000);
    bytes += static_cast<char>(block::Script);
    for (int i = 0; i < 2000; ++i)
        put16(i == 0 ? 1 : -1);
    for (int cell = 0; cell < 2000; ++cell) {
        put(0x02, 1 + cell, 2);
        put16(-2);
        put16(2 + cell);
        put(0x01, -2, 0);
    }
    put(0x02, 2001, 0);
    for (int i = 1; i < 2000; ++i) {
        put(0x02, -1, 2);
        put16(-2);
        put16(2);
        put(0x01, -2, 0);
    }
    EXPECT_FALSE(readImage(bytes)); // 4 million items from 60 KB
}

} // namespace
} // namespace quoddle
