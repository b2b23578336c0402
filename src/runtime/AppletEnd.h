// SPDX-License-Identifier: MIT
// Decides when the applet ends: what asks for the end, what puts it off, and what refuses it.
// One decision: one table says what to do about everything that happens (AppletEnd.cpp). AppletEnd is told of each change as it comes and
// asks its host for the facts that the table needs, so nothing is asked again by the clock. The host carries out the acts.
// Main thread only.
#pragma once

#include <cstdint>
#include <span>

namespace quoddle {

class DelayedPerforms;

class AppletEnd {
public:
    /// Why the applet is about to end. A question to the script that is being decided is a fact and does not change the state.
    enum class State : std::uint8_t {
        going = 1,    ///< the applet is not about to end
        wanted = 2,   ///< the applet wants to end as soon as the dialog that is up has gone
        finished = 4, ///< the work is done, but other applications still wait for their answers
        pressed = 8,  ///< a signal has come, or the user has seen an error that ends the applet: dialogs are cancelled
        final = 16    ///< like `pressed`; the quit handler, which was deciding meanwhile, is not heard any more
    };

    enum class Happening : std::uint8_t {
        wish,               ///< the applet wants to end
        workDone,           ///< the applet wants to end once the other applications have their answers
        answersMayHaveCome, ///< other applications may have got their answers, or a handler has ended
        signal,
        stop,             ///< the user has pressed Stop, or closed the window
        question,         ///< the framework asks whether to terminate
        lastWindowClosed, ///< the framework asks whether the applet ends with its last window
        dialogShown,
        dialogGone,         ///< a dialog has gone, and a moment has passed in which the script could have asked again
        patienceOver,       ///< some seconds have passed since dialogs were first cancelled
        handlerEnded,       ///< a handler has ended by itself after a quit had come
        handlerStopped,     ///< a handler has ended with -128, because a quit had come
        quitHandlerStopped, ///< the quit handler has ended with -128, because a quit had come
        quitPassedOn,       ///< the quit handler has ended and passed the quit on to the application
        quitRefused
    };

    /// Facts that decide which row counts, each a bit. The host answers them.
    enum Fact : std::uint16_t {
        dialogIsUp = 1 << 0,
        isResponding = 1 << 1, ///< a handler runs or waits for its turn
        quitHandlerRuns = 1 << 2,
        hasStarted = 1 << 3, ///< the script's first activity has been started
        hasQuitHandler = 1 << 4,
        hasIdleHandler = 1 << 5,
        hasTriedToQuit = 1 << 6,
        othersWait = 1 << 7, ///< other applications wait for answers; costly, so it is asked at most once for a happening
        userClosedWindow = 1 << 8,
        staysWithoutWindow = 1 << 9,
        // AppletEnd knows the following facts itself.
        quitWaits = 1 << 10,   ///< the framework's question has been answered "later"
        endIsCertain = 1 << 11 ///< the user has been told of an error that ends the applet
    };

    enum class Act : std::uint8_t {
        nothing,
        askFramework, ///< the framework is told to terminate, and then asks the question
        endNow,       ///< ends without any question
        takeDialogsAway,
        stopHandler,
        askQuitHandler, ///< nothing happens when there is none
        tellRefusal,    ///< tells the framework and the window that the applet goes on
        // Answers to the question.
        allow,
        refuse,
        stopHandlerFirst, ///< the answer is "later"
        askQuitHandlerFirst,
        // Later answers to the framework, when the handler that the question waited for has ended.
        grant,
        goOn,
        goOnAndAskAgain, ///< the handler did not refuse, and the signal still counts
        goOnWithQuitHandler,
        // Not performed: the table is looked up again with this happening.
        wish,
        workDone
    };

    struct Row {
        Happening happening;
        std::uint8_t states;
        std::uint16_t with, without; ///< the facts that must hold and those that must not
        Act act;
        State then; ///< the next state; `kSame`: no change
    };
    static constexpr State kSame{0};
    static constexpr std::uint8_t kAnyState = 0xff;
    /// The rows in order. The first one that fits counts; when none fits, nothing happens.
    static std::span<const Row> table();

    class Host {
    public:
        virtual ~Host() = default;
        virtual bool holds(Fact fact) = 0;
        virtual void perform(Act act) = 0;
    };

    /// Both arguments must outlive the object.
    AppletEnd(Host& host, DelayedPerforms& performs) : mHost(host), mPerforms(performs) {}
    ~AppletEnd();
    AppletEnd(const AppletEnd&) = delete;
    AppletEnd& operator=(const AppletEnd&) = delete;

    State state() const { return mState; }
    /// Looks up and performs what follows from a happening. Answers the act that was performed in the end.
    Act happened(Happening happening);
    /// Tells that a dialog is about to be shown or has gone. Called instead of happened() with `dialogShown` and `dialogGone`, which follow
    /// later.
    void dialogsChanged(bool isUp);
    /// Makes the end certain, whatever dialog is up.
    void errorWasSeen() { mEndIsCertain = true; }
    bool isQuitWaiting() const { return mQuitWaits; }

private:
    const Row* rowFor(Happening happening);
    void note(Act act);
    void scheduleDialogGone(double afterSeconds);
    void startPatience();
    void endPatience();

    Host& mHost;
    DelayedPerforms& mPerforms;
    State mState = State::going;
    bool mQuitWaits = false;
    bool mEndIsCertain = false;
    bool mIsPatienceRunning = false;
};

} // namespace quoddle
