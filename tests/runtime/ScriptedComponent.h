// SPDX-License-Identifier: MIT
// A scripting component whose "scripts" are C++ functions. A stored script names its handlers ("FasdUAS run idle quit open"); the test sets
// their functions. Values, properties and errors are handled by FakeComponent.
#pragma once

#include "platform/osa/FakeComponent.h"

#include <functional>

namespace quoddle::test {

class ScriptedComponent final : public FakeComponent {
public:
    struct Outcome {
        AEDesc result;          ///< null: the handler has no result
        OSStatus error = noErr; ///< the error that the script raises
        std::u16string message;
        std::map<FourCharCode, AEDesc> particulars; ///< "erob", "ptlr", "erap", "errt"
        OSStatus engineStatus = noErr;              ///< a failure of the engine itself
    };
    /// The actions of a running handler, on the script thread.
    class Run {
    public:
        Run(ScriptedComponent& component, AEDesc theEvent) : event(std::move(theEvent)), mComponent(component) {}
        const AEDesc event; ///< null: a run without event
        /// Calls the active procedure; answers 0, or the reason to stop.
        OSErr yield();
        /// Yields until told to stop, at most for ten seconds.
        Outcome workUntilStopped();
        /// Passes the event on to the application.
        OSErr continueEvent();
        void setProgress(FourCharCode property, AEDesc value);
        bool isAppletQuitting();

    private:
        ScriptedComponent& mComponent;
    };
    using Handler = std::function<Outcome(Run&)>;

    /// The functions of the handlers by name: "run", "open", "idle", "quit", or a subroutine's. A handler without function does nothing.
    static std::map<std::string, Handler> sHandlers;
    /// The names of the handlers that have begun, in order. Guarded by sMutex.
    static std::vector<std::string> sCalls;
    static std::mutex sMutex;
    static std::vector<std::string> calls();
    static void registerComponent();

    static Outcome failing(OSStatus number, const std::u16string& message) { return {{}, number, message, {}, noErr}; }

    ScriptedComponent() : FakeComponent(kAppleScriptSubtype) {}
    OSStatus loadFile(const std::string& path, bool* storable, OSAModeFlags modeFlags, OSAID& id) override;
    OSStatus dispose(OSAID id) override;
    OSStatus execute(OSAID script, OSAID context, OSAModeFlags modeFlags, OSAID& id) override;
    OSStatus executeEvent(const AEDesc& event, OSAID context, OSAModeFlags modeFlags, OSAID& id) override;
    OSStatus getProperty(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID& id) override;

private:
    OSStatus call(const std::string& name, const AEDesc& event, OSAID& id);

    OSAID mScript = 0;
    OSAID mAppleScriptObject = 0;
};

} // namespace quoddle::test
