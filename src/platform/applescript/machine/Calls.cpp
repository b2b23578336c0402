// SPDX-License-Identifier: MIT
// The interpreter's calls, parameters, errors and loops.
#include "platform/applescript/image/Block.h"
#include "platform/applescript/language/Coercion.h"
#include "platform/applescript/language/Commands.h"
#include "platform/applescript/language/Display.h"
#include "platform/applescript/language/Operators.h"
#include "platform/applescript/language/References.h"
#include "platform/applescript/machine/Interpreter.h"
#include "platform/applescript/machine/StoredCode.h"
#include "platform/base/Text.h"

#include <algorithm>
#include <cstdio>
#include <new>

namespace quoddle::machine {

namespace {

std::u16string nameOf(Value name) {
    if (const Symbol* symbol = as<Symbol>(name))
        return utf16FromUTF8(symbol->spelling);
    return language::termFor(name);
}

} // namespace

Value Interpreter::run() {
    while (true) {
        try {
            return loop(this, nullptr);
        } catch (const Heap::TooLong&) {
            language::tooLarge(mMachine);
        } catch (const std::bad_alloc&) {
            mMachine.raiseOutOfMemory();
        }
        if (!unwind())
            return Value::failure();
    }
}

// --- Safe points

bool Interpreter::safePoint() {
    if (mMachine.mHeap.wantsCollection()) {
        mMachine.noteRegistersInUse();
        mMachine.mHeap.collect();
    }
    return !mMachine.mInterrupted.load(std::memory_order_relaxed) || mMachine.yield();
}

// --- Finding

/// The script that has a handler of the name, from `first` on upwards; null when there is none. A property may hold a handler of another
/// script.
Script* Interpreter::findHandler(Script* first, Value name, Handler*& handler) {
    Script* holder = nullptr;
    handler = mMachine.findHandler(first, name, &holder);
    return handler && handler->home ? handler->home : handler ? holder : nullptr;
}

bool Interpreter::findCallee(Value target, Value name, SiteCache* cache, Callee& callee) {
    Script* script = as<Script>(target);
    callee.owner = findHandler(script, name, callee.handler);
    callee.me = target;
    if (!callee.owner) {
        mMachine.raise(errAEEventNotHandled,
                       language::inMessage(mMachine, target) + u" doesn’t understand the “" + nameOf(name) + u"” message.", target);
        return false;
    }
    if (const std::uint32_t slot = cache ? script->layout->find(name) : Layout::kNone; slot != Layout::kNone)
        *cache = {script->layout->id, slot};
    return true;
}

Value* Interpreter::scopeVariable(std::size_t depth, std::size_t index, Script** holder) {
    const Frame& frame = mMachine.mContext->frames.back();
    HeapObject* scope = frame.scope;
    if (!scope) { // the handler's locals are in registers: the first scope outwards is its script
        if (depth == 0)
            return nullptr;
        scope = frame.owner;
        --depth;
    }
    for (; depth > 0 && scope; --depth)
        scope = scopeAround(scope);
    if (!scope)
        return nullptr;
    if (holder)
        *holder = scope->type == HeapType::Script ? static_cast<Script*>(scope) : nullptr;
    std::vector<Value>& values =
        scope->type == HeapType::Script ? static_cast<Script*>(scope)->slots : static_cast<Environment*>(scope)->values;
    return index < values.size() ? &values[index] : nullptr;
}

Value Interpreter::undefinedVariable(Value name) {
    if (name.isUndefined())
        return mMachine.raise(OSAUndefinedVariable, u"The variable is not defined.");
    return mMachine.raise(OSAUndefinedVariable, u"The variable " + nameOf(name) + u" is not defined.", name);
}

/// The outermost script around another one, which has the globals.
static Script* outermost(Script* script) {
    HeapObject* scope = script;
    for (int limit = 0; scope && limit < kMaximumScopes; ++limit, scope = scopeAround(scope))
        if (scope->type == HeapType::Script)
            script = static_cast<Script*>(scope);
    return script;
}

Value Interpreter::getGlobal(Value name, SiteCache& cache) {
    const Frame& frame = mMachine.mContext->frames.back();
    Script* me = as<Script>(frame.me);
    Script* top = outermost(frame.owner);
    Script* holder = nullptr;
    Value* slot = top ? top->find(name) : nullptr;
    if (slot)
        holder = top;
    else if (me)
        slot = mMachine.findSlot(me, name, &holder);
    if (!slot || slot->isUndefined())
        return undefinedVariable(name);
    if (holder == me && top == me) // else the outermost script may get the name later and then goes first
        cache = {me->layout->id, me->layout->find(name)};
    return mMachine.taken(*slot, holder);
}

bool Interpreter::setGlobal(Value name, Value value, SiteCache& cache) {
    const Frame& frame = mMachine.mContext->frames.back();
    Script* me = as<Script>(frame.me);
    Script* top = outermost(frame.owner);
    Value* slot = top->find(name);
    if (!slot && me)
        slot = mMachine.findSlot(me, name);
    if (slot)
        *slot = value;
    else
        top->set(name, value);
    if (top == me)
        cache = {me->layout->id, me->layout->find(name)};
    return true;
}

// --- Entering

bool Interpreter::enter(const Callee& callee, Value* registers, std::size_t given, bool isEntry) {
    std::vector<Value> positional(registers, registers + given);
    if (!pushFrame(callee, registers, isEntry))
        return false;
    if (bind(positional, Value(), {}, false))
        return true;
    mMachine.mContext->frames.pop_back();
    return false;
}

bool Interpreter::pushFrame(const Callee& callee, Value* registers, bool isEntry) {
    Code* code = mMachine.codeOf(callee.handler);
    auto& frames = mMachine.mContext->frames;
    if (frames.size() >= Machine::kMaximumCalls || registers + code->frameSize > mMachine.mContext->stackEnd) {
        mMachine.raise(errOSAStackOverflow, u"Stack overflow.");
        return false;
    }
    Frame frame;
    frame.handler = callee.handler;
    frame.next = code->instructions.data();
    frame.registers = registers;
    frame.owner = callee.owner;
    frame.me = frame.it = callee.me;
    frame.isEntry = isEntry;
    if (!frames.empty()) {
        frame.considering = frames.back().considering;
        frame.timeout = frames.back().timeout;
    }
    if (code->hasScope && !code->isInitialiser) {
        Environment* environment = mMachine.mHeap.make<Environment>(callee.owner, code->localCount);
        environment->names = code->scopeNames;
        frame.scope = environment;
    }
    std::fill_n(registers, code->frameSize, Value());
    frames.push_back(frame);
    return true;
}

bool Interpreter::setLocal(std::size_t index, Value value) {
    const Frame& frame = mMachine.mContext->frames.back();
    if (index >= frame.handler->code->localCount)
        return true;
    if (frame.scope && frame.scope->type == HeapType::Environment)
        static_cast<Environment*>(frame.scope)->values[index] = value;
    else
        frame.registers[index] = value;
    return true;
}

bool Interpreter::setLocal(const Object* name, Value value) {
    const Frame& frame = mMachine.mContext->frames.back();
    const auto& names = frame.handler->code->localNames;
    const Value key = mMachine.literal(name, frame.handler->store);
    auto local = std::find(names.begin(), names.end(), key);
    return local == names.end() || setLocal(static_cast<std::size_t>(local - names.begin()), value);
}

/// Binds a parameter, or a list or record pattern of parameters.
bool Interpreter::bindPattern(const Object* pattern, Value value) {
    const Frame& frame = mMachine.mContext->frames.back();
    if (pattern->kind == ObjectKind::Identifier || pattern->isCode(CodeTag::Class))
        return setLocal(pattern, value);
    if (pattern->isBlock(block::OptionalParameter) && !pattern->children.empty())
        return setLocal(pattern->children[0], value);
    const bool isVector = pattern->isBlock(block::List) && pattern->children.size() == 2;
    if (pattern->kind == ObjectKind::List || isVector) {
        auto parts = isVector ? pattern->children[1]->children : pattern->children;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const Value item = language::getElement(mMachine, value, Value::code("cobj"_4cc),
                                                    Value::integer(static_cast<std::int32_t>(i + 1)), Evaluate::Fully);
            if (item.isFailure() || !bindPattern(parts[i], item))
                return false;
        }
        return true;
    }
    if (pattern->kind == ObjectKind::Record) {
        for (std::size_t i = 0; i + 1 < pattern->children.size(); i += 2) {
            const Value part =
                language::getProperty(mMachine, value, mMachine.literal(pattern->children[i], frame.handler->store), Evaluate::Fully);
            if (part.isFailure() || !bindPattern(pattern->children[i + 1], part))
                return false;
        }
        return true;
    }
    return true;
}

