// SPDX-License-Identifier: MIT
// The words that may label the parameters of users' handlers, with the codes that compiled scripts keep for them.
#pragma once

#include "platform/applescript/syntax/Keyword.h"
#include "platform/base/FourCharCode.h"

#include <array>
#include <span>
#include <string_view>

namespace quoddle::syntax {

struct Preposition {
    std::array<Keyword, 2> words; // the second may be None
    FourCharCode code;
    std::string_view spelling;
};

std::span<const Preposition> prepositions();

/// The words for a code; empty when it is no preposition's.
std::string_view prepositionOf(FourCharCode code);

} // namespace quoddle::syntax
