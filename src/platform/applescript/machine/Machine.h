// SPDX-License-Identifier: MIT
// The running machine of one scripting component: heap, stack, frames, and the state of a running script.
//
// Decision: script calls never recurse on the C++ stack. Frames lie in a vector, registers in one reserved stretch of memory, so that
// 10,000 calls deep is nothing special and more is an error. Native code that must run a script starts a run inside the run; the number of
// such runs is bounded separately.
//
// Thread: the one that holds the component's interpreter lock. Only `interrupt` may be called from any thread.
#pragma once

#include "platform/applescript/machine/Code.h"
#include "platform/applescript/machine/Heap.h"
#include "platform/base/Considering.h"
#include "platform/base/Wait.h"

#include <atomic>
#include <functional>
#include <memory>
#include <utility>

namespace quoddle {
class TermSource;
}
namespace quoddle::language {
class TextElementIndex;
}

namespace quoddle::machine {

/// An error, as a script catches it and as its caller gets it.
struct ScriptError {
    OSStatus number = noErr;
    Value message;      // a text, or undefined
    Value briefMessage; // without the name of the application that sent the error; undefined when it is the same as the message
    Value offending;
    Value partialResult;
    Value expectedType;
    Value application;
    const Object* handler = nullptr; // the handler block in whose code the error is said to be; null when in none
    std::uint32_t offset = 0;        // of the stored instruction in that handler
    bool isInSourceThatRuns = false; // that handler is of the source with which the run began, and not of a library's
    bool isFinal = false;            // no `try` of the script catches the error
};

/// The default time-out of a command to another application, seconds.
constexpr double kDefaultTimeout = 120;

struct Frame {
    const Handler* handler = nullptr;
    const Instruction* next = nullptr; // where the handler goes on after a call
    Value* registers = nullptr;
    Script* owner = nullptr;     // the script whose handler runs
    HeapObject* scope = nullptr; // an Environment, or the Script that is being made
    Value me;
    Value it;
    Value result;
    std::uint32_t considering = kDefaultConsiderations;
    double timeout = kDefaultTimeout;
    bool isEntry = false; // the run ends when this frame returns
};

/// A labelled parameter of a call.
struct Argument {
    Value label; // a code or a symbol
    Value value;
};

/// The stack of one thread of execution. While a script waits, another thread may run scripts of the same component on a stack of its own.
struct ExecutionContext {
    std::vector<Frame> frames;
    Value* stack = nullptr;
    Value* stackEnd = nullptr;
    Value* stackTop = nullptr; // the end of the registers of the innermost frame
    ScriptError error;
    std::size_t nestedRuns = 0;
    int refusals = 0; // how often in a row the host refused to let the script go on

    ExecutionContext();
    ~ExecutionContext();
    ExecutionContext(const ExecutionContext&) = delete;
    ExecutionContext& operator=(const ExecutionContext&) = delete;
};

class Machine {
public:
    /// The surroundings of a machine. The machine itself neither sends events nor waits.
    struct Host {
        /// Called at least every ten milliseconds while a script runs, and between the pauses of a script that waits, with the interpreter
        /// lock given up. Anything but noErr ends the script with that error. The script may catch the error, but not when the host answers
        /// with errors again and again.
        std::function<OSStatus(Machine&)> active;
        /// Sends a command that neither a handler nor the language performs. Answers a value, or failure with an error raised.
        std::function<Value(Machine&, const EventName& command, Value direct, std::span<const Argument> arguments, bool continues)> send;
        /// Asked before `send`: performs a command that works on the scripts of this machine and may run them. False when the command is
        /// not such a one; `result` is failure when an error was raised. May be empty.
        std::function<bool(Machine&, const EventName& command, Value direct, std::span<const Argument> arguments, Value& result)> perform;
        /// Answers the script object of a script library, the same one each time; undefined when there is no such library, failure when an
        /// error was raised. May be empty.
        std::function<Value(Machine&, std::u16string_view name)> library;
        /// The dictionary in whose words references to an application's objects are shown; null when it has none. May be empty.
        std::function<const TermSource*(const Application&)> terms;
        /// Prints a value for "log".
        std::function<void(Machine&, Value)> log;
        /// Sleeps until `until` at the latest, with the interpreter lock given up. When empty, the machine sleeps and keeps the lock.
        std::function<void(Machine&, Wait&, std::chrono::steady_clock::time_point until)> pause;
    };

