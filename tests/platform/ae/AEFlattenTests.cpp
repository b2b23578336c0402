// SPDX-License-Identifier: MIT
// The flattened form: what we write is read back equal, and any other bytes do no harm.
#include "platform/ae/AEFlatten.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <random>

namespace quoddle {

namespace {

AEDesc sample() {
    AEDesc event = AEDesc::appleEvent("aevt"_4cc, "odoc"_4cc, AEDesc::ofCurrentProcess(), -5, -6);
    event.setAttribute("subj"_4cc, AEDesc());
    event.put("----"_4cc, AEDesc::list({AEDesc::ofUTF8("text that is longer than eight bytes"), AEDesc::ofInt32(7), AEDesc::list()}));
    event.put("usrf"_4cc, AEDesc::record({{"a   "_4cc, event}}, "docu"_4cc));
    return event;
}

AEDesc nested(std::size_t depth) {
    AEDesc desc = AEDesc::ofInt32(1);
    while (--depth > 0)
        desc = AEDesc::list({std::move(desc)});
    return desc;
}

} // namespace

TEST(AEFlatten, GoesThereAndBack) {
    for (const AEDesc& desc : {AEDesc(), AEDesc::ofInt32(1), AEDesc::list(), AEDesc::record("obj "_4cc), sample(), nested(kAEMaxDepth)}) {
        std::string bytes;
        AEDesc back;
        ASSERT_EQ(AEFlattenDesc(desc, bytes), noErr);
        ASSERT_EQ(AEUnflattenDesc(bytes, back), noErr);
        EXPECT_EQ(back, desc);
    }
}

TEST(AEFlatten, BoundsAreKept) {
    std::string bytes = "old";
    EXPECT_EQ(AEFlattenDesc(nested(kAEMaxDepth + 1), bytes), errAECorruptData);
    EXPECT_EQ(bytes, "");
    // The bytes are nested one level deeper than the writer allows.
    ASSERT_EQ(AEFlattenDesc(nested(kAEMaxDepth), bytes), noErr);
    bytes.insert(4, std::string("list\x01\0\0\0\x01", 9));
    AEDesc desc;
    EXPECT_EQ(AEUnflattenDesc(bytes, desc), errAECorruptData);
    EXPECT_EQ(AEFlattenDesc(AEDesc("tdta"_4cc, std::string(kAEMaxSize + 1, 'x')), bytes), errAECorruptData);
    EXPECT_EQ(AEFlattenDesc(AEDesc::list(std::vector<AEDesc>(kAEMaxCount)), bytes), errAECorruptData);
    // The data alone is within the bound, but not together with the frames of the empty lists behind it.
    AEDesc large("tdta"_4cc, std::string(kAEMaxSize - 100, 'x'));
    EXPECT_EQ(AEFlattenDesc(AEDesc::list({large, AEDesc::list(std::vector<AEDesc>(20, AEDesc::list()))}), bytes), errAECorruptData);
}

TEST(AEFlatten, EveryTruncationIsRefused) {
    std::string bytes;
    ASSERT_EQ(AEFlattenDesc(sample(), bytes), noErr);
    AEDesc desc = AEDesc::ofInt32(1);
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_EQ(AEUnflattenDesc({bytes.data(), length}, desc), errAECorruptData) << length;
    EXPECT_EQ(AEUnflattenDesc(bytes + "x", desc), errAECorruptData);
    EXPECT_EQ(desc, AEDesc::ofInt32(1));
}

TEST(AEFlatten, HostileCountsAllocateNothing) {
    const std::string kHostile[] = {
        std::string("QAE1list\x01\xff\xff\xff\xff", 13), std::string("QAE1reco\x02\xff\xff\xff\xff", 13),
        std::string("QAE1tdta\0\xff\xff\xff\xff", 13),   std::string("QAE1reco\x03\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 31),
        std::string("QAE1null\x09\0\0\0\0", 13),
    };
    AEDesc desc;
    for (const std::string& bytes : kHostile)
        EXPECT_EQ(AEUnflattenDesc(bytes, desc), errAECorruptData);
}

// Small descriptors take many times their flattened size in memory.
TEST(AEFlatten, MemoryIsAskedForBeforeItIsTaken) {
    constexpr std::size_t kMany = 100'000;
    const AEDesc lists = AEDesc::list(std::vector<AEDesc>(kMany, AEDesc::list({AEDesc()})));
    const AEDesc texts = AEDesc::list(std::vector<AEDesc>(kMany, AEDesc("tdta"_4cc, std::string(20, 'x'))));
    const AEDesc records = AEDesc::list(std::vector<AEDesc>(kMany, AEDesc::record({{"a   "_4cc, AEDesc()}, {"b   "_4cc, AEDesc()}})));
    const AEDesc events = AEDesc::list(std::vector<AEDesc>(kMany, AEDesc::appleEvent("a   "_4cc, "b   "_4cc)));
    for (const AEDesc& desc : {lists, texts, records, events, AEDesc("tdta"_4cc, std::string(5'000'000, 'x'))}) {
        std::string bytes;
        ASSERT_EQ(AEFlattenDesc(desc, bytes), noErr);
        AEDesc back = AEDesc::ofInt32(1);
        std::size_t taken = 0, asked = 0;
        const auto inUse = [] { return ::mallinfo2().uordblks + ::mallinfo2().hblkhd; };
        const std::size_t before = inUse();
        EXPECT_EQ(AEUnflattenDesc(
                      bytes, back, [](std::size_t wanted) { return wanted < 4'000'000; }, taken),
                  memFullErr);
        EXPECT_EQ(back, AEDesc::ofInt32(1));
        const auto mayTake = [&](std::size_t wanted) {
            asked = wanted;
            return inUse() <= before + wanted;
        };
        ASSERT_EQ(AEUnflattenDesc(bytes, back, mayTake, taken), noErr);
        EXPECT_LE(inUse(), before + taken);
        EXPECT_LE(taken, asked);
        EXPECT_EQ(back, desc);
    }
}

TEST(AEFlatten, DamagedBytesNeverCrash) {
    std::string bytes;
    ASSERT_EQ(AEFlattenDesc(sample(), bytes), noErr);
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        std::string damaged = bytes;
        for (int i = 0; i < 3; ++i)
            damaged[4 + random() % (damaged.size() - 4)] = static_cast<char>(random());
        AEDesc desc;
        std::string again;
        if (AEUnflattenDesc(damaged, desc) == noErr) {
            EXPECT_EQ(AEFlattenDesc(desc, again), noErr);
        }
    }
}

// Reading a record of a million fields must not take quadratic time.
TEST(AEFlatten, LargeEventsAreReadInLinearTime) {
    std::vector<AEItem> fields(1'000'000, AEItem{"a   "_4cc, AEDesc::ofInt32(1)});
    std::string bytes;
    AEDesc back;
    ASSERT_EQ(AEFlattenDesc(AEDesc::appleEvent("aevt"_4cc, "odoc"_4cc, 0, 0, {}, std::move(fields)), bytes), noErr);
    ASSERT_EQ(AEUnflattenDesc(bytes, back), noErr);
    EXPECT_EQ(back.count(), 1'000'000u);
}

} // namespace quoddle
