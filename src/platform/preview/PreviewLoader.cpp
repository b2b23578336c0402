// SPDX-License-Identifier: MIT
#include "platform/preview/PreviewLoader.h"

#include "platform/foundation/MainThread.h"

namespace quoddle {

/// A file that is being read. Shared with the worker, which may go on reading after the loader has cancelled.
struct PreviewLoader::Wish {
    PreviewLoader* loader; // used on the main thread only, and only while the wish is not cancelled
    std::atomic<bool> isCancelled = false;
    QSize picture, page;
};

PreviewLoader::PreviewLoader(QObject* parent) : QObject(parent) {}

PreviewLoader::~PreviewLoader() {
    cancel();
}

void PreviewLoader::cancel() {
    if (mWish)
        mWish->isCancelled = true;
    mWish.reset();
    mWorker.cancelWaitingOperations();
    mPictures.reset();
}

void PreviewLoader::load(const QString& path, QSize picture, QSize page) {
    cancel();
    mWish = std::make_shared<Wish>();
    mWish->loader = this;
    mWish->picture = picture;
    mWish->page = page;
    mWorker.addOperation([wish = mWish, path, mainThread = thread()] {
        if (wish->isCancelled)
            return;
        auto contents = std::make_shared<PreviewContents>(previewContentsOfFile(path, wish->isCancelled, mainThread));
        // also releases a cancelled document on the main thread, to which it belongs
        MainThread::dispatchAsync([wish, contents = std::move(contents)] {
            if (!wish->isCancelled)
                wish->loader->take(*contents);
        });
    });
}

void PreviewLoader::take(const PreviewContents& contents) {
    if (contents.kind == PreviewKind::Picture || contents.kind == PreviewKind::Pages) {
        const bool isPages = contents.kind == PreviewKind::Pages;
        mPictures =
            std::make_unique<PictureProcess>(contents.facts.path, isPages ? PictureProcess::Source::Pages : PictureProcess::Source::Picture,
                                             isPages ? mWish->page : mWish->picture);
        connect(mPictures.get(), &PictureProcess::pictureCame, this, &PreviewLoader::pictureCame);
        connect(mPictures.get(), &PictureProcess::ended, this, &PreviewLoader::picturesEnded);
    }
    Q_EMIT contentsCame(contents);
}

} // namespace quoddle
