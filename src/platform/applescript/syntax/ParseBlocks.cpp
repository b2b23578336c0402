// SPDX-License-Identifier: MIT
// Lines of statements and the lines' comments.
#include "platform/applescript/syntax/NodeFlags.h"
#include "platform/applescript/syntax/ParserState.h"

#include "platform/base/Text.h"

namespace quoddle::syntax {

namespace {

std::uint16_t commentFlags(CommentKind kind, bool onHeader) {
    switch (kind) {
    case CommentKind::Block:
        return onHeader ? flags::BlockOnHeader : flags::BlockComment;
    case CommentKind::Dashes:
        return onHeader ? flags::DashOnHeader : flags::DashComment;
    case CommentKind::Hash:
        break;
    }
    return onHeader ? flags::HashOnHeader : flags::HashComment;
}

/// Whether a statement belongs to the script and not to its run handler.
bool isDeclaration(const Object* statement) {
    for (NodeKind kind : {NodeKind::Handler, NodeKind::Property, NodeKind::Script, NodeKind::Use, NodeKind::Global, NodeKind::UsingTerms}) {
        if (statement->isNode(tagOf(kind)))
            return true;
    }
    return false;
}

} // namespace

Object* Parser::script() {
    std::vector<Object*> all = lines(Body::Script);
    if (!failed() && peek().kind != TokenKind::End)
        expected(u"end of script");
    checkDuplicates(all);
    if (failed() || all.empty())
        return nil();
    if (all.size() > 1)
        return asBody(all);
    return is(all[0], NodeKind::Line) ? all[0] : wrap(all[0], flags::NoComment, 0);
}

Object* Parser::asBody(const std::vector<Object*>& all) {
    if (all.empty())
        return nil();
    return all.size() == 1 ? all[0] : node(NodeKind::Block, {list(all)}, 0, mAt ? mAt - 1 : 0);
}

Object* Parser::block(Body body) {
    Depth depth(*this);
    std::size_t first = mAt;
    Brackets brackets(*this);
    ScopedFlag level(mAtScriptLevel, body != Body::Statements);
    // The Line of a comment behind a block's header holds the whole body.
    const Token* comment = peek().kind == TokenKind::Comment ? &advance() : nullptr;
    if (!atLineEnd())
        expected(u"end of line");
    if (peek().kind == TokenKind::Newline)
        advance();
    ++mBlocks;
    std::vector<Object*> all = lines(body);
    --mBlocks;
    if (body != Body::Statements)
        checkDuplicates(all);
    if (body == Body::ScriptObject && all.size() == 1 && is(all[0], NodeKind::Line) && all[0]->flags == flags::NoComment &&
        !all[0]->children[0]->isNil())
        all[0] = all[0]->children[0];
    Object* made = all.size() > 1 ? node(NodeKind::Block, {list(all)}, 0, first) : all.empty() ? nil() : all[0];
    return comment ? commentLine(made, *comment, true) : made;
}

bool Parser::atBlockEnd() const {
    return at(Keyword::Else) || (at(Keyword::On) && at(Keyword::Error, 1) && !mAtScriptLevel) ||
           (at(Keyword::End) && !at(Keyword::Of, 1) && !at(Keyword::In, 1) &&
            matchTerm({TermKind::Event, TermKind::Property, TermKind::Constant}).words < 2);
}

/// Reads all lines up to the end of the block or of the script.
std::vector<Object*> Parser::lines(Body body) {
    std::vector<Object*> all;
    while (!failed() && peek().kind != TokenKind::End) {
        if (atBlockEnd() && !(body == Body::Script && at(Keyword::End) && atLineEnd(1)))
            break;
        line(all, body);
    }
    // A source that ends with a line end has an empty last line.
    if (body == Body::Script && !failed() && mAt > 0 && mTokens[mAt - 1].kind == TokenKind::Newline)
        all.push_back(wrap(nil(), flags::NoComment, mAt));
    return all;
}

void Parser::line(std::vector<Object*>& all, Body body) {
    std::size_t first = mAt;
    if (peek().kind == TokenKind::Newline) {
        advance();
        all.push_back(wrap(nil(), flags::NoComment, first));
        return;
    }
    if (peek().kind == TokenKind::Comment) {
        all.push_back(commentLine(nil(), advance(), false));
    } else {
        Object* made = statement();
        if (failed())
            return;
        if (peek().kind == TokenKind::Comment)
            made = commentLine(made, advance(), false);
        else if (body != Body::Statements && !is(made, NodeKind::Line) && !isDeclaration(made))
            made = wrap(made, flags::NoComment, first);
        all.push_back(made);
    }
    if (peek().kind == TokenKind::Newline)
        advance();
    else if (!atLineEnd())
        expected(u"end of line");
}

Object* Parser::commentLine(Object* statement, const Token& comment, bool onHeader) {
    std::size_t first = mAt ? mAt - 1 : 0;
    Object *old = nil(), *text = nil();
    if (!comment.text.empty()) {
        // Old readers want the comment in Mac Roman beside the new form.
        old = mStore.text(utf16FromMacRoman(macRomanFromUTF16(comment.text)));
        old->flags = flags::OldText;
        text = mStore.text(comment.text);
    }
    return node(NodeKind::Line, {statement, old, text}, commentFlags(comment.comment, onHeader), first);
}

/// Reads `end` and, if it stands there, the word for the block that ends.
void Parser::endOf(Keyword keyword, Keyword other) {
    if (!accept(Keyword::End)) {
        expected(u"“end”");
        return;
    }
    if (!accept(keyword) && !atLineEnd() && !(other != Keyword::None && accept(other)))
        expected(u"“" + utf16FromUTF8(spellingOf(keyword)) + u"”");
}

} // namespace quoddle::syntax
