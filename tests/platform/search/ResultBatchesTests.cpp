// SPDX-License-Identifier: MIT
#include "platform/search/ResultBatches.h"

#include <gtest/gtest.h>

namespace quoddle {

TEST(ResultBatches, TheFirstAndTheLastComeAtOnceTheOthersAtIntervals) {
    ResultBatches batches(0.25);
    EXPECT_EQ(batches.delay(100, false), 0);
    const std::size_t first = batches.beginSlice(20, 0);
    EXPECT_LT(first, 20u);
    batches.endSlice(first, 100, 0);
    EXPECT_EQ(batches.delay(100, false), 0); // the rest of the 20 results
    EXPECT_EQ(batches.beginSlice(50, 0), 20 - first);
    batches.endSlice(20 - first, 100, 0);
    EXPECT_EQ(batches.delay(100.05, false), 100 + 0.25 - 100.05);
    EXPECT_EQ(batches.delay(100.05, true), 0);
    EXPECT_EQ(batches.delay(101, false), 0);
}

TEST(ResultBatches, AreAsLargeAsTheLastOnesWereQuick) {
    ResultBatches batches(0);
    std::size_t known = batches.beginSlice(100'000, 0);
    for (const double each : {0.001, 1e-6, 1e-6, 1e-6, 1e-6, 0.0001, 1.0, 0.001}) { // seconds per result
        batches.endSlice(known, 0, each * static_cast<double>(known));
        const std::size_t next = batches.beginSlice(100'000, 0);
        EXPECT_GE(next, 1u);
        EXPECT_LE(next, 4 * known); // a single fast batch makes the next one only four times as large
        EXPECT_LE(static_cast<double>(next - 1) * each, 0.008);
        known = next;
    }
    for (int i = 0; i < 10; ++i, known = batches.beginSlice(100'000, 0))
        batches.endSlice(known, 0, 0);
    EXPECT_GE(known, 5'000u);
}

TEST(ResultBatches, WhatANotificationCostsAnywayMakesThemNoSmallerThanAPartOfWhatIsKnown) {
    ResultBatches batches(0);
    int notifications = 0;
    for (std::size_t known = 0, count; known < 1'000'000; known += count, ++notifications) {
        count = batches.beginSlice(1'000'000 - known, known);
        batches.endSlice(count, 0, 1e-6 * static_cast<double>(known)); // an observer that walks through all known results
    }
    EXPECT_LT(notifications, 1000);
}

} // namespace quoddle
