// SPDX-License-Identifier: MIT
// The names below one folder as they are in the file system: walked once, then kept current by watches, or by looking again where the
// system has no watches left. One thread; it works when it is told to, a little at a time.
//
// Decision: breadth first, and the watch of each folder is set before the folder is read, so that nothing falls between the two. What is
// heard twice is known already, what is told of a folder that has gone concerns nobody.
// Decision: there is one way to read a folder, whether it is new or looked at again: what is read is held against what is known of it.
// A folder that is new stands in another queue than one that is looked at again, for which no search waits.
// Decision: what may be read below a folder depends on its permissions. When those change all that is known below is forgotten and the
// folder walked as a new one; a folder that cannot be read is told of by the watch of the one above.
// Left out: hidden folders, other file systems, whatever lies behind links, names that are no UTF-8 (no path leads to them), and what lies
// so deep that its path is longer than the system allows.
#pragma once

#include "platform/search/index/FileNames.h"
#include "platform/search/index/FolderComparison.h"
#include "platform/search/index/FolderReader.h"
#include "platform/search/index/FolderWatches.h"

#include <deque>
#include <functional>
#include <map>

namespace quoddle {

class IndexedTree {
public:
    using OnRemove = std::function<void(FileNames::Entry entry)>;

    /// `path`: absolute, without "/" at its end. `watches` must outlive it. `onRemove` is told of each file and folder while its name is
    /// still there.
    IndexedTree(std::uint32_t number, std::string path, FolderWatches& watches, OnRemove onRemove);

    const std::string& path() const { return mPath; }
    const FileNames& names() const { return mNames; }
    /// Absolute, with "/" at its end.
    std::string pathOf(FileNames::Folder folder) const;

    /// Begins to walk when nothing is known yet, or the path leads to another folder than the known one. When the path leads nowhere all
    /// that is known is removed. Of what happens to the folders above the top folder no watch tells. Does nothing while isInFolder().
    void lookAtTop();
    /// Whether there are folders of which nothing has been read.
    bool isWalking() const { return !mToRead.empty() || (mReader.isOpen() && !mIsReadAgain); }
    bool isLookingAgain() const { return !mToReadAgain.empty() || (mReader.isOpen() && mIsReadAgain); }
    bool isReading() const { return isWalking() || isLookingAgain(); }
    /// Between two pieces of one folder no event can be taken in.
    bool isInFolder() const { return mReader.isOpen(); }
    /// While isReading(): for some milliseconds.
    void readSome();

    void takeEvent(FileNames::Folder folder, const FolderWatches::Event& event);
    /// Whether every folder is watched, or what becomes of it is told by the watch of the folder above.
    bool isFollowed() const { return mUnfollowed.empty(); }
    /// Begins to look for changes of which no watch has told: in all folders, or in those that are not followed. Of these the ones that
    /// bear the same mark as before are passed over.
    void lookAgain(bool atAllFolders);

    /// Not while it reads. The numbers of all entries change when it answers true.
    bool compact();

private:
    /// The folder above, and the folder; of the top folder twice its own number.
    using Place = std::pair<FileNames::Folder, FileNames::Folder>;

    std::string pathToOpen(FileNames::Folder folder) const;
    void openNext();
    bool isUnchanged(FileNames::Folder folder) const;
    bool openFolder(FileNames::Folder folder);
    void takeError(FileNames::Folder folder, int error);
    void takeListed(std::string_view name, bool isFolder);
    void endFolder();
    bool add(FileNames::Folder folder, std::string_view name, bool isFolder);
    void remove(const std::vector<FileNames::Entry>& entries);
    void removeContents(const std::vector<FileNames::Folder>& folders);
    void forgetFolder(FileNames::Folder folder);
    void giveUpWatch(FileNames::Folder folder);
    Place placeOf(FileNames::Folder folder) const;
    FolderAccess knownAccess(FileNames::Folder folder) const;
    bool keepAccess(FileNames::Folder folder, FolderAccess access);
    void checkAccess(FileNames::Folder folder);
    void checkAccess(FileNames::Folder above, std::string_view name);
    void forgetTop();
    void report();

    const std::uint32_t mNumber;
    const std::string mPath;
    FolderWatches& mWatches;
    const OnRemove mOnRemove;

    FileNames mNames;
    std::optional<FolderIdentity> mTop; // nothing: to be read as soon as it is there
    dev_t mDevice = 0;

    std::deque<FileNames::Folder> mToRead, mToReadAgain;
    // Of the folder that is read, while the reader is open.
    FolderReader mReader;
    FolderComparison mComparison;
    FileNames::Folder mFolderRead = FileNames::kTop;
    bool mIsReadAgain = false;
    bool mIsPerhapsAnother = false; // than the one of which something is known: it was not watched

    std::map<FileNames::Folder, FolderMark> mUnfollowed; // with the mark when it was read; kUnsettled: to be read anyway
    std::map<Place, FolderAccess> mRestricted;           // where it is not all; as it was when the folder was last looked at

    std::size_t mUnreadableCount = 0, mUnnamableCount = 0;
    bool mIsFull = false;
};

} // namespace quoddle
