// SPDX-License-Identifier: MIT
#include "platform/preview/FileWatch.h"

#include <array>
#include <sys/stat.h>

#include <QFile>
#include <QFileInfo>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kPause = 300; // milliseconds from the first event of a change to the check; collects further events

/// The files on which a preview of the path depends: the path itself, and the text of a rich text folder.
std::array<QString, 2> partsOf(const QString& path) {
    return {path, path + u"/TXT.rtf"_s};
}

/// The properties of a file by which a change is noticed. All zero when there is no file.
struct Identity {
    dev_t device = 0;
    ino_t number = 0;
    off_t size = 0;
    mode_t mode = 0;
    timespec modified{};

    explicit Identity(const QString& path) {
        struct stat now {};
        if (::stat(QFile::encodeName(path).constData(), &now) == 0) {
            device = now.st_dev;
            number = now.st_ino;
            size = now.st_size;
            mode = now.st_mode;
            modified = now.st_mtim;
        }
    }
    bool operator==(const Identity& other) const {
        return device == other.device && number == other.number && size == other.size && mode == other.mode &&
               modified.tv_sec == other.modified.tv_sec && modified.tv_nsec == other.modified.tv_nsec;
    }
};

} // namespace

struct FileWatch::State {
    explicit State(const QString& path) : parts{Identity(partsOf(path)[0]), Identity(partsOf(path)[1])} {}
    std::array<Identity, 2> parts;
};

FileWatch::FileWatch(QObject* parent) : QObject(parent) {
    mPause.setSingleShot(true);
    mPause.setInterval(kPause);
    mPause.callOnTimeout(this, &FileWatch::look);
}

FileWatch::~FileWatch() = default;

void FileWatch::watch(const QString& path) {
    if (path == mPath)
        return;
    mPath = path;
    mPause.stop();
    mWatcher.reset();
    mState.reset();
    if (mPath.isEmpty())
        return;
    mState = std::make_unique<State>(mPath);
    mWatcher = std::make_unique<QFileSystemWatcher>();
    const auto notice = [this] {
        if (!mPause.isActive())
            mPause.start();
    };
    connect(mWatcher.get(), &QFileSystemWatcher::fileChanged, this, notice);
    connect(mWatcher.get(), &QFileSystemWatcher::directoryChanged, this, notice);
    addWatches();
}

/// Adds the missing watches. A file loses its watch when it is replaced; the folder's watch reports the new file.
void FileWatch::addWatches() {
    const QStringList watched = mWatcher->files() + mWatcher->directories();
    QStringList wanted{QFileInfo(mPath).path()};
    for (const QString& part : partsOf(mPath))
        wanted << part;
    wanted.removeIf([&watched](const QString& path) { return watched.contains(path) || !QFileInfo::exists(path); });
    if (!wanted.isEmpty())
        mWatcher->addPaths(wanted);
}

void FileWatch::look() {
    addWatches();
    auto now = std::make_unique<State>(mPath);
    if (now->parts == mState->parts)
        return;
    mState = std::move(now);
    Q_EMIT changed();
}

} // namespace quoddle
