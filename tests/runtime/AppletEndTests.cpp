// SPDX-License-Identifier: MIT
// Stories of how an applet ends or goes on: what happens one after the other, and the acts that each happening leads to.
#include "Applet.h"
#include "runtime/AppletEnd.h"

#include <gtest/gtest.h>

namespace quoddle {

using namespace Qt::StringLiterals;
using test::ManualClock;
using enum AppletEnd::Happening;
using enum AppletEnd::Fact;
using enum AppletEnd::State;

namespace {

const char* const kActs[] = {"nothing",
                             "askFramework",
                             "endNow",
                             "takeDialogsAway",
                             "stopHandler",
                             "askQuitHandler",
                             "tellRefusal",
                             "allow",
                             "refuse",
                             "stopHandlerFirst",
                             "askQuitHandlerFirst",
                             "grant",
                             "goOn",
                             "goOnAndAskAgain",
                             "goOnWithQuitHandler"};

class World final : public AppletEnd::Host {
public:
    bool holds(AppletEnd::Fact fact) override {
        mOthersAsked += fact == othersWait;
        return (mFacts & fact) != 0;
    }
    void perform(AppletEnd::Act act) override {
        if (act != AppletEnd::Act::nothing)
            mLog << QLatin1StringView(kActs[static_cast<int>(act)]);
    }

