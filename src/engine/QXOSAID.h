// SPDX-License-Identifier: MIT
// QXOSAID: a script, a context or a value inside a scripting component, together with that component.
// Held by std::shared_ptr; nil is the empty pointer. An owned identifier is disposed of when this object is destroyed or gets another one.
// Checked failures raise QXOSAException "QXOSAID Failure". A script error (-1753), a cancellation (-128) and an unknown identifier (-1751)
// do not raise: the result is nil or false, and lastError() has the status. Used on the thread that runs the component's script;
// lastError(), handler queries, properties and descriptors may be used during an execution.
#pragma once

#include "engine/QXOSAComponent.h"
#include "engine/QXOSAException.h"

#include <unordered_map>

namespace quoddle {

class QXOSAID : public std::enable_shared_from_this<QXOSAID> {
public:
    using DescriptorCache = std::unordered_map<OSAModeFlags, NSAppleEventDescriptorRef>;

    explicit QXOSAID(QXOSAComponentRef component, OSAID valueID = 0, bool ownsValueID = true);
    ~QXOSAID();
    QXOSAID(const QXOSAID&) = delete;
    QXOSAID& operator=(const QXOSAID&) = delete;
    /// Loads a stored script ("scpt") and coerces any other descriptor. Nil, without an exception, when that fails or there are no bytes to
    /// coerce (as in an empty text).
    static QXOSAIDRef initWithComponent(const QXOSAComponentRef& component, const NSAppleEventDescriptorRef& descriptor);
    static QXOSAIDRef initWithComponent(const QXOSAComponentRef& component, const AEDesc& aeDesc);

    static QXOSAIDRef QXOSAIDWithComponent(const QXOSAComponentRef& component, OSAID valueID = 0, bool ownsValueID = true);
    static QXOSAIDRef QXOSAIDWithComponent(const QXOSAComponentRef& component, const NSAppleEventDescriptorRef& descriptor);
    static QXOSAIDRef QXOSAIDWithComponent(const QXOSAComponentRef& component, const AEDesc& aeDesc);
    /// A new script context; nil when that fails (logged).
    static QXOSAIDRef QXOSAIDContextWithComponent(const QXOSAComponentRef& component);
    static QXOSAIDRef QXOSAIDContextWithComponent(const QXOSAComponentRef& component, const QXOSAIDRef& parent);

    OSStatus lastError() const { return mLastError; }
    OSAID valueID() const { return mValueID; }
    const QXOSAComponentRef& component() const { return mComponent; }
    bool ownsValueID() const { return mOwnsValueID; }
    void setOwnsValueID(bool ownsValueID) { mOwnsValueID = ownsValueID; }
    /// Nil until a descriptor is cached. The cache itself is shared, not copied.
    std::shared_ptr<DescriptorCache> descriptorCache() const;
    void setDescriptorCache(std::shared_ptr<DescriptorCache> descriptorCache);

    void setDescriptor(const NSAppleEventDescriptorRef& descriptor, OSAModeFlags modeFlags = 0);
    void load(const NSAppleEventDescriptorRef& descriptor, OSAModeFlags modeFlags = 0);
    /// `file` is an absolute path; it becomes the script's location.
    void loadFile(const QString& file, OSAModeFlags modeFlags = 0);
    /// Raises with status -4960 when there is no file at the URL.
    void loadFileURL(const QUrl& url, OSAModeFlags modeFlags = 0);
    bool compileDescriptor(const NSAppleEventDescriptorRef& descriptor, OSAModeFlags modeFlags = kOSAModeCompileIntoContext);
    bool compile(const QString& source, OSAModeFlags modeFlags = kOSAModeCompileIntoContext);
    QXOSAIDRef execute(OSAModeFlags modeFlags = 0);
    QXOSAIDRef executeEvent(const NSAppleEventDescriptorRef& event, OSAModeFlags modeFlags = 0);
    QXOSAIDRef executeInContext(const QXOSAIDRef& context, OSAModeFlags modeFlags = 0);
    QXOSAIDRef executeSubroutine(const QString& name, const std::vector<NSAppleEventDescriptorRef>& parameters, OSAModeFlags modeFlags = 0);
    /// Cached until the value changes, except by compiling; nil without a value and on failure.
    NSAppleEventDescriptorRef descriptor(OSAModeFlags modeFlags = 0);
    NSAppleEventDescriptorRef store(OSAModeFlags modeFlags = 0);
    void storeFile(const QString& file, OSAModeFlags modeFlags = 0);
    std::optional<OSAAttributedText> source(OSAModeFlags modeFlags = 0);
    std::optional<OSAAttributedText> display(OSAModeFlags modeFlags = 0);
    QXOSAIDRef copyScript();
    QXOSAIDRef copyID();
    void clear();
    void startRecording();
    void stopRecording();
    /// A value of the real component that does not own its identifier. Nil when a checked call fails without raising.
    QXOSAIDRef realFromGeneric();
    /// An empty URL when the script has no location.
    QUrl scriptLocation();
    /// Does nothing when there is no such file; other failures are logged.
    void setScriptLocation(const QUrl& url);
    std::int32_t getInfoForSelector(FourCharCode selector);
    void setInfo(std::int32_t info, FourCharCode forSelector);

    bool isValid() const { return mValueID != 0; }
    bool isValue();
    DescType descriptorType();
    bool isFile();
    bool isText();
    bool isList() { return descriptorType() == "list"_4cc; }
    bool isRecord() { return descriptorType() == "reco"_4cc; }
    bool isMissingValue();
    bool isUndefinedValue();
    bool isASObjCReference();
    QVariant ASObjCReference();
    std::int32_t int32Value();
    std::int64_t integerValue();
    std::uint64_t unsignedIntegerValue();
    bool booleanValue();
    /// A null string when the value has no text.
    QString stringValue();

