// SPDX-License-Identifier: MIT
// The command do shell script: runs a command line with sh. Cancelling the script ends all that the command has started.
#include "platform/additions/Commands.h"
#include "platform/additions/ShellProcess.h"
#include "platform/ae/AECoercion.h"
#include "platform/base/SourceEncoding.h"
#include "platform/base/Text.h"
#include "platform/base/Wait.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace quoddle::additions {

namespace {

constexpr std::size_t kMaximumOutput = std::size_t(128) << 20;
constexpr OSStatus kKilled = 128 + SIGKILL; // the status that shells give for this signal

/// Reads what is available. False at the end of the stream.
bool drain(int descriptor, std::string& into) {
    char bytes[65536];
    const ssize_t count = ::read(descriptor, bytes, sizeof bytes);
    if (count < 0)
        return errno == EINTR || errno == EAGAIN;
    into.append(bytes, static_cast<std::size_t>(count));
    return count > 0;
}

struct Outcome {
    std::string output, errors;
    ShellProcess::Ending ending;
    bool cancelled = false;
    bool isTooLong = false;
};

/// Runs the command until it has ended and its streams are closed everywhere, or until the script is cancelled. False when it cannot be
/// run.
bool run(const std::string& command, const AEHandlerContext& context, Outcome& outcome) {
    ShellProcess process(command);
    if (!process.isStarted())
        return false;
    pollfd streams[] = {{process.output(), POLLIN, 0}, {process.errors(), POLLIN, 0}, {process.ending(), POLLIN, 0}};
    std::string* const texts[] = {&outcome.output, &outcome.errors};
    for (Wait wait; std::any_of(std::begin(streams), std::end(streams), [](const pollfd& stream) { return stream.fd >= 0; });) {
        outcome.cancelled = context.isCancelled();
        outcome.isTooLong = outcome.output.size() > kMaximumOutput || outcome.errors.size() > kMaximumOutput;
        if (outcome.cancelled || outcome.isTooLong)
            return true;
        if (wait.pause(std::chrono::steady_clock::time_point::max(), streams) < 0)
            return false;
        for (std::size_t i = 0; i < 2; ++i)
            if (streams[i].fd >= 0 && streams[i].revents && !drain(streams[i].fd, *texts[i]))
                streams[i].fd = -1;
        if (streams[2].fd >= 0 && streams[2].revents) {
            outcome.ending = process.takeEnding();
            if (outcome.ending.how != ShellProcess::Ending::How::ended)
                return true;
            streams[2].fd = -1;
        }
    }
    process.release();
    return true;
}

/// Whether PATH leads to a program of this name.
bool isInstalled(const std::string& program) {
    const char* variable = std::getenv("PATH");
    std::istringstream folders(variable ? variable : "");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (folder.starts_with('/') && ::access((folder + "/" + program).c_str(), X_OK) == 0)
            return true;
    return false;
}

/// A word that the shell takes as it is.
std::string shellQuoted(const std::string& word) {
    std::string text = "'";
    for (char c : word)
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

constexpr int kDismissed = 126; // pkexec's own: the user has closed its dialog
constexpr int kRefused = 127;   // and: the user is not allowed to, or nothing can ask

/// Whether pkexec itself has ended with the status, without running the command.
bool isEndOfPkexec(int status, const Outcome& outcome) {
    return (status == kDismissed || status == kRefused) && outcome.errors.starts_with("Error ");
}

/// The output as text of the language, in which lines end with a return. One line end at the end is dropped.
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
    if (event.find("RAun"_4cc) || event.find("RApw"_4cc))
        return fail(reply, paramErr,
                    u"A command can’t be run with a user’s name and password from a script. Leave them out and say “with administrator "
                    u"privileges”: the system then asks for the password.");
    const bool asAdministrator = booleanParameter(event, "badm"_4cc).value_or(false) && ::geteuid() != 0;
    if (asAdministrator && !isInstalled("pkexec"))
        return fail(reply, -10004, u"Administrator privileges can’t be had: pkexec (package pkexec) was not found.");
    if (command->find(u'\0') != std::u16string::npos)
        return fail(reply, paramErr, u"A command for the shell can’t contain character id 0.");
    Outcome outcome;
    using How = ShellProcess::Ending::How;
    std::string line = utf8FromUTF16(*command);
    if (asAdministrator)
        line = (isInstalled("bash") ? "exec pkexec /bin/bash --posix -O xpg_echo -c " : "exec pkexec /bin/sh -c ") + shellQuoted(line);
    const bool isRun = run(line, context, outcome);
    if (isRun && outcome.ending.how == How::notStarted && outcome.ending.number == E2BIG)
        return fail(reply, memFullErr, u"The command is too long for the shell.");
    if (!isRun || outcome.ending.how == How::notStarted)
        return fail(reply, memFullErr, u"The command could not be started.");
    if (outcome.ending.how == How::lostGuard)
        return fail(reply, kKilled, u"The command was ended by somebody else.");
    if (outcome.cancelled)
        return userCanceledErr;
    if (outcome.isTooLong)
        return fail(reply, memFullErr, u"The command wrote more than can be taken at once.");
    const bool altering = booleanParameter(event, "alen"_4cc).value_or(true);
    const int ended = outcome.ending.number;
    const int status = WIFEXITED(ended) ? WEXITSTATUS(ended) : 128 + WTERMSIG(ended);
    if (status == 0) {
        const AEDesc output = AEDesc::ofText(adapted(outcome.output, altering));
        // the class in "as"; output that cannot be coerced stays text
        const auto wanted = AECoerced(output, codeParameter(event, "rtyp"_4cc));
        return answer(reply, wanted ? *wanted : output);
    }
    std::u16string message = adapted(outcome.errors, altering);
    if (asAdministrator && isEndOfPkexec(status, outcome))
        return status == kDismissed ? static_cast<OSErr>(userCanceledErr)
                                    : fail(reply, -10004, u"Administrator privileges were not given. " + message);
    if (message.empty())
        message = u"The command exited with a non-zero status.";
    (void)reply.put("----"_4cc, AEDesc::ofText(adapted(outcome.output, altering)));
    return fail(reply, status, message);
}

} // namespace quoddle::additions
