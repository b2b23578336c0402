// SPDX-License-Identifier: MIT
// The keys of a list in which nothing is selected. There is nothing to move from, so the first row is the next one whichever way the key
// leads, End takes the last one, and typing finds the first row as well. The toolkit moves from a row that it has only marked as the
// current one. Main thread only.
#pragma once

class QAbstractItemView;
class QKeyEvent;

namespace quoddle {

/// For the key handler of a list class, before the toolkit's. True: the key has done what it does.
bool moveFromNowhere(QAbstractItemView& list, const QKeyEvent& key);
/// The same for a list of a class without a key handler of its own.
void watchListKeys(QAbstractItemView& list);

} // namespace quoddle
