// SPDX-License-Identifier: MIT
// The running machine of one scripting component: heap, stack, frames, and what a running script can change about them.
//
// Decision: script calls never recurse on the C++ stack. Frames lie in a vector, registers in one reserved stretch of memory, so that
// 10,000 calls deep is nothing special and more is an error. Native code that must run a script while it works itself starts a run inside
// the run, which is bounded separately.
//
// Thread: whoever holds the component's interpreter lock. Only `interrupt` may be called from elsewhere.
#pragma once

#include "platform/applescript/machine/Code.h"
#include "platform/applescript/machine/Heap.h"
#include "platform/base/Considering.h"
#include "platform/base/Wait.h"

#include <atomic>
#include <functional>
#include <memory>
#include <utility>

namespace quoddle::language {
class TextElementIndex;
}

namespace quoddle::machine {

/// What a script is told about an error, and what it tells its caller.
struct ScriptError {
    OSStatus number = noErr;
    Value message; // a text, or undefined
    Value briefMessage; // without the name of the application that it came from; undefined: the same as the message
    Value offending;
    Value partialResult;
    Value expectedType;
    Value application;
    const Object* handler = nullptr; // the handler block in whose code it arose, if any
    std::uint32_t offset = 0;        // of the stored instruction in it
    bool isFinal = false;            // no "try" of the script catches it
};

/// The default time-out of a command to another application, seconds.
constexpr double kDefaultTimeout = 120;

struct Frame {
    const Handler* handler = nullptr;
    const Instruction* next = nullptr; // where it goes on after a call
    Value* registers = nullptr;
    Script* owner = nullptr;     // the script whose handler runs
    HeapObject* scope = nullptr; // an Environment, or the Script that is being made
    Value me;
    Value it;
    Value result;
    std::uint32_t considering = kDefaultConsiderations;
    double timeout = kDefaultTimeout;
    bool isEntry = false; // the run ends with it
};

/// A label of a call and its value.
struct Argument {
    Value label; // a code or a symbol
    Value value;
};

/// The stack of one thread of execution. A script that waits lets another thread run scripts of the same component meanwhile; each has its
/// own.
struct ExecutionContext {
    std::vector<Frame> frames;
    Value* stack = nullptr;
    Value* stackEnd = nullptr;
    Value* stackTop = nullptr; // behind the registers of the innermost frame
    ScriptError error;
    std::size_t nestedRuns = 0;
    int refusals = 0; // of the host, one after the other, to let the script go on

    ExecutionContext();
    ~ExecutionContext();
    ExecutionContext(const ExecutionContext&) = delete;
    ExecutionContext& operator=(const ExecutionContext&) = delete;
};

class Machine {
public:
    /// The surroundings of a machine, which neither sends nor waits by itself.
    struct Host {
        /// Called at least every ten milliseconds while a script runs, the interpreter lock given up; between the pauses of one that waits.
        /// Anything but noErr ends the script with that error. The script may catch the error, but not when the host answers with errors
        /// again and again.
        std::function<OSStatus(Machine&)> active;
        /// A command that no handler and no part of the language took: value, or failure with an error raised.
        std::function<Value(Machine&, const EventName& command, Value direct, std::span<const Argument> arguments, bool continues)> send;
        /// Asked before `send`: performs a command that works on the scripts of this machine and may run them. False when it is none; `result` is failure when an error
        /// was raised. May be empty.
        std::function<bool(Machine&, const EventName& command, Value direct, std::span<const Argument> arguments, Value& result)> perform;
        /// What "log" prints.
        std::function<void(Machine&, Value)> log;
        /// Sleeps until then at the latest, the interpreter lock given up. Empty: the lock is kept.
        std::function<void(Machine&, Wait&, std::chrono::steady_clock::time_point until)> pause;
    };

    explicit Machine(Host host);
    ~Machine();
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    Heap& heap() { return mHeap; }
    Host& host() { return mHost; }
    /// The AppleScript object: the last parent of every script, holder of the text item delimiters, the progress properties and the
    /// constants.
    Script* appleScript() { return mAppleScript; }

