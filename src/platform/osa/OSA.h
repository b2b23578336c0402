// SPDX-License-Identifier: MIT
// The calls of the scripting architecture under their own names. Each finds the instance and forwards to its ScriptingComponent, whose
// comments are the contract; badComponentInstance when the instance is not open. Files are absolute UTF-8 paths.
#pragma once

#include "platform/osa/ComponentRegistry.h"
#include "platform/osa/OSATypes.h"

namespace quoddle {

OSStatus OSAScriptingComponentName(ComponentInstance instance, AEDesc& name);
OSStatus OSALoad(ComponentInstance instance, const AEDesc& scriptData, OSAModeFlags modeFlags, OSAID& resultingScriptID);
OSStatus OSALoadFile(ComponentInstance instance, const std::string& path, bool* storable, OSAModeFlags modeFlags, OSAID& resultingScriptID);
OSStatus OSAStore(ComponentInstance instance, OSAID scriptID, DescType desiredType, OSAModeFlags modeFlags, AEDesc& scriptData);
OSStatus OSAStoreFile(ComponentInstance instance, OSAID scriptID, DescType desiredType, OSAModeFlags modeFlags, const std::string& path);
OSStatus OSADispose(ComponentInstance instance, OSAID scriptID);
OSStatus OSACopyID(ComponentInstance instance, OSAID fromID, OSAID& toID);
OSStatus OSACopyScript(ComponentInstance instance, OSAID fromID, OSAID& toID);

OSStatus OSACompile(ComponentInstance instance, const AEDesc& sourceData, OSAModeFlags modeFlags, OSAID& previousAndResultingScriptID);
OSStatus OSAMakeContext(ComponentInstance instance, const AEDesc& contextName, OSAID parentContext, OSAID& resultingContextID);
OSStatus OSAExecute(ComponentInstance instance, OSAID compiledScriptID, OSAID contextID, OSAModeFlags modeFlags,
                    OSAID& resultingScriptValueID);
OSStatus OSAExecuteEvent(ComponentInstance instance, const AEDesc& event, OSAID contextID, OSAModeFlags modeFlags,
                         OSAID& resultingScriptValueID);
OSStatus OSADoEvent(ComponentInstance instance, const AEDesc& event, OSAID contextID, OSAModeFlags modeFlags, AEDesc& reply);
/// Compiles and executes the source and disposes of the script.
OSStatus OSACompileExecute(ComponentInstance instance, const AEDesc& sourceData, OSAID contextID, OSAModeFlags modeFlags,
                           OSAID& resultingScriptValueID);
/// As OSACompileExecute(), with the result as text.
OSStatus OSADoScript(ComponentInstance instance, const AEDesc& sourceData, OSAID contextID, DescType desiredType, OSAModeFlags modeFlags,
                     AEDesc& resultingText);

OSStatus OSADisplay(ComponentInstance instance, OSAID scriptValueID, DescType desiredType, OSAModeFlags modeFlags, AEDesc& resultingText);
OSStatus OSACopyDisplayString(ComponentInstance instance, OSAID scriptID, OSAModeFlags modeFlags, OSAAttributedText& result);
OSStatus OSAGetSource(ComponentInstance instance, OSAID scriptID, DescType desiredType, AEDesc& resultingSourceData);
OSStatus OSACopySourceString(ComponentInstance instance, OSAID scriptID, OSAModeFlags modeFlags, OSAAttributedText& result);
OSStatus OSACoerceFromDesc(ComponentInstance instance, const AEDesc& scriptData, OSAModeFlags modeFlags, OSAID& resultingScriptID);
OSStatus OSACoerceToDesc(ComponentInstance instance, OSAID scriptID, DescType desiredType, OSAModeFlags modeFlags, AEDesc& result);

OSStatus OSAGetProperty(ComponentInstance instance, OSAModeFlags modeFlags, OSAID contextID, const AEDesc& variableName,
                        OSAID& resultingScriptValueID);
OSStatus OSASetProperty(ComponentInstance instance, OSAModeFlags modeFlags, OSAID contextID, const AEDesc& variableName,
                        OSAID scriptValueID);
OSStatus OSAGetPropertyNames(ComponentInstance instance, OSAModeFlags modeFlags, OSAID contextID, AEDesc& resultingNames);
OSStatus OSAGetHandler(ComponentInstance instance, OSAModeFlags modeFlags, OSAID contextID, const AEDesc& handlerName,
                       OSAID& resultingScriptID);
OSStatus OSASetHandler(ComponentInstance instance, OSAModeFlags modeFlags, OSAID contextID, const AEDesc& handlerName,
                       OSAID compiledScriptID);
OSStatus OSAGetHandlerNames(ComponentInstance instance, OSAModeFlags modeFlags, OSAID contextID, AEDesc& resultingNames);

OSStatus OSAGetScriptInfo(ComponentInstance instance, OSAID scriptID, FourCharCode selector, std::int32_t& result);
OSStatus OSASetScriptInfo(ComponentInstance instance, OSAID scriptID, FourCharCode selector, std::int32_t value);
/// For the selectors whose value is a file ("fref").
OSStatus OSAGetScriptInfo(ComponentInstance instance, OSAID scriptID, FourCharCode selector, std::string& path);
OSStatus OSASetScriptInfo(ComponentInstance instance, OSAID scriptID, FourCharCode selector, const std::string& path);
OSStatus OSAScriptError(ComponentInstance instance, FourCharCode selector, DescType desiredType, AEDesc& resultingErrorDescription);

OSStatus OSAStartRecording(ComponentInstance instance, OSAID& compiledScriptToModifyID);
OSStatus OSAStopRecording(ComponentInstance instance, OSAID compiledScriptID);
OSStatus OSASetDefaultTarget(ComponentInstance instance, const AEDesc& target);

OSStatus OSAGetActiveProc(ComponentInstance instance, OSAActiveProc& activeProc, void*& refCon);
OSStatus OSASetActiveProc(ComponentInstance instance, OSAActiveProc activeProc, void* refCon);
OSStatus OSAGetSendProc(ComponentInstance instance, OSASendProc& sendProc, void*& refCon);
OSStatus OSASetSendProc(ComponentInstance instance, OSASendProc sendProc, void* refCon);
OSStatus OSAGetResumeDispatchProc(ComponentInstance instance, OSAResumeDispatchProc& resumeDispatchProc, void*& refCon);
OSStatus OSASetResumeDispatchProc(ComponentInstance instance, OSAResumeDispatchProc resumeDispatchProc, void* refCon);

OSStatus ASCopySourceAttributes(ComponentInstance instance, std::vector<OSASourceStyle>& resultingSourceAttributes);
OSStatus ASSetSourceAttributes(ComponentInstance instance, const std::vector<OSASourceStyle>& sourceAttributes);
/// The result is a list of texts.
OSStatus ASGetSourceStyleNames(ComponentInstance instance, OSAModeFlags modeFlags, AEDesc& resultingSourceStyleNamesList);

/// The following calls are for instances of the generic component.
OSStatus OSAGetDefaultScriptingComponent(ComponentInstance generic, OSType& scriptingSubType);
OSStatus OSASetDefaultScriptingComponent(ComponentInstance generic, OSType scriptingSubType);
/// Opens the component unless it is open. The instance belongs to the generic component.
OSStatus OSAGetScriptingComponent(ComponentInstance generic, OSType scriptingSubType, ComponentInstance& scriptingInstance);
/// -1752 for data that is no stored script.
OSStatus OSAGetScriptingComponentFromStored(ComponentInstance generic, const AEDesc& scriptData, OSType& scriptingSubType);
/// Replaces a generic identifier by the real component's. The generic identifier stays valid.
OSStatus OSAGenericToRealID(ComponentInstance generic, OSAID& scriptID, ComponentInstance& exactScriptingInstance);
/// Replaces a real identifier by a generic one; the real one then belongs to the generic component. -1761 when the instance is not one of
/// this generic component's.
OSStatus OSARealToGenericID(ComponentInstance generic, OSAID& scriptID, ComponentInstance exactScriptingInstance);

} // namespace quoddle
