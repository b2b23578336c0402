// SPDX-License-Identifier: MIT
#include "platform/additions/HelperProcess.h"

#include "platform/additions/Bundle.h"
#include "platform/ae/AEFlatten.h"
#include "platform/ae/transport/AEFrame.h"
#include "platform/base/FileDescriptor.h"
#include "platform/base/Wait.h"

#include <cassert>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace quoddle::additions {

namespace {

constexpr int kNoDisplayStatus = 3; // the exit status of helpers that cannot reach the display
constexpr int kFirstInheritable = 3;
constexpr std::chrono::milliseconds kPoliteTime{200};

/// The name of the applet or program as the user knows it. Helpers get it as the sender of their dialogs.
std::string applicationName() {
    const std::filesystem::path path = applicationPath();
    return path.extension() == ".app" ? path.stem().string() : path.filename().string();
}

} // namespace

/// A running helper. Its standard input is the other end of our socket.
class HelperProcess::Child {
public:
    /// Null when the program cannot be started.
    static std::unique_ptr<Child> start(const std::string& program, Ending ending);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// Whether an idle helper can take a question. One with data on its socket has ended or is broken.
    bool isUsable() const;
    Outcome ask(const AEDesc& event, AEDesc& answer, const AEHandlerContext& context);
    /// Waits a moment for the helper to end by itself, then kills it. Returns its exit status.
    int exitStatus();

private:
    Child(pid_t process, FileDescriptor socket, Ending ending) : mProcess(process), mSocket(std::move(socket)), mEnding(ending) {}
    Outcome send(std::string_view bytes, const AEHandlerContext& context);
    Outcome receive(AEDesc& answer, const AEHandlerContext& context);
    Outcome waitFor(short what, const AEHandlerContext& context);

    pid_t mProcess;
    FileDescriptor mSocket;
    const Ending mEnding;
    std::uint32_t mLastID = 0;
    bool mMustEnd = false; // the destructor must end the helper, because it is busy or broken; an idle one ends when its socket is closed
};

std::unique_ptr<HelperProcess::Child> HelperProcess::Child::start(const std::string& program, Ending ending) {
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return nullptr;
    FileDescriptor ours(ends[0]), theirs(ends[1]);
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    if (::posix_spawn_file_actions_init(&actions) != 0 || ::posix_spawnattr_init(&attributes) != 0)
        return nullptr;
    ::posix_spawn_file_actions_adddup2(&actions, theirs.number(), STDIN_FILENO);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    if (ending == Ending::stays) {
        // the helper must not keep files, pipes and locks of the script's process
        ::posix_spawn_file_actions_addclosefrom_np(&actions, kFirstInheritable);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    }
    std::string command = program, name = applicationName();
    char* const arguments[] = {command.data(), name.data(), nullptr};
    pid_t process = 0;
    const int error = ::posix_spawnp(&process, program.c_str(), &actions, &attributes, arguments, environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::posix_spawnattr_destroy(&attributes);
    return error == 0 ? std::unique_ptr<Child>(new Child(process, std::move(ours), ending)) : nullptr;
}

HelperProcess::Child::~Child() {
    mSocket.reset();
    if (mProcess && mMustEnd)
        (void)exitStatus();
}

bool HelperProcess::Child::isUsable() const {
    pollfd socket{mSocket.number(), POLLIN, 0};
    return ::poll(&socket, 1, 0) == 0;
}

int HelperProcess::Child::exitStatus() {
    assert(mProcess > 0);
    int status = 0;
    const FileDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, mProcess, 0)));
    const auto end = std::chrono::steady_clock::now() + (mMustEnd ? std::chrono::milliseconds(0) : kPoliteTime);
    pollfd ended{process.number(), POLLIN, 0};
    for (Wait wait; std::chrono::steady_clock::now() < end && wait.pause(end, {&ended, 1}) == 0;) {
    }
    ::kill(mProcess, SIGKILL); // means nothing to a process that has ended
    while (::waitpid(mProcess, &status, 0) < 0 && errno == EINTR) {
    }
    mProcess = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

