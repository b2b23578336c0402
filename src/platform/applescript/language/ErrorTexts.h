// SPDX-License-Identifier: MIT
// What the language says about status numbers when nothing more is known.
#pragma once

#include "platform/base/OSStatus.h"

#include <string>

namespace quoddle::language {

/// Never empty; unknown numbers get the general text.
std::u16string messageFor(OSStatus number);

} // namespace quoddle::language
