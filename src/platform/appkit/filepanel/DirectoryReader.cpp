// SPDX-License-Identifier: MIT
#include "platform/appkit/filepanel/DirectoryReader.h"

#include <atomic>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>

#include <QCollator>
#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QSemaphore>
#include <QThreadPool>

namespace quoddle {

namespace {

constexpr qint64 kFirstInstalment = 150;        // milliseconds; most folders are complete before
constexpr std::size_t kMostEntries = 2'000'000; // the most entries of a folder that are shown
constexpr int kEndOfProcess = 200;              // milliseconds; a reading that hangs in the kernel is waited for so long
constexpr int kThreads = 4;                     // enough that one that hangs on a dead server does not stop the others

/// The threads that read. Qt's own pool would wait at its end for threads that may hang in the file system.
QThreadPool& pool() {
    static auto& threads = *[] {
        auto* made = new QThreadPool;
        made->setMaxThreadCount(kThreads);
        return made;
    }();
    return threads;
}

struct Sortable {
    DirectoryEntry entry;
    QCollatorSortKey key;
};

bool comesBefore(const Sortable& a, const Sortable& b) {
    if (a.entry.isDirectory != b.entry.isDirectory)
        return a.entry.isDirectory;
    const int order = a.key.compare(b.key);
    return order != 0 ? order < 0 : a.entry.name < b.entry.name;
}

} // namespace

struct DirectoryReader::Job {
    QString path;
    DirectoryFilter filter;
    std::atomic<bool> isCancelled = false;
    QSemaphore ended;
    bool leftOthersOut = false; // used by the reading thread only

    std::mutex mutex; // guards the members below; both threads take it
    QObject* receiver = nullptr;
    Listener listener;

    void run(const std::shared_ptr<Job>& self);
    void deliver(const std::shared_ptr<Job>& self, DirectoryState state, std::vector<Sortable>& found);
    DirectoryState readAll(const std::shared_ptr<Job>& self, DIR* stream, std::vector<Sortable>& found);
    bool describe(int directory, const dirent& item, DirectoryEntry& entry) const;
    QString pathOf(const QString& name) const { return path.endsWith(u'/') ? path + name : path + u'/' + name; }
};

bool DirectoryReader::Job::describe(int directory, const dirent& item, DirectoryEntry& entry) const {
    entry.name = QFile::decodeName(item.d_name);
    entry.isHidden = item.d_name[0] == '.';
    if (entry.isHidden && !filter.showsHiddenFiles)
        return false;
    struct stat status;
    const bool isReachable = QFile::encodeName(entry.name) == item.d_name; // false for bytes that are no text: no path leads there
    const bool exists = isReachable && ::fstatat(directory, item.d_name, &status, 0) == 0; // false for a link that leads nowhere, too
    if (exists) {
        entry.modified = status.st_mtim.tv_sec * 1000LL + status.st_mtim.tv_nsec / 1'000'000;
        const bool isFolder = S_ISDIR(status.st_mode);
        const QString itsPath = isFolder ? pathOf(entry.name) : QString();
        entry.isPackage = isFolder && !filter.treatsFilePackagesAsDirectories && isFilePackage(itsPath, true);
        entry.isDirectory = isFolder && !entry.isPackage;
        entry.size = isFolder ? 0 : status.st_size;
    }
    if (entry.isDirectory)
        entry.canBeChosen = filter.canChooseDirectories;
    else
        entry.canBeChosen =
            exists && filter.canChooseFiles && (filter.allowedTypes.isEverything() || filter.allowedTypes.matches(pathOf(entry.name)));
    return entry.isDirectory || entry.canBeChosen || !filter.leavesOutOthers;
}

DirectoryState DirectoryReader::Job::readAll(const std::shared_ptr<Job>& self, DIR* stream, std::vector<Sortable>& found) {
    // Without a language, names would be compared byte by byte.
    QCollator collator(QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale());
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    QElapsedTimer sinceLast;
    sinceLast.start();
    qint64 nextInstalment = kFirstInstalment;
    while (const dirent* item = ::readdir(stream)) {
        if (isCancelled || found.size() >= kMostEntries)
            break;
        if (qstrcmp(item->d_name, ".") == 0 || qstrcmp(item->d_name, "..") == 0)
            continue;
        DirectoryEntry entry;
        if (!describe(::dirfd(stream), *item, entry)) {
            leftOthersOut = leftOthersOut || !entry.isHidden;
            continue;
        }
        QCollatorSortKey key = collator.sortKey(entry.name);
        found.push_back({std::move(entry), std::move(key)});
        if (sinceLast.elapsed() >= nextInstalment) {
            deliver(self, DirectoryState::reading, found);
            nextInstalment *= 2; // each instalment sorts everything, which must not take most of the time
            sinceLast.restart();
        }
    }
    return DirectoryState::complete;
}

void DirectoryReader::Job::deliver(const std::shared_ptr<Job>& self, DirectoryState state, std::vector<Sortable>& found) {
    std::sort(found.begin(), found.end(), comesBefore);
    auto contents = std::make_shared<DirectoryContents>();
    contents->state = state;
    contents->leftOthersOut = leftOthersOut;
    contents->entries.reserve(found.size());
    for (const Sortable& each : found)
        contents->entries.push_back(each.entry);
    const std::lock_guard lock(mutex);
    if (receiver)
        QMetaObject::invokeMethod(
            receiver,
            [self, contents] {
                if (!self->isCancelled)
                    self->listener(contents);
            },
            Qt::QueuedConnection);
}

void DirectoryReader::Job::run(const std::shared_ptr<Job>& self) {
    std::vector<Sortable> found;
    DIR* stream = isCancelled ? nullptr : ::opendir(QFile::encodeName(path).constData());
    DirectoryState state = errno == EACCES ? DirectoryState::forbidden : DirectoryState::missing;
    if (stream) {
        state = readAll(self, stream, found);
        ::closedir(stream);
    }
    if (!isCancelled)
        deliver(self, state, found);
    ended.release();
}

DirectoryReader::DirectoryReader(Listener listener) : mListener(std::move(listener)) {}

DirectoryReader::~DirectoryReader() {
    const auto last = mJob;
    cancel();
    if (last)
        last->ended.tryAcquire(1, kEndOfProcess);
}

void DirectoryReader::read(const QString& path, const DirectoryFilter& filter) {
    cancel();
    mJob = std::make_shared<Job>();
    mJob->path = path;
    mJob->filter = filter;
    mJob->listener = mListener;
    mJob->receiver = new QObject;
    pool().start([job = mJob] { job->run(job); });
}

void DirectoryReader::cancel() {
    if (!mJob)
        return;
    mJob->isCancelled = true;
    {
        const std::lock_guard lock(mJob->mutex);
        delete std::exchange(mJob->receiver, nullptr); // instalments that were posted and not delivered go with it
    }
    mJob.reset();
}

} // namespace quoddle
