// SPDX-License-Identifier: MIT
#include "platform/search/index/IndexedTree.h"

#include "platform/foundation/NSLog.h"

#include <algorithm>
#include <cerrno>
#include <chrono>

#include <QFile>
#include <QUtf8StringView>

namespace quoddle {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kPiecesAtATime = 4;
/// The time limit for opening folders that turn out to need no reading.
constexpr std::chrono::milliseconds kLongestLook{2};

} // namespace

IndexedTree::IndexedTree(std::uint32_t number, std::string path, FolderWatches& watches, OnRemove onRemove)
    : mNumber(number), mPath(std::move(path)), mWatches(watches), mOnRemove(std::move(onRemove)) {}

std::string IndexedTree::pathOf(FileNames::Folder folder) const {
    const std::string below = mNames.pathOf(folder);
    return below.empty() ? mPath + '/' : mPath + '/' + below + '/';
}

void IndexedTree::lookAtTop() {
    if (isInFolder())
        return;
    const std::optional<FolderIdentity> top = identityOfFolder(pathToOpen(FileNames::kTop));
    if (top == mTop)
        return;
    forgetTop();
    mTop = top;
    if (mTop)
        mToRead.push_back(FileNames::kTop);
}

/// Forgets the top folder and all that lies below it.
void IndexedTree::forgetTop() {
    forgetFolder(FileNames::kTop);
    removeContents({FileNames::kTop});
    mToRead.clear();
    mToReadAgain.clear();
    mTop.reset();
}

/// The path by which a folder is opened. The "/" at its end makes the system follow a link for the top folder; no other folder may be a
/// link.
std::string IndexedTree::pathToOpen(FileNames::Folder folder) const {
    std::string path = pathOf(folder);
    if (folder != FileNames::kTop)
        path.pop_back();
    return path;
}

void IndexedTree::readSome() {
    const Clock::time_point end = Clock::now() + kLongestLook;
    while (!mReader.isOpen() && isReading() && Clock::now() < end)
        openNext();
    for (int i = 0; i < kPiecesAtATime && mReader.isOpen(); ++i)
        if (!mReader.readSome([this](std::string_view name, bool isFolder) { takeListed(name, isFolder); }))
            endFolder();
    if (!isReading())
        report();
}

void IndexedTree::openNext() {
    mIsReadAgain = mToRead.empty();
    std::deque<FileNames::Folder>& queue = mIsReadAgain ? mToReadAgain : mToRead;
    const FileNames::Folder folder = queue.front();
    queue.pop_front();
    if (!mNames.isFolderAlive(folder) || (mIsReadAgain && isUnchanged(folder)) || !openFolder(folder))
        return;
    mFolderRead = folder;
    mComparison.begin(mNames, folder);
}

bool IndexedTree::isUnchanged(FileNames::Folder folder) const {
    const auto unfollowed = mUnfollowed.find(folder);
    return unfollowed != mUnfollowed.end() && unfollowed->second != kUnsettled && unfollowed->second == markOfFolder(pathToOpen(folder));
}

/// Opens a folder for reading and watches it. False when nothing can or need be read in it.
bool IndexedTree::openFolder(FileNames::Folder folder) {
    const bool isTop = folder == FileNames::kTop;
    const std::string path = pathToOpen(folder);
    if (keepAccess(folder, accessToFolder(path))) // before the folder is opened, because the watch tells of later changes only
        removeContents({folder});
    if (const int error = mReader.open(path, isTop); error != 0) {
        takeError(folder, error);
        return false;
    }
    if (isTop)
        mDevice = mReader.device();
    if (mReader.device() != mDevice) {
        mReader.close();
        removeContents({folder});
        forgetFolder(folder);
        return false;
    }
    const int held = mNames.watchOf(folder), watch = mWatches.watch(path, isTop, {mNumber, folder}, held);
    mNames.setWatchOf(folder, watch);
    mIsPerhapsAnother = watch < 0 || watch != held;
    if (watch < 0)
        mUnfollowed[folder] = mReader.mark();
    else
        mUnfollowed.erase(folder);
    return true;
}

