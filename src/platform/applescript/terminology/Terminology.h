// SPDX-License-Identifier: MIT
// Terminology: which words mean what at one point of a script, and which words to print for a code there.
//
// Decision: dictionaries are layers. The target of the innermost `tell` is asked first, then the language, then the additions. An
// application whose dictionary cannot be had is an empty layer, which hides the dictionaries of the `tell`s around it as the real one
// would. Callers say what kinds of terms fit a place, in the order in which they prefer them. Dictionary files are read elsewhere.
#pragma once

#include "platform/applescript/terminology/Term.h"

#include <initializer_list>
#include <span>
#include <string_view>
#include <vector>

namespace quoddle {

struct TermMatch {
    const Term* term = nullptr;
    /// Number of words that the term consists of.
    std::size_t words = 0;
    const TermSource* source = nullptr;

    explicit operator bool() const { return term != nullptr; }
};

class Terminology {
public:
    using Kinds = std::initializer_list<TermKind>;

    /// Begins with the language's words and those of the Standard Additions.
    Terminology();

    /// Removes the Standard Additions' words, for the rest of the script.
    void dropAdditions();

    /// Enters a `tell` or `using terms from`. Null when the application's dictionary cannot be had. The source must live until pop().
    void push(const TermSource* application) { mApplications.push_back(application); }
    void pop() { mApplications.pop_back(); }
    /// Adds an application's words to the whole script, after the language's (`use application`).
    void use(const TermSource* application) { mBase.push_back(application); }
    /// Whether the innermost `tell` has a target whose dictionary cannot be had.
    bool lacksDictionary() const { return !mApplications.empty() && !mApplications.back(); }

    /// The longest term that `words` (lower case) begin with. Of equally long ones the source that is asked first wins, then the kind that
    /// is listed first.
    TermMatch match(std::span<const std::string_view> words, Kinds kinds) const;
    /// Whether any term starts with `word`, so that it is worth collecting more words.
    bool mayStartTerm(std::string_view word) const;
    /// The term to print for a code: the first kind for which any source has a name.
    const Term* name(FourCharCode code, Kinds kinds, FourCharCode group = 0) const;
    /// The command that a pair of codes means here; nullptr when no dictionary has it.
    const Term* event(FourCharCode eventClass, FourCharCode eventID) const { return name(eventID, {TermKind::Event}, eventClass); }
    /// Whether the whole of `words` (one text, lower case) is a term here, so that an identifier spelled like it needs bars.
    bool isTerm(std::string_view words) const;

private:
    template<class Visit>
    void forEachSource(Visit visit) const;

    std::vector<const TermSource*> mBase;
    std::vector<const TermSource*> mApplications;
};

/// The number of words of a term when `words` (lower case) begin with all of them; 0 otherwise.
std::size_t wordsOfTerm(std::string_view term, std::span<const std::string_view> words);

} // namespace quoddle
