// SPDX-License-Identifier: MIT
// Tests may run as root, to whom permissions do not apply. While this is there, this thread and those that it starts use files as somebody
// to whom they do.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include <sys/fsuid.h>
#include <unistd.h>

namespace quoddle {

class WithoutPrivileges {
public:
    /// The folder is given away to that user.
    explicit WithoutPrivileges(const std::string& folder) {
        if (geteuid() != 0)
            return;
        EXPECT_EQ(chown(folder.c_str(), kNobody, kNobody), 0);
        setfsgid(kNobody);
        setfsuid(kNobody);
        EXPECT_EQ(setfsuid(static_cast<uid_t>(-1)), static_cast<int>(kNobody)); // which answers who it is
    }
    ~WithoutPrivileges() {
        setfsuid(geteuid());
        setfsgid(getegid());
    }
    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

private:
    static constexpr uid_t kNobody = 65534;
};

} // namespace quoddle
