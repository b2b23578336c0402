// SPDX-License-Identifier: MIT
#include "platform/applescript/machine/translator/CodeEmitter.h"

#include "platform/applescript/machine/translator/StoredHandler.h"

#include <algorithm>

namespace quoddle::machine {

std::size_t CodeEmitter::emit(Op op, std::size_t a, std::size_t b, std::size_t c, std::size_t d) {
    if (std::max({a, b, c, d}) > 0xFFFF)
        throw Corruption();
    Instruction instruction;
    instruction.a = static_cast<std::uint16_t>(a);
    instruction.b = static_cast<std::uint16_t>(b);
    instruction.c = static_cast<std::uint16_t>(c);
    instruction.d = static_cast<std::uint16_t>(d);
    mCode.instructions.push_back(instruction);
    mOps.push_back(op);
    return size() - 1;
}

std::uint16_t CodeEmitter::constant(Value value) {
    auto [entry, isNew] = mConstantIndexes.try_emplace(value.bits(), static_cast<std::uint16_t>(mCode.constants.size()));
    if (isNew) {
        if (mCode.constants.size() > 0xFFF0)
            throw Corruption();
        mCode.constants.push_back(value);
    }
    return entry->second;
}

std::size_t CodeEmitter::cache(Op op, std::uint16_t name) {
    const std::uint32_t use = static_cast<std::uint32_t>(op) << 16 | name;
    auto [entry, isNew] = mCacheIndexes.try_emplace(use, mCode.caches.size());
    if (isNew)
        mCode.caches.emplace_back();
    return entry->second;
}

void CodeEmitter::takeBack() {
    mCode.instructions.pop_back();
    mOps.pop_back();
}

void CodeEmitter::link(const void* const* labels) {
    for (std::size_t i = 0; i < mOps.size(); ++i)
        mCode.instructions[i].go = labels[static_cast<std::size_t>(mOps[i])];
}

bool writesOnlyItsTarget(Op op) {
    return (op >= Op::Move && op <= Op::LoadIt) || (op >= Op::Add && op <= Op::Contains) || (op >= Op::Negate && op <= Op::Coerce) ||
           op == Op::GetSlot || op == Op::GetScope || op == Op::GetGlobal || op == Op::GetResult || op == Op::GetProperty ||
           op == Op::GetItem || op == Op::GetElement || op == Op::GetElementLocally || op == Op::BuildElement || op == Op::Evaluate ||
           op == Op::EvaluateLocally || op == Op::MakeReference || op == Op::Clone || op == Op::MakeList || op == Op::MakeRecord ||
           op == Op::Count;
}

} // namespace quoddle::machine
