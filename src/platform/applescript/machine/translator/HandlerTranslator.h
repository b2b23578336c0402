// SPDX-License-Identifier: MIT
// Translates the stored instructions of one handler in one pass. A method translates each kind of instruction; the table in
// HandlerTranslator.cpp says which. Wherever a jump leads, all entries of the stack are put into their registers first.
#pragma once

#include "platform/applescript/machine/Code.h"
#include "platform/applescript/machine/Heap.h"
#include "platform/applescript/machine/translator/SymbolicStack.h"

namespace quoddle::machine {

class HandlerTranslator {
public:
    HandlerTranslator(const Handler& handler, Heap& heap, LiteralLoader load, void* context, Code& code);

    /// Makes the code, which then still has to be linked. Throws Corruption.
    void run();
    void link(const void* const* labels) { mOut.link(labels); }

private:
    using Method = void (HandlerTranslator::*)();
    static Method methodFor(Opcode opcode);

    struct Label {
        bool isReached = false;
        Shape shape;
        LocalSet defined; // until the label is placed
        std::int32_t position = -1;
        std::vector<std::size_t> uses;
    };
    struct Loop {
        std::int32_t exit;
        std::size_t depth;
    };
    /// Code at the end of the handler, for the rare case of an instruction.
    struct Detour {
        std::size_t branch; // the instruction that jumps to the detour
        Op work;
        std::size_t a;
        std::size_t b;
        std::int32_t target;
    };

    void readHandler();
    void translateAll();
    void fallOffEnd();
    void resolveBranches();
    const StoredInstruction& here() const { return mStored.at(mAt); }
    std::size_t firstOperand() const { return static_cast<std::size_t>(here().first); }
    Value literal(std::int32_t index) const;
    std::uint16_t literalConstant() { return mOut.constant(literal(here().first)); }

    // HandlerTranslator.cpp
    void corrupt() { throw Corruption(); }
    void nothing() {}

    // TranslateFlow.cpp
    std::size_t emitBranch(Op op, std::size_t a, std::size_t b, std::int32_t target);
    void merge(std::int32_t target, std::size_t dropped = 0);
    void jumpTo(std::int32_t target);
    void place(std::size_t at);
    bool isBackwards(std::int32_t target) const { return mLabels[static_cast<std::size_t>(target)].position >= 0; }
    void jump() { jumpTo(here().first); }
    void compare();
    void shortCircuit();
    void testIf();

    // TranslateLoops.cpp
    void linkRepeat();
    void repeat();
    void turn(Op op, std::size_t operands, std::size_t local);
    void repeatWhile();
    void exitLoop();

    // TranslateScopes.cpp
    void beginTell();
    void beginTimeout();
    void beginTransaction();
    void beginConsider();
    void beginScope(std::size_t savedCount, Op closing);
    void endTell() { endScope(Op::EndTell); }
    void endTimeout() { endScope(Op::EndTimeout); }
    void endConsider() { endScope(Op::EndConsider); }
    void endTransaction() { endScope(Op::Corrupt); }
    void endScope(Op closing);
    void beginTry();
    void endTry();
    void catchError();

    // TranslateValues.cpp
    void pushValue();
    void pushLiteral() { mStack.pushConstant(literal(here().first)); }
    void pushLocal();
    void popLocal() { storeLocal(firstOperand()); }
    void storeLocal(std::size_t local);
    void pushGlobal();
    void popGlobal();
    void pushOuter();
    void popOuter();
    void pop() { mStack.pop(); }
    void duplicate();
    void swap();
    void storeResult();
    void getResult() { mStack.pushRegister(mOut.emit(Op::GetResult, mStack.nextSlot())); }

    // TranslateOperators.cpp
    void binary();
    void coerce();
    void emitBinary(Op op, Op withConstant, bool isBoolean);
    void unary();
    void clone() { replaceTop(Op::Clone); }
    void makeReference() { replaceTop(Op::MakeReference); }
    void replaceTop(Op op, bool isBoolean = false);
    void makeCollection();

    // TranslateReferences.cpp
    void makeProperty();
    void makeElement();
    void makeSpecifier();
    void emitSpecifier(Specifier::Form form, std::size_t operands);
    void makeTest();
    void getData();
    void setData() { store(false); }
    void copyData() { store(true); }
    void store(bool copies);
    bool emitStore(std::size_t from);

    // TranslateCalls.cpp
    void call() { emitCall(false); }
    void continueCall();
    void emitCall(bool continues);
    void send();
    bool emitCount(std::size_t direct, std::size_t parameters);
    void continueSend();
    void raise();
    void returnValue();
    void defineScript();
    void defineHandler();
    void defineParent();
    void prepareArguments(std::size_t from, Evaluate how);
    void replaceByResult(std::size_t count, std::size_t producer);

    const Handler& mHandler;
    Heap& mHeap;
    LiteralLoader mLoad;
    void* mContext;
    Code& mCode;
    CodeEmitter mOut;
    SymbolicStack mStack;
    StoredHandler mStored;
    std::vector<Label> mLabels;
    std::vector<Loop> mLoops;
    std::vector<Detour> mDetours;
    LocalSet mDefined;                                              // by local: it surely has a value here
    std::vector<std::pair<std::int32_t, std::uint32_t>> mOpenTries; // handler, begin
    std::size_t mAt = 0;                                            // the instruction being translated
    std::size_t mSkip = 0;
    bool mReachable = true;
};

} // namespace quoddle::machine
