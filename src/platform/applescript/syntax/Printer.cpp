// SPDX-License-Identifier: MIT
#include "platform/applescript/syntax/Printer.h"

#include "platform/applescript/syntax/NodeKind.h"
#include "platform/applescript/syntax/PrinterState.h"

#include "platform/base/Text.h"

#include <algorithm>

namespace quoddle::syntax {

namespace {

/// Whether a line of the script is `use scripting additions`.
bool namesAdditions(const Object* tree) {
    auto names = [](const Object* line) {
        if (line->isNode(tagOf(NodeKind::Line)))
            line = line->children[0];
        const Object* target = line->isNode(tagOf(NodeKind::Use)) ? line->children[1] : nullptr;
        return target && target->isNode(tagOf(NodeKind::Every)) && target->children[0]->code() == "osax"_4cc;
    };
    return tree->isNode(tagOf(NodeKind::Block)) ? std::ranges::any_of(tree->children[0]->children, names) : names(tree);
}

} // namespace

Printer::Printer(const Object* tree, const PrintOptions& options) : mOptions(options), mUsesAdditions(namesAdditions(tree)) {}

std::u16string Printer::print(const Object* tree) {
    lines(tree);
    if (mText.ends_with(u'\n')) {
        mText.pop_back();
        if (mOptions.runs && --mOptions.runs->back().length == 0)
            mOptions.runs->pop_back();
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

void Printer::notePlace(const Object* node, std::size_t start) {
    if (mOptions.sourceMap)
        mOptions.sourceMap->add(node, {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(mText.size())});
}

std::u16string printTree(const Object* tree, const PrintOptions& options) {
    if (!isWellFormed(tree))
        return {};
    return Printer(tree, options).print(tree);
}

} // namespace quoddle::syntax
