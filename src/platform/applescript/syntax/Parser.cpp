// SPDX-License-Identifier: MIT
#include "platform/applescript/syntax/Parser.h"

#include "platform/applescript/syntax/ParserState.h"

#include "platform/base/Text.h"

#include <algorithm>

namespace quoddle::syntax {

namespace {

constexpr std::size_t kMaxDepth = 500; // nesting of the parser's functions: about 100 nested brackets or 160 nested blocks
constexpr std::size_t kMaxTermWords = 6;

/// Moves comments in the midst of a line to its end, because no node could keep them there. A comment of several lines that other text
/// follows on its last line gets a line of its own.
void moveCommentsToLineEnds(std::vector<Token>& tokens) {
    std::vector<Token> settled;
    settled.reserve(tokens.size());
    std::vector<Token> held;
    bool lineHasText = false;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        Token& token = tokens[i];
        bool endsLine = token.kind == TokenKind::Newline || token.kind == TokenKind::End;
        if (endsLine) {
            settled.insert(settled.end(), held.begin(), held.end());
            held.clear();
            lineHasText = false;
        }
        if (token.kind == TokenKind::Comment && token.comment == CommentKind::Block && tokens[i + 1].kind != TokenKind::Newline &&
            tokens[i + 1].kind != TokenKind::End && tokens[i + 1].kind != TokenKind::Comment) {
            tokens[i + 1].afterBreak |= token.afterBreak;
            if (lineHasText) {
                held.push_back(token);
                continue;
            }
            settled.push_back(token);
            Token newline;
            newline.kind = TokenKind::Newline;
            newline.start = newline.end = token.end;
            settled.push_back(newline);
            continue;
        }
        lineHasText |= !endsLine && token.kind != TokenKind::Comment;
        settled.push_back(token);
    }
    tokens = std::move(settled);
}

/// Whether a line of the script is `use scripting additions`.
bool namesAdditions(const std::vector<Token>& tokens) {
    bool lineStart = true;
    for (std::size_t i = 0; i + 2 < tokens.size(); ++i) {
        if (lineStart && tokens[i].keyword == Keyword::Use && tokens[i + 1].word && tokens[i + 1].word->key == "scripting" &&
            tokens[i + 2].word && tokens[i + 2].word->key == "additions")
            return true;
        lineStart = tokens[i].kind == TokenKind::Newline;
    }
    return false;
}

std::unique_ptr<TokenList> settledTokens(std::u16string_view source) {
    auto list = tokenize(source);
    moveCommentsToLineEnds(list->tokens);
    return list;
}

} // namespace

std::optional<SourceRange> SourceMap::find(const Object* node) const {
    if (mSorted != mRanges.size()) {
        std::ranges::sort(mRanges, {}, [](const auto& entry) { return entry.first; });
        mSorted = mRanges.size();
    }
    auto at = std::ranges::lower_bound(mRanges, node, {}, [](const auto& entry) { return entry.first; });
    if (at == mRanges.end() || at->first != node)
        return std::nullopt;
    return at->second;
}

Parser::Parser(std::u16string_view source, ObjectStore& store, const ParseOptions& options)
    : mSource(source), mStore(store), mOptions(options), mMap(options.sourceMap ? *options.sourceMap : mOwnMap),
      mList(settledTokens(source)), mTokens(mList->tokens), mUsesAdditions(namesAdditions(mTokens)) {
    findHandlerNames();
}

Parser::Depth::Depth(Parser& owner) : parser(owner) {
    if (++parser.mDepth > kMaxDepth && !parser.failed())
        parser.tooComplex(u"The script is nested too deeply here: it can have about 100 brackets or 160 blocks in one another.");
}

const Token& Parser::advance() {
    const Token& token = mTokens[mAt];
    if (token.afterBreak) {
        mPendingBreak = true;
        mTokens[mAt].afterBreak = false;
    }
    if (mAt + 1 < mTokens.size())
        ++mAt;
    return token;
}

bool Parser::accept(Keyword keyword) {
    if (!at(keyword))
        return false;
    advance();
    return true;
}

bool Parser::accept(Symbol symbol) {
    if (!at(symbol))
        return false;
    advance();
    return true;
}

bool Parser::atWord(std::string_view key, std::size_t ahead) const {
    const Token& token = peek(ahead);
    return token.kind == TokenKind::Word && token.word->key == key;
}

bool Parser::atLineEnd(std::size_t ahead) const {
    TokenKind kind = peek(ahead).kind;
    return kind == TokenKind::Newline || kind == TokenKind::End || kind == TokenKind::Comment;
}

std::span<const std::string_view> Parser::wordsAhead(std::size_t ahead) const {
    mWords.clear();
    for (std::size_t i = 0; i < kMaxTermWords; ++i) {
        const Token& token = peek(ahead + i);
        if (token.kind != TokenKind::Word)
            break;
        mWords.push_back(token.word->key);
    }
    return mWords;
}

TermMatch Parser::matchTerm(Terminology::Kinds kinds, std::size_t ahead) const {
    if (peek(ahead).kind != TokenKind::Word || !mTerms.mayStartTerm(peek(ahead).word->key))
        return {};
    return mTerms.match(wordsAhead(ahead), kinds);
}

Object* Parser::node(NodeKind kind, std::span<Object* const> children, std::uint16_t flags, std::size_t firstToken) {
    Object* made = mStore.node(tagOf(kind), children, flags);
    std::size_t last = std::max(mAt, firstToken + 1) - 1;
    mMap.add(made, {mTokens[firstToken].start, std::max(mTokens[last].end, mTokens[firstToken].start)});
    return made;
}

Object* Parser::labels(const std::vector<Object*>& keysAndValues) {
    return keysAndValues.empty() ? emptyList() : mStore.record(keysAndValues);
}

Object* Parser::identifier(const Word& word) {
    auto [at, isNew] = mIdentifiers.try_emplace(word.key, nullptr);
    if (isNew) {
        // The first spelling serves the whole script. A key with capitals was written in bars and is its own spelling.
        std::string spelling = utf8FromUTF16(word.spelling);
        bool caseMatters = word.barred && spelling == word.key;
        at->second = mStore.identifier(word.key, caseMatters ? std::string_view() : std::string_view(spelling));
    }
    return at->second;
}

Object* Parser::codeOf(const Term& term) {
    return term.kind == TermKind::Constant ? mStore.constant(term.group, term.code) : mStore.code(term.code);
}

Object* Parser::eventCode(FourCharCode eventClass, FourCharCode eventID, const EventTerm* event) {
    static constexpr EventTerm kUnknown{"****"_4cc, 0, 0x9000, "****"_4cc, {}};
    const EventTerm& parts = event ? *event : kUnknown;
    std::string bytes;
    for (std::uint32_t part : {eventClass, eventID, parts.replyType, parts.replyFlags, parts.directFlags, parts.directType})
        bytes += bytesOf(part);
    return mStore.event(bytes);
}

Result<Object*, ParseError> parse(std::u16string_view source, ObjectStore& store, const ParseOptions& options) {
    Parser parser(source, store, options);
    Object* tree = parser.script();
    if (parser.error().number != noErr)
        return Failure{parser.error()};
    return tree;
}

} // namespace quoddle::syntax
