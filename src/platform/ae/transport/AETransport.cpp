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

constexpr std::chrono::seconds kPatience{5}; // for the event that the application was launched for; its sender may have died

std::unique_ptr<AEServer> sServer;
bool sExpectsEvent = false;
std::optional<Clock::time_point> sListening; // since when
FileDescriptor sPatience;                    // a timer that runs out when the expected event is not waited for any more
std::shared_ptr<void> sWatchesPatience;
std::thread sRemembering; // writes a file that nobody waits for

/// "get running of application": the code of the property when it is one of the application itself, else 0.
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

/// What is known of an application without asking it. Of one that is not to be found only that it does not run.
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

/// "run" would otherwise run twice, "launch" not run is what it is there for, and files are opened instead of a run.
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

/// -600 when the event has reached nobody; `mayHaveEnded` then tells whether the application was there before, so that it can be launched.
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

/// For an application that is not running and cannot be started, or whose start this process would not hear of.
OSStatus answerThatNobodyIsFound(const AEDesc& event, AEDesc* reply, OSStatus status) {
    if (!reply)
        return status;
    *reply = AEEmptyReplyTo(event);
    (void)reply->put("errn"_4cc, AEDesc::ofInt32(status));
    (void)reply->put("errs"_4cc, AEDesc::ofUTF8(AERuntimeDirectoryAdvice(status)));
    return noErr;
}

OSStatus sendRemotely(const AEDesc& event, AEDesc* reply, AESendMode sendMode, std::int32_t timeoutInTicks, const AESendOptions& options) {
    constexpr int kAttempts = 4; // to meet one that does not end at that moment
    if (const auto directory = AERuntimeDirectory(); !directory)
        return answerThatNobodyIsFound(event, reply, directory.error());
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
    wakeWaits(); // whether the expected event can come has changed
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
