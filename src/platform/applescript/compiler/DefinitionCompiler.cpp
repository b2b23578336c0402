// SPDX-License-Identifier: MIT
// Handlers, script objects and the initialisers that make them.
#include "platform/applescript/compiler/HandlerCompiler.h"

#include "platform/applescript/image/Block.h"

#include <algorithm>

namespace quoddle::compiler {

using namespace syntax;

namespace {

const std::string kRunEvent("aevtoappnull\0\0\x80\0\0\0\x90\0****", 24);
const std::string kInitialiseEvent("ascrinit****\0\0\0\0\0\0\0\0****", 24);

} // namespace

void HandlerCompiler::adopt(const HandlerCompiler& inner) {
    if (inner.failed() && !failed())
        mError = inner.mError;
}

Object* HandlerCompiler::finish(Object* name, Object* tree, Object* parameters, Object* labels, bool closure) {
    checkBounds(tree);
    std::vector<Object*> locals = mScope.names();
    return mStore.block(closure ? block::Closure : block::Handler,
                        {name, tree, parameters, labels, mStore.vector(locals), mCode.literals(), mCode.bytes()});
}

/// The name of the local that holds a parameter or a pattern's variable.
Object* HandlerCompiler::parameterName(Object* node) {
    Object* inner = const_cast<Object*>(unwrapped(node));
    if (inner->kind != ObjectKind::Node)
        return inner;
    auto children = inner->children;
    switch (static_cast<NodeKind>(inner->tag)) {
    case NodeKind::Variable:
        mScope.add(children[0]);
        return children[0];
    case NodeKind::List:
    case NodeKind::LinkedList: {
        std::vector<Object*> items;
        for (Object* item : children[0]->children)
            items.push_back(parameterName(item));
        return mStore.list(items);
    }
    case NodeKind::Record: {
        std::vector<Object*> entries;
        for (std::size_t i = 0; i + 1 < children[0]->children.size(); i += 2) {
            entries.push_back(children[0]->children[i]);
            entries.push_back(parameterName(children[0]->children[i + 1]));
        }
        return mStore.record(entries);
    }
    // QUIRK: the class in "f(x as text)" is not checked; handlers written so get values of other classes and rely on that
    case NodeKind::As:
        return parameterName(children[0]);
    case NodeKind::Literal:
        if (children[0]->isBlock(block::OptionalParameterNode) && children[0]->children.size() > 4) {
            auto parts = children[0]->children;
            return mStore.block(block::OptionalParameter, {parameterName(parts[2]), parts[3], constant(parts[4])});
        }
        [[fallthrough]];
    default:
        fail(-2761, u"This is illegal as a formal parameter.", inner);
        return mStore.nil();
    }
}

/// The value of an expression that is known when the script is compiled: of literals, and of lists and records of literals.
Object* HandlerCompiler::constant(Object* node) {
    Object* inner = const_cast<Object*>(unwrapped(node));
    if (inner->isNode(tagOf(NodeKind::Literal)))
        return inner->children[0];
    if (inner->isNode(tagOf(NodeKind::List)) || inner->isNode(tagOf(NodeKind::LinkedList))) {
        std::vector<Object*> items;
        for (Object* item : inner->children[0]->children)
            items.push_back(constant(item));
        return mStore.block(block::List, {mStore.integer(static_cast<std::int32_t>(items.size())), mStore.block(block::Storage, items)});
    }
    if (inner->isNode(tagOf(NodeKind::Record))) {
        auto fields = inner->children[0]->children;
        std::vector<Object*> entries;
        for (std::size_t i = 0; i + 1 < fields.size(); i += 2) {
            entries.push_back(fields[i]);
            entries.push_back(constant(fields[i + 1]));
        }
        return mStore.record(entries);
    }
    fail(OSASyntaxError, u"The default value of a parameter has to be a constant.", inner);
    return mStore.nil();
}

Object* HandlerCompiler::parameters(Object* heading) {
    Object* direct = heading->children[1];
    if (direct->kind == ObjectKind::List) {
        if (direct->children.empty())
            return heading->children[0]->kind == ObjectKind::Identifier ? mStore.list({}) : mStore.nil();
        std::vector<Object*> items;
        for (Object* item : direct->children)
            items.push_back(parameterName(item));
        return mStore.block(block::List, {mStore.integer(static_cast<std::int32_t>(items.size())), mStore.block(block::Storage, items)});
    }
    if (direct->isNil())
        return mStore.nil();
    return parameterName(direct);
}

Object* HandlerCompiler::labels(Object* record) {
    if (record->kind != ObjectKind::Record || record->children.empty())
        return mStore.list({});
    std::vector<Object*> entries;
    for (std::size_t i = 0; i + 1 < record->children.size(); i += 2) {
        entries.push_back(record->children[i]);
        entries.push_back(parameterName(record->children[i + 1]));
    }
    return mStore.record(entries);
}

Object* HandlerCompiler::compileHandler(Object* handler) {
    Object* heading = handler->children[0];
    Object* parameterList = parameters(heading);
    Object* labelList = labels(heading->children[2]);
    block(handler->children[1]);
    mCode.emit(Opcode::Return);
    return finish(heading->children[0], handler->children[1], parameterList, labelList, mScope.isCaptured());
}

/// Numbers the slots in the order of their definitions. This happens before any handler is compiled, because a handler may use what is
/// defined after it.
void HandlerCompiler::declareSlots(std::span<Object* const> nodes) {
    for (Object* node : nodes) {
        const Object* inner = unwrapped(node);
        if (inner->kind != ObjectKind::Node)
            continue;
        Object* name = nullptr;
        if (inner->isNode(tagOf(NodeKind::Handler)))
            name = inner->children[0]->children[0];
        else if (inner->isNode(tagOf(NodeKind::Property)) || inner->isNode(tagOf(NodeKind::Use)) ||
                 (inner->isNode(tagOf(NodeKind::Script)) && !inner->children[0]->isNil()))
            name = inner->children[0];
        else if (inner->isNode(tagOf(NodeKind::Global)))
            declare(const_cast<Object*>(inner), true);
        if (!name || name->isNil())
            continue;
        if (name->isCode(CodeTag::Class) && name->code() == "pare"_4cc)
            continue; // the parent is not stored in a slot
        if (mScope.contains(*name)) {
            const bool isProperty = inner->isNode(tagOf(NodeKind::Property));
            fail(isProperty ? OSADuplicateProperty : OSADuplicateHandler,
                 isProperty ? u"The property is specified more than once." : u"The handler is specified more than once.", inner);
            return;
        }
        mScope.add(name);
    }
}

void HandlerCompiler::definition(Object* node, std::vector<Object*>& loose) {
    Object* inner = const_cast<Object*>(unwrapped(node));
    if (inner->kind != ObjectKind::Node || inner->isNode(tagOf(NodeKind::Global)))
        return;
    if (inner->isNode(tagOf(NodeKind::Use)))
        return use(inner);
    // A script object at the top without a name is the result of running the script and gets no slot.
    const bool isNameless = inner->isNode(tagOf(NodeKind::Script)) && inner->children[0]->isNil() && !mScope.outer();
    const bool isSlot = !isNameless && (inner->isNode(tagOf(NodeKind::Property)) || inner->isNode(tagOf(NodeKind::Handler)) ||
                                        inner->isNode(tagOf(NodeKind::Script)));
    if (!isSlot) {
        loose.push_back(node);
        return;
    }
    if (mCode.size() > 0)
        mCode.emit(Opcode::StoreResult);
    const std::size_t start = mCode.size();
    if (inner->isNode(tagOf(NodeKind::Property))) {
        Object* name = inner->children[0];
        expression(inner->children[1]);
        if (name->isCode(CodeTag::Class) && name->code() == "pare"_4cc) {
            mCode.emitWithLiteral(Opcode::DefineProperty, name);
        } else {
            if (isReference(inner->children[1]))
                mCode.emit(Opcode::GetData);
            mCode.emitLocal(Opcode::PopVariable, Opcode::PopVariableLong, mScope.add(name));
        }
    } else if (inner->isNode(tagOf(NodeKind::Handler))) {
        // QUIRK: undeclared variables of the outermost run handler are globals of the script, those of any other handler are locals;
        // scripts rely on reading in a handler what their run handler has set.
        const bool isRun = inner->children[0]->children[0]->bytes.starts_with("aevtoapp");
        HandlerCompiler compiler(mStore, Scope::Kind::Frame, &mScope, isRun && !mScope.outer());
        Object* handler = compiler.compileHandler(inner);
        adopt(compiler);
        mCode.emitWithLiteral(Opcode::DefineProcedure, handler);
    } else {
        scriptObject(inner);
    }
    inner->start = static_cast<std::uint32_t>(start);
    inner->end = static_cast<std::uint32_t>(mCode.size());
    checkBounds(inner);
}

/// Leaves what a `use` statement names on the stack: an application, or a reference to a library, a framework or the additions.
void HandlerCompiler::usedItem(Object* target) {
    const Object* inner = unwrapped(target);
    expression(target);
    if (inner->isNode(tagOf(NodeKind::Element)) && inner->children[0]->code() == "capp"_4cc)
        mCode.emit(Opcode::GetData);
    else if (isReference(target))
        mCode.emit(Opcode::MakeReference);
}

/// In "use maths : script "Maths"" the name is a property that holds a reference, so the library is looked for when it is needed.
void HandlerCompiler::use(Object* node) {
    Object *name = node->children[0], *target = node->children[1];
    if (name->isNil())
        return;
    if (mCode.size() > 0)
        mCode.emit(Opcode::StoreResult);
    const std::size_t start = mCode.size();
    usedItem(target);
    mCode.emitLocal(Opcode::PopVariable, Opcode::PopVariableLong, mScope.add(name));
    node->start = static_cast<std::uint32_t>(start);
    node->end = static_cast<std::uint32_t>(mCode.size());
}

/// Compiles the property "required import items", a list with a record for each `use` statement.
void HandlerCompiler::importItems(std::span<Object* const> nodes) {
    std::int32_t count = 0;
    for (Object* node : nodes) {
        Object* used = const_cast<Object*>(unwrapped(node));
        if (!used->isNode(tagOf(NodeKind::Use)))
            continue;
        if (count++ == 0 && mCode.size() > 0)
            mCode.emit(Opcode::StoreResult);
        std::int32_t entries = 0;
        if (Object* target = used->children[1]; !target->isNil() && unwrapped(target)->children[0]->code() != "ascr"_4cc) {
            mCode.pushLiteral(mStore.code("cobj"_4cc));
            usedItem(target);
            entries += 2;
        }
        auto options = used->children[2]->children;
        for (std::size_t i = 0; i + 1 < options.size(); i += 2)
            if (options[i]->code() == "minv"_4cc) {
                mCode.pushLiteral(mStore.code("vers"_4cc));
                expression(options[i + 1]);
                entries += 2;
            }
        mCode.pushInteger(entries);
        mCode.emit(Opcode::MakeRecord);
    }
    if (count == 0)
        return;
    mCode.pushInteger(count);
    mCode.emit(Opcode::MakeVector);
    mCode.emitLocal(Opcode::PopVariable, Opcode::PopVariableLong, mScope.add(mStore.code("pimr"_4cc)));
}

std::vector<Object*> HandlerCompiler::withoutTermBlocks(std::span<Object* const> nodes) {
    auto isDefinition = [](const Object* node) {
        const Object* inner = unwrapped(node);
        return inner->isNode(tagOf(NodeKind::Handler)) || inner->isNode(tagOf(NodeKind::Property)) ||
               inner->isNode(tagOf(NodeKind::Script));
    };
    std::vector<Object*> all;
    for (Object* node : nodes) {
        const Object* inner = unwrapped(node);
        const bool isTerms = inner->isNode(tagOf(NodeKind::UsingTerms));
        const std::vector<Object*> within = isTerms ? withoutTermBlocks(statementsOf(inner->children[0])) : std::vector<Object*>();
        if (std::ranges::any_of(within, isDefinition))
            all.insert(all.end(), within.begin(), within.end());
        else
            all.push_back(node);
    }
    return all;
}

Object* HandlerCompiler::compileInitialiser(Object* body, bool withRunHandler) {
    const std::vector<Object*> nodes = withoutTermBlocks(statementsOf(body));
    std::vector<Object*> loose;
    const auto isStatement = [](const Object* node) { return unwrapped(node)->kind == ObjectKind::Node; }; // no comment or empty line
    declareSlots(nodes);
    for (Object* node : nodes)
        definition(node, loose);
    importItems(nodes);
    if (!loose.empty() && !failed()) {
        Object* name = mStore.event(kRunEvent);
        if (mScope.contains(*name)) {
            fail(-2789, u"The run handler is specified more than once, or there were top-level commands in addition to the run handler.",
                 loose.front());
        } else if (!withRunHandler) {
            fail(OSASyntaxError, u"Expected a definition.", loose.front());
        } else {
            mScope.add(name);
            HandlerCompiler compiler(mStore, Scope::Kind::Frame, &mScope, !mScope.outer());
            Object* statements = loose.size() == 1 ? loose.front() : mStore.node(tagOf(NodeKind::Block), {mStore.list(loose)});
            compiler.block(statements);
            compiler.mCode.emit(Opcode::Return);
            // Statements that the trees of the script and of its handler share are numbered in a stored script. Those of long code would be
            // too many, so that the trees are then one object.
            const bool isAll = compiler.mCode.size() > 0xFFFF && body->isNode(tagOf(NodeKind::Block)) &&
                               std::ranges::equal(nodes, statementsOf(body)) &&
                               loose.size() == static_cast<std::size_t>(std::ranges::count_if(nodes, isStatement));
            Object* tree = isAll ? body : statements;
            tree->end = static_cast<std::uint32_t>(compiler.mCode.size() - 1);
            Object* handler = compiler.finish(name, tree, mStore.nil(), mStore.list({}), compiler.mScope.isCaptured());
            adopt(compiler);
            if (mCode.size() > 0)
                mCode.emit(Opcode::StoreResult);
            mCode.emitWithLiteral(Opcode::DefineProcedure, handler);
        }
    }
    if (mCode.size() == 0)
        mCode.emit(Opcode::PushUndefined);
    mCode.emit(Opcode::Return);
    return finish(mStore.event(kInitialiseEvent), mStore.nil(), mStore.nil(), mStore.list({}), mScope.outer() != nullptr);
}

/// The initialiser of a script object runs where its definition stands.
void HandlerCompiler::scriptObject(Object* node) {
    Object* name = node->children[0];
    if (name->isNil())
        mCode.emit(Opcode::PushUndefined);
    else
        mCode.pushLiteral(name);
    mCode.pushLiteral(node->children[1]);
    HandlerCompiler compiler(mStore, Scope::Kind::Script, &mScope, false);
    if (!name->isNil())
        mScope.add(name);
    Object* initialiser = compiler.compileInitialiser(node->children[1], true);
    adopt(compiler);
    mCode.emitWithLiteral(Opcode::DefineActor, initialiser);
    mCode.emit(Opcode::EndDefineActor);
    if (!name->isNil())
        storeVariable(name);
}

Result<Object*, CompileError> compileScript(Object* tree, ObjectStore& store) {
    HandlerCompiler compiler(store, Scope::Kind::Script, nullptr, false);
    Object* initialiser = compiler.compileInitialiser(tree, true);
    if (compiler.failed())
        return Failure{compiler.error()};
    return initialiser;
}

Result<Object*, CompileError> compileAddition(Object* tree, ObjectStore& store, const SharedNames& names, SharedNames& added) {
    HandlerCompiler compiler(store, Scope::Kind::Script, nullptr, false);
    compiler.scope().shareNames(names);
    Object* initialiser = compiler.compileInitialiser(tree, true);
    if (compiler.failed())
        return Failure{compiler.error()};
    added = compiler.scope().ownNames();
    return initialiser;
}

} // namespace quoddle::compiler
