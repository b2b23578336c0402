// SPDX-License-Identifier: MIT
#include "platform/search/index/IndexedTree.h"

#include "platform/foundation/NSLog.h"

#include <cerrno>

#include <QFile>
#include <QUtf8StringView>

namespace quoddle {

namespace {

constexpr int kPiecesAtATime = 4;

struct Listed {
    FileNames::Folder folder;
    std::string name;
    bool isFolder;
};

} // namespace

IndexedTree::IndexedTree(std::uint32_t number, std::string path, FolderWatches& watches, OnRemove onRemove)
    : mNumber(number), mPath(std::move(path)), mWatches(watches), mOnRemove(std::move(onRemove)) {}

std::string IndexedTree::pathOf(FileNames::Folder folder) const {
    const std::string below = mNames.pathOf(folder);
    return below.empty() ? mPath + '/' : mPath + '/' + below + '/';
}

void IndexedTree::begin() {
    if (mIsTopThere)
        return;
    mIsTopThere = true;
    mToRead.push_back(FileNames::kTop);
}

void IndexedTree::walkSome() {
    if (!mReader.isOpen()) {
        const FileNames::Folder folder = mToRead.front();
        mToRead.pop_front();
        if (mNames.isFolderAlive(folder) && openFolder(folder)) {
            mFolderRead = folder;
            mKnowsSomeOfFolderRead = !mNames.isEmpty(folder);
        }
    }
    for (int i = 0; i < kPiecesAtATime && mReader.isOpen(); ++i)
        mReader.readSome([this](std::string_view name, bool isFolder) { addListed(mFolderRead, name, isFolder); });
    if (!isWalking())
        report();
}

/// False: there is nothing to be read in it.
bool IndexedTree::openFolder(FileNames::Folder folder) {
    const bool isTop = folder == FileNames::kTop;
    const std::string path = pathOf(folder);
    if (const int error = mReader.open(path, isTop); error != 0) {
        mIsTopThere = mIsTopThere && !isTop;
        mUnreadableCount += error != ENOENT && error != ENOTDIR && error != ELOOP;
        return false;
    }
    if (isTop)
        mDevice = mReader.device();
    if (mReader.device() != mDevice) {
        mReader.close();
        return false;
    }
    if (mNames.watchOf(folder) < 0)
        mNames.setWatchOf(folder, mWatches.watch(path, isTop, {mNumber, folder}));
    if (mNames.watchOf(folder) < 0)
        mUnwatched[folder] = mReader.changeTime();
    else
        mUnwatched.erase(folder);
    return true;
}

void IndexedTree::addListed(FileNames::Folder folder, std::string_view name, bool isFolder) {
    if (!mKnowsSomeOfFolderRead || !mNames.find(folder, name))
        add(folder, name, isFolder);
}

/// False when it is left out.
bool IndexedTree::add(FileNames::Folder folder, std::string_view name, bool isFolder) {
    if (isFolder && name.front() == '.')
        return false;
    if (!QUtf8StringView(name.data(), static_cast<qsizetype>(name.size())).isValidUtf8()) {
        ++mUnnamableCount;
        return false;
    }
    const std::optional<FileNames::Entry> entry = mNames.add(folder, name, isFolder);
    if (!entry)
        mIsFull = true;
    else if (isFolder)
        mToRead.push_back(mNames.addFolder(*entry));
    return entry.has_value();
}

void IndexedTree::takeEvent(FileNames::Folder folder, const FolderWatches::Event& event) {
    using Kind = FolderWatches::Event::Kind;
    if (!mNames.isFolderAlive(folder))
        return;
    if (event.kind == Kind::gone) {
        forgetFolder(folder);
        if (folder == FileNames::kTop && mIsTopThere) {
            removeContents(folder);
            mToRead.clear();
            mIsTopThere = false;
        }
        return;
    }
    if (event.name.empty())
        return;
    const std::optional<FileNames::Entry> known = mNames.find(folder, event.name);
    const bool isReplaced = known && event.kind != Kind::removed &&
                            (mNames.isFolder(*known) != event.isFolder || (event.isFolder && event.kind == Kind::movedIn));
    if (known && (event.kind == Kind::removed || isReplaced))
        remove(*known);
    if (event.kind != Kind::removed && (!known || isReplaced))
        add(folder, event.name, event.isFolder);
}

void IndexedTree::remove(FileNames::Entry entry) {
    if (const std::optional<FileNames::Folder> folder = mNames.folderOfEntry(entry)) {
        removeContents(*folder);
        forgetFolder(*folder);
    }
    mOnRemove(entry);
    mNames.remove(entry);
}

void IndexedTree::removeContents(FileNames::Folder folder) {
    if (mNames.isEmpty(folder))
        return;
    const std::vector<bool> below = mNames.foldersBelow(folder);
    std::vector<FileNames::Entry> entries;
    for (FileNames::Entry entry = 0; entry < mNames.entryCount(); ++entry)
        if (mNames.isAlive(entry) && below[mNames.folderOf(entry)])
            entries.push_back(entry);
    for (const FileNames::Entry entry : entries) // while all paths are still to be had
        mOnRemove(entry);
    for (FileNames::Folder each = folder + 1; each < mNames.folderCount(); ++each)
        if (below[each])
            forgetFolder(each);
    for (const FileNames::Entry entry : entries)
        mNames.remove(entry);
}

void IndexedTree::forgetFolder(FileNames::Folder folder) {
    mUnwatched.erase(folder);
    if (const int watch = mNames.watchOf(folder); watch >= 0)
        mWatches.unwatch(watch, {mNumber, folder});
    mNames.setWatchOf(folder, -1);
}

void IndexedTree::lookAgain(bool atAllFolders) {
    std::vector<FileNames::Folder> folders;
    if (atAllFolders) {
        for (FileNames::Folder folder = 0; folder < mNames.folderCount(); ++folder)
            if (mNames.isFolderAlive(folder))
                folders.push_back(folder);
    } else {
        for (const auto& [folder, time] : mUnwatched)
            if (time == 0 || changeTimeOfFolder(pathOf(folder)) != time)
                folders.push_back(folder);
    }
    if (folders.empty())
        return;
    const FileNames::Entry end = mNames.entryCount();
    std::vector<bool> isLookedAt(mNames.folderCount()), isThere(end);
    std::vector<Listed> changedKind;
    for (const FileNames::Folder folder : folders) {
        isLookedAt[folder] = true;
        if (atAllFolders) // another folder may stand in its place
            forgetFolder(folder);
        if (!openFolder(folder))
            continue;
        const auto receive = [&](std::string_view name, bool isFolder) {
            const std::optional<FileNames::Entry> known = mNames.find(folder, name);
            if (!known)
                add(folder, name, isFolder);
            else if (mNames.isFolder(*known) != isFolder)
                changedKind.push_back({folder, std::string(name), isFolder});
            else if (*known < end)
                isThere[*known] = true;
        };
        while (mReader.readSome(receive)) {
        }
    }
    for (FileNames::Entry entry = 0; entry < end; ++entry)
        if (mNames.isAlive(entry) && isLookedAt[mNames.folderOf(entry)] && !isThere[entry])
            remove(entry);
    for (const Listed& each : changedKind)
        if (mNames.isFolderAlive(each.folder))
            add(each.folder, each.name, each.isFolder);
    if (atAllFolders)
        mNames.forgetFound();
}

bool IndexedTree::compact() {
    if (!mNames.isWorthCompacting())
        return false;
    const std::vector<FileNames::Folder> numbers = mNames.compact();
    mWatches.renumber(mNumber, [&numbers](std::uint32_t folder) { return numbers[folder]; });
    std::map<FileNames::Folder, std::int64_t> unwatched;
    for (const auto& [folder, time] : mUnwatched)
        unwatched[numbers[folder]] = time;
    mUnwatched.swap(unwatched);
    return true;
}

void IndexedTree::report() {
    if (mUnreadableCount + mUnnamableCount > 0)
        NSLogTrace(QStringLiteral("search: in %@ %ld folders cannot be read, %ld names are not UTF-8"),
                   {QFile::decodeName(mPath.c_str()), qlonglong(mUnreadableCount), qlonglong(mUnnamableCount)});
    if (mIsFull)
        NSLog(QStringLiteral("search: %@ holds more files than can be searched"), {QFile::decodeName(mPath.c_str())});
    mUnreadableCount = mUnnamableCount = 0;
    mIsFull = false;
}

} // namespace quoddle
