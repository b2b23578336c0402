// SPDX-License-Identifier: MIT
#include "runtime/AppletEnd.h"

#include "platform/foundation/DelayedPerforms.h"

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr double kPatience = 3; // seconds in which a script may answer one cancelled dialog with the next
constexpr double kGrace = 0.05; // seconds in which a script whose dialog has gone asks the next question or comes to its end

const QString kDialogShown = u"dialogShown"_s;
const QString kDialogGone = u"dialogGone"_s;
const QString kPatienceOver = u"patienceOver"_s;

using enum AppletEnd::State;
using enum AppletEnd::Happening;
using enum AppletEnd::Fact;
using Act = AppletEnd::Act;

constexpr auto kAny = AppletEnd::kAnyState;
constexpr auto kSame = AppletEnd::kSame;

constexpr std::uint8_t operator|(AppletEnd::State one, AppletEnd::State other) {
    return static_cast<std::uint8_t>(static_cast<unsigned>(one) | static_cast<unsigned>(other));
}

constexpr std::uint8_t in(AppletEnd::State state) {
    return static_cast<std::uint8_t>(state);
}

// clang-format off
constexpr AppletEnd::Row kTable[] = {
    // happening         states           with                      without          act                       then
    {question,           kAny,            dialogIsUp,               0,               Act::refuse,              kSame},
    {question,           kAny,            quitHandlerRuns,          0,               Act::allow,               kSame},
    {question,           kAny,            isResponding,             0,               Act::stopHandlerFirst,    kSame},
    {question,           kAny,            hasStarted|hasQuitHandler,0,               Act::askQuitHandlerFirst, kSame},
    {question,           kAny,            0,                        0,               Act::allow,               kSame},

    {wish,               pressed|final,   0,                        dialogIsUp,      Act::askFramework,        kSame},
    {wish,               kAny,            0,                        dialogIsUp,      Act::askFramework,        going},
    {wish,               pressed|final,   0,                        0,               Act::nothing,             kSame},
    {wish,               kAny,            endIsCertain,             0,               Act::takeDialogsAway,     pressed},
    {wish,               kAny,            0,                        0,               Act::nothing,             wanted},

    {workDone,           pressed|final,   0,                        0,               Act::nothing,             kSame},
    {workDone,           kAny,            quitWaits,                0,               Act::nothing,             finished},
    {workDone,           kAny,            quitHandlerRuns,          0,               Act::nothing,             kSame},
    {workDone,           kAny,            hasTriedToQuit,           0,               Act::wish,                kSame},
    {workDone,           kAny,            othersWait,               0,               Act::nothing,             finished},
    {workDone,           kAny,            isResponding,             hasQuitHandler,  Act::nothing,             finished},
    {workDone,           kAny,            0,                        0,               Act::wish,                kSame},
    {answersMayHaveCome, in(finished),    0,                        0,               Act::workDone,            kSame},

    {signal,             in(final),       dialogIsUp,               0,               Act::takeDialogsAway,     kSame},
    {signal,             in(final),       0,                        0,               Act::endNow,              kSame},
    {signal,             kAny,            quitHandlerRuns|dialogIsUp,0,              Act::takeDialogsAway,     final},
    {signal,             kAny,            quitHandlerRuns,          0,               Act::endNow,              kSame},
    {signal,             kAny,            dialogIsUp,               0,               Act::takeDialogsAway,     pressed},
    {signal,             kAny,            0,                        0,               Act::askFramework,        pressed},

    {dialogShown,        in(final),       0,                        0,               Act::takeDialogsAway,     kSame},
    {dialogShown,        in(pressed),     0,                        quitHandlerRuns, Act::takeDialogsAway,     kSame},
    {dialogGone,         in(final),       0,                        0,               Act::endNow,              kSame},
    {dialogGone,         in(pressed),     0,  dialogIsUp|quitHandlerRuns|quitWaits,  Act::askFramework,        kSame},
    {dialogGone,         in(wanted),      isResponding,             0,               Act::nothing,             going},
    {dialogGone,         in(wanted),      0,                        0,               Act::wish,                kSame},
    {patienceOver,       in(final),       0,                        0,               Act::endNow,              kSame},
    {patienceOver,       in(pressed),     0,                        quitHandlerRuns, Act::endNow,              kSame},

    {handlerEnded,       in(pressed),     0,                        0,               Act::goOnAndAskAgain,     kSame},
    {handlerEnded,       kAny,            0,                        0,               Act::goOn,                kSame},
    {handlerStopped,     kAny,            hasQuitHandler,           0,               Act::goOnWithQuitHandler, kSame},
    {handlerStopped,     kAny,            0,                        0,               Act::grant,               kSame},
    {quitHandlerStopped, kAny,            hasQuitHandler,           0,               Act::goOn,                kSame},
    {quitHandlerStopped, kAny,            0,                        0,               Act::grant,               kSame},
    {quitPassedOn,       in(final),       0,                        0,               Act::nothing,             kSame},
    {quitPassedOn,       kAny,            0,                        0,               Act::wish,                going},
    {quitRefused,        in(final),       0,                        0,               Act::nothing,             kSame},
    {quitRefused,        kAny,            0,                        0,               Act::tellRefusal,         going},

    {stop,               kAny,            isResponding,             0,               Act::stopHandler,         kSame},
    {stop,               kAny,            hasIdleHandler,           0,               Act::askQuitHandler,      kSame},
    {stop,               kAny,            0,                        0,               Act::wish,                kSame},
    {lastWindowClosed,   kAny,            userClosedWindow,         0,               Act::allow,               kSame},
    {lastWindowClosed,   kAny,            staysWithoutWindow,       0,               Act::refuse,              kSame},
    {lastWindowClosed,   kAny,            hasStarted|isResponding,  0,               Act::refuse,              kSame},
    {lastWindowClosed,   kAny,            0,                        0,               Act::allow,               kSame},
};
// clang-format on

} // namespace

