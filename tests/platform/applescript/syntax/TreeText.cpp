// SPDX-License-Identifier: MIT
#include "platform/applescript/syntax/TreeText.h"

#include "platform/applescript/syntax/ApplicationLiteral.h"
#include "platform/applescript/syntax/NodeKind.h"
#include "platform/base/Text.h"

#include <sstream>

namespace quoddle::syntax {

namespace {

const char* nodeName(std::uint8_t tag) {
    switch (static_cast<NodeKind>(tag)) {
#define QUODDLE_NAME(name, number)                                                                                                         \
    case NodeKind::name:                                                                                                                   \
        return #name;
        QUODDLE_NODE_KINDS(QUODDLE_NAME)
#undef QUODDLE_NAME
    }
    return "?";
}

std::string codeText(const Object* code) {
    std::string text = utf8FromUTF16(utf16FromMacRoman(code->bytes.substr(0, 8)));
    return code->isCode(CodeTag::Class) ? text : text.substr(0, 4) + "/" + text.substr(4);
}

std::string leafText(const Object* object) {
    std::ostringstream out;
    switch (object->kind) {
    case ObjectKind::Nil:
        return "nil";
    case ObjectKind::Boolean:
        return object->boolean ? "true" : "false";
    case ObjectKind::Integer:
        out << object->integer;
        return out.str();
    case ObjectKind::Real:
        out.precision(17);
        out << object->real << 'r';
        return out.str();
    case ObjectKind::Code:
        return codeText(object);
    case ObjectKind::Identifier:
        return "'" + std::string(object->spelledName()) + "'";
    case ObjectKind::Text:
        return '"' + utf8FromUTF16(object->text) + '"';
    case ObjectKind::Data:
        if (object->tag == kApplicationTag)
            return "application:" + utf8FromUTF16(applicationName(object->bytes));
        return "data:" + std::string(object->bytes.substr(0, 4));
    default:
        return "?";
    }
}

std::string listText(const char* open, std::span<Object* const> children, const char* close) {
    std::string text = open;
    for (std::size_t i = 0; i < children.size(); ++i)
        text += (i ? " " : "") + treeText(children[i]);
    return text + close;
}

} // namespace

std::string treeText(const Object* tree) {
    switch (tree->kind) {
    case ObjectKind::List:
        return listText("[", tree->children, "]");
    case ObjectKind::Record:
        return listText("<", tree->children, ">");
    case ObjectKind::Block:
        return listText(("{" + std::to_string(tree->tag) + " ").c_str(), tree->children, "}");
    case ObjectKind::Node:
        break;
    default:
        return leafText(tree);
    }
    if (tree->flags == 0 && tree->children.size() == 1) {
        const Object* child = tree->children[0];
        if (tree->isNode(tagOf(NodeKind::Variable)))
            return "$" + (child->kind == ObjectKind::Identifier ? std::string(child->spelledName()) : codeText(child));
        if (tree->isNode(tagOf(NodeKind::Term)))
            return "." + treeText(child);
        if (tree->isNode(tagOf(NodeKind::Literal)))
            return child->kind == ObjectKind::Code ? "`" + codeText(child) + "`" : treeText(child);
    }
    std::ostringstream head;
    head << '(' << nodeName(tree->tag);
    if (tree->flags)
        head << '#' << std::hex << tree->flags;
    return head.str() + (tree->children.empty() ? "" : " ") + listText("", tree->children, ")");
}

} // namespace quoddle::syntax
