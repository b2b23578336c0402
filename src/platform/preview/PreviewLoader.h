// SPDX-License-Identifier: MIT
// Brings what a preview shows of one file after the other: facts and text from a worker thread, pictures from a process. What belongs to a
// file that is not wanted any more is dropped.
// Main thread only.
#pragma once

#include "platform/foundation/NSOperationQueue.h"
#include "platform/preview/PictureProcess.h"
#include "platform/preview/PreviewContents.h"

#include <QObject>

namespace quoddle {

class PreviewLoader : public QObject {
    Q_OBJECT
public:
    explicit PreviewLoader(QObject* parent = nullptr);
    ~PreviewLoader() override;

    /// Ends what is under way and begins with this file. Pictures come no larger than `picture` pixels, pages than `page`.
    void load(const QString& path, QSize picture, QSize page);
    /// Ends what is under way; nothing more is told of it.
    void cancel();

Q_SIGNALS:
    /// Once for each file. For kinds with pictures these follow.
    void contentsCame(const PreviewContents& contents);
    void pictureCame(const QImage& picture);
    void picturesEnded(PictureStream::End end);

private:
    void take(const PreviewContents& contents);

    struct Wish;
    std::shared_ptr<Wish> mWish; // of the file that is being read
    std::unique_ptr<PictureProcess> mPictures;
    NSOperationQueue mWorker;
};

} // namespace quoddle
