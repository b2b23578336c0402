// SPDX-License-Identifier: MIT
// Statements of one line.
#include "platform/applescript/syntax/NodeFlags.h"
#include "platform/applescript/syntax/ParserState.h"

namespace quoddle::syntax {

/// Parses a statement. A line break in front of it (behind `then` or `to`) is kept by the statement, or by the first operand of an
/// expression.
Object* Parser::statement() {
    Depth depth(*this);
    std::size_t first = mAt;
    mPendingBreak = false;
    bool broken = std::exchange(mTokens[mAt].afterBreak, false);
    bool handled = true;
    Object* made = keywordStatement(handled);
    if (handled)
        return broken ? wrap(made, flags::BreakBefore, first) : made;
    mTokens[mAt].afterBreak = broken;
    return expressionStatement();
}

Object* Parser::keywordStatement(bool& handled) {
    // A command of several words, such as set volume or get eof, takes precedence over the keyword that it begins with.
    if (peek().keyword != Keyword::None && matchTerm({TermKind::Event}).words > 1) {
        handled = false;
        return nil();
    }
    switch (peek().keyword) {
    case Keyword::If:
        return ifStatement();
    case Keyword::Tell:
        return tellStatement();
    case Keyword::Repeat:
        return repeatStatement();
    case Keyword::Try:
        return tryStatement();
    case Keyword::Considering:
    case Keyword::Ignoring:
        return consideringStatement();
    case Keyword::With:
        return withStatement();
    case Keyword::Using:
        return usingStatement();
    case Keyword::On:
    case Keyword::To:
        if (mAtScriptLevel)
            return handler();
        break;
    case Keyword::Script:
        if (peek(1).kind != TokenKind::Text)
            return scriptObject();
        break;
    case Keyword::Property:
    case Keyword::Prop:
        if (mAtScriptLevel && !at(Keyword::Of, 1))
            return property();
        break;
    default:
        return simpleStatement(handled);
    }
    handled = false;
    return nil();
}

Object* Parser::simpleStatement(bool& handled) {
    std::size_t first = mAt;
    switch (peek().keyword) {
    case Keyword::Global:
        return declaration(NodeKind::Global);
    case Keyword::Local:
        return declaration(NodeKind::Local);
    case Keyword::Set:
        return setStatement(NodeKind::Set);
    case Keyword::Copy:
    case Keyword::Put:
        return setStatement(NodeKind::Copy);
    case Keyword::Return: {
        advance();
        Object* value = atLineEnd() || at(Keyword::Else) ? nil() : expression();
        return node(NodeKind::Return, {value}, 0, first);
    }
    case Keyword::Error:
        return errorStatement();
    case Keyword::Exit:
        advance();
        accept(Keyword::Repeat);
        return node(NodeKind::Exit, {}, 0, first);
    case Keyword::Continue:
        return continueStatement();
    case Keyword::Use:
        return useStatement();
    default:
        handled = false;
        return nil();
    }
}

Object* Parser::expressionStatement() {
    std::size_t first = mAt;
    mTargeted = peek().word && at(Symbol::Colon, 1); // inside a `tell` a call like foo:1 bar:2 needs no target
    Object* value = expression();
    mTargeted = false;
    if (!accept(Keyword::Returning))
        return value;
    Object* target = reference(); // `value returning target` is the old form of `set target to value`
    return node(NodeKind::Set, {value, target}, 0, first);
}

/// Parses "set target to value", "copy value to target" and "put value into target".
Object* Parser::setStatement(NodeKind kind) {
    std::size_t first = mAt;
    bool put = at(Keyword::Put);
    advance();
    Object* value = nullptr;
    Object* target = nullptr;
    auto readTarget = [&] {
        ScopedFlag labels(mUserLabels, false);
        target = at(Symbol::LeftBrace) || at(Symbol::LeftBracket) ? expression(Level::Operand) : reference();
    };
    if (kind == NodeKind::Set) {
        readTarget();
        expect(Keyword::To);
        value = expression();
    } else {
        {
            ScopedFlag labels(mUserLabels, false);
            value = expression();
        }
        if (!accept(Keyword::Into) && !(put && accept(Keyword::In)))
            expect(Keyword::To);
        readTarget();
    }
    return node(kind, {value, target}, 0, first);
}

Object* Parser::errorStatement() {
    std::size_t first = mAt;
    advance();
    const Term* term = mTerms.event("ascr"_4cc, "err "_4cc);
    const EventTerm* event = term ? term->event : nullptr;
    Object* message = nil();
    mActive.push_back(event);
    ScopedFlag labelsAllowed(mUserLabels, false);
    std::size_t words = 0;
    if (!labelAt(event, 0, words) && startsOperand())
        message = expression();
    Object* labels = commandLabels(event);
    mActive.pop_back();
    return node(NodeKind::Error, {eventCode("ascr"_4cc, "err "_4cc, event), message, labels}, 0, first);
}

/// Parses the name of a variable, property, handler or script: an identifier, or a word of the language that is a property, which gives its
/// code.
Object* Parser::name() {
    const Token& token = peek();
    if (token.kind == TokenKind::RawCode && (token.text.starts_with(u"class ") || token.text.starts_with(u"property "))) {
        Object* code = rawCode(Place::Type);
        return failed() ? nil() : code->children[0];
    }
    TermMatch match = matchTerm({TermKind::Property});
    if (match && (match.words > 1 || !isReserved(token.keyword) || token.keyword == Keyword::Return)) {
        skip(match.words);
        return codeOf(*match.term);
    }
    bool termOnly = token.kind == TokenKind::Word && matchTerm({TermKind::Event, TermKind::Class, TermKind::Plural});
    if (!token.word || isReserved(token.keyword) || termOnly)
        return expected(u"variable name or property");
    advance();
    return identifier(*token.word);
}

Object* Parser::declaration(NodeKind kind) {
    std::size_t first = mAt;
    std::vector<Object*> names;
    do {
        advance();
        Object* word = kind == NodeKind::Local ? wordAsVariable() : nullptr;
        names.push_back(word ? word : name());
    } while (!failed() && at(Symbol::Comma));
    return node(kind, {list(names)}, 0, first);
}

/// Parses statements such as `use name : script "X" version "1.0"`.
Object* Parser::useStatement() {
    std::size_t first = mAt;
    advance();
    Object* label = nil();
    if (peek().word && at(Symbol::Colon, 1)) {
        label = identifier(*advance().word);
        advance();
    }
    const Term* term = mTerms.event("ascr"_4cc, "use "_4cc);
    const EventTerm* event = term ? term->event : nullptr;
    std::size_t words = 0;
    Object* target = nil();
    mActive.push_back(event);
    if (!labelAt(event, 0, words)) {
        ScopedFlag plain(mPlainApplications, true);
        if (atWord("applescript")) { // in other places `AppleScript version` is a property
            advance();
            target = node(NodeKind::Term, {mStore.code("ascr"_4cc)}, 0, mAt - 1);
        } else {
            target = primary(Place::Value);
        }
    }
    Object* options = commandLabels(event);
    mActive.pop_back();
    // QUIRK: a script with a `use` statement has no Standard Additions unless it names them; such scripts rely on using the words of the
    // additions as names.
    if (!mUsesAdditions)
        mTerms.dropAdditions();
    if (auto application = applicationOf(target); application && !application->text.empty()) {
        if (const TermSource* source = termsOf(*application))
            mTerms.use(source);
    }
    return node(NodeKind::Use, {label, target, options}, 0, first);
}

Object* Parser::continueStatement() {
    std::size_t first = mAt;
    advance();
    Object* call = owned(Place::Part);
    if (!failed() && !is(call, NodeKind::Call))
        return fail(OSASyntaxTypeError, u"Expected command name but found identifier.", mTokens[first + 1]);
    return node(NodeKind::Continue, {call}, 0, first);
}

} // namespace quoddle::syntax
