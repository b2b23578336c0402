// SPDX-License-Identifier: MIT
// The keys of a list in which nothing is selected. There is nothing to move from, so every key that moves selects the first row, End the
// last one, and typing finds the first row as well. The toolkit alone would move from a row that it has only marked as the current one.
// Main thread only.
#pragma once

class QAbstractItemView;
class QKeyEvent;

namespace quoddle {

/// Handles such a key; a list class calls it from its key handler, before the toolkit's. True when the key has been handled.
bool moveFromNowhere(QAbstractItemView& list, const QKeyEvent& key);
/// Does the same for a list of a class without a key handler of its own.
void watchListKeys(QAbstractItemView& list);

} // namespace quoddle
