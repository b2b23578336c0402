// SPDX-License-Identifier: MIT
// Definitions: handlers with their parameters, script objects, properties.
#include "platform/applescript/image/Block.h"
#include "platform/applescript/syntax/NodeFlags.h"
#include "platform/applescript/syntax/ParserState.h"

#include "platform/base/Text.h"

#include <set>

namespace quoddle::syntax {

namespace {

constexpr OSStatus kDuplicateRun = -2789;

/// The statement inside a Line; any other node itself.
const Object* statementOf(const Object* line) {
    while (line->isNode(tagOf(NodeKind::Line)))
        line = line->children[0];
    return line;
}

std::u16string shownName(const Object* name) {
    if (name->kind == ObjectKind::Identifier)
        return utf16FromUTF8(name->spelledName());
    const TermSource& language = languageTerms();
    const Term* term = name->bytes.size() == 24 ? language.find(TermKind::Event, name->code(1), name->code(0))
                                                : language.find(TermKind::Property, name->code());
    return term ? utf16FromUTF8(term->words) : utf16FromMacRoman(name->bytes.substr(0, 8));
}

} // namespace

/// Parses a pattern of variables that take a parameter or its parts: a name, or a list or record of patterns.
Object* Parser::pattern() {
    Depth depth(*this);
    std::size_t first = mAt;
    if (at(Symbol::LeftBrace) || at(Symbol::LeftBracket) || at(Symbol::LeftParen))
        return primary(Place::Value);
    if (at(Symbol::Minus)) { // as in "on error number -128"
        advance();
        Object* number = primary(Place::Index);
        return node(NodeKind::Negate, {number}, 0, first);
    }
    if (accept(Keyword::The)) {
        Object* named = pattern();
        return wrap(named, flags::The, first);
    }
    const Token& token = peek();
    if (token.kind == TokenKind::Integer || token.kind == TokenKind::Real || token.kind == TokenKind::Text || at(Keyword::It) ||
        at(Keyword::Me))
        return primary(Place::Index);
    if (Object* word = wordAsVariable())
        return node(NodeKind::Variable, {word}, 0, first);
    Object* named = name();
    return node(named->kind == ObjectKind::Code ? NodeKind::Term : NodeKind::Variable, {named}, 0, first);
}

Object* Parser::wordAsVariable() {
    const Token& token = peek();
    const TermMatch match = matchTerm({TermKind::Property, TermKind::Class, TermKind::Plural, TermKind::Constant});
    if (token.kind != TokenKind::Word || match.words != 1 || isReserved(token.keyword))
        return nullptr;
    mWordVariables.insert(token.word->key);
    advance();
    // A constant's code could not name a variable, so its word becomes an identifier.
    return match.term->kind == TermKind::Constant ? identifier(*token.word) : codeOf(*match.term);
}

bool Parser::atWordVariable(bool isIndex) const {
    const Token& token = peek();
    return token.kind == TokenKind::Word && mWordVariables.contains(token.word->key) && (isIndex || !at(Keyword::Of, 1)) &&
           !at(Symbol::Colon, 1) &&
           matchTerm({TermKind::Event, TermKind::Property, TermKind::Class, TermKind::Plural, TermKind::Constant}).words < 2;
}

bool Parser::atWordHandler() const {
    if (peek().kind != TokenKind::Word || !at(Symbol::LeftParen, 1))
        return false;
    if (mWordHandlers.contains(peek().word->key))
        return true;
    // Some other script may define the handler: nothing else has a constant, or several things in parentheses, right before or behind it.
    if (peek().end != peek(1).start)
        return false;
    if (isReserved(peek().keyword))
        return useOf(peek().keyword) == KeywordUse::Picks && hasSeveralInParentheses(1);
    const TermMatch match = matchTerm({TermKind::Event, TermKind::Property, TermKind::Class, TermKind::Plural, TermKind::Constant});
    return match.words == 1 && match.term->kind != TermKind::Event &&
           (match.term->kind == TermKind::Constant || hasSeveralInParentheses(1));
}

/// Whether the parentheses that begin at a token hold a comma that is in no other brackets.
bool Parser::hasSeveralInParentheses(std::size_t ahead) const {
    std::size_t depth = 0;
    for (std::size_t i = ahead; mAt + i < mTokens.size() && peek(i).kind != TokenKind::Newline; ++i) {
        const Symbol symbol = peek(i).kind == TokenKind::Symbol ? peek(i).symbol : Symbol::None;
        if (symbol == Symbol::LeftParen || symbol == Symbol::LeftBrace || symbol == Symbol::LeftBracket)
            ++depth;
        else if (symbol == Symbol::RightParen || symbol == Symbol::RightBrace || symbol == Symbol::RightBracket)
            --depth;
        if (depth == 0)
            return false;
        if (depth == 1 && symbol == Symbol::Comma)
            return true;
    }
    return false;
}

/// Finds handlers whose names are words of the language: lines that begin with "on" or "to", such a word that is not a command, and a
/// parenthesis.
void Parser::findHandlerNames() {
    bool atLineStart = true;
    for (std::size_t i = 0; i + 2 < mTokens.size(); ++i) {
        const Token& word = mTokens[i + 1];
        const bool isDefinition = atLineStart && (mTokens[i].keyword == Keyword::On || mTokens[i].keyword == Keyword::To) &&
                                  word.kind == TokenKind::Word && mTokens[i + 2].symbol == Symbol::LeftParen;
        const bool mayName = !isReserved(word.keyword) || useOf(word.keyword) == KeywordUse::Picks;
        if (isDefinition && mayName && !matchTerm({TermKind::Event}, i + 1))
            mWordHandlers.insert(word.word->key);
        atLineStart = mTokens[i].kind == TokenKind::Newline;
    }
}

/// Parses "name as class : default value".
Object* Parser::parameter() {
    std::size_t first = mAt;
    bool broken = takeBreak();
    Object* made = pattern();
    if (accept(Keyword::As))
        made = node(NodeKind::As, {made, typeName()}, 0, first);
    if (accept(Symbol::Colon)) {
        Object* value = expression();
        made = literal(mStore.block(block::OptionalParameterNode, {mStore.integer(0), mStore.integer(0), made, nil(), value}), first);
    }
    made = breakAfter(made);
    return broken ? wrap(made, flags::BreakBefore, first) : made;
}

Object* Parser::handler() {
    std::size_t first = mAt;
    bool to = at(Keyword::To);
    advance();
    const std::set<std::string_view> outside = mWordVariables;
    Object* heading = handlerHeading();
    Object* body = block();
    if (!accept(Keyword::End))
        expected(u"“end”");
    // QUIRK: any name may stand behind "end"; it is not compared with the handler's, and scripts with renamed handlers rely on that
    while (!failed() && !atLineEnd())
        advance();
    checkDeclarations(body);
    mWordVariables = outside;
    return node(NodeKind::Handler, {heading, body}, to ? flags::WrittenTo : 0, first);
}

Object* Parser::handlerHeading() {
    std::size_t first = mAt;
    const Token& token = peek();
    if (token.kind == TokenKind::RawCode && token.text.starts_with(u"event ")) {
        std::string bytes = macRomanFromUTF16(token.text.substr(6));
        if (bytes.size() != 8)
            return expected(u"command name");
        advance();
        FourCharCode eventClass = fourCharCode(std::string_view(bytes).substr(0, 4)),
                     eventID = fourCharCode(std::string_view(bytes).substr(4));
        const Term* term = mTerms.event(eventClass, eventID);
        return eventHeading(eventCode(eventClass, eventID, term ? term->event : nullptr), term ? term->event : nullptr, first);
    }
    if (TermMatch match = matchTerm({TermKind::Event}); match && !at(Symbol::Colon, match.words)) {
        skip(match.words);
        return eventHeading(eventCode(match.term->group, match.term->code, match.term->event), match.term->event, first);
    }
    if (!token.word || (isReserved(token.keyword) && !at(Symbol::Colon, 1) && !atWordHandler()))
        return expected(u"handler name");
    return at(Symbol::Colon, 1) ? interleavedHeading(first) : userHeading(first);
}

/// Parses headings such as "on open files" and "on adding folder items to folder after receiving files".
Object* Parser::eventHeading(Object* event, const EventTerm* term, std::size_t firstToken) {
    std::uint16_t form = flags::Command;
    Object* direct = nil();
    std::vector<Object*> pairs;
    mActive.push_back(term);
    std::size_t words = 0;
    if (at(Symbol::LeftParen) && at(Symbol::RightParen, 1)) {
        form = 0;
        skip(2);
    } else if (!atLineEnd() && !labelAt(term, 0, words) && !at(Keyword::Given)) {
        if (!accept(Keyword::Of))
            accept(Keyword::In);
        direct = parameter();
    }
    while (!failed() && !atLineEnd()) {
        std::size_t first = mAt;
        Object* key = nullptr;
        if (const ParameterTerm* label = labelAt(term, 0, words)) {
            skip(words);
            key = mStore.code(label->code);
        } else if (at(Keyword::Given) || (at(Symbol::Comma) && !pairs.empty())) {
            advance();
            key = givenLabel();
            expect(Symbol::Colon);
        } else {
            std::size_t tokens = 0;
            FourCharCode code = preposition(tokens);
            if (!code) {
                expected(u"end of line");
                break;
            }
            skip(tokens);
            key = mStore.code(code);
        }
        addLabel(pairs, key, parameter(), first);
    }
    mActive.pop_back();
    return node(NodeKind::Call, {event, direct, labels(pairs)}, form, firstToken);
}

/// Parses headings such as "on f(a, b)" and "on f of x from a given b:c".
Object* Parser::userHeading(std::size_t firstToken) {
    Object* id = identifier(*advance().word);
    Object* direct = emptyList();
    std::vector<Object*> pairs;
    if (accept(Symbol::LeftParen)) {
        std::vector<Object*> parameters;
        while (!at(Symbol::RightParen) && !failed()) {
            parameters.push_back(parameter());
            if (!at(Symbol::RightParen))
                expect(Symbol::Comma);
        }
        expect(Symbol::RightParen);
        direct = list(parameters);
    } else if (accept(Keyword::Of) || accept(Keyword::In)) {
        direct = parameter();
    }
    bool given = false;
    while (!failed() && !atLineEnd()) {
        std::size_t first = mAt;
        std::size_t tokens = 0;
        Object* key = nullptr;
        if (FourCharCode code = preposition(tokens)) {
            skip(tokens);
            key = mStore.code(code);
        } else if (at(Keyword::Given) || (given && at(Symbol::Comma))) {
            given = true;
            advance();
            key = givenLabel();
            expect(Symbol::Colon);
        } else {
            expected(u"end of line");
            break;
        }
        addLabel(pairs, key, parameter(), first);
    }
    return node(NodeKind::Call, {id, direct, labels(pairs)}, 0, firstToken);
}

/// Parses headings such as "on foo:a bar:b".
Object* Parser::interleavedHeading(std::size_t firstToken) {
    Word whole;
    std::u16string spelling;
    std::vector<Object*> parameters;
    while (!failed() && peek().word) {
        const Token& part = advance();
        whole.key += part.word->key + "_";
        spelling += partSpelling(part) + u"_";
        expect(Symbol::Colon);
        parameters.push_back(parameter());
    }
    whole.spelling = mStore.keep(spelling);
    Object* id = identifier(mList->words.emplace_back(whole));
    return node(NodeKind::Call, {id, list(parameters), emptyList()}, 0, firstToken);
}

Object* Parser::scriptObject() {
    std::size_t first = mAt;
    advance();
    Object* named = atLineEnd() ? nil() : name();
    Object* body = block(Body::ScriptObject);
    endOf(Keyword::Script);
    return node(NodeKind::Script, {named, body}, 0, first);
}

Object* Parser::property() {
    std::size_t first = mAt;
    advance();
    Object* named = name();
    expect(Symbol::Colon);
    Object* value = expression();
    return node(NodeKind::Property, {named, value}, 0, first);
}

/// Fails for a handler or property that a script has twice, and for top-level commands beside a run handler.
void Parser::checkDuplicates(const std::vector<Object*>& lines) {
    std::set<std::string_view> handlers, properties;
    bool commands = false;
    const Object* run = nullptr;
    auto rangeOf = [&](const Object* node) { return mMap.find(node).value_or(SourceRange{0, 0}); };
    for (const Object* line : lines) {
        const Object* statement = statementOf(line);
        if (is(statement, NodeKind::Handler)) {
            const Object* name = statement->children[0]->children[0];
            std::string_view key = name->bytes.substr(0, name->kind == ObjectKind::Code ? 8 : std::string_view::npos);
            if (!handlers.insert(key).second)
                fail(OSADuplicateHandler, u"The " + shownName(name) + u" handler is specified more than once.",
                     rangeOf(statement->children[0]));
            if (key == "aevtoapp")
                run = statement->children[0];
        } else if (is(statement, NodeKind::Property)) {
            const Object* name = statement->children[0];
            if (!properties.insert(name->bytes).second)
                fail(OSADuplicateProperty, u"The " + shownName(name) + u" property is specified more than once.", rangeOf(statement));
        } else if (!statement->isNil() && !is(statement, NodeKind::Use) && !is(statement, NodeKind::Global) &&
                   !is(statement, NodeKind::Script) && !is(statement, NodeKind::UsingTerms) && !is(statement, NodeKind::Local)) {
            commands = true;
        }
    }
    if (run && commands)
        fail(kDuplicateRun,
             u"The run handler is specified more than once, or there were top-level commands in addition to the run handler.",
             rangeOf(run));
}

/// Fails for a variable that a handler declares both global and local.
void Parser::checkDeclarations(const Object* body) {
    std::set<std::string_view> globals, locals;
    auto look = [&](const Object* line) {
        const Object* statement = statementOf(line);
        bool global = is(statement, NodeKind::Global);
        if (!global && !is(statement, NodeKind::Local))
            return;
        for (const Object* name : statement->children[0]->children) {
            (global ? globals : locals).insert(name->bytes);
            if ((global ? locals : globals).contains(name->bytes))
                fail(OSAInconsistentDeclarations, u"Can’t declare " + shownName(name) + u" as both a local and global variable.",
                     mMap.find(statement).value_or(SourceRange{}));
        }
    };
    if (!is(body, NodeKind::Block)) {
        look(body);
        return;
    }
    for (const Object* line : body->children[0]->children)
        look(line);
}

} // namespace quoddle::syntax