    explicit Machine(Host host);
    ~Machine();
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    Heap& heap() { return mHeap; }
    Host& host() { return mHost; }
    /// The AppleScript object: the last parent of every script, with the text item delimiters, the progress properties and the constants.
    Script* appleScript() { return mAppleScript; }

    // Running. Collection spares the values given during the call, and the result until the next call.
    /// Failure when an error was raised, which is then in error().
    Value callHandler(Script* script, Value handlerName, std::span<const Value> arguments);
    Value callHandler(Script* owner, Value me, Handler* handler, std::span<const Value> positional, Value direct,
                      std::span<const Argument> labels);
    /// Runs an initialiser. Answers the new script, or failure. `parent` may be null.
    Value makeScript(Handler* initialiser, Value name, const Object* tree, std::shared_ptr<ObjectStore> store, Script* parent = nullptr);

    // Errors
    ScriptError& error() { return mContext->error; }
    /// Sets the error and answers failure, for the caller to return.
    Value raise(OSStatus number, std::u16string_view message, Value offending = {}, Value expectedType = {});
    /// Raises -108. Takes no memory, and releases what the heap keeps for that time.
    Value raiseOutOfMemory();

    // State of the innermost frame, or the default when nothing runs
    std::uint32_t considering() const { return isRunning() ? mContext->frames.back().considering : kDefaultConsiderations; }
    double timeout() const { return isRunning() ? mContext->frames.back().timeout : kDefaultTimeout; }
    Value me() const { return isRunning() ? mContext->frames.back().me : Value(); }
    Value it() const { return isRunning() ? mContext->frames.back().it : Value(); }
    bool isRunning() const { return !mContext->frames.empty(); }

    /// Sets the context that all calls work on until the next use(), and answers the one before. Code that lets threads take turns calls
    /// this when a thread gets its turn. A context that is not in use and has no frames keeps no values alive.
    ExecutionContext* use(ExecutionContext* context) { return std::exchange(mContext, context); }
    ExecutionContext* newContext();

    /// Looks for a slot in a script and its parents, the AppleScript object last; `holder` gets the script that has it. Null when there is
    /// none.
    Value* findSlot(Script* script, Value name, Script** holder = nullptr);
    /// Looks for a handler likewise. A script without a run handler does not inherit that of the script around its definition, which would
    /// run that script again.
    Handler* findHandler(Script* script, Value name, Script** holder = nullptr);
    /// The value of one of `holder`'s slots, for storing elsewhere: a handler then remembers its script.
    Value taken(Value slot, Script* holder);
    /// The parent of a script; null when the parent is not a script.
    Script* parentOf(Script* script);

    /// Asks the running script to come to a safe point soon. Any thread.
    void interrupt() { mInterrupted.store(true, std::memory_order_relaxed); }
    /// Calls Host::active, as a long native operation should every few milliseconds. False, with the error set, when the script is to end.
    bool yield();
    /// Sleeps once for a script that waits; the script then yields and looks whether its time has come.
    void pause(Wait& wait, std::chrono::steady_clock::time_point until);
    /// Gives a command to the host (see Host::send). The parameters are safe from collection; other values that the caller holds are not.
    Value send(const EventName& command, Value direct, std::span<const Argument> arguments, bool continues);

    /// The index that a constant carries for its enumeration, and the enumeration's code for that index.
    std::uint16_t enumeration(FourCharCode code);
    FourCharCode enumerationCode(std::uint16_t index) const { return mEnumerations[index]; }

    /// Sets a callback that marks further values as alive.
    void setRootMarker(std::function<void(Heap&)> marker) { mMarkOwner = std::move(marker); }
    void collect() { mHeap.collect(); }
    language::TextElementIndex& textElements() { return *mTextElements; }
    Value literal(const Object* object, const std::shared_ptr<ObjectStore>& store);

    static constexpr std::size_t kMaximumCalls = 10000;
    static constexpr std::size_t kMaximumNestedRuns = 100;

private:
    friend class Interpreter;
    class Run;
    Code* codeOf(Handler* handler);
    void noteRegistersInUse();
    void markRoots(Heap& heap);

    Host mHost;
    Heap mHeap;
    std::function<void(Heap&)> mMarkOwner;
    std::vector<std::unique_ptr<ExecutionContext>> mContexts;
    ExecutionContext* mContext = nullptr;
    Script* mAppleScript = nullptr;
    Value mOutOfMemory; // the text of error -108, made while there is memory
    std::vector<FourCharCode> mEnumerations{0};
    std::unique_ptr<language::TextElementIndex> mTextElements;
    std::atomic<bool> mInterrupted{false};
};

} // namespace quoddle::machine
