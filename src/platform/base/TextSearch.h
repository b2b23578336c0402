// SPDX-License-Identifier: MIT
// Finds texts in a text under considerations.
//
// Decision: the searched text is reduced to what is considered once, however many searches follow. A search looks at each character a
// bounded number of times, whatever the texts are.
#pragma once

#include "platform/base/SequenceSearch.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quoddle {

/// A text reduced to the units that are considered, each with the place in the text from which it came.
struct ReducedText {
    std::u16string units;
    std::vector<std::uint32_t> places; // one more than `units`; the last is the end of the text
};

/// `considering` is a set of the bits in Considering.h.
ReducedText reduceText(std::u16string_view text, std::uint32_t considering);

/// Whether all letters, marks and signs are considered, so that equal texts differ at most in case.
bool considersAllUnits(std::uint32_t considering);
bool isASCII(std::u16string_view text);

bool startsWithText(std::u16string_view whole, std::u16string_view part, std::uint32_t considering);
bool endsWithText(std::u16string_view whole, std::u16string_view part, std::uint32_t considering);

/// Searches one text, which must outlive this object, any number of times.
class TextSearch {
public:
    TextSearch(std::u16string_view whole, std::uint32_t considering) : mWhole(whole), mConsidering(considering) {}

    /// The place in UTF-16 units where `part` first occurs at or behind `start`; kNotFound when there is none. `length` becomes the number
    /// of units that the occurrence covers. A part of which nothing is considered is found at `start` with length 0. Only whole characters
    /// are found.
    std::size_t find(std::u16string_view part, std::size_t start, std::size_t& length);

private:
    const ReducedText& reduced();

    const std::u16string_view mWhole;
    const std::uint32_t mConsidering;
    std::optional<ReducedText> mReduced;
};

} // namespace quoddle
