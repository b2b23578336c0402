// SPDX-License-Identifier: MIT
#include "platform/ae/transport/AESecondLaunch.h"

#include "platform/ae/transport/AEApplicationLookup.h"
#include "platform/ae/transport/AEClient.h"
#include "platform/ae/transport/AERuntimeDirectory.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>

namespace quoddle {

namespace {

constexpr std::chrono::seconds kPatience{10};
constexpr std::chrono::milliseconds kSlice{5};

} // namespace

AELaunchLock::AELaunchLock(const std::string& bundlePath) {
    const auto directory = AERuntimeDirectory();
    if (!directory)
        return;
    mPath = *directory + "/" + std::to_string(std::hash<std::string>()(AECanonicalPath(bundlePath))) + ".lock";
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!take() && mFile.isOpen() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(kSlice);
}

bool AELaunchLock::take() {
    mFile.reset(::open(mPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!mFile.isOpen() || ::flock(mFile.number(), LOCK_EX | LOCK_NB) != 0)
        return false;
    // The former holder has removed the file on release, so the lock only counts when it is on the file that stands there now.
    struct stat mine = {}, standing = {};
    mIsHeld = ::fstat(mFile.number(), &mine) == 0 && ::stat(mPath.c_str(), &standing) == 0 && mine.st_ino == standing.st_ino;
    return mIsHeld;
}

void AELaunchLock::release() {
    if (std::exchange(mIsHeld, false))
        ::unlink(mPath.c_str());
    mFile.reset();
}

std::optional<OSStatus> AEHandOver(const std::string& bundlePath, const std::vector<std::string>& files) {
    const auto running = AEFindRunningApplicationAtPath(bundlePath);
    if (!running)
        return std::nullopt;
    const AEDesc target = AEDesc::ofProcess(running->processID);
    AEDesc event = AEDesc::appleEvent("aevt"_4cc, files.empty() ? "rapp"_4cc : "odoc"_4cc, target);
    if (!files.empty()) {
        AEDesc list = AEDesc::list();
        for (const std::string& file : files)
            (void)list.insertItem(0, AEDesc::ofFilePath(file));
        (void)event.put("----"_4cc, std::move(list));
    }
    AEDesc reply;
    // Opening files may take any time. Coming to the front is quick, so an application that does not answer to that is not waited for.
    const std::int32_t timeout = files.empty() ? kAEDefaultTimeout : kNoTimeOut;
    const OSStatus status = AESendToProcess(running->processID, event, &reply, kAEWaitReply, timeout, {});
    if (status == procNotFound || (status == connectionInvalid && files.empty()))
        return std::nullopt; // the application has just ended
    const AEDesc* error = reply.find("errn"_4cc);
    return status == noErr && error ? error->asInt32().value_or(errAEEventFailed) : status;
}

} // namespace quoddle
