// SPDX-License-Identifier: MIT
// The panel that says which applet this is.
#pragma once

namespace quoddle {

/// Shows it, or brings it to the front. Does not wait.
void showAboutPanel();

} // namespace quoddle
