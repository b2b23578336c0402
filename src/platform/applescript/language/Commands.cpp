// SPDX-License-Identifier: MIT
#include "platform/applescript/language/Commands.h"

#include "platform/applescript/language/Coercion.h"
#include "platform/applescript/language/Display.h"
#include "platform/applescript/language/Files.h"
#include "platform/applescript/language/Frameworks.h"
#include "platform/applescript/language/References.h"
#include "platform/applescript/machine/Ticker.h"
#include "platform/base/DateText.h"
#include "platform/base/Text.h"

#include <chrono>

namespace quoddle::language {

using namespace machine;

namespace {

using Arguments = std::span<const Argument>;

Value argument(Arguments arguments, FourCharCode label) {
    for (const Argument& candidate : arguments)
        if (candidate.label == Value::code(label))
            return candidate.value;
    return {};
}

Value log(Machine& machine, Value direct, Arguments) {
    direct = follow(machine, direct);
    if (direct.isFailure())
        return direct;
    if (machine.host().log)
        machine.host().log(machine, direct);
    return {};
}

Value currentDate(Machine& machine, Value, Arguments) {
    return Value::object(machine.heap().make<Date>(currentSeconds()));
}

Value delay(Machine& machine, Value direct, Arguments) {
    double seconds = 0;
    if (!direct.isUndefined() && !is<Script>(direct) && !is<Application>(direct)) {
        const Value number = coerce(machine, direct, Value::code("doub"_4cc));
        if (number.isFailure())
            return number;
        seconds = number.asNumber();
    }
    using Clock = std::chrono::steady_clock;
    constexpr double kForever = 1e9;
    const auto end = Clock::now() +
                     std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(std::min(std::max(seconds, 0.0), kForever)));
    const Ticker::Rest rest(&machine);
    for (Wait wait;; machine.pause(wait, end)) {
        if (!machine.yield())
            return Value::failure();
        if (Clock::now() >= end)
            return {};
    }
}

Value get(Machine& machine, Value direct, Arguments arguments) {
    const Value value = follow(machine, direct);
    const Value wanted = argument(arguments, "rtyp"_4cc);
    return value.isFailure() || wanted.isUndefined() ? value : coerce(machine, value, wanted);
}

Value count(Machine& machine, Value direct, Arguments arguments) {
    Value of = direct;
    if (const Value each = argument(arguments, "kocl"_4cc); each.isCode() && each != Value::code("cobj"_4cc))
        of = Value::object(machine.heap().make<Specifier>(Specifier::Form::Every, direct, each, Value(), Value()));
    return language::count(machine, of);
}

Value run(Machine& machine, Value direct, Arguments) {
    Script* script = as<Script>(direct);
    if (!script)
        return machine.raise(errAEEventNotHandled, inMessage(machine, direct) + u" doesn’t understand the “run” message.", direct);
    return {}; // a script without a run handler does nothing
}

/// For "idle", which does nothing to values of this machine.
Value doNothing(Machine&, Value, Arguments) {
    return {};
}

struct CommandRow {
    FourCharCode eventClass;
    FourCharCode eventID;
    Value (*perform)(Machine&, Value, Arguments);
    bool mayBeContinued; // whether "continue" in a handler of that name performs it
};
/// The language's own commands. "continue run" and "continue idle" go to the application.
constexpr CommandRow kCommands[] = {
    {"ascr"_4cc, "cmnt"_4cc, log, true},        {"misc"_4cc, "curd"_4cc, currentDate, true}, {"syso"_4cc, "dela"_4cc, delay, true},
    {"core"_4cc, "getd"_4cc, get, true},        {"core"_4cc, "cnte"_4cc, count, true},       {"aevt"_4cc, "oapp"_4cc, run, false},
    {"misc"_4cc, "idle"_4cc, doNothing, false},
};

bool belongsToApplication(Value direct) {
    return is<Application>(direct) || (is<Specifier>(direct) && !isLocal(direct));
}

Value notUnderstood(Machine& machine, Value direct, Value name) {
    return machine.raise(errAEEventNotHandled, inMessage(machine, direct) + u" doesn’t understand the “" + termFor(name) + u"” message.",
                         direct);
}

Value send(Machine& machine, FourCharCode eventClass, FourCharCode eventID, Value direct, Arguments arguments) {
    const EventName* event = machine.heap().eventName(bytesOf(eventClass) + bytesOf(eventID));
    if (!machine.host().send)
        return notUnderstood(machine, direct, Value::object(event));
    return machine.send(*event, direct, arguments, false);
}

} // namespace

