// SPDX-License-Identifier: MIT
#include "platform/applescript/machine/translator/StoredHandler.h"

#include <algorithm>

namespace quoddle::machine {

namespace {

bool isLiteral(Opcode opcode) {
    return opcode == Opcode::PushLiteral || opcode == Opcode::PushLiteralLong;
}

/// Whether the instruction always leaves a value that is defined.
bool givesValue(Opcode opcode) {
    return (opcode >= Opcode::Add && opcode <= Opcode::Negate) || (opcode >= Opcode::Equal && opcode <= Opcode::Contains) ||
           (opcode >= Opcode::PushMinus1 && opcode <= Opcode::Push3) || isLiteral(opcode) || opcode == Opcode::MakeVector ||
           opcode == Opcode::MakeRecord || opcode == Opcode::Not || opcode == Opcode::PushTrue || opcode == Opcode::PushFalse;
}

/// Instructions whose branch operand only says where a region ends; they never jump.
bool onlyMarksEnd(Opcode opcode) {
    return opcode == Opcode::Tell || opcode == Opcode::Consider || opcode == Opcode::BeginTransaction;
}

} // namespace

StoredHandler::StoredHandler(const Object& block) : mLiterals(block.children[block::kLiterals]->children) {
    const std::size_t localCount = block.children[block::kLocals]->children.size();
    auto decoded = decodeStored(block.children[block::kCode]->bytes, mLiterals.size(), localCount);
    if (!decoded)
        throw Corruption();
    mCode = std::move(*decoded);
    findTargets();
    findCertainLocals(localCount);
}

std::optional<Opcode> StoredHandler::following(std::size_t index) const {
    if (index >= mCode.size() || mIsTarget[index])
        return std::nullopt;
    return mCode[index].opcode;
}

bool StoredHandler::isBooleanCoercion(std::size_t at) const {
    if (!isLiteral(mCode[at].opcode) || following(at + 1) != Opcode::Coerce)
        return false;
    const Object* type = literal(mCode[at].first);
    return type->isCode(CodeTag::Class) && type->code() == "bool"_4cc;
}

StoredHandler::ThreadedJump StoredHandler::threadJump(std::int32_t target, bool value) const {
    for (int limit = 0; limit < 64; ++limit) {
        const auto at = static_cast<std::size_t>(target);
        if (at >= mCode.size())
            break;
        const StoredInstruction& stored = mCode[at];
        if (stored.opcode == Opcode::TestIf)
            return {value ? target + 1 : stored.first, false, value};
        if (stored.opcode == Opcode::And || stored.opcode == Opcode::Or) {
            if (value == (stored.opcode == Opcode::And))
                return {target + 1, false, value};
            target = stored.first;
        } else if (stored.opcode == Opcode::Not) {
            value = !value;
            ++target;
        } else if (isBooleanCoercion(at)) {
            target += 2;
        } else {
            break;
        }
    }
    return {target, true, value};
}

void StoredHandler::findTargets() {
    mIsTarget.resize(mCode.size() + 2);
    mIsLoopExit.resize(mCode.size() + 2);
    for (const StoredInstruction& stored : mCode) {
        if (stored.opcode == Opcode::GetResult)
            mUsesResult = true;
        if (stored.opcode == Opcode::PushGlobal || stored.opcode == Opcode::PushGlobalLong) {
            const Object* name = literal(stored.first);
            mUsesResult |= name->isCode(CodeTag::Class) && name->code() == "rslt"_4cc;
        }
        if (infoOf(stored.opcode).operands != Operands::Branch || onlyMarksEnd(stored.opcode))
            continue;
        std::int32_t target = stored.first;
        if (stored.opcode == Opcode::And || stored.opcode == Opcode::Or)
            target = threadJump(target, stored.opcode == Opcode::Or).target;
        mIsTarget[static_cast<std::size_t>(target)] = true;
        if (stored.opcode == Opcode::LinkRepeat)
            mIsLoopExit[static_cast<std::size_t>(target)] = true;
    }
}

void StoredHandler::findCertainLocals(std::size_t localCount) {
    // A handler that catches errors may bind parts that an error lacks, so none of its locals is certain.
    const bool catches = std::any_of(mCode.begin(), mCode.end(), [](const auto& stored) { return stored.opcode == Opcode::HandleError; });
    mCertain = LocalSet(localCount, !catches);
    for (std::size_t i = 0; i < mCode.size() && !catches; ++i) {
        if (mCode[i].opcode != Opcode::PopVariable && mCode[i].opcode != Opcode::PopVariableLong)
            continue;
        std::size_t source = i;
        bool certain = false;
        while (source > 0 && !mIsTarget[source]) {
            const Opcode before = mCode[--source].opcode;
            if (before == Opcode::GetData || before == Opcode::Clone)
                continue;
            certain = givesValue(before);
            break;
        }
        if (!certain)
            mCertain.put(static_cast<std::size_t>(mCode[i].first), false);
    }
}

bool StoredHandler::topIsDead(std::int32_t target, int limit) const {
    for (auto at = static_cast<std::size_t>(target); at < mCode.size() && limit > 0; --limit) {
        const StoredInstruction& stored = mCode[at];
        switch (stored.opcode) {
        case Opcode::StoreResult:
            return !mUsesResult;
        case Opcode::Pop:
            return true;
        case Opcode::Dup:
            if (mUsesResult || at + 1 >= mCode.size() || mCode[at + 1].opcode != Opcode::StoreResult)
                return false;
            at += 2;
            break;
        case Opcode::EndTell:
        case Opcode::EndConsider:
        case Opcode::EndTimeout:
        case Opcode::EndTransaction:
            ++at;
            break;
        case Opcode::Jump: // back to the beginning of a loop: what counts is the end of the loop, which gets the value
            if (stored.first > static_cast<std::int32_t>(at))
                at = static_cast<std::size_t>(stored.first);
            else if (mIsLoopExit[at + 1])
                ++at;
            else
                return false;
            break;
        case Opcode::EndErrorHandler:
            at = static_cast<std::size_t>(stored.first);
            break;
        default:
            return false;
        }
    }
    return false;
}

} // namespace quoddle::machine
