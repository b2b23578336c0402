// SPDX-License-Identifier: MIT
#include "platform/ae/transport/AETransport.h"

#include "platform/ae/AEMainThread.h"
#include "platform/ae/AEWaiting.h"
#include "platform/ae/transport/AEApplicationLookup.h"
#include "platform/ae/transport/AEClient.h"
#include "platform/ae/transport/AELaunching.h"
#include "platform/ae/transport/AERuntimeDirectory.h"
#include "platform/ae/transport/AEServer.h"
#include "platform/base/FileDescriptor.h"
#include "platform/base/Wait.h"

#include <sys/timerfd.h>
#include <thread>
#include <unistd.h>

namespace quoddle {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kPatience{5}; // for the event for which the application was launched; its sender may have died

std::unique_ptr<AEServer> sServer;
bool sExpectsEvent = false;
std::optional<Clock::time_point> sListening; // the time of AEListen()
FileDescriptor sPatience;                    // a timer for the end of the wait for the expected event
std::shared_ptr<void> sWatchesPatience;
std::thread sRemembering; // a thread, so that listening does not wait for the file to be written

/// The property in a "get" event that asks for a property of the application itself, as in "get running of application"; else 0.
FourCharCode askedProperty(const AEDesc& event) {
    const AEDesc* direct = event.find("----"_4cc);
    if (event.eventClass() != "core"_4cc || event.eventID() != "getd"_4cc || !direct || direct->type() != "obj "_4cc)
        return 0;
    const AEDesc* form = direct->find("form"_4cc);
    const AEDesc* container = direct->find("from"_4cc);
    const AEDesc* property = direct->find("seld"_4cc);
    const bool isOwn = form && form->code() == "prop"_4cc && container && container->isNull() && property;
    return isOwn ? property->code() : 0;
}

/// The property's value when it is known without asking the application. An application that was not found only has the property that it
/// does not run.
std::optional<AEDesc> knownProperty(FourCharCode property, const AERunningApplication* application) {
    if (property == "prun"_4cc)
        return AEDesc::ofBoolean(application && application->processID != 0);
    if (!application || (application->processID != 0 && property != "ID  "_4cc))
        return std::nullopt;
    if (property == "pnam"_4cc)
        return AEDesc::ofUTF8(application->name);
    if (property == "ID  "_4cc && !application->bundleIdentifier.empty())
        return AEDesc::ofUTF8(application->bundleIdentifier);
    return std::nullopt;
}

bool isQuit(const AEDesc& event) {
    return event.eventClass() == "aevt"_4cc && event.eventID() == "quit"_4cc;
}

/// The event comes instead of the applet's run when it is "run", which would run it twice, "launch", which must not run it, or "open".
AELaunchReason reasonFor(const AEDesc& event) {
    static constexpr struct {
        AEEventClass eventClass;
        AEEventID eventID;
    } kInsteadOfRun[] = {{"aevt"_4cc, "oapp"_4cc}, {"aevt"_4cc, "odoc"_4cc}, {"ascr"_4cc, "noop"_4cc}};
    for (const auto& row : kInsteadOfRun)
        if (event.eventClass() == row.eventClass && event.eventID() == row.eventID)
            return AELaunchReason::eventInsteadOfRun;
    return AELaunchReason::event;
}

OSStatus answer(const AEDesc& event, AEDesc* reply, std::optional<AEDesc> value) {
    AEDesc answered = AEEmptyReplyTo(event);
    if (value)
        (void)answered.put("----"_4cc, std::move(*value));
    if (reply)
        *reply = std::move(answered);
    return noErr;
}

/// -600 when the event has reached no process; `mayHaveEnded` then tells whether the application was running before, so that it can be
/// launched now.
OSStatus sendOnce(const AEDesc& event, AEDesc* reply, AESendMode sendMode, std::int32_t timeoutInTicks, const AESendOptions& options,
                  bool& mayHaveEnded) {
    mayHaveEnded = false;
    auto application = AEFindApplication(event.attribute("addr"_4cc).value_or(AEDesc()));
    if (auto known = knownProperty(askedProperty(event), application ? &*application : nullptr))
        return answer(event, reply, std::move(known));
    if (!application)
        return application.error();
    std::int32_t processID = application->processID;
    mayHaveEnded = processID != 0 && !application->path.empty();
    if (processID == 0) {
        if (isQuit(event))
            return answer(event, reply, std::nullopt);
        const auto launched = AELaunchApplication(application->path, reasonFor(event), AEDeadlineAfter(timeoutInTicks), options);
        if (!launched)
            return launched.error();
        processID = *launched;
        mayHaveEnded = true;
    }
    return AESendToProcess(processID, event, reply, sendMode, timeoutInTicks, options);
}

/// Answers an event when the runtime folder cannot be used, so that no running application can be found and no launch noticed.
OSStatus answerWithoutRuntimeDirectory(const AEDesc& event, AEDesc* reply, OSStatus status) {
    if (!reply)
        return status;
    *reply = AEEmptyReplyTo(event);
    (void)reply->put("errn"_4cc, AEDesc::ofInt32(status));
    (void)reply->put("errs"_4cc, AEDesc::ofUTF8(AERuntimeDirectoryAdvice(status)));
    return noErr;
}

OSStatus sendRemotely(const AEDesc& event, AEDesc* reply, AESendMode sendMode, std::int32_t timeoutInTicks, const AESendOptions& options) {
    constexpr int kAttempts = 4; // an application may end just when the event is sent, and is then launched again
    if (const auto directory = AERuntimeDirectory(); !directory)
        return answerWithoutRuntimeDirectory(event, reply, directory.error());
    OSStatus status = procNotFound;
    bool mayHaveEnded = true;
    for (int attempt = 0; attempt < kAttempts && status == procNotFound && mayHaveEnded; ++attempt)
        status = sendOnce(event, reply, sendMode, timeoutInTicks, options, mayHaveEnded);
    return status;
}

void startPatience() {
    sPatience.reset(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK));
    const itimerspec once{{}, {kPatience.count(), 0}};
    if (!sPatience.isOpen() || timerfd_settime(sPatience.number(), 0, &once, nullptr) != 0)
        return;
    sWatchesPatience = AEWatchDescriptor(sPatience.number(), [] {
        std::uint64_t times = 0;
        (void)!::read(sPatience.number(), &times, sizeof times);
        wakeWaits();
    });
}

} // namespace

