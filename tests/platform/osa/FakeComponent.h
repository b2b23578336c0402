// SPDX-License-Identifier: MIT
// A scripting component that is small enough to be understood at once. Values are descriptors; a script is a text of lines:
//   handler NAME           property NAME VALUE
//   return VALUE           the result of execute; VALUE is an integer or a text, "nothing" for no result
//   error NUMBER MESSAGE   a script error
//   status NUMBER          a status without a script error
//   loop                   calls the active procedure until it returns a status, which is the result
//   send CLASS ID          sends an event through the send procedure; the result is the reply's direct parameter
//   continue               passes the event on through the resume-dispatch procedure
// A stored script is the text with a trailer. The test can look at everything that happens. Several threads may ask for values, properties
// and handlers at the same time.
#pragma once

#include "platform/osa/OSA.h"

#include <atomic>
#include <map>
#include <mutex>
#include <set>
#include <unordered_map>

namespace quoddle {

class FakeComponent : public ScriptingComponent {
public:
    struct Value {
        AEDesc desc;
        std::optional<std::u16string> source; ///< set for scripts
        std::map<std::u16string, OSAID> properties;
        std::set<std::u16string> handlers;
        std::string file;
        std::vector<std::u16string> lines() const;
    };

    /// One call of an operation, with its arguments.
    struct Call {
        std::string operation;
        OSAModeFlags modeFlags = 0;
        OSAID id = 0;      ///< the script, context or value of the call
        OSAID other = 0;   ///< the context of an execution, or the value or handler that is set
        DescType type = 0; ///< the wanted type
    };

    explicit FakeComponent(OSType subType = "fake"_4cc, OSAID firstID = 1000) : mSubType(subType), mLastID(firstID) { sLast = this; }
    ~FakeComponent() override;

    /// The component that was made last, among those that still exist.
    static FakeComponent* last() { return sLast; }
    static void registerAs(OSType subType, OSAID firstID = 1000);
    std::size_t count() const { return values.size(); }
    AEDesc stored(const std::u16string& source) const;

    std::unordered_map<OSAID, Value> values;
    std::vector<Call> calls;                  ///< in order
    std::map<std::string, OSStatus> failures; ///< the statuses of operations that must fail
    std::set<std::u16string> barred;          ///< property and handler names that are refused (-50) unless they are between bars
    std::set<DescType> refusedTypes;          ///< types to which nothing can be coerced (-1700)
    std::map<FourCharCode, AEDesc> error;     ///< the values of scriptError, by selector
    AEDesc lastEvent;
    AEDesc defaultTarget;
    AEDesc result;
    bool isStorable = true; ///< the value that loadFile returns
    std::int32_t sendTimeout = kAEDefaultTimeout;
    AESendMode sendMode = kAEWaitReply;
    OSACallbacks callbacks;
    std::vector<OSASourceStyle> styles;

    OSAID add(Value value);
    mutable std::recursive_mutex mutex; ///< guards all members above; not held while a script runs

    std::int32_t version() const override { return 0x10203; }
    OSStatus load(const AEDesc& scriptData, OSAModeFlags modeFlags, OSAID& id) override;
    OSStatus loadFile(const std::string& path, bool* storable, OSAModeFlags modeFlags, OSAID& id) override;
    OSStatus store(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& data) override;
    OSStatus storeFile(OSAID id, DescType type, OSAModeFlags modeFlags, const std::string& path) override;
    OSStatus dispose(OSAID id) override;
    OSStatus copyID(OSAID from, OSAID& to) override;
    OSStatus copyScript(OSAID from, OSAID& to) override;
    OSStatus compile(const AEDesc& source, OSAModeFlags modeFlags, OSAID& id) override;
    OSStatus execute(OSAID script, OSAID context, OSAModeFlags modeFlags, OSAID& id) override;
    OSStatus executeEvent(const AEDesc& event, OSAID context, OSAModeFlags modeFlags, OSAID& id) override;
    OSStatus display(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& text) override;
    OSStatus copyDisplayString(OSAID id, OSAModeFlags modeFlags, OSAAttributedText& text) override;
    OSStatus copySourceString(OSAID id, OSAModeFlags modeFlags, OSAAttributedText& text) override;
    OSStatus coerceFromDesc(const AEDesc& desc, OSAModeFlags modeFlags, OSAID& id) override;
    OSStatus coerceToDesc(OSAID id, DescType type, OSAModeFlags modeFlags, AEDesc& desc) override;
    OSStatus getProperty(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID& id) override;
    OSStatus setProperty(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID value) override;
    OSStatus getPropertyNames(OSAModeFlags modeFlags, OSAID context, AEDesc& names) override;
    OSStatus getHandler(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID& id) override;
    OSStatus setHandler(OSAModeFlags modeFlags, OSAID context, const AEDesc& name, OSAID handler) override;
    OSStatus getHandlerNames(OSAModeFlags modeFlags, OSAID context, AEDesc& names) override;
    OSStatus getScriptInfo(OSAID id, FourCharCode selector, std::int32_t& info) override;
    OSStatus setScriptInfo(OSAID id, FourCharCode selector, std::int32_t info) override;
    OSStatus getScriptFile(OSAID id, FourCharCode selector, std::string& path) override;
    OSStatus setScriptFile(OSAID id, FourCharCode selector, const std::string& path) override;
    OSStatus scriptError(FourCharCode selector, DescType type, AEDesc& desc) override;
    OSStatus startRecording(OSAID& id) override;
    OSStatus stopRecording(OSAID id) override;
    OSStatus setDefaultTarget(const AEDesc& target) override;
    OSStatus getCallbacks(OSACallbacks& all) override;
    OSStatus changeCallbacks(const std::function<void(OSACallbacks& callbacks)>& change) override;
    OSStatus copySourceAttributes(std::vector<OSASourceStyle>& attributes) override;
    OSStatus setSourceAttributes(const std::vector<OSASourceStyle>& attributes) override;
    OSStatus getSourceStyleNames(OSAModeFlags modeFlags, AEDesc& names) override;

protected:
    Value* find(OSAID id);

private:
    /// Records the call. Returns the status with which it must fail, or 0.
    OSStatus called(const std::string& operation, OSAModeFlags modeFlags = 0, OSAID id = 0, OSAID other = 0, DescType type = 0);
    Value scriptFrom(std::u16string source);
    OSStatus copied(OSAID from, OSAID& to);
    OSStatus run(const Value& script, OSAID& id);
    OSStatus runLine(const std::u16string& verb, const std::u16string& rest, OSAID& id);
    OSStatus scriptFailed(std::int32_t number, std::u16string message);
    std::u16string keyOf(const AEDesc& name) const;

    static inline std::atomic<FakeComponent*> sLast = nullptr;
    const OSType mSubType;
    OSAID mLastID;
    std::map<std::pair<OSAID, FourCharCode>, std::int32_t> mInfo;
};

} // namespace quoddle
