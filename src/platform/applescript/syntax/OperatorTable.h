// SPDX-License-Identifier: MIT
// The operators: every spelling, the node that keeps it, and how tightly it binds. The parser reads by it and the printer writes by it.
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
    std::uint16_t flags; // of the node; they tell the spelling
    Level level;
    Symbol symbol; // or
    std::array<Keyword, 7> words;
    bool negates = false; // the node stands inside a Not
    bool swaps = false;   // the node has the operands the other way round
    bool asks = false;    // `is` and `is not`: the right side may be a property that is true or false

    constexpr std::size_t length() const {
        std::size_t n = 0;
        while (n < words.size() && words[n] != Keyword::None)
            ++n;
        return n ? n : 1;
    }
};

std::span<const OperatorRow> symbolOperators();
/// Of rows with the same node, flags and negation the first is the one that is printed.
std::span<const OperatorRow> wordOperators();

} // namespace quoddle::syntax
