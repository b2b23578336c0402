// SPDX-License-Identifier: MIT
#include "ScriptedComponent.h"

#include "platform/ae/AECoercion.h"

#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

namespace quoddle::test {

namespace {
constexpr OSAID kScript = 1;
constexpr OSAID kAppleScriptObject = 2;
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
    const auto active = mComponent.mActive;
    return active.proc ? active.proc(active.refCon) : OSErr(noErr);
}

ScriptedComponent::Outcome ScriptedComponent::Run::workUntilStopped() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (std::chrono::steady_clock::now() < end) {
        if (const OSErr status = yield())
            return failing(status, u"User canceled.");
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return failing(-1, u"was never stopped");
}

OSErr ScriptedComponent::Run::continueEvent() {
    const auto resume = mComponent.mResume;
    AEDesc reply = AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc);
    return resume.proc ? resume.proc(event, &reply, resume.refCon) : OSErr(noErr);
}

void ScriptedComponent::Run::setProgress(FourCharCode property, AEDesc value) {
    std::lock_guard lock(mComponent.mMutex);
    mComponent.mProperties[propertyKey(kAppleScriptObject, AEDesc::ofCode("prop"_4cc, property))] = std::move(value);
}

bool ScriptedComponent::Run::isAppletQuitting() {
    std::lock_guard lock(mComponent.mMutex);
    const auto found = mComponent.mProperties.find(propertyKey(kScript, AEDesc::ofText(u"appletisquitting")));
    return found != mComponent.mProperties.end() && found->second.asBoolean().value_or(false);
}

OSAID ScriptedComponent::addValue(AEDesc value) {
    mValues[++mLastID] = std::move(value);
    return mLastID;
}

OSStatus ScriptedComponent::loadFile(const std::string& path, bool*, OSAModeFlags, OSAID& result) {
    std::ifstream file(path);
    std::string magic;
    if (!(file >> magic))
        return errOSACorruptData;
    std::lock_guard lock(mMutex);
    mHandlerNames.clear(); // the generic component opens a component once and keeps it
    mProperties.clear();
    for (std::string name; file >> name;)
        mHandlerNames.insert(name);
    result = kScript;
    return noErr;
}

OSStatus ScriptedComponent::dispose(OSAID id) {
    std::lock_guard lock(mMutex);
    mValues.erase(id);
    return noErr;
}

OSStatus ScriptedComponent::call(const std::string& name, const AEDesc& event, OSAID& result) {
    Handler handler;
    {
        std::lock_guard lock(mMutex);
        if (!mHandlerNames.contains(name))
            return errAEEventNotHandled;
        std::lock_guard calls(sMutex);
        sCalls.push_back(name);
        handler = sHandlers[name];
    }
    Run run(*this, event);
    Outcome outcome = handler ? handler(run) : Outcome();
    std::lock_guard lock(mMutex);
    result = outcome.result.isNull() ? 0 : addValue(outcome.result);
    mLastError = outcome;
    if (outcome.engineStatus)
        return outcome.engineStatus;
    return outcome.error ? errOSAScriptError : noErr;
}

std::string ScriptedComponent::handlerFor(const AEDesc& nameOrEvent) {
    if (nameOrEvent.isAppleEvent() && nameOrEvent.eventID() == "psbr"_4cc) {
        const AEDesc* name = nameOrEvent.find("snam"_4cc);
        return name ? name->asUTF8().value_or("") : "";
    }
    FourCharCode eventID = nameOrEvent.eventID();
    if (nameOrEvent.type() == "evnt"_4cc && nameOrEvent.data().size() == 8)
        eventID = AEDesc("type"_4cc, nameOrEvent.data().substr(4)).code();
    switch (eventID) {
    case "oapp"_4cc:
        return "run";
    case "odoc"_4cc:
        return "open";
    case "idle"_4cc:
        return "idle";
    case "quit"_4cc:
        return "quit";
    default:
        return "";
    }
}

OSStatus ScriptedComponent::execute(OSAID, OSAID, OSAModeFlags, OSAID& result) {
    return call("run", {}, result);
}

OSStatus ScriptedComponent::executeEvent(const AEDesc& event, OSAID, OSAModeFlags, OSAID& result) {
    return call(handlerFor(event), event, result);
}

