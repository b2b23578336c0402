// SPDX-License-Identifier: MIT
// An application's dictionary, put together at run time.
//
// The dictionary owns its words. Terms are added in any order, then finish() sorts them; from then on any thread may read it. Where two
// terms of a kind have one code the later one names the code, as in any dictionary; a synonym never does.
#pragma once

#include "platform/applescript/terminology/Term.h"

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace quoddle {

class TermDictionary final : public TermSource {
public:
    TermDictionary() = default;
    TermDictionary(const TermDictionary&) = delete;
    TermDictionary& operator=(const TermDictionary&) = delete;

    void addClass(std::string_view words, std::string_view plural, FourCharCode code, bool synonym = false);
    void addProperty(std::string_view words, FourCharCode code, bool boolean = false, bool synonym = false);
    void addConstant(std::string_view words, FourCharCode enumeration, FourCharCode value, bool synonym = false);
    /// Copies the parameters and their words.
    void addEvent(std::string_view words, FourCharCode eventClass, FourCharCode eventID, const EventTerm& event, bool synonym = false);
    void finish();

    std::span<const Term> startingWith(std::string_view word) const override;
    const Term* find(TermKind kind, FourCharCode code, FourCharCode group) const override;

    /// A compact form of a finished dictionary, and the dictionary that such bytes stand for; null when they are damaged.
    std::string compactForm() const;
    static std::unique_ptr<TermDictionary> fromCompactForm(std::string bytes);

    std::span<const Term> terms() const override { return mTerms; }
    /// The same terms, sorted by kind and code; the first of a code names it.
    std::span<const Term* const> byCode() const { return mByCode; }

private:
    void dropRepetitions();

    std::string_view keep(std::string_view words) { return mWords.emplace_back(words); }

    std::deque<std::string> mWords;
    std::string mCompactForm; // holds the words of a dictionary that was read from it
    std::deque<EventTerm> mEvents;
    std::deque<std::vector<ParameterTerm>> mParameters;
    std::vector<Term> mTerms;
    std::vector<const Term*> mByCode;
};

} // namespace quoddle
