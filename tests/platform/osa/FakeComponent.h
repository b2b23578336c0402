// SPDX-License-Identifier: MIT
// FakeComponent: a scripting component small enough to be read at once. Values are descriptors; a script is a text of lines:
//   handler NAME           property NAME VALUE
//   return VALUE           what execute gives; VALUE is an integer or a text, "nothing" for no result
//   error NUMBER MESSAGE   a script error
//   status NUMBER          a bare status
//   loop                   calls the active procedure until it answers a status, which is the result
//   send CLASS ID          sends an event through the send procedure, the result is the reply's direct parameter
//   continue               passes the event on through the resume-dispatch procedure
// Stored form: the text with a trailer. Everything that happens is open to the test. Values, properties and handlers may be asked for by
// several threads at once.
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
        std::optional<std::u16string> source; ///< a script
        std::map<std::u16string, OSAID> properties;
        std::set<std::u16string> handlers;
        std::string file;
        std::vector<std::u16string> lines() const;
    };

    /// One call of an operation, with what it was given.
    struct Call {
        std::string operation;
        OSAModeFlags modeFlags = 0;
        OSAID id = 0;      ///< the script, context or value that it is about
        OSAID other = 0;   ///< the context of an execution; the value or handler that is set
        DescType type = 0; ///< into which something is made
    };

    explicit FakeComponent(OSType subType = "fake"_4cc, OSAID firstID = 1000) : mSubType(subType), mLastID(firstID) { sLast = this; }
    ~FakeComponent() override;

    /// The one made last that is still alive.
    static FakeComponent* last() { return sLast; }
    static void registerAs(OSType subType, OSAID firstID = 1000);
    std::size_t count() const { return values.size(); }
    AEDesc stored(const std::u16string& source) const;

    std::unordered_map<OSAID, Value> values;
    std::vector<Call> calls;                  ///< in order
    std::map<std::string, OSStatus> failures; ///< operations that are to fail
    std::set<std::u16string> barred;          ///< property and handler names that are refused (-50) without their bars
    std::set<DescType> refusedTypes;          ///< into which nothing is coerced (-1700)
    std::map<FourCharCode, AEDesc> error;     ///< what scriptError tells
    AEDesc lastEvent;
    AEDesc defaultTarget;
    AEDesc result;
    bool isStorable = true; ///< what loadFile tells
    std::int32_t sendTimeout = kAEDefaultTimeout;
    AESendMode sendMode = kAEWaitReply;
    OSACallbacks callbacks;
    std::vector<OSASourceStyle> styles;

    OSAID add(Value value);
    mutable std::recursive_mutex mutex; ///< guards all of the above; not held while a script runs

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
    /// Notes the call; the status it is to fail with, or 0.
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
