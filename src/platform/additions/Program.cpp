// SPDX-License-Identifier: MIT
#include "platform/additions/Program.h"

#include "platform/base/Wait.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace quoddle::additions {

namespace {

constexpr std::size_t kMaximumOutput = std::size_t(1) << 20;

/// Starts the program in a session of its own, so that it outlives this process and gets no signals of a terminal.
std::optional<pid_t> start(const std::vector<std::string>& command, int output) {
    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    if (::posix_spawn_file_actions_init(&actions) != 0)
        return std::nullopt;
    if (::posix_spawnattr_init(&attributes) != 0) {
        ::posix_spawn_file_actions_destroy(&actions);
        return std::nullopt;
    }
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    // the program must not keep files, pipes and locks of the script's process
    ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    pid_t child = 0;
    const int error = ::posix_spawnp(&child, arguments[0], &actions, &attributes, arguments.data(), environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    return error == 0 ? std::optional(child) : std::nullopt;
}

/// Reads what is available. False at the end of the output.
bool readSome(int stream, std::string& into) {
    char bytes[4096];
    const ssize_t count = ::read(stream, bytes, sizeof bytes);
    if (count < 0)
        return errno == EINTR || errno == EAGAIN;
    if (into.size() < kMaximumOutput)
        into.append(bytes, static_cast<std::size_t>(count));
    return count > 0;
}

} // namespace

std::optional<ProgramOutcome> runProgram(const std::vector<std::string>& command, std::chrono::milliseconds time,
                                         const AEHandlerContext& context) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return std::nullopt;
    const auto child = start(command, ends[1]);
    ::close(ends[1]);
    if (!child) {
        ::close(ends[0]);
        return std::nullopt;
    }
    ProgramOutcome outcome;
    const auto deadline = std::chrono::steady_clock::now() + time;
    // without it the end of the program is noticed only after the longest pause
    FileDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, *child, 0)));
    pollfd waited[] = {{ends[0], POLLIN, 0}, {process.number(), POLLIN, 0}};
    pollfd& stream = waited[0];
    int status = 0;
    pid_t ended = 0;
    Wait wait;
    // The program's end counts and not the stream's, because its children may keep the stream open.
    while ((ended = ::waitpid(*child, &status, WNOHANG)) == 0 && std::chrono::steady_clock::now() < deadline) {
        outcome.wasCancelled = context.isCancelled();
        if (outcome.wasCancelled)
            break;
        if (wait.pause(deadline, waited) > 0 && stream.revents && !readSome(ends[0], outcome.output))
            stream.fd = -1;
    }
    while (ended > 0 && stream.fd >= 0 && ::poll(&stream, 1, 0) > 0 && readSome(ends[0], outcome.output)) {
    }
    ::close(ends[0]);
    if (ended == 0 && outcome.wasCancelled) {
        ::kill(-*child, SIGKILL);
        ::waitpid(*child, &status, 0);
    } else if (ended == 0) {
        outcome.isRunning = true;
        outcome.process = std::move(process);
        std::thread([child = *child] { ::waitpid(child, nullptr, 0); }).detach(); // collects the child
    }
    outcome.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return outcome;
}

} // namespace quoddle::additions
