// SPDX-License-Identifier: MIT
// Lines with their comments, statements of one line, definitions.
#include "platform/applescript/syntax/Keyword.h"
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

/// Whether a Line is a line of statements and not a wrapper around an expression.
bool isStatementLine(const Object* node) {
    return is(node, NodeKind::Line) && node->flags < 8 && node->flags != flags::Parentheses;
}

bool hasComment(const Object* line) {
    return std::ranges::any_of(line->children.subspan(1), [](const Object* text) { return !text->isNil(); });
}

/// Whether the comment of a Line stands behind the header of a block.
bool isHeaderComment(const Object* line) {
    return isStatementLine(line) &&
           (line->flags == flags::DashOnHeader || line->flags == flags::BlockOnHeader || line->flags == flags::HashOnHeader);
}

} // namespace

void Printer::comment(const Object* line) {
    std::u16string_view text = line->children.size() > 2 && !line->children[2]->isNil() ? line->children[2]->text : line->children[1]->text;
    bool block = line->flags == flags::BlockComment || line->flags == flags::BlockOnHeader;
    bool hash = line->flags == flags::HashComment || line->flags == flags::HashOnHeader;
    std::u16string whole(block ? u"(*" : hash ? u"#" : u"--");
    whole += text;
    if (block)
        whole += u"*)";
    put(Kind::Comment, whole);
}

void Printer::line(const Object* line) {
    put(Kind::Plain, std::u16string(mIndent, u'\t'));
    if (!isStatementLine(line)) {
        statement(line);
        newline();
        return;
    }
    const Object* inner = line->children[0];
    if (!inner->isNil())
        statement(inner);
    if (hasComment(line) || (line->flags != flags::NoComment && inner->isNil())) {
        blank();
        comment(line);
    }
    newline();
}

void Printer::lines(const Object* body) {
    if (body->isNil())
        return;
    if (!is(body, NodeKind::Block)) {
        line(body);
        return;
    }
    for (const Object* each : body->children[0]->children)
        line(each);
}

/// Prints the lines below a header, and an `end` line when `end` is given. The line of the header is still open; a comment there holds the
/// whole body.
void Printer::body(const Object* body, const char* end) {
    if (isHeaderComment(body)) {
        blank();
        comment(body);
        body = body->children[0];
    }
    newline();
    ++mIndent;
    lines(body);
    --mIndent;
    if (end) {
        put(Kind::Plain, std::u16string(mIndent, u'\t'));
        keyword(end);
    }
}

void Printer::statement(const Object* node) {
    bool tail = std::exchange(mTail, true);
    if (++mDepth > kMaxDepth)
        put(Kind::Plain, u"«…»");
    else
        statementBody(node);
    --mDepth;
    mTail = tail;
}

void Printer::statementBody(const Object* node) {
    if (node->kind != ObjectKind::Node) {
        expression(node);
        return;
    }
    switch (static_cast<NodeKind>(node->tag)) {
    case NodeKind::If:
        ifStatement(node);
        return;
    case NodeKind::Tell:
        tellStatement(node);
        return;
    case NodeKind::Repeat:
    case NodeKind::RepeatTimes:
    case NodeKind::RepeatWhile:
    case NodeKind::RepeatUntil:
    case NodeKind::RepeatIn:
    case NodeKind::RepeatFrom:
        repeatStatement(node);
        return;
    case NodeKind::Try:
        tryStatement(node);
        return;
    case NodeKind::Considering:
        consideringStatement(node);
        return;
    case NodeKind::Timeout:
    case NodeKind::Transaction:
        withStatement(node);
        return;
    case NodeKind::UsingTerms:
        usingStatement(node);
        return;
    case NodeKind::Handler:
        handler(node);
        return;
    case NodeKind::Script:
        scriptObject(node);
        return;
    case NodeKind::Block: // old compilers stored a Block where a statement belongs
        lines(node);
        return;
    default:
        simpleStatement(node);
    }
}

void Printer::scriptObject(const Object* node) {
    keyword("script");
    if (!node->children[0]->isNil()) {
        blank();
        name(node->children[0]);
    }
    body(node->children[1], "end script");
}

void Printer::simpleStatement(const Object* node) {
    auto child = [&](std::size_t i) { return node->children[i]; };
    switch (static_cast<NodeKind>(node->tag)) {
    case NodeKind::Set:
    case NodeKind::Copy:
        assignment(node);
        return;
    case NodeKind::Return:
        keyword("return");
        if (!child(0)->isNil()) {
            blank();
            expression(child(0));
        }
        return;
    case NodeKind::Exit:
        keyword("exit repeat");
        return;
    case NodeKind::Error:
        keyword("error");
        errorLabels(node);
        return;
    case NodeKind::Continue:
        keyword("continue ");
        is(child(0), NodeKind::Call) ? call(child(0), true) : expression(child(0));
        return;
    case NodeKind::Global:
    case NodeKind::Local:
        keyword(is(node, NodeKind::Global) ? "global " : "local ");
        names(child(0));
        return;
    case NodeKind::Property:
        keyword("property ");
        name(child(0));
        put(Kind::Plain, u" : ");
        if (!child(1)->isNil())
            expression(child(1));
        return;
    case NodeKind::Use:
        useStatement(node);
        return;
    default:
        expression(node);
    }
}

