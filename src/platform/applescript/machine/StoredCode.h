// SPDX-License-Identifier: MIT
// Decodes the bytes of a handler into instructions and checks them: codes are known, operands in range, and branches lead to instructions.
#pragma once

#include "platform/applescript/image/Opcode.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace quoddle::machine {

struct StoredInstruction {
    Opcode opcode; // of a packed instruction the code without the operand bits
    std::uint32_t offset;
    std::int32_t first = 0; // an index, a depth, or the branch target as an index of instructions
    std::int32_t second = 0;
};

struct OpcodeInfo {
    const char* name;
    Operands operands;
    int taken; // -1: as many as the integer on top of the stack says
    int left;
};
const OpcodeInfo& infoOf(Opcode opcode);

struct UnknownInstruction {
    std::uint8_t code;
    std::size_t offset;
};
/// The first byte of a handler that stands where an instruction should and is none. nullopt when there is none such.
std::optional<UnknownInstruction> unknownInstruction(std::string_view bytes);

/// nullopt when the code is damaged. A branch to the end of the code targets one past the last instruction.
std::optional<std::vector<StoredInstruction>> decodeStored(std::string_view bytes, std::size_t literals, std::size_t locals);

} // namespace quoddle::machine