    /// Sets the facts and tells AppletEnd when a dialog comes or goes with them.
    void setFacts(unsigned facts) {
        const bool wasUp = mFacts & dialogIsUp, isUp = facts & dialogIsUp;
        mFacts = facts;
        if (wasUp != isUp)
            end.dialogsChanged(isUp);
    }
    void pass(double seconds) { mClock->advance(seconds); }
    QString takeLog() { return std::exchange(mLog, {}).join(u' '); }
    int timesOthersWereAsked() const { return mOthersAsked; }

private:
    unsigned mFacts = 0;
    int mOthersAsked = 0;
    QStringList mLog;
    ManualClock* mClock = new ManualClock;
    DelayedPerforms mPerforms{std::unique_ptr<Clock>(mClock)};

public:
    AppletEnd end{*this, mPerforms};
};

struct Seconds {
    double count;
};
struct ErrorSeen {};

struct Step {
    unsigned facts; ///< these hold from now on
    std::variant<AppletEnd::Happening, Seconds, ErrorSeen> event;
    const char* acts;
};

struct Story {
    const char* name;
    std::vector<Step> steps;
    AppletEnd::State state; ///< the state in the end
};

constexpr unsigned kDialog = dialogIsUp, kBusy = isResponding, kAsking = quitHandlerRuns | isResponding,
                   kQuit = hasStarted | hasQuitHandler;
constexpr Seconds kSoon{0}, kMoment{0.06}, kLong{3};

} // namespace

TEST(AppletEnd, Stories) {
    const Story stories[] = {
        {"asked before anything has started", {{hasQuitHandler, question, "allow"}}, going},
        {"asked with nothing to ask", {{hasStarted, question, "allow"}}, going},
        {"asked while a dialog is up, even while the quit handler runs", {{kDialog | kAsking, question, "refuse"}}, going},
        {"asked again while the quit handler runs",
         {{kQuit, question, "askQuitHandlerFirst"}, {kQuit | kAsking, question, "allow"}},
         going},
        {"a handler is stopped first", {{kQuit | kBusy, question, "stopHandlerFirst"}}, going},
        {"... and goes with the applet", {{kBusy, question, "stopHandlerFirst"}, {0, handlerStopped, "grant"}}, going},
        {"... and the quit handler is next",
         {{kQuit | kBusy, question, "stopHandlerFirst"}, {kQuit, handlerStopped, "goOnWithQuitHandler"}},
         going},
        {"... and ends by itself",
         {{kQuit | kBusy, question, "stopHandlerFirst"}, {kQuit, handlerEnded, "goOn"}, {kQuit, kMoment, ""}},
         going},
        {"a quit handler that is stopped has refused", {{kQuit, quitHandlerStopped, "goOn"}}, going},
        {"... unless it had passed the quit on", {{0, quitHandlerStopped, "grant"}}, going},
        {"a quit that is passed on", {{kQuit, quitPassedOn, "askFramework"}}, going},
        {"a quit that is refused", {{kQuit, quitRefused, "tellRefusal"}}, going},

        {"a wish", {{0, wish, "askFramework"}}, going},
        {"a wish waits for the dialog", {{kDialog, wish, ""}, {0, kSoon, ""}, {0, kMoment, "askFramework"}}, going},
        {"... and for the next one", {{kDialog, wish, ""}, {0, kSoon, ""}, {kDialog, kMoment, ""}, {0, kMoment, "askFramework"}}, going},
        {"... and for no third reason", {{kDialog, wish, ""}, {kDialog, Seconds{100}, ""}}, wanted},
        {"... and is left to a handler that has begun", {{kDialog, wish, ""}, {kBusy, kMoment, ""}, {0, kMoment, ""}}, going},
        {"... and is fulfilled by itself", {{kDialog, wish, ""}, {0, wish, "askFramework"}, {0, kMoment, ""}}, going},
        {"an error that was seen waits for no dialog",
         {{kDialog, ErrorSeen{}, ""}, {kDialog, wish, "takeDialogsAway"}, {0, kMoment, "askFramework"}},
         pressed},
        {"a quit that is passed on while a dialog is up", {{kDialog, quitPassedOn, ""}, {0, kMoment, "askFramework"}}, going},

        {"work that is done", {{0, workDone, "askFramework"}}, going},
        {"others wait", {{othersWait, workDone, ""}, {othersWait, answersMayHaveCome, ""}, {0, answersMayHaveCome, "askFramework"}}, going},
        {"a handler still runs", {{kBusy, workDone, ""}, {kBusy, answersMayHaveCome, ""}, {0, answersMayHaveCome, "askFramework"}}, going},
        {"... and is none of the work with a quit handler", {{kQuit | kBusy, workDone, "askFramework"}}, going},
        {"others wait and a quit has come", {{othersWait | hasTriedToQuit, workDone, "askFramework"}}, going},
        {"... but its handler is still to be heard",
         {{kBusy, question, "stopHandlerFirst"},
          {hasTriedToQuit, workDone, ""},
          {0, handlerEnded, "goOn"},
          {0, answersMayHaveCome, "askFramework"}},
         going},
        {"... and the quit handler decides", {{kQuit | kAsking | hasTriedToQuit, workDone, ""}}, going},
        {"... and refuses for both",
         {{kQuit | othersWait, workDone, ""}, {kQuit, quitRefused, "tellRefusal"}, {kQuit, answersMayHaveCome, ""}},
         going},
        {"work is done and a dialog is up", {{kDialog, workDone, ""}, {0, kMoment, "askFramework"}}, going},
        {"answers that nobody waits for", {{0, answersMayHaveCome, ""}}, going},

        {"a signal", {{0, signal, "askFramework"}}, pressed},
        {"a signal takes dialogs away", {{kDialog, signal, "takeDialogsAway"}, {0, kSoon, ""}, {0, kMoment, "askFramework"}}, pressed},
        {"... and again and again",
         {{kDialog, signal, "takeDialogsAway"},
          {0, kSoon, ""},
          {kDialog, kSoon, "takeDialogsAway"},
          {0, kMoment, "askFramework"},
          {0, kLong, ""}},
         pressed},
        {"... but not for ever",
         {{kDialog, signal, "takeDialogsAway"}, {0, kSoon, ""}, {kDialog, kMoment, "takeDialogsAway"}, {kDialog, kLong, "endNow"}},
         pressed},
        {"... nor when none is up just then",
         {{kDialog, kSoon, ""}, {kDialog, signal, "takeDialogsAway"}, {kDialog, Seconds{2.99}, ""}, {0, Seconds{0.02}, "endNow"}},
         pressed},
        {"... whatever the script wishes meanwhile",
         {{kDialog, signal, "takeDialogsAway"}, {kDialog, wish, ""}, {kDialog, workDone, ""}, {0, wish, "askFramework"}},
         pressed},
        {"... and asks once while a handler is being stopped",
         {{kBusy, signal, "askFramework"},
          {kBusy, question, "stopHandlerFirst"},
          {kBusy | kDialog, kSoon, "takeDialogsAway"},
          {kBusy, kMoment, ""}},
         pressed},
        {"... and again when that has ended by itself",
         {{kBusy, signal, "askFramework"},
          {kBusy, question, "stopHandlerFirst"},
          {0, handlerEnded, "goOnAndAskAgain"},
          {0, kSoon, "askFramework"}},
         pressed},
        {"the quit handler may ask, after a signal",
         {{kQuit, signal, "askFramework"}, {kAsking | kDialog, kSoon, ""}, {kAsking, kMoment, ""}},
         pressed},
        {"... for as long as it takes",
         {{kDialog, signal, "takeDialogsAway"}, {0, wish, "askFramework"}, {kAsking | kDialog, kLong, ""}},
         pressed},
        {"... and its refusal counts",
         {{kQuit, signal, "askFramework"}, {kQuit, quitRefused, "tellRefusal"}, {kQuit, handlerEnded, "goOn"}},
         going},
        {"... also while a dialog is up",
         {{kDialog, kSoon, ""}, {kDialog, signal, "takeDialogsAway"}, {kDialog | kQuit, quitRefused, "tellRefusal"}, {kDialog, kLong, ""}},
         going},
        {"... and when it passes the quit on, the user has the time that his dialog takes",
         {{kQuit, signal, "askFramework"}, {kDialog, quitPassedOn, ""}, {kDialog, kLong, ""}},
         wanted},
        {"a signal ends the quit handler", {{kAsking, signal, "endNow"}}, going},
        {"... and its dialog", {{kAsking | kDialog, signal, "takeDialogsAway"}, {kAsking, kMoment, "endNow"}}, final},
        {"... and the one that comes next",
         {{kAsking | kDialog, signal, "takeDialogsAway"},
          {kAsking, kSoon, ""},
          {kAsking | kDialog, kSoon, "takeDialogsAway"},
          {kAsking | kDialog, kLong, "endNow"}},
         final},
        {"... whatever it says",
         {{kAsking | kDialog, signal, "takeDialogsAway"},
          {0, quitRefused, ""},
          {0, quitPassedOn, ""},
          {0, wish, "askFramework"},
          {0, signal, "endNow"}},
         final},
        {"... at the third signal, too", {{kAsking | kDialog, signal, "takeDialogsAway"}, {kDialog, signal, "takeDialogsAway"}}, final},
        {"... and work that is done, or a wish, changes nothing",
         {{kAsking | kDialog, signal, "takeDialogsAway"},
          {kDialog, ErrorSeen{}, ""},
          {kDialog, wish, ""},
          {othersWait | kDialog, workDone, ""}},
         final},

        {"Stop stops", {{kBusy | hasIdleHandler, stop, "stopHandler"}}, going},
        {"... or asks", {{hasIdleHandler, stop, "askQuitHandler"}}, going},
        {"... or ends", {{0, stop, "askFramework"}}, going},
        {"the last window",
         {{0, lastWindowClosed, "allow"}, {hasStarted, lastWindowClosed, "allow"}, {kBusy, lastWindowClosed, "allow"}},
         going},
        {"... of an applet that stays without one", {{staysWithoutWindow, lastWindowClosed, "refuse"}}, going},
        {"... while a handler runs", {{hasStarted | kBusy, lastWindowClosed, "refuse"}}, going},
        {"... by the user", {{userClosedWindow | staysWithoutWindow | hasStarted | kBusy, lastWindowClosed, "allow"}}, going},
    };
    for (const Story& story : stories) {
        SCOPED_TRACE(story.name);
        World world;
        for (const Step& step : story.steps) {
            world.setFacts(step.facts);
            if (const auto* happening = std::get_if<AppletEnd::Happening>(&step.event))
                world.end.happened(*happening);
            else if (const auto* seconds = std::get_if<Seconds>(&step.event))
                world.pass(seconds->count);
            else
                world.end.errorWasSeen();
            EXPECT_EQ(world.takeLog(), QLatin1StringView(step.acts)) << "step " << &step - story.steps.data() + 1;
        }
        EXPECT_EQ(world.end.state(), story.state);
    }
}

TEST(AppletEnd, OthersAreAskedOnceAndOnlyWhereItMatters) {
    World world;
    for (const auto happening : {question, wish, signal, answersMayHaveCome, workDone, handlerEnded, lastWindowClosed})
        world.end.happened(happening);
    EXPECT_EQ(world.timesOthersWereAsked(), 0) << "a signal has come";
    World other;
    other.end.happened(workDone);
    EXPECT_EQ(other.timesOthersWereAsked(), 1);
}

} // namespace quoddle
