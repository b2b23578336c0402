// SPDX-License-Identifier: MIT
#include "platform/applescript/syntax/Keyword.h"

#include <algorithm>
#include <array>

namespace quoddle::syntax {

namespace {

struct Row {
    std::string_view spelling;
    Keyword keyword;
    KeywordUse use;
};

constexpr auto kRows = std::to_array<Row>({{"", Keyword::None, KeywordUse::Free},
#define QUODDLE_KEYWORD(name, spelling, use) {spelling, Keyword::name, KeywordUse::use},
                                           QUODDLE_KEYWORDS(QUODDLE_KEYWORD)
#undef QUODDLE_KEYWORD
});

constexpr auto kSorted = [] {
    auto rows = kRows;
    std::ranges::sort(rows, {}, &Row::spelling);
    return rows;
}();

} // namespace

Keyword keywordOf(std::string_view word) {
    auto at = std::ranges::lower_bound(kSorted, word, {}, &Row::spelling);
    return at != kSorted.end() && at->spelling == word ? at->keyword : Keyword::None;
}

KeywordUse useOf(Keyword keyword) {
    return kRows[static_cast<std::size_t>(keyword)].use;
}

std::string_view spellingOf(Keyword keyword) {
    return kRows[static_cast<std::size_t>(keyword)].spelling;
}

std::vector<std::string_view> keywords() {
    std::vector<std::string_view> words;
    for (const Row& row : kRows)
        if (row.keyword != Keyword::None)
            words.push_back(row.spelling);
    return words;
}

} // namespace quoddle::syntax
