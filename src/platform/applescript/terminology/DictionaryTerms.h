// SPDX-License-Identifier: MIT
// From what a scripting definition says to the terms of scripts: which words mean which code.
//
// Decision: a definition's own words come after its synonyms, so that they win where both have one word, and name the code. Hidden
// definitions are understood and name a code only where nothing else does. `responds to`, elements and inheritance add no words: the words
// are those of the classes.
#pragma once

#include "platform/applescript/terminology/TermDictionary.h"
#include "platform/sdef/Dictionary.h"

#include <memory>

namespace quoddle {

/// Finished. Words that no source can hold (with signs in them) are left out.
std::unique_ptr<TermDictionary> termsOfDictionary(const sdef::Dictionary& dictionary);

} // namespace quoddle
