// SPDX-License-Identifier: MIT
// References: parts and containers, possessives, filters.
#include "platform/applescript/image/Block.h"
#include "platform/applescript/syntax/NodeFlags.h"
#include "platform/applescript/syntax/ParserState.h"

namespace quoddle::syntax {

namespace {

constexpr std::size_t kMaxPossessives = 100;

} // namespace

/// Parses a whole reference. The filter comes last, whatever stands in front of it.
Object* Parser::reference() {
    Depth depth(*this);
    std::size_t first = mAt;
    Object* made = unfiltered();
    while (!failed()) {
        if (at(Keyword::Whose) || at(Keyword::Where) || at(Keyword::That))
            made = filtered(made, first);
        else if (is(made, NodeKind::Filter) && atContainer())
            made = contained(made, first);
        else
            break;
    }
    return atActiveLabel() ? made : commandBehind(made, first);
}

/// `x exists` and `x count` are other forms of `exists x` and `count x`.
Object* Parser::commandBehind(Object* made, std::size_t firstToken) {
    const FourCharCode eventID = atWord("exists") ? "doex"_4cc : atWord("count") ? "cnte"_4cc : 0;
    if (eventID == 0)
        return made;
    const Term* term = mTerms.event("core"_4cc, eventID);
    advance();
    Object* event = eventCode("core"_4cc, eventID, term ? term->event : nullptr);
    return node(NodeKind::Call, {event, made, emptyList()}, flags::Postfix, firstToken);
}

/// Parses a reference without its filter, with words such as the, my, its, a reference to in front.
Object* Parser::unfiltered() {
    Depth depth(*this);
    std::size_t first = mAt;
    bool broken = std::exchange(mPendingBreak, false) || peek().afterBreak;
    auto wrapped = [&](Object* made) { return broken ? wrap(made, flags::BreakBefore, first) : made; };
    auto start = [&](std::size_t tokens) {
        mTokens[mAt].afterBreak = false;
        skip(tokens);
    };
    // A term of several words such as `the clipboard` takes precedence over the keyword that it begins with.
    bool keyword = at(Keyword::The) || at(Keyword::My) || at(Keyword::Its) || at(Keyword::A) || at(Keyword::Ref) || at(Keyword::Reference);
    if (keyword && matchTerm({TermKind::Event, TermKind::Property, TermKind::Class}).words < 2) {
        if (at(Keyword::The)) {
            start(1);
            Object* named = unfiltered();
            return wrapped(wrap(named, flags::The, first));
        }
        if ((at(Keyword::My) || at(Keyword::Its)) && (startsOperand(1) || failed())) {
            bool my = at(Keyword::My);
            start(1);
            Object* part = primary(Place::Part);
            const bool isOwner = peek().kind == TokenKind::PossessiveS; // "my x's y" is y of (my x), "my x of y" is my (x of y)
            if (!isOwner)
                part = containers(part, first);
            Object* owner = node(my ? NodeKind::Me : NodeKind::It, {}, 0, first);
            Object* owned = wrapped(node(NodeKind::Of, {part, owner}, my ? flags::My : flags::Its, first));
            return isOwner ? containers(possessives(owned, first), first) : owned;
        }
        std::size_t tokens = at(Keyword::A) ? 1 : 0;
        if (at(Keyword::Ref, tokens) || at(Keyword::Reference, tokens)) {
            bool to = at(Keyword::To, tokens + 1);
            if (to || (startsOperand(tokens + 1) && (tokens || at(Keyword::Ref)))) {
                start(tokens + 1 + (to ? 1 : 0));
                Object* target = reference();
                return wrapped(node(NodeKind::ReferenceTo, {target}, 0, first));
            }
        }
    }
    mPendingBreak = broken && !peek().afterBreak;
    return containers(owned(std::exchange(mTargeted, false) ? Place::Part : Place::Value), first);
}

/// Parses the containers behind a part, "of x in y".
Object* Parser::containers(Object* made, std::size_t firstToken) {
    while (!failed() && atContainer() && !standsAlone(made))
        made = contained(made, firstToken);
    return made;
}

/// Whether a part cannot have a container, like texts and numbers: in `every x whose name is "a" of y` the container is that of x.
bool Parser::standsAlone(const Object* part) {
    if (!is(part, NodeKind::Literal))
        return false;
    ObjectKind kind = part->children[0]->kind;
    return kind != ObjectKind::Code && kind != ObjectKind::Data;
}

/// Parses `of` or `in` behind a part, and the container.
Object* Parser::contained(Object* part, std::size_t firstToken) {
    bool in = at(Keyword::In);
    advance();
    Object* container = nullptr;
    {
        ScopedFlag labels(mUserLabels, mUserLabels && !is(part, NodeKind::Variable));
        container = unfiltered();
    }
    if (is(part, NodeKind::Variable) && mUserLabels && atUserLabel()) {
        Object* labels = userLabels();
        return node(NodeKind::Call, {part->children[0], container, labels}, flags::Labelled, firstToken);
    }
    if (!in && isClassOfConstant(part, container)) // compiled scripts hold the reference itself
        return node(NodeKind::Literal, {mStore.block(block::Property, {container->children[0], part->children[0]})}, 0, firstToken);
    return node(NodeKind::Of, {part, container}, in ? flags::In : 0, firstToken);
}

/// Whether the class of a number, of true or false, or of a class is asked for.
bool Parser::isClassOfConstant(const Object* part, const Object* container) {
    const bool isClass = (is(part, NodeKind::Literal) || is(part, NodeKind::Term)) && part->children[0]->isCode(CodeTag::Class) &&
                         part->children[0]->code() == "pcls"_4cc;
    if (!isClass || !is(container, NodeKind::Literal))
        return false;
    const Object* value = container->children[0];
    return value->kind == ObjectKind::Integer || value->kind == ObjectKind::Boolean || value->isCode(CodeTag::Class) ||
           (value->isCode(CodeTag::Constant) && value->code() == "boov"_4cc);
}

/// Whether `of` or `in` stands here and is not a label of the command that is being read.
bool Parser::atContainer() const {
    if (at(Symbol::Colon, 1)) // "of:" is part of a call's name
        return false;
    if (at(Keyword::Of))
        return !atActiveLabel();
    return at(Keyword::In) && !relationAt(0) && !atActiveLabel();
}

/// Parses a primary with the parts behind it, "x's y's z".
Object* Parser::owned(Place place) {
    const std::size_t first = mAt;
    return possessives(primary(place), first);
}

/// Parses the parts behind an owner, "'s x's y".
Object* Parser::possessives(Object* made, std::size_t firstToken) {
    for (std::size_t length = 0; peek().kind == TokenKind::PossessiveS && !failed(); ++length) {
        if (length > kMaxPossessives)
            return tooComplex(u"A reference can have 100 possessives in a row.");
        advance();
        // QUIRK: "it's name" is accepted as an old spelling of "its name"; old sources rely on that
        Object* part = primary(Place::Part);
        made = node(NodeKind::Of, {part, made}, flags::Possessive, firstToken);
    }
    return made;
}

Object* Parser::filtered(Object* made, std::size_t firstToken) {
    std::uint16_t spelling = at(Keyword::Whose) ? flags::Whose : at(Keyword::Where) ? flags::Where : flags::That;
    advance();
    Object* test = nullptr;
    {
        ScopedFlag labels(mUserLabels, false);
        test = expression();
    }
    return node(NodeKind::Filter, {made, test}, spelling, firstToken);
}

bool Parser::startsOperand(std::size_t ahead) const {
    const Token& token = peek(ahead);
    switch (token.kind) {
    case TokenKind::BarredWord:
    case TokenKind::Integer:
    case TokenKind::Real:
    case TokenKind::Ordinal:
    case TokenKind::Text:
    case TokenKind::RawCode:
        return true;
    case TokenKind::Symbol:
        return token.symbol == Symbol::LeftParen || token.symbol == Symbol::LeftBrace || token.symbol == Symbol::LeftBracket ||
               token.symbol == Symbol::Minus;
    case TokenKind::Word:
        break;
    default:
        return false;
    }
    if (atActiveLabel(ahead))
        return false;
    switch (useOf(token.keyword)) {
    case KeywordUse::Free:
    case KeywordUse::Starts:
    case KeywordUse::Picks:
        return true;
    case KeywordUse::Reserved:
        break;
    }
    if (token.keyword == Keyword::End) // "end" on a line of its own closes a block
        return at(Keyword::Of, ahead + 1) || at(Keyword::In, ahead + 1) || ahead > 0;
    if (token.keyword == Keyword::In)
        return relationAt(ahead).has_value();
    return matchTerm({TermKind::Event, TermKind::Property, TermKind::Class}, ahead).words > 1;
}

} // namespace quoddle::syntax
