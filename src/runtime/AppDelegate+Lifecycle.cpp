// SPDX-License-Identifier: MIT
// The run, idle and quit handlers, and the menu.
#include "runtime/AppDelegate.h"

#include "platform/foundation/NSLog.h"

#include <cmath>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

const QString kRunIdleHandler = u"_runIdleHandler"_s;
constexpr std::int64_t kDefaultIdleSeconds = 30;
constexpr double kNegligible = 0.05; // seconds; an idle call may take so long although its handler does nothing

NSAppleEventDescriptorRef parameterlessEvent(AEEventClass eventClass, AEEventID eventID) {
    return NSAppleEventDescriptor::appleEventWithEventClass(eventClass, eventID);
}

/// The seconds until the next idle call, which the idle handler's result tells.
std::int64_t idleSecondsFrom(const QXOSAIDRef& result) {
    const NSAppleEventDescriptorRef descriptor = result ? result->descriptor() : nullptr;
    if (!descriptor)
        return kDefaultIdleSeconds;
    switch (descriptor->descriptorType()) {
    case "comp"_4cc:
    case "long"_4cc:
    case "magn"_4cc:
    case "shor"_4cc:
    case "ucom"_4cc:
    case "ushr"_4cc:
        return descriptor->int32Value();
    case "doub"_4cc:
    case "sing"_4cc: {
        constexpr double kBeyondAllClocks = 1e15;
        const double seconds = descriptor->doubleValue();
        return std::isnan(seconds) ? 0 : static_cast<std::int64_t>(std::clamp(seconds, -kBeyondAllClocks, kBeyondAllClocks));
    }
    default:
        return kDefaultIdleSeconds;
    }
}

} // namespace

void AppDelegate::runMainScript() {
    setScriptStarted(true);
    const auto files = filenamesToOpen();
    if (hasOpenHandler() && files) {
        applicationOpenFiles(*files);
        setFilenamesToOpen({});
    } else if (hasRunHandler()) {
        // Unlike after the run at launch, the applet goes on when the script has a quit handler.
        _respondToEventInBackground(nullptr, [this](const QXOSAIDRef&, const QXOSAErrorInfoRef&) {
            if (!isStayOpenScript() && !hasOpenHandler() && !hasQuitHandler())
                terminate();
        });
    } else if (hasOpenHandler()) {
        windowController().showLastViewController();
    }
    if (hasIdleHandler())
        scheduleIdleHandler(0);
}

void AppDelegate::scheduleIdleHandler(std::int64_t afterSeconds) {
    mParts.performs->cancelPreviousPerformRequests(this, kRunIdleHandler);
    performIdleHandlerAt(mParts.performs->now() + static_cast<double>(afterSeconds));
}

void AppDelegate::performIdleHandlerAt(double time) {
    mIdleCallDue = time;
    mParts.performs->perform(
        this, kRunIdleHandler, [this] { _runIdleHandler(); }, time - mParts.performs->now());
}

void AppDelegate::_runIdleHandler() {
    mAwaitedUntil = 0; // the user has not asked for a window that an idle handler shows
    _respondToEventInBackground(parameterlessEvent("misc"_4cc, "idle"_4cc),
                                [this](const QXOSAIDRef& result, const QXOSAErrorInfoRef& error) {
                                    setIdleSeconds(idleSecondsFrom(result));
                                    if (idleSeconds() < 0 || error)
                                        return;
                                    // The delay counts from the end of the handler. The time that timers and the queue take is not added,
                                    // because it would add up over a day.
                                    const double now = mParts.performs->now();
                                    const double from = now - mIdleCallDue < kNegligible ? mIdleCallDue : now;
                                    performIdleHandlerAt(from + static_cast<double>(idleSeconds()));
                                });
}

void AppDelegate::_runQuitHandler() {
    if (!hasQuitHandler())
        return;
    setRunningQuitHandler(true);
    _respondToEventInBackground(
        parameterlessEvent("aevt"_4cc, "quit"_4cc), [this](const QXOSAIDRef& result, const QXOSAErrorInfoRef& error) {
            NSLogTrace(u"applicationShouldTerminate: quit event processed: %@, error: %@"_s,
                       {result ? QVariant(result->stringValue()) : QVariant(), error ? QVariant(error->description()) : QVariant()});
            setRunningQuitHandler(false);
            const bool isPassedOn = (!error || error->error() == noErr) && mainScript()->component()->isResuming();
            mEnd.happened(isPassedOn ? AppletEnd::Happening::quitPassedOn : AppletEnd::Happening::quitRefused);
        });
}

bool AppDelegate::respondsToAction(const QString& action) const {
    return action == "terminate:"_L1 || action == "checkForUpdates:"_L1;
}

void AppDelegate::performAction(const QString& action) {
    if (action == "terminate:"_L1)
        terminate();
    else if (mParts.updater)
        mParts.updater->checkForUpdates();
}

bool AppDelegate::validateMenuItem(const NSMenuItem& item) {
    if (item.action() == "terminate:"_L1)
        return !isDisplayingPanel() && mParts.application->validatesAction(item.action());
    return true;
}

} // namespace quoddle
