// SPDX-License-Identifier: MIT
// Reading and writing whole files: the old contents stay until the new file is complete.
#include "platform/base/File.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace quoddle {
namespace {

namespace fs = std::filesystem;

class FileTest : public testing::Test {
protected:
    FileTest() {
        char name[] = "/tmp/quoddle-test.XXXXXX";
        folder = mkdtemp(name);
    }
    ~FileTest() override { fs::remove_all(folder); }

    std::size_t filesInFolder() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }

    std::string folder;
};

/// Limits the size of files. To a writer that is the same as a full disk.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &mBefore);
        rlimit small = mBefore;
        small.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &small);
        mHandler = std::signal(SIGXFSZ, SIG_IGN);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &mBefore);
        std::signal(SIGXFSZ, mHandler);
    }

private:
    rlimit mBefore{};
    void (*mHandler)(int);
};

TEST_F(FileTest, AFullDiskCostsTheNewFileOnly) {
    const std::string path = folder + "/a";
    ASSERT_EQ(writeFile(path, "before"), noErr);
    {
        const FullDisk full(1000);
        EXPECT_NE(writeFile(path, std::string(100'000, 'x')), noErr);
    }
    EXPECT_EQ(*readFile(path, 1000), "before");
    EXPECT_EQ(filesInFolder(), 1u);
    EXPECT_EQ(writeFile(path, "after"), noErr);
    EXPECT_EQ(*readFile(path, 1000), "after");
    EXPECT_EQ(*readFileStart(path, 3), "aft");
}

TEST_F(FileTest, KeepsThePermissionsAndSaysWhatFailed) {
    const std::string path = folder + "/a";
    ASSERT_EQ(writeFile(path, "x"), noErr);
    ::chmod(path.c_str(), 0640);
    ASSERT_EQ(writeFile(path, "y"), noErr);
    struct stat status {};
    ::stat(path.c_str(), &status);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
    EXPECT_EQ(readFile(folder + "/none", 10).error(), fnfErr);
    EXPECT_EQ(readFile(path, 0).error(), memFullErr);
    EXPECT_EQ(readFileStart(folder + "/none", 10).error(), fnfErr);
    EXPECT_EQ(readFileStart(folder, 10).error(), paramErr);
    EXPECT_EQ(*readFileStart(path, 0), "");
    EXPECT_EQ(*readFileStart(path, 10), "y");
    EXPECT_NE(writeFile(folder + "/none/a", "x"), noErr);
    const std::string cut = path + std::string("\0b", 2);
    EXPECT_EQ(readFile(cut, 10).error(), -37);
    EXPECT_EQ(writeFile(cut, "z"), -37);
    EXPECT_EQ(writeFile(folder + "/" + std::string(300, 'n'), "z"), -37);
}

TEST_F(FileTest, WritesWhereAnOpenFileStands) {
    for (const bool isAppended : {true, false})
        for (const bool isRemoved : {true, false}) {
            const std::string path = folder + "/file", link = folder + "/link";
            ASSERT_EQ(writeFile(path, "head, "), noErr);
            const int file = ::open(path.c_str(), O_RDWR | (isAppended ? O_APPEND : 0));
            ::lseek(file, isAppended ? 0 : 4, SEEK_SET);
            if (isRemoved)
                fs::remove(path);
            fs::create_symlink("/dev/fd/" + std::to_string(file), link);
            EXPECT_EQ(writtenPath(link).error(), paramErr);
            EXPECT_EQ(writeFile(link, "body"), noErr);
            char content[100] = {};
            EXPECT_GT(::pread(file, content, sizeof content - 1, 0), 0);
            EXPECT_STREQ(content, isAppended ? "head, body" : "headbody");
            EXPECT_EQ(filesInFolder(), isRemoved ? 1u : 2u);
            fs::remove(link);
            ::close(file);
        }
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    EXPECT_EQ(writeFile("/proc/self/fd/" + std::to_string(ends[1]), "body"), noErr);
    ::close(ends[1]);
    EXPECT_EQ(*readToEnd(ends[0], 100), "body");
    ::close(ends[0]);
    EXPECT_NE(writeFile("/proc/self/fd/" + std::to_string(ends[1]), "body"), noErr) << "closed";
    EXPECT_EQ(writeFile("/proc/self/cwd", "body"), paramErr);
}

TEST_F(FileTest, LeavesThePermissionsOfOtherThreadsFilesAlone) {
    const mode_t mask = ::umask(022);
    std::atomic<bool> ended = false;
    std::thread other([&] {
        while (!ended)
            EXPECT_EQ(writeFile(folder + "/a", "x"), noErr);
    });
    bool isOpenToAll = false;
    for (int i = 0; i < 1'000 && !isOpenToAll; ++i) {
        const std::string path = folder + "/b" + std::to_string(i);
        ASSERT_EQ(::mkdir(path.c_str(), 0777), 0);
        struct stat status {};
        ::stat(path.c_str(), &status);
        isOpenToAll = (status.st_mode & 0022) != 0;
        ::rmdir(path.c_str());
    }
    ended = true;
    other.join();
    ::umask(mask);
    EXPECT_FALSE(isOpenToAll);
}

TEST_F(FileTest, DoesNotWaitForPipes) {
    const std::string path = folder + "/pipe";
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(readFile(path, 10).error(), paramErr);
}

} // namespace
} // namespace quoddle
