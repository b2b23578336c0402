// SPDX-License-Identifier: MIT
// Which applet a word on the command line means, and how what an applet says of itself is put on a terminal.
#pragma once

#include "platform/base/Result.h"
#include "platform/foundation/NSBundle.h"

#include <string>

namespace quoddle::tool {

/// A bundle by its path, or, for a word without a slash where no such folder is, by the name under which applets find each other. The error
/// is a sentence that says what to do.
Result<std::shared_ptr<NSBundle>, std::string> findApplet(const std::string& word);

/// The applet shell: $QUODDLE_SHELL, or the one beside this program. Absolute.
Result<std::string, std::string> findShell();

/// UTF-8 without control characters, so that no applet writes to the terminal what is not text.
std::string printable(const QString& text);

} // namespace quoddle::tool
