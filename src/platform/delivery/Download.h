// SPDX-License-Identifier: MIT
// Downloads from servers that are not trusted: the server decides neither how much is taken, nor how long it may last, nor where the bytes
// come from.
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
    std::chrono::milliseconds silence = std::chrono::seconds(30); ///< the download fails after so long without a byte
    std::chrono::milliseconds wholeTime{0};                       ///< the download fails after this time; 0 for no limit
    std::function<void(qint64 received)> progress;                ///< may be empty
};

/// Waits until the download has been written to `target`. Returns the number of bytes, or a message for the user. Redirections are followed
/// when FetchRules.h allows their targets. Main thread; other events are handled meanwhile.
Result<qint64, QString> download(const DownloadRequest& request, QIODevice& target);

} // namespace quoddle
