// SPDX-License-Identifier: MIT
// References: parts and containers, possessives, filters.
#include "platform/applescript/syntax/ParserState.h"

namespace quoddle {

namespace {

constexpr std::uint16_t kMy = 1;
constexpr std::uint16_t kIts = 2;
constexpr std::uint16_t kPossessive = 3;
constexpr std::uint16_t kIn = 0x100;
constexpr std::size_t kMaxPossessives = 100;

} // namespace

/// A whole reference: what it is filtered by comes last, whatever stands in front of it.
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
    // `x exists` asks what `exists x` asks.
    if (atWord("exists") && !atActiveLabel()) {
        const Term* exists = mTerms.event("core"_4cc, "doex"_4cc);
        advance();
        made = node(NodeKind::Call, {eventCode("core"_4cc, "doex"_4cc, exists ? exists->event : nullptr), made, emptyList()}, 3, first);
    }
    return made;
}

/// With the words that go before a reference: the, my, its, a reference to.
Object* Parser::unfiltered() {
    Depth depth(*this);
    std::size_t first = mAt;
    bool broken = std::exchange(mPendingBreak, false) || peek().afterBreak;
    auto wrapped = [&](Object* made) { return broken ? node(NodeKind::Line, {made, nil(), nil()}, 9, first) : made; };
    auto start = [&](std::size_t tokens) {
        mTokens[mAt].afterBreak = false;
        skip(tokens);
    };
    // Words of several parts go before the keyword that they begin with: `the clipboard`.
    bool keyword = at(Keyword::The) || at(Keyword::My) || at(Keyword::Its) || at(Keyword::A) || at(Keyword::Ref) || at(Keyword::Reference);
    if (keyword && matchTerm({TermKind::Event, TermKind::Property, TermKind::Class}).words < 2) {
        if (at(Keyword::The)) {
            start(1);
            Object* named = unfiltered();
            return wrapped(node(NodeKind::Line, {named, nil(), nil()}, 0x100, first));
        }
        if ((at(Keyword::My) || at(Keyword::Its)) && (startsOperand(1) || failed())) {
            bool my = at(Keyword::My);
            start(1);
            mTargeted = true;
            Object* part = unfiltered();
            Object* owner = node(my ? NodeKind::Me : NodeKind::It, {}, 0, first);
            return wrapped(node(NodeKind::Of, {part, owner}, my ? kMy : kIts, first));
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
    Object* made = possessives();
    while (!failed() && atContainer() && !standsAlone(made))
        made = contained(made, first);
    return made;
}

/// Texts and numbers are part of nothing: in `every x whose name is "a" of y` the container is that of x.
bool Parser::standsAlone(const Object* part) {
    if (!is(part, NodeKind::Literal))
        return false;
    ObjectKind kind = part->children[0]->kind;
    return kind != ObjectKind::Code && kind != ObjectKind::Data;
}

/// `of` or `in` stands behind the part.
Object* Parser::contained(Object* part, std::size_t firstToken) {
    bool in = at(Keyword::In);
    advance();
    Object* container = nullptr;
    {
        Saved labels(mUserLabels, mUserLabels && !is(part, NodeKind::Variable));
        container = unfiltered();
    }
    if (is(part, NodeKind::Variable) && mUserLabels && atUserLabel()) {
        Object* labels = userLabels();
        return node(NodeKind::Call, {part->children[0], container, labels}, 1, firstToken);
    }
    return node(NodeKind::Of, {part, container}, in ? kIn : 0, firstToken);
}

/// `of` or `in` stands here and is not the label of a command that is being read.
bool Parser::atContainer() const {
    if (at(Symbol::Colon, 1)) // of: is part of a call's name
        return false;
    if (at(Keyword::Of))
        return !atActiveLabel();
    NodeKind kind{};
    std::uint16_t flags = 0;
    std::size_t tokens = 0;
    return at(Keyword::In) && !isRelation(0, kind, flags, tokens) && !atActiveLabel();
}

Object* Parser::possessives() {
    std::size_t first = mAt;
    Object* made = primary(std::exchange(mTargeted, false) ? Place::Part : Place::Value);
    for (std::size_t length = 0; peek().kind == TokenKind::PossessiveS && !failed(); ++length) {
        if (length > kMaxPossessives)
            return tooComplex();
        advance();
        // it's name: the old spelling of `its name`
        Object* part = primary(Place::Part);
        made = node(NodeKind::Of, {part, made}, kPossessive, first);
    }
    return made;
}

Object* Parser::filtered(Object* made, std::size_t firstToken) {
    std::uint16_t flags = at(Keyword::Whose) ? 0x100 : at(Keyword::Where) ? 1 : 2;
    advance();
    Object* test = nullptr;
    {
        Saved labels(mUserLabels, false);
        test = expression();
    }
    return node(NodeKind::Filter, {made, test}, flags, firstToken);
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
    if (!isReserved(token.keyword))
        return true;
    switch (token.keyword) {
    case Keyword::Every:
    case Keyword::Some:
    case Keyword::First:
    case Keyword::Second:
    case Keyword::Third:
    case Keyword::Fourth:
    case Keyword::Fifth:
    case Keyword::Sixth:
    case Keyword::Seventh:
    case Keyword::Eighth:
    case Keyword::Ninth:
    case Keyword::Tenth:
    case Keyword::Last:
    case Keyword::Front:
    case Keyword::Back:
    case Keyword::Middle:
    case Keyword::Beginning:
    case Keyword::Before:
    case Keyword::After:
    case Keyword::Behind:
    case Keyword::My:
    case Keyword::Its:
    case Keyword::It:
    case Keyword::Me:
    case Keyword::The:
    case Keyword::Ref:
    case Keyword::Reference:
    case Keyword::Not:
    case Keyword::Return:
    case Keyword::Get:
    case Keyword::Script:
    case Keyword::Property:
    case Keyword::Continue:
    case Keyword::App:
        return true;
    case Keyword::End: // but not the end of a block on its own line
        return at(Keyword::Of, ahead + 1) || at(Keyword::In, ahead + 1) || ahead > 0;
    case Keyword::In:
        return at(Keyword::Front, ahead + 1) || at(Keyword::Back, ahead + 1);
    default:
        return matchTerm({TermKind::Event, TermKind::Property, TermKind::Class}, ahead).words > 1;
    }
}

} // namespace quoddle
