// SPDX-License-Identifier: MIT
// Statements with a body: if, tell, repeat, try, considering, with timeout, using terms from.
#include "platform/applescript/syntax/NodeFlags.h"
#include "platform/applescript/syntax/ParserState.h"

namespace quoddle::syntax {

/// Parses the statement of a one-line `if` or `tell`.
Object* Parser::inlineStatement() {
    ScopedFlag level(mAtScriptLevel, false);
    return statement();
}

Object* Parser::ifStatement() {
    std::size_t first = mAt;
    advance();
    Object* condition = expression();
    bool then = accept(Keyword::Then);
    if (then && !atLineEnd()) {
        Object* body = inlineStatement();
        Object* otherwise = nil();
        if (accept(Keyword::Else))
            otherwise = inlineStatement();
        return node(NodeKind::If, {condition, body, emptyList(), otherwise}, flags::OneLine, first);
    }
    if (!then && !atLineEnd())
        fail(OSASyntaxTypeError, u"Expected “then”, etc. but found " + describe(0) + u".", peek());
    Object* body = block();
    std::vector<Object*> chain;
    Object* otherwise = nil();
    while (!failed() && at(Keyword::Else)) {
        advance();
        if (!accept(Keyword::If)) {
            otherwise = block();
            break;
        }
        chain.push_back(expression());
        if (!accept(Keyword::Then) && !atLineEnd())
            expected(u"“then”");
        chain.push_back(block());
    }
    endOf(Keyword::If);
    return node(NodeKind::If, {condition, body, list(chain), otherwise}, 0, first);
}

const TermSource* Parser::termsOf(const ApplicationName& application) {
    return mOptions.applicationTerms ? mOptions.applicationTerms(application) : nullptr;
}

/// Enters the dictionary of the application that a target names. False when it names none, or one that is known only when the script runs.
bool Parser::pushTarget(const Object* target) {
    auto application = applicationOf(target);
    bool named = application && !application->text.empty();
    if (named) {
        mTerms.push(termsOf(*application));
        mTargets.push_back(std::move(*application));
    }
    return named;
}

void Parser::popTarget() {
    if (mTerms.lacksDictionary())
        mLeftTarget = {mAt, mTargets.back()};
    mTerms.pop();
    mTargets.pop_back();
}

Object* Parser::tellStatement() {
    std::size_t first = mAt;
    advance();
    Object* target = nullptr;
    {
        ScopedFlag labels(mUserLabels, false);
        target = expression();
    }
    bool pushed = pushTarget(target);
    bool oneLine = accept(Keyword::To);
    Object* body = nullptr;
    if (oneLine) {
        body = inlineStatement();
    } else {
        body = block();
        endOf(Keyword::Tell);
    }
    if (pushed)
        popTarget();
    return node(NodeKind::Tell, {body, target}, oneLine ? flags::OneLine : 0, first);
}

Object* Parser::repeatStatement() {
    std::size_t first = mAt;
    advance();
    auto ended = [&](NodeKind kind, std::initializer_list<Object*> others) {
        std::vector<Object*> children{block()};
        children.insert(children.end(), others);
        endOf(Keyword::Repeat);
        return node(kind, children, 0, first);
    };
    if (atLineEnd())
        return ended(NodeKind::Repeat, {});
    if (at(Keyword::While) || at(Keyword::Until)) {
        NodeKind kind = at(Keyword::While) ? NodeKind::RepeatWhile : NodeKind::RepeatUntil;
        advance();
        return ended(kind, {expression()});
    }
    if (!accept(Keyword::With)) {
        Object* count = expression();
        accept(Keyword::Times);
        return ended(NodeKind::RepeatTimes, {count});
    }
    Object* variable = wordAsVariable();
    if (!variable)
        variable = name();
    ScopedFlag labels(mUserLabels, false);
    if (accept(Keyword::In))
        return ended(NodeKind::RepeatIn, {variable, expression()});
    expect(Keyword::From);
    Object* from = expression();
    expect(Keyword::To);
    Object* to = expression();
    Object* by = accept(Keyword::By) ? expression() : nil();
    return ended(NodeKind::RepeatFrom, {variable, from, to, by});
}

Object* Parser::tryStatement() {
    std::size_t first = mAt;
    advance();
    Object* body = block();
    Object* heading = nullptr;
    Object* recovery = nil();
    if (at(Keyword::On)) {
        heading = errorHeading();
        recovery = block();
    } else {
        const Term* term = mTerms.event("ascr"_4cc, "err "_4cc);
        heading = node(NodeKind::Error, {eventCode("ascr"_4cc, "err "_4cc, term ? term->event : nullptr), nil(), emptyList()}, 0, mAt);
    }
    endOf(Keyword::Try, Keyword::Error);
    return node(NodeKind::Try, {body, heading, recovery}, 0, first);
}

/// Parses "on error message number n from offender to type partial result list".
Object* Parser::errorHeading() {
    std::size_t first = mAt;
    skip(2);
    const Term* term = mTerms.event("ascr"_4cc, "err "_4cc);
    const EventTerm* event = term ? term->event : nullptr;
    mActive.push_back(event);
    std::size_t words = 0;
    Object* message = atLineEnd() || labelAt(event, 0, words) ? nil() : pattern();
    std::vector<Object*> pairs;
    while (!failed()) {
        const ParameterTerm* parameter = labelAt(event, 0, words);
        if (!parameter)
            break;
        std::size_t label = mAt;
        skip(words);
        addLabel(pairs, mStore.code(parameter->code), pattern(), label);
    }
    mActive.pop_back();
    return node(NodeKind::Error, {eventCode("ascr"_4cc, "err "_4cc, event), message, labels(pairs)}, 0, first);
}

std::vector<Object*> Parser::considerations() {
    std::vector<Object*> all;
    do {
        advance();
        TermMatch match = matchTerm({TermKind::Constant});
        if (!match) {
            expected(u"application constant or consideration");
            break;
        }
        skip(match.words);
        all.push_back(codeOf(*match.term));
    } while (!failed() && (at(Symbol::Comma) || at(Keyword::And)));
    return all;
}

Object* Parser::consideringStatement() {
    std::size_t first = mAt;
    bool considering = at(Keyword::Considering);
    std::vector<Object*> one = considerations(), other;
    if (accept(Keyword::But)) {
        if (!at(considering ? Keyword::Ignoring : Keyword::Considering))
            expected(considering ? u"“ignoring”" : u"“considering”");
        other = considerations();
    }
    for (const Object* a : one) {
        for (const Object* b : other) {
            if (a->bytes == b->bytes)
                fail(-2720, u"Can’t both consider and ignore this.", mTokens[first]);
        }
    }
    Object* body = block();
    endOf(considering ? Keyword::Considering : Keyword::Ignoring, considering ? Keyword::Ignoring : Keyword::Considering);
    return node(NodeKind::Considering, {body, list(considering ? one : other), list(considering ? other : one)}, 0, first);
}

Object* Parser::withStatement() {
    std::size_t first = mAt;
    advance();
    if (accept(Keyword::Transaction)) {
        Object* session = atLineEnd() ? nil() : expression();
        Object* body = block();
        endOf(Keyword::Transaction);
        return node(NodeKind::Transaction, {body, session}, 0, first);
    }
    expect(Keyword::Timeout);
    accept(Keyword::Of);
    Object* seconds = expression();
    if (atWord("seconds") || at(Keyword::Second))
        advance();
    Object* body = block();
    endOf(Keyword::Timeout);
    return node(NodeKind::Timeout, {body, seconds}, 0, first);
}

Object* Parser::usingStatement() {
    std::size_t first = mAt;
    advance();
    expect(Keyword::Terms);
    expect(Keyword::From);
    Object* application = reference();
    bool pushed = pushTarget(application);
    Object* body = block(mAtScriptLevel ? Body::ScriptObject : Body::Statements);
    if (!accept(Keyword::End))
        expected(u"“end”");
    if (accept(Keyword::Using)) {
        accept(Keyword::Terms);
        accept(Keyword::From);
    }
    if (pushed)
        popTarget();
    Object* target = is(application, NodeKind::Literal) ? application->children[0] : application;
    return node(NodeKind::UsingTerms, {body, target}, 0, first);
}

} // namespace quoddle::syntax
