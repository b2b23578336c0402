// SPDX-License-Identifier: MIT
#include "platform/applescript/machine/translator/HandlerTranslator.h"

namespace quoddle::machine {

void HandlerTranslator::linkRepeat() {
    if (here().first <= static_cast<std::int32_t>(mAt))
        throw Corruption();
    mLoops.push_back({here().first, mStack.size()});
}

void HandlerTranslator::repeat() {
    switch (here().opcode) {
    case Opcode::RepeatNTimes:
        return turn(Op::RepeatTimes, 2, 0);
    case Opcode::RepeatInRange:
        return turn(Op::RepeatInRange, 3, firstOperand());
    default:
        return turn(Op::RepeatInCollection, 3, firstOperand());
    }
}

/// Emits the instruction at the beginning of a loop. On the stack the state of the loop lies below the value of its last turn.
void HandlerTranslator::turn(Op op, std::size_t operands, std::size_t local) {
    mStack.need(operands + 1);
    if (mLoops.empty())
        throw Corruption();
    const std::size_t first = mStack.size() - operands - 1;
    const bool hasVariable = op != Op::RepeatTimes;
    mStack.flush();
    const std::int32_t exit = mLoops.back().exit;
    mStack.pop();
    const std::size_t variable = mCode.hasScope || !hasVariable ? mStack.nextSlot() : local;
    if (mStored.topIsDead(exit))
        emitBranch(op, mStack.slot(first), variable, exit);
    else
        mDetours.push_back({mOut.emit(op, mStack.slot(first), variable), Op::Move, mStack.slot(first), mStack.nextSlot(), exit});
    merge(exit, mStack.size() - first - 1);
    if (hasVariable && mCode.hasScope)
        mOut.emit(Op::SetScope, variable, 0, local);
    else if (hasVariable)
        mDefined.put(local, true);
}

void HandlerTranslator::repeatWhile() {
    mStack.need(2);
    if (mLoops.empty())
        throw Corruption();
    const std::int32_t exit = mLoops.back().exit;
    mStack.follow(mStack.top(), Evaluate::Fully);
    const std::size_t condition = mStack.reg(mStack.top());
    mStack.pop();
    mStack.flush();
    emitBranch(here().opcode == Opcode::RepeatWhile ? Op::BranchIfFalse : Op::BranchIfTrue, condition, 0, exit);
    merge(exit);
    mStack.pop();
}

/// Leaves the scopes that were opened inside the loop, innermost first, and jumps behind the loop.
void HandlerTranslator::exitLoop() {
    if (mLoops.empty())
        throw Corruption();
    const Loop loop = mLoops.back();
    mStack.need(loop.depth);
    for (std::size_t depth = mStack.size(); depth-- > loop.depth;) {
        const Entry& entry = mStack[depth];
        if (entry.kind == Entry::Kind::Saved && entry.index != 0)
            mOut.emit(static_cast<Op>(entry.index), mStack.slot(depth));
    }
    mStack.truncate(loop.depth);
    if (!mStored.topIsDead(loop.exit)) {
        if (mStored.usesResult())
            mOut.emit(Op::GetResult, mStack.slot(loop.depth));
        else
            mOut.emit(Op::LoadConstant, mStack.slot(loop.depth), mOut.constant(Value::undefined()));
    }
    mStack.push({});
    merge(loop.exit);
    emitBranch(Op::Jump, 0, 0, loop.exit);
    mReachable = false;
}

} // namespace quoddle::machine
