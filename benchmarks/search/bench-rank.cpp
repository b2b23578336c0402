// SPDX-License-Identifier: MIT
// Ranks names as the search pane of a droplet ranks its hits, on one thread: where the term is in the name, whether that is good enough,
// how good it is, and the order of the hits.
//
//   bench-rank make FILE COUNT     names, one a line
//   bench-rank rank FILE TERM…     TERM.time in milliseconds, reading the file not counted; TERM.count: how many were kept
#include "Names.h"
#include "platform/base/Text.h"
#include "platform/search/ranking/NameScore.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <vector>

using namespace quoddle;

namespace {

/// The first eight characters of a name in an order that the name's own order does not contradict.
std::uint64_t beginningOf(std::u16string_view name) {
    std::uint64_t beginning = 0;
    bool isExact = true;
    for (std::size_t i = 0; i < 8; ++i) {
        const std::uint64_t unit = isExact && i < name.size() ? std::min<char16_t>(name[i], 0xFF) : 0;
        isExact = isExact && unit < 0xFF;
        beginning = beginning << 8 | unit;
    }
    return beginning;
}

struct Hit {
    double relevance;
    std::uint64_t beginning;
    std::size_t name;
};

int make(const char* path, int count) {
    Names names;
    std::ofstream file(path);
    while (count-- > 0)
        file << names.file() << '\n';
    return file.good() ? 0 : 1;
}

std::vector<Hit> rank(const std::vector<std::u16string_view>& names, std::u16string_view term) {
    SpreadTerm spread(term);
    const TermCounts counts{1, term.size()};
    std::vector<Hit> hits;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const NameRanges ranges = spread.rangesIn(names[i]);
        if (isUsableMatch(ranges, counts))
            hits.push_back({matchRelevance(ranges, counts, names[i].size()), beginningOf(names[i]), i});
    }
    std::sort(hits.begin(), hits.end(), [&names](const Hit& a, const Hit& b) {
        if (a.relevance != b.relevance)
            return a.relevance > b.relevance;
        return a.beginning != b.beginning ? a.beginning < b.beginning : names[a.name] < names[b.name];
    });
    return hits;
}

int rankAll(const char* path, int terms, char** term) {
    std::ostringstream bytes;
    bytes << std::ifstream(path).rdbuf();
    const std::u16string text = utf16FromUTF8(bytes.str());
    std::vector<std::u16string_view> names;
    for (std::size_t begin = 0, end; (end = text.find(u'\n', begin)) != text.npos; begin = end + 1)
        names.push_back(std::u16string_view(text).substr(begin, end - begin));
    for (int i = 0; i < terms; ++i) {
        const auto begin = std::chrono::steady_clock::now();
        const std::size_t kept = rank(names, utf16FromUTF8(term[i])).size();
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
        std::printf("%s.time %f\n%s.count %zu\n", term[i], time.count(), term[i], kept);
    }
    return names.empty() ? 1 : 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::strcmp(argv[1], "make") == 0)
        return make(argv[2], std::atoi(argv[3]));
    if (argc >= 4 && std::strcmp(argv[1], "rank") == 0)
        return rankAll(argv[2], argc - 3, argv + 3);
    std::fputs("usage: bench-rank make FILE COUNT | rank FILE TERM...\n", stderr);
    return 2;
}
