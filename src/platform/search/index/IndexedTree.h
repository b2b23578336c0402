// SPDX-License-Identifier: MIT
// The names below one folder as they are in the file system: walked once, then kept current by watches, or by looking again when the system
// has no watches left. One thread; each call does a small part of the work.
//
// Decision: folders are walked breadth first, and a folder's watch is set before the folder is read, so that no change is missed between
// the two. A name that is reported twice is known the second time, and events of removed folders are ignored.
// Decision: new folders and folders that are looked at again are read in the same way: the names that are read are compared with the known
// ones. The two kinds wait in separate queues, because searches wait for new folders only.
// Decision: permissions decide what can be read below a folder. When they change, all that is known below the folder is forgotten, and the
// folder is walked as a new one. The watch of the folder above tells of changes of a folder that cannot be read.
// Left out are hidden folders, other file systems, whatever lies behind links, names that are no UTF-8 (paths cannot contain them), and
// files whose path is longer than the system allows.
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

    /// `path` is absolute and has no "/" at its end. `watches` must outlive the tree. `onRemove` is called for each removed file and folder
    /// while its name still exists.
    IndexedTree(std::uint32_t number, std::string path, FolderWatches& watches, OnRemove onRemove);

    const std::string& path() const { return mPath; }
    const FileNames& names() const { return mNames; }
    /// The absolute path of a folder, with "/" at its end.
    std::string pathOf(FileNames::Folder folder) const;

    /// Compares the folder at the path with the known one, because no watch tells of changes in the folders above it. Begins to walk when
    /// nothing is known yet, or the path leads to another folder. Removes all entries when the path leads nowhere. Does nothing while
    /// isInFolder().
    void lookAtTop();
    /// Whether there are new folders that have not been read completely.
    bool isWalking() const { return !mToRead.empty() || (mReader.isOpen() && !mIsReadAgain); }
    bool isLookingAgain() const { return !mToReadAgain.empty() || (mReader.isOpen() && mIsReadAgain); }
    bool isReading() const { return isWalking() || isLookingAgain(); }
    /// Whether a folder has been read in part. No event may be taken then.
    bool isInFolder() const { return mReader.isOpen(); }
    /// Reads for some milliseconds. Called while isReading().
    void readSome();

    void takeEvent(FileNames::Folder folder, const FolderWatches::Event& event);
    /// Whether all changes are reported, by a folder's own watch or by that of the folder above.
    bool isFollowed() const { return mUnfollowed.empty(); }
    /// Begins to look for changes of which no watch tells: in all folders, or in the folders that are not followed, without those whose
    /// mark is the same as before.
    void lookAgain(bool atAllFolders);

    /// Closes the gaps of removed entries when that is worth while. Must not be called while isReading(). True when all entries have got
    /// new numbers.
    bool compact();

private:
    /// The folder above and the folder itself; for the top folder its own number twice.
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
    std::optional<FolderIdentity> mTop; // the folder at the path; nullopt when it must be read as soon as it exists
    dev_t mDevice = 0;

    std::deque<FileNames::Folder> mToRead, mToReadAgain;
    // The state of the folder that is being read, while the reader is open.
    FolderReader mReader;
    FolderComparison mComparison;
    FileNames::Folder mFolderRead = FileNames::kTop;
    bool mIsReadAgain = false;
    bool mIsPerhapsAnother = false; // the folder was not watched before, so it may be another one than the known one

    // the folders without a watch, with the mark when they were read; kUnsettled to read them in any case
    std::map<FileNames::Folder, FolderMark> mUnfollowed;
    std::map<Place, FolderAccess> mRestricted; // the folders without all rights, as of the last check

    std::size_t mUnreadableCount = 0, mUnnamableCount = 0;
    bool mIsFull = false;
};

} // namespace quoddle
