// SPDX-License-Identifier: MIT
// The instruction loop. Calls, errors and the turns of loops are in Calls.cpp.
#include "platform/applescript/machine/Interpreter.h"

#include "platform/applescript/language/Coercion.h"
#include "platform/applescript/language/Operators.h"
#include "platform/applescript/language/References.h"

#pragma GCC diagnostic ignored "-Wpedantic" // the loop jumps to addresses of labels, a GNU extension

namespace quoddle::machine {

const void* const* Interpreter::labels() {
    static const void* const* const kLabels = [] {
        const void* const* labels = nullptr;
        loop(nullptr, &labels);
        return labels;
    }();
    return kLabels;
}

using language::Relation;

// clang-format off
#define NEXT() do { ++pc; goto *pc->go; } while (0)
#define GO(instruction) do { pc = (instruction); goto *pc->go; } while (0)
#define SAVE() (context.frames.back().next = pc)
// SAVE comes before each operation in language/, because that may run script code, look at the frames, or raise.
#define STORE_OR_RAISE(expression) do { SAVE(); const Value value_ = (expression); if (value_.isFailure()) goto raised; r[pc->a] = value_; NEXT(); } while (0)
#define CHECK_OR_RAISE(expression) do { SAVE(); if (!(expression)) goto raised; NEXT(); } while (0)
// A call by way of `find`, which either enters a frame or has the result already.
#define CALL(find, continues) {                                                             \
    SAVE();                                                                                 \
    if (self->isSafePointDue() && !self->safePoint()) goto raised;                          \
    Value result;                                                                           \
    bool entered = false;                                                                   \
    if (!self->find(*pc, r, continues, result, entered)) goto raised;                       \
    if (entered) goto reload;                                                               \
    r[pc->a] = result;                                                                      \
    NEXT();                                                                                 \
}
// clang-format on

Value Interpreter::loop(Interpreter* self, const void* const** labels) {
    static const void* const kLabels[] = {
#define QUODDLE_INSTRUCTION(name) &&op_##name,
        QUODDLE_INSTRUCTIONS(QUODDLE_INSTRUCTION)
#undef QUODDLE_INSTRUCTION
    };
    if (labels) {
        *labels = kLabels;
        return {};
    }

    Machine& machine = self->mMachine;
    ExecutionContext& context = *machine.mContext; // a run keeps its context, even when other threads get their turn
    const Instruction* pc;
    const Instruction* base;
    const Value* k;
    Value* r;

reload : {
    const Frame& frame = context.frames.back();
    const Code& code = *frame.handler->code;
    base = code.instructions.data();
    k = code.constants.data();
    r = frame.registers;
    pc = frame.next;
}
    goto * pc->go;

op_Move:
    r[pc->a] = r[pc->b];
    NEXT();
op_LoadConstant:
    r[pc->a] = k[pc->b];
    NEXT();
op_LoadMe:
    r[pc->a] = context.frames.back().me;
    NEXT();
op_LoadIt:
    r[pc->a] = context.frames.back().it;
    NEXT();
op_CheckVariable:
    if (r[pc->a].isUndefined()) {
        SAVE();
        self->undefinedVariable(k[pc->b]);
        goto raised;
    }
    NEXT();
op_CheckResult:
    if (r[pc->a].isUndefined()) {
        SAVE();
        machine.raise(-2763, u"No result was returned from some part of this expression.");
        goto raised;
    }
    NEXT();

    // Arithmetic on whole numbers that stay in range and on reals is done here, all else in language/.
#define ARITHMETIC(name, integers, reals, slow, right)                                                                                     \
    op_##name : {                                                                                                                          \
        const Value x = r[pc->b], y = right;                                                                                               \
        if (Value::areIntegers(x, y)) {                                                                                                    \
            const std::int64_t whole = integers;                                                                                           \
            if (fitsInteger(whole)) {                                                                                                      \
                r[pc->a] = Value::integer(static_cast<std::int32_t>(whole));                                                               \
                NEXT();                                                                                                                    \
            }                                                                                                                              \
        } else if (x.isNumber() && y.isNumber()) {                                                                                         \
            const double result = reals;                                                                                                   \
            if (std::isfinite(result)) {                                                                                                   \
                r[pc->a] = Value::real(result);                                                                                            \
                NEXT();                                                                                                                    \
            }                                                                                                                              \
        }                                                                                                                                  \
        STORE_OR_RAISE(language::slow(machine, x, y));                                                                                     \
    }
    ARITHMETIC(Add, std::int64_t(x.uncheckedInteger()) + y.uncheckedInteger(), x.asNumber() + y.asNumber(), add, r[pc->c])
    ARITHMETIC(AddConstant, std::int64_t(x.uncheckedInteger()) + y.uncheckedInteger(), x.asNumber() + y.asNumber(), add, k[pc->c])
    ARITHMETIC(Subtract, std::int64_t(x.uncheckedInteger()) - y.uncheckedInteger(), x.asNumber() - y.asNumber(), subtract, r[pc->c])
    ARITHMETIC(SubtractConstant, std::int64_t(x.uncheckedInteger()) - y.uncheckedInteger(), x.asNumber() - y.asNumber(), subtract, k[pc->c])
    ARITHMETIC(Multiply, std::int64_t(x.uncheckedInteger()) * y.uncheckedInteger(), x.asNumber() * y.asNumber(), multiply, r[pc->c])
    ARITHMETIC(MultiplyConstant, std::int64_t(x.uncheckedInteger()) * y.uncheckedInteger(), x.asNumber() * y.asNumber(), multiply, k[pc->c])
