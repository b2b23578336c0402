// SPDX-License-Identifier: MIT
// The addresses from which updates of an applet may be fetched.
#pragma once

class QUrl;

namespace quoddle {

/// Only https, without a user name and password. With QUODDLE_HTTP_ON_LOOPBACK in the environment also http from this machine, so that
/// authors can try out a feed before they publish it.
bool mayBeFetched(const QUrl& url);

} // namespace quoddle
