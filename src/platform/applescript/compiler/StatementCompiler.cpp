// SPDX-License-Identifier: MIT
// Statements. Each leaves one value; `the result` gets the value of every statement but the last of a block, whose value is the block's.
#include "platform/applescript/compiler/HandlerCompiler.h"

namespace quoddle::compiler {

using namespace syntax;

std::span<Object* const> HandlerCompiler::statementsOf(Object* const& body) {
    if (body->isNode(tagOf(NodeKind::Block)) && !body->children.empty())
        return body->children[0]->children;
    if (body->isNil() || body->kind == ObjectKind::List) // an empty body
        return body->children;
    return {&body, 1};
}

void HandlerCompiler::block(Object* node) {
    const std::size_t start = mCode.size();
    statements(statementsOf(node));
    if (node->isNode(tagOf(NodeKind::Block))) {
        node->start = static_cast<std::uint32_t>(start);
        node->end = static_cast<std::uint32_t>(mCode.size());
    }
}

void HandlerCompiler::statements(std::span<Object* const> nodes) {
    bool pending = false;
    bool endsWithComment = false;
    for (Object* node : nodes) {
        const Object* inner = unwrapped(node);
        if (inner->kind != ObjectKind::Node) { // a comment or an empty line
            if (node->kind == ObjectKind::Node)
                node->start = node->end = static_cast<std::uint32_t>(mCode.size());
            endsWithComment = true;
            continue;
        }
        endsWithComment = false;
        if (inner->isNode(tagOf(NodeKind::Global)) || inner->isNode(tagOf(NodeKind::Local))) {
            declare(const_cast<Object*>(inner), inner->isNode(tagOf(NodeKind::Global)));
            continue;
        }
        if (inner->isNode(tagOf(NodeKind::Use)))
            continue;
        if (pending)
            mCode.emit(Opcode::StoreResult);
        statement(node);
        pending = true;
    }
    if (!pending) {
        mCode.emit(Opcode::PushUndefined);
    } else if (endsWithComment) { // a comment line has the value of the statement before it
        mCode.emit(Opcode::StoreResult);
        mCode.emit(Opcode::GetResult);
    }
}

/// Compiles the body of a loop. `the result` gets the value of each turn, unless the body is empty.
void HandlerCompiler::loopBody(Object* body) {
    ++mLoops;
    block(body);
    --mLoops;
    if (statementsOf(body).empty())
        return;
    mCode.emit(Opcode::Dup);
    mCode.emit(Opcode::StoreResult);
}

void HandlerCompiler::statement(Object* node) {
    if (failed())
        return;
    if (++mDepth > 900) {
        fail(errOSAStackOverflow, u"Stack overflow.", node);
        return;
    }
    const std::size_t start = mCode.size();
    statementBody(node);
    node->start = static_cast<std::uint32_t>(start);
    node->end = static_cast<std::uint32_t>(mCode.size());
    checkBounds(node);
    --mDepth;
}

void HandlerCompiler::statementBody(Object* node) {
    auto children = node->children;
    switch (static_cast<NodeKind>(node->tag)) {
    case NodeKind::Line:
        return statement(children[0]);
    case NodeKind::Block:
        return block(node);
    case NodeKind::Set:
        return assignment(node, false);
    case NodeKind::Copy:
        return assignment(node, true);
    case NodeKind::If:
        return ifStatement(node);
    case NodeKind::Repeat:
    case NodeKind::RepeatTimes:
    case NodeKind::RepeatWhile:
    case NodeKind::RepeatUntil:
        return loop(node);
    case NodeKind::RepeatIn:
        return repeatIn(node);
    case NodeKind::RepeatFrom:
        return repeatFrom(node);
    case NodeKind::Exit:
        if (mLoops == 0)
            return fail(OSAControlFlowError, u"Exit statement was not in a repeat loop.", node);
        return mCode.emit(Opcode::Exit);
    case NodeKind::Return:
        if (children[0]->isNil())
            mCode.emit(Opcode::PushUndefined);
        else
            valueOf(children[0]);
        return mCode.emit(Opcode::Return);
    case NodeKind::Tell:
        return tell(node);
    case NodeKind::Considering:
        return considering(node);
    case NodeKind::Try:
        return tryStatement(node);
    case NodeKind::Error:
        return raise(node);
    case NodeKind::Timeout:
        return timeout(node);
    case NodeKind::Transaction:
        return transaction(node);
    case NodeKind::UsingTerms:
        // QUIRK: the application is pushed and dropped; compiled scripts name it in this way.
        if (children[1]->kind == ObjectKind::Data) {
            mCode.pushLiteral(children[1]);
            mCode.emit(Opcode::Pop);
        }
        return block(children[0]);
    case NodeKind::Script:
        return scriptObject(node);
    case NodeKind::Handler:
        return fail(OSASyntaxError, u"Handlers can only be defined in a script.", node);
    case NodeKind::Property:
        return fail(OSASyntaxError, u"Properties can only be defined in a script.", node);
    default:
        return valueOf(node);
    }
}

void HandlerCompiler::declare(Object* node, bool global) {
    for (Object* entry : node->children[0]->children) {
        Object* name = entry->kind == ObjectKind::Node ? entry->children[0] : entry;
        if (name->kind != ObjectKind::Identifier && name->kind != ObjectKind::Code)
            continue;
        if (global ? mScope.contains(*name) : mScope.isGlobal(*name))
            return fail(OSAInconsistentDeclarations, u"Can’t declare a variable as both a local and global variable.", node);
        if (global)
            mScope.declareGlobal(*name);
        else
            mScope.add(name);
    }
}

void HandlerCompiler::assignment(Object* node, bool copies) {
    Object* target = node->children[1];
    const auto kind = static_cast<NodeKind>(unwrapped(target)->tag);
    expression(node->children[0]);
    if (kind != NodeKind::Variable && kind != NodeKind::List && kind != NodeKind::LinkedList && kind != NodeKind::Record) {
        expression(target);
        return mCode.emit(copies ? Opcode::CopyData : Opcode::SetData);
    }
    mCode.emit(Opcode::GetData);
    if (copies && kind == NodeKind::Variable)
        mCode.emit(Opcode::Clone);
    store(target, copies);
}

/// Compiles storing the value on top of the stack. The value stays there.
void HandlerCompiler::store(Object* target, bool copies) {
    if (failed())
        return;
    switch (static_cast<NodeKind>(target->tag)) {
    case NodeKind::Line:
        return store(target->children[0], copies);
    case NodeKind::Variable:
        return storeVariable(target->children[0]);
    case NodeKind::List:
    case NodeKind::LinkedList:
    case NodeKind::Record:
        return pattern(target, copies);
    default:
        expression(target);
        mCode.emit(copies ? Opcode::CopyData : Opcode::SetData);
    }
}

void HandlerCompiler::storeVariable(Object* name) {
    const Scope::Place place = placeOf(name);
    if (place.found == Scope::Found::Global)
        mCode.emitLiteral(Opcode::PopGlobal, Opcode::PopGlobalLong, name);
    else if (place.found == Scope::Found::Outside)
        mCode.emitScope(Opcode::PopParentVariable, place.depth, place.index);
    else
        mCode.emitLocal(Opcode::PopVariable, Opcode::PopVariableLong, place.index);
}

void HandlerCompiler::pattern(Object* target, bool copies) {
    const bool isList = !target->isNode(tagOf(NodeKind::Record));
    auto entries = target->children[0]->children;
    const std::size_t step = isList ? 1 : 2;
    for (std::size_t i = 0; i + step <= entries.size(); i += step) {
        Object* inner = entries[i + step - 1];
        mCode.emit(Opcode::Dup);
        if (isList) {
            mCode.pushLiteral(mStore.code("cobj"_4cc));
            mCode.pushInteger(static_cast<std::int32_t>(i + 1));
            mCode.emit(Opcode::MakeElement);
        } else {
            mCode.pushLiteral(entries[i]);
            mCode.emit(Opcode::MakeProperty);
        }
        mCode.emit(Opcode::GetData);
        if (copies)
            mCode.emit(Opcode::Clone);
        store(inner, copies);
        mCode.emit(Opcode::Pop);
    }
}

void HandlerCompiler::ifStatement(Object* node) {
    Label end;
    auto arm = [&](Object* condition, Object* body) {
        Label next;
        valueOf(condition);
        mCode.branch(Opcode::TestIf, next);
        block(body);
        mCode.branch(Opcode::Jump, end);
        mCode.place(next);
        checkBounds(node);
    };
    arm(node->children[0], node->children[1]);
    auto others = node->children[2]->children;
    for (std::size_t i = 0; i + 1 < others.size(); i += 2)
        arm(others[i], others[i + 1]);
    const bool hasElse = node->children.size() > 3 && !node->children[3]->isNil();
    if (hasElse)
        block(node->children[3]);
    else
        mCode.emit(Opcode::PushUndefined);
    mCode.place(end);
}

void HandlerCompiler::loop(Object* node) {
    Label exit, again;
    mCode.branch(Opcode::LinkRepeat, exit);
    if (node->isNode(tagOf(NodeKind::RepeatTimes))) {
        valueOf(node->children[1]);
        mCode.emit(Opcode::Push1);
    }
    mCode.emit(Opcode::PushUndefined);
    mCode.place(again);
    if (node->isNode(tagOf(NodeKind::RepeatTimes))) {
        mCode.emit(Opcode::RepeatNTimes);
    } else if (node->isNode(tagOf(NodeKind::Repeat))) {
        mCode.emit(Opcode::Pop);
    } else {
        valueOf(node->children[1]);
        mCode.emit(node->isNode(tagOf(NodeKind::RepeatWhile)) ? Opcode::RepeatWhile : Opcode::RepeatUntil);
    }
    loopBody(node->children[0]);
    mCode.branch(Opcode::Jump, again);
    mCode.place(exit);
}

/// QUIRK: the variable of a loop is a local of the handler, also in a run handler, where other undeclared variables are globals; scripts
/// rely on handlers not changing it.
static Object* loopVariable(Object* node) {
    if (node->isNode(tagOf(NodeKind::Variable)))
        node = node->children[0];
    return node->kind == ObjectKind::Identifier || node->kind == ObjectKind::Code ? node : nullptr;
}

void HandlerCompiler::loopWithVariable(Object* node, Opcode step, const std::function<void()>& bounds) {
    Object* name = loopVariable(node->children[1]);
    if (!name)
        return fail(OSASyntaxError, u"Expected variable name.", node->children[1]);
    Label exit, again;
    mCode.branch(Opcode::LinkRepeat, exit);
    bounds();
    mCode.emit(Opcode::PushUndefined);
    mCode.place(again);
    mCode.emitWithLocal(step, mScope.add(name));
    loopBody(node->children[0]);
    mCode.branch(Opcode::Jump, again);
    mCode.place(exit);
}

void HandlerCompiler::repeatIn(Object* node) {
    loopWithVariable(node, Opcode::RepeatInCollection, [&] {
        expression(node->children[2]);
        mCode.emit(Opcode::Dup);
        mCode.pushLiteral(mStore.code("kocl"_4cc));
        mCode.pushLiteral(mStore.code("cobj"_4cc));
        mCode.pushInteger(2);
        mCode.emitWithLiteral(Opcode::MessageSend, mStore.event(std::string("corecnte****\0\0\0\0\0\0\0\0****", 24)));
        mCode.emit(Opcode::Push1);
    });
}

void HandlerCompiler::repeatFrom(Object* node) {
    loopWithVariable(node, Opcode::RepeatInRange, [&] {
        valueOf(node->children[2]);
        valueOf(node->children[3]);
        if (node->children.size() > 4 && !node->children[4]->isNil())
            valueOf(node->children[4]);
        else
            mCode.emit(Opcode::Push1);
    });
}

void HandlerCompiler::tell(Object* node) {
    Label end;
    expression(node->children[1]);
    mCode.branch(Opcode::Tell, end);
    block(node->children[0]);
    mCode.place(end);
    mCode.emit(Opcode::EndTell);
}

void HandlerCompiler::considering(Object* node) {
    Label end;
    for (std::size_t i = 1; i <= 2; ++i) {
        if (node->children[i]->children.empty())
            mCode.emit(Opcode::PushEmpty);
        else
            mCode.pushLiteral(node->children[i]);
    }
    mCode.branch(Opcode::Consider, end);
    block(node->children[0]);
    mCode.emit(Opcode::EndConsider);
    mCode.place(end);
}

/// A part of an error pattern: a variable's name or a constant. The tree may have "number -128" as the negative of a literal.
Object* HandlerCompiler::patternPart(Object* entry) {
    if (entry->kind != ObjectKind::Node || entry->children.empty())
        return entry;
    Object* inner = entry->children[0];
    if (!entry->isNode(tagOf(NodeKind::Negate)))
        return inner;
    const Object* literal = unwrapped(inner);
    literal = literal->isNode(tagOf(NodeKind::Literal)) ? literal->children[0] : literal;
    if (literal->kind == ObjectKind::Integer)
        return mStore.integer(-literal->integer);
    if (literal->kind == ObjectKind::Real)
        return mStore.real(-literal->real);
    fail(OSASyntaxError, u"Expected a constant.", entry);
    return mStore.nil();
}

void HandlerCompiler::tryStatement(Object* node) {
    Label handle, end;
    mCode.branch(Opcode::ErrorHandler, handle);
    block(node->children[0]);
    mCode.branch(Opcode::EndErrorHandler, end);
    mCode.place(handle);
    checkBounds(node);
    Object* heading = node->children[1];
    Object* message = mStore.nil();
    Object* pattern = mStore.list({});
    if (heading->kind == ObjectKind::Node) {
        if (heading->children[1]->kind == ObjectKind::Node)
            mScope.add(message = heading->children[1]->children[0]);
        if (heading->children[2]->kind == ObjectKind::Record) {
            std::vector<Object*> entries;
            for (Object* entry : heading->children[2]->children)
                entries.push_back(patternPart(entry));
            for (std::size_t i = 1; i < entries.size(); i += 2)
                if (entries[i]->kind == ObjectKind::Identifier)
                    mScope.add(entries[i]);
            pattern = mStore.record(entries);
        }
    }
    mCode.emitHandleError(message, pattern);
    block(node->children[2]);
    mCode.place(end);
}

void HandlerCompiler::timeout(Object* node) {
    expression(node->children[1]);
    mCode.emit(Opcode::BeginTimeout);
    block(node->children[0]);
    mCode.emit(Opcode::EndTimeout);
}

void HandlerCompiler::transaction(Object* node) {
    Label end;
    if (node->children[1]->isNil())
        mCode.emit(Opcode::PushUndefined);
    else
        expression(node->children[1]);
    mCode.branch(Opcode::BeginTransaction, end);
    block(node->children[0]);
    mCode.place(end);
    mCode.emit(Opcode::EndTransaction);
}

} // namespace quoddle::compiler
