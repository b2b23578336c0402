// SPDX-License-Identifier: MIT
// Loads the contents of files for previews, one file at a time: facts and text on a worker thread, pictures in a process. Results for a
// file that is no longer wanted are dropped. Main thread only.
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

    /// Cancels the load that is running and begins with this file. `picture` and `page` are the largest sizes of pictures and pages in
    /// pixels.
    void load(const QString& path, QSize picture, QSize page);
    /// Ends the load that is running; no more signals are emitted for it.
    void cancel();

Q_SIGNALS:
    /// Emitted once for each file. Pictures follow when the kind has them.
    void contentsCame(const PreviewContents& contents);
    void pictureCame(const QImage& picture);
    void picturesEnded(PictureStream::End end);

private:
    void take(const PreviewContents& contents);

    struct Wish;
    std::shared_ptr<Wish> mWish; // the file that is being read
    std::unique_ptr<PictureProcess> mPictures;
    NSOperationQueue mWorker;
};

} // namespace quoddle
