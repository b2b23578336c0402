// SPDX-License-Identifier: MIT
// The interface of a scripting language: one virtual operation for each call of OSA.h.
// Decision: an operation that a component does not override returns badComponentSelector, so a component implements only what it has.
// The contract of all operations: any thread may call; the component has its own lock and releases it around callbacks. Errors are
// statuses; nothing throws. Results are written only with status 0. An unknown identifier gives -1751; 0 stands for the null script only
// where a context is expected. A script that fails gives -1753, and its error is kept for scriptError. Returned identifiers belong to the
// caller, who disposes of them.
#pragma once

#include "platform/osa/OSATypes.h"

#include <functional>

namespace quoddle {

class ScriptingComponent {
public:
    virtual ~ScriptingComponent() = default;

    virtual std::int32_t version() const { return 0; }
    virtual OSStatus scriptingComponentName(AEDesc& name) { return unsupported(name); }

    virtual OSStatus load(const AEDesc& scriptData, OSAModeFlags modeFlags, OSAID& result) {
        return unsupported(scriptData, modeFlags, result);
    }
    /// `storable` (may be null) becomes whether the file can be written back. -43 and other file statuses.
    virtual OSStatus loadFile(const std::string& path, bool* storable, OSAModeFlags modeFlags, OSAID& result) {
        return unsupported(path, storable, modeFlags, result);
    }
    virtual OSStatus store(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& result) {
        return unsupported(id, type, modeFlags, result);
    }
    virtual OSStatus storeFile(OSAID id, DescType type, OSAModeFlags modeFlags, const std::string& path) {
        return unsupported(id, type, modeFlags, path);
    }
    virtual OSStatus dispose(OSAID id) { return unsupported(id); }
    virtual OSStatus copyID(OSAID from, OSAID& to) { return unsupported(from, to); }
    virtual OSStatus copyScript(OSAID from, OSAID& to) { return unsupported(from, to); }

    /// `id` is the script or context to compile into, 0 for a new one, and becomes the result.
    virtual OSStatus compile(const AEDesc& source, OSAModeFlags modeFlags, OSAID& id) { return unsupported(source, modeFlags, id); }
    virtual OSStatus makeContext(const AEDesc& name, OSAID parent, OSAID& result) { return unsupported(name, parent, result); }
    /// For this and the combined calls a result of 0 means that the script had no result.
    virtual OSStatus execute(OSAID script, OSAID context, OSAModeFlags modeFlags, OSAID& result) {
        return unsupported(script, context, modeFlags, result);
    }
    virtual OSStatus executeEvent(const AEDesc& event, OSAID context, OSAModeFlags modeFlags, OSAID& result) {
        return unsupported(event, context, modeFlags, result);
    }
    /// Executes the event and puts the result or the error into the reply.
    virtual OSStatus doEvent(const AEDesc& event, OSAID context, OSAModeFlags modeFlags, AEDesc& reply) {
        return unsupported(event, context, modeFlags, reply);
    }

    virtual OSStatus display(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& text) {
        return unsupported(id, type, modeFlags, text);
    }
    virtual OSStatus copyDisplayString(OSAID id, OSAModeFlags modeFlags, OSAAttributedText& text) {
        return unsupported(id, modeFlags, text);
    }
    virtual OSStatus getSource(OSAID id, DescType type, AEDesc& source) { return unsupported(id, type, source); }
    virtual OSStatus copySourceString(OSAID id, OSAModeFlags modeFlags, OSAAttributedText& text) {
        return unsupported(id, modeFlags, text);
    }
    virtual OSStatus coerceFromDesc(const AEDesc& desc, OSAModeFlags modeFlags, OSAID& result) {
        return unsupported(desc, modeFlags, result);
    }
    virtual OSStatus coerceToDesc(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& result) {
        return unsupported(id, type, modeFlags, result);
    }

    virtual OSStatus getProperty(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID& result) {
        return unsupported(modeFlags, context, name, result);
    }
    /// A value of 0 removes the property.
    virtual OSStatus setProperty(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID value) {
        return unsupported(modeFlags, context, name, value);
    }
    virtual OSStatus getPropertyNames(OSAModeFlags modeFlags, OSAID context, AEDesc& names) {
        return unsupported(modeFlags, context, names);
    }
    /// The name is a text, or an "evnt" descriptor with the codes of class and ID, 8 bytes.
    virtual OSStatus getHandler(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID& result) {
        return unsupported(modeFlags, context, name, result);
    }
    /// A handler of 0 removes the handler.
    virtual OSStatus setHandler(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID handler) {
        return unsupported(modeFlags, context, name, handler);
    }
    virtual OSStatus getHandlerNames(OSAModeFlags modeFlags, OSAID context, AEDesc& names) {
        return unsupported(modeFlags, context, names);
    }

    virtual OSStatus getScriptInfo(OSAID id, FourCharCode selector, std::int32_t& info) { return unsupported(id, selector, info); }
    virtual OSStatus setScriptInfo(OSAID id, FourCharCode selector, std::int32_t info) { return unsupported(id, selector, info); }
    /// For the selectors whose value is a file ("fref"): an absolute path.
    virtual OSStatus getScriptFile(OSAID id, FourCharCode selector, std::string& path) { return unsupported(id, selector, path); }
    virtual OSStatus setScriptFile(OSAID id, FourCharCode selector, const std::string& path) { return unsupported(id, selector, path); }
    /// A part of the last error that was reported as -1753.
    virtual OSStatus scriptError(FourCharCode selector, DescType type, AEDesc& result) { return unsupported(selector, type, result); }

    virtual OSStatus startRecording(OSAID& id) { return unsupported(id); }
    virtual OSStatus stopRecording(OSAID id) { return unsupported(id); }
    virtual OSStatus setDefaultTarget(const AEDesc& target) { return unsupported(target); }

    virtual OSStatus getCallbacks(OSACallbacks& callbacks) { return unsupported(callbacks); }
    /// Calls `change` with the present callbacks. No other thread sees a partial change.
    virtual OSStatus changeCallbacks(const std::function<void(OSACallbacks& callbacks)>& change) { return unsupported(change); }

    virtual OSStatus copySourceAttributes(std::vector<OSASourceStyle>& styles) { return unsupported(styles); }
    virtual OSStatus setSourceAttributes(const std::vector<OSASourceStyle>& styles) { return unsupported(styles); }
    virtual OSStatus getSourceStyleNames(OSAModeFlags modeFlags, AEDesc& names) { return unsupported(modeFlags, names); }

    /// For the generic component only.
    virtual OSStatus getDefaultScriptingComponent(OSType& subType) { return unsupported(subType); }
    virtual OSStatus setDefaultScriptingComponent(OSType subType) { return unsupported(subType); }
    virtual OSStatus getScriptingComponent(OSType subType, ComponentInstance& instance) { return unsupported(subType, instance); }
    virtual OSStatus getScriptingComponentFromStored(const AEDesc& scriptData, OSType& subType) { return unsupported(scriptData, subType); }
    virtual OSStatus genericToRealID(OSAID& id, ComponentInstance& exact) { return unsupported(id, exact); }
    virtual OSStatus realToGenericID(OSAID& id, ComponentInstance exact) { return unsupported(id, exact); }

private:
    template<class... Unused>
    static OSStatus unsupported(const Unused&...) {
        return badComponentSelector;
    }
};

} // namespace quoddle
