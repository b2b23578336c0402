// SPDX-License-Identifier: MIT
// File URLs: which characters are escaped, and which URLs are refused.
#include "platform/base/FileURL.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace quoddle {

TEST(FileURL, GoesThereAndBack) {
    const std::pair<std::string, std::string> kPairs[] = {
        {"/", "file:///"},
        {"/tmp/a b.txt", "file:///tmp/a%20b.txt"},
        {"/tmp/100%#?;", "file:///tmp/100%25%23%3F;"},
        {"/t\u00e4st", "file:///t%C3%A4st"},
        {"/\xff", "file:///%FF"},
    };
    for (const auto& [path, url] : kPairs) {
        EXPECT_EQ(fileURLFromPath(path), url);
        EXPECT_EQ(pathFromFileURL(url), path);
    }
    char name[256] = {};
    ASSERT_EQ(gethostname(name, sizeof name - 1), 0);
    for (const char* host : std::initializer_list<const char*>{"localhost", "LocalHost", name})
        EXPECT_EQ(pathFromFileURL(std::string("file://") + host + "/a"), "/a");
    EXPECT_EQ(pathFromFileURL("file:/a"), "/a");
    EXPECT_EQ(pathFromFileURL("file:///a?query#part"), "/a");
}

TEST(FileURL, RefusesWhatIsNoLocalFile) {
    for (const char* url : {"", "/a", "file:", "file:a", "file://", "file://localhost", "file://host.invalid/a", "http:///a", "file:///a%",
                            "file:///a%2", "file:///a%GG", "file:///a%00b"})
        EXPECT_EQ(pathFromFileURL(url), std::nullopt) << url;
}

} // namespace quoddle
