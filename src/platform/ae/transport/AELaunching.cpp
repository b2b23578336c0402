// SPDX-License-Identifier: MIT
#include "platform/ae/transport/AELaunching.h"

#include "platform/ae/AEMainThread.h"
#include "platform/ae/transport/AEApplicationLookup.h"
#include "platform/ae/transport/AERuntimeDirectory.h"
#include "platform/base/File.h"
#include "platform/base/FileDescriptor.h"
#include "platform/base/strings/StringsFile.h"
#include "platform/base/Text.h"
#include "platform/base/Wait.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/inotify.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quoddle {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kSlice{5}; // for the main thread's events, and between looks where nothing tells of changes
constexpr const char* kShell = "quoddle-shell";
constexpr std::size_t kLargestInfo = std::size_t{4} << 20;

// The reason is passed in the environment, because programs in between pass that on, and an older or newer shell ignores it.
constexpr const char* kReasonVariable = "QUODDLE_LAUNCHED_FOR";
constexpr struct {
    AELaunchReason reason;
    std::string_view assignment;
} kReasons[] = {{AELaunchReason::event, "QUODDLE_LAUNCHED_FOR=event"},
                {AELaunchReason::eventInsteadOfRun, "QUODDLE_LAUNCHED_FOR=event-instead-of-run"}};

bool isReason(std::string_view assignment) {
    return assignment.starts_with(kReasonVariable) && assignment.substr(std::strlen(kReasonVariable)).starts_with('=');
}

/// The environment of this process with the reason added.
std::vector<std::string> environmentFor(AELaunchReason reason) {
    std::vector<std::string> variables;
    for (char** variable = environ; *variable; ++variable)
        if (!isReason(*variable))
            variables.emplace_back(*variable);
    for (const auto& row : kReasons)
        if (row.reason == reason)
            variables.emplace_back(row.assignment);
    return variables;
}

