// SPDX-License-Identifier: MIT
// do shell script: runs a command line with sh in a process group of its own, so that a cancel ends whatever it started.
#include "platform/additions/Commands.h"
#include "platform/base/Text.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quoddle::additions {

namespace {

constexpr std::size_t kMaximumOutput = std::size_t(128) << 20;
constexpr int kPollMilliseconds = 20; // how soon a cancel is noticed

class Pipe {
public:
    Pipe() { mOpen = ::pipe2(mEnds, O_CLOEXEC) == 0; }
    ~Pipe() {
        closeReading();
        closeWriting();
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    bool isOpen() const { return mOpen; }
    int reading() const { return mEnds[0]; }
    int writing() const { return mEnds[1]; }
    void closeReading() { close(mEnds[0]); }
    void closeWriting() { close(mEnds[1]); }

private:
    static void close(int& end) {
        if (end >= 0)
            ::close(end);
        end = -1;
    }
    int mEnds[2] = {-1, -1};
    bool mOpen = false;
};

/// Reads what is there. False at the end of the stream.
bool drain(int descriptor, std::string& into) {
    char bytes[65536];
    const ssize_t count = ::read(descriptor, bytes, sizeof bytes);
    if (count < 0)
        return errno == EINTR || errno == EAGAIN;
    if (into.size() < kMaximumOutput)
        into.append(bytes, static_cast<std::size_t>(count));
    return count > 0;
}

struct Outcome {
    std::string output, errors;
    int status = 0;
    bool cancelled = false;
};

void endGroup(pid_t group) {
    ::kill(-group, SIGTERM);
    ::usleep(30000);
    ::kill(-group, SIGKILL);
}

void collect(pid_t child, Pipe& output, Pipe& errors, const AEHandlerContext& context, Outcome& outcome) {
    pollfd streams[] = {{output.reading(), POLLIN, 0}, {errors.reading(), POLLIN, 0}};
    std::string* const texts[] = {&outcome.output, &outcome.errors};
    while (streams[0].fd >= 0 || streams[1].fd >= 0) {
        if (context.isCancelled()) {
            outcome.cancelled = true;
            endGroup(child);
            break;
        }
        if (::poll(streams, 2, kPollMilliseconds) < 0 && errno != EINTR)
            break;
        for (std::size_t i = 0; i < 2; ++i)
            if (streams[i].fd >= 0 && streams[i].revents && !drain(streams[i].fd, *texts[i]))
                streams[i].fd = -1;
    }
    while (::waitpid(child, &outcome.status, 0) < 0 && errno == EINTR) {
    }
}

bool runShell(const std::string& command, const AEHandlerContext& context, Outcome& outcome) {
    Pipe output, errors;
    if (!output.isOpen() || !errors.isOpen())
        return false;
    const pid_t child = ::fork();
    if (child < 0)
        return false;
    if (child == 0) {
        ::setpgid(0, 0);
        const int nothing = ::open("/dev/null", O_RDONLY);
        ::dup2(nothing, STDIN_FILENO);
        ::dup2(output.writing(), STDOUT_FILENO);
        ::dup2(errors.writing(), STDERR_FILENO);
        ::signal(SIGPIPE, SIG_DFL);
        ::execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    ::setpgid(child, child);
    output.closeWriting();
    errors.closeWriting();
    collect(child, output, errors, context, outcome);
    return true;
}

/// Lines end with a return in the language; one line end at the end is not part of the answer.
std::u16string adapted(const std::string& bytes, bool alteringLineEndings) {
    std::u16string text = utf16FromSourceBytes(bytes);
    if (!alteringLineEndings)
        return text;
    std::u16string lines;
    lines.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            continue;
        lines += text[i] == u'\n' ? u'\r' : text[i];
    }
    if (lines.ends_with(u'\r'))
        lines.pop_back();
    return lines;
}

} // namespace

OSErr doShellScript(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    auto command = textParameter(event, "----"_4cc);
    if (!command)
        return errAEParamMissed;
    if (booleanParameter(event, "badm"_4cc).value_or(false))
        return fail(reply, -10004, u"Administrator privileges are not available here. Use sudo or pkexec in the command.");
    Outcome outcome;
    if (!runShell(utf8FromUTF16(*command), context, outcome))
        return fail(reply, memFullErr, u"The command could not be started.");
    if (outcome.cancelled)
        return userCanceledErr;
    const bool altering = booleanParameter(event, "alen"_4cc).value_or(true);
    const int status = WIFEXITED(outcome.status) ? WEXITSTATUS(outcome.status) : 128 + WTERMSIG(outcome.status);
    if (status == 0)
        return answer(reply, AEDesc::ofText(adapted(outcome.output, altering)));
    std::u16string message = adapted(outcome.errors, altering);
    if (message.empty())
        message = u"The command exited with a non-zero status.";
    (void)reply.put("----"_4cc, AEDesc::ofText(adapted(outcome.output, altering)));
    return fail(reply, status, message);
}

} // namespace quoddle::additions
