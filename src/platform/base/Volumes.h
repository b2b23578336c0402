// SPDX-License-Identifier: MIT
// The user's disks and network folders, as the kernel lists them. No file system is asked, because it might not answer.
#pragma once

#include <string>
#include <vector>

namespace quoddle {

/// Absolute paths of the mount points below /media, /run/media and /mnt, where desktops and administrators mount the users' volumes. In the
/// order of mounting; at most `most`.
std::vector<std::string> mountedVolumes(std::size_t most);

} // namespace quoddle
