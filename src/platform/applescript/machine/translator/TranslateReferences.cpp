// SPDX-License-Identifier: MIT
// References. A property or an element of a value of this machine is got or set at once; specifiers are built only for the rest.
#include "platform/applescript/machine/translator/HandlerTranslator.h"

namespace quoddle::machine {

namespace {

struct SpecifierOpcode {
    Opcode opcode;
    Specifier::Form form;
    std::size_t operands;
};

constexpr SpecifierOpcode kSpecifiers[] = {
    {Opcode::MakeEvery, Specifier::Form::Every, 2},
    {Opcode::MakeSome, Specifier::Form::Some, 2},
    {Opcode::MakeElementByKey, Specifier::Form::ElementByKey, 4},
    {Opcode::MakeFilter, Specifier::Form::Filter, 2},
    {Opcode::MakeRange, Specifier::Form::Range, 4},
    {Opcode::MakeBefore, Specifier::Form::Before, 2},
    {Opcode::MakeAfter, Specifier::Form::After, 2},
    {Opcode::MakeBeginning, Specifier::Form::Beginning, 1},
    {Opcode::MakeEnd, Specifier::Form::End, 1},
    {Opcode::MakeMiddle, Specifier::Form::Middle, 2},
};

} // namespace

void HandlerTranslator::makeProperty() {
    mStack.need(2);
    const Entry key = mStack.back();
    const bool isName = key.kind == Entry::Kind::Constant && (mStack.constantOf(key).isCode() || is<Symbol>(mStack.constantOf(key)));
    if (!isName)
        return emitSpecifier(Specifier::Form::Property, 2);
    const std::size_t container = mStack.top() - 1;
    mStack.followContainer(container);
    mStack.requireResult(container);
    const std::size_t from = mStack.reg(container);
    mStack.pop(2);
    mStack.pushRegister(mOut.emit(Op::GetProperty, mStack.nextSlot(), from, key.index, static_cast<std::size_t>(Evaluate::Never)), true);
}

void HandlerTranslator::makeElement() {
    mStack.need(3);
    const std::size_t container = mStack.size() - 3;
    const Entry elementClass = mStack[container + 1];
    if (elementClass.kind != Entry::Kind::Constant)
        return emitSpecifier(Specifier::Form::Element, 3);
    mStack.followContainer(container);
    mStack.follow(container + 2, Evaluate::Fully);
    mStack.requireResult(container);
    const std::size_t from = mStack.reg(container);
    const std::size_t index = mStack.reg(container + 2);
    mStack.pop(3);
    mStack.pushRegister(mOut.emit(Op::BuildElement, mStack.nextSlot(), from, index, elementClass.index), true);
}

void HandlerTranslator::makeSpecifier() {
    for (const SpecifierOpcode& each : kSpecifiers)
        if (each.opcode == here().opcode)
            return emitSpecifier(each.form, each.operands);
    throw Corruption();
}

void HandlerTranslator::emitSpecifier(Specifier::Form form, std::size_t operands) {
    mStack.need(operands);
    const std::size_t first = mStack.size() - operands;
    const bool isRelative = form == Specifier::Form::Before || form == Specifier::Form::After; // to an element, which stays one
    if (!isRelative)
        mStack.followContainer(first);
    mStack.requireResult(first);
    if (operands > 1)
        mStack.materialiseFrom(first);
    const std::size_t from = mStack.reg(first);
    mStack.pop(operands);
    mStack.pushRegister(mOut.emit(Op::MakeSpecifier, mStack.nextSlot(), from, static_cast<std::size_t>(form)), true);
}

/// A test is kept as a description, with the operator between its operands.
void HandlerTranslator::makeTest() {
    const bool isNot = here().opcode == Opcode::TestNot;
    const Value operation = Value::integer(static_cast<std::int32_t>(here().opcode));
    mStack.need(isNot ? 1 : 2);
    const std::size_t rightDepth = mStack.top();
    if (isNot) {
        mStack.pushConstant(operation);
        mStack.pushConstant(Value::undefined());
    } else {
        mStack.follow(rightDepth, Evaluate::Locally);
        const Entry right = mStack.pop();
        if (right.kind == Entry::Kind::Register) { // the operator goes into the register below
            mStack.push(right);
            mStack.push({});
            mOut.emit(Op::Move, mStack.slot(rightDepth + 1), mStack.slot(rightDepth));
            mOut.emit(Op::LoadConstant, mStack.slot(rightDepth), mOut.constant(operation));
            mStack[rightDepth] = Entry();
        } else {
            mStack.pushConstant(operation);
            mStack.push(right);
        }
    }
    emitSpecifier(Specifier::Form::Test, 3);
    mStack.back().raw = false;
}

void HandlerTranslator::getData() {
    mStack.need(1);
    mStack.follow(mStack.top(), Evaluate::Fully);
}

/// Stack: value specifier → value
void HandlerTranslator::store(bool copies) {
    mStack.need(2);
    const std::size_t value = mStack.top() - 1;
    mStack.follow(value, Evaluate::Fully);
    mStack.requireResult(value);
    // The instruction that puts the value into a register must come before the one that makes the specifier.
    const Entry& target = mStack.back();
    const bool isRegister = mStack[value].kind == Entry::Kind::Register || mStack[value].kind == Entry::Kind::Local;
    if (!isRegister && target.kind == Entry::Kind::Register && mOut.isLast(target.producer)) {
        const Instruction specifier = mOut.last();
        const Op op = mOut.lastOp();
        mOut.takeBack();
        mStack.materialise(value);
        mStack.back().producer = static_cast<std::int32_t>(mOut.emit(op, specifier.a, specifier.b, specifier.c, specifier.d));
    }
    std::size_t from = mStack.reg(value);
    if (copies) {
        mOut.emit(Op::Clone, mStack.slot(value), from);
        mStack[value].kind = Entry::Kind::Register;
        from = mStack.slot(value);
    }
    if (!emitStore(from))
        mOut.emit(Op::SetSpecifier, 0, from, mStack.reg(mStack.top()));
    mOut.barrier();
    mStack.pop();
}

/// Turns the instruction that made the specifier into one that stores. False when that is impossible.
bool HandlerTranslator::emitStore(std::size_t from) {
    const Entry& target = mStack.back();
    if (target.kind != Entry::Kind::Register || !mOut.isLast(target.producer))
        return false;
    const Instruction specifier = mOut.last();
    const Op op = mOut.lastOp();
    const bool isEnd = op == Op::MakeSpecifier && specifier.c == static_cast<std::uint16_t>(Specifier::Form::End);
    if (op != Op::GetProperty && op != Op::BuildElement && !isEnd)
        return false;
    mOut.takeBack();
    if (op == Op::GetProperty)
        mOut.emit(Op::SetProperty, specifier.b, from, specifier.c);
    else if (op == Op::BuildElement)
        mOut.emit(Op::SetElement, specifier.b, specifier.c, from, specifier.d);
    else
        mOut.emit(Op::SetEnd, specifier.b, from);
    return true;
}

} // namespace quoddle::machine
