// SPDX-License-Identifier: MIT
// Operators: one table of their spellings, with the node, the flags that keep the spelling, and how tightly they bind.
#include "platform/applescript/syntax/NodeFlags.h"
#include "platform/applescript/syntax/OperatorTable.h"
#include "platform/applescript/syntax/ParserState.h"

namespace quoddle::syntax {

namespace {

constexpr std::size_t kMaxChain = 2000; // the tree of a & b & c … is as deep as the chain is long

/// The row of the longest operator at a token; nullptr when there is none.
template<class At>
const OperatorRow* operatorAt(const Token& token, At keywordAt) {
    if (token.kind == TokenKind::Symbol) {
        for (const OperatorRow& row : symbolOperators()) {
            if (row.symbol == token.symbol)
                return &row;
        }
        return nullptr;
    }
    if (token.kind != TokenKind::Word || token.keyword == Keyword::None)
        return nullptr;
    const OperatorRow* best = nullptr;
    std::size_t longest = 0;
    for (const OperatorRow& row : wordOperators()) {
        if (row.words[0] != token.keyword)
            continue;
        std::size_t length = row.length();
        bool matches = length > longest;
        for (std::size_t i = 1; matches && i < length; ++i)
            matches = keywordAt(i) == row.words[i];
        if (matches) {
            best = &row;
            longest = length;
        }
    }
    return best;
}

} // namespace

Object* Parser::expression(Level minimum) {
    Depth depth(*this);
    std::size_t first = mAt;
    Object* left = nullptr;
    if (minimum <= Level::Not && at(Keyword::Not)) {
        advance();
        Object* inner = expression(Level::Not);
        left = node(NodeKind::Not, {inner}, 0, first);
    } else {
        left = operand();
    }
    Level ceiling = Level::Operand; // comparisons cannot be chained
    for (std::size_t length = 0; !failed(); ++length) {
        if (length > kMaxChain)
            return tooComplex(u"An expression can have 2,000 operators in a row.");
        const OperatorRow* row = operatorAt(peek(), [this](std::size_t ahead) { return peek(ahead).keyword; });
        if (!row || row->level < minimum || row->level >= ceiling || atActiveLabel())
            break;
        skip(row->length());
        left = binary(left, *row, first);
        if (row->level == Level::Equality || row->level == Level::Comparison)
            ceiling = row->level;
    }
    return left;
}

/// Parses the right side of an operator, which has been read.
Object* Parser::binary(Object* left, const OperatorRow& row, std::size_t firstToken) {
    if (row.level == Level::As)
        return node(NodeKind::As, {left, typeName()}, 0, firstToken);
    // Powers group from the right: a ^ b ^ c is a ^ (b ^ c).
    std::size_t rightToken = mAt;
    Object* right = expression(row.level == Level::Power ? Level::Power : tighter(row.level));
    // On the right side of a comparison «class abcd» is a class, unless the code is known to be a property.
    bool comparison = row.level == Level::Equality || row.level == Level::Comparison;
    if (comparison && is(right, NodeKind::Term) && mTokens[rightToken].text.starts_with(u"class ") &&
        !mTerms.name(right->children[0]->code(), {TermKind::Property}))
        right = literal(right->children[0], rightToken);
    bool isWord = row.words[0] == Keyword::Is || row.words[0] == Keyword::Isnt;
    if (isWord && row.asks && is(right, NodeKind::Term)) {
        const Term* term = mTerms.name(right->children[0]->code(), {TermKind::Property});
        if (term && term->boolean) { // `x is running` becomes running of x = true
            Object* asked = node(NodeKind::Of, {right, left}, 0, firstToken);
            return node(row.kind, {asked, literal(mStore.constant("boov"_4cc, "true"_4cc), firstToken)}, flags::Asks, firstToken);
        }
    }
    Object* made = row.swaps ? node(row.kind, {right, left}, row.flags, firstToken) : node(row.kind, {left, right}, row.flags, firstToken);
    return row.negates ? node(NodeKind::Not, {made}, 0, firstToken) : made;
}

/// Parses a value with its signs.
Object* Parser::operand() {
    if (at(Symbol::Plus)) {
        advance();
        return operand();
    }
    if (at(Keyword::Not))
        return expression(Level::Not);
    if (!at(Symbol::Minus))
        return reference();
    Depth depth(*this);
    std::size_t first = mAt;
    advance();
    const Token& number = peek();
    if (number.kind == TokenKind::Integer || number.kind == TokenKind::Real) {
        advance();
        Object* value =
            number.kind == TokenKind::Integer ? mStore.integer(-static_cast<std::int32_t>(number.number)) : mStore.real(-number.number);
        return breakAfter(literal(value, first));
    }
    Object* inner = operand();
    return node(NodeKind::Negate, {inner}, 0, first);
}

/// Parses the right side of `as`: a class, a list of classes, or an expression.
Object* Parser::typeName() {
    std::size_t first = mAt;
    bool broken = takeBreak();
    Object* type = nullptr;
    if (TermMatch match = matchTerm({TermKind::Class, TermKind::Plural})) {
        skip(match.words);
        type = literal(codeOf(*match.term), first);
    } else if (peek().kind == TokenKind::RawCode) {
        type = rawCode(Place::Type);
    } else {
        return reference();
    }
    type = breakAfter(type);
    return broken ? wrap(type, flags::BreakBefore, first) : type;
}

} // namespace quoddle::syntax
