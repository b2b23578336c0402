// SPDX-License-Identifier: MIT
// Arithmetic and concatenation; comparisons are in Comparison.cpp.
#include "platform/applescript/language/Operators.h"

#include "platform/applescript/language/Coercion.h"
#include "platform/applescript/language/Display.h"
#include "platform/applescript/language/References.h"

namespace quoddle::language {

using namespace machine;

namespace {

/// An operand as a number. Raises -1700.
Value operand(Machine& machine, Value value) {
    if (amountOf(value)) // QUIRK: a measure is no number until it is coerced to one; scripts rely on the error -1700
        return cannotMake(machine, value, "nmbr"_4cc);
    return coerce(machine, value, Value::code("nmbr"_4cc));
}

bool operands(Machine& machine, Value& left, Value& right) {
    left = operand(machine, left);
    if (left.isFailure())
        return false;
    right = operand(machine, right);
    return !right.isFailure();
}

Value fromWhole(std::int64_t whole) {
    return fitsInteger(whole) ? Value::integer(static_cast<std::int32_t>(whole)) : Value::real(static_cast<double>(whole));
}

Value finite(Machine& machine, double result) {
    return std::isfinite(result) ? Value::real(result)
                                 : machine.raise(errOSANumericOverflow, u"The result of a numeric operation was too large.");
}

Value byZero(Machine& machine, Value dividend) {
    return machine.raise(errOSADivideByZero, u"Can’t divide " + inMessage(machine, dividend) + u" by zero.", dividend);
}

bool seconds(Machine& machine, Value value, std::int64_t& out) {
    const Value number = operand(machine, value);
    if (number.isFailure())
        return false;
    const double rounded = std::nearbyint(number.asNumber());
    if (std::abs(rounded) > 1e15) {
        machine.raise(errOSANumericOverflow, u"The result of a numeric operation was too large.");
        return false;
    }
    out = static_cast<std::int64_t>(rounded);
    return true;
}

} // namespace

Value number(Machine& machine, double value) {
    if (value == std::trunc(value) && value >= kMinimumInteger && value <= kMaximumInteger)
        return Value::integer(static_cast<std::int32_t>(value));
    return finite(machine, value);
}

Value add(Machine& machine, Value left, Value right) {
    if (!followBoth(machine, left, right))
        return Value::failure();
    if (const Date* date = as<Date>(left)) {
        std::int64_t difference;
        if (!seconds(machine, right, difference))
            return Value::failure();
        return Value::object(machine.heap().make<Date>(date->seconds + difference));
    }
    if (!operands(machine, left, right))
        return Value::failure();
    if (Value::areIntegers(left, right))
        return fromWhole(std::int64_t(left.asInteger()) + right.asInteger());
    return finite(machine, left.asNumber() + right.asNumber());
}

Value subtract(Machine& machine, Value left, Value right) {
    if (!followBoth(machine, left, right))
        return Value::failure();
    if (const Date* date = as<Date>(left)) {
        if (const Date* other = as<Date>(right))
            return fromWhole(date->seconds - other->seconds);
        std::int64_t difference;
        if (!seconds(machine, right, difference))
            return Value::failure();
        return Value::object(machine.heap().make<Date>(date->seconds - difference));
    }
    if (!operands(machine, left, right))
        return Value::failure();
    if (Value::areIntegers(left, right))
        return fromWhole(std::int64_t(left.asInteger()) - right.asInteger());
    return finite(machine, left.asNumber() - right.asNumber());
}

Value multiply(Machine& machine, Value left, Value right) {
    if (!operands(machine, left, right))
        return Value::failure();
    if (Value::areIntegers(left, right))
        return fromWhole(std::int64_t(left.asInteger()) * right.asInteger());
    return finite(machine, left.asNumber() * right.asNumber());
}

Value divide(Machine& machine, Value left, Value right) {
    if (!operands(machine, left, right))
        return Value::failure();
    if (right.asNumber() == 0)
        return byZero(machine, Value::real(left.asNumber()));
    return finite(machine, left.asNumber() / right.asNumber());
}

Value quotient(Machine& machine, Value left, Value right) {
    if (!operands(machine, left, right))
        return Value::failure();
    if (right.asNumber() == 0)
        return byZero(machine, left);
    return number(machine, std::trunc(left.asNumber() / right.asNumber()));
}

Value remainder(Machine& machine, Value left, Value right) {
    if (!operands(machine, left, right))
        return Value::failure();
    if (right.asNumber() == 0)
        return byZero(machine, left);
    const double rest = std::fmod(left.asNumber(), right.asNumber());
    return Value::areIntegers(left, right) ? fromWhole(static_cast<std::int64_t>(rest)) : finite(machine, rest);
}

Value power(Machine& machine, Value left, Value right) {
    if (!operands(machine, left, right))
        return Value::failure();
    return finite(machine, std::pow(left.asNumber(), right.asNumber()));
}

Value negate(Machine& machine, Value value) {
    value = operand(machine, value);
    if (value.isFailure())
        return value;
    return value.isInteger() ? fromWhole(-std::int64_t(value.asInteger())) : Value::real(-value.asReal());
}

Value logicalNot(Machine& machine, Value value) {
    const int known = truth(machine, value);
    return known < 0 ? Value::failure() : Value::boolean(known == 0);
}

int truth(Machine& machine, Value value) {
    const Value boolean = coerce(machine, value, Value::code("bool"_4cc));
    return boolean.isFailure() ? -1 : boolean.isTrue();
}

namespace {

/// The items that one side of "&" adds to a list: the items of a list, the values of a record, else the side itself.
std::vector<Value> partsOf(Value side) {
    if (const List* list = as<List>(side))
        return {list->items, list->items + list->count};
    std::vector<Value> parts;
    if (const Record* record = as<Record>(side))
        for (const Record::Entry& entry : record->entries)
            parts.push_back(entry.value);
    else
        parts.push_back(side);
    return parts;
}

/// Joins two records. Where both have a label, the value of the first counts. `second` may be null.
Value joined(Machine& machine, const Record* first, const Record* second) {
    Record* both = machine.heap().record();
    both->entries = first->entries;
    if (second)
        for (const Record::Entry& entry : second->entries)
            if (!both->find(entry.key))
                both->entries.push_back(entry);
    return Value::object(both);
}

} // namespace

/// "&": with a text on the left a text, with records on both sides a record, otherwise a list. An empty list adds nothing to a record.
Value concatenate(Machine& machine, Value left, Value right) {
    if (!followBoth(machine, left, right))
        return Value::failure();
    for (Value side : {left, right})
        if (side.isUndefined())
            return machine.raise(-2763, u"No result was returned from some part of this expression.");
    const Record* leftRecord = as<Record>(left);
    const Record* rightRecord = as<Record>(right);
    if (const Text* text = as<Text>(left); text && !rightRecord) {
        const Value other = is<Text>(right) ? right : coerce(machine, right, Value::code("ctxt"_4cc));
        if (other.isFailure())
            return other;
        Text* whole = machine.heap().concatenate(text, as<Text>(other));
        return whole ? Value::object(whole) : tooLarge(machine);
    }
    if (leftRecord && rightRecord)
        return joined(machine, leftRecord, rightRecord);
    const auto isEmpty = [](Value side) { return is<List>(side) && as<List>(side)->count == 0; };
    if (leftRecord && isEmpty(right))
        return joined(machine, leftRecord, nullptr);
    if (rightRecord && isEmpty(left))
        return joined(machine, rightRecord, nullptr);
    List* first = as<List>(left);
    if (!first)
        first = machine.heap().concatenate(machine.heap().list(2), partsOf(left));
    List* whole = nullptr;
    if (const List* second = as<List>(right); second && first) // not copied by partsOf, because it may be long
        whole = machine.heap().concatenate(first, {second->items, second->count});
    else if (first)
        whole = machine.heap().concatenate(first, partsOf(right));
    return whole ? Value::object(whole) : tooLarge(machine);
}

} // namespace quoddle::language