bool Interpreter::bind(std::span<const Value> positional, Value direct, std::span<const Argument> labels, bool isCommand) {
    const Frame& frame = mMachine.mContext->frames.back();
    const Handler& handler = *frame.handler;
    const Object& block = *handler.source;
    if (block.children.size() < block::kHandlerChildren)
        return true; // a damaged handler has code that raises the error
    const auto missing = [&](Value label) {
        const Value name = mMachine.literal(block.children[block::kName], handler.store);
        mMachine.raise(errAEDescNotFound, u"The " + nameOf(label) + u" parameter is missing for " + nameOf(name) + u".");
        return false;
    };
    const Object* parameters = block.children[block::kParameters];
    const bool isVector = parameters->isBlock(block::List) && parameters->children.size() == 2;
    if (isVector && !isCommand) {
        auto parts = parameters->children[1]->children;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            if (i < positional.size()) {
                if (!bindPattern(parts[i], positional[i]))
                    return false;
            } else if (parts[i]->isBlock(block::OptionalParameter) && parts[i]->children.size() > 2) {
                if (!setLocal(parts[i]->children[0], mMachine.literal(parts[i]->children[2], handler.store)))
                    return false;
            } else {
                return missing(
                    mMachine.literal(parts[i]->kind == ObjectKind::Identifier ? parts[i] : block.children[block::kName], handler.store));
            }
        }
    } else if (!parameters->isNil() && !(parameters->kind == ObjectKind::List && parameters->children.empty())) {
        // A handler called without its direct parameter leaves the parameter unset, as "on run argv" of a script that is simply run.
        const Value given = isCommand || positional.empty() ? direct : positional[0];
        if (!given.isUndefined() && !bindPattern(parameters, given))
            return false;
    }
    // A command may come without the parameters that its handler names; a call of a handler that the script has named may not.
    const bool mayMiss = isCommand && is<EventName>(mMachine.literal(block.children[block::kName], handler.store));
    const Object* wanted = block.children[block::kLabels];
    for (std::size_t i = 0; wanted->kind == ObjectKind::Record && i + 1 < wanted->children.size(); i += 2) {
        const Value label = mMachine.literal(wanted->children[i], handler.store);
        const Object* variable = wanted->children[i + 1];
        auto argument = std::find_if(labels.begin(), labels.end(), [label](const Argument& candidate) { return candidate.label == label; });
        if (argument != labels.end()) {
            if (!bindPattern(variable, argument->value))
                return false;
        } else if (variable->isBlock(block::OptionalParameter) && variable->children.size() > 2) {
            if (!setLocal(variable->children[0], mMachine.literal(variable->children[2], handler.store)))
                return false;
        } else if (!label.isCode() || !mayMiss) {
            return missing(label);
        }
    }
    return true;
}

