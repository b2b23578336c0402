// SPDX-License-Identifier: MIT
// Commands and calls of handlers, with their labelled parameters.
#include "platform/applescript/syntax/Keyword.h"
#include "platform/applescript/syntax/NodeFlags.h"
#include "platform/applescript/syntax/PrinterState.h"
#include "platform/applescript/syntax/SourceText.h"

#include <algorithm>

namespace quoddle::syntax {

namespace {

bool is(const Object* node, NodeKind kind) {
    return node->isNode(tagOf(kind));
}

/// 1 for the literal true, 0 for false, -1 for anything else.
int switchOf(const Object* value) {
    if (!is(value, NodeKind::Literal) || !value->children[0]->isCode(CodeTag::Constant) || value->children[0]->code() != "boov"_4cc)
        return -1;
    return value->children[0]->code(1) == "true"_4cc ? 1 : 0;
}

const ParameterTerm* parameterOf(const EventTerm* term, const Object* key) {
    if (!term || key->kind != ObjectKind::Code)
        return nullptr;
    auto found = std::ranges::find(term->parameters, key->code(), &ParameterTerm::code);
    return found == term->parameters.end() ? nullptr : &*found;
}

bool hasLabel(const EventTerm* term, std::string_view words) {
    return term && std::ranges::find(term->parameters, words, &ParameterTerm::words) != term->parameters.end();
}

} // namespace

void Printer::call(const Object* node, bool targeted) {
    if (node->children.size() < 3)
        return;
    if (withoutSource(node->children[0])->kind != ObjectKind::Identifier) {
        command(node);
        return;
    }
    if (targeted && interleaved(node, false))
        return;
    name(node->children[0]);
    const Object *direct = node->children[1], *labels = node->children[2];
    if (direct->kind == ObjectKind::List && (labels->children.empty() || !direct->children.empty())) {
        arguments(direct);
    } else if (direct->kind == ObjectKind::Node) {
        keyword(" of ");
        expression(direct, Level::Operand);
    }
    userLabels(labels);
}

void Printer::arguments(const Object* list) {
    put(Kind::Plain, u"(");
    items(list);
    put(Kind::Plain, u")");
}

/// The parts of a name of the form foo_bar_, here foo and bar; empty when the name has another form.
std::vector<std::string_view> Printer::segments(const Object* identifier) {
    std::vector<std::string_view> parts;
    std::string_view rest = identifier->spelledName();
    if (!rest.ends_with('_') || rest.size() < 2)
        return parts;
    while (!rest.empty()) {
        std::size_t end = rest.find('_');
        if (end == 0)
            return {};
        parts.push_back(rest.substr(0, end));
        rest.remove_prefix(end + 1);
    }
    return parts;
}

/// Prints a call or a heading as foo:a bar:b. False when it was not written so.
bool Printer::interleaved(const Object* node, bool heading) {
    const Object *id = node->children[0], *list = node->children[1];
    std::vector<std::string_view> parts = segments(id);
    if (parts.empty() || list->kind != ObjectKind::List || list->children.size() != parts.size() || !node->children[2]->children.empty())
        return false;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i)
            blank();
        std::string key(parts[i]);
        std::ranges::transform(key, key.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
        identifier(key, parts[i]);
        put(Kind::Plain, u":");
        heading ? parameter(list->children[i]) : expression(list->children[i], Level::Product);
    }
    return true;
}

void Printer::userLabels(const Object* labels) {
    std::span<Object* const> pairs = labels->children;
    for (std::size_t i = 0; i + 1 < pairs.size();) {
        std::string_view preposition = pairs[i]->kind == ObjectKind::Code ? prepositionOf(pairs[i]->code()) : std::string_view();
        blank();
        if (!preposition.empty()) {
            keyword(preposition);
            blank();
            expression(pairs[i + 1], is(pairs[i + 1], NodeKind::Call) && levelOf(pairs[i + 1]) == Level::Or ? Level::Operand : Level::Or);
            i += 2;
            continue;
        }
        // Labels of the same kind in a row share one `given`, `with` or `without`.
        int kind = switchOf(pairs[i + 1]);
        std::size_t end = i;
        while (end + 1 < pairs.size() && switchOf(pairs[end + 1]) == kind &&
               (pairs[end]->kind != ObjectKind::Code || prepositionOf(pairs[end]->code()).empty()))
            end += 2;
        keyword(kind < 0 ? "given " : kind ? "with " : "without ");
        for (std::size_t j = i; j < end; j += 2) {
            if (j > i)
                put(Kind::Plain, kind >= 0 && j + 2 == end ? u" and " : u", ");
            name(pairs[j]);
            if (kind < 0) {
                put(Kind::Plain, u":");
                expression(pairs[j + 1]);
            }
        }
        i = end;
    }
}

