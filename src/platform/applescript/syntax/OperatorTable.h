// SPDX-License-Identifier: MIT
// The operators: every spelling, the node for it, and how tightly it binds. The parser and the printer use the same table.
#pragma once

#include "platform/applescript/syntax/NodeKind.h"
#include "platform/applescript/syntax/Token.h"

#include <array>
#include <cstddef>
#include <span>

namespace quoddle::syntax {

/// How tightly operators bind, loosest first.
enum class Level : std::uint8_t { Or, And, Not, Equality, Comparison, As, Concatenation, Sum, Product, Power, Operand };

constexpr Level tighter(Level level) {
    return static_cast<Level>(static_cast<std::uint8_t>(level) + 1);
}

struct OperatorRow {
    NodeKind kind;
    std::uint16_t flags; // of the node; they tell the spellings of one operator apart
    Level level;
    Symbol symbol; // Symbol::None for an operator of words
    std::array<Keyword, 7> words;
    bool negates = false; // the node is wrapped in a Not
    bool swaps = false;   // the node has the operands in the opposite order
    bool asks = false;    // of `is` and `is not`, whose right side may be a property that is true or false

    constexpr std::size_t length() const {
        std::size_t n = 0;
        while (n < words.size() && words[n] != Keyword::None)
            ++n;
        return n ? n : 1;
    }
};

std::span<const OperatorRow> symbolOperators();
/// The printer uses the first of several rows with the same node, flags and negation.
std::span<const OperatorRow> wordOperators();

} // namespace quoddle::syntax
