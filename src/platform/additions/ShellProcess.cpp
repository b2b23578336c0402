// SPDX-License-Identifier: MIT
#include "platform/additions/ShellProcess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace quoddle::additions {

namespace {

constexpr useconds_t kPoliteTime = 30'000;
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

/// Two connected sockets. A socket reports to a writer that its reader has gone, where a pipe would also send a signal.
struct SocketPair {
    SocketPair() {
        int ends[2];
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0) {
            first.reset(ends[0]);
            second.reset(ends[1]);
        }
    }
    FileDescriptor first, second;
};

/// The guard's only message, about the end of its shell.
struct Report {
    int error = 0;  // an errno value when the shell could not be started
    int status = 0; // in the format of waitpid()
};

/// The environment of the shell. bash complains aloud about a locale that is not installed, and scripts would take the complaint for the
/// command's own: such a locale becomes C.UTF-8.
class ShellEnvironment {
public:
    ShellEnvironment() {
        const locale_t locale = ::newlocale(LC_ALL_MASK, "", nullptr);
        const bool isMissing = !locale;
        if (locale)
            ::freelocale(locale);
        for (char** variable = environ; *variable; ++variable)
            if (!isMissing || std::strncmp(*variable, "LC_ALL=", 7) != 0)
                mVariables.push_back(*variable);
        if (isMissing)
            mVariables.push_back(mPlainLocale.data());
        mVariables.push_back(nullptr);
    }
    char* const* variables() const { return mVariables.data(); }

private:
    std::string mPlainLocale = "LC_ALL=C.UTF-8";
    std::vector<char*> mVariables;
};

/// Everything that starting the shell needs. Prepared before the fork, because no memory may be allocated after it.
class SpawnPlan {
public:
    SpawnPlan(const std::string& command, int output, int errors)
        : mCommand(const_cast<char*>(command.c_str())), mOutput(output), mErrors(errors) {}

    /// Starts the shell; called in the guard, which has one thread. When the guard dies, the kernel kills the shell. Returns 0 on failure,
    /// with the reason in `error`.
    [[gnu::noinline]] pid_t start(int& error) const {
        volatile int failure = 0; // written by the child, which shares our memory until it has become the shell
        const pid_t guard = ::getpid();
        const pid_t shell = ::vfork();
        if (shell == 0) {
            failure = become(guard);
            ::_exit(127);
        }
        error = shell < 0 ? errno : failure;
        if (shell > 0 && error != 0)
            ::waitpid(shell, nullptr, 0);
        return error == 0 ? shell : 0;
    }

private:
    /// Removes all signal handlers before signals are unblocked, because a handler would run in memory that the child shares with the
    /// guard.
    static void forgetHandlers() {
        for (int number = 1; number < NSIG; ++number) {
            struct sigaction action {};
            if (::sigaction(number, nullptr, &action) == 0 && (action.sa_handler != SIG_IGN || number == SIGPIPE))
                ::signal(number, SIG_DFL);
        }
    }

    /// Turns the child into the shell; returns only on failure, with an errno value.
    int become(pid_t guard) const {
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != guard)
            return ESRCH;
        const int nothing = ::open("/dev/null", O_RDONLY);
        if (nothing < 0 || ::dup2(nothing, STDIN_FILENO) < 0 || ::dup2(mOutput, STDOUT_FILENO) < 0 || ::dup2(mErrors, STDERR_FILENO) < 0)
            return errno;
        if (nothing != STDIN_FILENO)
            ::close(nothing);
        forgetHandlers();
        sigset_t none;
        ::sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
        ::execve("/bin/bash", mBashArguments, mEnvironment.variables());
        ::execve("/bin/sh", mShellArguments, mEnvironment.variables()); // a system without bash
        return errno;
    }

    const ShellEnvironment mEnvironment;
    char* const mCommand;
    // On Macs sh is a bash whose echo knows the escapes and no options: scripts use arrays, [[ ]] and <<<.
    char* const mBashArguments[6] = {
        const_cast<char*>("sh"), const_cast<char*>("-O"), const_cast<char*>("xpg_echo"), const_cast<char*>("-c"), mCommand, nullptr};
    char* const mShellArguments[4] = {const_cast<char*>("sh"), const_cast<char*>("-c"), mCommand, nullptr};
    const int mOutput, mErrors;
};

/// Closes all inherited descriptors but four. The guard may outlive this process, and a pipe that it kept open would never end for its
/// reader.
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

/// The shell's status in the format of waitpid(). The shell stays a zombie, so that the number of its process group is not reused.
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
    Report told;
    const pid_t shell = plan.start(told.error);
    ::close(output);
    ::close(errors);
    const int process = shell > 0 ? static_cast<int>(::syscall(SYS_pidfd_open, shell, 0)) : -1;
    pollfd waited[] = {{life, POLLIN, 0}, {process, POLLIN, 0}};
    bool isReported = false;
    while (true) {
        if ((waited[1].revents || process < 0) && !isReported) {
            told.status = shell > 0 ? statusOf(shell) : 0;
            [[maybe_unused]] const auto written = ::write(report, &told, sizeof told);
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
    Pipe output, errors, report;
    SocketPair life;
    if (!life.first.isOpen() || !report.reading.isOpen() || !errors.reading.isOpen() || !output.reading.isOpen())
        return;
    const SpawnPlan plan(command, output.writing.number(), errors.writing.number());
    mGuard = ::fork();
    if (mGuard == 0)
        guard(plan, life.second.number(), report.writing.number(), output.writing.number(), errors.writing.number());
    mOutput = std::move(output.reading);
    mErrors = std::move(errors.reading);
    mReport = std::move(report.reading);
    mLife = std::move(life.first);
}

ShellProcess::~ShellProcess() {
    mLife.reset();
    while (mGuard > 0 && ::waitpid(mGuard, nullptr, 0) < 0 && errno == EINTR) {
    }
}

ShellProcess::Ending ShellProcess::takeEnding() {
    Report report;
    const ssize_t count = ::read(mReport.number(), &report, sizeof report);
    if (count != sizeof report)
        return {.how = Ending::How::lostGuard};
    return report.error != 0 ? Ending{.how = Ending::How::notStarted, .number = report.error}
                             : Ending{.how = Ending::How::ended, .number = report.status};
}

void ShellProcess::release() {
    [[maybe_unused]] const auto sent = ::send(mLife.number(), &kReleased, 1, MSG_NOSIGNAL);
}

} // namespace quoddle::additions