void Printer::command(const Object* node) {
    const Object *event = withoutSource(node->children[0]), *direct = node->children[1], *labels = node->children[2];
    const Term* term = mTerms.event(event->code(0), event->code(1));
    auto words = [&] {
        if (term)
            put(Kind::Term, term->words);
        else
            put(Kind::Term, sourcetext::rawCode(u"event", event->bytes.substr(0, 8)));
    };
    if (node->flags == flags::Postfix && !direct->isNil()) {
        headExpression(direct, Level::Operand);
        blank();
        words();
        return;
    }
    words();
    const EventTerm* parts = term ? term->event : nullptr;
    if (!direct->isNil()) {
        blank();
        if (node->flags == flags::OfForm)
            keyword("of ");
        bool exposed = exposes(direct, parts) || (is(direct, NodeKind::Call) && levelOf(direct) == Level::Or && !labels->children.empty());
        bool exists = event->code(1) == "doex"_4cc;
        Level needed = exposed || node->flags == flags::OfForm ? Level::Operand : exists ? Level::As : Level::Or;
        if (exposed && levelOf(direct) == Level::Operand && !is(direct, NodeKind::Line)) {
            put(Kind::Plain, u"(");
            closedExpression(direct);
            put(Kind::Plain, u")");
        } else if (exposed || !labels->children.empty()) {
            headExpression(direct, needed);
        } else {
            expression(direct, needed);
        }
    }
    commandLabels(labels, parts);
}

void Printer::commandLabels(const Object* labels, const EventTerm* term) {
    std::span<Object* const> pairs = labels->children;
    for (std::size_t i = 0; i + 1 < pairs.size();) {
        const ParameterTerm* parameter = parameterOf(term, pairs[i]);
        int kind = switchOf(pairs[i + 1]);
        if (kind < 0) {
            label(pairs[i], pairs[i + 1], term, i + 2 >= pairs.size());
            i += 2;
            // Labels without words in a row share one `given`.
            for (; !parameter && i + 1 < pairs.size() && !parameterOf(term, pairs[i]) && switchOf(pairs[i + 1]) < 0; i += 2) {
                put(Kind::Plain, u", ");
                name(pairs[i]);
                put(Kind::Plain, u":");
                expression(pairs[i + 1]);
            }
            continue;
        }
        std::size_t end = i;
        while (end + 1 < pairs.size() && switchOf(pairs[end + 1]) == kind)
            end += 2;
        blank();
        keyword(kind ? "with " : "without ");
        for (std::size_t j = i; j < end; j += 2) {
            if (j > i)
                put(Kind::Plain, j + 2 == end ? u" and " : u", ");
            parameter = parameterOf(term, pairs[j]);
            if (parameter)
                put(Kind::Term, parameter->words);
            else
                name(pairs[j]);
        }
        i = end;
    }
}

void Printer::label(const Object* key, const Object* held, const EventTerm* term, bool last) {
    blank();
    if (const ParameterTerm* parameter = parameterOf(term, key)) {
        put(Kind::Term, parameter->words);
        blank();
        bool command = is(held, NodeKind::Call) && levelOf(held) == Level::Or && !last;
        bool type = parameter->type == "type"_4cc;
        if (!type && exposes(held, term) && levelOf(held) == Level::Operand && !is(held, NodeKind::Line)) {
            put(Kind::Plain, u"(");
            closedExpression(held);
            put(Kind::Plain, u")");
        } else {
            headExpression(held, type || command || exposes(held, term) ? Level::Operand : Level::Or);
        }
        return;
    }
    keyword("given ");
    name(key);
    put(Kind::Plain, u":");
    expression(held);
}

bool Printer::exposes(const Object* node, const EventTerm* term) const {
    bool as = hasLabel(term, "as"), of = hasLabel(term, "of"), in = hasLabel(term, "in");
    if (!as && !of && !in)
        return false;
    std::vector<const Object*> left{node};
    while (!left.empty()) {
        const Object* at = left.back();
        left.pop_back();
        if (at->kind != ObjectKind::Node)
            continue;
        if ((as && is(at, NodeKind::As)) || (is(at, NodeKind::Of) && !(at->flags & flags::Possessive) && (at->flags & flags::In ? in : of)))
            return true;
        bool open = levelOf(at) != Level::Operand || is(at, NodeKind::Of) || is(at, NodeKind::Negate) ||
                    (is(at, NodeKind::Line) && at->flags != flags::Parentheses);
        if (open && !is(at, NodeKind::Call))
            left.insert(left.end(), at->children.begin(), at->children.end());
    }
    return false;
}

} // namespace quoddle::syntax
