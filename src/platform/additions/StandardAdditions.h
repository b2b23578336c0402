// SPDX-License-Identifier: MIT
// Standard Additions: the commands that every script has and that need no window.
//
// Decision: each command is a handler of a scripting addition, registered with the event manager under its class and ID. So it runs on the
// thread of the script that sends the event, and an application can replace it. This layer knows descriptors, not scripts.
#pragma once

#include <string>

namespace quoddle {

/// Registers all commands with the shared event manager. Further calls have no effect. Any thread, at the start.
void installStandardAdditions();

/// Sets the absolute path of the bundle or program that "path to current application" gives and whose resources commands use by default.
/// Without this call it is the running program.
void setApplicationPath(std::string path);

} // namespace quoddle
