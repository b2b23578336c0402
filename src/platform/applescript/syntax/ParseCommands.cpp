// SPDX-License-Identifier: MIT
// Commands with their direct and labelled parameters.
#include "platform/applescript/syntax/NodeFlags.h"
#include "platform/applescript/syntax/ParserState.h"

#include "platform/base/Text.h"

#include <algorithm>

namespace quoddle::syntax {

namespace {

constexpr std::uint32_t kEnumerated = 0x2000;

} // namespace

/// Parses the parameters of a command, whose name has been read.
Object* Parser::command(Object* event, const EventTerm* term, std::size_t firstToken) {
    Depth depth(*this);
    std::uint16_t form = flags::Command;
    Object* direct = nil();
    mActive.push_back(term);
    ScopedFlag labelsAllowed(mUserLabels, false);
    std::size_t words = 0;
    if (at(Keyword::Of) && !labelAt(term, 0, words)) {
        form = flags::OfForm;
        advance();
        direct = reference();
    } else if (!labelAt(term, 0, words) && startsOperand()) {
        mConstantsFirst = term && (term->directFlags & kEnumerated);
        // `exists x and y` is (exists x) and y.
        direct = expression(event->code(1) == "doex"_4cc ? Level::As : Level::Or);
        mConstantsFirst = false;
    }
    Object* labels = commandLabels(term);
    if (direct->isNil() && at(Keyword::Of) && !atActiveLabel()) { // as in "count each word of x"
        form = flags::OfForm;
        advance();
        direct = reference();
    }
    mActive.pop_back();
    return node(NodeKind::Call, {event, direct, labels}, form, firstToken);
}

Object* Parser::commandLabels(const EventTerm* term) {
    std::vector<Object*> pairs;
    while (!failed() && (commandLabel(term, pairs) || switches(term, pairs) || given(pairs))) {
    }
    return labels(pairs);
}

/// The parameter whose label stands `ahead`, null when none does. The longest label wins.
const ParameterTerm* Parser::labelAt(const EventTerm* term, std::size_t ahead, std::size_t& words) const {
    const ParameterTerm* found = nullptr;
    words = 0;
    if (!term || peek(ahead).kind != TokenKind::Word || term->parameters.empty())
        return nullptr;
    std::span<const std::string_view> here = wordsAhead(ahead);
    for (const ParameterTerm& parameter : term->parameters) {
        if (std::size_t taken = wordsOfTerm(parameter.words, here); taken > words) {
            words = taken;
            found = &parameter;
        }
    }
    return found;
}

bool Parser::atActiveLabel(std::size_t ahead) const {
    if (mActive.empty() || peek(ahead).kind != TokenKind::Word)
        return false;
    std::size_t words = 0;
    return std::ranges::any_of(mActive, [&](const EventTerm* term) { return labelAt(term, ahead, words) != nullptr; });
}

bool Parser::commandLabel(const EventTerm* term, std::vector<Object*>& pairs) {
    std::size_t words = 0;
    const ParameterTerm* parameter = labelAt(term, 0, words);
    if (!parameter)
        return false;
    std::size_t first = mAt;
    skip(words);
    mConstantsFirst = false;
    std::size_t valueToken = mAt;
    Object* value = parameter->type == "type"_4cc ? typeName() : expression();
    while (parameter->type == "type"_4cc && at(Keyword::In) && atContainer() && !failed())
        value = contained(value, valueToken);
    addLabel(pairs, mStore.code(parameter->code), value, first);
    return true;
}

/// Parses "with a, b and c" or "without d".
bool Parser::switches(const EventTerm* term, std::vector<Object*>& pairs) {
    bool with = at(Keyword::With);
    if (!with && !at(Keyword::Without))
        return false;
    std::size_t words = 0;
    bool user = peek(1).kind == TokenKind::BarredWord || (peek(1).kind == TokenKind::Word && !isReserved(peek(1).keyword));
    if (!labelAt(term, 1, words) && !(user && !matchTerm({TermKind::Event}, 1)) && peek(1).kind != TokenKind::RawCode)
        return false;
    do {
        advance();
        std::size_t first = mAt;
        const ParameterTerm* parameter = labelAt(term, 0, words);
        Object* key = nullptr;
        if (parameter) {
            skip(words);
            key = mStore.code(parameter->code);
        } else {
            key = givenLabel();
        }
        Object* value = literal(mStore.constant("boov"_4cc, with ? "true"_4cc : "fals"_4cc), first);
        addLabel(pairs, key, value, first);
    } while (!failed() && (at(Symbol::Comma) || (at(Keyword::And) && !at(Keyword::With, 1) && !at(Keyword::Without, 1))));
    return true;
}

/// Parses "given label:value, label:value".
bool Parser::given(std::vector<Object*>& pairs) {
    if (!at(Keyword::Given))
        return false;
    do {
        advance();
        std::size_t first = mAt;
        Object* key = givenLabel();
        expect(Symbol::Colon);
        Object* value = expression();
        addLabel(pairs, key, value, first);
    } while (!failed() && at(Symbol::Comma));
    return true;
}

/// Parses a label behind "given": an identifier or a code.
Object* Parser::givenLabel() {
    const Token& token = peek();
    if (TermMatch match = matchTerm({TermKind::Property, TermKind::Class})) {
        skip(match.words);
        return codeOf(*match.term);
    }
    if (token.kind == TokenKind::RawCode && token.text.find(' ') != std::u16string_view::npos) {
        advance();
        return mStore.code(fourCharCode(macRomanFromUTF16(token.text.substr(token.text.find(' ') + 1))));
    }
    if (token.word && !isReserved(token.keyword)) {
        advance();
        return identifier(*token.word);
    }
    return expected(u"parameter name");
}

void Parser::addLabel(std::vector<Object*>& pairs, Object* key, Object* value, std::size_t firstToken) {
    for (std::size_t i = 0; i < pairs.size() && !failed(); i += 2) {
        if (pairs[i]->kind == key->kind && pairs[i]->bytes == key->bytes && !key->isNil()) {
            std::u16string label(mTokens[firstToken].word ? utf16FromUTF8(mTokens[firstToken].word->key) : std::u16string());
            fail(OSADuplicateParameter, u"The " + label + u" parameter is specified more than once.", mTokens[firstToken]);
        }
    }
    pairs.push_back(key);
    pairs.push_back(value);
}

} // namespace quoddle::syntax
