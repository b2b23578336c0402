// SPDX-License-Identifier: MIT
// Terminology: which words mean what at one point of a script, and which words to print for a code there.
//
// Decision: dictionaries are layers. The target of the innermost `tell` is asked first, then the language, then the additions; an
// application whose dictionary cannot be had is a layer too, an empty one, and hides those of the `tell`s around it as the real one would.
// What kind of term fits a place is the caller's to say, by the order in which it lists kinds. It reads no dictionary files.
#pragma once

#include "platform/applescript/terminology/TermSource.h"

#include <initializer_list>
#include <span>
#include <string_view>
#include <vector>

namespace quoddle {

struct TermMatch {
    const Term* term = nullptr;
    /// How many words it took.
    std::size_t words = 0;
    const TermSource* source = nullptr;

    explicit operator bool() const { return term != nullptr; }
};

class Terminology {
public:
    using Kinds = std::initializer_list<TermKind>;

    /// With the language's words and those of the Standard Additions.
    Terminology();

    /// From here on the script does without the Standard Additions.
    void dropAdditions();

    /// Enters a `tell` or `using terms from`; nullptr: the application's dictionary cannot be had. The source must outlive its stay.
    void push(const TermSource* application) { mApplications.push_back(application); }
    void pop() { mApplications.pop_back(); }
    /// Adds an application's words to the whole script, after the language's (`use application`).
    void use(const TermSource* application) { mBase.push_back(application); }
    /// Inside a `tell` whose target's dictionary cannot be had.
    bool lacksDictionary() const { return !mApplications.empty() && !mApplications.back(); }

    /// The longest term that `words` (lower case) begin with. Of equally long ones the source asked first wins, then the kind listed first.
    TermMatch match(std::span<const std::string_view> words, Kinds kinds) const;
    /// Any term of one of the kinds starts with `word`, so that it is worth collecting more words.
    bool mayStartTerm(std::string_view word) const;
    /// The term to print for a code: the first kind for which any source has a name.
    const Term* name(FourCharCode code, Kinds kinds, FourCharCode group = 0) const;
    /// The command that a pair of codes means here; nullptr when no dictionary has it.
    const Term* event(FourCharCode eventClass, FourCharCode eventID) const { return name(eventID, {TermKind::Event}, eventClass); }
    /// The whole of `words` (one text, lower case) is a term here, so an identifier spelled so needs bars.
    bool isTerm(std::string_view words) const;

private:
    template<class Visit>
    void forEachSource(Visit visit) const;

    std::vector<const TermSource*> mBase;
    std::vector<const TermSource*> mApplications;
};

/// How many of `words` (lower case) the text of a term takes from their start; 0 when they don't begin with all of it.
std::size_t wordsOfTerm(std::string_view term, std::span<const std::string_view> words);

} // namespace quoddle
