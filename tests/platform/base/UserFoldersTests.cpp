// SPDX-License-Identifier: MIT
// The user's folders: which values of the environment count.
#include "platform/base/UserFolders.h"

#include <cstdlib>

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

namespace quoddle {

namespace {

/// Gives a variable a value for a while; null removes it.
class Variable {
public:
    Variable(const char* name, const char* value) : mName(name) {
        if (const char* old = std::getenv(name))
            mOld = old;
        value ? ::setenv(name, value, 1) : ::unsetenv(name);
    }
    ~Variable() { mOld.empty() ? ::unsetenv(mName) : ::setenv(mName, mOld.c_str(), 1); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    const char* mName;
    std::string mOld;
};

} // namespace

TEST(UserFolders, RelativePathsAndEmptyOnesDoNotCount) {
    const passwd* user = ::getpwuid(::getuid());
    ASSERT_TRUE(user);
    const std::string listed = user->pw_dir;
    const struct {
        const char* home;
        const char* data;
        std::string expected;
    } kRows[] = {
        {"/h", nullptr, "/h/.local/share"},
        {"/h/", "", "/h/.local/share"},
        {"/h", "here", "/h/.local/share"},
        {"/h", "/d//", "/d"},
        {nullptr, nullptr, listed + "/.local/share"},
        {"relative", "./x", listed + "/.local/share"},
        {"/", nullptr, "/.local/share"},
    };
    for (const auto& row : kRows) {
        const Variable home("HOME", row.home), data("XDG_DATA_HOME", row.data);
        EXPECT_EQ(dataFolder(), row.expected) << (row.home ? row.home : "no home") << " " << (row.data ? row.data : "no data");
        settleUserFolders();
        const char* settled[] = {std::getenv("HOME"), std::getenv("XDG_DATA_HOME")};
        EXPECT_EQ(std::string(settled[1] ? settled[1] : settled[0]).front(), '/');
        EXPECT_EQ(dataFolder(), row.expected);
    }
}

} // namespace quoddle
