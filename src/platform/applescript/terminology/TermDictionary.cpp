// SPDX-License-Identifier: MIT
#include "platform/applescript/terminology/TermDictionary.h"

#include "platform/applescript/terminology/TermTable.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace quoddle {

void TermDictionary::addClass(std::string_view words, std::string_view plural, FourCharCode code, bool synonym) {
    mTerms.push_back({keep(words), TermKind::Class, code, 0, nullptr, false, synonym});
    if (!plural.empty())
        mTerms.push_back({keep(plural), TermKind::Plural, code, 0, nullptr, false, synonym});
}

void TermDictionary::addProperty(std::string_view words, FourCharCode code, bool boolean, bool synonym) {
    mTerms.push_back({keep(words), TermKind::Property, code, 0, nullptr, boolean, synonym});
}

void TermDictionary::addConstant(std::string_view words, FourCharCode enumeration, FourCharCode value, bool synonym) {
    mTerms.push_back({keep(words), TermKind::Constant, value, enumeration, nullptr, false, synonym});
}

void TermDictionary::addEvent(std::string_view words, FourCharCode eventClass, FourCharCode eventID, const EventTerm& event, bool synonym) {
    std::vector<ParameterTerm>& parameters = mParameters.emplace_back(event.parameters.begin(), event.parameters.end());
    for (ParameterTerm& parameter : parameters)
        parameter.words = keep(parameter.words);
    EventTerm& kept = mEvents.emplace_back(event);
    kept.parameters = parameters;
    mTerms.push_back({keep(words), TermKind::Event, eventID, eventClass, &kept, false, synonym});
}

void TermDictionary::finish() {
    for (std::size_t i = 0; i < mTerms.size(); ++i)
        mTerms[i].order = static_cast<std::uint16_t>(std::min<std::size_t>(i, 0xFFFF));
    // Searches take the first term they meet; of two equal terms the later one has to win.
    std::ranges::reverse(mTerms);
    std::map<std::tuple<TermKind, FourCharCode, FourCharCode>, std::string_view> naming;
    for (const Term& term : mTerms) {
        if (!term.synonym)
            naming.try_emplace({term.kind, term.code, term.group}, term.words);
    }
    std::ranges::stable_sort(mTerms, wordsLess, &Term::words);
    dropRepetitions();
    mByCode.clear();
    for (const Term& term : mTerms)
        mByCode.push_back(&term);
    std::ranges::stable_sort(mByCode, [&](const Term* a, const Term* b) {
        auto key = [&](const Term* term) {
            auto named = naming.find({term->kind, term->code, term->group});
            return std::tuple(term->kind, term->code, named == naming.end() || named->second != term->words, term->group);
        };
        return key(a) < key(b);
    });
}

/// Many classes have a property `name`: of terms that say the same the first is kept. They stand in one stretch of equal words.
void TermDictionary::dropRepetitions() {
    auto key = [](const Term& term) { return std::tuple(term.kind, term.code, term.group, term.boolean, term.synonym); };
    std::size_t kept = 0, stretch = 0;
    for (const Term& term : mTerms) {
        if (kept > stretch && wordsLess(mTerms[stretch].words, term.words))
            stretch = kept;
        const bool repeated = !term.event && std::any_of(mTerms.begin() + static_cast<std::ptrdiff_t>(stretch),
                                                         mTerms.begin() + static_cast<std::ptrdiff_t>(kept),
                                                         [&](const Term& other) { return key(other) == key(term); });
        if (!repeated)
            mTerms[kept++] = term;
    }
    mTerms.resize(kept);
}

std::span<const Term> TermDictionary::startingWith(std::string_view word) const {
    auto first = std::ranges::lower_bound(mTerms, word, wordsLess, &Term::words);
    auto last = first;
    while (last != mTerms.end() && startsWithWord(last->words, word))
        ++last;
    return {first, last};
}

const Term* TermDictionary::find(TermKind kind, FourCharCode code, FourCharCode group) const {
    auto less = [](const Term* term, std::pair<TermKind, FourCharCode> wanted) {
        return term->kind != wanted.first ? term->kind < wanted.first : term->code < wanted.second;
    };
    auto at = std::lower_bound(mByCode.begin(), mByCode.end(), std::pair(kind, code), less);
    for (; at != mByCode.end() && (*at)->kind == kind && (*at)->code == code; ++at) {
        if (group == 0 || (*at)->group == group)
            return *at;
    }
    return nullptr;
}

} // namespace quoddle
