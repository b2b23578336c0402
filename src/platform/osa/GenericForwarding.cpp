// SPDX-License-Identifier: MIT
// The generic component's operations that find the real identifiers, forward the call and make generic identifiers of the results.
#include "platform/osa/GenericComponent.h"
#include "platform/osa/OSA.h"
#include "platform/osa/StoredScript.h"

namespace quoddle {

template<class Call>
OSStatus GenericComponent::forward(const Result<Real, OSStatus>& real, Call call) {
    return real ? noted(real->instance, call(*real)) : real.error();
}

template<class Call>
OSStatus GenericComponent::forwardForNew(const Result<Real, OSStatus>& real, OSAID& result, Call call) {
    OSAID fresh = 0;
    OSStatus status = forward(real, [&](const Real& found) { return call(found, fresh); });
    if (status == noErr)
        result = adopt(real->instance, fresh);
    return status;
}

OSStatus GenericComponent::load(const AEDesc& scriptData, OSAModeFlags modeFlags, OSAID& result) {
    OSType subType;
    if (OSStatus status = getScriptingComponentFromStored(scriptData, subType))
        return status;
    return forwardForNew(open(subType), result,
                         [&](const Real& real, OSAID& id) { return OSALoad(real.instance, scriptData, modeFlags, id); });
}

OSStatus GenericComponent::loadFile(const std::string& path, bool* storable, OSAModeFlags modeFlags, OSAID& result) {
    OSType subType = 0;
    if (OSStatus status = subTypeOfStoredScriptFile(path, subType))
        return status;
    // A file without a stored script is source text, which needs the default component.
    return forwardForNew(subType ? open(subType) : openDefault(), result,
                         [&](const Real& real, OSAID& id) { return OSALoadFile(real.instance, path, storable, modeFlags, id); });
}

OSStatus GenericComponent::store(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& result) {
    return forward(find(id), [&](const Real& real) { return OSAStore(real.instance, real.id, type, modeFlags, result); });
}

OSStatus GenericComponent::storeFile(OSAID id, DescType type, OSAModeFlags modeFlags, const std::string& path) {
    return forward(find(id), [&](const Real& real) { return OSAStoreFile(real.instance, real.id, type, modeFlags, path); });
}

OSStatus GenericComponent::dispose(OSAID id) {
    auto real = find(id);
    {
        std::lock_guard lock(mMutex);
        mReals.erase(id);
    }
    return forward(real, [](const Real& found) { return OSADispose(found.instance, found.id); });
}

OSStatus GenericComponent::copyID(OSAID from, OSAID& to) {
    return forwardForNew(find(from), to, [](const Real& real, OSAID& copy) { return OSACopyID(real.instance, real.id, copy); });
}

OSStatus GenericComponent::copyScript(OSAID from, OSAID& to) {
    return forwardForNew(find(from), to, [](const Real& real, OSAID& copy) { return OSACopyScript(real.instance, real.id, copy); });
}

// Forwards a call that changes an identifier. A new identifier is adopted; a known one goes on standing for what the real component has
// made of it.
template<class Call>
OSStatus GenericComponent::forwardInPlace(OSAID& id, Call call) {
    if (id == 0)
        return forwardForNew(openDefault(), id, call);
    return forward(find(id), [&](Real real) {
        OSStatus status = call(Real(real), real.id);
        if (status == noErr) {
            std::lock_guard lock(mMutex);
            mReals[id] = real;
        }
        return status;
    });
}

OSStatus GenericComponent::compile(const AEDesc& source, OSAModeFlags modeFlags, OSAID& id) {
    return forwardInPlace(id, [&](const Real& real, OSAID& script) { return OSACompile(real.instance, source, modeFlags, script); });
}

OSStatus GenericComponent::startRecording(OSAID& id) {
    return forwardInPlace(id, [](const Real& real, OSAID& script) { return OSAStartRecording(real.instance, script); });
}

OSStatus GenericComponent::stopRecording(OSAID id) {
    return forward(find(id), [](const Real& real) { return OSAStopRecording(real.instance, real.id); });
}

OSStatus GenericComponent::makeContext(const AEDesc& name, OSAID parent, OSAID& result) {
    return forwardForNew(findContext(parent), result,
                         [&](const Real& real, OSAID& context) { return OSAMakeContext(real.instance, name, real.id, context); });
}

OSStatus GenericComponent::execute(OSAID script, OSAID context, OSAModeFlags modeFlags, OSAID& result) {
    return forwardForNew(find(script), result, [&](const Real& real, OSAID& value) {
        auto realContext = findWithin(real.instance, context);
        return realContext ? OSAExecute(real.instance, real.id, *realContext, modeFlags, value) : realContext.error();
    });
}

OSStatus GenericComponent::executeEvent(const AEDesc& event, OSAID context, OSAModeFlags modeFlags, OSAID& result) {
    return forwardForNew(findContext(context), result,
                         [&](const Real& real, OSAID& value) { return OSAExecuteEvent(real.instance, event, real.id, modeFlags, value); });
}

OSStatus GenericComponent::doEvent(const AEDesc& event, OSAID context, OSAModeFlags modeFlags, AEDesc& reply) {
    return forward(findContext(context), [&](const Real& real) { return OSADoEvent(real.instance, event, real.id, modeFlags, reply); });
}

OSStatus GenericComponent::display(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& text) {
    return forward(find(id), [&](const Real& real) { return OSADisplay(real.instance, real.id, type, modeFlags, text); });
}

OSStatus GenericComponent::copyDisplayString(OSAID id, OSAModeFlags modeFlags, OSAAttributedText& text) {
    return forward(find(id), [&](const Real& real) { return OSACopyDisplayString(real.instance, real.id, modeFlags, text); });
}

OSStatus GenericComponent::getSource(OSAID id, DescType type, AEDesc& source) {
    return forward(find(id), [&](const Real& real) { return OSAGetSource(real.instance, real.id, type, source); });
}

OSStatus GenericComponent::copySourceString(OSAID id, OSAModeFlags modeFlags, OSAAttributedText& text) {
    return forward(find(id), [&](const Real& real) { return OSACopySourceString(real.instance, real.id, modeFlags, text); });
}

OSStatus GenericComponent::coerceFromDesc(const AEDesc& desc, OSAModeFlags modeFlags, OSAID& result) {
    return forwardForNew(openDefault(), result,
                         [&](const Real& real, OSAID& value) { return OSACoerceFromDesc(real.instance, desc, modeFlags, value); });
}

OSStatus GenericComponent::coerceToDesc(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& result) {
    return forward(find(id), [&](const Real& real) { return OSACoerceToDesc(real.instance, real.id, type, modeFlags, result); });
}

OSStatus GenericComponent::getProperty(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID& result) {
    return forwardForNew(findContext(context), result,
                         [&](const Real& real, OSAID& value) { return OSAGetProperty(real.instance, modeFlags, real.id, name, value); });
}

OSStatus GenericComponent::setProperty(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID value) {
    return forward(findContext(context), [&](const Real& real) {
        auto realValue = findWithin(real.instance, value);
        return realValue ? OSASetProperty(real.instance, modeFlags, real.id, name, *realValue) : realValue.error();
    });
}

OSStatus GenericComponent::getPropertyNames(OSAModeFlags modeFlags, OSAID context, AEDesc& names) {
    return forward(findContext(context), [&](const Real& real) { return OSAGetPropertyNames(real.instance, modeFlags, real.id, names); });
}

OSStatus GenericComponent::getHandler(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID& result) {
    return forwardForNew(findContext(context), result,
                         [&](const Real& real, OSAID& handler) { return OSAGetHandler(real.instance, modeFlags, real.id, name, handler); });
}

OSStatus GenericComponent::setHandler(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID handler) {
    return forward(findContext(context), [&](const Real& real) {
        auto realHandler = findWithin(real.instance, handler);
        return realHandler ? OSASetHandler(real.instance, modeFlags, real.id, name, *realHandler) : realHandler.error();
    });
}

OSStatus GenericComponent::getHandlerNames(OSAModeFlags modeFlags, OSAID context, AEDesc& names) {
    return forward(findContext(context), [&](const Real& real) { return OSAGetHandlerNames(real.instance, modeFlags, real.id, names); });
}

OSStatus GenericComponent::getScriptInfo(OSAID id, FourCharCode selector, std::int32_t& info) {
    return forward(find(id), [&](const Real& real) { return OSAGetScriptInfo(real.instance, real.id, selector, info); });
}

OSStatus GenericComponent::setScriptInfo(OSAID id, FourCharCode selector, std::int32_t info) {
    return forward(find(id), [&](const Real& real) { return OSASetScriptInfo(real.instance, real.id, selector, info); });
}

OSStatus GenericComponent::getScriptFile(OSAID id, FourCharCode selector, std::string& path) {
    return forward(find(id), [&](const Real& real) { return OSAGetScriptInfo(real.instance, real.id, selector, path); });
}

OSStatus GenericComponent::setScriptFile(OSAID id, FourCharCode selector, const std::string& path) {
    return forward(find(id), [&](const Real& real) { return OSASetScriptInfo(real.instance, real.id, selector, path); });
}

OSStatus GenericComponent::scriptError(FourCharCode selector, DescType type, AEDesc& result) {
    std::unique_lock lock(mMutex);
    ComponentInstance failed = mLastFailed;
    lock.unlock();
    auto real = failed ? Result<Real, OSStatus>(Real{failed, 0}) : openDefault();
    // Asking for the error is no operation of its own, so its failure is not noted.
    return real ? OSAScriptError(real->instance, selector, type, result) : real.error();
}

OSStatus GenericComponent::copySourceAttributes(std::vector<OSASourceStyle>& styles) {
    return forward(openDefault(), [&](const Real& real) { return ASCopySourceAttributes(real.instance, styles); });
}

OSStatus GenericComponent::setSourceAttributes(const std::vector<OSASourceStyle>& styles) {
    return forward(openDefault(), [&](const Real& real) { return ASSetSourceAttributes(real.instance, styles); });
}

OSStatus GenericComponent::getSourceStyleNames(OSAModeFlags modeFlags, AEDesc& names) {
    return forward(openDefault(), [&](const Real& real) { return ASGetSourceStyleNames(real.instance, modeFlags, names); });
}

} // namespace quoddle
