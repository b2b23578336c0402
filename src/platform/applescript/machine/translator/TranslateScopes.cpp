// SPDX-License-Identifier: MIT
// The scopes tell, considering, with timeout, with transaction and try: the state before a scope waits on the stack until it ends.
#include "platform/applescript/machine/translator/HandlerTranslator.h"

#include <algorithm>

namespace quoddle::machine {

namespace {
constexpr std::size_t kSavedByTry = 3;
}

void HandlerTranslator::beginScope(std::size_t savedCount, Op closing) {
    Entry saved;
    saved.kind = Entry::Kind::Saved;
    saved.index = closing == Op::Move ? std::uint16_t(0) : static_cast<std::uint16_t>(closing);
    for (; savedCount > 0; --savedCount)
        mStack.push(saved);
}

void HandlerTranslator::beginTell() {
    mStack.need(1);
    prepareArguments(mStack.top(), Evaluate::Locally);
    const std::size_t target = mStack.reg(mStack.top());
    mStack.pop();
    mOut.emit(Op::BeginTell, mStack.nextSlot(), target);
    beginScope(1, Op::EndTell);
}

void HandlerTranslator::beginTimeout() {
    mStack.need(1);
    prepareArguments(mStack.top(), Evaluate::Locally);
    const std::size_t seconds = mStack.reg(mStack.top());
    mStack.pop();
    mOut.emit(Op::BeginTimeout, mStack.nextSlot(), seconds);
    beginScope(1, Op::EndTimeout);
}

void HandlerTranslator::beginTransaction() {
    mStack.need(1);
    prepareArguments(mStack.top(), Evaluate::Locally);
    mStack.reg(mStack.top());
    mStack.pop();
    beginScope(1, Op::Move);
}

void HandlerTranslator::beginConsider() {
    const Entry ignored = mStack.pop(), considered = mStack.pop();
    if (ignored.kind != Entry::Kind::Constant || considered.kind != Entry::Kind::Constant)
        throw Corruption();
    mOut.emit(Op::BeginConsider, mStack.nextSlot(), considered.index, ignored.index);
    beginScope(1, Op::EndConsider);
}

/// The value of a scope moves down to the depth at which the scope began.
void HandlerTranslator::endScope(Op closing) {
    mStack.need(2);
    const std::size_t valueDepth = mStack.top();
    mStack.follow(valueDepth, Evaluate::Fully);
    if (mStack.back().kind == Entry::Kind::It)
        mStack.materialise(valueDepth);
    const Entry value = mStack.pop();
    mStack.popSaved();
    if (closing != Op::Corrupt)
        mOut.emit(closing, mStack.nextSlot());
    if (mStored.topIsDead(static_cast<std::int32_t>(mAt) + 1))
        mStack.pushConstant(Value::undefined());
    else
        mStack.pushMoved(value, valueDepth);
}

void HandlerTranslator::beginTry() {
    if (here().first <= static_cast<std::int32_t>(mAt))
        throw Corruption();
    mStack.flush();
    mStack.slot(mStack.size() + kSavedByTry);
    mOut.emit(Op::BeginTry, mStack.nextSlot());
    beginScope(kSavedByTry, Op::Move);
    merge(here().first);
    mOpenTries.emplace_back(here().first, static_cast<std::uint32_t>(mOut.size()));
    mOut.barrier();
}

void HandlerTranslator::endTry() {
    mStack.need(kSavedByTry + 1);
    const std::size_t valueDepth = mStack.top();
    mStack.follow(valueDepth, Evaluate::Fully);
    if (mStack.back().kind == Entry::Kind::It)
        mStack.materialise(valueDepth);
    const Entry value = mStack.pop();
    for (std::size_t i = 0; i < kSavedByTry; ++i)
        mStack.popSaved();
    if (mStored.topIsDead(here().first))
        mStack.pushConstant(Value::undefined());
    else
        mStack.pushMoved(value, valueDepth);
    jump();
}

void HandlerTranslator::catchError() {
    for (std::size_t i = 0; i < kSavedByTry; ++i)
        mStack.popSaved();
    const std::uint16_t pattern = mOut.constant(Value::object(mHeap.make<Stored>(mStored.literal(here().second))));
    mOut.emit(Op::CatchError, mStack.nextSlot(), literalConstant(), pattern);
    mOut.barrier();
    mDefined.clear();
}

} // namespace quoddle::machine
