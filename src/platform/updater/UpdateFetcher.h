// SPDX-License-Identifier: MIT
// Fetches texts and bundles by means of the program quoddle-fetch, one at a time and without waiting. Main thread only.
#pragma once

#include "platform/base/Result.h"
#include "platform/updater/Appcast.h"

#include <functional>
#include <memory>

#include <QByteArray>
#include <QUrl>

class QProcess;

namespace quoddle {

class UpdateFetcher {
public:
    UpdateFetcher();
    /// Ends the fetch in progress.
    ~UpdateFetcher();

    template<class T>
    using Completion = std::function<void(Result<T, QString>)>; // an error is a message for the user

    /// A new fetch ends the one in progress, whose completion is not called.
    void fetchText(const QUrl& url, qint64 maximumSize, Completion<QByteArray> completion);
    /// Downloads the archive of an item, checks its length and its signature with `key`, and unpacks it in `folder`, which nobody else
    /// changes. The completion gets the path of the bundle in the folder.
    void fetchBundle(const AppcastItem& item, const QByteArray& key, const QString& folder, std::function<void(qint64 received)> progress,
                     Completion<QString> completion);
    void cancel();

private:
    void start(const QStringList& words, qint64 maximumOutput, std::function<void(const QByteArray& output)> read,
               Completion<QByteArray> completion);

    std::unique_ptr<QProcess> mProcess;
    QByteArray mOutput;
};

} // namespace quoddle
