// SPDX-License-Identifier: MIT
// A scripting component whose "scripts" are C++ functions. A stored script names its handlers ("FasdUAS run idle quit open"); what they do
// is set by the test. It reports what the runtime looks at: handlers, properties, progress, errors, callbacks.
#pragma once

#include "platform/osa/ComponentRegistry.h"

#include <functional>
#include <map>
#include <mutex>
#include <set>

namespace quoddle::test {

class ScriptedComponent final : public ScriptingComponent {
public:
    struct Outcome {
        AEDesc result;          ///< null: none
        OSStatus error = noErr; ///< of the script
        std::u16string message;
        std::map<FourCharCode, AEDesc> particulars; ///< "erob", "ptlr", "erap", "errt"
        OSStatus engineStatus = noErr;              ///< a failure of the engine itself
    };
    /// What a handler may do while it runs, on the script thread.
    class Run {
    public:
        Run(ScriptedComponent& component, AEDesc theEvent) : event(std::move(theEvent)), mComponent(component) {}
        const AEDesc event; ///< null: run without event
        /// The active procedure: 0, or the reason to stop.
        OSErr yield();
        /// Yields until that says stop, or two seconds have passed.
        Outcome workUntilStopped();
        /// Passes the event on to the application.
        OSErr continueEvent();
        void setProgress(FourCharCode property, AEDesc value);
        bool isAppletQuitting();

    private:
        ScriptedComponent& mComponent;
    };
    using Handler = std::function<Outcome(Run&)>;

    /// By name: "run", "open", "idle", "quit", or of a subroutine. A handler without function does nothing.
    static std::map<std::string, Handler> sHandlers;
    /// Names of the handlers that have begun, in order. Guarded by sMutex.
    static std::vector<std::string> sCalls;
    static std::mutex sMutex;
    static std::vector<std::string> calls();
    static void registerComponent();

    static Outcome failing(OSStatus number, const std::u16string& message) { return {{}, number, message, {}, noErr}; }

    OSStatus loadFile(const std::string& path, bool* storable, OSAModeFlags modeFlags, OSAID& result) override;
    OSStatus dispose(OSAID id) override;
    OSStatus execute(OSAID script, OSAID context, OSAModeFlags modeFlags, OSAID& result) override;
    OSStatus executeEvent(const AEDesc& event, OSAID context, OSAModeFlags modeFlags, OSAID& result) override;
    OSStatus coerceFromDesc(const AEDesc& desc, OSAModeFlags modeFlags, OSAID& result) override;
    OSStatus coerceToDesc(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& result) override;
    OSStatus display(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& text) override;
    OSStatus getProperty(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID& result) override;
    OSStatus setProperty(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID value) override;
    OSStatus getHandler(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID& result) override;
    OSStatus getScriptInfo(OSAID id, FourCharCode selector, std::int32_t& info) override;
    OSStatus setScriptFile(OSAID id, FourCharCode selector, const std::string& path) override;
    OSStatus getScriptFile(OSAID id, FourCharCode selector, std::string& path) override;
    OSStatus scriptError(FourCharCode selector, DescType type, AEDesc& result) override;
    OSStatus getActiveProc(OSACallback<OSAActiveProc>& callback) override;
    OSStatus setActiveProc(OSACallback<OSAActiveProc> callback) override;
    OSStatus getSendProc(OSACallback<OSASendProc>& callback) override;
    OSStatus setSendProc(OSACallback<OSASendProc> callback) override;
    OSStatus getResumeDispatchProc(OSACallback<OSAResumeDispatchProc>& callback) override;
    OSStatus setResumeDispatchProc(OSACallback<OSAResumeDispatchProc> callback) override;

private:
    OSAID addValue(AEDesc value);
    OSStatus call(const std::string& name, const AEDesc& event, OSAID& result);
    static std::string handlerFor(const AEDesc& nameOrEvent);
    static std::string propertyKey(OSAID context, const AEDesc& name);

    std::mutex mMutex;
    std::set<std::string> mHandlerNames;
    std::map<OSAID, AEDesc> mValues;
    std::map<std::string, AEDesc> mProperties;
    std::string mFile;
    Outcome mLastError;
    OSAID mLastID = 100;
    OSACallback<OSAActiveProc> mActive;
    OSACallback<OSASendProc> mSend;
    OSACallback<OSAResumeDispatchProc> mResume;
};

} // namespace quoddle::test
