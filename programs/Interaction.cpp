// SPDX-License-Identifier: MIT
#include "Interaction.h"

#include "LineEditor.h"
#include "platform/applescript/component/Descriptors.h"
#include "platform/applescript/syntax/SourceText.h"
#include "platform/base/Text.h"
#include "platform/base/Wait.h"
#include "StatementLines.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <thread>
#include <unistd.h>

namespace quoddle::tool {

namespace {

constexpr std::size_t kLongestLine = std::size_t(16) << 20; // bytes of a line that is typed or pasted
constexpr std::size_t kLongestStatement = std::size_t(64) << 20;
constexpr const char* kPrompt = ">> ";
constexpr const char* kPromptWithin = ".. ";

/// Set while somebody wants the running statement to end.
std::atomic<bool> sIsInterrupted = false;

OSErr endWhenInterrupted(void*) {
    return sIsInterrupted ? static_cast<OSErr>(userCanceledErr) : static_cast<OSErr>(noErr);
}

OSErr sendUntilInterrupted(const AEDesc& event, AEDesc* reply, AESendMode mode, AESendPriority, std::int32_t ticks, AEIdleProc,
                           AEFilterProc, void*) {
    return static_cast<OSErr>(AESendMessage(event, reply, mode, ticks, {.cancelled = [] { return sIsInterrupted.load(); }}));
}

/// Takes Control-C on a thread of its own, because a signal handler may not wake waits. To be called before there are other threads.
void takeInterrupts(ComponentInstance instance) {
    sigset_t interrupts;
    ::sigemptyset(&interrupts);
    ::sigaddset(&interrupts, SIGINT);
    ::pthread_sigmask(SIG_BLOCK, &interrupts, nullptr);
    std::thread([interrupts] {
        for (int number = 0; ::sigwait(&interrupts, &number) == 0;) {
            sIsInterrupted = true;
            wakeWaits();
        }
    }).detach();
    OSASetActiveProc(instance, endWhenInterrupted, nullptr);
    OSASetSendProc(instance, sendUntilInterrupted, nullptr);
}

/// Reads a line; false at the end of the input. Throws an error when the input cannot be read or a line is too long.
bool readLine(std::string& line) {
    line.clear();
    int byte = 0;
    while ((byte = std::getc(stdin)) != EOF && byte != '\n') {
        if (line.size() == kLongestLine)
            throw std::length_error("a line of the input is too long");
        line += static_cast<char>(byte);
    }
    if (std::ferror(stdin))
        throw std::runtime_error("the input could not be read");
    std::clearerr(stdin); // a terminal goes on behind its end
    return byte != EOF || !line.empty();
}

/// Waits until something is typed. False when Control-C comes first.
bool waitForLine() {
    Wait wait;
    pollfd input = {.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
    int count = 0;
    while (!sIsInterrupted && count == 0)
        count = wait.pause(std::chrono::steady_clock::now() + std::chrono::hours(1), {&input, 1});
    return !sIsInterrupted;
}

/// The names that the typed statements have defined, as they are typed.
void appendNames(ComponentInstance instance, OSAID context, std::vector<std::string>& phrases) {
    std::vector<std::string> own;
    for (const auto names : {OSAGetPropertyNames, OSAGetHandlerNames}) {
        AEDesc list;
        if (context == kOSANullScript || names(instance, kOSAModeNull, context, list) != noErr || !list.isList())
            continue;
        for (const AEDesc& name : list.items())
            if (const auto text = name.asUTF8(); text && !text->empty())
                own.push_back(utf8FromUTF16(syntax::sourcetext::identifier("", *text, std::ranges::find(phrases, *text) != phrases.end())));
    }
    phrases.insert(phrases.end(), own.begin(), own.end());
}

AEDesc runHandlerName() {
    return component::descriptorOfEventName("aevtoapp");
}

class Conversation {
public:
    Conversation(ComponentInstance instance, bool showsSource)
        : mInstance(instance), mShowsSource(showsSource), mIsOnTerminal(::isatty(STDIN_FILENO)) {
        if (!mIsOnTerminal)
            return;
        takeInterrupts(instance);
        if (::isatty(STDOUT_FILENO))
            mEditor.emplace([this] { return phrases(); }, stateFile("osascript_history"));
    }

    /// Answers whether all statements of a pipe could be run; on a terminal the user has seen it.
    bool run() {
        begin();
        StatementLines statement;
        std::string line;
        for (;;) {
            const auto ending = read(statement.text().empty() ? kPrompt : kPromptWithin, line);
            if (ending == LineEditor::Ending::Abandoned) {
                statement = {};
                continue;
            }
            const bool isLast = ending == LineEditor::Ending::EndOfInput;
            if (isLast && mIsOnTerminal)
                std::cout << std::endl; // behind the prompt
            if (isLast && statement.text().empty())
                return mIsOnTerminal || !mHasFailed;
            if (!isLast && line.empty() && statement.text().empty())
                continue;
            if (statement.text().size() + line.size() > kLongestStatement)
                throw std::length_error("a statement is too long");
            if (isLast || statement.add(line)) {
                perform(statement.text());
                statement = {};
            }
        }
    }

private:
    LineEditor::Ending read(const char* prompt, std::string& line) {
        if (mEditor && mEditor->isUsable())
            return mEditor->read(prompt, line);
        if (mIsOnTerminal) {
            sIsInterrupted = false; // before the prompt: who sees that may press Control-C at once
            std::cout << prompt << std::flush;
            if (!waitForLine()) {
                std::cout << std::endl; // behind the ^C that the terminal shows
                return LineEditor::Ending::Abandoned;
            }
        }
        return readLine(line) ? LineEditor::Ending::Entered : LineEditor::Ending::EndOfInput;
    }

    /// Makes the script that the statements are added to, with a run handler that does nothing.
    void begin() {
        OSACompile(mInstance, AEDesc::ofUTF8("return"), kOSAModeCompileIntoContext, mContext);
        OSAGetHandler(mInstance, kOSAModeNull, mContext, runHandlerName(), mNothing);
    }

    void perform(const std::string& statement) {
        if (!isValidUTF8(statement)) {
            std::cerr << "osascript: a statement has bytes that are no UTF-8; it was not run\n";
            mHasFailed = true;
            return;
        }
        sIsInterrupted = false;
        // A definition brings no run handler, and the one of the statement before is not to run again.
        OSASetHandler(mInstance, kOSAModeNull, mContext, runHandlerName(), mNothing);
        OSAID result = kOSANullScript;
        OSStatus status =
            OSACompile(mInstance, AEDesc::ofUTF8(statement + "\n"), kOSAModeCompileIntoContext | kOSAModeAugmentContext, mContext);
        if (status != noErr)
            return printFailure(failureOf(mInstance, status), "syntax", statement);
        status = OSAExecute(mInstance, mContext, kOSANullScript, kOSAModeNull, result);
        if (sIsInterrupted)
            std::cout << std::endl; // behind the ^C that the terminal shows
        if (status != noErr) {
            printFailure(failureOf(mInstance, status), "execution", statement);
        } else if (result != kOSANullScript) {
            if (mIsOnTerminal)
                std::cout << "=> ";
            printResult(mInstance, result, mShowsSource);
            OSADispose(mInstance, result);
        }
    }

    void printFailure(const ScriptFailure& failure, const char* kind, const std::string& statement) {
        mHasFailed = true;
        printError(failure, "", kind);
        printPlaceOnTerminal(failure, statement);
    }

    std::vector<std::string> phrases() const {
        std::vector<std::string> phrases = phrasesOfLanguage();
        appendNames(mInstance, mContext, phrases);
        return phrases;
    }

    const ComponentInstance mInstance;
    const bool mShowsSource;
    const bool mIsOnTerminal;
    bool mHasFailed = false;
    OSAID mContext = kOSANullScript, mNothing = kOSANullScript;
    std::optional<LineEditor> mEditor; // only on a terminal
};

} // namespace

int interact(ComponentInstance instance, bool showsSource) {
    return Conversation(instance, showsSource).run() ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace quoddle::tool