Value performCommand(Machine& machine, Value name, Value direct, Arguments arguments, bool continues) {
    const EventName* event = as<EventName>(name);
    if (!event) { // the name of a handler with labels that no script here has
        const Symbol* symbol = as<Symbol>(name);
        if (symbol && !continues && (belongsToApplication(direct) || is<Application>(machine.it()))) {
            std::vector<Argument> labelled(arguments.begin(), arguments.end());
            labelled.push_back({Value::code("snam"_4cc), Value::object(machine.heap().text(utf16FromUTF8(symbol->key)))});
            return send(machine, "ascr"_4cc, "psbr"_4cc, direct, labelled);
        }
        const std::u16string words = symbol ? utf16FromUTF8(symbol->spelling) : std::u16string();
        return machine.raise(errAEEventNotHandled, inMessage(machine, direct) + u" doesn’t understand the “" + words + u"” message.",
                             direct);
    }
    for (const CommandRow& row : kCommands) {
        const bool isMeant = row.eventClass == event->eventClass && row.eventID == event->eventID && (!continues || row.mayBeContinued);
        // Applications have no log, and the same date.
        if (isMeant && (!belongsToApplication(direct) || row.perform == &currentDate || row.perform == &log))
            return row.perform(machine, direct, arguments);
    }
    if (Value result; machine.host().perform && machine.host().perform(machine, *event, direct, arguments, result))
        return result;
    if (!machine.host().send)
        return notUnderstood(machine, direct, name);
    const Value result = machine.send(*event, direct, arguments, continues);
    const bool isActivate = event->eventClass == "misc"_4cc && event->eventID == "actv"_4cc;
    if (isActivate && result.isFailure() && machine.error().number == errAEEventNotHandled && !belongsToApplication(direct)) {
        // QUIRK: "activate" does nothing in a program without windows and is no error; scripts send it anyway and rely on going on
        machine.error() = ScriptError();
        return {};
    }
    return result;
}

Value callElsewhere(Machine& machine, Value target, Value name, std::span<const Value> arguments) {
    const Symbol* symbol = as<Symbol>(name);
    const std::u16string words = symbol ? utf16FromUTF8(symbol->spelling) : std::u16string();
    if (const Specifier* specifier = as<Specifier>(target); specifier && isFrameworkName(*specifier))
        return noFramework(machine, target);
    if (!belongsToApplication(target) || !symbol)
        return machine.raise(errAEEventNotHandled, inMessage(machine, target) + u" doesn’t understand the “" + words + u"” message.",
                             target);
    List* list = machine.heap().list(arguments.size());
    std::copy(arguments.begin(), arguments.end(), list->items);
    list->count = static_cast<std::uint32_t>(arguments.size());
    const Argument parameters[] = {
        {Value::code("snam"_4cc), Value::object(machine.heap().text(utf16FromUTF8(symbol->key)))},
        {Value::code("----"_4cc), Value::object(list)},
    };
    return send(machine, "ascr"_4cc, "psbr"_4cc, target, parameters);
}

Value getFromApplication(Machine& machine, Value specifier, Value wanted) {
    const Specifier* property = as<Specifier>(specifier);
    const Specifier* holder = property && property->form == Specifier::Form::Property ? as<Specifier>(property->container) : nullptr;
    if (holder && isMany(holder->form) && property->a == Value::code("nmbr"_4cc)) // "number of windows" asks for the number of elements
        return send(machine, "core"_4cc, "cnte"_4cc, property->container, {});
    const Heap::Hold hold(machine.heap()); // values that only C++ variables hold are in use while the application is asked
    const Argument requested[] = {{Value::code("rtyp"_4cc), wanted}};
    const Value value = send(machine, "core"_4cc, "getd"_4cc, specifier, wanted.isUndefined() ? Arguments() : Arguments(requested));
    const OSStatus number = value.isFailure() ? machine.error().number : noErr;
    if ((number == errAEEventNotHandled || number == errAENoSuchObject) && property && isFrameworkName(*property)) {
        machine.error() = ScriptError();
        return makeReference(machine, specifier);
    }
    return value;
}

bool setInApplication(Machine& machine, Value specifier, Value value) {
    const Heap::Hold hold(machine.heap());
    const Argument parameters[] = {{Value::code("data"_4cc), value}};
    return !send(machine, "core"_4cc, "setd"_4cc, specifier, parameters).isFailure();
}

bool setParent(Machine& machine, Script* script, Value parent) {
    if (const Script* candidate = as<Script>(parent)) {
        Script* above = const_cast<Script*>(candidate);
        // bounded, because the parents in a stored script may form a ring
        for (int limit = 0; above && limit < 1000; ++limit, above = machine.parentOf(above))
            if (above == script) {
                machine.raise(OSAIllegalAssign,
                              u"Can’t set parent of " + inMessage(machine, Value::object(script)) + u" to " + inMessage(machine, parent) +
                                  u".",
                              parent);
                return false;
            }
    }
    script->parent = parent == Value::object(machine.appleScript()) ? Value() : parent;
    return true;
}

} // namespace quoddle::language
