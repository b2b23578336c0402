// SPDX-License-Identifier: MIT
// Collects the instructions and constants of one handler while it is translated. The last instructions, down to the barrier, may still be
// changed or taken back.
#pragma once

#include "platform/applescript/machine/Code.h"

#include <unordered_map>
#include <vector>

namespace quoddle::machine {

class CodeEmitter {
public:
    explicit CodeEmitter(Code& code) : mCode(code) {}

    /// Returns the index of the new instruction. Throws Corruption when an operand needs more than 16 bits.
    std::size_t emit(Op op, std::size_t a = 0, std::size_t b = 0, std::size_t c = 0, std::size_t d = 0);
    /// Throws Corruption when there are too many.
    std::uint16_t constant(Value value);
    const Value& constantAt(std::size_t index) const { return mCode.constants[index]; }
    /// The place of a cache for an instruction that looks a name up; those of one handler that look up the same one in one way share it.
    std::size_t cache(Op op, std::uint16_t name);

    std::size_t size() const { return mCode.instructions.size(); }
    Instruction& at(std::size_t index) { return mCode.instructions[index]; }
    Op& opAt(std::size_t index) { return mOps[index]; }
    Instruction& last() { return mCode.instructions.back(); }
    Op lastOp() const { return mOps.back(); }
    void takeBack();

    /// Forbids changing what was emitted so far, because what comes next can be reached another way or depends on it.
    void barrier() { mBarrier = static_cast<std::int32_t>(size()) - 1; }
    bool canChange(std::int32_t producer) const { return producer > mBarrier; }
    bool isLast(std::int32_t producer) const {
        return producer >= 0 && static_cast<std::size_t>(producer) + 1 == size() && canChange(producer);
    }

    /// Writes the addresses of the interpreter's code into the instructions; see translate.
    void link(const void* const* labels);

private:
    Code& mCode;
    std::vector<Op> mOps;
    std::unordered_map<std::uint64_t, std::uint16_t> mConstantIndexes;
    std::unordered_map<std::uint32_t, std::size_t> mCacheIndexes;
    std::int32_t mBarrier = -1;
};

/// Whether the only effect of the instruction is to set r[a].
bool writesOnlyItsTarget(Op op);

} // namespace quoddle::machine
