// SPDX-License-Identifier: MIT
#include "platform/applescript/syntax/PrinterState.h"

#include "platform/base/Text.h"

#include <algorithm>

namespace quoddle {

namespace {

/// A script that says what it uses does without the Standard Additions unless it names them.
bool usesAdditions(const Object* tree) {
    std::span<Object* const> lines(const_cast<Object* const*>(reinterpret_cast<const Object* const*>(&tree)), 1);
    if (tree->isNode(tagOf(NodeKind::Block)))
        lines = tree->children[0]->children;
    bool uses = false;
    for (const Object* line : lines) {
        if (line->isNode(tagOf(NodeKind::Line)))
            line = line->children[0];
        if (!line->isNode(tagOf(NodeKind::Use)))
            continue;
        uses = true;
        const Object* target = line->children[1];
        if (target->isNode(tagOf(NodeKind::Every)) && target->children[0]->code() == "osax"_4cc)
            return true;
    }
    return !uses;
}

} // namespace

Printer::Printer(const Object* tree, const PrintOptions& options) : mOptions(options), mTerms(usesAdditions(tree)) {}

std::u16string Printer::print(const Object* tree) {
    lines(tree);
    if (mText.ends_with(u'\n'))
        mText.pop_back();
    if (mOptions.runs && !mOptions.runs->empty()) {
        PrintedRun& last = mOptions.runs->back();
        last.length = mText.size() - std::min(last.start, mText.size());
    }
    return std::move(mText);
}

void Printer::put(Kind kind, std::u16string_view text) {
    if (text.empty())
        return;
    if (mOptions.runs) {
        auto& runs = *mOptions.runs;
        if (runs.empty() || runs.back().kind != kind)
            runs.push_back({mText.size(), 0, kind});
        runs.back().length += text.size();
    }
    mText += text;
}

void Printer::put(Kind kind, std::string_view utf8) {
    put(kind, std::u16string_view(utf16FromUTF8(utf8)));
}

void Printer::blank() {
    if (!mText.empty() && mText.back() != u' ' && mText.back() != u'\n' && mText.back() != u'\t')
        put(Kind::Plain, u" ");
}

void Printer::newline() {
    put(Kind::Plain, u"\n");
}

void Printer::lineBreak() {
    blank();
    put(Kind::Plain, u"¬\n");
    put(Kind::Plain, std::u16string(mIndent + 1, u'\t'));
}

std::u16string printTree(const Object* tree, const PrintOptions& options) {
    return Printer(tree, options).print(tree);
}

} // namespace quoddle
