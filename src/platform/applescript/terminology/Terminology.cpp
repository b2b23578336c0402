// SPDX-License-Identifier: MIT
#include "platform/applescript/terminology/Terminology.h"

#include "platform/applescript/terminology/TermTable.h"

namespace quoddle {

namespace {

/// Classes and properties share their words: in one dictionary the later definition takes them.
bool isNoun(TermKind kind) {
    return kind == TermKind::Class || kind == TermKind::Property;
}

} // namespace

Terminology::Terminology() : mBase{&languageTerms(), &standardAdditionsTerms()} {}

void Terminology::dropAdditions() {
    std::erase(mBase, &standardAdditionsTerms());
}

/// Calls visit(source) in the order in which sources are asked, until it returns false.
template<class Visit>
void Terminology::forEachSource(Visit visit) const {
    if (!mApplications.empty() && mApplications.back() && !visit(*mApplications.back()))
        return;
    for (const TermSource* source : mBase) {
        if (!visit(*source))
            return;
    }
}

TermMatch Terminology::match(std::span<const std::string_view> words, Kinds kinds) const {
    TermMatch best;
    if (words.empty())
        return best;
    forEachSource([&](const TermSource& source) {
        std::span<const Term> candidates = source.startingWith(words[0]);
        for (TermKind kind : kinds) {
            for (const Term& term : candidates) {
                if (term.kind != kind)
                    continue;
                std::size_t taken = wordsOfTerm(term.words, words);
                bool later = taken > 0 && taken == best.words && best.source == &source && term.order > best.term->order && isNoun(kind) &&
                             isNoun(best.term->kind);
                if (taken > best.words || later)
                    best = {&term, taken, &source};
            }
        }
        return true;
    });
    return best;
}

bool Terminology::mayStartTerm(std::string_view word) const {
    bool found = false;
    forEachSource([&](const TermSource& source) { return !(found = !source.startingWith(word).empty()); });
    return found;
}

const Term* Terminology::name(FourCharCode code, Kinds kinds, FourCharCode group) const {
    const Term* found = nullptr;
    for (TermKind kind : kinds) {
        forEachSource([&](const TermSource& source) { return !(found = source.find(kind, code, group)); });
        if (found)
            break;
    }
    return found;
}

bool Terminology::isTerm(std::string_view words) const {
    bool found = false;
    std::string_view first = words.substr(0, words.find(' '));
    forEachSource([&](const TermSource& source) {
        found = std::ranges::any_of(source.startingWith(first), [&](const Term& term) {
            return term.words.size() == words.size() && std::ranges::equal(term.words, words, {}, asciiLower, asciiLower);
        });
        return !found;
    });
    return found;
}

std::size_t wordsOfTerm(std::string_view term, std::span<const std::string_view> words) {
    std::size_t taken = 0;
    for (std::size_t at = 0; at <= term.size(); ++taken) {
        std::size_t blank = std::min(term.find(' ', at), term.size());
        std::string_view part = term.substr(at, blank - at);
        if (taken == words.size() || !std::ranges::equal(part, words[taken], {}, asciiLower))
            return 0;
        at = blank + 1;
    }
    return taken;
}

} // namespace quoddle
