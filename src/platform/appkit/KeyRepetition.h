// SPDX-License-Identifier: MIT
// Presses of a key that is held down.
// One decision: a repetition is told by the release that comes with it at the same moment, for the toolkit overlooks it when the two do not
// arrive together, and then a key held since the dialog before answers the next one.
// Main thread only.
#pragma once

class QKeyEvent;

namespace quoddle {

/// From now on; more than once is once.
void watchKeyRepetition();
/// Whether the press is one of those that follow while a key is held down.
bool isKeyRepetition(const QKeyEvent& press);

} // namespace quoddle
