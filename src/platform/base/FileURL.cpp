// SPDX-License-Identifier: MIT
#include "platform/base/FileURL.h"

#include <limits.h>
#include <strings.h>
#include <unistd.h>

namespace quoddle {

namespace {

constexpr std::string_view kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~!$&'()*+,;=:@/";

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::optional<std::string> unescaped(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '%') {
            int high = i + 2 < text.size() ? hexDigit(text[i + 1]) : -1;
            int low = i + 2 < text.size() ? hexDigit(text[i + 2]) : -1;
            if (high < 0 || low < 0)
                return {};
            c = static_cast<char>(high << 4 | low);
            i += 2;
        }
        if (c == '\0')
            return {};
        result += c;
    }
    return result;
}

/// Whether a URL's host, in either case, is empty, "localhost" or this machine's name. Some programs put that name into the URLs of dragged
/// files.
bool isThisMachine(const std::string& host) {
    if (host.empty() || strcasecmp(host.c_str(), "localhost") == 0)
        return true;
    char name[HOST_NAME_MAX + 1] = {};
    return gethostname(name, sizeof name - 1) == 0 && strcasecmp(host.c_str(), name) == 0;
}

} // namespace

std::string fileURLFromPath(std::string_view path) {
    constexpr char kHex[] = "0123456789ABCDEF";
    std::string url = "file://";
    for (char c : path) {
        if (kPlain.find(c) != std::string_view::npos) {
            url += c;
        } else {
            auto byte = static_cast<unsigned char>(c);
            url += {'%', kHex[byte >> 4], kHex[byte & 15]};
        }
    }
    return url;
}

std::optional<std::string> pathFromFileURL(std::string_view url) {
    if (!url.starts_with("file:"))
        return {};
    url.remove_prefix(5);
    if (url.starts_with("//")) {
        url.remove_prefix(2);
        const std::size_t host = url.find('/');
        if (host == std::string_view::npos || !isThisMachine(std::string(url.substr(0, host))))
            return {};
        url.remove_prefix(host);
    }
    if (!url.starts_with("/"))
        return {};
    return unescaped(url.substr(0, url.find_first_of("?#")));
}

} // namespace quoddle
