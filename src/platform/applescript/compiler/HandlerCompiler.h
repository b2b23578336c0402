// SPDX-License-Identifier: MIT
// Compiles one handler, or the initialiser of one script object. There is a source file each for expressions, references, statements and
// definitions.
#pragma once

#include "platform/applescript/compiler/CodeBuilder.h"
#include "platform/applescript/compiler/Compiler.h"
#include "platform/applescript/compiler/Scope.h"
#include "platform/applescript/syntax/NodeKind.h"

#include <functional>

namespace quoddle::compiler {

class HandlerCompiler {
public:
    HandlerCompiler(ObjectStore& store, Scope::Kind kind, Scope* outer, bool plainNamesAreGlobal)
        : mStore(store), mCode(store), mScope(kind, outer), mPlainNamesAreGlobal(plainNamesAreGlobal) {}

    /// The first error, if there is one. Later errors are only consequences of it and are dropped.
    const CompileError& error() const { return mError; }
    bool failed() const { return mError.number != noErr; }

    Scope& scope() { return mScope; }

    /// Answers a handler block for a Handler node.
    Object* compileHandler(Object* handler);
    /// Answers the initialiser for the statements of a script object. `withRunHandler` gathers statements outside handlers into a run
    /// handler.
    Object* compileInitialiser(Object* body, bool withRunHandler);

private:
    using Label = CodeBuilder::Label;

    // Expressions: each leaves one value.
    void expression(Object* node);
    void expressionBody(Object* node);
    void literal(Object* value);
    Scope::Place placeOf(Object* name);
    void variable(Object* name);
    void term(Object* node);
    void referenceTo(Object* node);
    void makeList(Object* node);
    void makeRecord(Object* node);
    void binary(Object* node, Opcode opcode);
    void shortCircuit(Object* node, Opcode opcode);
    /// Whether the direct parameter or target of a call comes from the node (Implicit: from `it` when absent) or is on the stack already.
    enum class Target { Implicit, OnStack };
    void call(Object* node, Target target);
    void positionalCall(Object* node, Target target);
    std::int32_t labelledArguments(Object* labels);
    void continueCall(Object* node);
    void raise(Object* node);

    // References: each leaves a specifier.
    bool isReference(const Object* node) const;
    /// Compiles the part of a reference, whose container is on the stack.
    void part(Object* node);
    void partOfMe(Object* node);
    /// Compiles an expression that may start from the container on the stack. The container is taken from the stack in any case.
    void withContainer(Object* node);
    bool startsFromContainer(const Object* node) const;
    void listPart(Object* node);
    void range(Object* node);
    void filter(Object* node);
    void examine(Object* node);
    void test(Object* node);
    /// Compiles a value that is stored or returned: a specifier is followed to its value.
    void valueOf(Object* node);

    // Statements: each leaves one value.
    void statement(Object* node);
    void statementBody(Object* node);
    void block(Object* node);
    void statements(std::span<Object* const> nodes);
    void assignment(Object* node, bool copies);
    void store(Object* target, bool copies);
    void storeVariable(Object* name);
    void pattern(Object* target, bool copies);
    void ifStatement(Object* node);
    void loopBody(Object* body);
    void loop(Object* node);
    /// Compiles a loop whose instruction `step` gives a variable its next value. `bounds` compiles what `step` finds on the stack.
    void loopWithVariable(Object* node, Opcode step, const std::function<void()>& bounds);
    void repeatIn(Object* node);
    void repeatFrom(Object* node);
    void tell(Object* node);
    void considering(Object* node);
    Object* patternPart(Object* entry);
    void tryStatement(Object* node);
    void declare(Object* node, bool global);
    void scriptObject(Object* node);
    void timeout(Object* node);
    void transaction(Object* node);

    // Definitions.
    void use(Object* node);
    void usedItem(Object* target);
    void importItems(std::span<Object* const> nodes);
    void definition(Object* node, std::vector<Object*>& loose);
    void declareSlots(std::span<Object* const> nodes);
    Object* parameters(Object* heading);
    Object* parameterName(Object* node);
    Object* constant(Object* node);
    Object* labels(Object* record);
    Object* finish(Object* name, Object* tree, Object* parameters, Object* labels, bool closure);
    /// Takes over the error of the compiler of an inner handler or script.
    void adopt(const HandlerCompiler& inner);

    /// Fails when the code does not fit its form since this node was compiled.
    void checkBounds(const Object* node);
    void fail(OSStatus number, std::u16string message, const Object* node);

    static std::span<Object* const> statementsOf(Object* const& body);
    /// The statements of a script. Definitions within `using terms from` are the script's own, so such a block is taken apart.
    static std::vector<Object*> withoutTermBlocks(std::span<Object* const> nodes);
    static const Object* unwrapped(const Object* node);
    bool isScriptVariable(const Object* node);

    ObjectStore& mStore;
    CodeBuilder mCode;
    Scope mScope;
    bool mPlainNamesAreGlobal;
    std::size_t mLoops = 0;
    std::size_t mDepth = 0;
    CompileError mError;
};

} // namespace quoddle::compiler
