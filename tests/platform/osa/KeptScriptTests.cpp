// SPDX-License-Identifier: MIT
// Properties that last: which file a script is loaded from after its run, and that nothing is stored that could not be loaded.
#include "platform/osa/KeptScript.h"

#include "platform/base/File.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace quoddle {

namespace fs = std::filesystem;

TEST(KeptScript, TheFileStaysAsLongAsTheNewOneIsTooLarge) {
    char name[] = "/tmp/quoddle-test.XXXXXX";
    const fs::path folder = mkdtemp(name);
    const std::string file = folder / "a.scpt";
    ASSERT_EQ(writeFile(file, "as it was"), noErr);
    EXPECT_EQ(keepScript(file, std::string(kLargestScript + 1, 'x')), memFullErr);
    EXPECT_EQ(*readFile(file, 100), "as it was");
    EXPECT_EQ(keepScript(file, "after a run"), noErr);
    EXPECT_EQ(fileOfLastRun(file), file);
    EXPECT_EQ(*readFile(file, 100), "after a run");
    fs::remove_all(folder);
}

} // namespace quoddle
