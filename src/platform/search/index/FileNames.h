// SPDX-License-Identifier: MIT
// The names of the files and folders below one folder, held so that a million of them are searched in milliseconds.
//
// Decision: all names stand one behind the other in one block of bytes, in the order in which they became known, and a file is the place of
// its name, the number of its folder and the set of its letters: twelve bytes beside the name. What is removed leaves a gap until compact()
// closes all gaps. Behind a name that is not ASCII stands the same name reduced.
// Decision: a name is found in its folder by a table, which no search needs. What is added to a folder one after the other, as when it is
// read, is a run of entries that follow each other; it comes into the table when a name is first looked for in that folder. So a change
// costs what there is in one folder, and memory is used for the folders that change.
//
// The index knows nothing of the file system and of threads. Names are UTF-8.
#pragma once

#include "platform/search/index/ReducedName.h"
#include "platform/search/ranking/LetterSet.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quoddle {

class FileNames {
public:
    /// Numbers of entries (files and folders) and of folders. A later one is greater; they hold until compact().
    using Entry = std::uint32_t;
    using Folder = std::uint32_t;
    static constexpr Folder kTop = 0;

    FileNames();

    /// Nothing when there is no room for more: after four gigabytes of names, two billion entries, or half a billion folders.
    std::optional<Entry> add(Folder folder, std::string_view name, bool isFolder);
    /// The number of a folder that has just been added as the last entry.
    Folder addFolder(Entry entry);
    /// The folder is removed without what it contains: see foldersBelow().
    void remove(Entry entry);

    /// One more than the last entry's, whether removed or not.
    Entry entryCount() const { return static_cast<Entry>(mEntries.size()); }
    Folder folderCount() const { return static_cast<Folder>(mFolders.size()); }
    std::size_t aliveCount() const { return mEntries.size() - mRemovedCount; }
    bool isAlive(Entry entry) const { return mEntries[entry].folder() != kRemoved; }
    bool isFolder(Entry entry) const { return mEntries[entry].flags & kFolderFlag; }
    bool isASCII(Entry entry) const { return mEntries[entry].flags & kASCIIFlag; }
    std::string_view name(Entry entry) const {
        const char* const bytes = &mBytes[mEntries[entry].name];
        if (!isASCII(entry))
            return bytes;
        const std::size_t next = entry + 1 < entryCount() ? mEntries[entry + 1].name : mBytes.size();
        return {bytes, next - 1 - mEntries[entry].name};
    }
    void prefetchName(Entry entry) const { __builtin_prefetch(&mBytes[mEntries[entry].name]); }
    /// For each entry the letters of its name and of its reduced name; kNotPlain if the name is not plain.
    const LetterSet* letters() const { return mLetters.data(); }
    /// The name as NameReducer reduces it; the name itself when it is ASCII.
    std::string_view reducedName(Entry entry) const {
        const std::string_view bytes = name(entry);
        return isASCII(entry) ? bytes : std::string_view(bytes.data() + bytes.size() + 1);
    }
    /// Whether the reduced name is a plain one.
    bool isPlain(Entry entry) const { return mEntries[entry].flags & (kASCIIFlag | kPlainFlag); }
    Folder folderOf(Entry entry) const { return mEntries[entry].folder(); }

    std::optional<Entry> find(Folder folder, std::string_view name);
    /// In the order of their numbers. Without what lies deeper.
    std::vector<Entry> entriesIn(Folder folder) const;
    std::optional<Folder> folderOfEntry(Entry entry) const;
    /// Not of the topmost folder.
    Entry entryOf(Folder folder) const { return mFolders[folder].entry; }
    /// Whether nothing is known to be in the folder.
    bool isEmpty(Folder folder) const { return mFolders[folder].count == 0; }
    bool isFolderAlive(Folder folder) const { return folder == kTop || isAlive(mFolders[folder].entry); }
    /// The folders and all that lie below them: true at the number of each.
    std::vector<bool> foldersBelow(const std::vector<Folder>& folders) const;
    /// From the topmost folder, with "/" between the names; empty for that folder itself.
    std::string pathOf(Folder folder) const;

    /// The watch of a folder; -1: none. Kept here and used by others.
    int watchOf(Folder folder) const { return mFolders[folder].watch; }
    void setWatchOf(Folder folder, int watch) { mFolders[folder].watch = watch; }

    bool isWorthCompacting() const { return mRemovedCount > kFewRemoved && mRemovedCount > mEntries.size() / 2; }
    /// The new number of each folder; kRemoved for one that is no more.
    std::vector<Folder> compact();
    static constexpr std::uint32_t kRemoved = 0x1FFFFFFF;

private:
    static constexpr std::uint32_t kFolderFlag = 0x20000000, kPlainFlag = 0x40000000, kASCIIFlag = 0x80000000;
    static constexpr std::size_t kFewRemoved = 50'000, kMostEntries = 0x7FFFFFFE;

    struct EntryRecord {
        std::uint32_t name; // in mBytes, up to a zero
        std::uint32_t flags;
        Folder folder() const { return flags & kRemoved; }
    };
    struct FolderRecord {
        Entry entry = 0; // in the folder above; rises with the number of the folder
        int watch = -1;
        std::uint32_t count = 0; // of the entries in it that are not removed
        Entry runBegin = 0;      // of entries that are all in it
        std::uint32_t runEnd : 31 = 0;
        bool isRunInTable : 1 = false;
    };
    std::size_t slotFor(Folder folder, std::string_view name) const;
    bool isInTable(Entry entry) const;
    /// For so many entries more than there are in it.
    void makeRoomInTable(std::size_t count);
    void addToTable(Entry entry);

    NameReducer mReducer;
    std::vector<char> mBytes;
    std::vector<EntryRecord> mEntries;
    std::vector<LetterSet> mLetters; // of each
    std::vector<FolderRecord> mFolders;
    std::size_t mRemovedCount = 0;
    std::vector<std::uint32_t> mTable; // entry + 1 at a place that its hash leads to; 0: free. Its size is a power of two
    std::size_t mTableCount = 0;       // entries in the table, also removed ones
};

} // namespace quoddle
