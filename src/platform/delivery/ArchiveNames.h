// SPDX-License-Identifier: MIT
// The names that an archive of a bundle may have in it: what leads out of the bundle, or means the same as another name, is none of them.
//
// Decision: packing and unpacking ask the same functions, so that what was packed can be unpacked everywhere.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <QString>

namespace quoddle {

using ArchivePath = std::vector<std::string>; ///< the parts of a name, in UTF-8

/// nullopt when a part leads out of the folder, the name has control characters other than line ends and tabs or is no UTF-8, or it is too
/// long or too deep.
std::optional<ArchivePath> partsOfArchiveName(std::string_view name);

/// Whether a link `depth` folders below the bundle stays within the bundle. ".." is only allowed at the beginning, among real folders;
/// behind a name it could start from wherever another link leads.
bool staysInBundle(std::string_view target, std::size_t depth);

/// Files with other systems' notes about a file ("._NAME").
bool isNoteOfOtherSystem(std::string_view part);

/// All names met so far, with the folders that are only part of a longer name.
class ArchiveNames {
public:
    /// Takes a name. False when one with another spelling is there that some file systems cannot tell from it: by capitals, or by the way
    /// that accents are written.
    bool add(const ArchivePath& path);
    int count() const { return static_cast<int>(mNames.size()); }

private:
    std::map<std::pair<int, QString>, std::pair<int, std::string>> mNames; // the folder's number and the folded part: number and part
};

} // namespace quoddle
