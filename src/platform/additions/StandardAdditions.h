// SPDX-License-Identifier: MIT
// Standard Additions: the commands that every script has and that need no window.
//
// Decision: each is a handler of a scripting addition, registered with the event manager under its class and ID, so that it runs on the
// thread of the script that sends it and applications can take its place. The layer knows descriptors, not scripts.
#pragma once

#include <string>

namespace quoddle {

/// Registers all of them with the shared event manager. Calling it again changes nothing. Any thread, at start.
void installStandardAdditions();

/// What "path to current application" answers, and where the resources are that belong to no bundle in particular: the absolute path of a
/// bundle or a program. Without it that is the program that runs.
void setApplicationPath(std::string path);

} // namespace quoddle
