// SPDX-License-Identifier: MIT
// Has the program quoddle-fetch bring something, one thing at a time, without waiting for it.
// Main thread only.
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
    /// Ends what is under way.
    ~UpdateFetcher();

    template<class T>
    using Completion = std::function<void(Result<T, QString>)>; // the error is a text for people

    /// Each gives up what was under way before, whose completion is not called any more.
    void fetchText(const QUrl& url, qint64 maximumSize, Completion<QByteArray> completion);
    /// Downloads the archive of an item, checks its length and its signature by `key`, and unpacks it in `folder`, which nobody else
    /// changes. The completion gets the path of the bundle in there.
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