HelperProcess::Outcome HelperProcess::Child::waitFor(short what, const AEHandlerContext& context) {
    for (Wait wait; !context.isCancelled();) {
        pollfd socket{mSocket.number(), what, 0};
        const int ready = wait.pause(std::chrono::steady_clock::time_point::max(), {&socket, 1});
        if (ready > 0)
            return Outcome::answered;
        if (ready < 0)
            return Outcome::ended;
    }
    mMustEnd = mEnding == Ending::withUs;
    return Outcome::cancelled;
}

HelperProcess::Outcome HelperProcess::Child::send(std::string_view bytes, const AEHandlerContext& context) {
    while (!bytes.empty()) {
        if (const Outcome outcome = waitFor(POLLOUT, context); outcome != Outcome::answered)
            return outcome;
        const ssize_t count = ::send(mSocket.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0 && errno != EINTR && errno != EAGAIN)
            return Outcome::ended;
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    return Outcome::answered;
}

HelperProcess::Outcome HelperProcess::Child::receive(AEDesc& answer, const AEHandlerContext& context) {
    AEFrameReader reader;
    AEFrame frame;
    while (true) {
        if (const Outcome outcome = waitFor(POLLIN, context); outcome != Outcome::answered)
            return outcome;
        char bytes[65536];
        const ssize_t count = ::recv(mSocket.number(), bytes, sizeof bytes, 0);
        if (count <= 0)
            return Outcome::ended;
        reader.append({bytes, static_cast<std::size_t>(count)});
        const auto complete = reader.next(frame);
        if (!complete)
            break;
        if (!*complete)
            continue;
        if (frame.kind == AEFrame::Kind::Reply && frame.id == mLastID && AEUnflattenDesc(frame.payload, answer) == noErr)
            return Outcome::answered;
        break;
    }
    mMustEnd = true;
    return Outcome::ended;
}

HelperProcess::Outcome HelperProcess::Child::ask(const AEDesc& event, AEDesc& answer, const AEHandlerContext& context) {
    AEFrame frame{.kind = AEFrame::Kind::Event, .flags = AEFrame::kWantsReply, .id = ++mLastID};
    if (AEFlattenDesc(event, frame.payload) != noErr)
        return Outcome::ended;
    const Outcome sent = send(frame.bytes(), context);
    return sent == Outcome::answered ? receive(answer, context) : sent;
}

HelperProcess::HelperProcess(std::string program, Ending ending) : mProgram(std::move(program)), mEnding(ending) {}

HelperProcess::~HelperProcess() = default;

std::string HelperProcess::program() const {
    if (mProgram.find('/') != std::string::npos)
        return mProgram;
    std::error_code error;
    const auto beside = std::filesystem::read_symlink("/proc/self/exe", error).parent_path() / mProgram;
    return ::access(beside.c_str(), X_OK) == 0 ? beside.string() : mProgram;
}

std::unique_ptr<HelperProcess::Child> HelperProcess::take() {
    std::unique_lock lock(mMutex);
    auto child = std::move(mIdle);
    lock.unlock();
    if (child && child->isUsable())
        return child;
    if (child)
        (void)child->exitStatus();
    return Child::start(program(), mEnding);
}

HelperProcess::Outcome HelperProcess::ask(const AEDesc& event, AEDesc& answered, const AEHandlerContext& context) {
    auto child = take();
    if (!child)
        return Outcome::notFound;
    const Outcome outcome = child->ask(event, answered, context);
    if (outcome == Outcome::ended && child->exitStatus() == kNoDisplayStatus)
        return Outcome::noDisplay;
    if (outcome == Outcome::answered) {
        std::lock_guard lock(mMutex);
        mIdle.swap(child); // after simultaneous questions only one helper is kept
    }
    return outcome;
}

} // namespace quoddle::additions