/// Handles a folder that cannot be opened, according to the error.
void IndexedTree::takeError(FileNames::Folder folder, int error) {
    const bool isTop = folder == FileNames::kTop;
    if (isTop && mNames.watchOf(folder) < 0)
        mTop.reset();
    if (error == ENOENT || error == ENOTDIR || error == ELOOP || error == ENAMETOOLONG) { // no folder can be read under this name
        mUnreadableCount += error == ENAMETOOLONG;
        removeContents({folder});
        forgetFolder(folder);
        return;
    }
    ++mUnreadableCount;
    if (error != EACCES && error != EPERM) {
        mUnfollowed[folder] = kUnsettled;
        return;
    }
    removeContents({folder});
    keepAccess(folder, FolderAccess::none);
    if (!isTop)
        giveUpWatch(folder); // the watch of the folder above suffices, and surely belongs to this path
    const FileNames::Folder above = placeOf(folder).first;
    if (mNames.watchOf(above) >= 0)
        mUnfollowed.erase(folder);
    else
        mUnfollowed[folder] = kUnsettled;
    if (!isTop)
        checkAccess(above);
}

void IndexedTree::takeListed(std::string_view name, bool isFolder) {
    const std::optional<FileNames::Entry> known = mComparison.take(name);
    if (known && mNames.isFolder(*known) == isFolder) {
        if (!isFolder || !mIsPerhapsAnother)
            return;
        const std::optional<FileNames::Folder> below = mNames.folderOfEntry(*known);
        if (below && !mUnfollowed.contains(*below))
            mToReadAgain.push_back(*below);
        return;
    }
    if (known)
        remove({*known});
    add(mFolderRead, name, isFolder);
}

void IndexedTree::endFolder() {
    if (mReader.error() == 0) {
        remove(mComparison.gone());
        return;
    }
    ++mUnreadableCount;
    mUnfollowed[mFolderRead] = kUnsettled;
}

/// Adds a name; false when it is left out.
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
        if (folder != FileNames::kTop) {
            forgetFolder(folder);
            return;
        }
        forgetTop();
        lookAtTop(); // the folder may have been moved back already
        return;
    }
    if (event.kind == Kind::access) {
        if (event.name.empty())
            checkAccess(folder);
        else
            checkAccess(folder, event.name);
        return;
    }
    if (event.name.empty() || knownAccess(folder) == FolderAccess::none) // the event came before the folder was locked
        return;
    const std::optional<FileNames::Entry> known = mNames.find(folder, event.name);
    const bool isReplaced = known && event.kind != Kind::removed &&
                            (mNames.isFolder(*known) != event.isFolder || (event.isFolder && event.kind == Kind::movedIn));
    if (known && (event.kind == Kind::removed || isReplaced))
        remove({*known});
    if (event.kind != Kind::removed && (!known || isReplaced))
        add(folder, event.name, event.isFolder);
}

/// Removes entries with all that lies below them.
void IndexedTree::remove(const std::vector<FileNames::Entry>& entries) {
    std::vector<FileNames::Folder> folders;
    for (const FileNames::Entry entry : entries)
        if (const std::optional<FileNames::Folder> folder = mNames.folderOfEntry(entry); folder && mNames.isAlive(entry))
            folders.push_back(*folder);
    removeContents(folders);
    for (const FileNames::Folder folder : folders)
        forgetFolder(folder);
    for (const FileNames::Entry entry : entries)
        if (mNames.isAlive(entry)) {
            mOnRemove(entry);
            mNames.remove(entry);
        }
}

