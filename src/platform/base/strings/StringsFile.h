// SPDX-License-Identifier: MIT
// Reads tables of localized texts ("Localizable.strings" and the like) in the three forms that bundles have: as text ("KEY" = "TEXT";), and
// as property lists in XML and in binary.
//
// Decision: a table has keys and texts and nothing else, so this layer needs no property lists; values of other kinds are skipped. Files
// are not trusted: their size bounds time and memory, and nested values are skipped without recursion.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

namespace quoddle {

constexpr std::size_t kLargestStringsFile = std::size_t(64) << 20;

struct StringsTable {
    std::unordered_map<std::u16string, std::u16string> texts;
    /// Why the table could not be read completely, as a sentence for the log; `texts` has what came before the error. Empty without an
    /// error.
    std::string error;
};

/// Accepts any bytes. The encoding is UTF-8, UTF-16 or UTF-32 (by byte-order mark; UTF-16 also by its zero bytes), else Mac Roman.
StringsTable readStrings(std::string_view bytes);

} // namespace quoddle
