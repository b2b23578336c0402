// SPDX-License-Identifier: MIT
#include "platform/applescript/machine/translator/SymbolicStack.h"

#include <algorithm>

namespace quoddle::machine {

namespace {
constexpr std::size_t kMaximumRegisters = 60000;
constexpr std::uint16_t kSavedFlag = 0x8000;
} // namespace

void SymbolicStack::need(std::size_t count) const {
    if (mEntries.size() < count)
        throw Corruption();
}

std::size_t SymbolicStack::slot(std::size_t depth) const {
    if (mBase + depth >= kMaximumRegisters)
        throw Corruption();
    return mBase + depth;
}

void SymbolicStack::reserve(std::size_t count) {
    mMaximumDepth = std::max(mMaximumDepth, mEntries.size() + count);
}

void SymbolicStack::push(Entry entry) {
    mEntries.push_back(entry);
    reserve(0);
}

void SymbolicStack::pushRegister(std::size_t producer, bool raw, bool boolean) {
    Entry entry;
    entry.producer = static_cast<std::int32_t>(producer);
    entry.raw = raw;
    entry.boolean = boolean;
    push(entry);
}

void SymbolicStack::pushConstant(Value value) {
    Entry entry;
    entry.kind = Entry::Kind::Constant;
    entry.index = mOut.constant(value);
    entry.boolean = value.isBoolean();
    entry.raw = is<Specifier>(value) && !(value.asObject()->flags & Specifier::kIsReference);
    push(entry);
}

void SymbolicStack::pushMoved(const Entry& entry, std::size_t fromDepth) {
    Entry moved = entry;
    if (entry.kind == Entry::Kind::Register)
        moved.producer = static_cast<std::int32_t>(mOut.emit(Op::Move, nextSlot(), slot(fromDepth)));
    push(moved);
}

Entry SymbolicStack::pop() {
    if (mEntries.empty() || mEntries.back().kind == Entry::Kind::Saved)
        throw Corruption();
    Entry entry = mEntries.back();
    mEntries.pop_back();
    return entry;
}

void SymbolicStack::pop(std::size_t count) {
    for (; count > 0; --count)
        pop();
}

void SymbolicStack::popSaved() {
    if (mEntries.empty() || mEntries.back().kind != Entry::Kind::Saved)
        throw Corruption();
    mEntries.pop_back();
}

std::size_t SymbolicStack::popCount() {
    const Entry entry = pop();
    if (entry.kind != Entry::Kind::Constant || !constantOf(entry).isInteger())
        throw Corruption();
    const std::int32_t count = constantOf(entry).asInteger();
    if (count < 0 || static_cast<std::size_t>(count) > size())
        throw Corruption();
    return static_cast<std::size_t>(count);
}

bool SymbolicStack::inTell() const {
    return std::any_of(mEntries.begin(), mEntries.end(), [](const Entry& entry) {
        return entry.kind == Entry::Kind::Saved && entry.index == static_cast<std::uint16_t>(Op::EndTell);
    });
}

std::size_t SymbolicStack::reg(std::size_t depth) {
    if (mEntries[depth].kind == Entry::Kind::Local)
        return mEntries[depth].index;
    materialise(depth);
    return slot(depth);
}

void SymbolicStack::materialise(std::size_t depth) {
    Entry& entry = mEntries[depth];
    std::size_t producer = 0;
    switch (entry.kind) {
    case Entry::Kind::Register:
    case Entry::Kind::Saved:
        return;
    case Entry::Kind::Local:
        producer = mOut.emit(Op::Move, slot(depth), entry.index);
        break;
    case Entry::Kind::Constant:
        producer = mOut.emit(Op::LoadConstant, slot(depth), entry.index);
        break;
    case Entry::Kind::Me:
        producer = mOut.emit(Op::LoadMe, slot(depth));
        break;
    case Entry::Kind::It:
        producer = mOut.emit(Op::LoadIt, slot(depth));
        break;
    case Entry::Kind::Next:
        throw Corruption();
    }
    entry.kind = Entry::Kind::Register;
    entry.producer = static_cast<std::int32_t>(producer);
}

void SymbolicStack::materialiseFrom(std::size_t depth) {
    for (; depth < size(); ++depth)
        materialise(depth);
}

void SymbolicStack::flush(bool exceptTop) {
    const std::size_t count = size() - (exceptTop && !mEntries.empty() ? 1 : 0);
    for (std::size_t depth = 0; depth < count; ++depth)
        materialise(depth);
}

void SymbolicStack::follow(std::size_t depth, Evaluate how) {
    Entry& entry = mEntries[depth];
    if (!entry.raw)
        return;
    if (entry.kind == Entry::Kind::Register && mOut.canChange(entry.producer)) {
        const auto at = static_cast<std::size_t>(entry.producer);
        Instruction& producer = mOut.at(at);
        switch (mOut.opAt(at)) {
        case Op::GetProperty:
            producer.d = static_cast<std::uint16_t>(how);
            entry.raw = how != Evaluate::Fully;
            return;
        case Op::BuildElement:
        case Op::GetElementLocally:
            if (how == Evaluate::Locally)
                mOut.opAt(at) = Op::GetElementLocally;
            else
                mOut.opAt(at) = mOut.constantAt(producer.d) == Value::code("cobj"_4cc) ? Op::GetItem : Op::GetElement;
            entry.raw = how != Evaluate::Fully;
            return;
        default:
            break;
        }
    }
    const std::size_t from = reg(depth);
    const std::size_t at = mOut.emit(how == Evaluate::Fully ? Op::Evaluate : Op::EvaluateLocally, slot(depth), from);
    entry.kind = Entry::Kind::Register;
    entry.producer = static_cast<std::int32_t>(at);
    entry.raw = how != Evaluate::Fully;
    entry.maybeUndefined = false;
    mOut.barrier(); // an application that is asked may change anything
}

void SymbolicStack::followContainer(std::size_t depth) {
    const Entry& entry = mEntries[depth];
    const bool isMany = entry.kind == Entry::Kind::Register && mOut.canChange(entry.producer) &&
                        mOut.opAt(static_cast<std::size_t>(entry.producer)) == Op::MakeSpecifier;
    if (!isMany)
        follow(depth, Evaluate::Locally);
}

void SymbolicStack::requireResult(std::size_t depth) {
    if (!mEntries[depth].maybeUndefined)
        return;
    mOut.emit(Op::CheckResult, reg(depth));
    mEntries[depth].maybeUndefined = false;
}

Shape SymbolicStack::shape(std::size_t dropped) const {
    Shape shape;
    for (std::size_t depth = 0; depth + dropped < size(); ++depth) {
        const Entry& entry = mEntries[depth];
        shape.push_back(entry.kind == Entry::Kind::Saved ? static_cast<std::uint16_t>(kSavedFlag | entry.index) : std::uint16_t(0));
    }
    return shape;
}

void SymbolicStack::setShape(const Shape& shape) {
    mEntries.clear();
    for (std::uint16_t place : shape) {
        Entry entry;
        entry.kind = place == 0 ? Entry::Kind::Register : Entry::Kind::Saved;
        entry.index = place & ~kSavedFlag;
        push(entry);
    }
}

} // namespace quoddle::machine
