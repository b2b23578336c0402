// SPDX-License-Identifier: MIT
// The readers for the forms of a strings table. Private to this folder.
#pragma once

#include "platform/base/strings/StringsFile.h"

namespace quoddle {

StringsTable readTextStrings(std::u16string_view text);
StringsTable readXMLStrings(std::u16string_view text);
StringsTable readBinaryStrings(std::string_view bytes);

} // namespace quoddle
