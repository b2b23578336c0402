// SPDX-License-Identifier: MIT
// The parser's error messages, in the forms that scripters know.
#include "platform/applescript/syntax/ParserState.h"

#include "platform/base/Text.h"

namespace quoddle::syntax {

Object* Parser::fail(OSStatus number, std::u16string message, SourceRange range) {
    if (!failed()) {
        mError = {number, std::move(message), range.start, range.end};
        const bool atWord = peek().word || (mAt > 0 && mTokens[mAt - 1].word);
        if (atWord && mTerms.lacksDictionary())
            mError.withoutDictionary = mTargets.back();
        else if (atWord && mLeftTarget.first == mAt && !mLeftTarget.second.text.empty())
            mError.withoutDictionary = mLeftTarget.second;
        mAt = mTokens.size() - 1;
    }
    return nil();
}

Object* Parser::fail(OSStatus number, std::u16string message, const Token& token) {
    return fail(number, std::move(message), SourceRange{token.start, token.end});
}

Object* Parser::tooComplex(std::u16string_view bound) {
    return fail(errOSAInternalTableOverflow, std::u16string(bound), peek());
}

/// The words by which messages name the token `ahead`.
std::u16string Parser::describe(std::size_t ahead) const {
    const Token& token = peek(ahead);
    auto inQuotes = [](std::u16string_view text) { return u"“" + std::u16string(text) + u"”"; };
    switch (token.kind) {
    case TokenKind::End:
        return u"end of script";
    case TokenKind::Newline:
    case TokenKind::Comment:
        return u"end of line";
    case TokenKind::Integer:
    case TokenKind::Real:
    case TokenKind::Ordinal:
        return u"number";
    case TokenKind::Text:
        return inQuotes(u"\"");
    case TokenKind::BarredWord:
        return u"identifier";
    case TokenKind::PossessiveS:
        return inQuotes(u"'s");
    case TokenKind::RawCode:
        return u"class name";
    case TokenKind::Bad:
        return u"unknown token";
    case TokenKind::Symbol: {
        static constexpr std::u16string_view kSpellings[] = {u"",  u"(", u")", u"{", u"}", u"[", u"]", u",", u":", u"+", u"-",
                                                             u"*", u"/", u"^", u"&", u"=", u"≠", u"<", u"≤", u">", u"≥"};
        return inQuotes(kSpellings[static_cast<std::size_t>(token.symbol)]);
    }
    case TokenKind::Word:
        break;
    }
    TermMatch match = matchTerm({TermKind::Event, TermKind::Property, TermKind::Class, TermKind::Plural, TermKind::Constant}, ahead);
    if (isReserved(token.keyword) && match.words < 2)
        return inQuotes(utf16FromUTF8(spellingOf(token.keyword)));
    if (!match)
        return u"identifier";
    switch (match.term->kind) {
    case TermKind::Class:
        return u"class name";
    case TermKind::Plural:
        return u"plural class name";
    case TermKind::Property:
        return u"property";
    case TermKind::Event:
        return u"command name";
    case TermKind::Constant:
        return u"application constant or consideration";
    }
    return u"identifier";
}

/// Whether a token is a value by itself. Two such tokens in a row are never right.
bool Parser::isValueToken(const Token& token) const {
    switch (token.kind) {
    case TokenKind::Word:
        return !isReserved(token.keyword);
    case TokenKind::BarredWord:
    case TokenKind::Integer:
    case TokenKind::Real:
    case TokenKind::Text:
        return true;
    default:
        return false;
    }
}

Object* Parser::expected(std::u16string_view what) {
    if (failed())
        return nil();
    const Token& found = peek();
    if (found.kind == TokenKind::Bad && !found.text.empty()) {
        const bool isUnended = found.end == mTokens.back().start; // a text or a comment without its closing mark goes on to the end
        fail(OSASyntaxTypeError,
             u"Expected " + std::u16string(found.text) + u" but found " + (isUnended ? u"end of script." : u"unknown token."),
             SourceRange{isUnended ? found.end : found.start, found.end});
        if (isUnended)
            mError.openBlocks = 0;
        return nil();
    }
    const bool isAtEnd = found.kind == TokenKind::End;
    // A name with a literal behind it is most likely a command that no dictionary has.
    if (mAt > 0 && isValueToken(found) && isValueToken(mTokens[mAt - 1])) {
        bool afterName = mTokens[mAt - 1].word != nullptr;
        if (!afterName || found.word) {
            const Token& before = mTokens[mAt - 1];
            std::u16string previous = before.kind == TokenKind::Text ? u"“\"”" : before.word ? u"identifier" : u"number";
            return fail(OSASyntaxError, u"A " + describe(0) + u" can’t go after this " + previous + u".",
                        SourceRange{before.start, found.end});
        }
    }
    fail(OSASyntaxTypeError, u"Expected " + std::u16string(what) + u" but found " + describe(0) + u".", found);
    if (isAtEnd)
        mError.openBlocks = mBlocks + 1; // what waits for its end is no longer among those that are read
    return nil();
}

void Parser::expect(Keyword keyword) {
    if (!accept(keyword))
        expected(u"“" + utf16FromUTF8(spellingOf(keyword)) + u"”");
}

void Parser::expect(Symbol symbol) {
    static constexpr std::u16string_view kSpellings[] = {u"", u"(", u")", u"{", u"}", u"[", u"]", u",", u":"};
    if (!accept(symbol))
        expected(u"“" + std::u16string(kSpellings[static_cast<std::size_t>(symbol)]) + u"”");
}

} // namespace quoddle::syntax
