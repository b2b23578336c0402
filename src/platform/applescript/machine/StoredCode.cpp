// SPDX-License-Identifier: MIT
#include "platform/applescript/machine/StoredCode.h"

#include <array>

namespace quoddle::machine {

namespace {

struct OpcodeTable {
    std::array<OpcodeInfo, 256> rows{};
    std::array<Opcode, 256> opcodes{};

    constexpr OpcodeTable() {
#define QUODDLE_OPCODE(name, code, operands, taken, left) set(code, {#name, Operands::operands, taken, left}, Opcode::name);
        QUODDLE_OPCODES(QUODDLE_OPCODE)
#undef QUODDLE_OPCODE
        for (int packed = 0xA0; packed < 0x100; ++packed) {
            rows[packed] = rows[packed & 0xF0];
            opcodes[packed] = opcodes[packed & 0xF0];
        }
        for (int packed = 0xF0; packed < 0x100; ++packed) { // literals 16 to 31
            rows[packed] = rows[0xE0];
            opcodes[packed] = opcodes[0xE0];
        }
    }
    constexpr void set(int code, OpcodeInfo info, Opcode opcode) {
        rows[code] = info;
        opcodes[code] = opcode;
    }
};
constexpr OpcodeTable kTable;

std::int32_t wordAt(std::string_view bytes, std::size_t at) {
    return static_cast<std::int16_t>(static_cast<unsigned char>(bytes[at]) << 8 | static_cast<unsigned char>(bytes[at + 1]));
}

/// The number of 16-bit operands behind an instruction.
std::size_t operandWords(const OpcodeInfo& info) {
    switch (info.operands) {
    case Operands::None:
    case Operands::PackedLocal:
    case Operands::PackedLiteral:
        return 0;
    case Operands::Scope:
    case Operands::TwoLiterals:
        return 2;
    default:
        return 1;
    }
}

} // namespace

const OpcodeInfo& infoOf(Opcode opcode) {
    return kTable.rows[static_cast<std::uint8_t>(opcode)];
}

std::optional<UnknownInstruction> unknownInstruction(std::string_view bytes) {
    for (std::size_t at = 0; at < bytes.size();) {
        const auto byte = static_cast<std::uint8_t>(bytes[at]);
        if (!kTable.rows[byte].name)
            return UnknownInstruction{byte, at};
        at += 1 + 2 * operandWords(kTable.rows[byte]);
    }
    return std::nullopt;
}

std::optional<std::vector<StoredInstruction>> decodeStored(std::string_view bytes, std::size_t literals, std::size_t locals) {
    if (bytes.size() > kLongestCode)
        return std::nullopt;
    constexpr std::int32_t kNowhere = -1;
    std::vector<StoredInstruction> code;
    std::vector<std::int32_t> indexAt(bytes.size() + 1, kNowhere);
    auto isIndex = [](std::int32_t index, std::size_t count) { return index >= 0 && static_cast<std::size_t>(index) < count; };

    for (std::size_t at = 0; at < bytes.size();) {
        const auto byte = static_cast<unsigned char>(bytes[at]);
        const OpcodeInfo& info = kTable.rows[byte];
        if (!info.name)
            return std::nullopt;
        StoredInstruction instruction{kTable.opcodes[byte], static_cast<std::uint32_t>(at)};
        indexAt[at] = static_cast<std::int32_t>(code.size());
        const bool isPacked = info.operands == Operands::PackedLocal || info.operands == Operands::PackedLiteral;
        const std::size_t words = operandWords(info);
        if (bytes.size() - at < 1 + 2 * words)
            return std::nullopt;
        if (isPacked)
            instruction.first = byte >= 0xE0 ? byte & 0x1F : byte & 0x0F;
        if (words > 0)
            instruction.first = wordAt(bytes, at + 1);
        if (words > 1)
            instruction.second = wordAt(bytes, at + 3);
        if (info.operands == Operands::Branch)
            instruction.first += static_cast<std::int32_t>(at) + 1; // the offset is counted from the operand
        code.push_back(instruction);
        at += 1 + 2 * words;
    }
    indexAt[bytes.size()] = static_cast<std::int32_t>(code.size());

    for (StoredInstruction& instruction : code) {
        switch (infoOf(instruction.opcode).operands) {
        case Operands::Literal:
        case Operands::PackedLiteral:
            if (!isIndex(instruction.first, literals))
                return std::nullopt;
            break;
        case Operands::TwoLiterals:
            if (!isIndex(instruction.first, literals) || !isIndex(instruction.second, literals))
                return std::nullopt;
            break;
        case Operands::Local:
        case Operands::PackedLocal:
            if (!isIndex(instruction.first, locals))
                return std::nullopt;
            break;
        case Operands::Scope:
            if (instruction.first < 0 || instruction.first > 255 || instruction.second < 0)
                return std::nullopt;
            break;
        case Operands::Branch:
            if (!isIndex(instruction.first, bytes.size() + 1) || indexAt[static_cast<std::size_t>(instruction.first)] == kNowhere)
                return std::nullopt;
            instruction.first = indexAt[static_cast<std::size_t>(instruction.first)];
            break;
        case Operands::None:
            break;
        }
    }
    return code;
}

} // namespace quoddle::machine
