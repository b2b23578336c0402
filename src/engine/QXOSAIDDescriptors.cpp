// SPDX-License-Identifier: MIT
// Script values as descriptors: their type, their descriptor in a form that suits the type, and the plain values in it.
#include "engine/NSAppleEventDescriptor+Additions.h"
#include "engine/NSAppleEventDescriptor-QXAdditions.h"
#include "engine/QXOSAID.h"
#include "platform/foundation/NSLog.h"

#include <algorithm>

namespace quoddle {

namespace {

bool isOneOf(DescType type, std::initializer_list<DescType> types) {
    return std::find(types.begin(), types.end(), type) != types.end();
}

} // namespace

bool QXOSAID::isScript() const {
    std::int32_t answer = 0;
    if (OSAGetScriptInfo(instance(), mValueID, "cscr"_4cc, answer) == noErr && answer != 0)
        return true;
    return OSAGetScriptInfo(instance(), mValueID, "cntx"_4cc, answer) == noErr && answer != 0;
}

bool QXOSAID::isValue() {
    std::int32_t answer = 0;
    return _failOSError(OSAGetScriptInfo(instance(), mValueID, "valu"_4cc, answer)) && answer != 0;
}

DescType QXOSAID::descriptorType() {
    if (!isValid())
        return "null"_4cc;
    if (isScript())
        return "scpt"_4cc;
    std::int32_t best = 0;
    if (!_failOSError(OSAGetScriptInfo(instance(), mValueID, "best"_4cc, best)))
        return "null"_4cc;
    if (static_cast<DescType>(best) != "enum"_4cc)
        return static_cast<DescType>(best);
    // A value with the best type "enum" may still be delivered as another type.
    NSAppleEventDescriptorRef value = descriptor();
    return value ? value->descriptorType() : "null"_4cc;
}

// A record with a class cannot be coerced to a record, so its class is removed for the coercion.
OSStatus QXOSAID::coerceRecord(OSAModeFlags modeFlags, AEDesc& record) const {
    constexpr OSAModeFlags kClassMode = 4;
    const AEDesc classProperty = AEDesc::ofCode("prop"_4cc, "pcls"_4cc);
    OSStatus status = OSACoerceToDesc(instance(), mValueID, "reco"_4cc, modeFlags, record);
    OSAID recordClass = 0;
    if (status != errAECoercionFail || OSAGetProperty(instance(), kOSAModeNull, mValueID, classProperty, recordClass) != noErr)
        return status;
    OSASetProperty(instance(), kClassMode, mValueID, classProperty, 0);
    status = OSACoerceToDesc(instance(), mValueID, "reco"_4cc, modeFlags, record);
    OSASetProperty(instance(), kClassMode, mValueID, classProperty, recordClass);
    OSADispose(instance(), recordClass);
    return status;
}

std::optional<AEDesc> QXOSAID::makeDescriptor(DescType bestType, OSAModeFlags modeFlags) {
    AEDesc made;
    OSStatus status = noErr;
    switch (bestType) {
    case "STXT"_4cc:
    case "TEXT"_4cc:
    case "itxt"_4cc:
    case "utf8"_4cc:
    case "utxt"_4cc:
        status = OSADisplay(instance(), mValueID, descriptorType(), modeFlags | kOSAModeDisplayForHumans, made);
        break;
    case "null"_4cc:
        return made;
    case "reco"_4cc:
        status = coerceRecord(modeFlags, made);
        break;
    case "scpt"_4cc:
        status = OSAStore(instance(), mValueID, "scpt"_4cc, modeFlags, made);
        break;
    default:
        status = OSACoerceToDesc(instance(), mValueID, "****"_4cc, modeFlags, made);
    }
    return _failOSError(status) ? std::optional(std::move(made)) : std::nullopt;
}

NSAppleEventDescriptorRef QXOSAID::descriptor(OSAModeFlags modeFlags) {
    if (!isValid())
        return nullptr;
    if (auto cache = descriptorCache()) {
        std::lock_guard lock(mCacheMutex);
        if (auto kept = cache->find(modeFlags); kept != cache->end())
            return kept->second;
    }
    NSAppleEventDescriptorRef made;
    auto bestType = static_cast<std::int32_t>("scpt"_4cc);
    try {
        if (isScript() || _failOSError(OSAGetScriptInfo(instance(), mValueID, "best"_4cc, bestType)))
            if (std::optional<AEDesc> desc = makeDescriptor(static_cast<DescType>(bestType), modeFlags))
                made = NSAppleEventDescriptor::descriptorWithAEDesc(std::move(*desc));
    } catch (const QXOSAException& exception) {
        made = descriptorOnceMore(static_cast<DescType>(bestType), modeFlags, exception);
    }
    if (made) {
        std::lock_guard lock(mCacheMutex);
        if (!mDescriptorCache)
            mDescriptorCache = std::make_shared<DescriptorCache>();
        (*mDescriptorCache)[modeFlags] = made;
    }
    return made;
}

// A second attempt after a failed coercion, now directly to the best type.
NSAppleEventDescriptorRef QXOSAID::descriptorOnceMore(DescType bestType, OSAModeFlags modeFlags, const QXOSAException& first) {
    if (mLastError != errAECoercionFail || bestType == "scpt"_4cc)
        return nullptr;
    try {
        AEDesc made;
        if (_failOSError(OSACoerceToDesc(instance(), mValueID, bestType, modeFlags, made)))
            return NSAppleEventDescriptor::descriptorWithAEDesc(std::move(made));
    } catch (const QXOSAException&) {
        OSAAttributedText text;
        bool hasSource = OSACopySourceString(instance(), mValueID, kOSAModeNull, text) == noErr;
        NSLog(QStringLiteral("-[QXOSAID descriptorWithModeFlags: exception: %@, source: %@"),
              {first.reason(), hasSource ? QVariant(QString::fromStdU16String(text.text)) : QVariant()});
    }
    return nullptr;
}

// QUIRK: the tests are narrower than those of descriptors: isFile() has no "bmrk", isText() no "cstr", "pstr" and "ut16"; code written for
// the platform relies on it.
bool QXOSAID::isFile() {
    DescType type = descriptorType();
    if (isOneOf(type, {"alis"_4cc, "file"_4cc, "fsrf"_4cc, "furl"_4cc, "psxf"_4cc}))
        return true;
    return type == "obj "_4cc && quoddle::isFile(descriptor());
}

bool QXOSAID::isText() {
    return isOneOf(descriptorType(), {"STXT"_4cc, "TEXT"_4cc, "encs"_4cc, "itxt"_4cc, "sutx"_4cc, "utf8"_4cc, "utxt"_4cc});
}

bool QXOSAID::isMissingValue() {
    return descriptorType() == "type"_4cc && quoddle::isMissingValue(descriptor());
}

bool QXOSAID::isUndefinedValue() {
    return descriptorType() == "type"_4cc && quoddle::isUndefinedValue(descriptor());
}

bool QXOSAID::isASObjCReference() {
    try {
        return descriptorType() == "obj "_4cc && quoddle::isASObjCReference(descriptor());
    } catch (const QXOSAException&) {
        return false;
    }
}

QVariant QXOSAID::ASObjCReference() {
    try {
        return quoddle::ASObjCReference(descriptor());
    } catch (const QXOSAException&) {
        return {};
    }
}

std::int32_t QXOSAID::int32Value() {
    NSAppleEventDescriptorRef value = descriptor();
    return value ? value->int32Value() : 0;
}

std::int64_t QXOSAID::integerValue() {
    return KVBintegerValue(descriptor());
}

std::uint64_t QXOSAID::unsignedIntegerValue() {
    return KVBunsignedIntegerValue(descriptor());
}

bool QXOSAID::booleanValue() {
    NSAppleEventDescriptorRef value = descriptor();
    return value && value->booleanValue();
}

QString QXOSAID::stringValue() {
    return quoddle::stringValue(descriptor());
}

} // namespace quoddle
