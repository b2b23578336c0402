// SPDX-License-Identifier: MIT
// A download that trusts nobody: the sender decides neither how much is taken, nor how long that may last, nor where it comes from.
#pragma once

#include "platform/base/Result.h"

#include <chrono>
#include <functional>

#include <QString>
#include <QUrl>

class QIODevice;

namespace quoddle {

struct DownloadRequest {
    QUrl url;
    qint64 maximumSize = 0;                                       ///< one byte more ends the download with an error
    std::chrono::milliseconds silence = std::chrono::seconds(30); ///< after so long without a byte it has failed
    std::chrono::milliseconds wholeTime{0};                       ///< after which it has failed in any case; 0: no such time
    std::function<void(qint64 received)> progress;                ///< may be empty
};

/// Waits until all of it has been written to `target`: the number of bytes, or a text for people. Redirections are followed to where
/// something may be fetched from (FetchRules.h). Main thread; other events are handled meanwhile.
Result<qint64, QString> download(const DownloadRequest& request, QIODevice& target);

} // namespace quoddle