// --- Calls and commands

bool Interpreter::callTarget(const Instruction& instruction, Value* registers, bool continues, Value& result, bool& entered) {
    Frame& frame = mMachine.mContext->frames.back();
    const Value name = frame.handler->code->constants[instruction.c];
    Value target = registers[instruction.a];
    if (continues) {
        target = Value::object(frame.owner);
    } else if (Specifier* specifier = as<Specifier>(target); specifier && language::isLocal(target)) {
        target = language::follow(mMachine, target);
        if (target.isFailure())
            return false;
    }
    if (!is<Script>(target)) {
        result = language::callElsewhere(mMachine, target, name, {registers + instruction.a + 1, instruction.b});
        return !result.isFailure();
    }
    Callee callee;
    if (continues) {
        Script* parent = mMachine.parentOf(frame.owner);
        callee.owner = findHandler(parent, name, callee.handler);
        callee.me = frame.me;
        if (!callee.owner) {
            mMachine.raise(-2784, u"Can’t continue " + nameOf(name) + u".", name);
            return false;
        }
    } else if (!findCallee(target, name, nullptr, callee)) {
        return false;
    }
    entered = enter(callee, registers + instruction.a + 1, instruction.b, false);
    return entered;
}

bool Interpreter::sendCommand(const Instruction& instruction, Value* registers, bool continues, Value& result, bool& entered) {
    Frame& frame = mMachine.mContext->frames.back();
    const Value name = frame.handler->code->constants[instruction.c];
    const Value* labelsAt = registers + instruction.a + 1;
    const Value direct = continues ? registers[instruction.a + 1 + instruction.b] : registers[instruction.a];
    std::vector<Argument> labels;
    for (std::size_t i = 0; i + 1 < instruction.b; i += 2)
        labels.push_back({labelsAt[i], labelsAt[i + 1]});

    // Handlers of the target, or else of the running script, come before the language's commands.
    Script* target = as<Script>(direct);
    if (!target)
        target = as<Script>(frame.it);
    Script* first = target ? target : as<Script>(frame.me);
    const bool forOther = !target && !is<Script>(frame.it);
    Callee callee;
    if (continues)
        callee.owner = findHandler(mMachine.parentOf(frame.owner), name, callee.handler);
    else if (!forOther)
        callee.owner = findHandler(first, name, callee.handler);
    callee.me = continues ? frame.me : Value::object(first);
    if (callee.owner && callee.handler) {
        const bool isSelf = direct == Value::object(first) || direct == frame.it;
        if (!pushFrame(callee, registers + instruction.a + 2 + instruction.b, false))
            return false;
        if (!bind({}, isSelf ? Value() : direct, labels, true)) {
            mMachine.mContext->frames.pop_back();
            return false;
        }
        entered = true;
        return true;
    }
    result = language::performCommand(mMachine, name, direct, labels, continues);
    return !result.isFailure();
}

