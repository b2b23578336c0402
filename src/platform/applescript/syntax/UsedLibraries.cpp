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

/// Calls `visit` with each `use` statement of a script.
template<class Visit>
void forEachUse(const Object* tree, Visit visit) {
    const auto look = [&visit](const Object* line) {
        if (const Object* statement = withoutLines(line); statement->isNode(tagOf(NodeKind::Use)))
            visit(statement, withoutLines(statement->children[1]));
    };
    if (!tree->isNode(tagOf(NodeKind::Block)))
        look(tree);
    else
        for (const Object* line : tree->children[0]->children)
            look(line);
}

} // namespace

std::vector<UsedLibrary> usedLibraries(const Object* tree) {
    std::vector<UsedLibrary> libraries;
    forEachUse(tree, [&libraries](const Object* statement, const Object* target) {
        if (target->isNode(tagOf(NodeKind::Element)) && target->children[0]->code() == "scpt"_4cc)
            libraries.push_back({statement, literalText(target->children[1]), versionIn(statement->children[2])});
    });
    return libraries;
}

std::vector<UsedLibrary> usedLanguages(const Object* tree) {
    std::vector<UsedLibrary> languages;
    forEachUse(tree, [&languages](const Object* statement, const Object* target) {
        const bool isTerm = target->isNode(tagOf(NodeKind::Term)) || target->isNode(tagOf(NodeKind::Literal));
        if (const auto version = versionIn(statement->children[2]); isTerm && target->children[0]->code() == "ascr"_4cc && !version.empty())
            languages.push_back({statement, {}, version});
    });
    return languages;
}

} // namespace quoddle::syntax
