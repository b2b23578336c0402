// SPDX-License-Identifier: MIT
// From where something may be fetched that an applet is renewed with.
#pragma once

class QUrl;

namespace quoddle {

/// Only https, by name and password of nobody. With QUODDLE_HTTP_ON_LOOPBACK in the environment also http from this very machine, which
/// is how a feed is tried out before it is published.
bool mayBeFetched(const QUrl& url);

} // namespace quoddle