// --- Errors

bool Interpreter::unwind() {
    auto& frames = mMachine.mContext->frames;
    ScriptError& error = mMachine.mContext->error;
    while (true) {
        Frame& frame = frames.back();
        const Code& code = *frame.handler->code;
        const auto at = static_cast<std::uint32_t>(frame.next - code.instructions.data());
        // A library's source says nothing to the user who runs another one: the place is the innermost in the source that runs.
        const bool isInSourceThatRuns = frame.handler->store == frames.front().handler->store;
        if (!error.handler || (isInSourceThatRuns && !error.isInSourceThatRuns)) {
            error.handler = frame.handler->source;
            error.offset = code.offsetOf(at);
            error.isInSourceThatRuns = isInSourceThatRuns;
        }
        for (const Code::TryRegion& region : code.tries)
            if (at >= region.begin && at < region.end && !error.isFinal) {
                frame.next = code.instructions.data() + region.handler;
                return true;
            }
        const bool isEntry = frame.isEntry;
        frames.pop_back();
        if (isEntry)
            return false;
    }
}

void Interpreter::raiseFrom(Value* registers, std::size_t count) {
    ScriptError raised;
    raised.number = errOSAGeneralError;
    raised.message = registers[count];
    for (std::size_t i = 0; i + 1 < count; i += 2) {
        const Value value = registers[i + 1];
        if (value.isMissing())
            continue;
        switch (registers[i].isCode() ? registers[i].asCode() : 0) {
        case "errn"_4cc: {
            std::int64_t number;
            if (!language::wholeOf(mMachine, value, number))
                return; // an error in the parameters replaces the error to be raised
            raised.number = static_cast<OSStatus>(number);
            break;
        }
        case "ptlr"_4cc:
            raised.partialResult = value;
            break;
        case "erob"_4cc:
            raised.offending = value;
            break;
        case "errt"_4cc:
            raised.expectedType = value;
            break;
        default:
            break;
        }
    }
    if (!raised.message.isUndefined() && !is<Text>(raised.message)) {
        raised.message = language::coerce(mMachine, raised.message, Value::code("ctxt"_4cc));
        if (raised.message.isFailure())
            return;
    }
    if (raised.message.isUndefined()) {
        const Value object = raised.offending.isUndefined() ? mMachine.mContext->frames.back().me : raised.offending;
        const Value type = raised.expectedType.isUndefined() ? Value::code("cobj"_4cc) : raised.expectedType;
        const std::u16string text =
            language::messageFor(raised.number, language::inMessage(mMachine, object), language::inMessage(mMachine, type));
        raised.message = Value::object(mMachine.mHeap.text(text));
    }
    mMachine.mContext->error = raised;
}

