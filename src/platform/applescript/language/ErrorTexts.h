// SPDX-License-Identifier: MIT
// What the language says about status numbers when nothing more is known.
#pragma once

#include "platform/base/OSStatus.h"

#include <string>
#include <string_view>

namespace quoddle::language {

/// Never empty; unknown numbers get the general text.
std::u16string messageFor(OSStatus number);
/// The text that names what it is about: the offending object and the expected type, as messages show them.
std::u16string messageFor(OSStatus number, std::u16string_view object, std::u16string_view type);

} // namespace quoddle::language