void AEInstallTransport() {
    AESetRemoteSender(sendRemotely);
}

OSStatus AEListen(const AERunningApplication& application) {
    sListening = Clock::now();
    if (sExpectsEvent)
        startPatience();
    wakeWaits(); // AEIsAnswered() depends on whether the application listens
    const auto directory = AERuntimeDirectory();
    if (!directory)
        return directory.error();
    auto server = std::make_unique<AEServer>();
    if (const OSStatus status = server->start(*directory); status != noErr)
        return status;
    sServer = std::move(server);
    AERunningApplication canonical = application;
    canonical.path = AECanonicalPath(application.path);
    const OSStatus status = AERegisterApplication(canonical);
    sRemembering = std::thread([canonical] { AERememberApplication(canonical); });
    return status;
}

void AEExpectEvent() {
    sExpectsEvent = true;
}

bool AEIsAnswered(bool isEndCertain) {
    if (sExpectsEvent) {
        const bool mayCome = !sListening || (sServer && Clock::now() < *sListening + kPatience);
        if (mayCome && !(sServer && sServer->hasReceived()))
            return false;
        sExpectsEvent = false;
    }
    if (!sServer)
        return true;
    if (isEndCertain)
        AEWithdrawApplication();
    return sServer->isAnswered();
}

void AEStopListening() {
    sListening.reset();
    sWatchesPatience.reset();
    sPatience.reset();
    if (!sServer)
        return;
    AEUnregisterApplication();
    sServer.reset();
    sRemembering.join();
}

} // namespace quoddle
