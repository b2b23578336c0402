// SPDX-License-Identifier: MIT
// Tells the presses of a key that is held down from real ones.
// One decision: a repetition is recognised by the release that comes with it at the same moment. The toolkit overlooks that when the two do
// not arrive together, and then a key held since the dialog before answers the next one.
// Main thread only.
#pragma once

class QKeyEvent;

namespace quoddle {

/// Begins to watch the keys of the application. Further calls do nothing.
void watchKeyRepetition();
/// Whether a press is a repetition while the key is held down.
bool isKeyRepetition(const QKeyEvent& press);

} // namespace quoddle
