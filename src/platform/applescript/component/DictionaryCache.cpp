// SPDX-License-Identifier: MIT
#include "platform/applescript/component/DictionaryCache.h"

#include "platform/base/File.h"
#include "platform/base/UserFolders.h"

#include <cstdio>
#include <filesystem>
#include <sys/stat.h>

namespace quoddle::component {

namespace {

namespace fs = std::filesystem;

/// Says how terms are made of dictionaries, too: changed when entries of before would mean something else.
constexpr std::string_view kVersion = "quoddle terms 3";
constexpr std::size_t kMaximumSize = std::size_t(16) << 20;

std::string folder() {
    return cacheFolder() + "/quoddle/dictionaries";
}

/// One name for each path; that an entry belongs to the path is seen in the entry itself.
std::string entryFor(const std::string& path) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char c : path)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    char name[32];
    std::snprintf(name, sizeof name, "/%016llx.terms", static_cast<unsigned long long>(hash));
    return folder() + name;
}

/// "SIZE SECONDS NANOSECONDS PATH"; empty when there is no such file.
std::string stampOf(const std::string& path) {
    struct stat about = {};
    if (::stat(path.c_str(), &about) != 0 || path.find('\n') != std::string::npos)
        return {};
    return std::to_string(about.st_size) + " " + std::to_string(about.st_mtim.tv_sec) + " " + std::to_string(about.st_mtim.tv_nsec) + " " +
           path;
}

/// Takes a line off the front.
std::string_view nextLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return line;
}

} // namespace

std::unique_ptr<TermDictionary> cachedTerms(const std::string& path) {
    const auto bytes = readFile(entryFor(path), kMaximumSize);
    if (!bytes)
        return nullptr;
    std::string_view rest = *bytes;
    if (nextLine(rest) != kVersion || nextLine(rest) != path)
        return nullptr;
    for (std::string_view stamp = nextLine(rest); !stamp.empty(); stamp = nextLine(rest)) {
        const std::size_t file = stamp.find('/');
        if (file == std::string_view::npos || stampOf(std::string(stamp.substr(file))) != stamp)
            return nullptr;
    }
    return TermDictionary::fromCompactForm(std::string(rest));
}

void cacheTerms(const std::string& path, const std::vector<std::string>& files, const TermDictionary& terms) {
    std::string entry(kVersion);
    entry += "\n" + path + "\n";
    for (const std::string& file : files) {
        const std::string stamp = stampOf(file);
        if (stamp.empty())
            return;
        entry += stamp + "\n";
    }
    std::error_code error;
    fs::create_directories(folder(), error);
    if (!error)
        (void)writeFile(entryFor(path), entry + "\n" + terms.compactForm());
}

} // namespace quoddle::component
