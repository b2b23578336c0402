// SPDX-License-Identifier: MIT
// When the applet ends: what asks for the end, what puts it off, and what refuses it.
// One decision: one table says what to do about everything that happens (AppletEnd.cpp). It is told of each change as it comes and looks
// at the rest through facts that its host answers, so that nothing is asked again by the clock. What the acts mean in detail is the host's.
// Main thread only.
#pragma once

#include <cstdint>
#include <span>

namespace quoddle {

class DelayedPerforms;

class AppletEnd {
public:
    /// Why the applet is about to end. A question that is being decided is no state but a fact: it leaves this as it was.
    enum class State : std::uint8_t {
        going = 1,    ///< it is not
        wanted = 2,   ///< it wants to itself, as soon as the dialog that is up has gone
        finished = 4, ///< its work is done, but other applications still wait for their answers
        pressed = 8,  ///< a signal has come, or the user has seen an error that ends it: dialogs are taken away
        final = 16    ///< the same while the quit handler was deciding, which is not heard any more
    };

    enum class Happening : std::uint8_t {
        wish,               ///< the applet wants to end
        workDone,           ///< the applet wants to end once the other applications have their answers
        answersMayHaveCome, ///< to other applications, or a handler has ended
        signal,
        stop,             ///< the user has pressed Stop, or closed the window
        question,         ///< the framework asks whether to terminate
        lastWindowClosed, ///< it asks whether that is the end
        dialogShown,
        dialogGone,         ///< and a moment has passed in which the script could have asked again
        patienceOver,       ///< since dialogs were first taken away
        handlerEnded,       ///< by itself, though a quit has come
        handlerStopped,     ///< with -128, because a quit has come
        quitHandlerStopped, ///< likewise, and it was the quit handler
        quitPassedOn,       ///< by the quit handler, which has ended
        quitRefused
    };

    /// Facts that decide which row counts; the host answers them, each a bit.
    enum Fact : std::uint16_t {
        dialogIsUp = 1 << 0,
        isResponding = 1 << 1, ///< a handler runs or waits to
        quitHandlerRuns = 1 << 2,
        hasStarted = 1 << 3, ///< the script
        hasQuitHandler = 1 << 4,
        hasIdleHandler = 1 << 5,
        hasTriedToQuit = 1 << 6,
        othersWait = 1 << 7, ///< for answers. Asked once for a happening at most, and only where it matters
        userClosedWindow = 1 << 8,
        staysWithoutWindow = 1 << 9,
        // Facts that this class knows itself:
        quitWaits = 1 << 10,   ///< the framework has been answered "later"
        endIsCertain = 1 << 11 ///< the user has been told of an error that ends the applet
    };

    enum class Act : std::uint8_t {
        nothing,
        askFramework, ///< to terminate, which leads to the question
        endNow,       ///< without any question
        takeDialogsAway,
        stopHandler,
        askQuitHandler, ///< nothing when there is none
        tellRefusal,    ///< the framework and the window, that the applet goes on
        // Answers to the question:
        allow,
        refuse,
        stopHandlerFirst, ///< "later"
        askQuitHandlerFirst,
        // Later answers to the framework, when the handler has ended for which the question had to wait:
        grant,
        goOn,
        goOnAndAskAgain, ///< the handler did not refuse, and the signal still counts
        goOnWithQuitHandler,
        // To be looked up anew:
        wish,
        workDone
    };

    struct Row {
        Happening happening;
        std::uint8_t states;
        std::uint16_t with, without; ///< facts
        Act act;
        State then; ///< `kSame`: no other
    };
    static constexpr State kSame{0};
    static constexpr std::uint8_t kAnyState = 0xff;
    /// The first row that fits counts; without one, nothing happens.
    static std::span<const Row> table();

    class Host {
    public:
        virtual ~Host() = default;
        virtual bool holds(Fact fact) = 0;
        virtual void perform(Act act) = 0;
    };

    /// Both outlive it.
    AppletEnd(Host& host, DelayedPerforms& performs) : mHost(host), mPerforms(performs) {}
    ~AppletEnd();
    AppletEnd(const AppletEnd&) = delete;
    AppletEnd& operator=(const AppletEnd&) = delete;

    State state() const { return mState; }
    /// Answers the act that was performed in the end.
    Act happened(Happening happening);
    /// To be called in place of `dialogShown` and `dialogGone`, which follow from it, when a dialog is about to be shown or has gone.
    void dialogsChanged(bool isUp);
    /// From now on the end is certain, whatever dialog is up.
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
    bool mHasPatience = false; ///< and it is running out
};

} // namespace quoddle
