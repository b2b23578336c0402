// SPDX-License-Identifier: MIT
#include "platform/search/index/FileNames.h"

#include "platform/search/ranking/PlainName.h"

#include <algorithm>
#include <functional>

namespace quoddle {

namespace {

bool isPrintableASCII(std::string_view name) {
    return std::all_of(name.begin(), name.end(), [](char c) { return c >= ' ' && c < 0x7F; });
}

bool isASCII(std::string_view name) {
    return std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::size_t hashOf(FileNames::Folder folder, std::string_view name) {
    return std::hash<std::string_view>()(name) ^ (folder * 0x9E3779B97F4A7C15u);
}

constexpr std::size_t kSmallestTable = 4096;

} // namespace

FileNames::FileNames() : mTable(kSmallestTable) {
    mFolders.push_back({});
}

std::optional<FileNames::Entry> FileNames::add(Folder folder, std::string_view name, bool isFolder) {
    // The reduced name needs at most three bytes for each byte of the name.
    if (mBytes.size() + 4 * name.size() + 2 >= UINT32_MAX || mFolders.size() >= kRemoved || mEntries.size() >= kMostEntries)
        return {};
    const auto entry = static_cast<Entry>(mEntries.size());
    FolderRecord& above = mFolders[folder];
    const bool beginsRun = above.runBegin == above.runEnd && !above.isRunInTable;
    const bool isInRun = beginsRun || (above.runEnd == entry && !above.isRunInTable);
    if (!isInRun)
        makeRoomInTable(1);
    const auto place = static_cast<std::uint32_t>(mBytes.size());
    std::uint32_t flags = folder | (isFolder ? kFolderFlag : 0) | kASCIIFlag;
    const auto append = [this](std::string_view text) {
        mBytes.insert(mBytes.end(), text.begin(), text.end());
        mBytes.push_back('\0');
    };
    append(name);
    const bool isUsual = isPrintableASCII(name);
    LetterSet letters = isUsual || isPlainName(name) ? lettersOf(name) : kNotPlain;
    if (!isUsual && !quoddle::isASCII(name)) {
        const NameReducer::Reduced& reduced = mReducer.reduce(name);
        append(reduced.text);
        letters |= lettersOf(reduced.text);
        flags = (flags & ~kASCIIFlag) | (reduced.isPlain ? kPlainFlag : 0);
    }
    mEntries.push_back({place, flags});
    mLetters.push_back(letters);
    ++above.count;
    if (beginsRun)
        above.runBegin = entry;
    if (isInRun)
        above.runEnd = entry + 1;
    else
        addToTable(entry);
    return entry;
}

FileNames::Folder FileNames::addFolder(Entry entry) {
    mFolders.push_back({entry});
    return static_cast<Folder>(mFolders.size() - 1);
}

void FileNames::remove(Entry entry) {
    --mFolders[folderOf(entry)].count;
    mEntries[entry].flags |= kRemoved;
    ++mRemovedCount;
}

/// The slot of the entry in the table, or the free slot where the search for it ends.
std::size_t FileNames::slotFor(Folder folder, std::string_view name) const {
    std::size_t slot = hashOf(folder, name) & (mTable.size() - 1);
    for (; mTable[slot] != 0; slot = (slot + 1) & (mTable.size() - 1)) {
        const Entry entry = mTable[slot] - 1;
        if (folderOf(entry) == folder && this->name(entry) == name)
            break;
    }
    return slot;
}

bool FileNames::isInTable(Entry entry) const {
    const FolderRecord& folder = mFolders[folderOf(entry)];
    return folder.isRunInTable || entry < folder.runBegin || entry >= folder.runEnd;
}

void FileNames::makeRoomInTable(std::size_t count) {
    if ((mTableCount + count) * 5 <= mTable.size() * 4)
        return;
    for (Entry entry = 0; entry < entryCount(); ++entry)
        count += isAlive(entry) && isInTable(entry);
    std::size_t size = kSmallestTable;
    while (size * 2 < count * 3)
        size *= 2;
    mTable = std::vector<std::uint32_t>(size);
    mTableCount = 0;
    for (Entry entry = 0; entry < entryCount(); ++entry)
        if (isAlive(entry) && isInTable(entry))
            addToTable(entry);
}

void FileNames::addToTable(Entry entry) {
    mTable[slotFor(folderOf(entry), name(entry))] = entry + 1;
    ++mTableCount;
}

std::optional<FileNames::Entry> FileNames::find(Folder folder, std::string_view name) {
    FolderRecord& record = mFolders[folder];
    if (!record.isRunInTable) {
        makeRoomInTable(record.runEnd - record.runBegin);
        for (Entry entry = record.runBegin; entry < record.runEnd; ++entry)
            if (isAlive(entry))
                addToTable(entry);
        record.isRunInTable = true;
    }
    const std::uint32_t found = mTable[slotFor(folder, name)];
    return found == 0 ? std::nullopt : std::optional<Entry>(found - 1);
}

std::vector<FileNames::Entry> FileNames::entriesIn(Folder folder) const {
    const FolderRecord& record = mFolders[folder];
    std::vector<Entry> entries;
    entries.reserve(record.count);
    for (Entry entry = record.runBegin; entry < record.runEnd; ++entry)
        if (isAlive(entry))
            entries.push_back(entry);
    if (entries.size() == record.count)
        return entries;
    for (const std::uint32_t slot : mTable) // entries outside the folder's run are all in the table
        if (const Entry entry = slot - 1; slot != 0 && folderOf(entry) == folder && (entry < record.runBegin || entry >= record.runEnd))
            entries.push_back(entry);
    std::sort(entries.begin(), entries.end());
    return entries;
}

std::optional<FileNames::Folder> FileNames::folderOfEntry(Entry entry) const {
    const auto found = std::lower_bound(mFolders.begin() + 1, mFolders.end(), entry,
                                        [](const FolderRecord& folder, Entry wanted) { return folder.entry < wanted; });
    if (found == mFolders.end() || found->entry != entry)
        return {};
    return static_cast<Folder>(found - mFolders.begin());
}

std::vector<bool> FileNames::foldersBelow(const std::vector<Folder>& folders) const {
    std::vector<bool> below(mFolders.size());
    for (const Folder folder : folders)
        below[folder] = true;
    for (Folder each = kTop + 1; each < folderCount(); ++each) // a folder's number is greater than that of the folder above
        if (const Folder above = folderOf(mFolders[each].entry); above != kRemoved && below[above])
            below[each] = true;
    return below;
}

std::string FileNames::pathOf(Folder folder) const {
    std::vector<std::string_view> parts;
    for (; folder != kTop; folder = folderOf(mFolders[folder].entry)) {
        if (folder == kRemoved)
            return {};
        parts.push_back(name(mFolders[folder].entry));
    }
    std::string path;
    for (auto part = parts.rbegin(); part != parts.rend(); ++part)
        (path.empty() ? path : path += '/') += *part;
    return path;
}

std::vector<FileNames::Folder> FileNames::compact() {
    FileNames kept;
    std::vector<Folder> numbers(mFolders.size(), kRemoved);
    numbers[kTop] = kTop;
    kept.setWatchOf(kTop, watchOf(kTop));
    Folder next = 1;
    for (Entry entry = 0; entry < entryCount(); ++entry) {
        while (next < folderCount() && mFolders[next].entry < entry)
            ++next;
        if (!isAlive(entry) || numbers[folderOf(entry)] == kRemoved)
            continue;
        const Entry added = *kept.add(numbers[folderOf(entry)], name(entry), isFolder(entry));
        if (next < folderCount() && mFolders[next].entry == entry) {
            numbers[next] = kept.addFolder(added);
            kept.setWatchOf(numbers[next], mFolders[next].watch);
        }
    }
    *this = std::move(kept);
    return numbers;
}

} // namespace quoddle
