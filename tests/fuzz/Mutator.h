// SPDX-License-Identifier: MIT
// Changes good input a little: bytes, numbers, words of its language, pieces of other inputs. The same seed makes the same changes.
#pragma once

#include <random>
#include <string>
#include <vector>

namespace quoddle::fuzz {

class Mutator {
public:
    /// `words` are inserted unchanged.
    Mutator(std::vector<std::string> seeds, std::vector<std::string> words, std::uint32_t seed);

    /// A new input: one of the seeds with one to eight changes, at most 256 KiB long.
    std::string next();

private:
    void change(std::string& bytes);
    std::size_t below(std::size_t limit) { return limit == 0 ? 0 : mRandom() % limit; }
    std::string piece(const std::string& of);

    const std::vector<std::string> mSeeds, mWords;
    std::mt19937 mRandom;
};

} // namespace quoddle::fuzz
