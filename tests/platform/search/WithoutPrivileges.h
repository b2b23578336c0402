// SPDX-License-Identifier: MIT
// Tests may run as root, to whom permissions do not apply. As long as the object lives, this thread and the threads that it starts access
// files as an ordinary user.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include <sys/fsuid.h>
#include <unistd.h>

namespace quoddle {

class WithoutPrivileges {
public:
    /// The folder is given to that user.
    explicit WithoutPrivileges(const std::string& folder) {
        if (geteuid() != 0)
            return;
        EXPECT_EQ(chown(folder.c_str(), kNobody, kNobody), 0);
        setfsgid(kNobody);
        setfsuid(kNobody);
        EXPECT_EQ(setfsuid(static_cast<uid_t>(-1)), static_cast<int>(kNobody)); // an invalid ID changes nothing and returns the current one
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
