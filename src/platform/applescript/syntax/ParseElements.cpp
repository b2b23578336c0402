// SPDX-License-Identifier: MIT
// Elements (a class with an index, a name, a range or an ordinal), insertion points, and classes whose values are written as literals.
#include "platform/applescript/syntax/ApplicationLiteral.h"
#include "platform/applescript/syntax/NodeFlags.h"
#include "platform/applescript/syntax/ParserState.h"
#include "platform/applescript/syntax/SourceText.h"

#include "platform/base/DateText.h"
#include "platform/base/Text.h"

namespace quoddle::syntax {

namespace {

constexpr std::uint8_t kDataTag = 13;
constexpr OSStatus kInvalidDate = -30720;
constexpr std::int64_t kSecondsPerDay = 86400;

} // namespace

/// Parses what picks elements of a class, which has been read.
Object* Parser::element(Object* classCode, TermKind kind, std::size_t firstToken) {
    FourCharCode code = classCode->code();
    auto byKey = [&](FourCharCode form) {
        advance();
        Object* key = index();
        return node(NodeKind::ElementByKey, {classCode, key, mStore.constant("kfrm"_4cc, form)}, 0, firstToken);
    };
    bool free = !atActiveLabel();
    if (free && startsKey())
        return byKey(atWord("id") ? "ID  "_4cc : atWord("index") ? "indx"_4cc : "name"_4cc);
    if (code == "capp"_4cc && !mPlainApplications && peek().kind == TokenKind::Text)
        return applicationNamed(firstToken);
    if (code == "ldt "_4cc && peek().kind == TokenKind::Text)
        return dateNamed(firstToken);
    if (auto relation = free && kind == TermKind::Class ? relationAt(0) : std::nullopt)
        return insertion(*relation, classCode, firstToken);
    if (free && at(Keyword::From) && startsOperand(1)) {
        advance();
        Object* from = rangeBound();
        if (!accept(Keyword::Thru) && !accept(Keyword::Through))
            expect(Keyword::To);
        Object* to = rangeBound();
        return node(NodeKind::Range, {classCode, from, to}, 0, firstToken);
    }
    if (TermMatch any = code == "****"_4cc ? matchTerm({TermKind::Class}) : TermMatch()) { // as in "any button"
        std::size_t first = mAt;
        skip(any.words);
        return node(NodeKind::Element, {classCode, literal(codeOf(*any.term), first)}, 0, firstToken);
    }
    if (startsIndex())
        return indexed(classCode, firstToken);
    if (kind == TermKind::Plural)
        return node(NodeKind::Every, {classCode}, flags::Plural, firstToken);
    return literal(classCode, firstToken);
}

Object* Parser::indexed(Object* classCode, std::size_t firstToken) {
    Object* at1 = index();
    if (!at(Keyword::Thru) && !at(Keyword::Through))
        return node(NodeKind::Element, {classCode, at1}, 0, firstToken);
    bool through = at(Keyword::Through);
    advance();
    Object* to = rangeBound();
    return node(NodeKind::Range, {classCode, at1, to}, through ? flags::Through : flags::Thru, firstToken);
}

/// Whether a key form and its key follow: id 5, index 2, named "x".
bool Parser::startsKey() const {
    return (atWord("id") || atWord("index") || at(Keyword::Named)) && startsOperand(1);
}

bool Parser::startsIndex() const {
    const Token& token = peek();
    switch (token.kind) {
    case TokenKind::Integer:
    case TokenKind::Real:
    case TokenKind::Text:
    case TokenKind::BarredWord:
    case TokenKind::RawCode:
        return true;
    case TokenKind::Symbol:
        if (token.symbol == Symbol::Minus) { // "item -1" is an element, "items - 1" a difference
            const Token& number = peek(1);
            bool touches = number.start == token.end && mAt > 0 && token.start > mTokens[mAt - 1].end;
            return touches && (number.kind == TokenKind::Integer || number.kind == TokenKind::Real || number.symbol == Symbol::LeftParen ||
                               number.word);
        }
        return token.symbol == Symbol::LeftParen || token.symbol == Symbol::LeftBrace;
    case TokenKind::Word:
        break;
    default:
        return false;
    }
    if (atActiveLabel() || at(Symbol::Colon, 1))
        return false;
    TermMatch match = matchTerm({TermKind::Event, TermKind::Property, TermKind::Class, TermKind::Plural, TermKind::Constant});
    if (isReserved(token.keyword) && match.words < 2) {
        switch (token.keyword) {
        case Keyword::My:
        case Keyword::Beginning: // as in "text beginning thru word 3"
        case Keyword::First:
        case Keyword::Last:
            return true;
        default:
            return false;
        }
    }
    const bool isArticle = (at(Keyword::A) || at(Keyword::An)) && startsOperand(1); // in "item a of x" it is a variable
    if (startsKey() || atWord("exists") || isArticle)
        return false;
    if (atWordVariable(true))
        return true;
    return !match || match.term->kind == TermKind::Property;
}

Object* Parser::index() {
    if (!at(Symbol::Minus)) {
        ScopedFlag labels(mUserLabels, false);
        return at(Keyword::My) ? unfiltered() : primary(Place::Index);
    }
    std::size_t first = mAt;
    bool broken = takeBreak();
    advance();
    const Token& number = peek();
    Object* made = nullptr;
    if (number.kind == TokenKind::Integer || number.kind == TokenKind::Real) {
        advance();
        made = literal(number.kind == TokenKind::Integer ? mStore.integer(-static_cast<std::int32_t>(number.number))
                                                         : mStore.real(-number.number),
                       first);
        made = breakAfter(made);
    } else {
        Object* value = primary(Place::Index);
        made = node(NodeKind::Negate, {value}, 0, first);
    }
    return broken ? wrap(made, flags::BreakBefore, first) : made;
}

/// Parses one end of a range: a number or an element.
Object* Parser::rangeBound() {
    ScopedFlag labels(mUserLabels, false);
    if (at(Symbol::Minus))
        return index();
    return owned(Place::Value);
}

/// Parses an ordinal (1st, first, last, some, every) and the class that it picks from.
Object* Parser::ordinal(std::size_t firstToken) {
    static constexpr Keyword kOrdinals[] = {Keyword::First, Keyword::Second,  Keyword::Third,  Keyword::Fourth, Keyword::Fifth,
                                            Keyword::Sixth, Keyword::Seventh, Keyword::Eighth, Keyword::Ninth,  Keyword::Tenth};
    const Token& token = advance();
    Keyword form = token.keyword;
    Object* classCode = pickedClass();
    auto pick = [&](std::int32_t index, std::uint16_t flags) {
        Object* value = literal(mStore.integer(index), firstToken);
        return node(NodeKind::Element, {classCode, value}, flags, firstToken);
    };
    if (token.kind == TokenKind::Ordinal)
        return pick(static_cast<std::int32_t>(token.number), flags::NumericOrdinal);
    switch (form) {
    case Keyword::Every:
        return node(NodeKind::Every, {classCode}, 0, firstToken);
    case Keyword::Some:
        return node(NodeKind::Some, {classCode}, 0, firstToken);
    case Keyword::Middle:
        return node(NodeKind::Middle, {classCode}, 0, firstToken);
    case Keyword::Last:
        return pick(-1, flags::OrdinalWord);
    case Keyword::Front:
        return pick(1, flags::FrontOrBack);
    case Keyword::Back:
        return pick(-1, flags::FrontOrBack);
    default:
        break;
    }
    for (std::int32_t i = 0; i < 10; ++i) {
        if (kOrdinals[i] == form)
            return pick(i + 1, flags::OrdinalWord);
    }
    return expected(u"expression");
}

/// Parses the name of a class behind an ordinal, `every` or `some`.
Object* Parser::pickedClass() {
    const Token& token = peek();
    if (token.kind == TokenKind::RawCode && token.text.starts_with(u"class ")) {
        advance();
        return mStore.code(fourCharCode(macRomanFromUTF16(token.text.substr(6))));
    }
    if (at(Keyword::App)) {
        advance();
        return mStore.code("capp"_4cc);
    }
    TermMatch match = matchTerm({TermKind::Class, TermKind::Plural, TermKind::Property});
    if (!match)
        return expected(u"class name");
    skip(match.words);
    return codeOf(*match.term);
}

std::optional<Parser::Relation> Parser::relationAt(std::size_t ahead) const {
    std::size_t in = at(Keyword::In, ahead) ? 1 : 0;
    switch (peek(ahead + in).keyword) {
    case Keyword::Before:
        return in ? std::nullopt : std::optional(Relation{NodeKind::Before, 0, 1});
    case Keyword::After:
        return in ? std::nullopt : std::optional(Relation{NodeKind::After, 0, 1});
    case Keyword::Behind:
        return in ? std::nullopt : std::optional(Relation{NodeKind::After, flags::Behind, 1});
    case Keyword::Front:
    case Keyword::Back:
        if (!at(Keyword::Of, ahead + in + 1))
            return std::nullopt;
        return Relation{at(Keyword::Front, ahead + in) ? NodeKind::Before : NodeKind::After, flags::FrontOf, in + 2};
    default:
        return std::nullopt;
    }
}

Object* Parser::insertion(const Relation& relation, Object* classCode, std::size_t firstToken) {
    skip(relation.tokens);
    Object* part = node(relation.kind, {classCode ? classCode : mStore.code("insl"_4cc)}, relation.flags, firstToken);
    Object* container = reference();
    return node(NodeKind::Of, {part, container}, 0, firstToken);
}

Object* Parser::applicationNamed(std::size_t firstToken) {
    std::u16string name(advance().text);
    if (name.ends_with(u".app") && name.find('/') == std::u16string::npos)
        name.erase(name.size() - 4);
    return literal(mStore.data(kApplicationTag, applicationData(name)), firstToken);
}

Object* Parser::dateNamed(std::size_t firstToken) {
    const Token& token = advance();
    // In `date "10:30" of d` the text is completed when the script runs and d is known.
    const bool isRelative = atWord("relative") && at(Keyword::To, 1);
    if (isRelative || atContainer()) {
        Object* part = node(NodeKind::Element, {mStore.code("ldt "_4cc), literal(mStore.text(token.text), firstToken + 1)}, 0, firstToken);
        if (!isRelative)
            return part;
        skip(2);
        Object* container = unfiltered();
        return node(NodeKind::Of, {part, container}, 0, firstToken);
    }
    std::optional<std::int64_t> seconds =
        token.text.empty() ? mOptions.now - mOptions.now % kSecondsPerDay : dateOfText(token.text, mOptions.now);
    if (!seconds)
        return fail(kInvalidDate, u"Invalid date and time date " + std::u16string(token.text) + u".", token);
    std::string bytes = "ldt ";
    auto bits = static_cast<std::uint64_t>(*seconds);
    for (int shift = 56; shift >= 0; shift -= 8)
        bytes += static_cast<char>(bits >> shift);
    return literal(mStore.data(kDataTag, bytes), firstToken);
}

} // namespace quoddle::syntax
