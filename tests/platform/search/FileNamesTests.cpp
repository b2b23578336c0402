// SPDX-License-Identifier: MIT
#include "platform/search/index/FileNames.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace quoddle {

TEST(FileNames, AreFoundUntilTheyAreRemoved) {
    FileNames names;
    const FileNames::Entry outer = *names.add(FileNames::kTop, "outer", true);
    const FileNames::Folder folder = names.addFolder(outer);
    const FileNames::Entry inner = *names.add(folder, "inner", true);
    const FileNames::Folder deep = names.addFolder(inner);
    for (int i = 0; i < 5'000; ++i)
        names.add(deep, "file " + std::to_string(i), false);
    const FileNames::Entry found = names.find(deep, "file 4999").value();
    EXPECT_EQ(names.name(found), "file 4999");
    EXPECT_EQ(names.pathOf(names.folderOf(found)), "outer/inner");
    EXPECT_FALSE(names.find(folder, "file 4999"));
    names.remove(found);
    EXPECT_FALSE(names.find(deep, "file 4999"));
    EXPECT_EQ(*names.find(deep, "file 4998"), found - 1);
    EXPECT_EQ(names.folderOfEntry(inner), deep);
    EXPECT_FALSE(names.folderOfEntry(found - 1));
    EXPECT_EQ(names.foldersBelow({folder}), std::vector<bool>({false, true, true}));
}

/// Adds and removes random names in random folders, in runs and one by one, and compares with a map.
TEST(FileNames, AreFoundInWhicheverOrderTheyCame) {
    std::mt19937 random(1);
    FileNames names;
    for (int i = 0; i < 20; ++i)
        names.addFolder(*names.add(FileNames::kTop, "folder " + std::to_string(i), true));
    std::map<std::pair<FileNames::Folder, std::string>, FileNames::Entry> model;
    const auto someName = [&] { return std::pair<FileNames::Folder, std::string>(random() % 20 + 1, std::to_string(random() % 300)); };
    for (int round = 0; round < 20'000; ++round) {
        auto each = someName();
        for (unsigned more = random() % 50 == 0 ? random() % 100 : 1; more > 0; --more, each.second = std::to_string(random() % 300))
            if (!model.contains(each))
                model[each] = *names.add(each.first, each.second, false);
        for (int i = 0; i < 2; ++i) {
            const auto asked = someName();
            const auto known = model.find(asked);
            const auto found = names.find(asked.first, asked.second);
            ASSERT_EQ(found.has_value(), known != model.end()) << round;
            if (!found)
                continue;
            ASSERT_EQ(*found, known->second) << round;
            names.remove(*found);
            model.erase(known);
        }
    }
    for (const auto& [name, entry] : model)
        ASSERT_EQ(names.find(name.first, name.second), entry);
    EXPECT_GT(model.size(), 500u);
}

TEST(FileNames, WhatIsRemovedTakesNoRoomForEver) {
    FileNames names;
    const FileNames::Entry gone = *names.add(FileNames::kTop, "gone", true);
    names.addFolder(gone);
    const FileNames::Folder kept = names.addFolder(*names.add(FileNames::kTop, "kept", true));
    names.setWatchOf(kept, 7);
    const FileNames::Folder inKept = names.addFolder(*names.add(kept, "é", true));
    names.remove(gone);
    int made = 0;
    for (; !names.isWorthCompacting(); ++made)
        names.remove(*names.add(kept, "passing", false));
    names.add(inKept, "last", false);
    const std::vector<FileNames::Folder> numbers = names.compact();
    EXPECT_LT(made, 1'000'000);
    EXPECT_EQ(names.entryCount(), 3u);
    EXPECT_EQ(numbers, std::vector<FileNames::Folder>({0, FileNames::kRemoved, 1, 2}));
    EXPECT_EQ(names.watchOf(1), 7);
    EXPECT_EQ(names.pathOf(2), "kept/é");
    EXPECT_EQ(names.name(names.find(2, "last").value()), "last");
    EXPECT_FALSE(names.isEmpty(1));
}

} // namespace quoddle
