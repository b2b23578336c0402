// SPDX-License-Identifier: MIT
// Ties the Apple event layer, which has no event loop, to the one of the application.
#pragma once

namespace quoddle {

/// Main thread, once, after the application object was made: application handlers of events run on this thread from now on, and a wait for
/// a reply on it keeps the event loop turning.
void installEventMainThread();
/// Main thread, before the application object goes away: suspended events are answered, handlers run wherever events are sent.
void removeEventMainThread();

} // namespace quoddle
