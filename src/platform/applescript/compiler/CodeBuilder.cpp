// SPDX-License-Identifier: MIT
#include "platform/applescript/compiler/CodeBuilder.h"

namespace quoddle::compiler {

std::u16string_view CodeBuilder::overflow() const {
    if (mBytes.size() > kLongestCode)
        return u"The code of a handler, or of the top of a script, can take 8 MiB. Parts of it can be handlers of their own.";
    return mOverflow;
}

void CodeBuilder::put16(std::size_t value) {
    if (value > 0x7FFF)
        mOverflow = u"A handler, or the top of a script, has room for 32,768 names, numbers and texts.";
    mBytes += static_cast<char>(value >> 8 & 0xFF);
    mBytes += static_cast<char>(value & 0xFF);
}

void CodeBuilder::emitIndexed(Opcode shortForm, Opcode longForm, std::size_t index) {
    if (index < 16) {
        mBytes += static_cast<char>(static_cast<std::size_t>(shortForm) + index);
        return;
    }
    emit(longForm);
    put16(index);
}

void CodeBuilder::emitWithLiteral(Opcode opcode, Object* literal) {
    const std::size_t index = literalIndex(literal);
    emit(opcode);
    put16(index);
}

void CodeBuilder::emitWithLocal(Opcode opcode, std::size_t index) {
    emit(opcode);
    put16(index);
}

void CodeBuilder::emitScope(Opcode opcode, std::size_t depth, std::size_t index) {
    emit(opcode);
    put16(depth);
    put16(index);
}

void CodeBuilder::emitHandleError(Object* message, Object* pattern) {
    const std::size_t messageIndex = literalIndex(message);
    const std::size_t patternIndex = literalIndex(pattern);
    emit(Opcode::HandleError);
    put16(messageIndex);
    put16(patternIndex);
}

void CodeBuilder::branch(Opcode opcode, Label& label) {
    emit(opcode);
    const std::size_t at = mBytes.size();
    mBytes.append(2, '\0');
    label.uses.push_back(at);
    if (label.position >= 0)
        place(label);
}

void CodeBuilder::place(Label& label) {
    if (label.position < 0)
        label.position = static_cast<std::int32_t>(mBytes.size());
    for (std::size_t at : label.uses) {
        const std::int32_t distance = label.position - static_cast<std::int32_t>(at);
        if (distance < INT16_MIN || distance > INT16_MAX)
            mOverflow = u"The code of a block can take 32,767 bytes. Parts of this one can be handlers of their own.";
        mBytes[at] = static_cast<char>(distance >> 8 & 0xFF);
        mBytes[at + 1] = static_cast<char>(distance & 0xFF);
    }
    label.uses.clear();
}

void CodeBuilder::pushInteger(std::int32_t value) {
    constexpr Opcode kOwn[] = {Opcode::PushMinus1, Opcode::Push0, Opcode::Push1, Opcode::Push2, Opcode::Push3};
    if (value >= -1 && value <= 3)
        emit(kOwn[value + 1]);
    else
        pushLiteral(mStore.integer(value));
}

std::size_t CodeBuilder::literalIndex(Object* literal) {
    std::string key;
    switch (literal->kind) {
    case ObjectKind::Nil:
        key = "n";
        break;
    case ObjectKind::Integer:
        key = "i" + std::to_string(literal->integer);
        break;
    case ObjectKind::Code:
        key = static_cast<char>(literal->tag);
        // Commands are told apart by class and ID alone, because two literals of one command may differ in the flags behind.
        key += literal->bytes.substr(0, 8);
        break;
    case ObjectKind::Identifier:
        key = "u";
        key += literal->bytes;
        break;
    default:
        mLiterals.push_back(literal);
        return mLiterals.size() - 1;
    }
    auto [entry, isNew] = mKnown.try_emplace(std::move(key), mLiterals.size());
    if (isNew)
        mLiterals.push_back(literal);
    return entry->second;
}

} // namespace quoddle::compiler
