// SPDX-License-Identifier: MIT
// The instruction loop of a machine. It moves values between registers and frames; what an operation means is in language/.
#pragma once

#include "platform/applescript/machine/Machine.h"

namespace quoddle::machine {

class Interpreter {
public:
    explicit Interpreter(Machine& machine) : mMachine(machine) {}

    /// Addresses by Op, for the translator.
    static const void* const* labels();
    /// Runs the innermost frame of the machine, which is an entry, until it returns. Failure when an error got past it; the frame is gone
    /// then as well. Memory that cannot be had is such an error.
    Value run();

private:
    /// With `labels`, only tells the addresses.
    static Value loop(Interpreter* self, const void* const** labels);

    struct Callee {
        Handler* handler = nullptr;
        Script* owner = nullptr;
        Value me;
    };
    /// Puts a new frame on top, its parameters unset. False with the error set when there is no room.
    bool pushFrame(const Callee& callee, Value* registers, bool isEntry);
    /// Likewise, with `given` positional parameters, which lie at `registers`.
    bool enter(const Callee& callee, Value* registers, std::size_t given, bool isEntry);
    /// Sets the parameters of the innermost frame where they are not simply its first registers.
    bool bind(std::span<const Value> positional, Value direct, std::span<const Argument> labels, bool isCommand);
    bool bindPattern(const Object* pattern, Value value);
    bool setLocal(const Object* name, Value value);
    bool setLocal(std::size_t index, Value value);

    Script* findHandler(Script* first, Value name, Handler*& handler);
    bool findCallee(Value target, Value name, SiteCache& cache, Callee& callee);
    bool isSafePointDue() const { return mMachine.mInterrupted.load(std::memory_order_relaxed) || mMachine.mHeap.wantsCollection(); }
    bool safePoint();

    Value getGlobal(Value name, SiteCache& cache);
    bool setGlobal(Value name, Value value, SiteCache& cache);
    /// `holder`: the script whose slot the variable is; null for one of a handler.
    Value* scopeVariable(std::size_t depth, std::size_t index, Script** holder = nullptr);
    Value undefinedVariable(Value name);
    bool sendCommand(const Instruction& instruction, Value* registers, bool continues, Value& result, bool& entered);
    bool callTarget(const Instruction& instruction, Value* registers, bool continues, Value& result, bool& entered);
    void raiseFrom(Value* registers, std::size_t count);
    bool catchError(const Value* saved, Value messageName, const Object* pattern);
    bool matchError(const Object* pattern, const Value& messageName);
    bool defineScript(const Instruction& instruction, Value* registers);
    void defineHandler(const Instruction& instruction, Value* registers);
    bool defineParent(Value value, Value property);
    void consider(Value considered, Value ignored);
    /// One of: the loop goes on, is done, has failed.
    enum class Turn { Next, Done, Failed };
    Turn nextInRange(Value* loop, Value& variable);
    Turn nextInCollection(Value* loop, Value& variable);
    Turn nextTime(Value* loop);
    /// Finds the try statement that gets the current error; false when no frame down to the entry has one.
    bool unwind();

    Machine& mMachine;

    friend class Machine;
};

} // namespace quoddle::machine
