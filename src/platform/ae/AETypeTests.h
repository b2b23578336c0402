// SPDX-License-Identifier: MIT
// Tells the kind of value in a descriptor, for all type codes that the language may deliver for it. Only types are looked at; nothing is
// converted.
#pragma once

#include "platform/ae/AEDesc.h"

namespace quoddle {

bool AEIsText(const AEDesc& desc);
bool AEIsInteger(const AEDesc& desc);
bool AEIsReal(const AEDesc& desc);
/// True for file URLs, aliases and the like, and for specifiers that ask for a file by its name.
bool AEIsFile(const AEDesc& desc);

} // namespace quoddle
