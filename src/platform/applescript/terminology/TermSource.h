// SPDX-License-Identifier: MIT
// Where terms come from: one dictionary. The dictionaries that are compiled in and those of applications look the same from here.
//
// Decision: a source answers two questions only, words to terms and code to term; which source is asked first, and which kind of term fits
// a place in a sentence, is for Terminology and the parser to say.
#pragma once

#include "platform/applescript/terminology/Term.h"

namespace quoddle {

class TermSource {
public:
    virtual ~TermSource() = default;

    /// Every term whose first word is `word` (lower case). Valid as long as the source.
    virtual std::span<const Term> startingWith(std::string_view word) const = 0;

    /// The term that names a code when printing; nullptr when there is none. `group` counts for constants and events only; a constant asked
    /// for with group 0 may be of any enumeration.
    virtual const Term* find(TermKind kind, FourCharCode code, FourCharCode group = 0) const = 0;
};

/// The language's own words.
const TermSource& languageTerms();
/// The Standard Additions' words.
const TermSource& standardAdditionsTerms();

} // namespace quoddle
