// SPDX-License-Identifier: MIT
// Finds texts in a text under considerations.
//
// Decision: what the considerations ignore is taken out of the text once, however often it is searched, and no search costs more than a few
// looks at each character, whatever the texts are.
#pragma once

#include "platform/base/SequenceSearch.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quoddle {

/// A text reduced to what is considered, each unit with the place in the text that it came from.
struct ReducedText {
    std::u16string units;
    std::vector<std::uint32_t> places; // one more than units: the end
};

/// `considering`: bits of Considering.h.
ReducedText reduceText(std::u16string_view text, std::uint32_t considering);

/// Are all letters, marks and signs considered, so that texts differ in case at most?
bool considersAllUnits(std::uint32_t considering);
bool isASCII(std::u16string_view text);

bool startsWithText(std::u16string_view whole, std::u16string_view part, std::uint32_t considering);
bool endsWithText(std::u16string_view whole, std::u16string_view part, std::uint32_t considering);

/// The text that is searched must outlive it.
class TextSearch {
public:
    TextSearch(std::u16string_view whole, std::uint32_t considering) : mWhole(whole), mConsidering(considering) {}

    /// Where `part` first stands at or behind `start`, in UTF-16 units; kNotFound when nowhere. `length` is what it covers there: 0 for a
    /// part of which nothing is considered, which is found at `start`. A character is found as a whole or not at all.
    std::size_t find(std::u16string_view part, std::size_t start, std::size_t& length);

private:
    const ReducedText& reduced();

    const std::u16string_view mWhole;
    const std::uint32_t mConsidering;
    std::optional<ReducedText> mReduced;
};

} // namespace quoddle
