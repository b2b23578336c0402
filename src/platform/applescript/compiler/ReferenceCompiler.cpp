// SPDX-License-Identifier: MIT
// References: properties, elements, ranges and filters. The code of a part finds its container on the stack and leaves a specifier.
#include "platform/applescript/compiler/HandlerCompiler.h"

#include "platform/applescript/image/Block.h"

namespace quoddle::compiler {

using namespace syntax;

bool HandlerCompiler::isReference(const Object* wrapped) const {
    const Object* node = unwrapped(wrapped);
    if (node->kind != ObjectKind::Node)
        return false;
    switch (static_cast<NodeKind>(node->tag)) {
    case NodeKind::Literal:
        return node->children[0]->isBlock(block::Property);
    case NodeKind::Of:
        return !unwrapped(node->children[0])->isNode(tagOf(NodeKind::Call));
    case NodeKind::Term:
    case NodeKind::Every:
    case NodeKind::Some:
    case NodeKind::Element:
    case NodeKind::ElementByKey:
    case NodeKind::Filter:
    case NodeKind::Range:
    case NodeKind::Before:
    case NodeKind::After:
    case NodeKind::Beginning:
    case NodeKind::End:
    case NodeKind::Middle:
        return true;
    default:
        return false;
    }
}

void HandlerCompiler::valueOf(Object* node) {
    expression(node);
    if (isReference(node))
        mCode.emit(Opcode::GetData);
}

void HandlerCompiler::part(Object* node) {
    if (failed())
        return;
    const std::size_t start = mCode.size();
    auto children = node->children;
    switch (static_cast<NodeKind>(node->tag)) {
    case NodeKind::Line:
        part(children[0]);
        break;
    case NodeKind::Of:
        withContainer(node);
        break;
    case NodeKind::Call:
        call(node, Target::OnStack);
        break;
    case NodeKind::Variable:
    case NodeKind::Term:
    case NodeKind::Literal:
        mCode.pushLiteral(children[0]);
        // The class "text" is its own plural: "text of x" asks for all text of x.
        mCode.emit(node->isNode(tagOf(NodeKind::Literal)) && children[0]->code() == "ctxt"_4cc ? Opcode::MakeEvery : Opcode::MakeProperty);
        break;
    case NodeKind::Every:
        mCode.pushLiteral(children[0]);
        mCode.emit(Opcode::MakeEvery);
        break;
    case NodeKind::Some:
        mCode.pushLiteral(children[0]);
        mCode.emit(Opcode::MakeSome);
        break;
    case NodeKind::Element:
        mCode.pushLiteral(children[0]);
        valueOf(children[1]);
        mCode.emit(Opcode::MakeElement);
        break;
    case NodeKind::ElementByKey:
        mCode.pushLiteral(children[0]);
        expression(children[1]);
        expression(children[2]);
        mCode.emit(Opcode::MakeElementByKey);
        break;
    case NodeKind::Filter:
        filter(node);
        break;
    case NodeKind::Range:
        range(node);
        break;
    case NodeKind::List:
    case NodeKind::LinkedList:
        listPart(node);
        break;
    case NodeKind::Before:
        mCode.pushLiteral(children[0]);
        mCode.emit(Opcode::MakeBefore);
        break;
    case NodeKind::After:
        mCode.pushLiteral(children[0]);
        mCode.emit(Opcode::MakeAfter);
        break;
    case NodeKind::Beginning:
        mCode.emit(Opcode::MakeBeginning);
        break;
    case NodeKind::End:
        mCode.emit(Opcode::MakeEnd);
        break;
    case NodeKind::Middle:
        mCode.pushLiteral(children[0]);
        mCode.emit(Opcode::MakeMiddle);
        break;
    default:
        return fail(OSASyntaxError, u"Expected a reference.", node);
    }
    node->start = static_cast<std::uint32_t>(start);
    node->end = static_cast<std::uint32_t>(mCode.size());
}

/// Compiles what follows "my". In "my f() of x" a variable x of the script is its property, found through `my`.
void HandlerCompiler::partOfMe(Object* node) {
    Object* end = node;
    std::vector<Object*> parts;
    while (unwrapped(end)->isNode(tagOf(NodeKind::Of))) {
        parts.push_back(unwrapped(end)->children[0]);
        end = unwrapped(end)->children[1];
    }
    if (parts.empty() || !isScriptVariable(unwrapped(end)))
        return part(node);
    part(end);
    for (auto next = parts.rbegin(); next != parts.rend(); ++next)
        part(*next);
}

/// In "{name, size} of x" each item gets a copy of the container.
void HandlerCompiler::listPart(Object* node) {
    auto items = node->children[0]->children;
    for (Object* item : items) {
        mCode.emit(Opcode::Dup);
        const Object* inner = unwrapped(item);
        if (inner->isNode(tagOf(NodeKind::Literal)) && inner->children[0]->isCode(CodeTag::Class)) // a property with the name of a class
            part(item);
        else
            withContainer(item);
        mCode.emit(Opcode::Swap);
    }
    mCode.emit(Opcode::Pop);
    mCode.pushInteger(static_cast<std::int32_t>(items.size()));
    mCode.emit(Opcode::MakeVector);
}

/// The boundaries of a range may be elements of its container ("words 1 thru word -1"), so each gets a copy of the container.
void HandlerCompiler::range(Object* node) {
    mCode.emit(Opcode::Dup);
    mCode.pushLiteral(node->children[0]);
    mCode.emit(Opcode::Swap);
    mCode.emit(Opcode::Dup);
    withContainer(node->children[1]);
    mCode.emit(Opcode::Swap);
    withContainer(node->children[2]);
    mCode.emit(Opcode::MakeRange);
}

void HandlerCompiler::filter(Object* node) {
    withContainer(node->children[0]);
    examine(node);
}

/// Compiles the test of a filter. The objects that it chooses from are on the stack.
void HandlerCompiler::examine(Object* node) {
    mCode.pushLiteral(mStore.block(block::Examined, {}));
    test(node->children[1]);
    mCode.emit(Opcode::MakeFilter);
}

/// Whether the expression begins with a part that has no container of its own.
bool HandlerCompiler::startsFromContainer(const Object* node) const {
    node = unwrapped(node);
    while (node->isNode(tagOf(NodeKind::Of)))
        node = unwrapped(node->children[1]);
    if (node->isNode(tagOf(NodeKind::Filter)))
        return startsFromContainer(node->children[0]);
    return node->isNode(tagOf(NodeKind::It)) || (isReference(node) && !node->isNode(tagOf(NodeKind::Of)));
}

void HandlerCompiler::withContainer(Object* node) {
    if (failed())
        return;
    if (!startsFromContainer(node)) {
        mCode.emit(Opcode::Pop);
        return expression(node);
    }
    const std::size_t start = mCode.size();
    if (node->isNode(tagOf(NodeKind::Line))) {
        withContainer(node->children[0]);
    } else if (node->isNode(tagOf(NodeKind::Of))) {
        withContainer(node->children[1]);
        part(node->children[0]);
    } else if (!node->isNode(tagOf(NodeKind::It))) {
        part(node);
    }
    node->start = static_cast<std::uint32_t>(start);
    node->end = static_cast<std::uint32_t>(mCode.size());
}

/// Compiles a test, which takes the examined object from the stack and leaves a description of the test.
void HandlerCompiler::test(Object* node) {
    struct Row {
        NodeKind kind;
        Opcode opcode;
    };
    static constexpr Row kTests[] = {
        {NodeKind::Equal, Opcode::TestEqual},
        {NodeKind::NotEqual, Opcode::TestNotEqual},
        {NodeKind::Greater, Opcode::TestGreater},
        {NodeKind::GreaterOrEqual, Opcode::TestGreaterOrEqual},
        {NodeKind::Less, Opcode::TestLess},
        {NodeKind::LessOrEqual, Opcode::TestLessOrEqual},
        {NodeKind::StartsWith, Opcode::TestStartsWith},
        {NodeKind::EndsWith, Opcode::TestEndsWith},
        {NodeKind::Contains, Opcode::TestContains},
    };
    if (failed())
        return;
    if (++mDepth > 500) {
        fail(errOSAStackOverflow, u"Stack overflow.", node);
        return;
    }
    const std::size_t start = mCode.size();
    if (node->isNode(tagOf(NodeKind::Line))) {
        test(node->children[0]);
    } else if (node->isNode(tagOf(NodeKind::Not))) {
        test(node->children[0]);
        mCode.emit(Opcode::TestNot);
    } else if (node->isNode(tagOf(NodeKind::And)) || node->isNode(tagOf(NodeKind::Or))) {
        mCode.emit(Opcode::Dup);
        test(node->children[0]);
        mCode.emit(Opcode::Swap);
        test(node->children[1]);
        mCode.emit(node->isNode(tagOf(NodeKind::And)) ? Opcode::TestAnd : Opcode::TestOr);
    } else {
        const Row* found = nullptr;
        for (const Row& row : kTests)
            if (node->isNode(tagOf(row.kind)))
                found = &row;
        if (found) {
            mCode.emit(Opcode::Dup);
            withContainer(node->children[0]);
            mCode.emit(Opcode::Swap);
            withContainer(node->children[1]);
            mCode.emit(found->opcode);
        } else {
            withContainer(node);
        }
    }
    node->start = static_cast<std::uint32_t>(start);
    node->end = static_cast<std::uint32_t>(mCode.size());
    --mDepth;
}

} // namespace quoddle::compiler
