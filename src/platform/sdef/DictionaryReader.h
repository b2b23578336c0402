// SPDX-License-Identifier: MIT
// Reads a scripting definition.
//
// Decision: what scripts can be led astray by (a code of a wrong length, a definition without a name) is an error at its line; what is for
// people or for the application alone (documentation, its internals) is passed over. A file may come from anybody: its size, its depth, the
// number of its definitions and the work that its inclusions cause are bounded.
#pragma once

#include "platform/base/Result.h"
#include "platform/sdef/Dictionary.h"

#include <string>

namespace quoddle::sdef {

/// On failure "PATH:LINE: what is wrong". A dictionary may include files of its own folder and of `sharedFolder` (empty: none); what an
/// inclusion refers to in the folder where a Mac keeps shared dictionaries is taken from there. Any thread.
Result<Dictionary, std::string> readDictionary(const std::string& path, const std::string& sharedFolder);

} // namespace quoddle::sdef
