// SPDX-License-Identifier: MIT
// Primaries: the parts of an expression between its operators and containers.
#include "platform/applescript/syntax/NodeFlags.h"
#include "platform/applescript/syntax/ParserState.h"

#include "platform/base/Text.h"

namespace quoddle::syntax {

namespace {

constexpr std::uint8_t kDataTag = 13;

int hexDigit(char16_t c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    c = static_cast<char16_t>(c | 0x20);
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

} // namespace

Object* Parser::primary(Place place) {
    Depth depth(*this);
    std::size_t first = mAt;
    bool broken = takeBreak();
    Object* made = breakAfter(primaryCore(place));
    return broken ? wrap(made, flags::BreakBefore, first) : made;
}

bool Parser::takeBreak() {
    bool here = std::exchange(mTokens[mAt].afterBreak, false);
    return std::exchange(mPendingBreak, false) || here;
}

Object* Parser::breakAfter(Object* made) {
    Token& next = mTokens[mAt];
    if (!next.afterBreak || startsOperand())
        return made;
    next.afterBreak = false;
    return wrap(made, flags::BreakAfter, mAt ? mAt - 1 : 0);
}

Object* Parser::primaryCore(Place place) {
    std::size_t first = mAt;
    const Token& token = peek();
    if (token.kind != TokenKind::Word)
        mConstantsFirst = false;
    switch (token.kind) {
    case TokenKind::Integer:
        advance();
        return literal(mStore.integer(static_cast<std::int32_t>(token.number)), first);
    case TokenKind::Real:
        advance();
        return literal(mStore.real(token.number), first);
    case TokenKind::Text:
        advance();
        return literal(mStore.text(token.text), first);
    case TokenKind::Ordinal:
        return ordinal(first);
    case TokenKind::RawCode:
        return rawCode(place);
    case TokenKind::BarredWord:
        advance();
        return call(*token.word, place, first);
    case TokenKind::Word:
        return wordPrimary(place);
    case TokenKind::Symbol:
        if (token.symbol == Symbol::LeftParen)
            return parenthesized();
        if (token.symbol == Symbol::LeftBrace)
            return braces();
        if (token.symbol == Symbol::LeftBracket)
            return brackets();
        break;
    default:
        break;
    }
    return expected(u"expression");
}

Object* Parser::wordPrimary(Place place) {
    std::size_t first = mAt;
    if (atWordHandler())
        return call(*advance().word, place, first);
    if (place != Place::Part && atWordVariable(place == Place::Index)) {
        const Token& token = peek();
        const TermMatch word = matchTerm({TermKind::Property, TermKind::Class, TermKind::Plural, TermKind::Constant});
        advance();
        Object* variable = !word || word.term->kind == TermKind::Constant ? identifier(*token.word) : codeOf(*word.term);
        return node(NodeKind::Variable, {variable}, 0, first);
    }
    TermMatch match;
    if (mConstantsFirst)
        match = matchTerm({TermKind::Constant, TermKind::Event, TermKind::Property, TermKind::Class, TermKind::Plural});
    else if (place == Place::Part)
        match = matchTerm({TermKind::Event, TermKind::Property, TermKind::Class, TermKind::Plural});
    else
        match = matchTerm({TermKind::Event, TermKind::Property, TermKind::Class, TermKind::Plural, TermKind::Constant});
    mConstantsFirst = false;
    // Every application has a property "properties", also one whose dictionary cannot be had; the language has only the plural class.
    if (match && match.term->kind == TermKind::Plural && match.term->code == "prop"_4cc && mTerms.lacksDictionary()) {
        skip(match.words);
        return node(NodeKind::Term, {mStore.code("pALL"_4cc)}, 0, first);
    }
    // In `x of y`, x is never a constant.
    if (match && match.term->kind == TermKind::Constant &&
        (at(Keyword::Of, match.words) || peek(match.words).kind == TokenKind::PossessiveS) && match.term->group != "boov"_4cc &&
        match.term->group != "misc"_4cc)
        match = matchTerm({TermKind::Event, TermKind::Property, TermKind::Class, TermKind::Plural});
    if (match.words < 2) {
        bool handled = false;
        Object* made = keywordPrimary(place, handled);
        if (handled)
            return made;
        if (isReserved(peek().keyword) && !match)
            return expected(u"expression");
        // A call like foo:bar: may follow a target.
        if (place == Place::Part && at(Symbol::Colon, 1)) {
            advance();
            return interleaved(first);
        }
    }
    if (match)
        return termPrimary(match, place);
    const Word& name = *advance().word;
    return call(name, place, first);
}

/// Parses a primary that begins with a keyword. `handled` becomes false when the word may be a term or an identifier.
Object* Parser::keywordPrimary(Place place, bool& handled) {
    std::size_t first = mAt;
    handled = true;
    if (auto relation = relationAt(0))
        return insertion(*relation, nullptr, first);
    // Without a class behind them "front" and "back" are the words beginning and end, as in "move window 1 to front".
    if ((at(Keyword::Front) || at(Keyword::Back)) && (atLineEnd(1) || at(Keyword::With, 1))) {
        const Token& token = advance();
        return node(token.keyword == Keyword::Front ? NodeKind::Beginning : NodeKind::End, {}, 0, first);
    }
    if (useOf(peek().keyword) == KeywordUse::Picks)
        return ordinal(first);
    switch (peek().keyword) {
    case Keyword::It:
    case Keyword::Me: {
        bool it = at(Keyword::It);
        advance();
        return node(it ? NodeKind::It : NodeKind::Me, {}, 0, first);
    }
    case Keyword::Beginning:
        advance();
        return node(NodeKind::Beginning, {}, 0, first);
    case Keyword::End:
        advance();
        return node(NodeKind::End, {}, 0, first);
    case Keyword::Return:
        advance();
        return node(NodeKind::Variable, {mStore.code("ret "_4cc)}, 0, first);
    case Keyword::App:
        advance();
        return element(mStore.code("capp"_4cc), TermKind::Class, first);
    case Keyword::Get: {
        advance();
        Object* value = expression();
        return node(NodeKind::Get, {value}, 0, first);
    }
    case Keyword::Continue:
        return continueStatement();
    case Keyword::My:
    case Keyword::Its:
        if (!startsOperand(1)) { // a reference reads the word only before an operand
            advance();
            return expected(u"expression");
        }
        [[fallthrough]];
    case Keyword::The:
        return reference();
    case Keyword::Set:
        if (place != Place::Index)
            return setStatement(NodeKind::Set);
        break;
    case Keyword::Copy:
        if (place != Place::Index)
            return setStatement(NodeKind::Copy);
        break;
    default:
        break;
    }
    handled = false;
    return nil();
}

Object* Parser::termPrimary(const TermMatch& match, Place place) {
    std::size_t first = mAt;
    const Term& term = *match.term;
    skip(match.words);
    switch (term.kind) {
    case TermKind::Event:
        return command(eventCode(term.group, term.code, term.event), term.event, first);
    case TermKind::Property:
        // The words of a property may also name a class, whose elements are meant when an index follows.
        if (place != Place::Index && (startsIndex() || (startsKey() && !atActiveLabel()))) {
            std::size_t next = std::exchange(mAt, first);
            TermMatch asClass = matchTerm({TermKind::Class});
            mAt = next;
            if (term.code == "pcls"_4cc || asClass.words == match.words)
                return element(asClass ? codeOf(*asClass.term) : codeOf(term), TermKind::Class, first);
        }
        if (term.code == "ret "_4cc)
            return node(NodeKind::Variable, {codeOf(term)}, 0, first);
        return node(NodeKind::Term, {codeOf(term)}, 0, first);
    case TermKind::Constant:
        return literal(codeOf(term), first);
    case TermKind::Class:
    case TermKind::Plural:
        break;
    }
    if (place == Place::Index)
        return literal(codeOf(term), first);
    return element(codeOf(term), term.kind, first);
}

Object* Parser::parenthesized() {
    std::size_t first = mAt;
    expect(Symbol::LeftParen);
    Object* inner = nullptr;
    {
        Brackets brackets(*this);
        inner = expression();
    }
    expect(Symbol::RightParen);
    return wrap(inner, flags::Parentheses, first);
}

std::vector<Object*> Parser::itemsUntil(Symbol close) {
    std::vector<Object*> items;
    Brackets brackets(*this);
    while (!at(close) && !failed()) {
        items.push_back(expression());
        if (!at(close) && !accept(Symbol::Comma))
            fail(OSASyntaxTypeError, u"Expected “,” but found " + describe(0) + u".", peek());
    }
    return items;
}

Object* Parser::braces() {
    std::size_t first = mAt;
    expect(Symbol::LeftBrace);
    std::size_t keyToken = mAt;
    if (recordKey()) {
        mAt = keyToken;
        return recordAfterKey(first);
    }
    std::vector<Object*> items = itemsUntil(Symbol::RightBrace);
    expect(Symbol::RightBrace);
    return node(NodeKind::List, {list(items)}, 0, first);
}

Object* Parser::recordAfterKey(std::size_t firstToken) {
    std::vector<Object*> pairs;
    {
        Brackets brackets(*this);
        while (!failed()) {
            Object* key = recordKey();
            if (!key) {
                expected(u"property name");
                break;
            }
            pairs.push_back(key);
            pairs.push_back(expression());
            if (!accept(Symbol::Comma))
                break;
        }
    }
    expect(Symbol::RightBrace);
    return node(NodeKind::Record, {mStore.record(pairs)}, 0, firstToken);
}

Object* Parser::recordKey() {
    const Token& token = peek();
    if (token.word && at(Symbol::Colon, 1)) {
        TermMatch match = matchTerm({TermKind::Property, TermKind::Class});
        Object* key = match.words == 1 ? codeOf(*match.term) : nullptr;
        if (!key && isReserved(token.keyword))
            return nullptr;
        skip(2);
        return key ? key : identifier(*token.word);
    }
    if (TermMatch match = matchTerm({TermKind::Property, TermKind::Class}); match && at(Symbol::Colon, match.words)) {
        skip(match.words + 1);
        return codeOf(*match.term);
    }
    bool rawClass = token.kind == TokenKind::RawCode && (token.text.starts_with(u"class ") || token.text.starts_with(u"property "));
    if (rawClass && at(Symbol::Colon, 1)) {
        skip(2);
        return mStore.code(fourCharCode(macRomanFromUTF16(token.text.substr(token.text.find(' ') + 1))));
    }
    return nullptr;
}

Object* Parser::brackets() {
    std::size_t first = mAt;
    expect(Symbol::LeftBracket);
    std::vector<Object*> items = itemsUntil(Symbol::RightBracket);
    expect(Symbol::RightBracket);
    return node(NodeKind::LinkedList, {list(items)}, 0, first);
}

/// Parses «class abcd» and other codes in chevrons.
Object* Parser::rawCode(Place place) {
    const Token& token = peek();
    std::size_t blank = token.text.find(' ');
    std::u16string_view kind = token.text.substr(0, blank);
    std::string bytes = blank == std::u16string_view::npos ? std::string() : macRomanFromUTF16(token.text.substr(blank + 1));
    std::size_t first = mAt;
    if (kind == u"class" || kind == u"property")
        return bytes.empty() || bytes.size() > 4 ? expected(u"expression") : rawClass(fourCharCode(bytes), kind == u"class", place);
    if (kind == u"constant" && (bytes.size() == 8 || bytes.size() == 4)) {
        advance();
        FourCharCode code = fourCharCode(std::string_view(bytes).substr(0, 4));
        return literal(bytes.size() == 4 ? mStore.code(code) : mStore.constant(code, fourCharCode(std::string_view(bytes).substr(4))),
                       first);
    }
    if (kind == u"event" && bytes.size() == 8) {
        advance();
        FourCharCode eventClass = fourCharCode(std::string_view(bytes).substr(0, 4)),
                     eventID = fourCharCode(std::string_view(bytes).substr(4));
        const Term* term = mTerms.event(eventClass, eventID);
        return command(eventCode(eventClass, eventID, term ? term->event : nullptr), term ? term->event : nullptr, first);
    }
    if (kind == u"data" && blank != std::u16string_view::npos)
        return rawData(token.text.substr(blank + 1));
    return fail(OSASyntaxTypeError, u"Expected expression but found unknown token.", token);
}

/// Parses «class abcd». Without an index the code is a property, unless it is known as a class only.
Object* Parser::rawClass(FourCharCode code, bool maybeClass, Place place) {
    std::size_t first = mAt;
    advance();
    if (place == Place::Type)
        return literal(mStore.code(code), first);
    if (maybeClass && place != Place::Index && (startsIndex() || startsKey() || at(Keyword::From) || relationAt(0)))
        return element(mStore.code(code), TermKind::Class, first);
    bool onlyClass = mTerms.name(code, {TermKind::Class}) && !mTerms.name(code, {TermKind::Property});
    return maybeClass && onlyClass ? literal(mStore.code(code), first) : node(NodeKind::Term, {mStore.code(code)}, 0, first);
}

/// Parses the inside of «data …»: a type of four characters and hexadecimal digits.
Object* Parser::rawData(std::u16string_view text) {
    std::size_t first = mAt;
    std::string data = macRomanFromUTF16(text.substr(0, 4));
    bool valid = data.size() == 4 && text.size() % 2 == 0;
    for (std::size_t i = 4; valid && i + 1 < text.size(); i += 2) {
        int high = hexDigit(text[i]), low = hexDigit(text[i + 1]);
        valid = high >= 0 && low >= 0;
        data += static_cast<char>(high << 4 | low);
    }
    if (!valid)
        return expected(u"expression");
    advance();
    return literal(mStore.data(kDataTag, data), first);
}

} // namespace quoddle::syntax
