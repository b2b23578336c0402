// SPDX-License-Identifier: MIT
// Decodes the bytes of a handler into instructions and checks that they hang together: known codes, operands in range, branches to instructions.
#pragma once

#include "platform/applescript/image/Opcode.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace quoddle::machine {

struct StoredInstruction {
    Opcode opcode;         // the packed codes without their operand bits
    std::uint32_t offset;
    std::int32_t first = 0;  // index; depth; or the branch target as an instruction index
    std::int32_t second = 0;
};

struct OpcodeInfo {
    const char* name;
    Operands operands;
    int taken; // -1: counted by the integer on top
    int left;
};
const OpcodeInfo& infoOf(Opcode opcode);

/// Nothing when the code is damaged. A branch to the end of the code targets one past the last instruction.
std::optional<std::vector<StoredInstruction>> decodeStored(std::string_view bytes, std::size_t literals, std::size_t locals);

} // namespace quoddle::machine
