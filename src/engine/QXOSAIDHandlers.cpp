// SPDX-License-Identifier: MIT
// Handlers and properties of script values, by name, by identifier and by descriptor. The functions with descriptors do the work.
#include "engine/NSAppleEventDescriptor+Additions.h"
#include "engine/QXOSAID.h"

namespace quoddle {

namespace {

NSAppleEventDescriptorRef descriptorOfName(const QString& name) {
    return NSAppleEventDescriptor::descriptorWithString(name);
}

NSAppleEventDescriptorRef descriptorOfProperty(FourCharCode propertyID) {
    return NSAppleEventDescriptor::descriptorWithAEDesc(AEDesc::ofCode("prop"_4cc, propertyID));
}

AEDesc descriptorOfEvent(AEEventClass eventClass, AEEventID eventID) {
    const FourCharCode codes[] = {eventClass, eventID};
    return {"evnt"_4cc, {reinterpret_cast<const char*>(codes), sizeof codes}};
}

// Looks a name up. A name that the component refuses is looked up once more between vertical bars, which make any name an identifier.
template<class LookUp>
OSStatus lookUpByName(const AEDesc& name, LookUp lookUp) {
    OSStatus status = lookUp(name);
    if (status != paramErr || (name.type() != "utxt"_4cc && name.type() != "TEXT"_4cc))
        return status;
    return lookUp(AEDesc::ofText(u"|" + name.asText().value_or(std::u16string()) + u"|"));
}

std::optional<std::vector<NSAppleEventDescriptorRef>> itemsOf(OSStatus status, const AEDesc& list) {
    if (status != noErr || !list.isList())
        return {};
    std::vector<NSAppleEventDescriptorRef> items;
    for (const AEDesc& item : list.items())
        items.push_back(NSAppleEventDescriptor::descriptorWithAEDesc(item));
    return items;
}

} // namespace

OSStatus QXOSAID::getHandlerByName(const AEDesc& name, OSAModeFlags modeFlags, OSAID& handler) const {
    return lookUpByName(name, [&](const AEDesc& spelled) { return OSAGetHandler(instance(), modeFlags, mValueID, spelled, handler); });
}

OSStatus QXOSAID::getPropertyByName(const AEDesc& name, OSAModeFlags modeFlags, OSAID& value) const {
    return lookUpByName(name, [&](const AEDesc& spelled) { return OSAGetProperty(instance(), modeFlags, mValueID, spelled, value); });
}

bool QXOSAID::hasHandler(const AEDesc& name) const {
    OSAID handler = 0;
    bool found = OSAGetHandler(instance(), kOSAModeNull, mValueID, name, handler) == noErr;
    if (found && handler != 0)
        OSADispose(instance(), handler);
    return found;
}

bool QXOSAID::hasOpenHandler() {
    return getInfoForSelector("hsod"_4cc) != 0;
}

bool QXOSAID::hasHandlerEventClass(AEEventClass eventClass, AEEventID eventID) {
    return isValid() && hasHandler(descriptorOfEvent(eventClass, eventID));
}

bool QXOSAID::hasHandlerNamed(const QString& name) {
    auto names = handlerNames();
    return names && std::any_of(names->begin(), names->end(), [&name](const NSAppleEventDescriptorRef& each) {
               QString spelled = quoddle::stringValue(each);
               return !spelled.isNull() && spelled.compare(name, Qt::CaseInsensitive) == 0;
           });
}

bool QXOSAID::hasHandlerForAppleEvent(const NSAppleEventDescriptorRef& event) try {
    if (!event || event->descriptorType() == "null"_4cc)
        return true;
    if (!isValid())
        return false;
    AEEventClass eventClass = event->eventClass();
    AEEventID eventID = event->eventID();
    if (eventClass == "ascr"_4cc && eventID == "psbr"_4cc)
        return hasHandler(aeDescOf(event->paramDescriptorForKeyword("snam"_4cc)));
    if (eventClass == "aevt"_4cc && eventID == "oapp"_4cc)
        return true;
    if (eventClass == "aevt"_4cc && eventID == "odoc"_4cc)
        return hasOpenHandler();
    if (eventClass == "misc"_4cc && eventID == "idle"_4cc)
        return hasIdleHandler();
    return hasHandler(descriptorOfEvent(eventClass, eventID));
} catch (const QXOSAException&) {
    return false;
}

std::optional<std::vector<NSAppleEventDescriptorRef>> QXOSAID::handlerNames(OSAModeFlags modeFlags) {
    AEDesc names;
    OSStatus status = OSAGetHandlerNames(instance(), modeFlags, mValueID, names);
    return itemsOf(status, names);
}

std::optional<std::vector<NSAppleEventDescriptorRef>> QXOSAID::propertyNames(OSAModeFlags modeFlags) {
    AEDesc names;
    OSStatus status = OSAGetPropertyNames(instance(), modeFlags, mValueID, names);
    return itemsOf(status, names);
}

QXOSAIDRef QXOSAID::handlerForDescriptor(const NSAppleEventDescriptorRef& descriptor, OSAModeFlags modeFlags) {
    OSAID handler = 0;
    OSStatus status = getHandlerByName(aeDescOf(descriptor), modeFlags, handler);
    return checkedResult(status, handler);
}

QXOSAIDRef QXOSAID::handlerForName(const QString& name, OSAModeFlags modeFlags) {
    return handlerForDescriptor(descriptorOfName(name), modeFlags);
}

QXOSAIDRef QXOSAID::propertyForDescriptor(const NSAppleEventDescriptorRef& descriptor, OSAModeFlags modeFlags) {
    OSAID value = 0;
    OSStatus status = getPropertyByName(aeDescOf(descriptor), modeFlags, value);
    return checkedResult(status, value);
}

QXOSAIDRef QXOSAID::propertyForName(const QString& name, OSAModeFlags modeFlags) {
    return propertyForDescriptor(descriptorOfName(name), modeFlags);
}

QXOSAIDRef QXOSAID::propertyForPropertyID(FourCharCode propertyID, OSAModeFlags modeFlags) {
    return propertyForDescriptor(descriptorOfProperty(propertyID), modeFlags);
}

std::optional<AEDesc> QXOSAID::plainValueForPropertyID(FourCharCode propertyID) const {
    OSAID value = 0;
    if (!isValid() || OSAGetProperty(instance(), kOSAModeNull, mValueID, AEDesc::ofCode("prop"_4cc, propertyID), value) != noErr)
        return std::nullopt;
    AEDesc plain;
    const OSStatus status = OSACoerceToDesc(instance(), value, "****"_4cc, kOSAModeNull, plain);
    OSADispose(instance(), value);
    const bool isPlain = status == noErr && (plain.type() == "long"_4cc || plain.type() == "utxt"_4cc);
    return isPlain ? std::optional(std::move(plain)) : std::nullopt;
}

bool QXOSAID::hasPropertyForDescriptor(const NSAppleEventDescriptorRef& descriptor) {
    OSAID value = 0;
    bool found = getPropertyByName(aeDescOf(descriptor), kOSAModeNull, value) == noErr;
    if (found && value != 0)
        OSADispose(instance(), value);
    return found;
}

bool QXOSAID::hasPropertyNamed(const QString& name) {
    return hasPropertyForDescriptor(descriptorOfName(name));
}

bool QXOSAID::hasPropertyForID(FourCharCode propertyID) {
    return hasPropertyForDescriptor(descriptorOfProperty(propertyID));
}

QString QXOSAID::stringForPropertyName(const QString& name) {
    QXOSAIDRef value = propertyForName(name);
    return value ? value->stringValue() : QString();
}

std::int64_t QXOSAID::integerForPropertyName(const QString& name) {
    QXOSAIDRef value = propertyForName(name);
    return value ? value->integerValue() : 0;
}

std::uint64_t QXOSAID::unsignedIntegerForPropertyName(const QString& name) {
    QXOSAIDRef value = propertyForName(name);
    return value ? value->unsignedIntegerValue() : 0;
}

QString QXOSAID::stringForPropertyID(FourCharCode propertyID) {
    QXOSAIDRef value = propertyForPropertyID(propertyID);
    return value ? value->stringValue() : QString();
}

std::int64_t QXOSAID::integerForPropertyID(FourCharCode propertyID) {
    QXOSAIDRef value = propertyForPropertyID(propertyID);
    return value ? value->integerValue() : 0;
}

std::uint64_t QXOSAID::unsignedIntegerForPropertyID(FourCharCode propertyID) {
    QXOSAIDRef value = propertyForPropertyID(propertyID);
    return value ? value->unsignedIntegerValue() : 0;
}

void QXOSAID::setValueForPropertyDescriptor(const QXOSAIDRef& value, const NSAppleEventDescriptorRef& descriptor, OSAModeFlags modeFlags) {
    _failOSError(OSASetProperty(instance(), modeFlags, mValueID, aeDescOf(descriptor), value ? value->valueID() : 0));
    emptyDescriptorCache();
}

void QXOSAID::setValueForPropertyName(const QXOSAIDRef& value, const QString& name, OSAModeFlags modeFlags) {
    _failOSError(lookUpByName(aeDescOf(descriptorOfName(name)), [&](const AEDesc& spelled) {
        return OSASetProperty(instance(), modeFlags, mValueID, spelled, value ? value->valueID() : 0);
    }));
    emptyDescriptorCache();
}

void QXOSAID::setValueForPropertyID(const QXOSAIDRef& value, FourCharCode propertyID, OSAModeFlags modeFlags) {
    setValueForPropertyDescriptor(value, descriptorOfProperty(propertyID), modeFlags);
}

void QXOSAID::setValueForHandlerDescriptor(const QXOSAIDRef& value, const NSAppleEventDescriptorRef& descriptor, OSAModeFlags modeFlags) {
    _failOSError(OSASetHandler(instance(), modeFlags, mValueID, aeDescOf(descriptor), value ? value->valueID() : 0));
    emptyDescriptorCache();
}

void QXOSAID::setValueForHandlerName(const QXOSAIDRef& value, const QString& name, OSAModeFlags modeFlags) {
    setValueForHandlerDescriptor(value, descriptorOfName(name), modeFlags);
}

void QXOSAID::setDescriptorForPropertyDescriptor(const NSAppleEventDescriptorRef& value, const NSAppleEventDescriptorRef& descriptor,
                                                 OSAModeFlags modeFlags) {
    setValueForPropertyDescriptor(QXOSAIDWithComponent(mComponent, value), descriptor, modeFlags);
}

void QXOSAID::setDescriptorForPropertyName(const NSAppleEventDescriptorRef& value, const QString& name, OSAModeFlags modeFlags) {
    setValueForPropertyName(QXOSAIDWithComponent(mComponent, value), name, modeFlags);
}

void QXOSAID::setDescriptorForPropertyID(const NSAppleEventDescriptorRef& value, FourCharCode propertyID, OSAModeFlags modeFlags) {
    setValueForPropertyID(QXOSAIDWithComponent(mComponent, value), propertyID, modeFlags);
}

void QXOSAID::setDescriptorForHandlerDescriptor(const NSAppleEventDescriptorRef& value, const NSAppleEventDescriptorRef& descriptor,
                                                OSAModeFlags modeFlags) {
    setValueForHandlerDescriptor(QXOSAIDWithComponent(mComponent, value), descriptor, modeFlags);
}

void QXOSAID::setDescriptorForHandlerName(const NSAppleEventDescriptorRef& value, const QString& name, OSAModeFlags modeFlags) {
    setValueForHandlerName(QXOSAIDWithComponent(mComponent, value), name, modeFlags);
}

} // namespace quoddle
