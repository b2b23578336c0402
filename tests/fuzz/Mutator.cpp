// SPDX-License-Identifier: MIT
#include "fuzz/Mutator.h"

#include <algorithm>

namespace quoddle::fuzz {

namespace {

constexpr std::size_t kMaximumSize = std::size_t(256) << 10;
constexpr std::size_t kLongestPiece = 200;
constexpr std::size_t kMostCopies = 300;
// Numbers at which counts and lengths often go wrong.
constexpr std::uint32_t kNumbers[] = {0,      1,      2,      0x7F,    0x80,       0xFF,       0x100,
                                      0x7FFF, 0x8000, 0xFFFF, 0x10000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};

} // namespace

Mutator::Mutator(std::vector<std::string> seeds, std::vector<std::string> words, std::uint32_t seed)
    : mSeeds(std::move(seeds)), mWords(std::move(words)), mRandom(seed) {}

std::string Mutator::next() {
    std::string bytes = mSeeds[below(mSeeds.size())];
    for (std::size_t changes = 1 + below(8); changes > 0; --changes)
        change(bytes);
    bytes.resize(std::min(bytes.size(), kMaximumSize));
    return bytes;
}

std::string Mutator::piece(const std::string& of) {
    return of.substr(below(of.size() + 1), 1 + below(kLongestPiece));
}

void Mutator::change(std::string& bytes) {
    const std::size_t at = below(bytes.size() + 1);
    const std::string part = piece(bytes);
    switch (below(9)) {
    case 0: // changes a bit
        if (at < bytes.size())
            bytes[at] = static_cast<char>(bytes[at] ^ 1 << below(8));
        break;
    case 1: // changes a byte
        if (at < bytes.size())
            bytes[at] = static_cast<char>(below(256));
        break;
    case 2: { // puts in a number of one, two or four bytes, the most significant byte first
        const std::uint32_t number = kNumbers[below(std::size(kNumbers))];
        const std::size_t size = std::size_t(1) << below(3);
        for (std::size_t i = 0; i < size && at + i < bytes.size(); ++i)
            bytes[at + i] = static_cast<char>(number >> 8 * (size - 1 - i));
        break;
    }
    case 3:
        bytes.erase(at, 1 + below(kLongestPiece));
        break;
    case 4:
        bytes.insert(at, part);
        break;
    case 5: // repeats a piece, so that the input becomes deep or long
        for (std::size_t copies = below(kMostCopies); copies > 0 && bytes.size() < kMaximumSize; --copies)
            bytes.insert(at, part);
        break;
    case 6:
        bytes.insert(at, piece(mSeeds[below(mSeeds.size())]));
        break;
    case 7:
        if (!mWords.empty())
            bytes.insert(at, mWords[below(mWords.size())]);
        break;
    default:
        bytes.resize(at);
    }
}

} // namespace quoddle::fuzz
