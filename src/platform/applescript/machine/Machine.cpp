// SPDX-License-Identifier: MIT
#include "platform/applescript/machine/Machine.h"

#include "platform/applescript/language/Display.h"
#include "platform/applescript/language/References.h"
#include "platform/applescript/language/TextElements.h"
#include "platform/applescript/machine/Code.h"
#include "platform/applescript/machine/Interpreter.h"
#include "platform/applescript/machine/Loader.h"
#include "platform/applescript/machine/Ticker.h"

#include <algorithm>
#include <deque>
#include <new>
#include <sys/mman.h>

namespace quoddle::machine {

namespace {

constexpr int kCatchableRefusals = 50; // about a fifth of a second in which a script may catch the host's refusal and clean up
constexpr std::size_t kStackValues = std::size_t(8) << 20; // address space; memory is taken as it is touched

Value loadLiteral(void* context, const Object* literal, const std::shared_ptr<ObjectStore>& store) {
    return static_cast<Machine*>(context)->literal(literal, store);
}

} // namespace

ExecutionContext::ExecutionContext() {
    void* memory = mmap(nullptr, kStackValues * sizeof(Value), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED)
        throw std::bad_alloc();
    stack = stackTop = static_cast<Value*>(memory);
    stackEnd = stack + kStackValues;
    frames.reserve(Machine::kMaximumCalls + 1); // never reallocated, because references to frames are held while others are pushed
}

ExecutionContext::~ExecutionContext() {
    munmap(stack, kStackValues * sizeof(Value));
}

Machine::Machine(Host host)
    : mHost(std::move(host)), mHeap([this](Heap& heap) { markRoots(heap); }, [this] { mTextElements->forgetUnmarked(); }) {
    mContext = newContext();
    mTextElements = std::make_unique<language::TextElementIndex>();
    mAppleScript = language::makeLanguageObject(*this);
    mOutOfMemory = Value::object(mHeap.text(language::messageFor(memFullErr)));
}

Machine::~Machine() = default;

ExecutionContext* Machine::newContext() {
    return mContexts.emplace_back(std::make_unique<ExecutionContext>()).get();
}

void Machine::markRoots(Heap& heap) {
    for (const auto& context : mContexts) {
        for (const Value* value = context->stack; value < context->stackTop; ++value)
            heap.mark(*value);
        for (const Frame& frame : context->frames) {
            heap.mark(const_cast<Handler*>(frame.handler));
            heap.mark(frame.owner);
            heap.mark(frame.scope);
            heap.mark(frame.me);
            heap.mark(frame.it);
            heap.mark(frame.result);
        }
        const ScriptError& error = context->error;
        for (Value value : {error.message, error.briefMessage, error.offending, error.partialResult, error.expectedType, error.application})
            heap.mark(value);
    }
    heap.mark(mAppleScript);
    heap.mark(mOutOfMemory);
    if (mMarkOwner)
        mMarkOwner(heap);
}

Code* Machine::codeOf(Handler* handler) {
    if (!handler->code && handler->definition)
        handler->code = codeOf(handler->definition);
    else if (!handler->code)
        handler->code = translate(*handler, mHeap, loadLiteral, this, Interpreter::labels()).release();
    return handler->code;
}

Value Machine::literal(const Object* object, const std::shared_ptr<ObjectStore>& store) {
    return Loader(*this, store).load(object);
}

std::uint16_t Machine::enumeration(FourCharCode code) {
    auto known = std::find(mEnumerations.begin(), mEnumerations.end(), code);
    if (known != mEnumerations.end())
        return static_cast<std::uint16_t>(known - mEnumerations.begin());
    if (mEnumerations.size() >= 0x7FFF)
        return 0;
    mEnumerations.push_back(code);
    return static_cast<std::uint16_t>(mEnumerations.size() - 1);
}

Value Machine::raise(OSStatus number, std::u16string_view message, Value offending, Value expectedType) {
    ScriptError& error = mContext->error;
    error = ScriptError();
    error.number = number;
    error.message = Value::object(mHeap.text(message));
    error.offending = offending;
    error.expectedType = expectedType;
    return Value::failure();
}

Value Machine::raiseOutOfMemory() {
    mHeap.releaseReserve();
    mContext->error = ScriptError();
    mContext->error.number = memFullErr;
    mContext->error.message = mOutOfMemory;
    return Value::failure();
}

bool Machine::yield() {
    mInterrupted.store(false, std::memory_order_relaxed);
    noteRegistersInUse();
    const OSStatus status = mHost.active ? mHost.active(*this) : noErr;
    mContext->refusals = status == noErr ? 0 : mContext->refusals + 1;
    if (status == noErr)
        return true;
    raise(status, language::messageFor(status));
    mContext->error.isFinal = mContext->refusals > kCatchableRefusals;
    return false;
}

void Machine::pause(Wait& wait, std::chrono::steady_clock::time_point until) {
    noteRegistersInUse();
    if (mHost.pause)
        mHost.pause(*this, wait, until);
    else
        wait.pause(until);
}

/// Tells the collector which registers are in use. During a callback another thread may start a collection.
void Machine::noteRegistersInUse() {
    if (mContext->frames.empty())
        return;
    const Frame& frame = mContext->frames.back();
    mContext->stackTop = frame.registers + frame.handler->code->frameSize;
}

Value Machine::send(const EventName& command, Value direct, std::span<const Argument> arguments, bool continues) {
    noteRegistersInUse();
    std::deque<Heap::Root> roots;
    roots.emplace_back(mHeap, direct);
    for (const Argument& argument : arguments)
        roots.emplace_back(mHeap, argument.value);
    const Ticker::Rest rest(this);
    return mHost.send(*this, command, direct, arguments, continues);
}

Script* Machine::parentOf(Script* script) {
    if (script == mAppleScript)
        return nullptr;
    if (script->parent.isUndefined())
        return mAppleScript;
    return as<Script>(script->parent);
}

Value Machine::taken(Value slot, Script* holder) {
    Handler* handler = as<Handler>(slot);
    return handler && !handler->home ? Value::object(mHeap.make<Handler>(handler, holder)) : slot;
}

Value* Machine::findSlot(Script* script, Value name, Script** holder) {
    for (int limit = 0; script && limit < 1000; ++limit) { // bounded, because a script may have made a child its parent
        if (Value* slot = script->find(name)) {
            if (holder)
                *holder = script;
            return slot;
        }
        script = parentOf(script);
    }
    return nullptr;
}

Handler* Machine::findHandler(Script* script, Value name, Script** holder) {
    Script* found = nullptr;
    const Value* slot = script ? findSlot(script, name, &found) : nullptr;
    if (holder)
        *holder = found;
    if (const EventName* event = as<EventName>(name); event && found && event->eventID == "oapp"_4cc && script->isDefinedWithin(found))
        return nullptr;
    return slot ? as<Handler>(*slot) : nullptr;
}

/// One run of the interpreter, started from outside or by native code inside another run. While another thread has its turn, the run's
/// context is not the machine's current one.
class Machine::Run {
public:
    explicit Run(Machine& machine) : mMachine(machine), mContext(*machine.mContext), mTop(mContext.stackTop) {
        if (mContext.nestedRuns++ == 0) {
            mContext.refusals = 0;
            Ticker::shared().add(&mMachine);
            mMachine.mHeap.keepReserve();
        }
        if (!mContext.frames.empty()) {
            const Frame& frame = mContext.frames.back();
            mContext.stackTop = std::max(mContext.stackTop, frame.registers + frame.handler->code->frameSize);
        }
    }
    ~Run() {
        mContext.stackTop = mTop;
        if (--mContext.nestedRuns == 0)
            Ticker::shared().remove(&mMachine);
    }
    bool isTooDeep() const { return mContext.nestedRuns > kMaximumNestedRuns; }

private:
    Machine& mMachine;
    ExecutionContext& mContext;
    Value* mTop;
};

Value Machine::callHandler(Script* script, Value handlerName, std::span<const Value> arguments) {
    Script* holder = nullptr;
    Handler* handler = findHandler(script, handlerName, &holder);
    if (!handler)
        return raise(errAEEventNotHandled, language::messageFor(errAEEventNotHandled));
    return callHandler(holder, Value::object(script), handler, arguments, Value(), {});
}

Value Machine::callHandler(Script* owner, Value me, Handler* handler, std::span<const Value> positional, Value direct,
                           std::span<const Argument> labels) {
    Run run(*this);
    if (run.isTooDeep())
        return raise(errOSAStackOverflow, language::messageFor(errOSAStackOverflow));
    Interpreter interpreter(*this);
    mInterrupted.store(true, std::memory_order_relaxed); // so that the host is asked once at the beginning
    if (!interpreter.pushFrame({handler, owner, me}, mContext->stackTop, true))
        return Value::failure();
    const Frame& frame = mContext->frames.back();
    const bool isCommand = !direct.isUndefined() || !labels.empty();
    if (!interpreter.bind(positional, direct, labels, isCommand)) {
        mContext->frames.pop_back();
        return Value::failure();
    }
    mContext->stackTop = frame.registers + frame.handler->code->frameSize;
    return interpreter.run();
}

Value Machine::makeScript(Handler* initialiser, Value name, const Object* tree, std::shared_ptr<ObjectStore> store, Script* parent) {
    Run run(*this);
    if (run.isTooDeep())
        return raise(errOSAStackOverflow, language::messageFor(errOSAStackOverflow));
    Interpreter interpreter(*this);
    Script* script = mHeap.make<Script>();
    script->name = name;
    script->tree = tree;
    script->store = std::move(store);
    if (parent)
        script->parent = Value::object(parent);
    for (Value slotName : codeOf(initialiser)->localNames)
        script->layout->add(slotName);
    script->slots.resize(script->layout->names.size());
    if (!interpreter.pushFrame({initialiser, script, Value::object(script)}, mContext->stackTop, true))
        return Value::failure();
    mContext->frames.back().scope = script;
    return interpreter.run();
}

} // namespace quoddle::machine
