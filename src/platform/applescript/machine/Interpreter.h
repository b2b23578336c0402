// SPDX-License-Identifier: MIT
// The instruction loop of a machine. The loop moves values between registers and frames; what an operation means is in language/.
#pragma once

#include "platform/applescript/machine/Machine.h"

namespace quoddle::machine {

class Interpreter {
public:
    explicit Interpreter(Machine& machine) : mMachine(machine) {}

    /// The addresses of the loop's code by Op, for the translator.
    static const void* const* labels();
    /// Runs the innermost frame of the machine, an entry frame, until it returns. Answers failure when the run ends with an error (which
    /// includes memory that cannot be had); the frame is gone then as well.
    Value run();

private:
    /// With `labels` the loop runs nothing and only tells its addresses.
    static Value loop(Interpreter* self, const void* const** labels);

    struct Callee {
        Handler* handler = nullptr;
        Script* owner = nullptr;
        Value me;
    };
    /// Pushes a frame whose parameters are unset. False with the error set when there is no room.
    bool pushFrame(const Callee& callee, Value* registers, bool isEntry);
    /// Pushes a frame with `given` positional parameters, which lie at `registers`.
    bool enter(const Callee& callee, Value* registers, std::size_t given, bool isEntry);
    /// Sets the parameters of the innermost frame, for handlers whose parameters are not simply the first registers.
    bool bind(std::span<const Value> positional, Value direct, std::span<const Argument> labels, bool isCommand);
    bool bindPattern(const Object* pattern, Value value);
    bool setLocal(const Object* name, Value value);
    bool setLocal(std::size_t index, Value value);

    Script* findHandler(Script* first, Value name, Handler*& handler);
    /// `cache`, when it is not null, gets the handler's place in the target's own slots.
    bool findCallee(Value target, Value name, SiteCache* cache, Callee& callee);
    bool isSafePointDue() const { return mMachine.mInterrupted.load(std::memory_order_relaxed) || mMachine.mHeap.wantsCollection(); }
    bool safePoint();

    Value getGlobal(Value name, SiteCache& cache);
    bool setGlobal(Value name, Value value, SiteCache& cache);
    /// `holder` gets the script whose slot the variable is, or null when the variable belongs to a handler.
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
    /// Raises the error for a handler whose stored code makes no sense. Names an instruction that is unknown.
    void raiseCorruption();
    void consider(Value considered, Value ignored);
    /// The step of a loop after its counter was looked at.
    enum class Turn { Next, Done, Failed };
    Turn nextInRange(Value* loop, Value& variable);
    Turn nextInCollection(Value* loop, Value& variable);
    Turn nextTime(Value* loop);
    /// Unwinds to the innermost try statement that catches the current error. False when no frame down to the entry has one.
    bool unwind();

    Machine& mMachine;

    friend class Machine;
};

} // namespace quoddle::machine
