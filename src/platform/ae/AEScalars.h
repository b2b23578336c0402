// SPDX-License-Identifier: MIT
// The scalar families of the coercion table: each member of a family can be read into one neutral form and written from it.
// A new text or number type takes one row in AEScalars.cpp. Private to this layer.
#pragma once

#include "platform/ae/AEDesc.h"

#include <variant>

namespace quoddle {

using AENumber = std::variant<std::int64_t, std::uint64_t, double>;

bool isNumberType(DescType type);
bool isTextType(DescType type);
bool isBooleanType(DescType type);
bool isCodeType(DescType type); ///< a code of four bytes
bool isFileType(DescType type);

/// The readers return nullopt for data that is too short or malformed, the writers for a value that the type cannot hold.
std::optional<AENumber> readNumber(const AEDesc& desc);
/// A real that becomes an integer is rounded, halves to even.
std::optional<AEDesc> writeNumber(const AENumber& number, DescType type);
std::optional<std::u16string> readText(const AEDesc& desc);
std::optional<AEDesc> writeText(std::u16string_view text, DescType type);
std::optional<bool> readBoolean(const AEDesc& desc);
std::optional<AEDesc> writeBoolean(bool value, DescType type);
/// The absolute path of a file.
std::optional<std::string> readFile(const AEDesc& desc);

/// The shortest text that reads back as the same number; independent of the locale.
std::u16string textOfNumber(const AENumber& number);
/// Reads a number with nothing but blanks around it.
std::optional<AENumber> numberOfText(std::u16string_view text);

} // namespace quoddle
