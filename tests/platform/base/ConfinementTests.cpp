// SPDX-License-Identifier: MIT
// Each call is tried in a child process: it must work before the child is confined, and fail afterwards.
#include "platform/base/Confinement.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace quoddle {

namespace {

class ConfinementTest : public testing::Test {
protected:
    void SetUp() override {
        char name[] = "/tmp/confinement-XXXXXX";
        folder = ::mkdtemp(name);
        std::ofstream(folder + "/file") << "contents";
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    /// The errno of a call in a confined child process; 0 when the call worked.
    static int confined(const std::function<bool()>& call) {
        const pid_t child = ::fork();
        if (child == 0)
            ::_exit(!confineProcess() ? 255 : call() ? 0 : errno);
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    std::string folder;
};

bool opens(const std::string& path, int flags) {
    return ::open(path.c_str(), flags, 0600) >= 0;
}

} // namespace

TEST_F(ConfinementTest, NothingIsChangedStartedOrConnected) {
    if (::prctl(PR_GET_SECCOMP) < 0)
        GTEST_SKIP() << "not on this system";
    struct Row {
        const char* what;
        std::function<bool()> call;
    };
    const std::string file = folder + "/file", other = folder + "/other";
    for (const Row& row : std::initializer_list<Row>{
             {"write", [&] { return opens(file, O_WRONLY); }},
             {"read and write", [&] { return opens(file, O_RDWR); }},
             {"make", [&] { return opens(other, O_RDONLY | O_CREAT); }},
             {"cut", [&] { return opens(file, O_RDONLY | O_TRUNC); }},
             {"unnamed", [&] { return opens(folder, O_TMPFILE | O_RDWR); }},
             {"remove", [&] { return ::unlink(file.c_str()) == 0; }},
             {"rename", [&] { return ::rename(file.c_str(), other.c_str()) == 0; }},
             {"link", [&] { return ::symlink(file.c_str(), other.c_str()) == 0; }},
             {"folder", [&] { return ::mkdir(other.c_str(), 0700) == 0; }},
             {"mode", [&] { return ::chmod(file.c_str(), 0600) == 0; }},
             {"socket", [] { return ::socket(AF_UNIX, SOCK_STREAM, 0) >= 0; }},
             {"signal", [] { return ::kill(::getppid(), 0) == 0; }},
             {"program", [] { return ::execl("/bin/true", "true", nullptr) == 0; }},
         })
        EXPECT_EQ(confined(row.call), EPERM) << row.what;
    EXPECT_EQ(std::filesystem::file_size(file), 8u);
}

TEST_F(ConfinementTest, ReadingAndThreadsGoOn) {
    if (::prctl(PR_GET_SECCOMP) < 0)
        GTEST_SKIP() << "not on this system";
    EXPECT_EQ(confined([&] { return opens(folder + "/file", O_RDONLY | O_CLOEXEC) && opens(folder, O_RDONLY | O_DIRECTORY); }), 0);
    EXPECT_EQ(confined([] {
                  bool ran = false;
                  std::thread([&ran] { ran = true; }).join();
                  return ran;
              }),
              0);
}

} // namespace quoddle
