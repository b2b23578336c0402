// SPDX-License-Identifier: MIT
// Decodes pictures and pages of documents in a process of its own (quoddle-preview), which is ended when the result is no longer wanted.
// Decision: decoders may need any time and memory for a file, and some crash; a file can then only bring down that process. Main thread
// only.
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
    /// The number of pages of a document that are shown at most.
    static constexpr int kMostPages = 20;

    /// Begins at once. `largest` is the largest size of a picture in pixels.
    PictureProcess(const QString& path, Source source, QSize largest, QObject* parent = nullptr);
    /// Kills the process without waiting for its end.
    ~PictureProcess() override;

    /// The default limit is ten seconds.
    void setTimeLimit(int milliseconds) { mTime.start(milliseconds); }
    /// The decoding process; for tests.
    qint64 processIdentifier() const { return mProcess->processId(); }

Q_SIGNALS:
    void pictureCame(const QImage& picture);
    /// Emitted once, as the last signal, and never with `none`. `unreadable` when the process has died or taken too long.
    void ended(PictureStream::End end);

private:
    void readPictures();
    void finish(PictureStream::End end);

    QProcess* mProcess; // owned; deleted when the process has ended, possibly after this object
    PictureStream mStream;
    QTimer mTime;
    bool mHasEnded = false;
};

} // namespace quoddle