std::span<const AppletEnd::Row> AppletEnd::table() {
    return kTable;
}

AppletEnd::~AppletEnd() {
    mPerforms.cancelPreviousPerformRequests(this);
}

const AppletEnd::Row* AppletEnd::rowFor(Happening happening) {
    unsigned known = quitWaits | endIsCertain;
    unsigned holding = 0;
    if (mQuitWaits)
        holding |= quitWaits;
    if (mEndIsCertain)
        holding |= endIsCertain;
    // Facts are asked only when a row needs them, because some answers are costly.
    const auto holds = [&](unsigned fact) {
        if (!(known & fact) && mHost.holds(static_cast<Fact>(fact)))
            holding |= fact;
        known |= fact;
        return (holding & fact) != 0;
    };
    const auto fits = [&](const Row& row) {
        if (row.happening != happening || !(row.states & in(mState)))
            return false;
        for (unsigned fact = 1; fact <= (row.with | row.without); fact <<= 1)
            if (((row.with & fact) && !holds(fact)) || ((row.without & fact) && holds(fact)))
                return false;
        return true;
    };
    for (const Row& row : kTable)
        if (fits(row))
            return &row;
    return nullptr;
}

AppletEnd::Act AppletEnd::happened(Happening happening) {
    const Row* row = rowFor(happening);
    if (!row)
        return Act::nothing;
    if (row->then != kSame)
        mState = row->then;
    if (row->act == Act::wish || row->act == Act::workDone)
        return happened(row->act == Act::wish ? Happening::wish : Happening::workDone);
    note(row->act);
    mHost.perform(row->act);
    return row->act;
}

void AppletEnd::note(Act act) {
    switch (act) {
    case Act::stopHandlerFirst:
        mQuitWaits = true;
        break;
    case Act::askQuitHandlerFirst:
    case Act::grant:
    case Act::goOn:
    case Act::goOnWithQuitHandler:
        mQuitWaits = false;
        break;
    case Act::goOnAndAskAgain:
        mQuitWaits = false;
        scheduleDialogGone(0); // asks again at once; while a dialog is up, its end will ask
        break;
    case Act::takeDialogsAway:
        startPatience();
        break;
    default:
        break;
    }
}

void AppletEnd::dialogsChanged(bool isUp) {
    mPerforms.cancelPreviousPerformRequests(this, kDialogShown);
    mPerforms.cancelPreviousPerformRequests(this, kDialogGone);
    if (!isUp)
        return scheduleDialogGone(kGrace);
    // A dialog cannot be cancelled while it is being shown, so this waits for the event loop.
    mPerforms.perform(
        this, kDialogShown, [this] { happened(dialogShown); }, 0);
}

void AppletEnd::scheduleDialogGone(double afterSeconds) {
    mPerforms.cancelPreviousPerformRequests(this, kDialogGone);
    mPerforms.perform(
        this, kDialogGone,
        [this] {
            if (!mHost.holds(dialogIsUp))
                endPatience();
            happened(dialogGone);
        },
        afterSeconds);
}

/// Starts the one period of patience, which goes on however many dialogs follow each other.
void AppletEnd::startPatience() {
    if (std::exchange(mIsPatienceRunning, true))
        return;
    mPerforms.perform(
        this, kPatienceOver,
        [this] {
            mIsPatienceRunning = false;
            happened(patienceOver);
        },
        kPatience);
}

void AppletEnd::endPatience() {
    mIsPatienceRunning = false;
    mPerforms.cancelPreviousPerformRequests(this, kPatienceOver);
}

} // namespace quoddle
