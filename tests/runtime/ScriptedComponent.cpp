// SPDX-License-Identifier: MIT
#include "ScriptedComponent.h"

#include "platform/base/Text.h"

#include <chrono>
#include <fstream>
#include <thread>

namespace quoddle::test {

namespace {

/// A handler that an event calls, and how FakeComponent calls it.
struct EventHandler {
    const char* name;
    const char16_t* event;
    AEEventID eventID;
};
constexpr EventHandler kEventHandlers[] = {{"run", u"aevtoapp", "oapp"_4cc},
                                           {"open", u"aevtodoc", "odoc"_4cc},
                                           {"idle", u"miscidle", "idle"_4cc},
                                           {"quit", u"aevtquit", "quit"_4cc}};

std::u16string storedNameOf(const std::string& handler) {
    for (const EventHandler& each : kEventHandlers)
        if (handler == each.name)
            return each.event;
    return utf16FromUTF8(handler);
}

std::string handlerFor(const AEDesc& event) {
    if (event.eventID() == "psbr"_4cc) {
        const AEDesc* name = event.find("snam"_4cc);
        return name ? name->asUTF8().value_or("") : "";
    }
    for (const EventHandler& each : kEventHandlers)
        if (event.eventID() == each.eventID)
            return each.name;
    return "";
}

} // namespace

std::map<std::string, ScriptedComponent::Handler> ScriptedComponent::sHandlers;
std::vector<std::string> ScriptedComponent::sCalls;
std::mutex ScriptedComponent::sMutex;

std::vector<std::string> ScriptedComponent::calls() {
    std::lock_guard lock(sMutex);
    return sCalls;
}

void ScriptedComponent::registerComponent() {
    RegisterComponent({kOSAComponentType, kAppleScriptSubtype, "Scripted", "test", [] { return std::make_shared<ScriptedComponent>(); }});
}

OSErr ScriptedComponent::Run::yield() {
    const auto active = mComponent.callbacks.active;
    return active.proc ? active.proc(active.refCon) : OSErr(noErr);
}

ScriptedComponent::Outcome ScriptedComponent::Run::workUntilStopped() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (std::chrono::steady_clock::now() < end) {
        if (const OSErr status = yield())
            return failing(status, u"User canceled.");
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return failing(-1, u"was never stopped");
}

OSErr ScriptedComponent::Run::continueEvent() {
    const auto resume = mComponent.callbacks.resumeDispatch;
    AEDesc reply = AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc);
    return resume.proc ? resume.proc(event, &reply, resume.refCon) : OSErr(noErr);
}

void ScriptedComponent::Run::setProgress(FourCharCode property, AEDesc value) {
    const OSAID id = mComponent.add({.desc = std::move(value)});
    mComponent.setProperty(kOSAModeNull, mComponent.mAppleScriptObject, AEDesc::ofCode("prop"_4cc, property), id);
}

bool ScriptedComponent::Run::isAppletQuitting() {
    OSAID id = 0;
    AEDesc value;
    return mComponent.FakeComponent::getProperty(kOSAModeNull, mComponent.mScript, AEDesc::ofText(u"appletisquitting"), id) == noErr &&
           mComponent.coerceToDesc(id, "bool"_4cc, kOSAModeNull, value) == noErr && value.asBoolean().value_or(false);
}

OSStatus ScriptedComponent::loadFile(const std::string& path, bool*, OSAModeFlags, OSAID& id) {
    std::ifstream file(path);
    std::string magic;
    if (!(file >> magic))
        return errOSACorruptData;
    Value script{.source = u""};
    for (std::string name; file >> name;)
        script.handlers.insert(storedNameOf(name));
    // The generic component opens a component once and keeps it, but every new script begins with progress of its own.
    mAppleScriptObject = add({.source = u""});
    id = mScript = add(std::move(script));
    return noErr;
}

OSStatus ScriptedComponent::dispose(OSAID id) {
    return id == mAppleScriptObject || id == mScript ? noErr : FakeComponent::dispose(id);
}

OSStatus ScriptedComponent::call(const std::string& name, const AEDesc& event, OSAID& id) {
    Handler handler;
    {
        std::lock_guard lock(mutex);
        if (!find(mScript) || !find(mScript)->handlers.contains(storedNameOf(name)))
            return errAEEventNotHandled;
        std::lock_guard callsLock(sMutex);
        sCalls.push_back(name);
        handler = sHandlers[name];
    }
    Run run(*this, event);
    const Outcome outcome = handler ? handler(run) : Outcome();
    std::lock_guard lock(mutex);
    id = outcome.result.isNull() ? 0 : add({.desc = outcome.result});
    error = outcome.particulars;
    error["errn"_4cc] = AEDesc::ofInt32(outcome.error);
    error["errs"_4cc] = error["errb"_4cc] = AEDesc::ofText(outcome.message);
    if (outcome.engineStatus)
        return outcome.engineStatus;
    return outcome.error ? errOSAScriptError : noErr;
}

OSStatus ScriptedComponent::execute(OSAID, OSAID, OSAModeFlags, OSAID& id) {
    return call("run", {}, id);
}

OSStatus ScriptedComponent::executeEvent(const AEDesc& event, OSAID, OSAModeFlags, OSAID& id) {
    return call(handlerFor(event), event, id);
}

OSStatus ScriptedComponent::getProperty(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID& id) {
    if (name.type() != "prop"_4cc || name.code() != "ascr"_4cc)
        return FakeComponent::getProperty(modeFlags, context, name, id);
    id = mAppleScriptObject;
    return noErr;
}

} // namespace quoddle::test
