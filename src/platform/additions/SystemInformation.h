// SPDX-License-Identifier: MIT
// Information about this computer and its user.
#pragma once

#include "platform/ae/AEDesc.h"

namespace quoddle::additions {

/// The record of "system info". A value that cannot be found out is missing value.
AEDesc systemInformation();

} // namespace quoddle::additions