    bool hasOpenHandler();
    bool hasIdleHandler() { return hasHandlerEventClass("misc"_4cc, "idle"_4cc); }
    bool hasRunHandler() { return hasHandlerEventClass("aevt"_4cc, "oapp"_4cc); }
    bool hasQuitHandler() { return hasHandlerEventClass("aevt"_4cc, "quit"_4cc); }
    bool hasReopenHandler() { return hasHandlerEventClass("aevt"_4cc, "rapp"_4cc); }
    bool hasHandlerEventClass(AEEventClass eventClass, AEEventID eventID);
    bool hasHandlerNamed(const QString& name);
    bool hasHandlerForAppleEvent(const NSAppleEventDescriptorRef& event);
    /// nullopt when the call fails.
    std::optional<std::vector<NSAppleEventDescriptorRef>> handlerNames(OSAModeFlags modeFlags = 0);
    std::optional<std::vector<NSAppleEventDescriptorRef>> propertyNames(OSAModeFlags modeFlags = 0);
    QXOSAIDRef handlerForDescriptor(const NSAppleEventDescriptorRef& descriptor, OSAModeFlags modeFlags = 0);
    QXOSAIDRef handlerForName(const QString& name, OSAModeFlags modeFlags = 0);
    QXOSAIDRef propertyForDescriptor(const NSAppleEventDescriptorRef& descriptor, OSAModeFlags modeFlags = 0);
    QXOSAIDRef propertyForName(const QString& name, OSAModeFlags modeFlags = 0);
    QXOSAIDRef propertyForPropertyID(FourCharCode propertyID, OSAModeFlags modeFlags = 0);
    /// The value of a property that is a text or a whole number, read without making an object, for frequent calls. nullopt for other
    /// values and when there is no such property.
    std::optional<AEDesc> plainValueForPropertyID(FourCharCode propertyID) const;
    bool hasPropertyForDescriptor(const NSAppleEventDescriptorRef& descriptor);
    bool hasPropertyNamed(const QString& name);
    bool hasPropertyForID(FourCharCode propertyID);
    QString stringForPropertyName(const QString& name);
    std::int64_t integerForPropertyName(const QString& name);
    std::uint64_t unsignedIntegerForPropertyName(const QString& name);
    QString stringForPropertyID(FourCharCode propertyID);
    std::int64_t integerForPropertyID(FourCharCode propertyID);
    std::uint64_t unsignedIntegerForPropertyID(FourCharCode propertyID);
    /// Nil removes the property or handler.
    void setValueForPropertyDescriptor(const QXOSAIDRef& value, const NSAppleEventDescriptorRef& descriptor, OSAModeFlags modeFlags = 0);
    void setValueForPropertyName(const QXOSAIDRef& value, const QString& name, OSAModeFlags modeFlags = 0);
    void setValueForPropertyID(const QXOSAIDRef& value, FourCharCode propertyID, OSAModeFlags modeFlags = 0);
    void setValueForHandlerDescriptor(const QXOSAIDRef& value, const NSAppleEventDescriptorRef& descriptor, OSAModeFlags modeFlags = 0);
    void setValueForHandlerName(const QXOSAIDRef& value, const QString& name, OSAModeFlags modeFlags = 0);
    void setDescriptorForPropertyDescriptor(const NSAppleEventDescriptorRef& value, const NSAppleEventDescriptorRef& descriptor,
                                            OSAModeFlags modeFlags = 0);
    void setDescriptorForPropertyName(const NSAppleEventDescriptorRef& value, const QString& name, OSAModeFlags modeFlags = 0);
    void setDescriptorForPropertyID(const NSAppleEventDescriptorRef& value, FourCharCode propertyID, OSAModeFlags modeFlags = 0);
    void setDescriptorForHandlerDescriptor(const NSAppleEventDescriptorRef& value, const NSAppleEventDescriptorRef& descriptor,
                                           OSAModeFlags modeFlags = 0);
    void setDescriptorForHandlerName(const NSAppleEventDescriptorRef& value, const QString& name, OSAModeFlags modeFlags = 0);

    bool _failOSError(OSStatus status);

private:
    ComponentInstance instance() const { return mComponent ? mComponent->component() : 0; }
    void prepareToExecute();
    void disposeOwnedValue();
    void replaceValue(OSAID valueID);
    void emptyDescriptorCache();
    /// The result of a checked call as a new owning value, or nil.
    QXOSAIDRef checkedResult(OSStatus status, OSAID valueID);
    OSStatus getHandlerByName(const AEDesc& name, OSAModeFlags modeFlags, OSAID& handler) const;
    OSStatus getPropertyByName(const AEDesc& name, OSAModeFlags modeFlags, OSAID& value) const;
    bool hasHandler(const AEDesc& name) const;
    bool isScript() const;
    OSStatus coerceRecord(OSAModeFlags modeFlags, AEDesc& record) const;
    std::optional<AEDesc> makeDescriptor(DescType bestType, OSAModeFlags modeFlags);
    NSAppleEventDescriptorRef descriptorOnceMore(DescType bestType, OSAModeFlags modeFlags, const QXOSAException& first);
    QString _description() const;

    std::atomic<bool> mOwnsValueID;
    std::atomic<OSStatus> mLastError = noErr;
    std::atomic<OSAID> mValueID;
    const QXOSAComponentRef mComponent;
    mutable std::mutex mCacheMutex;
    std::shared_ptr<DescriptorCache> mDescriptorCache;
};

} // namespace quoddle
