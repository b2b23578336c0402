// SPDX-License-Identifier: MIT
// Finds the applet that a word on the command line means, and prepares texts of applets for a terminal.
#pragma once

#include "platform/base/OSStatus.h"
#include "platform/base/Result.h"
#include "platform/foundation/NSBundle.h"

#include <string>

namespace quoddle::tool {

/// The bundle with the path or, when the word has no slash and is no folder here, the one with the name by which applets find each other.
/// The error is a sentence that says what to do.
Result<std::shared_ptr<NSBundle>, std::string> findApplet(const std::string& word);

/// The absolute path of the applet shell: $QUODDLE_SHELL, or the one beside this program.
Result<std::string, std::string> findShell();

/// The text in UTF-8 without control characters, so that no applet can control the terminal.
std::string printable(const QString& text);

/// Why a file was not written, as a sentence for an error of writeFile().
std::string unwritten(const QString& path, OSStatus status);

} // namespace quoddle::tool