#undef ARITHMETIC
op_Divide : {
    const Value x = r[pc->b], y = r[pc->c];
    if (x.isNumber() && y.isNumber()) {
        const double result = x.asNumber() / y.asNumber();
        if (std::isfinite(result)) {
            r[pc->a] = Value::real(result);
            NEXT();
        }
    }
    STORE_OR_RAISE(language::divide(machine, x, y));
}
#define DIVISION(name, operation, slow, right)                                                                                             \
    op_##name : {                                                                                                                          \
        const Value x = r[pc->b], y = right;                                                                                               \
        if (Value::areIntegers(x, y) && y.uncheckedInteger() > 0) {                                                                        \
            r[pc->a] = Value::integer(x.uncheckedInteger() operation y.uncheckedInteger());                                                \
            NEXT();                                                                                                                        \
        }                                                                                                                                  \
        STORE_OR_RAISE(language::slow(machine, x, y));                                                                                     \
    }
    DIVISION(Quotient, /, quotient, r[pc->c])
    DIVISION(QuotientConstant, /, quotient, k[pc->c])
    DIVISION(Remainder, %, remainder, r[pc->c])
    DIVISION(RemainderConstant, %, remainder, k[pc->c])
#undef DIVISION
op_Power:
    STORE_OR_RAISE(language::power(machine, r[pc->b], r[pc->c]));
op_Concatenate : {
    SAVE(); // for the error when there is no memory
    const Value x = r[pc->b], y = r[pc->c];
    if (const Text* left = as<Text>(x))
        if (const Text* right = as<Text>(y))
            if (Text* whole = machine.mHeap.concatenate(left, right)) {
                r[pc->a] = Value::object(whole);
                NEXT();
            }
    STORE_OR_RAISE(language::concatenate(machine, x, y));
}

