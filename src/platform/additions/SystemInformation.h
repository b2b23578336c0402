// SPDX-License-Identifier: MIT
// What is known about this computer and its user.
#pragma once

#include "platform/ae/AEDesc.h"

namespace quoddle::additions {

/// The record that "system info" answers. What cannot be found out is missing value.
AEDesc systemInformation();

} // namespace quoddle::additions
