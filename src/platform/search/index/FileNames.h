// SPDX-License-Identifier: MIT
// The names of the files and folders below one folder, stored so that a million of them are searched in milliseconds.
//
// Decision: all names are stored one after the other in one block of bytes, in the order in which they became known. An entry is the place
// of its name, the number of its folder and the set of its letters: twelve bytes besides the name. A removed name leaves a gap until
// compact() closes all gaps. A name that is not ASCII is followed by the reduced name.
// Decision: a table finds a name in its folder; searches do not need it. Entries that are added to a folder one after the other, as when
// the folder is read, are a run of consecutive numbers. A run is put into the table only when a name is first looked for in its folder. So
// a change costs time in proportion to one folder, and only folders with changes take memory in the table.
//
// The class knows nothing of the file system and of threads. Names are UTF-8.
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
    /// Numbers of entries (files and folders) and of folders. They grow in the order of adding and are valid until compact().
    using Entry = std::uint32_t;
    using Folder = std::uint32_t;
    static constexpr Folder kTop = 0;

    FileNames();

    /// nullopt when there is no room: after four gigabytes of names, two billion entries, or half a billion folders.
    std::optional<Entry> add(Folder folder, std::string_view name, bool isFolder);
    /// Gives a folder number to the entry of a folder; the entry must be the last one added.
    Folder addFolder(Entry entry);
    /// Removes an entry, of a folder without its contents: see foldersBelow().
    void remove(Entry entry);

    /// The number of all entries, removed ones included.
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
    /// For each entry the letters of its name and of its reduced name; kNotPlain when the name is not plain.
    const LetterSet* letters() const { return mLetters.data(); }
    /// The name as reduced by NameReducer; the name itself when it is ASCII.
    std::string_view reducedName(Entry entry) const {
        const std::string_view bytes = name(entry);
        return isASCII(entry) ? bytes : std::string_view(bytes.data() + bytes.size() + 1);
    }
    /// Whether the reduced name is plain (NameReducer::Reduced::isPlain).
    bool isPlain(Entry entry) const { return mEntries[entry].flags & (kASCIIFlag | kPlainFlag); }
    Folder folderOf(Entry entry) const { return mEntries[entry].folder(); }

    std::optional<Entry> find(Folder folder, std::string_view name);
    /// The entries directly in the folder, in the order of their numbers.
    std::vector<Entry> entriesIn(Folder folder) const;
    std::optional<Folder> folderOfEntry(Entry entry) const;
    /// The entry of a folder other than the topmost one.
    Entry entryOf(Folder folder) const { return mFolders[folder].entry; }
    /// Whether the folder has no entries.
    bool isEmpty(Folder folder) const { return mFolders[folder].count == 0; }
    bool isFolderAlive(Folder folder) const { return folder == kTop || isAlive(mFolders[folder].entry); }
    /// A flag for each folder number: whether it is one of the folders or lies below one.
    std::vector<bool> foldersBelow(const std::vector<Folder>& folders) const;
    /// The path from the topmost folder, with "/" between the names; empty for the topmost folder.
    std::string pathOf(Folder folder) const;

    /// The watch of a folder; -1 for none. Stored here for the owner of the names.
    int watchOf(Folder folder) const { return mFolders[folder].watch; }
    void setWatchOf(Folder folder, int watch) { mFolders[folder].watch = watch; }

    bool isWorthCompacting() const { return mRemovedCount > kFewRemoved && mRemovedCount > mEntries.size() / 2; }
    /// Returns the new number of each folder; kRemoved for a removed one.
    std::vector<Folder> compact();
    static constexpr std::uint32_t kRemoved = 0x1FFFFFFF;

private:
    static constexpr std::uint32_t kFolderFlag = 0x20000000, kPlainFlag = 0x40000000, kASCIIFlag = 0x80000000;
    static constexpr std::size_t kFewRemoved = 50'000, kMostEntries = 0x7FFFFFFE;

    struct EntryRecord {
        std::uint32_t name; // the offset in mBytes, where the name ends with a zero byte
        std::uint32_t flags;
        Folder folder() const { return flags & kRemoved; }
    };
    struct FolderRecord {
        Entry entry = 0; // the folder's own entry; greater for a folder with a greater number
        int watch = -1;
        std::uint32_t count = 0; // the number of entries in the folder that are not removed
        Entry runBegin = 0;      // the run: consecutive entries that are all in this folder
        std::uint32_t runEnd : 31 = 0;
        bool isRunInTable : 1 = false;
    };
    std::size_t slotFor(Folder folder, std::string_view name) const;
    bool isInTable(Entry entry) const;
    /// Makes room for this many more entries.
    void makeRoomInTable(std::size_t count);
    void addToTable(Entry entry);

    NameReducer mReducer;
    std::vector<char> mBytes;
    std::vector<EntryRecord> mEntries;
    std::vector<LetterSet> mLetters; // of each entry
    std::vector<FolderRecord> mFolders;
    std::size_t mRemovedCount = 0;
    std::vector<std::uint32_t> mTable; // entry + 1 at the slot of its hash or behind; 0 in a free slot. The size is a power of two
    std::size_t mTableCount = 0;       // removed entries included
};

} // namespace quoddle
