// SPDX-License-Identifier: MIT
// Random texts, the same in each run.
#pragma once

#include <random>
#include <string>
#include <string_view>

namespace quoddle {

class RandomText {
public:
    std::u16string operator()(std::u16string_view alphabet, std::size_t most) {
        std::u16string text(std::uniform_int_distribution<std::size_t>(0, most)(mEngine), u' ');
        for (char16_t& unit : text)
            unit = alphabet[std::uniform_int_distribution<std::size_t>(0, alphabet.size() - 1)(mEngine)];
        return text;
    }
    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(mEngine); }

private:
    std::mt19937 mEngine{20};
};

} // namespace quoddle
