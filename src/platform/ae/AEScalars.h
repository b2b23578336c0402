// SPDX-License-Identifier: MIT
// The scalar families of the coercion table: reading any member of a family into one neutral form and writing it back as any other member.
// Adding a text or number type is one row in AEScalars.cpp. Private to this layer.
#pragma once

#include "platform/ae/AEDesc.h"

#include <variant>

namespace quoddle {

using AENumber = std::variant<std::int64_t, std::uint64_t, double>;

bool isNumberType(DescType type);
bool isTextType(DescType type);
bool isBooleanType(DescType type);
bool isCodeType(DescType type); ///< four bytes that are a code
bool isFileType(DescType type);

/// Readers answer nothing for data that is too short or malformed, writers for a value that the type cannot hold.
std::optional<AENumber> readNumber(const AEDesc& desc);
/// Reals become integers by rounding, halves to even.
std::optional<AEDesc> writeNumber(const AENumber& number, DescType type);
std::optional<std::u16string> readText(const AEDesc& desc);
std::optional<AEDesc> writeText(std::u16string_view text, DescType type);
std::optional<bool> readBoolean(const AEDesc& desc);
std::optional<AEDesc> writeBoolean(bool value, DescType type);
/// An absolute path.
std::optional<std::string> readFile(const AEDesc& desc);

/// The shortest text that reads back as the same number; never depends on the locale.
std::u16string textOfNumber(const AENumber& number);
/// Blanks around the number are allowed, anything else is not.
std::optional<AENumber> numberOfText(std::u16string_view text);

} // namespace quoddle
