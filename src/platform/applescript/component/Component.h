// SPDX-License-Identifier: MIT
// One instance of the AppleScript component: a machine behind the calls of the scripting architecture.
//
// Identifiers are handles: each keeps its value alive until it is disposed of. Every call takes the interpreter lock; while a script waits
// in a callback, a call from another thread runs on a stack of its own. A script that fails leaves its error for scriptError(); calls that
// fail otherwise only answer their status.
#pragma once

#include "platform/applescript/compiler/Compiler.h"
#include "platform/applescript/component/Descriptors.h"
#include "platform/applescript/component/InterpreterLock.h"
#include "platform/applescript/syntax/Printer.h"
#include "platform/applescript/syntax/UsedLibraries.h"
#include "platform/osa/ScriptingComponent.h"

namespace quoddle::component {

using machine::Argument;
using machine::EventName;
using machine::ExecutionContext;
using machine::Machine;
using machine::Script;
using machine::ScriptError;
using machine::Value;

/// A hash of a value and of all it holds: items, fields, the properties of script objects. Two fingerprints of one value, taken in one
/// process while the value is alive, are equal when nothing in it has changed between them. The trees and the code of handlers are left
/// out, because a run cannot change them. Takes memory in proportion to the number of objects, none of it in the heap of the machine.
std::uint64_t fingerprintOf(Value value);

class Component final : public ScriptingComponent {
public:
    Component();
    ~Component() override;

    std::int32_t version() const override { return 0x00020008; }
    OSStatus scriptingComponentName(AEDesc& name) override;

    OSStatus load(const AEDesc& scriptData, OSAModeFlags modeFlags, OSAID& result) override;
    OSStatus loadFile(const std::string& path, bool* storable, OSAModeFlags modeFlags, OSAID& result) override;
    OSStatus store(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& result) override;
    OSStatus storeFile(OSAID id, DescType type, OSAModeFlags modeFlags, const std::string& path) override;
    OSStatus dispose(OSAID id) override;
    OSStatus copyID(OSAID from, OSAID& to) override;
    OSStatus copyScript(OSAID from, OSAID& to) override;

    OSStatus compile(const AEDesc& source, OSAModeFlags modeFlags, OSAID& id) override;
    OSStatus makeContext(const AEDesc& name, OSAID parent, OSAID& result) override;
    OSStatus execute(OSAID script, OSAID context, OSAModeFlags modeFlags, OSAID& result) override;
    OSStatus executeEvent(const AEDesc& event, OSAID context, OSAModeFlags modeFlags, OSAID& result) override;
    OSStatus doEvent(const AEDesc& event, OSAID context, OSAModeFlags modeFlags, AEDesc& reply) override;

    OSStatus display(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& text) override;
    OSStatus copyDisplayString(OSAID id, OSAModeFlags modeFlags, OSAAttributedText& text) override;
    OSStatus getSource(OSAID id, DescType type, AEDesc& source) override;
    OSStatus copySourceString(OSAID id, OSAModeFlags modeFlags, OSAAttributedText& text) override;
    OSStatus coerceFromDesc(const AEDesc& desc, OSAModeFlags modeFlags, OSAID& result) override;
    OSStatus coerceToDesc(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& result) override;

    OSStatus getProperty(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID& result) override;
    OSStatus setProperty(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID value) override;
    OSStatus getPropertyNames(OSAModeFlags modeFlags, OSAID context, AEDesc& names) override;
    OSStatus getHandler(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID& result) override;
    OSStatus setHandler(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID handler) override;
    OSStatus getHandlerNames(OSAModeFlags modeFlags, OSAID context, AEDesc& names) override;

    OSStatus getScriptInfo(OSAID id, FourCharCode selector, std::int32_t& info) override;
    OSStatus setScriptInfo(OSAID id, FourCharCode selector, std::int32_t info) override;
    OSStatus getScriptFile(OSAID id, FourCharCode selector, std::string& path) override;
    OSStatus setScriptFile(OSAID id, FourCharCode selector, const std::string& path) override;
    OSStatus scriptError(FourCharCode selector, DescType type, AEDesc& result) override;
    OSStatus startRecording(OSAID& id) override;
    OSStatus stopRecording(OSAID id) override;
    OSStatus setDefaultTarget(const AEDesc& target) override;

    OSStatus getCallbacks(OSACallbacks& callbacks) override;
    OSStatus changeCallbacks(const std::function<void(OSACallbacks& callbacks)>& change) override;

