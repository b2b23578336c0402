// SPDX-License-Identifier: MIT
// The stored instructions of one handler, and what can be known of them before any is translated. Immutable once made.
#pragma once

#include "platform/applescript/image/Block.h"
#include "platform/applescript/image/Object.h"
#include "platform/applescript/machine/StoredCode.h"

#include <span>
#include <vector>

namespace quoddle::machine {

/// Thrown while translating: the stored code makes no sense.
struct Corruption {};

class StoredHandler {
public:
    /// Throws Corruption. The block outlives this object.
    explicit StoredHandler(const Object& block);

    std::size_t size() const { return mCode.size(); }
    const StoredInstruction& at(std::size_t index) const { return mCode[index]; }
    const Object* literal(std::int32_t index) const { return mLiterals[static_cast<std::size_t>(index)]; }
    /// The opcode at `index`, unless that is past the end or jumped to: what surely follows the instruction before.
    std::optional<Opcode> following(std::size_t index) const;
    /// `index` may be one past the last instruction.
    bool isTarget(std::size_t index) const { return mIsTarget[index]; }
    /// A local that only ever receives computed values and literals: once set, it can never be without a value.
    bool isCertain(std::size_t local) const { return mIsCertain[local]; }
    /// Does the handler ask for "the result"? If not, no statement has to keep its value for that.
    bool usesResult() const { return mUsesResult; }

    struct Threaded {
        std::int32_t target;
        bool needsValue;
        bool value;
    };
    /// Where a jump with a known truth value on the stack really leads.
    Threaded thread(std::int32_t target, bool value) const;
    /// Is the value on top at this place thrown away without being looked at?
    bool topIsDead(std::int32_t target, int limit = 40) const;

private:
    bool isBooleanCoercion(std::size_t at) const;
    void findTargets();
    void findCertainLocals(std::size_t localCount);

    std::vector<StoredInstruction> mCode;
    std::span<Object* const> mLiterals;
    std::vector<bool> mIsTarget;
    std::vector<bool> mIsLoopExit;
    std::vector<bool> mIsCertain;
    bool mUsesResult = false;
};

} // namespace quoddle::machine
