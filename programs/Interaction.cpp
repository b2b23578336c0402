// SPDX-License-Identifier: MIT
#include "Interaction.h"

#include "LineEditor.h"
#include "platform/base/Wait.h"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <optional>
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
    return byte != EOF || !line.empty();
}

/// The names that the typed statements have defined.
void appendNames(ComponentInstance instance, OSAID context, std::vector<std::string>& phrases) {
    for (const auto names : {OSAGetPropertyNames, OSAGetHandlerNames}) {
        AEDesc list;
        if (context == kOSANullScript || names(instance, kOSAModeNull, context, list) != noErr || !list.isList())
            continue;
        for (const AEDesc& name : list.items())
            if (auto text = name.asUTF8(); text && !text->empty())
                phrases.push_back(std::move(*text));
    }
}

/// Whether more lines may make a statement of what failed to compile: something in it is still open.
bool isOpen(const ScriptFailure& failure) {
    return failure.message.ends_with("but found end of script.");
}

bool endsWithContinuation(const std::string& line) {
    constexpr std::string_view kMark = "¬";
    const std::size_t last = line.find_last_not_of(" \t\r");
    return last != std::string::npos && std::string_view(line).substr(0, last + 1).ends_with(kMark);
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

    void run() {
        std::string statement, line;
        for (;;) {
            const auto ending = read(statement.empty() ? kPrompt : kPromptWithin, line);
            if (ending == LineEditor::Ending::Abandoned) {
                statement.clear();
                continue;
            }
            const bool isLast = ending == LineEditor::Ending::EndOfInput;
            if (!isLast)
                statement += (statement.empty() ? "" : "\n") + line;
            if (statement.size() > kLongestStatement)
                throw std::length_error("a statement is too long");
            if (!statement.empty() && perform(statement, isLast))
                statement.clear();
            if (isLast)
                break;
        }
        if (mIsOnTerminal)
            std::cout << std::endl;
    }

private:
    LineEditor::Ending read(const char* prompt, std::string& line) {
        if (mEditor && mEditor->isUsable())
            return mEditor->read(prompt, line);
        if (mIsOnTerminal)
            std::cout << prompt << std::flush;
        return readLine(line) ? LineEditor::Ending::Entered : LineEditor::Ending::EndOfInput;
    }

    /// Runs a statement. False when it needs more lines, which `isLast` rules out.
    bool perform(const std::string& statement, bool isLast) {
        if (!isLast && endsWithContinuation(statement))
            return false;
        sIsInterrupted = false;
        OSAID result = kOSANullScript;
        OSStatus status =
            OSACompile(mInstance, AEDesc::ofUTF8(statement + "\n"), kOSAModeCompileIntoContext | kOSAModeAugmentContext, mContext);
        if (status != noErr) {
            const ScriptFailure failure = failureOf(mInstance, status);
            if (!isLast && isOpen(failure))
                return false;
            printFailure(failure, "syntax", statement);
            return true;
        }
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
        return true;
    }

    void printFailure(const ScriptFailure& failure, const char* kind, const std::string& statement) const {
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
    OSAID mContext = kOSANullScript;
    std::optional<LineEditor> mEditor; // only on a terminal
};

} // namespace

int interact(ComponentInstance instance, bool showsSource) {
    Conversation(instance, showsSource).run();
    return 0;
}

} // namespace quoddle::tool
