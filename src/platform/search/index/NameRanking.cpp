// SPDX-License-Identifier: MIT
#include "platform/search/index/NameRanking.h"

#include "platform/search/ranking/NameScore.h"

#include <algorithm>
#include <array>

namespace quoddle {

namespace {

constexpr FileNames::Entry kAtATime = 256;

} // namespace

std::unique_ptr<NameRanking> NameRanking::make(std::u16string_view term) {
    std::optional<PlainTerm> plain = PlainTerm::make(term);
    return std::unique_ptr<NameRanking>(plain ? new NameRanking(*std::move(plain), term.size()) : nullptr);
}

/// nullopt for a name that is no usable match.
std::optional<double> NameRanking::relevanceOf(std::string_view name, bool isASCII) {
    const std::optional<std::string_view> plain = mName.ofPlain(name, isASCII);
    if (!plain)
        return 0;
    const TermCounts counts{1, mLength};
    if (!mTerm.findRanges(*plain, mRanges) || !isUsableMatch(mRanges, counts))
        return {};
    return matchRelevance(mRanges, counts, plain->size());
}

void NameRanking::forEachUsable(const FileNames& names, FileNames::Entry from, FileNames::Entry to, const Call& call) {
    const LetterSet* const letters = names.letters();
    const LetterSet wanted = mTerm.letters();
    std::array<FileNames::Entry, kAtATime> possible;
    while (from < to) {
        // Names with the letters lie far apart in memory, so they are prefetched while further ones are looked for.
        std::size_t count = 0;
        for (const FileNames::Entry end = from + std::min<FileNames::Entry>(kAtATime, to - from); from < end; ++from) {
            if (!hasLetters(letters[from], wanted))
                continue;
            possible[count++] = from;
            names.prefetchName(from);
        }
        for (std::size_t i = 0; i < count; ++i) {
            const FileNames::Entry entry = possible[i];
            if (!names.isAlive(entry))
                continue;
            const bool isPlain = !(letters[entry] & kNotPlainBit);
            const std::optional<double> relevance = isPlain ? relevanceOf(names.name(entry), names.isASCII(entry)) : 0;
            if (relevance && !call(entry, *relevance))
                return;
        }
    }
}

} // namespace quoddle
