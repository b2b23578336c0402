// SPDX-License-Identifier: MIT
#include "StatementLines.h"

#include "platform/applescript/component/ApplicationDictionaries.h"
#include "platform/applescript/syntax/Lexer.h"
#include "platform/applescript/syntax/Parser.h"
#include "platform/base/Text.h"

namespace quoddle::tool {

namespace {

/// Whether the last line ends with the mark that makes it go on.
bool endsWithContinuation(std::u16string_view lines) {
    const std::u16string text = std::u16string(lines) + u"next";
    const auto list = syntax::tokenize(text);
    const syntax::Token& next = list->tokens[list->tokens.size() - 2];
    return next.kind == syntax::TokenKind::Word && next.afterBreak;
}

std::optional<syntax::ParseError> faultIn(std::u16string_view lines) {
    ObjectStore store;
    syntax::ParseOptions options;
    options.applicationTerms = component::termsOfApplication;
    const auto tree = syntax::parse(lines, store, options);
    return tree ? std::nullopt : std::optional(tree.error());
}

} // namespace

bool StatementLines::add(const std::string& line) {
    mText += (mText.empty() ? "" : "\n") + line;
    const std::u16string added = utf16FromUTF8(line) + u"\n";
    mRead += added;
    const bool mayEndText = added.find(u'"') != added.npos || added.find(u"*)") != added.npos;
    if (mIsTextOpen && !mayEndText)
        return false;
    if (endsWithContinuation(mIsTextOpen ? mRead : added)) {
        mIsTextOpen = false;
        return false;
    }
    auto fault = faultIn(mRead);
    if (fault && !fault->openBlocks && mIsShortened) {
        // The lines that were left out may tell the parser something, such as that a word names a handler.
        mRead = utf16FromUTF8(mText) + u"\n";
        mMayShorten = mIsShortened = false;
        fault = faultIn(mRead);
    }
    if (!fault || !fault->openBlocks)
        return true;
    mIsTextOpen = *fault->openBlocks == 0;
    if (!mIsTextOpen && mMayShorten)
        shorten(*fault->openBlocks);
    return false;
}

/// Leaves out what is whole: the last lines, when they opened no block, with the lines of the blocks that they ended.
void StatementLines::shorten(std::size_t openBlocks) {
    if (openBlocks <= mBlocks.size()) {
        mRead.resize(openBlocks == mBlocks.size() ? mSettled : mBlocks[openBlocks]);
        mIsShortened = true;
    }
    mBlocks.resize(openBlocks, mSettled);
    mSettled = mRead.size();
}

} // namespace quoddle::tool
