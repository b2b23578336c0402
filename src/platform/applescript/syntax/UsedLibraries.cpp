// SPDX-License-Identifier: MIT
#include "platform/applescript/syntax/UsedLibraries.h"

#include "platform/applescript/syntax/NodeKind.h"

namespace quoddle::syntax {

namespace {

const Object* withoutLines(const Object* node) {
    while (node->isNode(tagOf(NodeKind::Line)))
        node = node->children[0];
    return node;
}

/// Empty when the node is no literal text.
std::u16string_view literalText(const Object* node) {
    node = withoutLines(node);
    return node->isNode(tagOf(NodeKind::Literal)) ? node->children[0]->text : std::u16string_view();
}

std::u16string_view versionIn(const Object* options) {
    for (std::size_t i = 0; i + 1 < options->children.size(); i += 2)
        if (options->children[i]->code() == "minv"_4cc)
            return literalText(options->children[i + 1]);
    return {};
}

} // namespace

std::vector<UsedLibrary> usedLibraries(const Object* tree) {
    std::vector<UsedLibrary> libraries;
    const auto add = [&libraries](const Object* line) {
        const Object* statement = withoutLines(line);
        if (!statement->isNode(tagOf(NodeKind::Use)))
            return;
        const Object* target = withoutLines(statement->children[1]);
        if (target->isNode(tagOf(NodeKind::Element)) && target->children[0]->code() == "scpt"_4cc)
            libraries.push_back({statement, literalText(target->children[1]), versionIn(statement->children[2])});
    };
    if (!tree->isNode(tagOf(NodeKind::Block)))
        add(tree);
    else
        for (const Object* line : tree->children[0]->children)
            add(line);
    return libraries;
}

} // namespace quoddle::syntax
