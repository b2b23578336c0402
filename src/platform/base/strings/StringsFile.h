// SPDX-License-Identifier: MIT
// Tables of localized texts, "Localizable.strings" and their like, in the three forms that bundles have them in: as text ("KEY" = "TEXT";),
// and as property lists in XML and in binary.
//
// Decision: a table is keys and texts and nothing else, so that who needs one does without property lists. What else stands in one is
// passed over. Files are not trusted: time and memory are bounded by their size, and nothing in them is followed deeper than it is read.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

namespace quoddle {

constexpr std::size_t kLargestStringsFile = std::size_t(64) << 20;

struct StringsTable {
    std::unordered_map<std::u16string, std::u16string> texts;
    /// Why not all of it could be read, a sentence for the log; what stood before that is there. Empty when all is well.
    std::string error;
};

/// Any bytes. Text is UTF-8, UTF-16 or UTF-32 (with a byte-order mark; UTF-16 also told by its zero bytes), else Mac Roman.
StringsTable readStrings(std::string_view bytes);

} // namespace quoddle
