// SPDX-License-Identifier: MIT
// Text as a string of JSON.
#pragma once

#include <string>

namespace quoddle::tool {

/// With its quotes. Bytes that are no UTF-8, as in the names of files, are replaced.
std::string inJSON(const std::string& text);

} // namespace quoddle::tool
