// SPDX-License-Identifier: MIT
// The names below one folder as they are in the file system: walked once, then kept current by watches, or by looking again where the
// system has no watches left. One thread; it works when it is told to, a little at a time.
//
// Decision: breadth first, and the watch of each folder is set before the folder is read, so that nothing falls between the two. What is
// heard twice is known already, what is told of a folder that has gone concerns nobody.
// Left out: hidden folders, other file systems, whatever lies behind links, names that are no UTF-8 (no path leads to them), and what lies
// so deep that its path is longer than the system allows.
#pragma once

#include "platform/search/index/FileNames.h"
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

    /// Begins to walk when nothing is known yet, or the top folder was gone.
    void begin();
    bool isWalking() const { return mReader.isOpen() || !mToRead.empty(); }
    /// Between two pieces of one folder no event can be taken in.
    bool isInFolder() const { return mReader.isOpen(); }
    void walkSome();

    void takeEvent(FileNames::Folder folder, const FolderWatches::Event& event);
    /// Whether every folder is watched.
    bool isFollowed() const { return mUnwatched.empty(); }
    /// Finds changes of which no watch has told: in all folders, or in those without a watch. Folders whose time of change is the same are
    /// passed over.
    void lookAgain(bool atAllFolders);

    /// Not while it walks. The numbers of all entries change when it answers true.
    bool compact();

private:
    bool openFolder(FileNames::Folder folder);
    void addListed(FileNames::Folder folder, std::string_view name, bool isFolder);
    bool add(FileNames::Folder folder, std::string_view name, bool isFolder);
    void remove(FileNames::Entry entry);
    void removeContents(FileNames::Folder folder);
    void forgetFolder(FileNames::Folder folder);
    void report();

    const std::uint32_t mNumber;
    const std::string mPath;
    FolderWatches& mWatches;
    const OnRemove mOnRemove;

    FileNames mNames;
    bool mIsTopThere = false;
    dev_t mDevice = 0;
    FolderReader mReader;
    FileNames::Folder mFolderRead = FileNames::kTop; // while the reader is open
    std::deque<FileNames::Folder> mToRead;
    bool mKnowsSomeOfFolderRead = false;                  // events have told of it before it was read
    std::map<FileNames::Folder, std::int64_t> mUnwatched; // with the time of change when it was read

    std::size_t mUnreadableCount = 0, mUnnamableCount = 0;
    bool mIsFull = false;
};

} // namespace quoddle
