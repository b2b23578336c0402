// SPDX-License-Identifier: MIT
#include "platform/applescript/machine/translator/HandlerTranslator.h"

namespace quoddle::machine {

namespace {

struct BinaryOperator {
    Opcode opcode;
    Op op;
    Op withConstant; // Corrupt when there is no such instruction
    bool isBoolean;
};

constexpr BinaryOperator kBinaryOperators[] = {
    {Opcode::StartsWith, Op::StartsWith, Op::Corrupt, true},
    {Opcode::EndsWith, Op::EndsWith, Op::Corrupt, true},
    {Opcode::Contains, Op::Contains, Op::Corrupt, true},
    {Opcode::Add, Op::Add, Op::AddConstant, false},
    {Opcode::Subtract, Op::Subtract, Op::SubtractConstant, false},
    {Opcode::Multiply, Op::Multiply, Op::MultiplyConstant, false},
    {Opcode::Divide, Op::Divide, Op::Corrupt, false},
    {Opcode::Quotient, Op::Quotient, Op::QuotientConstant, false},
    {Opcode::Remainder, Op::Remainder, Op::RemainderConstant, false},
    {Opcode::Power, Op::Power, Op::Corrupt, false},
    {Opcode::Concatenate, Op::Concatenate, Op::Corrupt, false},
};

} // namespace

void HandlerTranslator::binary() {
    for (const BinaryOperator& each : kBinaryOperators)
        if (each.opcode == here().opcode)
            return emitBinary(each.op, each.withConstant, each.isBoolean);
    throw Corruption();
}

void HandlerTranslator::emitBinary(Op op, Op withConstant, bool isBoolean) {
    mStack.need(2);
    const std::size_t left = mStack.top() - 1;
    // An application that is asked for an object is told as what.
    mStack.follow(left, op == Op::Coerce ? Evaluate::Locally : Evaluate::Fully);
    mStack.follow(left + 1, Evaluate::Fully);
    const Entry right = mStack.back();
    const std::size_t leftRegister = mStack.reg(left);
    const bool constant = withConstant != Op::Corrupt && right.kind == Entry::Kind::Constant && mStack.constantOf(right).isNumber();
    const std::size_t rightOperand = constant ? right.index : mStack.reg(left + 1);
    const std::size_t producer = mOut.emit(constant ? withConstant : op, mStack.slot(left), leftRegister, rightOperand);
    mStack.pop(2);
    mStack.pushRegister(producer, false, isBoolean);
}

void HandlerTranslator::coerce() {
    mStack.need(2);
    const Entry& target = mStack.back();
    const bool toBoolean = target.kind == Entry::Kind::Constant && mStack.constantOf(target) == Value::code("bool"_4cc);
    if (toBoolean && mStack[mStack.top() - 1].boolean) {
        mStack.pop();
        return;
    }
    const bool mayAsk = mStack[mStack.top() - 1].raw;
    emitBinary(Op::Coerce, Op::Corrupt, false);
    if (mayAsk)
        mOut.barrier(); // an application that is asked may change anything
}

void HandlerTranslator::unary() {
    mStack.need(1);
    mStack.follow(mStack.top(), Evaluate::Fully);
    const bool isNot = here().opcode == Opcode::Not;
    replaceTop(isNot ? Op::Not : Op::Negate, isNot);
}

void HandlerTranslator::replaceTop(Op op, bool isBoolean) {
    mStack.need(1);
    const std::size_t from = mStack.reg(mStack.top());
    mStack.pop();
    mStack.pushRegister(mOut.emit(op, mStack.nextSlot(), from), false, isBoolean);
}

void HandlerTranslator::makeCollection() {
    const std::size_t count = mStack.popCount();
    const std::size_t base = mStack.size() - count;
    const Opcode opcode = here().opcode;
    // In "set {name, size} of x to …" the items are what is set.
    const std::optional<Opcode> next = mStored.following(mAt + 1);
    if (next != Opcode::SetData && next != Opcode::CopyData)
        prepareArguments(base, Evaluate::Fully);
    mStack.materialiseFrom(base);
    mStack.pop(count);
    const std::size_t first = mStack.nextSlot();
    if (opcode == Opcode::MakeRecord)
        mStack.pushRegister(mOut.emit(Op::MakeRecord, first, first, count));
    else
        mStack.pushRegister(mOut.emit(Op::MakeList, first, first, count));
}

} // namespace quoddle::machine
