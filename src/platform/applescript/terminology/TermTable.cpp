// SPDX-License-Identifier: MIT
#include "platform/applescript/terminology/TermTable.h"

namespace quoddle {

std::span<const Term> TermTable::startingWith(std::string_view word) const {
    auto first = std::ranges::lower_bound(mTerms, word, wordsLess, &Term::words);
    auto last = first;
    while (last != mTerms.end() && startsWithWord(last->words, word))
        ++last;
    return {first, last};
}

const Term* TermTable::find(TermKind kind, FourCharCode code, FourCharCode group) const {
    auto less = [this](std::uint16_t at, std::pair<TermKind, FourCharCode> wanted) {
        const Term& term = mTerms[at];
        return term.kind != wanted.first ? term.kind < wanted.first : term.code < wanted.second;
    };
    for (auto at = std::lower_bound(mByCode.begin(), mByCode.end(), std::pair(kind, code), less); at != mByCode.end(); ++at) {
        const Term& term = mTerms[*at];
        if (term.kind != kind || term.code != code)
            break;
        if (group == 0 || term.group == group)
            return &term;
    }
    return nullptr;
}

} // namespace quoddle
