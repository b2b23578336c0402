// SPDX-License-Identifier: MIT
// The AppleScript component: what everybody outside this folder needs to know of the engine.
#pragma once

namespace quoddle {

/// Makes "osa "/"ascr" available to OpenDefaultComponent, and makes it the default language. Calling it again changes nothing. Main thread,
/// at start.
void registerAppleScriptComponent();

} // namespace quoddle