/// Binds the parts of the error to the variables of a pattern. False when a part differs from a constant in the pattern.
bool Interpreter::matchError(const Object* pattern, const Value& messageName) {
    const ScriptError error = mMachine.mContext->error;
    const Frame& frame = mMachine.mContext->frames.back();
    const auto store = frame.handler->store;
    const auto partOf = [&](FourCharCode code) {
        switch (code) {
        case "errn"_4cc:
            return Value::integer(error.number);
        case "ptlr"_4cc:
            return error.partialResult.isUndefined() ? Value::object(mMachine.mHeap.list()) : error.partialResult;
        // QUIRK: an error without an offending object and type gives the script and its class; handlers that name all parts rely on values
        case "erob"_4cc:
            return error.offending.isUndefined() ? frame.me : error.offending;
        case "errt"_4cc:
            return error.expectedType.isUndefined() ? Value::code("cobj"_4cc) : error.expectedType;
        default:
            return Value();
        }
    };
    auto entries = pattern->kind == ObjectKind::Record ? pattern->children : std::span<Object*>();
    for (std::size_t i = 0; i + 1 < entries.size(); i += 2)
        if (entries[i + 1]->kind != ObjectKind::Identifier &&
            !language::areEqual(mMachine, partOf(entries[i]->code()), mMachine.literal(entries[i + 1], store)))
            return false;
    for (std::size_t i = 0; i + 1 < entries.size(); i += 2)
        if (entries[i + 1]->kind == ObjectKind::Identifier)
            setLocal(entries[i + 1], partOf(entries[i]->code()));
    const auto& names = frame.handler->code->localNames;
    auto local = std::find(names.begin(), names.end(), messageName);
    if (!messageName.isUndefined() && local != names.end())
        setLocal(static_cast<std::size_t>(local - names.begin()), error.message);
    return true;
}

bool Interpreter::catchError(const Value* saved, Value messageName, const Object* pattern) {
    Frame& frame = mMachine.mContext->frames.back();
    frame.it = saved[0];
    if (saved[1].isInteger())
        frame.considering = static_cast<std::uint32_t>(saved[1].asInteger());
    if (saved[2].isReal())
        frame.timeout = saved[2].asReal();
    if (!matchError(pattern, messageName))
        return false; // the current error is raised again
    mMachine.mContext->error = ScriptError();
    return true;
}

// --- Loops

Interpreter::Turn Interpreter::nextInRange(Value* loop, Value& variable) {
    for (int i = 0; i < 3; ++i) {
        if (loop[i].isNumber())
            continue;
        const Value number = language::coerce(mMachine, loop[i], Value::code("nmbr"_4cc));
        if (number.isFailure())
            return Turn::Failed;
        loop[i] = number;
    }
    const double from = loop[0].asNumber(), to = loop[1].asNumber(), by = loop[2].asNumber();
    if (by >= 0 ? from > to : from < to)
        return Turn::Done;
    variable = loop[0];
    const Value following = language::add(mMachine, loop[0], loop[2]);
    if (following.isFailure())
        return Turn::Failed;
    loop[0] = following;
    return Turn::Next;
}

Interpreter::Turn Interpreter::nextInCollection(Value* loop, Value& variable) {
    if (!loop[1].isInteger() || !loop[2].isInteger())
        return Turn::Done;
    const std::int32_t index = loop[2].asInteger();
    if (index > loop[1].asInteger())
        return Turn::Done;
    Specifier* item = mMachine.mHeap.make<Specifier>(Specifier::Form::Element, loop[0], Value::code("cobj"_4cc), loop[2], Value());
    item->flags = Specifier::kIsReference;
    variable = Value::object(item);
    loop[2] = Value::integer(index + 1);
    return Turn::Next;
}

