// SPDX-License-Identifier: MIT
// References: parts and containers, elements, ranges, ordinals, filters.
#include "platform/applescript/syntax/NodeFlags.h"
#include "platform/applescript/syntax/PrinterState.h"
#include "platform/applescript/syntax/SourceText.h"

#include <array>
#include <utility>

namespace quoddle::syntax {

namespace {

bool is(const Object* node, NodeKind kind) {
    return node->isNode(tagOf(kind));
}

/// Whether a node is written with `my` or `its`: x of me with flag 1 is `my x`, x of it with flag 2 is `its x`.
bool isOwned(const Object* node) {
    const Object* container = is(node, NodeKind::Of) ? node->children[1] : nullptr;
    while (container && is(container, NodeKind::Line))
        container = container->children[0];
    return container &&
           ((node->flags == flags::My && is(container, NodeKind::Me)) || (node->flags == flags::Its && is(container, NodeKind::It)));
}

} // namespace

void Printer::element(const Object* node) {
    switch (static_cast<NodeKind>(node->tag)) {
    case NodeKind::Of:
        of(node);
        return;
    case NodeKind::Filter:
        headExpression(node->children[0], Level::Operand);
        blank();
        keyword(node->flags == flags::Where ? "where " : node->flags == flags::That ? "that " : "whose ");
        expression(node->children[1]);
        return;
    case NodeKind::Every:
        if (node->flags & flags::Plural && pluralName(node->children[0]))
            return;
        keyword("every ");
        className(node->children[0]);
        return;
    case NodeKind::Some:
    case NodeKind::Middle:
        keyword(is(node, NodeKind::Some) ? "some " : "middle ");
        className(node->children[0]);
        return;
    case NodeKind::Beginning:
        keyword("beginning");
        return;
    case NodeKind::End:
        keyword("end");
        return;
    case NodeKind::Range:
        range(node);
        return;
    case NodeKind::Before:
    case NodeKind::After:
        relation(node, nullptr);
        return;
    default:
        ordinal(node);
    }
}

/// Prints an element by number (with its ordinal if it was written so), by name or by key.
void Printer::ordinal(const Object* node) {
    static constexpr std::array<std::string_view, 11> kWords = {"",       "first ",   "second ", "third ", "fourth ", "fifth ",
                                                                "sixth ", "seventh ", "eighth ", "ninth ", "tenth "};
    const Object* picked = node->children[1];
    bool number = is(picked, NodeKind::Literal) && picked->children[0]->kind == ObjectKind::Integer;
    std::int32_t n = number ? picked->children[0]->integer : 0;
    bool classPicked = is(picked, NodeKind::Literal) && picked->children[0]->isCode(CodeTag::Class);
    if (is(node, NodeKind::Element) && withoutSource(node->children[0])->code() == "****"_4cc && classPicked) {
        put(Kind::Term, u"any ");
        className(picked->children[0]);
        return;
    }
    if (is(node, NodeKind::Element) && number && node->flags) {
        std::string_view word;
        if (node->flags & 2)
            put(Kind::Keyword, sourcetext::ordinal(n) + u" ");
        else if (node->flags & flags::FrontOrBack)
            word = n == -1 ? "back " : "front ";
        else
            word = n == -1 ? "last " : n > 0 && n <= 10 ? kWords[static_cast<std::size_t>(n)] : std::string_view();
        put(Kind::Keyword, word);
        if (node->flags & 2 || !word.empty()) {
            className(node->children[0]);
            return;
        }
    }
    className(node->children[0]);
    blank();
    if (is(node, NodeKind::ElementByKey)) {
        FourCharCode form = node->children[2]->code(1);
        keyword(form == "name"_4cc ? "named " : form == "indx"_4cc ? "index " : "id ");
    }
    index(node->children[1]);
}

void Printer::index(const Object* node) {
    bool plain = is(node, NodeKind::Literal) || is(node, NodeKind::Variable) || is(node, NodeKind::Term) || is(node, NodeKind::Line) ||
                 is(node, NodeKind::List) || is(node, NodeKind::Record) || is(node, NodeKind::End) || is(node, NodeKind::Beginning) ||
                 (is(node, NodeKind::Call) && node->children[0]->kind == ObjectKind::Identifier && levelOf(node) == Level::Operand) ||
                 isOwned(node);
    bool negated = is(node, NodeKind::Negate) && (is(node->children[0], NodeKind::Variable) || is(node->children[0], NodeKind::Line));
    if (plain || negated) {
        expression(node);
        return;
    }
    put(Kind::Plain, u"(");
    closedExpression(node);
    put(Kind::Plain, u")");
}

void Printer::range(const Object* node) {
    if (!pluralName(node->children[0]))
        className(node->children[0]);
    auto bound = [this](const Object* end) {
        bool possessive = is(end, NodeKind::Of) && end->flags == flags::Possessive;
        bool element = possessive || is(end, NodeKind::Element) || is(end, NodeKind::ElementByKey);
        element ? expression(end) : index(end);
    };
    bool thru = node->flags & flags::Thru;
    blank();
    if (!thru)
        keyword("from ");
    bound(node->children[1]);
    blank();
    keyword(!thru ? "to " : node->flags == flags::Through ? "through " : "thru ");
    bound(node->children[2]);
}

/// Prints relations such as "before x", "word after y" and "in front of z".
void Printer::relation(const Object* part, const Object* container) {
    const Object* classCode = withoutSource(part->children[0]);
    if (classCode->code() != "insl"_4cc) {
        className(classCode);
        blank();
    }
    bool before = is(part, NodeKind::Before);
    if (part->flags & flags::FrontOf)
        keyword(before ? "in front of" : "in back of");
    else
        keyword(before ? "before" : part->flags & flags::Behind ? "behind" : "after");
    if (container) {
        blank();
        this->container(container);
    }
}

void Printer::of(const Object* node) {
    const Object *part = node->children[0], *container = node->children[1];
    if (isOwned(node)) {
        keyword(node->flags == flags::My ? "my " : "its ");
        if (levelOf(part) == Level::Operand && is(part, NodeKind::Of))
            of(part);
        else
            this->part(part, true);
    } else if (node->flags & 2) {
        owner(container);
        put(Kind::Keyword, u"'s");
        blank();
        this->part(part, true);
    } else if (is(part, NodeKind::Before) || is(part, NodeKind::After)) {
        relation(part, container);
    } else {
        bool tail = std::exchange(mTail, false);
        this->part(part, false);
        mTail = tail;
        blank();
        keyword(node->flags & flags::In ? "in" : "of");
        blank();
        this->container(container);
    }
}

/// Prints the part in front of `of`, or behind 's.
void Printer::part(const Object* node, bool targeted) {
    if (is(node, NodeKind::Call) && node->children[0]->kind == ObjectKind::Identifier && node->children[2]->children.empty()) {
        call(node, targeted);
        return;
    }
    if (is(node, NodeKind::Line) && node->flags != flags::Parentheses && is(node->children[0], NodeKind::Call)) {
        if (node->flags == flags::BreakBefore)
            lineBreak();
        part(node->children[0], targeted);
        if (node->flags == flags::BreakAfter)
            lineBreak();
        return;
    }
    bool chained = is(node, NodeKind::Of) && (targeted || !(node->flags & 2));
    if (!chained) {
        expression(node, Level::Operand);
        return;
    }
    put(Kind::Plain, u"(");
    closedExpression(node);
    put(Kind::Plain, u")");
}

void Printer::container(const Object* node) {
    expression(node, Level::Operand);
}

/// Prints the container in front of 's. An `of` in it needs parentheses: `a of b's c` would mean a of (b's c).
void Printer::owner(const Object* node) {
    const bool isLongOwned = isOwned(node) && is(node->children[0], NodeKind::Of); // "my x of y" would take the part behind 's to y
    const bool loose = isLongOwned || (is(node, NodeKind::Of) && !isOwned(node) && !(node->flags & 2)) ||
                       (is(node, NodeKind::Line) && node->flags & flags::The);
    if (!loose) {
        headExpression(node, Level::Operand);
        return;
    }
    put(Kind::Plain, u"(");
    closedExpression(node);
    put(Kind::Plain, u")");
}

} // namespace quoddle::syntax
