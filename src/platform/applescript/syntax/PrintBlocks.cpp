// SPDX-License-Identifier: MIT
// Statements with a body.
#include "platform/applescript/syntax/NodeFlags.h"
#include "platform/applescript/syntax/PrinterState.h"

namespace quoddle::syntax {

namespace {

bool is(const Object* node, NodeKind kind) {
    return node->isNode(tagOf(kind));
}

} // namespace

/// Prints the statement of a one-line `if` or `tell`. A statement with a body that begins a new line is indented a level deeper.
void Printer::oneLine(const Object* node) {
    if (is(node, NodeKind::Line) && node->flags == flags::BreakBefore) {
        lineBreak();
        ++mIndent;
        statement(node->children[0]);
        --mIndent;
        return;
    }
    blank();
    statement(node);
}

void Printer::ifStatement(const Object* node) {
    const Object *condition = node->children[0], *then = node->children[1], *chain = node->children[2], *otherwise = node->children[3];
    keyword("if ");
    expression(condition);
    blank();
    keyword("then");
    if (node->flags & flags::OneLine) {
        oneLine(then);
        if (!otherwise->isNil()) {
            blank();
            keyword("else");
            oneLine(otherwise);
        }
        return;
    }
    body(then, nullptr);
    for (std::size_t i = 0; i + 1 < chain->children.size(); i += 2) {
        put(Kind::Plain, std::u16string(mIndent, u'\t'));
        keyword("else if ");
        expression(chain->children[i]);
        blank();
        keyword("then");
        body(chain->children[i + 1], nullptr);
    }
    if (!otherwise->isNil()) {
        put(Kind::Plain, std::u16string(mIndent, u'\t'));
        keyword("else");
        body(otherwise, nullptr);
    }
    put(Kind::Plain, std::u16string(mIndent, u'\t'));
    keyword("end if");
}

/// Enters the dictionary of the application that a target names. False when it names none.
bool Printer::push(const Object* target) {
    auto application = applicationOf(target);
    bool named = application && !application->text.empty();
    if (named)
        mTerms.push(mOptions.applicationTerms ? mOptions.applicationTerms(*application) : nullptr);
    return named;
}

void Printer::tellStatement(const Object* node) {
    keyword("tell ");
    node->flags& flags::OneLine ? target(node->children[1]) : expression(node->children[1]);
    bool pushed = push(node->children[1]);
    if (node->flags & flags::OneLine) {
        blank();
        keyword("to");
        oneLine(node->children[0]);
    } else {
        body(node->children[0], "end tell");
    }
    if (pushed)
        mTerms.pop();
}

void Printer::repeatStatement(const Object* node) {
    auto child = [&](std::size_t i) { return node->children[i]; };
    keyword("repeat");
    switch (static_cast<NodeKind>(node->tag)) {
    case NodeKind::RepeatTimes:
        blank();
        expression(child(1));
        keyword(" times");
        break;
    case NodeKind::RepeatWhile:
    case NodeKind::RepeatUntil:
        keyword(is(node, NodeKind::RepeatWhile) ? " while " : " until ");
        expression(child(1));
        break;
    case NodeKind::RepeatIn:
        keyword(" with ");
        name(child(1));
        keyword(" in ");
        expression(child(2));
        break;
    case NodeKind::RepeatFrom:
        keyword(" with ");
        name(child(1));
        keyword(" from ");
        headExpression(child(2), Level::Not);
        blank();
        keyword("to ");
        child(4)->isNil() ? expression(child(3)) : headExpression(child(3), Level::Not);
        if (!child(4)->isNil()) {
            blank();
            keyword("by ");
            expression(child(4));
        }
        break;
    default:
        break;
    }
    body(child(0), "end repeat");
}

void Printer::tryStatement(const Object* node) {
    const Object *heading = node->children[1], *recovery = node->children[2];
    keyword("try");
    body(node->children[0], nullptr);
    put(Kind::Plain, std::u16string(mIndent, u'\t'));
    bool plain = heading->children.size() < 3 || (heading->children[1]->isNil() && heading->children[2]->children.empty());
    if (!recovery->isNil() || !plain) {
        keyword("on error");
        if (heading->children.size() > 2)
            errorLabels(heading);
        body(recovery, "end try");
    } else {
        keyword("end try");
    }
}

void Printer::withStatement(const Object* node) {
    bool timeout = is(node, NodeKind::Timeout);
    keyword(timeout ? "with timeout of " : "with transaction");
    if (!node->children[1]->isNil()) {
        blank();
        expression(node->children[1]);
    }
    if (timeout)
        keyword(" seconds");
    body(node->children[0], timeout ? "end timeout" : "end transaction");
}

void Printer::usingStatement(const Object* node) {
    keyword("using terms from ");
    expression(node->children[1]);
    bool pushed = push(node->children[1]);
    body(node->children[0], "end using terms from");
    if (pushed)
        mTerms.pop();
}

void Printer::considerations(const Object* list) {
    for (std::size_t i = 0; i < list->children.size(); ++i) {
        put(Kind::Plain, i == 0 ? u" " : i + 1 == list->children.size() ? u" and " : u", ");
        const Object* attribute = list->children[i];
        attribute->isCode(CodeTag::Constant) ? constant(attribute) : expression(attribute);
    }
}

void Printer::consideringStatement(const Object* node) {
    const Object *considered = node->children[1], *ignored = node->children[2];
    bool considering = !considered->children.empty();
    keyword(considering ? "considering" : "ignoring");
    considerations(considering ? considered : ignored);
    if (considering && !ignored->children.empty()) {
        keyword(" but ignoring");
        considerations(ignored);
    }
    body(node->children[0], considering ? "end considering" : "end ignoring");
}

} // namespace quoddle::syntax