// Comparisons, by themselves and together with the branch that follows them.
#define COMPARISON(name, operation)                                                                                                        \
    op_##name : {                                                                                                                          \
        const Value x = r[pc->b], y = r[pc->c];                                                                                            \
        if (Value::areIntegers(x, y)) {                                                                                                    \
            r[pc->a] = Value::boolean(x.uncheckedInteger() operation y.uncheckedInteger());                                                \
            NEXT();                                                                                                                        \
        }                                                                                                                                  \
        if (x.isNumber() && y.isNumber()) {                                                                                                \
            r[pc->a] = Value::boolean(x.asNumber() operation y.asNumber());                                                                \
            NEXT();                                                                                                                        \
        }                                                                                                                                  \
        STORE_OR_RAISE(language::compare(machine, Relation::name, x, y));                                                                  \
    }                                                                                                                                      \
    op_BranchUnless##name : {                                                                                                              \
        const Value x = r[pc->a], y = r[pc->b];                                                                                            \
        if (Value::areIntegers(x, y)) {                                                                                                    \
            if (x.uncheckedInteger() operation y.uncheckedInteger())                                                                       \
                NEXT();                                                                                                                    \
            GO(base + pc->target());                                                                                                       \
        }                                                                                                                                  \
        if (x.isNumber() && y.isNumber()) {                                                                                                \
            if (x.asNumber() operation y.asNumber())                                                                                       \
                NEXT();                                                                                                                    \
            GO(base + pc->target());                                                                                                       \
        }                                                                                                                                  \
        SAVE();                                                                                                                            \
        const Value truth = language::compare(machine, Relation::name, x, y);                                                              \
        if (truth.isFailure())                                                                                                             \
            goto raised;                                                                                                                   \
        if (truth.isTrue())                                                                                                                \
            NEXT();                                                                                                                        \
        GO(base + pc->target());                                                                                                           \
    }                                                                                                                                      \
    op_BranchUnless##name##Constant : {                                                                                                    \
        const Value x = r[pc->a], y = k[pc->b];                                                                                            \
        if (x.isInteger()) {                                                                                                               \
            if (x.uncheckedInteger() operation y.uncheckedInteger())                                                                       \
                NEXT();                                                                                                                    \
            GO(base + pc->target());                                                                                                       \
        }                                                                                                                                  \
        SAVE();                                                                                                                            \
        const Value truth = language::compare(machine, Relation::name, x, y);                                                              \
        if (truth.isFailure())                                                                                                             \
            goto raised;                                                                                                                   \
        if (truth.isTrue())                                                                                                                \
            NEXT();                                                                                                                        \
        GO(base + pc->target());                                                                                                           \
    }
    COMPARISON(Equal, ==)
    COMPARISON(NotEqual, !=)
    COMPARISON(Greater, >)
    COMPARISON(GreaterOrEqual, >=)
    COMPARISON(Less, <)
    COMPARISON(LessOrEqual, <=)
#undef COMPARISON
op_StartsWith:
    STORE_OR_RAISE(language::startsWith(machine, r[pc->b], r[pc->c]));
op_EndsWith:
    STORE_OR_RAISE(language::endsWith(machine, r[pc->b], r[pc->c]));
op_Contains:
    STORE_OR_RAISE(language::contains(machine, r[pc->b], r[pc->c]));
op_Negate : {
    const Value x = r[pc->b];
    if (x.isReal()) {
        r[pc->a] = Value::real(-x.asReal());
        NEXT();
    }
    STORE_OR_RAISE(language::negate(machine, x));
}
op_Not : {
    const Value x = r[pc->b];
    if (x.isBoolean()) {
        r[pc->a] = Value::boolean(x.isFalse());
        NEXT();
    }
    STORE_OR_RAISE(language::logicalNot(machine, x));
}
op_Coerce:
    STORE_OR_RAISE(language::coerce(machine, r[pc->b], r[pc->c]));

    // Jumps and loops.
op_Jump:
    GO(base + pc->target());
op_JumpBack:
    if (self->isSafePointDue()) {
        SAVE();
        if (!self->safePoint())
            goto raised;
    }
    GO(base + pc->target());
op_BranchIfFalse : {
    const Value x = r[pc->a];
    if (x.isTrue())
        NEXT();
    if (x.isFalse())
        GO(base + pc->target());
    SAVE();
    const int truth = language::truth(machine, x);
    if (truth < 0)
        goto raised;
    if (truth > 0)
        NEXT();
    GO(base + pc->target());
}
op_BranchIfTrue : {
    const Value x = r[pc->a];
    if (x.isFalse())
        NEXT();
    if (x.isTrue())
        GO(base + pc->target());
    SAVE();
    const int truth = language::truth(machine, x);
    if (truth < 0)
        goto raised;
    if (truth == 0)
        NEXT();
    GO(base + pc->target());
}
op_RepeatInRange : {
    Value* loop = r + pc->a;
    if (Value::areIntegers(loop[0], loop[1]) && loop[2].isInteger()) {
        const std::int32_t from = loop[0].uncheckedInteger(), to = loop[1].uncheckedInteger(), by = loop[2].uncheckedInteger();
        if (by >= 0 ? from > to : from < to)
            GO(base + pc->target());
        r[pc->b] = loop[0];
        const std::int64_t following = std::int64_t(from) + by;
        loop[0] =
            fitsInteger(following) ? Value::integer(static_cast<std::int32_t>(following)) : Value::real(static_cast<double>(following));
        NEXT();
    }
    SAVE();
    const Turn turn = self->nextInRange(loop, r[pc->b]);
    if (turn == Turn::Failed)
        goto raised;
    if (turn == Turn::Next)
        NEXT();
    GO(base + pc->target());
}
op_RepeatInCollection : {
    SAVE();
    const Turn turn = self->nextInCollection(r + pc->a, r[pc->b]);
    if (turn == Turn::Failed)
        goto raised;
    if (turn == Turn::Next)
        NEXT();
    GO(base + pc->target());
}
op_RepeatTimes : {
    SAVE();
    const Turn turn = self->nextTime(r + pc->a);
    if (turn == Turn::Failed)
        goto raised;
    if (turn == Turn::Next)
        NEXT();
    GO(base + pc->target());
}

    // Variables.
