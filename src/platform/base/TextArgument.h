// SPDX-License-Identifier: MIT
// The parameter type of functions that take text in whatever form the caller holds it. Accepts UTF-16 views and strings, UTF-8 strings and
// literals, and any class with utf16() and size(), such as QString, which this layer must not know. Valid for the duration of one call;
// never store it.
#pragma once

#include "platform/base/Text.h"

#include <concepts>
#include <string>
#include <string_view>

namespace quoddle {

class TextArgument {
public:
    TextArgument(std::u16string_view text) : mView(text) {}
    TextArgument(const std::u16string& text) : mView(text) {}
    TextArgument(const char16_t* text) : mView(text) {}
    TextArgument(std::string_view utf8) : mOwned(utf16FromUTF8(utf8)), mView(mOwned) {}
    TextArgument(const std::string& utf8) : TextArgument(std::string_view(utf8)) {}
    TextArgument(const char* utf8) : TextArgument(std::string_view(utf8)) {}
    template<class T>
    requires requires(const T& text) {
        { *text.utf16() } -> std::convertible_to<char16_t>;
        { text.size() } -> std::convertible_to<std::size_t>;
    }
    TextArgument(const T& text) : mView(reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())) {}

    TextArgument(const TextArgument&) = delete;
    TextArgument& operator=(const TextArgument&) = delete;

    /// Valid as long as this object and the text from which it was made.
    std::u16string_view view() const { return mView; }
    std::string utf8() const { return utf8FromUTF16(mView); }

private:
    std::u16string mOwned;
    std::u16string_view mView;
};

} // namespace quoddle
