// SPDX-License-Identifier: MIT
#include "platform/osa/GenericComponent.h"

#include "platform/osa/OSA.h"
#include "platform/osa/StoredScript.h"

#include <algorithm>

namespace quoddle {

GenericComponent::~GenericComponent() {
    for (const auto& [subType, instance] : mOpened)
        CloseComponent(instance);
}

Result<GenericComponent::Real, OSStatus> GenericComponent::find(OSAID id) const {
    std::lock_guard lock(mMutex);
    auto found = mReals.find(id);
    if (found == mReals.end())
        return Failure{errOSAInvalidID};
    return Real(found->second);
}

Result<GenericComponent::Real, OSStatus> GenericComponent::findContext(OSAID id) {
    return id == kOSANullScript ? openDefault() : find(id);
}

Result<OSAID, OSStatus> GenericComponent::findWithin(ComponentInstance instance, OSAID id) const {
    if (id == 0)
        return OSAID{0};
    auto real = find(id);
    if (!real)
        return Failure{real.error()};
    if (real->instance != instance)
        return Failure{errOSAComponentMismatch};
    return OSAID{real->id};
}

Result<GenericComponent::Real, OSStatus> GenericComponent::open(OSType subType) {
    Real real;
    if (OSStatus status = getScriptingComponent(subType, real.instance))
        return Failure{status};
    return real;
}

Result<GenericComponent::Real, OSStatus> GenericComponent::openDefault() {
    OSType subType;
    getDefaultScriptingComponent(subType);
    return open(subType);
}

OSAID GenericComponent::adopt(ComponentInstance instance, OSAID realID) {
    if (realID == 0)
        return 0;
    std::lock_guard lock(mMutex);
    mReals.emplace(++mLastID, Real{instance, realID});
    return mLastID;
}

OSStatus GenericComponent::noted(ComponentInstance instance, OSStatus status) {
    if (status != noErr) {
        std::lock_guard lock(mMutex);
        mLastFailed = instance;
    }
    return status;
}

std::vector<ComponentInstance> GenericComponent::openInstances() const {
    std::lock_guard lock(mMutex);
    std::vector<ComponentInstance> instances;
    for (const auto& [subType, instance] : mOpened)
        instances.push_back(instance);
    return instances;
}

void GenericComponent::apply(const Settings& settings, ComponentInstance instance) {
    const OSACallbacks& set = settings.callbacks;
    if (set.active.proc)
        OSASetActiveProc(instance, set.active.proc, set.active.refCon);
    if (set.send.proc)
        OSASetSendProc(instance, set.send.proc, set.send.refCon);
    if (set.resumeDispatch.proc)
        OSASetResumeDispatchProc(instance, set.resumeDispatch.proc, set.resumeDispatch.refCon);
    if (settings.defaultTarget)
        OSASetDefaultTarget(instance, *settings.defaultTarget);
}

OSStatus GenericComponent::scriptingComponentName(AEDesc& name) {
    name = AEDesc::ofText(u"Generic Scripting Component");
    return noErr;
}

OSStatus GenericComponent::setDefaultTarget(const AEDesc& target) {
    {
        std::lock_guard lock(mMutex);
        mSettings.defaultTarget = target;
    }
    for (ComponentInstance instance : openInstances())
        if (OSStatus status = OSASetDefaultTarget(instance, target))
            return noted(instance, status);
    return noErr;
}

OSStatus GenericComponent::getCallbacks(OSACallbacks& callbacks) {
    std::lock_guard lock(mMutex);
    callbacks = mSettings.callbacks;
    return noErr;
}

OSStatus GenericComponent::changeCallbacks(const std::function<void(OSACallbacks& callbacks)>& change) {
    {
        std::lock_guard lock(mMutex);
        change(mSettings.callbacks);
    }
    for (ComponentInstance instance : openInstances())
        if (auto component = ComponentForInstance(instance))
            component->changeCallbacks(change);
    return noErr;
}

OSStatus GenericComponent::getDefaultScriptingComponent(OSType& subType) {
    std::lock_guard lock(mMutex);
    subType = mDefaultSubType;
    return noErr;
}

OSStatus GenericComponent::setDefaultScriptingComponent(OSType subType) {
    ComponentInstance instance;
    if (OSStatus status = getScriptingComponent(subType, instance))
        return status;
    std::lock_guard lock(mMutex);
    mDefaultSubType = subType;
    return noErr;
}

OSStatus GenericComponent::getScriptingComponent(OSType subType, ComponentInstance& instance) {
    std::lock_guard lock(mMutex);
    auto opened = mOpened.find(subType);
    if (opened == mOpened.end()) {
        // A generic component must not open another generic one, which would open itself without end.
        bool generic = subType == kOSAGenericScriptingComponentSubtype;
        ComponentInstance fresh = generic ? 0 : OpenDefaultComponent(kOSAComponentType, subType);
        if (fresh == 0)
            return errOSACantOpenComponent;
        apply(mSettings, fresh);
        opened = mOpened.emplace(subType, fresh).first;
    }
    instance = opened->second;
    return noErr;
}

OSStatus GenericComponent::getScriptingComponentFromStored(const AEDesc& scriptData, OSType& subType) {
    std::optional<OSType> stored = subTypeOfStoredScript(scriptData.data());
    if (!stored)
        return errOSABadStorageType;
    subType = *stored;
    return noErr;
}

OSStatus GenericComponent::genericToRealID(OSAID& id, ComponentInstance& exact) {
    auto real = find(id);
    if (!real)
        return real.error();
    id = real->id;
    exact = real->instance;
    return noErr;
}

OSStatus GenericComponent::realToGenericID(OSAID& id, ComponentInstance exact) {
    std::vector<ComponentInstance> ours = openInstances();
    if (std::find(ours.begin(), ours.end(), exact) == ours.end())
        return errOSAComponentMismatch;
    std::unique_lock lock(mMutex);
    auto known = std::find_if(mReals.begin(), mReals.end(),
                              [&](const auto& entry) { return entry.second.instance == exact && entry.second.id == id; });
    if (known != mReals.end()) {
        id = known->first;
        return noErr;
    }
    lock.unlock();
    id = adopt(exact, id);
    return noErr;
}

} // namespace quoddle