op_GetSlot : {
    const Script* owner = context.frames.back().owner;
    const std::size_t index = pc->b;
    if (index < owner->slots.size() && !owner->slots[index].isUndefined()) {
        r[pc->a] = owner->slots[index];
        if (is<Handler>(r[pc->a]))
            r[pc->a] = machine.taken(r[pc->a], const_cast<Script*>(owner));
        NEXT();
    }
    SAVE();
    self->undefinedVariable(index < owner->layout->names.size() ? owner->layout->names[index] : Value());
    goto raised;
}
op_SetSlot : {
    Script* owner = context.frames.back().owner;
    const std::size_t index = pc->b;
    if (index < owner->slots.size()) {
        owner->slots[index] = r[pc->a];
        NEXT();
    }
    SAVE();
    self->undefinedVariable(Value());
    goto raised;
}
op_GetScope : {
    Script* holder = nullptr;
    const Value* variable = self->scopeVariable(pc->b, pc->c, &holder);
    if (variable && !variable->isUndefined()) {
        r[pc->a] = holder && is<Handler>(*variable) ? machine.taken(*variable, holder) : *variable;
        NEXT();
    }
    SAVE();
    const auto& names = context.frames.back().handler->code->localNames;
    self->undefinedVariable(pc->b == 0 && pc->c < names.size() ? names[pc->c] : Value());
    goto raised;
}
op_SetScope : {
    if (Value* variable = self->scopeVariable(pc->b, pc->c)) {
        *variable = r[pc->a];
        NEXT();
    }
    SAVE();
    self->undefinedVariable(Value());
    goto raised;
}
op_GetGlobal : {
    Frame& frame = context.frames.back();
    SiteCache& cache = frame.handler->code->caches[pc->c];
    if (const Script* script = as<Script>(frame.me); script && script->layout->id == cache.layout) {
        r[pc->a] = script->slots[cache.slot];
        if (!r[pc->a].isUndefined() && !is<Handler>(r[pc->a]))
            NEXT();
    }
    STORE_OR_RAISE(self->getGlobal(k[pc->b], cache));
}
op_SetGlobal : {
    Frame& frame = context.frames.back();
    SiteCache& cache = frame.handler->code->caches[pc->c];
    if (Script* script = as<Script>(frame.me); script && script->layout->id == cache.layout) {
        script->slots[cache.slot] = r[pc->a];
        NEXT();
    }
    CHECK_OR_RAISE(self->setGlobal(k[pc->b], r[pc->a], cache));
}
op_GetResult:
    r[pc->a] = context.frames.back().result;
    NEXT();
op_SetResult:
    context.frames.back().result = r[pc->a];
    NEXT();

    // References.
op_MakeSpecifier:
    STORE_OR_RAISE(language::makeSpecifier(machine, static_cast<Specifier::Form>(pc->c), r + pc->b));
op_GetProperty : {
    const Value container = r[pc->b], key = k[pc->c];
    if (Record* record = as<Record>(container); record && pc->d != static_cast<std::uint16_t>(Evaluate::Never)) {
        if (const Record::Entry* entry = record->find(key)) {
            r[pc->a] = entry->value;
            NEXT();
        }
    }
    STORE_OR_RAISE(language::getProperty(machine, container, key, static_cast<Evaluate>(pc->d)));
}
op_BuildElement:
    STORE_OR_RAISE(language::getElement(machine, r[pc->b], k[pc->d], r[pc->c], Evaluate::Never));
