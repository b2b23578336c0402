// SPDX-License-Identifier: MIT
// Second launches of a running application: the new process passes its files to the running one and ends.
#pragma once

#include "platform/base/FileDescriptor.h"
#include "platform/base/OSStatus.h"

#include <optional>
#include <string>
#include <vector>

namespace quoddle {

/// A lock that a launching process holds from the question whether the application runs until it listens, so that of two simultaneous
/// launches the later one finds the earlier. The constructor waits for another holder only for a limited time, so that a launch that hangs
/// does not block all others.
class AELaunchLock {
public:
    explicit AELaunchLock(const std::string& bundlePath);
    ~AELaunchLock() { release(); }
    AELaunchLock(const AELaunchLock&) = delete;
    AELaunchLock& operator=(const AELaunchLock&) = delete;
    void release();

private:
    bool take();

    std::string mPath;
    FileDescriptor mFile;
    bool mIsHeld = false;
};

/// Passes the files to the process that runs the bundle, or brings it to the front without files. nullopt when no process runs it; else its
/// answer: 0, -128 when its script was stopped, another number when it failed.
std::optional<OSStatus> AEHandOver(const std::string& bundlePath, const std::vector<std::string>& files);

} // namespace quoddle
