// SPDX-License-Identifier: MIT
#include "platform/preview/PictureProcess.h"

#include <QCoreApplication>
#include <QPointer>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kTimeLimit = 10'000;               // milliseconds
constexpr qint64 kMostPixels = qint64{32} << 20; // of all pictures of one file together

} // namespace

PictureProcess::PictureProcess(const QString& path, Source source, QSize largest, QObject* parent)
    : QObject(parent), mProcess(new QProcess), mStream(largest, kMostPixels) {
    mTime.setSingleShot(true);
    mTime.callOnTimeout(this, [this] { finish(PictureStream::End::unreadable); });
    mTime.start(kTimeLimit);
    mProcess->setStandardInputFile(QProcess::nullDevice());
    mProcess->setStandardErrorFile(QProcess::nullDevice());
    connect(mProcess, &QProcess::readyReadStandardOutput, this, &PictureProcess::readPictures);
    connect(mProcess, &QProcess::finished, this, [this] {
        const QPointer<PictureProcess> self(this);
        readPictures();
        if (self)
            finish(PictureStream::End::unreadable); // without effect when the process has sent an end
    });
    connect(
        mProcess, &QProcess::errorOccurred, this,
        [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                finish(PictureStream::End::unreadable);
        },
        Qt::QueuedConnection); // the error may be emitted inside start(), before anybody is connected to ended()
    mProcess->start(QCoreApplication::applicationDirPath() + u"/quoddle-preview"_s,
                    {source == Source::Pages ? u"pages"_s : u"picture"_s, QString::number(largest.width()),
                     QString::number(largest.height()), QString::number(kMostPages), path});
}

PictureProcess::~PictureProcess() {
    mProcess->disconnect(this);
    if (mProcess->state() == QProcess::NotRunning) {
        delete mProcess;
        return;
    }
    connect(mProcess, &QProcess::finished, mProcess, &QObject::deleteLater); // deleting a running QProcess would wait for its end
    mProcess->kill();
}

void PictureProcess::readPictures() {
    mStream.feed(mProcess->readAllStandardOutput());
    const QPointer<PictureProcess> self(this); // an observer may delete this object
    while (const auto picture = mStream.take()) {
        Q_EMIT pictureCame(*picture);
        if (!self)
            return;
    }
    if (mStream.end() != PictureStream::End::none)
        finish(mStream.end());
}

void PictureProcess::finish(PictureStream::End end) {
    if (std::exchange(mHasEnded, true))
        return;
    mTime.stop();
    mProcess->kill();
    Q_EMIT ended(end);
}

} // namespace quoddle