op_GetItem : {
    const Value container = r[pc->b], index = r[pc->c];
    if (const List* list = as<List>(container); list && index.isInteger()) {
        const std::int32_t i = index.uncheckedInteger();
        if (i > 0 && static_cast<std::uint32_t>(i) <= list->count) {
            r[pc->a] = list->items[i - 1];
            NEXT();
        }
    }
    STORE_OR_RAISE(language::getElement(machine, container, k[pc->d], index, Evaluate::Fully));
}
op_GetElement:
    STORE_OR_RAISE(language::getElement(machine, r[pc->b], k[pc->d], r[pc->c], Evaluate::Fully));
op_GetElementLocally:
    STORE_OR_RAISE(language::getElement(machine, r[pc->b], k[pc->d], r[pc->c], Evaluate::Locally));
op_SetProperty : {
    const Value container = r[pc->a], key = k[pc->c];
    if (Record* record = as<Record>(container)) {
        if (Record::Entry* entry = record->find(key)) {
            entry->value = r[pc->b];
            NEXT();
        }
    }
    CHECK_OR_RAISE(language::setProperty(machine, container, key, r[pc->b]));
}
op_SetElement : {
    const Value container = r[pc->a], index = r[pc->b];
    if (List* list = as<List>(container); list && index.isInteger() && k[pc->d] == Value::code("cobj"_4cc)) {
        const std::int32_t i = index.uncheckedInteger();
        if (i > 0 && static_cast<std::uint32_t>(i) <= list->count) {
            if (list->isShared()) {
                SAVE();
                machine.mHeap.detach(list);
            }
            list->items[i - 1] = r[pc->c];
            NEXT();
        }
    }
    CHECK_OR_RAISE(language::setElement(machine, container, k[pc->d], index, r[pc->c]));
}
op_SetEnd : {
    SAVE();
    if (List* list = as<List>(r[pc->a]))
        if (machine.mHeap.append(list, r[pc->b]))
            NEXT();
    CHECK_OR_RAISE(language::setEnd(machine, r[pc->a], r[pc->b]));
}
op_SetSpecifier:
    CHECK_OR_RAISE(language::setSpecifier(machine, r[pc->c], r[pc->b]));
op_CopySpecifier : {
    SAVE();
    const Value copy = language::deepCopy(machine, r[pc->b]);
    if (copy.isFailure())
        goto raised;
    CHECK_OR_RAISE(language::setSpecifier(machine, r[pc->c], copy));
}
op_Evaluate:
    STORE_OR_RAISE(language::evaluate(machine, r[pc->b], Evaluate::Fully));
op_EvaluateLocally:
    STORE_OR_RAISE(language::evaluate(machine, r[pc->b], Evaluate::Locally));
op_MakeReference:
    STORE_OR_RAISE(language::makeReference(machine, r[pc->b]));
op_Clone:
    STORE_OR_RAISE(language::deepCopy(machine, r[pc->b]));
op_MakeList : {
    SAVE();
    List* list = machine.mHeap.list(pc->c);
    std::copy_n(r + pc->b, pc->c, list->items);
    list->count = pc->c;
    r[pc->a] = Value::object(list);
    NEXT();
}
op_MakeRecord : {
    SAVE();
    Record* record = machine.mHeap.record();
    record->entries.reserve(pc->c / 2);
    for (std::size_t i = 0; i + 1 < pc->c; i += 2) {
        if (Record::Entry* known = record->find(r[pc->b + i]))
            known->value = r[pc->b + i + 1];
        else
            record->entries.push_back({r[pc->b + i], r[pc->b + i + 1]});
    }
    r[pc->a] = Value::object(record);
    NEXT();
}
op_Count : {
    if (const List* list = as<List>(r[pc->b])) {
        r[pc->a] = Value::integer(static_cast<std::int32_t>(list->count));
        NEXT();
    }
    STORE_OR_RAISE(language::count(machine, r[pc->b]));
}

    // Calls.
