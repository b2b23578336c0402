// SPDX-License-Identifier: MIT
// The stored instructions of one handler, and what is known of them before any is translated. Immutable.
#pragma once

#include "platform/applescript/image/Block.h"
#include "platform/applescript/image/Object.h"
#include "platform/applescript/machine/StoredCode.h"
#include "platform/applescript/machine/translator/LocalSet.h"

#include <span>
#include <vector>

namespace quoddle::machine {

/// Thrown while translating when the stored code makes no sense.
struct Corruption {};

class StoredHandler {
public:
    /// Throws Corruption. The block must outlive this object.
    explicit StoredHandler(const Object& block);

    std::size_t size() const { return mCode.size(); }
    const StoredInstruction& at(std::size_t index) const { return mCode[index]; }
    const Object* literal(std::int32_t index) const { return mLiterals[static_cast<std::size_t>(index)]; }
    /// The opcode at `index` when it surely follows the instruction before: nullopt past the end and where a jump leads.
    std::optional<Opcode> following(std::size_t index) const;
    /// `index` may be one past the last instruction.
    bool isTarget(std::size_t index) const { return mIsTarget[index]; }
    /// The locals that only ever get computed values and literals, so that once set they always have a value.
    const LocalSet& certainLocals() const { return mCertain; }
    /// Whether the handler asks for `the result`. If not, statements need not keep their values for that.
    bool usesResult() const { return mUsesResult; }

    struct ThreadedJump {
        std::int32_t target;
        bool needsValue;
        bool value;
    };
    /// Jump threading: where a jump with a known truth value on the stack finally leads.
    ThreadedJump threadJump(std::int32_t target, bool value) const;
    /// Whether the value on top of the stack at `target` is thrown away without being looked at.
    bool topIsDead(std::int32_t target, int limit = 40) const;

private:
    bool isBooleanCoercion(std::size_t at) const;
    void findTargets();
    void findCertainLocals(std::size_t localCount);

    std::vector<StoredInstruction> mCode;
    std::span<Object* const> mLiterals;
    std::vector<bool> mIsTarget;
    std::vector<bool> mIsLoopExit;
    LocalSet mCertain;
    bool mUsesResult = false;
};

} // namespace quoddle::machine