void IndexedTree::removeContents(const std::vector<FileNames::Folder>& folders) {
    if (std::all_of(folders.begin(), folders.end(), [this](FileNames::Folder folder) { return mNames.isEmpty(folder); }))
        return;
    const std::vector<bool> below = mNames.foldersBelow(folders);
    std::vector<FileNames::Entry> entries;
    for (FileNames::Entry entry = 0; entry < mNames.entryCount(); ++entry)
        if (mNames.isAlive(entry) && below[mNames.folderOf(entry)])
            entries.push_back(entry);
    for (const FileNames::Entry entry : entries) // observers still need the paths
        mOnRemove(entry);
    for (FileNames::Folder each = FileNames::kTop + 1; each < mNames.folderCount(); ++each)
        if (below[each] && mNames.isFolderAlive(each) && below[mNames.folderOf(mNames.entryOf(each))])
            forgetFolder(each);
    for (const FileNames::Entry entry : entries)
        mNames.remove(entry);
}

void IndexedTree::forgetFolder(FileNames::Folder folder) {
    giveUpWatch(folder);
    mUnfollowed.erase(folder);
    keepAccess(folder, FolderAccess::all);
}

void IndexedTree::giveUpWatch(FileNames::Folder folder) {
    if (const int watch = mNames.watchOf(folder); watch >= 0)
        mWatches.unwatch(watch, {mNumber, folder});
    mNames.setWatchOf(folder, -1);
}

IndexedTree::Place IndexedTree::placeOf(FileNames::Folder folder) const {
    return {folder == FileNames::kTop ? folder : mNames.folderOf(mNames.entryOf(folder)), folder};
}

FolderAccess IndexedTree::knownAccess(FileNames::Folder folder) const {
    const auto known = mRestricted.find(placeOf(folder));
    return known == mRestricted.end() ? FolderAccess::all : known->second;
}

/// Remembers the access to a folder; whether it differs from the known one.
bool IndexedTree::keepAccess(FileNames::Folder folder, FolderAccess access) {
    if (access == knownAccess(folder))
        return false;
    if (access == FolderAccess::all)
        mRestricted.erase(placeOf(folder));
    else
        mRestricted[placeOf(folder)] = access;
    return true;
}

void IndexedTree::checkAccess(FileNames::Folder folder) {
    if (!keepAccess(folder, accessToFolder(pathToOpen(folder))))
        return;
    removeContents({folder});
    mToRead.push_back(folder);
}

/// Checks the access to a folder by its name. Only restricted folders are checked; the others have a watch of their own, or are looked at
/// again.
void IndexedTree::checkAccess(FileNames::Folder above, std::string_view name) {
    for (auto each = mRestricted.lower_bound({above, FileNames::kTop + 1}); each != mRestricted.end() && each->first.first == above; ++each)
        if (const FileNames::Folder folder = each->first.second; mNames.name(mNames.entryOf(folder)) == name) {
            checkAccess(folder);
            return;
        }
}

void IndexedTree::lookAgain(bool atAllFolders) {
    mToReadAgain.clear();
    for (auto& [folder, mark] : mUnfollowed) {
        mark = atAllFolders ? kUnsettled : mark;
        if (!atAllFolders)
            mToReadAgain.push_back(folder);
    }
    for (FileNames::Folder folder = 0; atAllFolders && folder < mNames.folderCount(); ++folder)
        if (mNames.isFolderAlive(folder))
            mToReadAgain.push_back(folder);
}

bool IndexedTree::compact() {
    if (!mNames.isWorthCompacting())
        return false;
    const std::vector<FileNames::Folder> numbers = mNames.compact();
    mWatches.renumber(mNumber, [&numbers](std::uint32_t folder) { return numbers[folder]; });
    std::map<FileNames::Folder, FolderMark> unfollowed;
    for (const auto& [folder, mark] : mUnfollowed)
        unfollowed[numbers[folder]] = mark;
    mUnfollowed.swap(unfollowed);
    std::map<Place, FolderAccess> restricted;
    for (const auto& [place, access] : mRestricted)
        restricted[{numbers[place.first], numbers[place.second]}] = access;
    mRestricted.swap(restricted);
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
