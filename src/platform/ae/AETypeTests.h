// SPDX-License-Identifier: MIT
// What kind of value a descriptor holds, over every type code that the language may deliver for it. Looks at types, converts nothing.
#pragma once

#include "platform/ae/AEDesc.h"

namespace quoddle {

bool AEIsText(const AEDesc& desc);
bool AEIsInteger(const AEDesc& desc);
bool AEIsReal(const AEDesc& desc);
/// File URLs, aliases and their like, and specifiers that ask for a file by its name.
bool AEIsFile(const AEDesc& desc);

} // namespace quoddle