Interpreter::Turn Interpreter::nextTime(Value* loop) {
    if (!loop[0].isNumber()) {
        const Value limit = language::coerce(mMachine, loop[0], Value::code("nmbr"_4cc));
        if (limit.isFailure())
            return Turn::Failed;
        loop[0] = limit;
    }
    if (loop[1].asNumber() > loop[0].asNumber())
        return Turn::Done;
    loop[1] = loop[1].isInteger() && fitsInteger(std::int64_t(loop[1].asInteger()) + 1) ? Value::integer(loop[1].asInteger() + 1)
                                                                                        : Value::real(loop[1].asNumber() + 1);
    return Turn::Next;
}

// --- Scopes and definitions

void Interpreter::consider(Value considered, Value ignored) {
    static constexpr struct {
        FourCharCode code;
        std::uint32_t bit;
    } kAttributes[] = {
        {"case"_4cc, kConsiderCase},    {"diac"_4cc, kConsiderDiacriticals},   {"whit"_4cc, kConsiderWhiteSpace},
        {"hyph"_4cc, kConsiderHyphens}, {"expa"_4cc, kConsiderExpansion},      {"punc"_4cc, kConsiderPunctuation},
        {"rmte"_4cc, kConsiderReplies}, {"nume"_4cc, kConsiderNumericStrings},
    };
    Frame& frame = mMachine.mContext->frames.back();
    const auto apply = [&](Value list, bool on) {
        const List* attributes = as<List>(list);
        for (std::uint32_t i = 0; attributes && i < attributes->count; ++i)
            for (const auto& attribute : kAttributes)
                if (attributes->items[i].asCode() == attribute.code)
                    frame.considering = on ? frame.considering | attribute.bit : frame.considering & ~attribute.bit;
    };
    apply(considered, true);
    apply(ignored, false);
}

bool Interpreter::defineScript(const Instruction& instruction, Value* registers) {
    const Frame frame = mMachine.mContext->frames.back();
    const Code& code = *frame.handler->code;
    Handler* initialiser = as<Handler>(code.constants[instruction.c]);
    Code* inner = mMachine.codeOf(initialiser);
    Script* script = mMachine.mHeap.make<Script>();
    script->name = registers[instruction.a];
    // Code counts the scopes outwards, so a handler whose locals nobody captured needs an empty one.
    script->outer = frame.scope ? frame.scope : mMachine.mHeap.make<Environment>(frame.owner, 0);
    script->parent = Value::object(frame.owner); // the default, until the definition declares another parent
    if (const Stored* tree = as<Stored>(code.constants[instruction.b]))
        script->tree = tree->object;
    script->store = initialiser->store;
    for (Value name : inner->localNames)
        script->layout->add(name);
    script->slots.resize(script->layout->names.size());
    Callee callee{initialiser, script, Value::object(script)};
    if (!enter(callee, registers + instruction.a + 1, 0, false))
        return false;
    mMachine.mContext->frames.back().scope = script;
    return true;
}

void Interpreter::defineHandler(const Instruction& instruction, Value* registers) {
    registers[instruction.a] = mMachine.mContext->frames.back().handler->code->constants[instruction.b];
}

bool Interpreter::defineParent(Value value, Value property) {
    Frame& frame = mMachine.mContext->frames.back();
    Script* script = frame.scope && frame.scope->type == HeapType::Script ? static_cast<Script*>(frame.scope) : nullptr;
    if (!script)
        return true;
    if (property == Value::code("pare"_4cc))
        return language::setParent(mMachine, script, value);
    script->set(property, value);
    return true;
}

void Interpreter::raiseCorruption() {
    std::u16string message = u"Some data could not be read.";
    const auto parts = mMachine.mContext->frames.back().handler->source->children;
    const auto unknown = parts.size() > block::kCode ? unknownInstruction(parts[block::kCode]->bytes) : std::nullopt;
    if (unknown) {
        char text[64];
        std::snprintf(text, sizeof text, " (Unknown instruction 0x%02X at byte %zu.)", unknown->code, unknown->offset);
        message += utf16FromUTF8(text);
    }
    mMachine.raise(errOSACorruptData, message);
}

} // namespace quoddle::machine
