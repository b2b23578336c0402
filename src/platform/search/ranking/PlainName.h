// SPDX-License-Identifier: MIT
// A file's name in the form in which plain terms are looked for: one byte for each UTF-16 unit, ASCII in lower case, and one sign for all
// other units.
//
// Decision: most names have no character that an expression could match with ASCII letters although it is none, or that "." does not match.
// Names without such characters are called plain; only the others need the expression.
#pragma once

#include <optional>
#include <string_view>

namespace quoddle {

/// Whether the name (valid UTF-8) is plain.
bool isPlainName(std::string_view name);

/// Converts one name after the other; a result is valid until the next call. One thread at a time.
class PlainName {
public:
    /// The number of zero bytes behind a result, so that it can be read in large pieces to its end.
    static constexpr std::size_t kPadding = 32;

    /// Converts a plain name in UTF-8. nullopt when it is longer than any file's name.
    std::optional<std::string_view> ofPlain(std::string_view name, bool isASCII);
    /// nullopt when the name is longer than any file's name or not plain.
    std::optional<std::string_view> of(std::u16string_view name);

private:
    static constexpr std::size_t kLongest = 256;
    std::string_view padded(std::size_t size);

    char mUnits[kLongest + kPadding];
};

} // namespace quoddle