void Printer::assignment(const Object* node) {
    bool copy = is(node, NodeKind::Copy);
    keyword(copy ? "copy " : "set ");
    copy ? expression(node->children[0]) : target(node->children[1]);
    blank();
    keyword("to ");
    copy ? target(node->children[1]) : expression(node->children[0]);
}

void Printer::target(const Object* node) {
    headExpression(node, is(node, NodeKind::Call) ? Level::Operand : Level::Or);
}

void Printer::names(const Object* list) {
    for (std::size_t i = 0; i < list->children.size(); ++i) {
        if (i)
            put(Kind::Plain, u", ");
        name(list->children[i]);
    }
}

/// Prints the message and the labels of an error that is raised or caught.
void Printer::errorLabels(const Object* node) {
    const Term* term = mTerms.event("ascr"_4cc, "err "_4cc);
    if (!node->children[1]->isNil()) {
        blank();
        expression(node->children[1]);
    }
    std::span<Object* const> pairs = node->children[2]->children;
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2)
        label(pairs[i], pairs[i + 1], term ? term->event : nullptr, i + 2 >= pairs.size());
}

void Printer::useStatement(const Object* node) {
    keyword("use");
    if (!node->children[0]->isNil()) {
        blank();
        name(node->children[0]);
        put(Kind::Plain, u" :");
    }
    if (!node->children[1]->isNil()) {
        blank();
        expression(node->children[1]);
    }
    const Term* term = mTerms.event("ascr"_4cc, "use "_4cc);
    commandLabels(node->children[2], term ? term->event : nullptr);
    if (!mUsesAdditions)
        mTerms.dropAdditions();
    if (auto application = applicationOf(node->children[1]); application && mOptions.applicationTerms && !application->text.empty()) {
        if (const TermSource* source = mOptions.applicationTerms(*application))
            mTerms.use(source);
    }
}

void Printer::handler(const Object* node) {
    keyword(node->flags & flags::WrittenTo ? "to " : "on ");
    heading(node->children[0]);
    body(node->children[1], "end ");
    handlerName(node->children[0], true);
}

void Printer::handlerName(const Object* call, bool atEnd) {
    const Object* called = withoutSource(call->children[0]);
    if (called->kind == ObjectKind::Identifier) {
        std::vector<std::string_view> parts = segments(called);
        const Object* parameters = call->children[1];
        if (atEnd && !parts.empty() && parameters->kind == ObjectKind::List && parts.size() == parameters->children.size()) {
            for (std::string_view part : parts) {
                put(Kind::Identifier, part);
                put(Kind::Plain, u":");
            }
            return;
        }
        name(called);
    } else if (const Term* term = mTerms.event(called->code(0), called->code(1))) {
        put(Kind::Term, term->words);
    } else {
        put(Kind::Term, sourcetext::rawCode(u"event", called->bytes.substr(0, 8)));
    }
}

void Printer::parameter(const Object* node) {
    expression(node);
}

void Printer::heading(const Object* call) {
    const Object *called = withoutSource(call->children[0]), *direct = call->children[1], *labels = call->children[2];
    bool user = called->kind == ObjectKind::Identifier;
    if (user && interleaved(call, true))
        return;
    handlerName(call, false);
    if (user && direct->kind == ObjectKind::List && (labels->children.empty() || !direct->children.empty())) {
        arguments(direct);
    } else if (direct->kind == ObjectKind::Node || direct->kind == ObjectKind::Identifier) {
        keyword(user ? " of " : " ");
        parameter(direct);
    } else if (!user && call->flags == 0 && direct->isNil()) {
        put(Kind::Plain, u"()");
    }
    const Term* term = user ? nullptr : mTerms.event(called->code(0), called->code(1));
    std::span<Object* const> pairs = labels->children;
    bool given = false;
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
        std::string_view words = pairs[i]->kind == ObjectKind::Code ? prepositionOf(pairs[i]->code()) : std::string_view();
        if (term) {
            auto found = std::ranges::find(term->event->parameters, pairs[i]->code(), &ParameterTerm::code);
            words = pairs[i]->kind == ObjectKind::Code && found != term->event->parameters.end() ? found->words : std::string_view();
        }
        if (!words.empty()) {
            blank();
            put(term ? Kind::Term : Kind::Keyword, words);
            blank();
        } else {
            put(Kind::Keyword, given ? u", " : u" given ");
            given = true;
            name(pairs[i]);
            put(Kind::Plain, u":");
        }
        parameter(pairs[i + 1]);
    }
}

} // namespace quoddle::syntax
