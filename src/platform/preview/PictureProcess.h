// SPDX-License-Identifier: MIT
// Decodes pictures and the pages of documents in a process of its own (quoddle-preview), which is ended when nobody wants them any more.
// One decision: decoders take time and memory as the file has it, and some fall over; so all that a file can bring down is that process.
// Main thread only.
#pragma once

#include "platform/preview/PictureStream.h"

#include <QObject>
#include <QProcess>
#include <QTimer>

namespace quoddle {

class PictureProcess : public QObject {
    Q_OBJECT
public:
    enum class Source { Picture, Pages };
    /// Most pages that are shown of a document.
    static constexpr int kMostPages = 20;

    /// Begins at once. Pictures come no larger than `largest` pixels.
    PictureProcess(const QString& path, Source source, QSize largest, QObject* parent = nullptr);
    /// Ends the process, without waiting for that.
    ~PictureProcess() override;

    /// Ten seconds unless set.
    void setTimeLimit(int milliseconds) { mTime.start(milliseconds); }
    /// For tests: the process that decodes.
    qint64 processIdentifier() const { return mProcess->processId(); }

Q_SIGNALS:
    void pictureCame(const QImage& picture);
    /// Once, the last signal; never `none`. A process that dies or takes too long is `unreadable`.
    void ended(PictureStream::End end);

private:
    void readPictures();
    void finish(PictureStream::End end);

    QProcess* mProcess; // owned; outlives us until it has ended
    PictureStream mStream;
    QTimer mTime;
    bool mHasEnded = false;
};

} // namespace quoddle
