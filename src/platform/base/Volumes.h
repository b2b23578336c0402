// SPDX-License-Identifier: MIT
// The disks and network folders of people, as the kernel lists them. Asks no file system, which might not answer.
#pragma once

#include <string>
#include <vector>

namespace quoddle {

/// Absolute paths of what is mounted where desktops and administrators mount the volumes of people: below /media, /run/media and /mnt. In
/// the order in which they were mounted; at most `most`.
std::vector<std::string> mountedVolumes(std::size_t most);

} // namespace quoddle
