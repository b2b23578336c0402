// SPDX-License-Identifier: MIT
// Ranks the names of an index like the search in the index and the search pane of a droplet, on one thread: finds the names that contain
// enough of the term, says how good each one is, and puts them in order.
//
//   bench-rank make FILE COUNT     names, one a line
//   bench-rank rank FILE TERM…     for each term, without making the index: TERM.time in milliseconds; TERM.found, the part of the time
//                                  before the hits are put in order; TERM.count, how many names were kept
#include "Names.h"
#include "platform/base/Text.h"
#include "platform/search/index/NameRanking.h"
#include "platform/search/ranking/RankOrder.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <vector>

using namespace quoddle;

namespace {

int make(const char* path, int count) {
    Names names;
    std::ofstream file(path);
    while (count-- > 0)
        file << names.file() << '\n';
    return file.good() ? 0 : 1;
}

using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

bool rank(const FileNames& names, const std::string& term) {
    const auto begin = Clock::now();
    const std::unique_ptr<NameRanking> ranking = NameRanking::make(utf16FromUTF8(term));
    if (!ranking)
        return false;
    std::vector<Ranked<char>> hits;
    ranking->forEachUsable(names, 0, names.entryCount(), [&](FileNames::Entry entry, double relevance) {
        hits.emplace_back(relevance, names.name(entry), entry);
        return true;
    });
    const auto found = Clock::now();
    RankSort{std::span(hits)};
    std::printf("%s.time %f\n%s.found %f\n%s.count %zu\n", term.c_str(), milliseconds(Clock::now() - begin), term.c_str(),
                milliseconds(found - begin), term.c_str(), hits.size());
    return true;
}

int rankAll(const char* path, int terms, char** term) {
    FileNames names;
    std::ifstream file(path);
    for (std::string name; std::getline(file, name);)
        names.add(FileNames::kTop, name, false);
    for (int i = 0; i < terms; ++i)
        if (!rank(names, term[i]))
            return 1;
    return names.entryCount() == 0;
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