op_CallMine : {
    Frame& frame = context.frames.back();
    SiteCache& cache = frame.handler->code->caches[pc->d];
    frame.next = pc;
    Callee callee;
    if (Script* script = as<Script>(frame.me); script && script->layout->id == cache.layout) {
        callee.handler = as<Handler>(script->slots[cache.slot]);
        callee.owner = callee.handler && callee.handler->home ? callee.handler->home : script;
        callee.me = frame.me;
    }
    if (!callee.handler && !self->findCallee(frame.me, k[pc->c], &cache, callee))
        goto raised;
    if (self->isSafePointDue() && !self->safePoint())
        goto raised;
    Code* code = machine.codeOf(callee.handler);
    Value* registers = r + pc->a + 1;
    if (code->isPositional && !code->hasScope && pc->b == code->positionalCount && context.frames.size() < Machine::kMaximumCalls &&
        registers + code->frameSize <= context.stackEnd) {
        const Frame& caller = context.frames.back();
        Frame called;
        called.handler = callee.handler;
        called.next = code->instructions.data();
        called.registers = registers;
        called.owner = callee.owner;
        called.me = called.it = callee.me;
        called.considering = caller.considering;
        called.timeout = caller.timeout;
        for (Value *value = registers + pc->b, *end = registers + code->frameSize; value != end; ++value)
            *value = Value();
        context.frames.push_back(called);
        base = pc = code->instructions.data();
        k = code->constants.data();
        r = registers;
        goto * pc->go;
    }
    if (!self->enter(callee, registers, pc->b, false))
        goto raised;
    goto reload;
}
op_Call:
    CALL(callTarget, false)
op_ContinueCall:
    CALL(callTarget, true)
op_Send:
    CALL(sendCommand, false)
op_ContinueSend:
    CALL(sendCommand, true)
op_Return : {
    const Frame& frame = context.frames.back();
    const Value value = frame.handler->code->isInitialiser ? Value::object(frame.scope) : r[pc->a];
    const bool isEntry = frame.isEntry;
    context.frames.pop_back();
    if (isEntry)
        return value;
    const Frame& caller = context.frames.back();
    const Code& code = *caller.handler->code;
    base = code.instructions.data();
    k = code.constants.data();
    r = caller.registers;
    pc = caller.next;
    r[pc->a] = value;
    NEXT();
}
op_Raise:
    SAVE();
    self->raiseFrom(r + pc->a, pc->b);
    goto raised;

    // Scopes.
op_BeginTell : {
    Frame& frame = context.frames.back();
    const Value target = r[pc->b];
    r[pc->a] = frame.it;
    frame.it = target;
    NEXT();
}
op_EndTell:
    context.frames.back().it = r[pc->a];
    NEXT();
op_BeginConsider:
    r[pc->a] = Value::integer(static_cast<std::int32_t>(context.frames.back().considering));
    self->consider(k[pc->b], k[pc->c]);
    NEXT();
op_EndConsider:
    context.frames.back().considering = static_cast<std::uint32_t>(r[pc->a].asInteger());
    NEXT();
op_BeginTimeout : {
    SAVE();
    const Value seconds = language::coerce(machine, r[pc->b], Value::code("doub"_4cc));
    if (seconds.isFailure())
        goto raised;
    r[pc->a] = Value::real(context.frames.back().timeout);
    context.frames.back().timeout = seconds.asNumber();
    NEXT();
}
op_EndTimeout:
    if (r[pc->a].isNumber())
        context.frames.back().timeout = r[pc->a].asNumber();
    NEXT();
op_BeginTry : {
    const Frame& frame = context.frames.back();
    r[pc->a] = frame.it;
    r[pc->a + 1] = Value::integer(static_cast<std::int32_t>(frame.considering));
    r[pc->a + 2] = Value::real(frame.timeout);
    NEXT();
}
op_CatchError:
    CHECK_OR_RAISE(self->catchError(r + pc->a, k[pc->b], as<Stored>(k[pc->c])->object));

    // Definitions.
op_DefineScript:
    SAVE();
    if (!self->defineScript(*pc, r))
        goto raised;
    goto reload;
op_DefineHandler:
    self->defineHandler(*pc, r);
    NEXT();
op_DefineParent:
    CHECK_OR_RAISE(self->defineParent(r[pc->a], k[pc->c]));
op_Corrupt:
    SAVE();
    self->raiseCorruption();
    goto raised;

raised:
    if (!self->unwind())
        return Value::failure();
    goto reload;
}

#undef NEXT
#undef GO
#undef SAVE
#undef CALL
#undef STORE_OR_RAISE
#undef CHECK_OR_RAISE

} // namespace quoddle::machine
