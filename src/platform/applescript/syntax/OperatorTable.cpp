// SPDX-License-Identifier: MIT
#include "platform/applescript/syntax/OperatorTable.h"

namespace quoddle::syntax {

namespace {

using enum Keyword;
using K = NodeKind;
using L = Level;

constexpr OperatorRow symbol(NodeKind kind, Level level, Symbol symbol) {
    return {kind, 0, level, symbol, {}};
}

constexpr OperatorRow words(NodeKind kind, std::uint16_t flags, Level level, std::array<Keyword, 7> spelling) {
    return {kind, flags, level, Symbol::None, spelling};
}

constexpr OperatorRow asking(NodeKind kind, std::uint16_t flags, std::array<Keyword, 7> spelling) {
    return {kind, flags, L::Equality, Symbol::None, spelling, false, false, true};
}

constexpr OperatorRow negated(NodeKind kind, std::uint16_t flags, std::array<Keyword, 7> spelling) {
    return {kind, flags, L::Comparison, Symbol::None, spelling, true};
}

constexpr OperatorRow isIn(std::array<Keyword, 7> spelling, bool negates) {
    return {K::Contains, 1, L::Comparison, Symbol::None, spelling, negates, true};
}

constexpr auto kSymbols = std::to_array<OperatorRow>({
    symbol(K::Equal, L::Equality, Symbol::Equal),
    symbol(K::NotEqual, L::Equality, Symbol::NotEqual),
    symbol(K::Greater, L::Comparison, Symbol::Greater),
    symbol(K::GreaterOrEqual, L::Comparison, Symbol::GreaterOrEqual),
    symbol(K::Less, L::Comparison, Symbol::Less),
    symbol(K::LessOrEqual, L::Comparison, Symbol::LessOrEqual),
    symbol(K::Concatenate, L::Concatenation, Symbol::Ampersand),
    symbol(K::Add, L::Sum, Symbol::Plus),
    symbol(K::Subtract, L::Sum, Symbol::Minus),
    symbol(K::Multiply, L::Product, Symbol::Times),
    symbol(K::Divide, L::Product, Symbol::Divide),
    symbol(K::Power, L::Power, Symbol::Power),
});

constexpr auto kWords = std::to_array<OperatorRow>({
    words(K::Or, 0, L::Or, {Or}),
    words(K::And, 0, L::And, {And}),
    words(K::As, 0, L::As, {As}),
    words(K::Quotient, 0, L::Product, {Div}),
    words(K::Remainder, 0, L::Product, {Mod}),

    asking(K::Equal, 3, {Is}),
    words(K::Equal, 1, L::Equality, {Is, Equal, To}),
    words(K::Equal, 1, L::Equality, {Is, Equal}),
    words(K::Equal, 1, L::Equality, {Equal, To}),
    words(K::Equal, 1, L::Equality, {Equal}),
    words(K::Equal, 1, L::Equality, {Equals}),
    asking(K::NotEqual, 0x100, {Is, Not}),
    asking(K::NotEqual, 0x100, {Isnt}),
    words(K::NotEqual, 1, L::Equality, {Is, Not, Equal, To}),
    words(K::NotEqual, 1, L::Equality, {Is, Not, Equal}),
    words(K::NotEqual, 1, L::Equality, {Isnt, Equal, To}),
    words(K::NotEqual, 1, L::Equality, {Isnt, Equal}),
    words(K::NotEqual, 1, L::Equality, {Does, Not, Equal}),
    words(K::NotEqual, 1, L::Equality, {Doesnt, Equal}),

    words(K::Greater, 1, L::Comparison, {Is, Greater, Than}),
    words(K::Greater, 1, L::Comparison, {Greater, Than}),
    words(K::Greater, 0x101, L::Comparison, {Comes, After}),
    words(K::Greater, 0x100, L::Comparison, {Is, Not, Less, Than, Or, Equal, To}),
    words(K::Greater, 0x100, L::Comparison, {Is, Not, Less, Than, Or, Equal}),
    words(K::Greater, 0x100, L::Comparison, {Isnt, Less, Than, Or, Equal, To}),
    words(K::Greater, 0x100, L::Comparison, {Isnt, Less, Than, Or, Equal}),
    words(K::Less, 1, L::Comparison, {Is, Less, Than}),
    words(K::Less, 1, L::Comparison, {Less, Than}),
    words(K::Less, 0x101, L::Comparison, {Comes, Before}),
    words(K::Less, 0x100, L::Comparison, {Is, Not, Greater, Than, Or, Equal, To}),
    words(K::Less, 0x100, L::Comparison, {Is, Not, Greater, Than, Or, Equal}),
    words(K::Less, 0x100, L::Comparison, {Isnt, Greater, Than, Or, Equal, To}),
    words(K::Less, 0x100, L::Comparison, {Isnt, Greater, Than, Or, Equal}),
    words(K::GreaterOrEqual, 1, L::Comparison, {Is, Greater, Than, Or, Equal, To}),
    words(K::GreaterOrEqual, 1, L::Comparison, {Is, Greater, Than, Or, Equal}),
    words(K::GreaterOrEqual, 1, L::Comparison, {Greater, Than, Or, Equal, To}),
    words(K::GreaterOrEqual, 1, L::Comparison, {Greater, Than, Or, Equal}),
    words(K::GreaterOrEqual, 0x100, L::Comparison, {Is, Not, Less, Than}),
    words(K::GreaterOrEqual, 0x100, L::Comparison, {Isnt, Less, Than}),
    words(K::GreaterOrEqual, 0x101, L::Comparison, {Does, Not, Come, Before}),
    words(K::GreaterOrEqual, 0x101, L::Comparison, {Doesnt, Come, Before}),
    words(K::LessOrEqual, 1, L::Comparison, {Is, Less, Than, Or, Equal, To}),
    words(K::LessOrEqual, 1, L::Comparison, {Is, Less, Than, Or, Equal}),
    words(K::LessOrEqual, 1, L::Comparison, {Less, Than, Or, Equal, To}),
    words(K::LessOrEqual, 1, L::Comparison, {Less, Than, Or, Equal}),
    words(K::LessOrEqual, 0x100, L::Comparison, {Is, Not, Greater, Than}),
    words(K::LessOrEqual, 0x100, L::Comparison, {Isnt, Greater, Than}),
    words(K::LessOrEqual, 0x101, L::Comparison, {Does, Not, Come, After}),
    words(K::LessOrEqual, 0x101, L::Comparison, {Doesnt, Come, After}),

    words(K::StartsWith, 0, L::Comparison, {Starts, With}),
    words(K::StartsWith, 0, L::Comparison, {Start, With}),
    words(K::StartsWith, 0x100, L::Comparison, {Begins, With}),
    words(K::StartsWith, 0x100, L::Comparison, {Begin, With}),
    negated(K::StartsWith, 0, {Does, Not, Start, With}),
    negated(K::StartsWith, 0, {Doesnt, Start, With}),
    negated(K::StartsWith, 0x100, {Does, Not, Begin, With}),
    negated(K::StartsWith, 0x100, {Doesnt, Begin, With}),
    words(K::EndsWith, 0, L::Comparison, {Ends, With}),
    words(K::EndsWith, 0, L::Comparison, {End, With}),
    negated(K::EndsWith, 0, {Does, Not, End, With}),
    negated(K::EndsWith, 0, {Doesnt, End, With}),
    words(K::Contains, 0, L::Comparison, {Contains}),
    words(K::Contains, 0, L::Comparison, {Contain}),
    negated(K::Contains, 0, {Does, Not, Contain}),
    negated(K::Contains, 0, {Doesnt, Contain}),
    isIn({Is, In}, false),
    isIn({Is, Contained, By}, false),
    isIn({Is, Not, In}, true),
    isIn({Isnt, In}, true),
    isIn({Is, Not, Contained, By}, true),
    isIn({Isnt, Contained, By}, true),
});

} // namespace

std::span<const OperatorRow> symbolOperators() {
    return kSymbols;
}

std::span<const OperatorRow> wordOperators() {
    return kWords;
}

} // namespace quoddle::syntax
