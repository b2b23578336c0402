// SPDX-License-Identifier: MIT
// GenericComponent ("scpt"): a scripting component that stands for all others. It opens a real component when one is first needed: that of
// the stored script, otherwise the default one. Its identifiers each stand for an open component and an identifier inside it. An operation
// on several identifiers needs those of one component: -1761 otherwise. Callbacks and the default target are passed to every component that
// it opens.
#pragma once

#include "platform/base/Result.h"
#include "platform/osa/ComponentRegistry.h"

#include <mutex>
#include <unordered_map>

namespace quoddle {

class GenericComponent : public ScriptingComponent {
public:
    ~GenericComponent() override;

    std::int32_t version() const override { return 1; }
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
    /// The error of the component whose operation failed last.
    OSStatus scriptError(FourCharCode selector, DescType type, AEDesc& result) override;
    OSStatus startRecording(OSAID& id) override;
    OSStatus stopRecording(OSAID id) override;
    OSStatus setDefaultTarget(const AEDesc& target) override;
    OSStatus getCallbacks(OSACallbacks& callbacks) override;
    OSStatus changeCallbacks(const std::function<void(OSACallbacks& callbacks)>& change) override;
    OSStatus copySourceAttributes(std::vector<OSASourceStyle>& styles) override;
    OSStatus setSourceAttributes(const std::vector<OSASourceStyle>& styles) override;
    OSStatus getSourceStyleNames(OSAModeFlags modeFlags, AEDesc& names) override;
    OSStatus getDefaultScriptingComponent(OSType& subType) override;
    OSStatus setDefaultScriptingComponent(OSType subType) override;
    OSStatus getScriptingComponent(OSType subType, ComponentInstance& instance) override;
    OSStatus getScriptingComponentFromStored(const AEDesc& scriptData, OSType& subType) override;
    OSStatus genericToRealID(OSAID& id, ComponentInstance& exact) override;
    OSStatus realToGenericID(OSAID& id, ComponentInstance exact) override;

private:
    /// The meaning of an identifier: an identifier inside an open component.
    struct Real {
        ComponentInstance instance = 0;
        OSAID id = 0;
    };
    struct Settings {
        OSACallbacks callbacks;
        std::optional<AEDesc> defaultTarget;
    };

    Result<Real, OSStatus> find(OSAID id) const;
    /// 0 stands for the null script of the default component.
    Result<Real, OSStatus> findContext(OSAID id);
    /// The real identifier. 0 stays 0; any other identifier must be one of the instance's.
    Result<OSAID, OSStatus> findWithin(ComponentInstance instance, OSAID id) const;
    Result<Real, OSStatus> open(OSType subType);
    Result<Real, OSStatus> openDefault();
    /// The generic identifier for a new real one; 0 for 0.
    OSAID adopt(ComponentInstance instance, OSAID realID);
    /// Remembers the component whose operation failed, for scriptError(). Returns the status.
    OSStatus noted(ComponentInstance instance, OSStatus status);
    template<class Call>
    OSStatus forward(const Result<Real, OSStatus>& real, Call call);
    /// `call` has a second parameter for the new real identifier; `result` becomes the generic one for it.
    template<class Call>
    OSStatus forwardForNew(const Result<Real, OSStatus>& real, OSAID& result, Call call);
    template<class Call>
    OSStatus forwardInPlace(OSAID& id, Call call);
    std::vector<ComponentInstance> openInstances() const;
    static void apply(const Settings& settings, ComponentInstance instance);

    mutable std::mutex mMutex;
    std::unordered_map<OSAID, Real> mReals;
    OSAID mLastID = 0;
    std::unordered_map<OSType, ComponentInstance> mOpened;
    OSType mDefaultSubType = kAppleScriptSubtype;
    ComponentInstance mLastFailed = 0;
    Settings mSettings;
};

} // namespace quoddle
