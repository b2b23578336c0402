// SPDX-License-Identifier: MIT
#include "platform/osa/OSA.h"

#include <new>

namespace quoddle {

namespace {

// Finds the instance, keeps it alive for the call and forwards. Callers only know status numbers, so a lack of memory becomes one.
template<class... Parameters, class... Arguments>
OSStatus call(ComponentInstance instance, OSStatus (ScriptingComponent::*operation)(Parameters...), Arguments&&... arguments) {
    std::shared_ptr<ScriptingComponent> component = ComponentForInstance(instance);
    try {
        return component ? (component.get()->*operation)(std::forward<Arguments>(arguments)...) : badComponentInstance;
    } catch (const std::bad_alloc&) {
        return memFullErr;
    }
}

template<class Proc>
OSStatus getCallback(ComponentInstance instance, OSACallback<Proc> OSACallbacks::*which, Proc& proc, void*& refCon) {
    OSACallbacks callbacks;
    OSStatus status = call(instance, &ScriptingComponent::getCallbacks, callbacks);
    if (status == noErr) {
        proc = (callbacks.*which).proc;
        refCon = (callbacks.*which).refCon;
    }
    return status;
}

template<class Proc>
OSStatus setCallback(ComponentInstance instance, OSACallback<Proc> OSACallbacks::*which, Proc proc, void* refCon) {
    return call(instance, &ScriptingComponent::changeCallbacks, [=](OSACallbacks& callbacks) { callbacks.*which = {proc, refCon}; });
}

} // namespace

OSStatus OSAScriptingComponentName(ComponentInstance instance, AEDesc& name) {
    return call(instance, &ScriptingComponent::scriptingComponentName, name);
}

OSStatus OSALoad(ComponentInstance instance, const AEDesc& scriptData, OSAModeFlags modeFlags, OSAID& resultingScriptID) {
    return call(instance, &ScriptingComponent::load, scriptData, modeFlags, resultingScriptID);
}

OSStatus OSALoadFile(ComponentInstance instance, const std::string& path, bool* storable, OSAModeFlags modeFlags,
                     OSAID& resultingScriptID) {
    return call(instance, &ScriptingComponent::loadFile, path, storable, modeFlags, resultingScriptID);
}

OSStatus OSAStore(ComponentInstance instance, OSAID scriptID, DescType desiredType, OSAModeFlags modeFlags, AEDesc& scriptData) {
    return call(instance, &ScriptingComponent::store, scriptID, desiredType, modeFlags, scriptData);
}

OSStatus OSAStoreFile(ComponentInstance instance, OSAID scriptID, DescType desiredType, OSAModeFlags modeFlags, const std::string& path) {
    return call(instance, &ScriptingComponent::storeFile, scriptID, desiredType, modeFlags, path);
}

OSStatus OSADispose(ComponentInstance instance, OSAID scriptID) {
    return call(instance, &ScriptingComponent::dispose, scriptID);
}

OSStatus OSACopyID(ComponentInstance instance, OSAID fromID, OSAID& toID) {
    return call(instance, &ScriptingComponent::copyID, fromID, toID);
}

OSStatus OSACopyScript(ComponentInstance instance, OSAID fromID, OSAID& toID) {
    return call(instance, &ScriptingComponent::copyScript, fromID, toID);
}

OSStatus OSACompile(ComponentInstance instance, const AEDesc& sourceData, OSAModeFlags modeFlags, OSAID& previousAndResultingScriptID) {
    return call(instance, &ScriptingComponent::compile, sourceData, modeFlags, previousAndResultingScriptID);
}

OSStatus OSAMakeContext(ComponentInstance instance, const AEDesc& contextName, OSAID parentContext, OSAID& resultingContextID) {
    return call(instance, &ScriptingComponent::makeContext, contextName, parentContext, resultingContextID);
}

OSStatus OSAExecute(ComponentInstance instance, OSAID compiledScriptID, OSAID contextID, OSAModeFlags modeFlags,
                    OSAID& resultingScriptValueID) {
    return call(instance, &ScriptingComponent::execute, compiledScriptID, contextID, modeFlags, resultingScriptValueID);
}

OSStatus OSAExecuteEvent(ComponentInstance instance, const AEDesc& event, OSAID contextID, OSAModeFlags modeFlags,
                         OSAID& resultingScriptValueID) {
    return call(instance, &ScriptingComponent::executeEvent, event, contextID, modeFlags, resultingScriptValueID);
}

OSStatus OSADoEvent(ComponentInstance instance, const AEDesc& event, OSAID contextID, OSAModeFlags modeFlags, AEDesc& reply) {
    return call(instance, &ScriptingComponent::doEvent, event, contextID, modeFlags, reply);
}

OSStatus OSADisplay(ComponentInstance instance, OSAID scriptValueID, DescType desiredType, OSAModeFlags modeFlags, AEDesc& resultingText) {
    return call(instance, &ScriptingComponent::display, scriptValueID, desiredType, modeFlags, resultingText);
}

OSStatus OSACopyDisplayString(ComponentInstance instance, OSAID scriptID, OSAModeFlags modeFlags, OSAAttributedText& result) {
    return call(instance, &ScriptingComponent::copyDisplayString, scriptID, modeFlags, result);
}

OSStatus OSAGetSource(ComponentInstance instance, OSAID scriptID, DescType desiredType, AEDesc& resultingSourceData) {
    return call(instance, &ScriptingComponent::getSource, scriptID, desiredType, resultingSourceData);
}

OSStatus OSACopySourceString(ComponentInstance instance, OSAID scriptID, OSAModeFlags modeFlags, OSAAttributedText& result) {
    return call(instance, &ScriptingComponent::copySourceString, scriptID, modeFlags, result);
}

OSStatus OSACoerceFromDesc(ComponentInstance instance, const AEDesc& scriptData, OSAModeFlags modeFlags, OSAID& resultingScriptID) {
    return call(instance, &ScriptingComponent::coerceFromDesc, scriptData, modeFlags, resultingScriptID);
}

OSStatus OSACoerceToDesc(ComponentInstance instance, OSAID scriptID, DescType desiredType, OSAModeFlags modeFlags, AEDesc& result) {
    return call(instance, &ScriptingComponent::coerceToDesc, scriptID, desiredType, modeFlags, result);
}

OSStatus OSAGetProperty(ComponentInstance instance, OSAModeFlags modeFlags, OSAID contextID, const AEDesc& variableName,
                        OSAID& resultingScriptValueID) {
    return call(instance, &ScriptingComponent::getProperty, modeFlags, contextID, variableName, resultingScriptValueID);
}

OSStatus OSASetProperty(ComponentInstance instance, OSAModeFlags modeFlags, OSAID contextID, const AEDesc& variableName,
                        OSAID scriptValueID) {
    return call(instance, &ScriptingComponent::setProperty, modeFlags, contextID, variableName, scriptValueID);
}

OSStatus OSAGetPropertyNames(ComponentInstance instance, OSAModeFlags modeFlags, OSAID contextID, AEDesc& resultingNames) {
    return call(instance, &ScriptingComponent::getPropertyNames, modeFlags, contextID, resultingNames);
}

OSStatus OSAGetHandler(ComponentInstance instance, OSAModeFlags modeFlags, OSAID contextID, const AEDesc& handlerName,
                       OSAID& resultingScriptID) {
    return call(instance, &ScriptingComponent::getHandler, modeFlags, contextID, handlerName, resultingScriptID);
}

OSStatus OSASetHandler(ComponentInstance instance, OSAModeFlags modeFlags, OSAID contextID, const AEDesc& handlerName,
                       OSAID compiledScriptID) {
    return call(instance, &ScriptingComponent::setHandler, modeFlags, contextID, handlerName, compiledScriptID);
}

OSStatus OSAGetHandlerNames(ComponentInstance instance, OSAModeFlags modeFlags, OSAID contextID, AEDesc& resultingNames) {
    return call(instance, &ScriptingComponent::getHandlerNames, modeFlags, contextID, resultingNames);
}

OSStatus OSAGetScriptInfo(ComponentInstance instance, OSAID scriptID, FourCharCode selector, std::int32_t& result) {
    return call(instance, &ScriptingComponent::getScriptInfo, scriptID, selector, result);
}

OSStatus OSASetScriptInfo(ComponentInstance instance, OSAID scriptID, FourCharCode selector, std::int32_t value) {
    return call(instance, &ScriptingComponent::setScriptInfo, scriptID, selector, value);
}

OSStatus OSAGetScriptInfo(ComponentInstance instance, OSAID scriptID, FourCharCode selector, std::string& path) {
    return call(instance, &ScriptingComponent::getScriptFile, scriptID, selector, path);
}

OSStatus OSASetScriptInfo(ComponentInstance instance, OSAID scriptID, FourCharCode selector, const std::string& path) {
    return call(instance, &ScriptingComponent::setScriptFile, scriptID, selector, path);
}

OSStatus OSAScriptError(ComponentInstance instance, FourCharCode selector, DescType desiredType, AEDesc& resultingErrorDescription) {
    return call(instance, &ScriptingComponent::scriptError, selector, desiredType, resultingErrorDescription);
}

OSStatus OSAStartRecording(ComponentInstance instance, OSAID& compiledScriptToModifyID) {
    return call(instance, &ScriptingComponent::startRecording, compiledScriptToModifyID);
}

OSStatus OSAStopRecording(ComponentInstance instance, OSAID compiledScriptID) {
    return call(instance, &ScriptingComponent::stopRecording, compiledScriptID);
}

OSStatus OSASetDefaultTarget(ComponentInstance instance, const AEDesc& target) {
    return call(instance, &ScriptingComponent::setDefaultTarget, target);
}

OSStatus ASCopySourceAttributes(ComponentInstance instance, std::vector<OSASourceStyle>& resultingSourceAttributes) {
    return call(instance, &ScriptingComponent::copySourceAttributes, resultingSourceAttributes);
}

OSStatus ASSetSourceAttributes(ComponentInstance instance, const std::vector<OSASourceStyle>& sourceAttributes) {
    return call(instance, &ScriptingComponent::setSourceAttributes, sourceAttributes);
}

OSStatus ASGetSourceStyleNames(ComponentInstance instance, OSAModeFlags modeFlags, AEDesc& resultingSourceStyleNamesList) {
    return call(instance, &ScriptingComponent::getSourceStyleNames, modeFlags, resultingSourceStyleNamesList);
}

OSStatus OSAGetDefaultScriptingComponent(ComponentInstance generic, OSType& scriptingSubType) {
    return call(generic, &ScriptingComponent::getDefaultScriptingComponent, scriptingSubType);
}

OSStatus OSASetDefaultScriptingComponent(ComponentInstance generic, OSType scriptingSubType) {
    return call(generic, &ScriptingComponent::setDefaultScriptingComponent, scriptingSubType);
}

OSStatus OSAGetScriptingComponent(ComponentInstance generic, OSType scriptingSubType, ComponentInstance& scriptingInstance) {
    return call(generic, &ScriptingComponent::getScriptingComponent, scriptingSubType, scriptingInstance);
}

OSStatus OSAGetScriptingComponentFromStored(ComponentInstance generic, const AEDesc& scriptData, OSType& scriptingSubType) {
    return call(generic, &ScriptingComponent::getScriptingComponentFromStored, scriptData, scriptingSubType);
}

OSStatus OSAGenericToRealID(ComponentInstance generic, OSAID& scriptID, ComponentInstance& exactScriptingInstance) {
    return call(generic, &ScriptingComponent::genericToRealID, scriptID, exactScriptingInstance);
}

OSStatus OSARealToGenericID(ComponentInstance generic, OSAID& scriptID, ComponentInstance exactScriptingInstance) {
    return call(generic, &ScriptingComponent::realToGenericID, scriptID, exactScriptingInstance);
}

OSStatus OSACompileExecute(ComponentInstance instance, const AEDesc& sourceData, OSAID contextID, OSAModeFlags modeFlags,
                           OSAID& resultingScriptValueID) {
    OSAID script = 0;
    OSStatus status = OSACompile(instance, sourceData, modeFlags, script);
    if (status != noErr)
        return status;
    status = OSAExecute(instance, script, contextID, modeFlags, resultingScriptValueID);
    OSADispose(instance, script);
    return status;
}

OSStatus OSADoScript(ComponentInstance instance, const AEDesc& sourceData, OSAID contextID, DescType desiredType, OSAModeFlags modeFlags,
                     AEDesc& resultingText) {
    OSAID value = 0;
    OSStatus status = OSACompileExecute(instance, sourceData, contextID, modeFlags, value);
    if (status != noErr)
        return status;
    if (value == 0) {
        resultingText = AEDesc();
        return noErr;
    }
    status = OSADisplay(instance, value, desiredType, modeFlags, resultingText);
    OSADispose(instance, value);
    return status;
}

OSStatus OSAGetActiveProc(ComponentInstance instance, OSAActiveProc& activeProc, void*& refCon) {
    return getCallback(instance, &OSACallbacks::active, activeProc, refCon);
}

OSStatus OSASetActiveProc(ComponentInstance instance, OSAActiveProc activeProc, void* refCon) {
    return setCallback(instance, &OSACallbacks::active, activeProc, refCon);
}

OSStatus OSAGetSendProc(ComponentInstance instance, OSASendProc& sendProc, void*& refCon) {
    return getCallback(instance, &OSACallbacks::send, sendProc, refCon);
}

OSStatus OSASetSendProc(ComponentInstance instance, OSASendProc sendProc, void* refCon) {
    return setCallback(instance, &OSACallbacks::send, sendProc, refCon);
}

OSStatus OSAGetResumeDispatchProc(ComponentInstance instance, OSAResumeDispatchProc& resumeDispatchProc, void*& refCon) {
    return getCallback(instance, &OSACallbacks::resumeDispatch, resumeDispatchProc, refCon);
}

OSStatus OSASetResumeDispatchProc(ComponentInstance instance, OSAResumeDispatchProc resumeDispatchProc, void* refCon) {
    return setCallback(instance, &OSACallbacks::resumeDispatch, resumeDispatchProc, refCon);
}

} // namespace quoddle