    OSStatus copySourceAttributes(std::vector<OSASourceStyle>& styles) override;
    OSStatus setSourceAttributes(const std::vector<OSASourceStyle>& styles) override;
    OSStatus getSourceStyleNames(OSAModeFlags modeFlags, AEDesc& names) override;

private:
    static constexpr std::size_t kMaximumFileSize = std::size_t(128) << 20;
    /// Holds the lock, and gives the thread a stack, while it is inside the component.
    class Entry;
    /// Gives the lock up during a callback.
    class Callback;
    struct Slot {
        Value value;
        std::string location; // file of the script ("fref"); empty when unknown
        // at the time when its changes began to be watched ("modi"); nullopt when they are not
        std::optional<std::uint64_t> fingerprint = {};
    };
    /// The last error of a script, which outlives the error in the machine.
    struct LastError {
        ScriptError error;
        std::size_t start = 0, end = 0;
        bool hasRange = false;
    };
    struct CompileFailure {
        OSStatus number = noErr;
        std::u16string message;
        std::size_t start = 0, end = 0;
    };
    /// Notes the location of the script that runs on this thread, for "path to me".
    class Running;

    OSAID keep(Value value, std::string location = {});
    const Slot* find(OSAID id) const;
    /// Null, with the status set, when there is no such identifier or its value is not a script.
    Script* scriptOf(OSAID id, OSStatus& status) const;
    OSStatus failed();
    OSStatus failedCompile(const CompileFailure& wrong);
    /// Sets the error for scriptError() when a call fails without any script.
    OSStatus refused(OSStatus number, std::u16string_view message);
    void locate(LastError& error) const;
    /// Failure with the number in `wrong` when the source does not compile; failure with noErr there when making the script raised an error
    /// in the machine. `context`, when given, is what the script's definitions are to be moved to; they know its names, and it gets theirs.
    Value scriptFromSource(std::u16string_view source, CompileFailure& wrong, Script* context = nullptr);
    /// The names of a script that others are added to; at first those of its slots that are no handlers.
    static compiler::SharedNames& sharedNamesOf(Script& script);
    static void share(Value name, compiler::SharedNames& names);
    /// Moves the definitions of a script that was made for it to a context. False when an error was raised.
    bool addDefinitions(Script& context, Script& added);
    OSStatus compileSource(std::u16string_view source, OSAModeFlags modeFlags, OSAID& id);
    /// Compiles a source and adds its definitions to a script.
    OSStatus addSource(std::u16string_view source, OSAID id);
    OSStatus finish(Value result, OSAID& id);
    /// Failure when an error was raised. `handled` tells whether the script has a handler for the event.
    Value runEvent(Script* script, const AEDesc& event, bool& handled);
    Value runSubroutine(Script* script, const AEDesc& event);
    std::u16string displayed(Value value, OSAModeFlags modeFlags);
    OSStatus sourceOf(OSAID id, std::u16string& source, std::vector<syntax::PrintedRun>* runs);
    Value keyFrom(const AEDesc& name, OSStatus& status) const;

    // Commands that work on scripts, and the file of the running script: ScriptCommands.cpp
    bool perform(const EventName& command, Value direct, std::span<const Argument> arguments, Value& result);
    Value loadScript(Value direct, std::span<const Argument> arguments);
    Value storeScript(Value direct, std::span<const Argument> arguments);
    Value scriptDefinedLast(Script& script);
    Value runScript(Value direct, std::span<const Argument> arguments);
    Value scriptFromFile(const std::string& path);
    /// See Machine::Host::library.
    Value library(std::u16string_view name);
    /// Whether a library that a `use` statement names is there, in the version that is wanted. Raises no error.
    bool hasLibrary(const syntax::UsedLibrary& used);
    Value writeScript(Script* script, const std::string& path);
    bool mayReplace(const std::string& path, Value replacing);
    std::optional<std::string> pathOf(Value file);
    Value fileFailed(OSStatus status, const std::string& path);
    /// Adds the location of the running script to a command about "me" or the bundle around it.
    void addLocation(AEDesc& event, Value direct);

    OSStatus active();
    void pause(Wait& wait, std::chrono::steady_clock::time_point until);
    Value send(const EventName& command, Value direct, std::span<const Argument> arguments, bool continues);
    /// nullopt, with an error raised, when a parameter has no descriptor.
    std::optional<AEDesc> eventFor(const EventName& command, Value direct, std::span<const Argument> arguments);
    Value replyValue(OSStatus status, const AEDesc& reply, const EventName& command, Value direct);

    InterpreterLock mLock;
    Machine mMachine;
    std::vector<ExecutionContext*> mIdleContexts;
    std::unordered_map<OSAID, Slot> mSlots;
    std::unordered_map<std::string, Value> mLibraries; // by file; undefined while it is loaded
    std::string mLocation; // location of the script that runs on the thread that holds the lock; empty when unknown
    OSAID mLastID = 0;
    Value mLastResult;
    LastError mLastError;
    bool mHasError = false;
    AEDesc mDefaultTarget;
    OSACallbacks mCallbacks;
    std::vector<OSASourceStyle> mStyles;
    /// Source ranges of the nodes of compiled sources, kept while a script that was made from them lives.
    std::unordered_map<const ObjectStore*, std::pair<std::shared_ptr<syntax::SourceMap>, std::weak_ptr<ObjectStore>>> mSourceMaps;
    static constexpr std::size_t kFewSourceMaps = 64;
    std::size_t mMostSourceMaps = kFewSourceMaps;
};

} // namespace quoddle::component