    // Running. The values given are safe from collection during the call; the result is safe until the next one.
    /// Failure when an error was raised; it is then in error().
    Value callHandler(Script* script, Value handlerName, std::span<const Value> arguments);
    Value callHandler(Script* owner, Value me, Handler* handler, std::span<const Value> positional, Value direct,
                      std::span<const Argument> labels);
    /// Runs an initialiser. Failure, or the new script.
    Value makeScript(Handler* initialiser, Value name, const Object* tree, std::shared_ptr<ObjectStore> store);

    // Errors
    ScriptError& error() { return mContext->error; }
    /// Sets the error; always answers failure, to be returned.
    Value raise(OSStatus number, std::u16string_view message, Value offending = {}, Value expectedType = {});
    /// Likewise for -108, in which case nothing else can be made: takes no memory, and releases what the heap keeps for that time.
    Value raiseOutOfMemory();

    // What the innermost frame says
    std::uint32_t considering() const { return isRunning() ? mContext->frames.back().considering : kDefaultConsiderations; }
    double timeout() const { return isRunning() ? mContext->frames.back().timeout : kDefaultTimeout; }
    Value me() const { return isRunning() ? mContext->frames.back().me : Value(); }
    Value it() const { return isRunning() ? mContext->frames.back().it : Value(); }
    bool isRunning() const { return !mContext->frames.empty(); }

    /// The context that everything works on until the next call; whoever lets threads take turns sets it when it gives a thread its turn. A
    /// context that is not in use is marked no more once it is idle. Answers the one before.
    ExecutionContext* use(ExecutionContext* context) { return std::exchange(mContext, context); }
    ExecutionContext* newContext();

    /// Looks for a slot in a script and its parents, the AppleScript object last; `holder` is where it was found. Null when nowhere.
    Value* findSlot(Script* script, Value name, Script** holder = nullptr);
    /// Looks for a handler likewise. A script without a run handler does not take that of the script it is defined in, which would run it
    /// again.
    Handler* findHandler(Script* script, Value name, Script** holder = nullptr);
    /// The value of one of `holder`'s slots as other variables may have it: a handler then remembers its script.
    Value taken(Value slot, Script* holder);
    /// The parent of a script as a script; null when it is not one.
    Script* parentOf(Script* script);

    /// Asks the script to come to a safe point soon. From any thread.
    void interrupt() { mInterrupted.store(true, std::memory_order_relaxed); }
    /// Gives the host its turn, as a long native operation should every few milliseconds. False when the script is to end; the error is
    /// then set.
    bool yield();
    /// One pause of a script that waits, which then yields and looks whether its time has come.
    void pause(Wait& wait, std::chrono::steady_clock::time_point until);
    /// A command for the host (see Host::send). The parameters are safe from collection; other values that the caller holds are not.
    Value send(const EventName& command, Value direct, std::span<const Argument> arguments, bool continues);

    /// Names of enumerations that constants carry.
    std::uint16_t enumeration(FourCharCode code);
    FourCharCode enumerationCode(std::uint16_t index) const { return mEnumerations[index]; }

    /// Values that live as long as they are marked here.
    void setRootMarker(std::function<void(Heap&)> marker) { mMarkOwner = std::move(marker); }
    void collect() { mHeap.collect(); }
    language::TextElementIndex& textElements() { return *mTextElements; }
    /// The value of a stored literal.
    Value literal(const Object* object, const std::shared_ptr<ObjectStore>& store);

    static constexpr std::size_t kMaximumCalls = 10000;
    static constexpr std::size_t kMaximumNestedRuns = 100;

private:
    friend class Interpreter;
    class Run;
    Code* codeOf(Handler* handler);
    void settle();
    void markRoots(Heap& heap);

    Host mHost;
    Heap mHeap;
    std::function<void(Heap&)> mMarkOwner;
    std::vector<std::unique_ptr<ExecutionContext>> mContexts;
    ExecutionContext* mContext = nullptr;
    Script* mAppleScript = nullptr;
    Value mOutOfMemory; // the text of that error
    std::vector<FourCharCode> mEnumerations{0};
    std::unique_ptr<language::TextElementIndex> mTextElements;
    std::atomic<bool> mInterrupted{false};
};

} // namespace quoddle::machine