std::vector<char*> pointersTo(const std::vector<std::string>& words) {
    std::vector<char*> pointers;
    for (const std::string& word : words)
        pointers.push_back(const_cast<char*>(word.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

bool isProgram(const fs::path& path) {
    return ::access(path.c_str(), X_OK) == 0 && !fs::is_directory(path);
}

/// The program in Contents/Linux that the bundle names as its executable; empty when there is none.
fs::path executableOf(const fs::path& bundle) {
    const auto info = readFile(bundle / "Contents/Info.plist", kLargestInfo);
    const auto texts = info ? readStrings(*info).texts : decltype(StringsTable::texts)();
    const auto named = texts.find(u"CFBundleExecutable");
    const std::string name = named == texts.end() ? bundle.stem().string() : utf8FromUTF16(named->second);
    const fs::path program = bundle / "Contents/Linux" / name;
    return !name.empty() && name.find('/') == std::string::npos && isProgram(program) ? program : fs::path();
}

/// The program and its arguments: the shell beside this program, else the bundle's own executable, else the shell on the search path.
std::vector<std::string> commandFor(const std::string& bundlePath) {
    std::error_code error;
    const fs::path beside = fs::read_symlink("/proc/self/exe", error).parent_path() / kShell;
    if (isProgram(beside))
        return {beside.string(), bundlePath};
    if (const fs::path own = executableOf(bundlePath); !own.empty())
        return {own.string()};
    return {kShell, bundlePath};
}

/// Turns the child of a child into the applet's process: with a session of its own, without our open files and without blocked signals.
/// Reports a failure with one byte.
[[noreturn]] void become(char* const* arguments, char* const* environment, int report) {
    ::setsid();
    const int nothing = ::open("/dev/null", O_RDWR);
    ::dup2(nothing, STDIN_FILENO);
    ::dup2(nothing, STDOUT_FILENO);
    ::dup2(nothing, STDERR_FILENO);
    ::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC); // files, pipes and locks of this process
    sigset_t none;
    sigemptyset(&none);
    ::pthread_sigmask(SIG_SETMASK, &none, nullptr);
    ::execvpe(arguments[0], arguments, environment);
    const char failed = 1;
    [[maybe_unused]] const auto written = ::write(report, &failed, 1);
    ::_exit(127);
}

/// The number of the new process, or 0. The process in between ends at once, so that the applet is nobody's child to wait for.
pid_t spawn(const std::vector<std::string>& command, const std::vector<std::string>& variables) {
    const std::vector<char*> arguments = pointersTo(command), environment = pointersTo(variables);
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return 0;
    const FileDescriptor readEnd(ends[0]);
    FileDescriptor writeEnd(ends[1]);
    const pid_t between = ::fork();
    if (between == 0) {
        const pid_t child = ::fork();
        if (child == 0)
            become(arguments.data(), environment.data(), writeEnd.number());
        [[maybe_unused]] const auto written = ::write(writeEnd.number(), &child, sizeof child);
        ::_exit(0);
    }
    writeEnd.reset();
    if (between < 0)
        return 0;
    while (::waitpid(between, nullptr, 0) < 0 && errno == EINTR) {
    }
    // The report is the process number, and one byte more when the program could not be started.
    char report[sizeof(pid_t) + 1];
    std::size_t got = 0;
    for (ssize_t count; got < sizeof report && (count = ::read(readEnd.number(), report + got, sizeof report - got)) != 0;)
        if (count > 0)
            got += static_cast<std::size_t>(count);
    pid_t child = 0;
    if (got == sizeof child)
        std::copy_n(report, sizeof child, reinterpret_cast<char*>(&child));
    return child;
}

/// A descriptor that is readable after something has changed in the folder in which applets register. Not open when the user watches too
/// much already.
FileDescriptor watchRegistrations() {
    FileDescriptor watch(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    const auto directory = AERuntimeDirectory();
    if (watch.isOpen() && (!directory || ::inotify_add_watch(watch.number(), directory->c_str(), IN_CREATE | IN_MOVED_TO) < 0))
        watch.reset();
    return watch;
}

void forgetRegistrations(const FileDescriptor& watch) {
    char events[4096];
    while (watch.isOpen() && ::read(watch.number(), events, sizeof events) > 0) {
    }
}

} // namespace

AELaunchReason AETakeLaunchReason() {
    const char* value = std::getenv(kReasonVariable);
    const std::string assignment = std::string(kReasonVariable) + '=' + (value ? value : "");
    ::unsetenv(kReasonVariable);
    for (const auto& row : kReasons)
        if (row.assignment == assignment)
            return row.reason;
    return AELaunchReason::none;
}

Result<std::int32_t, OSStatus> AELaunchApplication(const std::string& bundlePath, AELaunchReason reason, Clock::time_point deadline,
                                                   const AESendOptions& options) {
    const pid_t process = spawn(commandFor(bundlePath), environmentFor(reason));
    if (process <= 0)
        return Failure{procNotFound};
    const FileDescriptor launched(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
    const FileDescriptor registrations = watchRegistrations();
    for (Wait wait;;) {
        forgetRegistrations(registrations);
        // asked before the look-up, because an ended process may have handed over to another one
        const bool ended = !AEIsProcessAlive(process);
        if (const auto running = AEFindRunningApplicationAtPath(bundlePath))
            return running->processID;
        if (ended)
            return Failure{procNotFound};
        if (Clock::now() >= deadline)
            return Failure{errAETimeout};
        if (options.cancelled && options.cancelled())
            return Failure{userCanceledErr};
        if (AEProcessMainThreadEvents(kSlice))
            continue;
        pollfd news[] = {{launched.number(), POLLIN, 0}, {registrations.number(), POLLIN, 0}};
        wait.pause(registrations.isOpen() ? deadline : std::min(deadline, Clock::now() + kSlice), news);
    }
}

} // namespace quoddle