OSStatus ScriptedComponent::coerceFromDesc(const AEDesc& desc, OSAModeFlags, OSAID& result) {
    std::lock_guard lock(mMutex);
    result = addValue(desc);
    return noErr;
}

OSStatus ScriptedComponent::coerceToDesc(OSAID id, DescType, OSAModeFlags, AEDesc& result) {
    std::lock_guard lock(mMutex);
    const auto found = mValues.find(id);
    if (found == mValues.end())
        return errOSAInvalidID;
    result = found->second;
    return noErr;
}

OSStatus ScriptedComponent::display(OSAID id, DescType, OSAModeFlags, AEDesc& text) {
    return coerceToDesc(id, "****"_4cc, 0, text);
}

std::string ScriptedComponent::propertyKey(OSAID context, const AEDesc& name) {
    return std::to_string(context) + (name.type() == "prop"_4cc ? bytesOf(name.code()) : name.asUTF8().value_or(""));
}

OSStatus ScriptedComponent::getProperty(OSAModeFlags, OSAID context, const AEDesc& name, OSAID& result) {
    if (name.code() == "ascr"_4cc && name.type() == "prop"_4cc) {
        result = kAppleScriptObject;
        return noErr;
    }
    std::lock_guard lock(mMutex);
    const auto found = mProperties.find(propertyKey(context, name));
    if (found == mProperties.end())
        return errOSAScriptError;
    result = addValue(found->second);
    return noErr;
}

OSStatus ScriptedComponent::setProperty(OSAModeFlags, OSAID context, const AEDesc& name, OSAID value) {
    std::lock_guard lock(mMutex);
    mProperties[propertyKey(context, name)] = mValues[value];
    return noErr;
}

OSStatus ScriptedComponent::getHandler(OSAModeFlags, OSAID, const AEDesc& name, OSAID& result) {
    std::lock_guard lock(mMutex);
    if (!mHandlerNames.contains(handlerFor(name)))
        return errOSAScriptError;
    result = addValue(AEDesc::ofText(u"handler"));
    return noErr;
}

OSStatus ScriptedComponent::getScriptInfo(OSAID id, FourCharCode selector, std::int32_t& info) {
    std::lock_guard lock(mMutex);
    switch (selector) {
    case "hsod"_4cc:
        info = mHandlerNames.contains("open");
        return noErr;
    case "cscr"_4cc:
    case "cntx"_4cc:
        info = id == kScript;
        return noErr;
    case "best"_4cc:
        info = static_cast<std::int32_t>(mValues[id].type());
        return noErr;
    default:
        return errOSABadSelector;
    }
}

OSStatus ScriptedComponent::setScriptFile(OSAID, FourCharCode, const std::string& path) {
    mFile = path;
    return noErr;
}

OSStatus ScriptedComponent::getScriptFile(OSAID, FourCharCode, std::string& path) {
    path = mFile;
    return noErr;
}

OSStatus ScriptedComponent::scriptError(FourCharCode selector, DescType, AEDesc& result) {
    std::lock_guard lock(mMutex);
    if (selector == "errn"_4cc)
        result = AEDesc::ofInt32(mLastError.error);
    else if (selector == "errs"_4cc || selector == "errb"_4cc)
        result = AEDesc::ofText(mLastError.message);
    else if (const auto found = mLastError.particulars.find(selector); found != mLastError.particulars.end())
        result = found->second;
    else
        return errAEDescNotFound;
    return noErr;
}

OSStatus ScriptedComponent::getActiveProc(OSACallback<OSAActiveProc>& callback) {
    callback = mActive;
    return noErr;
}
OSStatus ScriptedComponent::setActiveProc(OSACallback<OSAActiveProc> callback) {
    // The generic component installs its own in every component it opens; ours is the one of the component made for the script.
    mActive = callback;
    return noErr;
}
OSStatus ScriptedComponent::getSendProc(OSACallback<OSASendProc>& callback) {
    callback = mSend;
    return noErr;
}
OSStatus ScriptedComponent::setSendProc(OSACallback<OSASendProc> callback) {
    mSend = callback;
    return noErr;
}
OSStatus ScriptedComponent::getResumeDispatchProc(OSACallback<OSAResumeDispatchProc>& callback) {
    callback = mResume;
    return noErr;
}
OSStatus ScriptedComponent::setResumeDispatchProc(OSACallback<OSAResumeDispatchProc> callback) {
    mResume = callback;
    return noErr;
}

} // namespace quoddle::test
