// SPDX-License-Identifier: MIT
// The code of one handler while it is written: bytes, literals, branches. This class knows how instructions are encoded, not what they are
// for.
#pragma once

#include "platform/applescript/image/Object.h"
#include "platform/applescript/image/Opcode.h"

#include <unordered_map>

namespace quoddle::compiler {

class CodeBuilder {
public:
    /// The target of branches, which may be emitted before the target is placed.
    struct Label {
        std::int32_t position = -1;
        std::vector<std::size_t> uses;
    };

    explicit CodeBuilder(ObjectStore& store) : mStore(store) {}

    void emit(Opcode opcode) { mBytes += static_cast<char>(opcode); }
    /// The index of a local or a literal takes 16 bits; where an instruction has a short form, that is used for indexes below 16.
    void emitLocal(Opcode shortForm, Opcode longForm, std::size_t index) { emitIndexed(shortForm, longForm, index); }
    void emitLiteral(Opcode shortForm, Opcode longForm, Object* literal) { emitIndexed(shortForm, longForm, literalIndex(literal)); }
    void emitWithLiteral(Opcode opcode, Object* literal);
    void emitWithLocal(Opcode opcode, std::size_t index);
    void emitScope(Opcode opcode, std::size_t depth, std::size_t index);
    void emitHandleError(Object* message, Object* pattern);
    void branch(Opcode opcode, Label& label);
    void place(Label& label);

    /// Uses the instructions for -1, 0, 1, 2 and 3 where possible.
    void pushInteger(std::int32_t value);
    void pushLiteral(Object* literal) { emitLiteral(Opcode::PushLiteral, Opcode::PushLiteralLong, literal); }

    std::size_t size() const { return mBytes.size(); }
    /// Empty while every index and branch fits its field and the code is not too long; else the code is useless, and this sentence tells
    /// the author why.
    std::u16string_view overflow() const;

    Object* bytes() { return mStore.raw(mBytes); }
    Object* literals() { return mStore.vector(mLiterals); }

private:
    void put16(std::size_t value);
    void emitIndexed(Opcode shortForm, Opcode longForm, std::size_t index);
    std::size_t literalIndex(Object* literal);

    ObjectStore& mStore;
    std::string mBytes;
    std::vector<Object*> mLiterals;
    std::unordered_map<std::string, std::size_t> mKnown; // numbers, codes and names are stored once
    std::u16string_view mOverflow;
};

} // namespace quoddle::compiler
