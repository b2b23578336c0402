// SPDX-License-Identifier: MIT
#include "platform/additions/ShellProcess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quoddle::additions {

namespace {

constexpr useconds_t kPoliteTime = 30'000;
constexpr int kNotStarted = 127 << 8; // what a shell says of a program that it does not find
constexpr char kReleased = 'r';

struct Pipe {
    Pipe() {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) == 0) {
            reading.reset(ends[0]);
            writing.reset(ends[1]);
        }
    }
    FileDescriptor reading, writing;
};

/// How the shell is to be started; made before the fork, behind which nothing may ask for memory.
class SpawnPlan {
public:
    SpawnPlan(const std::string& command, int output, int errors)
        : mArguments{const_cast<char*>("sh"), const_cast<char*>("-c"), const_cast<char*>(command.c_str()), nullptr} {
        ::posix_spawn_file_actions_init(&mActions);
        ::posix_spawn_file_actions_addopen(&mActions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_adddup2(&mActions, output, STDOUT_FILENO);
        ::posix_spawn_file_actions_adddup2(&mActions, errors, STDERR_FILENO);
        ::posix_spawnattr_init(&mAttributes);
        ::posix_spawnattr_setflags(&mAttributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        sigset_t signals;
        ::sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&mAttributes, &signals);
        ::sigaddset(&signals, SIGPIPE);
        ::posix_spawnattr_setsigdefault(&mAttributes, &signals);
    }
    ~SpawnPlan() {
        ::posix_spawn_file_actions_destroy(&mActions);
        ::posix_spawnattr_destroy(&mAttributes);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    /// 0 when it cannot be started.
    pid_t start() const {
        pid_t shell = 0;
        return ::posix_spawn(&shell, "/bin/sh", &mActions, &mAttributes, mArguments, environ) == 0 ? shell : 0;
    }

private:
    char* const mArguments[4];
    posix_spawn_file_actions_t mActions;
    posix_spawnattr_t mAttributes;
};

/// The guard lives longer than this process may: a pipe that it had inherited would never come to its end for the reader.
void closeAllBut(std::array<int, 4> kept) {
    std::sort(kept.begin(), kept.end());
    unsigned from = 0;
    for (const int descriptor : kept) {
        if (static_cast<unsigned>(descriptor) > from)
            ::close_range(from, static_cast<unsigned>(descriptor) - 1, 0);
        from = static_cast<unsigned>(descriptor) + 1;
    }
    ::close_range(from, ~0U, 0);
}

/// As waitpid() would give it. The shell stays a zombie, so that the number of its group belongs to nobody else.
int statusOf(pid_t shell) {
    siginfo_t info = {};
    while (::waitid(P_PID, static_cast<id_t>(shell), &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
    return info.si_code == CLD_EXITED ? info.si_status << 8 : info.si_status;
}

[[noreturn]] void guard(const SpawnPlan& plan, int life, int report, int output, int errors) {
    sigset_t all;
    ::sigfillset(&all);
    ::sigprocmask(SIG_SETMASK, &all, nullptr);
    ::setpgid(0, 0);
    closeAllBut({life, report, output, errors});
    const pid_t shell = plan.start();
    ::close(output);
    ::close(errors);
    const int process = shell > 0 ? static_cast<int>(::syscall(SYS_pidfd_open, shell, 0)) : -1;
    pollfd waited[] = {{life, POLLIN, 0}, {process, POLLIN, 0}};
    bool isReported = false;
    while (true) {
        if ((waited[1].revents || process < 0) && !isReported) {
            const int status = shell > 0 ? statusOf(shell) : kNotStarted;
            [[maybe_unused]] const auto written = ::write(report, &status, sizeof status);
            isReported = true;
            waited[1].fd = -1;
        }
        if (waited[0].revents)
            break;
        waited[1].revents = 0;
        ::poll(waited, 2, -1);
    }
    char word = 0;
    if (::read(life, &word, 1) != 1 && shell > 0) {
        ::kill(-shell, SIGTERM);
        ::usleep(kPoliteTime);
        ::kill(-shell, SIGKILL);
    }
    if (shell > 0)
        ::waitpid(shell, nullptr, 0);
    ::_exit(0);
}

} // namespace

ShellProcess::ShellProcess(const std::string& command) {
    Pipe output, errors, report, life;
    if (!life.reading.isOpen() || !report.reading.isOpen() || !errors.reading.isOpen() || !output.reading.isOpen())
        return;
    const SpawnPlan plan(command, output.writing.number(), errors.writing.number());
    mGuard = ::fork();
    if (mGuard == 0)
        guard(plan, life.reading.number(), report.writing.number(), output.writing.number(), errors.writing.number());
    mOutput = std::move(output.reading);
    mErrors = std::move(errors.reading);
    mReport = std::move(report.reading);
    mLife = std::move(life.writing);
}

ShellProcess::~ShellProcess() {
    mLife.reset();
    while (mGuard > 0 && ::waitpid(mGuard, nullptr, 0) < 0 && errno == EINTR) {
    }
}

std::optional<int> ShellProcess::takeStatus() {
    int status = 0;
    const ssize_t count = ::read(mReport.number(), &status, sizeof status);
    return count == sizeof status ? std::optional(status) : std::nullopt;
}

void ShellProcess::release() {
    [[maybe_unused]] const auto written = ::write(mLife.number(), &kReleased, 1);
}

} // namespace quoddle::additions
