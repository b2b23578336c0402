// SPDX-License-Identifier: MIT
// Events and descriptors as text, for tests that compare them.
#pragma once

#include "platform/ae/AEDesc.h"

#include <string>

namespace quoddle {

/// An event as "class/id KEY=VALUE …", parameters in the order of the event. Specifiers are "WANT:FORM(DATA) < CONTAINER", the application
/// is "app", blanks at the ends of codes are left out.
std::string textOfEvent(const AEDesc& event);
std::string textOfDescriptor(const AEDesc& descriptor);

} // namespace quoddle
