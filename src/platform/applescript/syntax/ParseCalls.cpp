// SPDX-License-Identifier: MIT
// Calls of users' handlers: f(a, b), x's foo:a bar:b, f of x from y given z:1.
#include "platform/applescript/syntax/Keyword.h"
#include "platform/applescript/syntax/NodeFlags.h"
#include "platform/applescript/syntax/ParserState.h"

#include "platform/base/Text.h"

namespace quoddle::syntax {

/// Parses what follows a name: it is a call when there are arguments, else a variable.
Object* Parser::call(const Word& name, Place place, std::size_t firstToken) {
    Object* id = identifier(name);
    if (at(Symbol::LeftParen)) {
        advance();
        std::vector<Object*> arguments = itemsUntil(Symbol::RightParen);
        expect(Symbol::RightParen);
        return node(NodeKind::Call, {id, list(arguments), emptyList()}, 0, firstToken);
    }
    if (at(Symbol::Colon) && place == Place::Part)
        return interleaved(firstToken);
    if (place != Place::Index && mUserLabels && atUserLabel()) {
        Object* labels = userLabels();
        return node(NodeKind::Call, {id, nil(), labels}, flags::Labelled, firstToken);
    }
    return node(NodeKind::Variable, {id}, 0, firstToken);
}

std::u16string Parser::partSpelling(const Token& token) const {
    return std::u16string(token.kind == TokenKind::Word ? mSource.substr(token.start, token.end - token.start) : token.word->spelling);
}

/// Parses foo:a bar:b behind the first word: a call of foo_bar_ with two arguments.
Object* Parser::interleaved(std::size_t firstToken) {
    Word whole;
    std::u16string spelling;
    std::vector<Object*> arguments;
    const Token* part = &mTokens[mAt - 1];
    for (;;) {
        whole.key += part->word->key + "_";
        spelling += partSpelling(*part) + u"_";
        expect(Symbol::Colon);
        arguments.push_back(expression(Level::Product));
        if (failed() || !peek().word || !at(Symbol::Colon, 1))
            break;
        part = &advance();
    }
    whole.spelling = mStore.keep(spelling);
    return node(NodeKind::Call, {identifier(mList->words.emplace_back(whole)), list(arguments), emptyList()}, 0, firstToken);
}

FourCharCode Parser::preposition(std::size_t& tokens) const {
    for (const Preposition& row : prepositions()) {
        if (!at(row.words[0]) || (row.words[1] != Keyword::None && !at(row.words[1], 1)))
            continue;
        tokens = row.words[1] == Keyword::None ? 1 : 2;
        return row.code;
    }
    return 0;
}

/// Whether a label follows the name or the direct parameter of a call with labels.
bool Parser::atUserLabel() const {
    if (atActiveLabel())
        return false;
    if (at(Keyword::Given))
        return true;
    if (at(Keyword::With) || at(Keyword::Without))
        return peek(1).kind == TokenKind::BarredWord ||
               (peek(1).kind == TokenKind::Word && !isReserved(peek(1).keyword) && !at(Keyword::Timeout, 1));
    std::size_t tokens = 0;
    return preposition(tokens) && startsOperand(tokens);
}

Object* Parser::userLabels() {
    std::vector<Object*> pairs;
    ScopedFlag nested(mUserLabels, false);
    while (!failed() && !atActiveLabel()) {
        std::size_t tokens = 0;
        std::size_t first = mAt;
        if (FourCharCode code = preposition(tokens)) {
            skip(tokens);
            Object* value = expression();
            addLabel(pairs, mStore.code(code), value, first);
        } else if (!switches(nullptr, pairs) && !given(pairs)) {
            break;
        }
    }
    return labels(pairs);
}

} // namespace quoddle::syntax
