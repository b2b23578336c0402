// SPDX-License-Identifier: MIT
// Values and variables on the stack.
#include "platform/applescript/machine/translator/HandlerTranslator.h"

#include <algorithm>
#include <utility>

namespace quoddle::machine {

void HandlerTranslator::pushValue() {
    const Opcode opcode = here().opcode;
    Entry entry;
    switch (opcode) {
    case Opcode::PushMe:
        entry.kind = Entry::Kind::Me;
        return mStack.push(entry);
    case Opcode::PushIt:
        entry.kind = Entry::Kind::It;
        return mStack.push(entry);
    case Opcode::PushNext:
        entry.kind = Entry::Kind::Next;
        return mStack.push(entry);
    case Opcode::PushTrue:
    case Opcode::PushFalse:
        return mStack.pushConstant(Value::boolean(opcode == Opcode::PushTrue));
    case Opcode::PushEmpty:
        return mStack.pushConstant(Value::object(mHeap.list()));
    case Opcode::PushUndefined:
        return mStack.pushConstant(Value::undefined());
    default:
        return mStack.pushConstant(Value::integer(static_cast<std::int32_t>(opcode) - static_cast<std::int32_t>(Opcode::Push0)));
    }
}

void HandlerTranslator::pushLocal() {
    const std::size_t local = firstOperand();
    if (mCode.hasScope)
        return mStack.pushRegister(mOut.emit(Op::GetScope, mStack.nextSlot(), 0, local));
    if (!mDefined.contains(local)) {
        mOut.emit(Op::CheckVariable, local, mOut.constant(mCode.localNames[local]));
        mDefined.put(local, true);
    }
    Entry entry;
    entry.kind = Entry::Kind::Local;
    entry.index = static_cast<std::uint16_t>(local);
    mStack.push(entry);
}

/// Stores the value on top of the stack, where the entry then stands for the local.
void HandlerTranslator::storeLocal(std::size_t local) {
    mStack.need(1);
    mStack.follow(mStack.top(), Evaluate::Fully);
    if (mCode.hasScope) {
        mOut.emit(Op::SetScope, mStack.reg(mStack.top()), 0, local);
        return;
    }
    bool isPending = false; // an entry on the stack still stands for the old value
    for (std::size_t depth = 0; depth < mStack.top(); ++depth)
        if (mStack[depth].kind == Entry::Kind::Local && mStack[depth].index == local) {
            isPending = true;
            mStack.materialise(depth);
        }
    Entry& entry = mStack.back();
    if (entry.kind == Entry::Kind::Register && !isPending && mOut.isLast(entry.producer) && writesOnlyItsTarget(mOut.lastOp())) {
        mOut.last().a = static_cast<std::uint16_t>(local);
    } else if (entry.kind == Entry::Kind::Constant) {
        mOut.emit(Op::LoadConstant, local, entry.index);
    } else {
        const std::size_t from = mStack.reg(mStack.top());
        if (from != local)
            mOut.emit(Op::Move, local, from);
    }
    Entry stored;
    stored.kind = Entry::Kind::Local;
    stored.index = static_cast<std::uint16_t>(local);
    stored.maybeUndefined = entry.maybeUndefined;
    entry = stored;
    mDefined.put(local, mStored.certainLocals().contains(local) || !stored.maybeUndefined);
}

void HandlerTranslator::pushGlobal() {
    const Value name = literal(here().first);
    const bool isResult = name == Value::code("rslt"_4cc);
    const std::uint16_t constant = mOut.constant(name);
    if (!isResult)
        return mStack.pushRegister(mOut.emit(Op::GetGlobal, mStack.nextSlot(), constant, mOut.cache(Op::GetGlobal, constant)));
    getResult();
    mOut.emit(Op::CheckVariable, mStack.slot(mStack.top()), constant);
}

void HandlerTranslator::popGlobal() {
    mStack.need(1);
    mStack.follow(mStack.top(), Evaluate::Fully);
    const std::uint16_t name = literalConstant();
    mOut.emit(Op::SetGlobal, mStack.reg(mStack.top()), name, mOut.cache(Op::SetGlobal, name));
}

/// Pushes a variable of the script or handler around this one. Handlers of a script reach its slots directly.
void HandlerTranslator::pushOuter() {
    const auto index = static_cast<std::size_t>(here().second);
    if (here().first == 1 && !mCode.hasScope)
        mStack.pushRegister(mOut.emit(Op::GetSlot, mStack.nextSlot(), index));
    else
        mStack.pushRegister(mOut.emit(Op::GetScope, mStack.nextSlot(), firstOperand(), index));
}

void HandlerTranslator::popOuter() {
    mStack.need(1);
    mStack.follow(mStack.top(), Evaluate::Fully);
    const auto index = static_cast<std::size_t>(here().second);
    if (here().first == 1 && !mCode.hasScope)
        mOut.emit(Op::SetSlot, mStack.reg(mStack.top()), index);
    else
        mOut.emit(Op::SetScope, mStack.reg(mStack.top()), firstOperand(), index);
}

void HandlerTranslator::storeResult() {
    mStack.need(1);
    if (mStored.usesResult() || mStack.back().raw)
        mStack.follow(mStack.top(), Evaluate::Fully);
    if (mStored.usesResult())
        mOut.emit(Op::SetResult, mStack.reg(mStack.top()));
    mStack.pop();
}

void HandlerTranslator::duplicate() {
    mStack.need(1);
    // In "repeat with x in …" the list is computed once and not at every turn.
    const bool literalFollows = mAt + 1 < mStored.size() && (mStored.at(mAt + 1).opcode == Opcode::PushLiteral ||
                                                             mStored.at(mAt + 1).opcode == Opcode::PushLiteralLong);
    const bool countsItems = literalFollows && literal(mStored.at(mAt + 1).first) == Value::code("kocl"_4cc);
    const std::int32_t producer = mStack.back().producer;
    const Op op = producer >= 0 ? mOut.opAt(static_cast<std::size_t>(producer)) : Op::Corrupt;
    if (countsItems || op == Op::GetProperty || op == Op::BuildElement)
        mStack.follow(mStack.top(), Evaluate::Locally);
    mStack.pushMoved(Entry(mStack.back()), mStack.top());
}

void HandlerTranslator::swap() {
    mStack.need(2);
    const std::size_t low = mStack.top() - 1;
    Entry& a = mStack[low];
    Entry& b = mStack[low + 1];
    if (a.kind == Entry::Kind::Saved || b.kind == Entry::Kind::Saved)
        throw Corruption();
    const bool aInRegister = a.kind == Entry::Kind::Register, bInRegister = b.kind == Entry::Kind::Register;
    if (aInRegister && bInRegister) {
        mStack.reserve(1);
        mOut.emit(Op::Move, mStack.slot(low + 2), mStack.slot(low));
        mOut.emit(Op::Move, mStack.slot(low), mStack.slot(low + 1));
        mOut.emit(Op::Move, mStack.slot(low + 1), mStack.slot(low + 2));
        a.producer = b.producer = -1;
    } else if (bInRegister) {
        if (mOut.isLast(b.producer) && writesOnlyItsTarget(mOut.lastOp()))
            mOut.last().a = static_cast<std::uint16_t>(mStack.slot(low));
        else
            b.producer = static_cast<std::int32_t>(mOut.emit(Op::Move, mStack.slot(low), mStack.slot(low + 1)));
    } else if (aInRegister) {
        a.producer = static_cast<std::int32_t>(mOut.emit(Op::Move, mStack.slot(low + 1), mStack.slot(low)));
    }
    std::swap(a, b);
}

} // namespace quoddle::machine
