// SPDX-License-Identifier: MIT
// Expressions: operators with the parentheses they need, lists, records, wrappers that keep how something was written.
#include "platform/applescript/syntax/NodeFlags.h"
#include "platform/applescript/syntax/PrinterState.h"
#include "platform/applescript/syntax/SourceText.h"

#include <algorithm>
#include <utility>

namespace quoddle::syntax {

namespace {

bool is(const Object* node, NodeKind kind) {
    return node->isNode(tagOf(kind));
}

const OperatorRow* rowFor(NodeKind kind, std::uint16_t flags, bool negated) {
    for (std::span<const OperatorRow> rows : {wordOperators(), symbolOperators()}) {
        for (const OperatorRow& row : rows) {
            if (row.kind == kind && row.flags == flags && row.negates == negated)
                return &row;
        }
    }
    return nullptr;
}

/// The operator of a node; nullptr when the node is none. Nodes with unknown flags print as the plain form.
const OperatorRow* operatorOf(const Object* node) {
    if (node->kind != ObjectKind::Node || node->children.size() != 2)
        return nullptr;
    auto kind = static_cast<NodeKind>(node->tag);
    const OperatorRow* row = rowFor(kind, node->flags, false);
    return row ? row : rowFor(kind, 0, false);
}

/// The operator for a Not around another one: not (a contains b) is written `a does not contain b`. Null when there is none.
const OperatorRow* negatedOperatorOf(const Object* node) {
    if (!is(node, NodeKind::Not) || node->children[0]->kind != ObjectKind::Node || node->children[0]->children.size() != 2)
        return nullptr;
    const Object* inner = node->children[0];
    return rowFor(static_cast<NodeKind>(inner->tag), inner->flags, true);
}

/// Whether a node takes everything behind it as its parameters, like commands.
bool takesTheRest(const Object* node) {
    return is(node, NodeKind::Call) || is(node, NodeKind::Get) || is(node, NodeKind::Continue);
}

} // namespace

Level Printer::levelOf(const Object* node) const {
    if (const OperatorRow* row = operatorOf(node))
        return row->level;
    if (const OperatorRow* row = negatedOperatorOf(node))
        return row->level;
    if (node->kind != ObjectKind::Node)
        return Level::Operand;
    switch (static_cast<NodeKind>(node->tag)) {
    case NodeKind::Not:
        return Level::Not;
    case NodeKind::Filter:
    case NodeKind::Get:
    case NodeKind::Set:
    case NodeKind::Copy:
    case NodeKind::Continue:
        return Level::Or;
    case NodeKind::Call:
        if (node->children.size() < 3 || node->flags == flags::Postfix)
            return Level::Operand;
        if (node->children[0]->kind == ObjectKind::Identifier)
            return node->children[2]->children.empty() ? Level::Operand : Level::Or;
        // `count of x` looks like a property, and a command without parameters cannot take what follows.
        if (node->children[2]->children.empty() && (node->flags == flags::OfForm || node->children[1]->isNil()))
            return Level::Operand;
        return Level::Or;
    default:
        return Level::Operand;
    }
}

void Printer::expression(const Object* node, Level minimum) {
    const std::size_t start = mText.size();
    if (++mDepth > kMaxDepth) {
        put(Kind::Plain, u"«…»");
    } else if (levelOf(node) < minimum && !(mTail && takesTheRest(node))) {
        put(Kind::Plain, u"(");
        bool tail = std::exchange(mTail, true);
        expressionBody(node, Level::Or);
        mTail = tail;
        put(Kind::Plain, u")");
    } else {
        expressionBody(node, minimum);
    }
    --mDepth;
    notePlace(node, start);
}

void Printer::headExpression(const Object* node, Level minimum) {
    bool tail = std::exchange(mTail, false);
    expression(node, minimum);
    mTail = tail;
}

void Printer::closedExpression(const Object* node, Level minimum) {
    bool tail = std::exchange(mTail, true);
    expression(node, minimum);
    mTail = tail;
}

void Printer::expressionBody(const Object* node, Level minimum) {
    if (node->kind != ObjectKind::Node) {
        value(node);
        return;
    }
    if (is(node, NodeKind::Line)) {
        wrapper(node, minimum);
        return;
    }
    if (operatorOf(node) || negatedOperatorOf(node)) {
        operators(node);
        return;
    }
    switch (static_cast<NodeKind>(node->tag)) {
    case NodeKind::Literal:
        value(node->children[0]);
        return;
    case NodeKind::Variable:
    case NodeKind::Term:
        name(node->children[0]);
        return;
    case NodeKind::Me:
        keyword("me");
        return;
    case NodeKind::It:
        keyword("it");
        return;
    case NodeKind::List:
    case NodeKind::LinkedList:
    case NodeKind::Record:
        collection(node);
        return;
    case NodeKind::Call:
        call(node);
        return;
    case NodeKind::Not:
    case NodeKind::Negate:
    case NodeKind::Get:
    case NodeKind::ReferenceTo:
        prefixed(node);
        return;
    case NodeKind::Of:
    case NodeKind::Filter:
    case NodeKind::Every:
    case NodeKind::Some:
    case NodeKind::Middle:
    case NodeKind::Element:
    case NodeKind::ElementByKey:
    case NodeKind::Range:
    case NodeKind::Beginning:
    case NodeKind::End:
    case NodeKind::Before:
    case NodeKind::After:
        element(node);
        return;
    default:
        statement(node);
    }
}

/// Prints "not", "-", "get" or "a reference to" and the operand.
void Printer::prefixed(const Object* node) {
    const Object* operand = node->children[0];
    switch (static_cast<NodeKind>(node->tag)) {
    case NodeKind::Not:
        keyword("not ");
        expression(operand, Level::Not);
        return;
    case NodeKind::Negate: {
        // A second sign goes in parentheses: two would begin a comment.
        bool signedNumber =
            is(operand, NodeKind::Literal) && operand->children[0]->kind == ObjectKind::Integer && operand->children[0]->integer < 0;
        bool signedReal =
            is(operand, NodeKind::Literal) && operand->children[0]->kind == ObjectKind::Real && operand->children[0]->real < 0;
        put(Kind::Operator, is(operand, NodeKind::Negate) || signedNumber || signedReal ? u"- " : u"-");
        expression(operand, Level::Operand);
        return;
    }
    case NodeKind::Get:
        keyword("get ");
        expression(operand);
        return;
    default:
        keyword("a reference to ");
        expression(operand, Level::Operand);
    }
}

void Printer::collection(const Object* node) {
    bool linked = is(node, NodeKind::LinkedList);
    put(Kind::Plain, linked ? u"[" : u"{");
    is(node, NodeKind::Record) ? fields(node->children[0]) : items(node->children[0]);
    put(Kind::Plain, linked ? u"]" : u"}");
}

/// Prints a Line around an expression: parentheses, `the` or a line break.
void Printer::wrapper(const Object* line, Level minimum) {
    const Object* inner = line->children[0];
    if (line->flags == flags::BreakBefore) {
        lineBreak();
        expression(inner, minimum);
    } else if (line->flags == flags::BreakAfter) {
        expression(inner, minimum);
        lineBreak();
    } else if (line->flags == flags::Parentheses) {
        put(Kind::Plain, u"(");
        closedExpression(inner);
        put(Kind::Plain, u")");
    } else if (line->flags & flags::The) {
        keyword("the ");
        expression(inner, Level::Operand);
    } else if (inner->isNil()) {
        return;
    } else {
        expression(inner, minimum);
    }
}

/// Prints operators. The left side is followed in a loop and not recursively, because a chain can be as long as its text.
void Printer::operators(const Object* node) {
    std::vector<const Object*> chain;
    const Object* left = node;
    for (;;) {
        const Object* made = negatedOperatorOf(left) ? left->children[0] : left;
        const OperatorRow* row = negatedOperatorOf(left) ? negatedOperatorOf(left) : operatorOf(left);
        if (!row)
            break;
        Level needed = row->level == Level::Power || row->level == Level::Equality || row->level == Level::Comparison ? tighter(row->level)
                                                                                                                      : row->level;
        chain.push_back(left);
        left = made->children[row->swaps ? 1 : 0];
        if (levelOf(left) < needed || is(made, NodeKind::Equal) || is(made, NodeKind::NotEqual))
            break;
    }
    bool first = true;
    for (std::size_t i = chain.size(); i-- > 0; first = false) {
        const OperatorRow* row = negatedOperatorOf(chain[i]) ? negatedOperatorOf(chain[i]) : operatorOf(chain[i]);
        const Object* made = row->negates ? chain[i]->children[0] : chain[i];
        if (asking(made))
            continue;
        bool rightward = row->level == Level::Power;
        bool single = row->level == Level::Equality || row->level == Level::Comparison;
        if (first)
            headExpression(made->children[row->swaps ? 1 : 0], rightward || single ? tighter(row->level) : row->level);
        blank();
        operatorWords(*row);
        blank();
        const Object* right = made->children[row->swaps ? 0 : 1];
        Level needed = rightward ? row->level : tighter(row->level);
        i == 0 ? expression(right, needed) : headExpression(right, needed);
    }
}

void Printer::operatorWords(const OperatorRow& row) {
    static constexpr std::u16string_view kSymbols[] = {u"",  u"",  u"",  u"",  u"",  u"",  u"",  u"",  u"",  u"+", u"-",
                                                       u"*", u"/", u"^", u"&", u"=", u"≠", u"<", u"≤", u">", u"≥"};
    if (row.symbol != Symbol::None) {
        put(Kind::Operator, kSymbols[static_cast<std::size_t>(row.symbol)]);
        return;
    }
    for (std::size_t i = 0; i < row.length(); ++i) {
        if (i)
            put(Kind::Operator, u" ");
        put(Kind::Operator, spellingOf(row.words[i]));
    }
}

/// Prints `x is running`, which is stored as running of x = true. False when the node is not of that form.
bool Printer::asking(const Object* node) {
    bool equal = is(node, NodeKind::Equal);
    if ((!equal && !is(node, NodeKind::NotEqual)) || node->flags != flags::Asks || !is(node->children[0], NodeKind::Of))
        return false;
    const Object* asked = node->children[0];
    headExpression(asked->children[1], Level::Comparison);
    blank();
    put(Kind::Operator, equal ? u"is " : u"is not ");
    expression(asked->children[0], Level::Comparison);
    return true;
}

void Printer::items(const Object* list) {
    bool first = true;
    for (const Object* item : list->children) {
        if (!first)
            put(Kind::Plain, u", ");
        first = false;
        closedExpression(item);
    }
}

void Printer::fields(const Object* record) {
    std::span<Object* const> pairs = record->children;
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
        if (i)
            put(Kind::Plain, u", ");
        const Object* held = pairs[i + 1];
        if (is(held, NodeKind::Line) && held->flags == flags::BreakBefore) { // the line break goes in front of the label
            lineBreak();
            held = held->children[0];
        }
        name(pairs[i]);
        put(Kind::Plain, u":");
        closedExpression(held);
    }
}

} // namespace quoddle::syntax
