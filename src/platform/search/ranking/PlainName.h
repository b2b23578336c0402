// SPDX-License-Identifier: MIT
// A file's name as terms without expression signs are looked for in it: one byte for each UTF-16 unit, ASCII in small letters, and one sign
// for whatever else there is.
//
// Decision: most names hold nothing that an expression could take for ASCII letters, or that "." does not stand for. They are called plain,
// and only the others need the expression.
#pragma once

#include <optional>
#include <string_view>

namespace quoddle {

/// Whether the name (valid UTF-8) is plain.
bool isPlainName(std::string_view name);

/// One after the other: what is made of a name holds until the next one. One thread at a time.
class PlainName {
public:
    /// So many zeros stand behind what is made of a name, so that all of it can be looked at in large pieces.
    static constexpr std::size_t kPadding = 32;

    /// Nothing when the name is longer than any file's.
    std::optional<std::string_view> ofPlain(std::string_view name, bool isASCII);
    /// Nothing when it is longer than any file's, or is not plain.
    std::optional<std::string_view> of(std::u16string_view name);

private:
    static constexpr std::size_t kLongest = 256;
    std::string_view padded(std::size_t size);

    char mUnits[kLongest + kPadding];
};

} // namespace quoddle
