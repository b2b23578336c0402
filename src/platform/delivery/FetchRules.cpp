// SPDX-License-Identifier: MIT
#include "platform/delivery/FetchRules.h"

#include <QHostAddress>
#include <QUrl>

namespace quoddle {

using namespace Qt::StringLiterals;

bool mayBeFetched(const QUrl& url) {
    if (!url.isValid() || url.host().isEmpty() || !url.userInfo().isEmpty())
        return false;
    if (url.scheme() == "https"_L1)
        return true;
    // Only addresses are accepted, because a name could mean another machine when it is looked up.
    return url.scheme() == "http"_L1 && qEnvironmentVariableIsSet("QUODDLE_HTTP_ON_LOOPBACK") && QHostAddress(url.host()).isLoopback();
}

} // namespace quoddle
