// SPDX-License-Identifier: MIT
// Jumps and their targets, and truth values that are only used to decide about a jump.
#include "platform/applescript/machine/translator/HandlerTranslator.h"

#include <utility>

namespace quoddle::machine {

namespace {

constexpr Op kBranchUnless[] = {Op::BranchUnlessEqual,          Op::BranchUnlessNotEqual, Op::BranchUnlessGreater,
                                Op::BranchUnlessGreaterOrEqual, Op::BranchUnlessLess,     Op::BranchUnlessLessOrEqual};
constexpr Op kBranchUnlessConstant[] = {Op::BranchUnlessEqualConstant,   Op::BranchUnlessNotEqualConstant,
                                        Op::BranchUnlessGreaterConstant, Op::BranchUnlessGreaterOrEqualConstant,
                                        Op::BranchUnlessLessConstant,    Op::BranchUnlessLessOrEqualConstant};
/// The index of the opposite comparison, for = ≠ > ≥ < ≤ in the order of their opcodes.
constexpr std::size_t kOpposite[] = {1, 0, 5, 4, 3, 2};

} // namespace

std::size_t HandlerTranslator::emitBranch(Op op, std::size_t a, std::size_t b, std::int32_t target) {
    const std::size_t at = mOut.emit(op, a, b);
    mLabels[static_cast<std::size_t>(target)].uses.push_back(at);
    return at;
}

/// Notes the state of the stack, without its uppermost `dropped` entries, for the target of a jump from here.
void HandlerTranslator::merge(std::int32_t target, std::size_t dropped) {
    Label& label = mLabels[static_cast<std::size_t>(target)];
    if (!mStored.isTarget(static_cast<std::size_t>(target)))
        throw Corruption();
    Shape shape = mStack.shape(dropped);
    if (!label.isReached) {
        if (label.position >= 0)
            throw Corruption(); // a jump backwards into code that was not reached, and so not translated
        label.isReached = true;
        label.shape = std::move(shape);
        label.defined = mDefined;
        return;
    }
    if (label.shape != shape)
        throw Corruption();
    if (label.position >= 0)
        return;
    label.defined.intersect(mDefined);
}

void HandlerTranslator::jumpTo(std::int32_t target) {
    mStack.flush(mStored.topIsDead(target));
    merge(target);
    emitBranch(isBackwards(target) ? Op::JumpBack : Op::Jump, 0, 0, target);
    mReachable = false;
}

void HandlerTranslator::place(std::size_t at) {
    Label& label = mLabels[at];
    if (mStored.isTarget(at)) {
        if (mReachable) {
            mStack.flush(mStored.topIsDead(static_cast<std::int32_t>(at)));
            merge(static_cast<std::int32_t>(at));
        }
        if (label.isReached) {
            mStack.setShape(label.shape);
            // A later jump back to this place may come with an uncertain variable unset.
            mDefined = std::exchange(label.defined, {});
            mDefined.intersect(mStored.certainLocals());
            mReachable = true;
        }
        mOut.barrier();
    }
    label.position = static_cast<std::int32_t>(mOut.size());
    while (!mLoops.empty() && mLoops.back().exit <= static_cast<std::int32_t>(at))
        mLoops.pop_back();
    while (!mOpenTries.empty() && mOpenTries.back().first <= static_cast<std::int32_t>(at)) {
        const auto position = static_cast<std::uint32_t>(mOut.size());
        mCode.tries.push_back({mOpenTries.back().second, position, position});
        mOpenTries.pop_back();
    }
}

void HandlerTranslator::compare() {
    mStack.need(2);
    const std::size_t left = mStack.top() - 1;
    const auto which = static_cast<std::size_t>(here().opcode);
    mStack.follow(left, Evaluate::Fully);
    mStack.follow(left + 1, Evaluate::Fully);

    // The comparison may be merged with a `not` and a branch that follow.
    std::size_t next = mAt + 1;
    bool inverted = mStored.following(next) == Opcode::Not;
    if (inverted)
        ++next;
    const std::optional<Opcode> following = mStored.following(next);
    std::int32_t target = -1;
    if (following == Opcode::TestIf) {
        target = mStored.at(next).first;
    } else if (following == Opcode::And || following == Opcode::Or) {
        const auto threaded = mStored.threadJump(mStored.at(next).first, following == Opcode::Or);
        if (!threaded.needsValue) {
            target = threaded.target;
            inverted ^= following == Opcode::Or;
        }
    }
    if (target < 0 || isBackwards(target)) {
        const std::size_t leftRegister = mStack.reg(left);
        const Op op = static_cast<Op>(static_cast<std::size_t>(Op::Equal) + which);
        const std::size_t producer = mOut.emit(op, mStack.slot(left), leftRegister, mStack.reg(left + 1));
        mStack.pop(2);
        mStack.pushRegister(producer, false, true);
        return;
    }
    // On both paths the rest of the stack must be in its registers.
    for (std::size_t depth = 0; depth < left; ++depth)
        mStack.materialise(depth);
    const std::size_t test = inverted ? kOpposite[which] : which;
    const Entry right = mStack.back();
    const std::size_t leftRegister = mStack.reg(left);
    if (right.kind == Entry::Kind::Constant && mStack.constantOf(right).isInteger())
        emitBranch(kBranchUnlessConstant[test], leftRegister, right.index, target);
    else
        emitBranch(kBranchUnless[test], leftRegister, mStack.reg(left + 1), target);
    merge(target, 2);
    mStack.pop(2);
    mSkip = next - mAt;
}

void HandlerTranslator::shortCircuit() {
    const bool jumpsWhen = here().opcode == Opcode::Or;
    mStack.need(1);
    mStack.follow(mStack.top(), Evaluate::Fully);
    const std::size_t condition = mStack.reg(mStack.top());
    const auto threaded = mStored.threadJump(here().first, jumpsWhen);
    const Op op = jumpsWhen ? Op::BranchIfTrue : Op::BranchIfFalse;
    mStack.pop();
    mStack.flush();
    if (!threaded.needsValue) {
        emitBranch(op, condition, 0, threaded.target);
        merge(threaded.target);
        return;
    }
    const std::uint16_t value = mOut.constant(Value::boolean(threaded.value));
    mDetours.push_back({mOut.emit(op, condition), Op::LoadConstant, mStack.nextSlot(), value, threaded.target});
    mStack.push({});
    merge(threaded.target);
    mStack.pop();
}

void HandlerTranslator::testIf() {
    mStack.need(1);
    mStack.follow(mStack.top(), Evaluate::Fully);
    std::size_t condition = mStack.reg(mStack.top());
    Op op = Op::BranchIfFalse;
    const Entry entry = mStack.pop();
    if (entry.kind == Entry::Kind::Register && mOut.isLast(entry.producer) && mOut.lastOp() == Op::Not) {
        condition = mOut.last().b;
        mOut.takeBack();
        op = Op::BranchIfTrue;
    }
    mStack.flush();
    emitBranch(op, condition, 0, here().first);
    merge(here().first);
}

} // namespace quoddle::machine
