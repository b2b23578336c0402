// SPDX-License-Identifier: MIT
// An application that is launched while it runs: the new process hands over what it was given and ends.
#pragma once

#include "platform/base/FileDescriptor.h"
#include "platform/base/OSStatus.h"

#include <optional>
#include <string>
#include <vector>

namespace quoddle {

/// Held from the look whether the application runs until it listens, so that of two launches at the same moment one comes second. Waits for
/// the other, but not for ever: a launch that hangs must not keep the application from starting.
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

/// Nothing when no process runs the bundle. Otherwise the files were handed to it, or, without files, it was brought to the front, and this
/// is its answer: 0; -128 when its script was stopped; another number when it failed.
std::optional<OSStatus> AEHandOver(const std::string& bundlePath, const std::vector<std::string>& files);

} // namespace quoddle
