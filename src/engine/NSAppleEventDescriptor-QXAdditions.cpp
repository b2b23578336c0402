// SPDX-License-Identifier: MIT
#include "engine/NSAppleEventDescriptor-QXAdditions.h"

#include "engine/BridgedObjects.h"
#include "platform/ae/AECoercion.h"
#include "platform/ae/AEObjects.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>

namespace quoddle {

namespace {

bool isOneOf(DescType type, std::initializer_list<DescType> types) {
    return std::find(types.begin(), types.end(), type) != types.end();
}

bool hasTypeOf(const NSAppleEventDescriptorRef& descriptor, std::initializer_list<DescType> types) {
    return descriptor && isOneOf(descriptor->descriptorType(), types);
}

bool isTypeHolding(const NSAppleEventDescriptorRef& descriptor, FourCharCode code) {
    return hasTypeOf(descriptor, {"type"_4cc}) && descriptor->typeCodeValue() == code;
}

// A specifier is a file when it asks for one by name. It is the "want" item's own type that counts, not the code that it holds.
bool specifierIsFile(const NSAppleEventDescriptor& specifier) {
    auto record = specifier.coerceToDescriptorType("reco"_4cc);
    if (!record)
        return false;
    auto form = record->descriptorForKeyword("form"_4cc);
    return hasTypeOf(record->descriptorForKeyword("want"_4cc), {"file"_4cc, "alis"_4cc}) && record->descriptorForKeyword("from"_4cc) &&
           form && form->enumCodeValue() == "name"_4cc &&
           hasTypeOf(record->descriptorForKeyword("seld"_4cc), {"TEXT"_4cc, "furl"_4cc, "itxt"_4cc, "utf8"_4cc, "STXT"_4cc, "utxt"_4cc});
}

} // namespace

NSAppleEventDescriptorRef descriptorWithMissingValue() {
    static const auto shared = NSAppleEventDescriptor::descriptorWithTypeCode("msng"_4cc);
    return shared;
}

NSAppleEventDescriptorRef descriptorWithUndefinedValue() {
    static const auto shared = NSAppleEventDescriptor::descriptorWithTypeCode("undf"_4cc);
    return shared;
}

NSAppleEventDescriptorRef descriptorWithAbsoluteOrdinal(FourCharCode ordinal) {
    return NSAppleEventDescriptor::descriptorWithAEDesc(CreateAbsoluteOrdinal(ordinal));
}

NSAppleEventDescriptorRef descriptorForObjectSpecifierFor(DescType desiredClass, const NSAppleEventDescriptorRef& container,
                                                          DescType keyForm, const NSAppleEventDescriptorRef& keyData) {
    AEDesc specifier;
    if (CreateObjSpecifier(desiredClass, aeDescOf(container), keyForm, aeDescOf(keyData), specifier) != noErr)
        return nullptr;
    return NSAppleEventDescriptor::descriptorWithAEDesc(std::move(specifier));
}

NSAppleEventDescriptorRef descriptorForRangeObjectSpecifierFrom(const NSAppleEventDescriptorRef& from,
                                                                const NSAppleEventDescriptorRef& to) {
    AEDesc range;
    if (CreateRangeDescriptor(aeDescOf(from), aeDescOf(to), range) != noErr)
        return nullptr;
    return NSAppleEventDescriptor::descriptorWithAEDesc(std::move(range));
}

bool isMissingValue(const NSAppleEventDescriptorRef& descriptor) {
    return isTypeHolding(descriptor, "msng"_4cc);
}

bool isUndefinedValue(const NSAppleEventDescriptorRef& descriptor) {
    return isTypeHolding(descriptor, "undf"_4cc);
}

bool isReallyARecord(const NSAppleEventDescriptorRef& descriptor) {
    return descriptor && AECheckIsRecord(descriptor->aeDesc());
}

bool isText(const NSAppleEventDescriptorRef& descriptor) {
    return hasTypeOf(descriptor, {"STXT"_4cc, "TEXT"_4cc, "cstr"_4cc, "encs"_4cc, "itxt"_4cc, "pstr"_4cc, "sutx"_4cc, "ut16"_4cc,
                                  "utf8"_4cc, "utxt"_4cc});
}

bool isInteger(const NSAppleEventDescriptorRef& descriptor) {
    return hasTypeOf(descriptor, {"comp"_4cc, "long"_4cc, "magn"_4cc, "shor"_4cc, "ucom"_4cc, "ushr"_4cc});
}

bool isReal(const NSAppleEventDescriptorRef& descriptor) {
    return hasTypeOf(descriptor, {"doub"_4cc, "ldbl"_4cc, "sing"_4cc});
}

bool isFile(const NSAppleEventDescriptorRef& descriptor) {
    if (hasTypeOf(descriptor, {"alis"_4cc, "bmrk"_4cc, "file"_4cc, "fsrf"_4cc, "furl"_4cc, "psxf"_4cc}))
        return true;
    return hasTypeOf(descriptor, {"obj "_4cc}) && specifierIsFile(*descriptor);
}

bool isASObjCReference(const NSAppleEventDescriptorRef& descriptor) {
    auto record = hasTypeOf(descriptor, {"obj "_4cc}) ? descriptor->coerceToDescriptorType("reco"_4cc) : nullptr;
    auto want = record ? record->descriptorForKeyword("want"_4cc) : nullptr;
    return want && want->typeCodeValue() == "ocid"_4cc;
}

// A list has no integer value, not even a list of one that would coerce.
std::int64_t KVBintegerValue(const NSAppleEventDescriptorRef& descriptor) {
    return !descriptor || descriptor->aeDesc().isList() ? 0 : descriptor->aeDesc().asInt64().value_or(0);
}

std::uint64_t KVBunsignedIntegerValue(const NSAppleEventDescriptorRef& descriptor) {
    return !descriptor || descriptor->aeDesc().isList() ? 0 : descriptor->aeDesc().asUInt64().value_or(0);
}

std::int64_t integerValue(const NSAppleEventDescriptorRef& descriptor) {
    return KVBintegerValue(descriptor);
}

std::uint64_t unsignedIntegerValue(const NSAppleEventDescriptorRef& descriptor) {
    return KVBunsignedIntegerValue(descriptor);
}

QVariant ASObjCReference(const NSAppleEventDescriptorRef& descriptor) {
    if (!isASObjCReference(descriptor))
        return {};
    std::uint64_t ticket = 0;
    const AEDesc* seld = descriptor->aeDesc().find("seld"_4cc);
    if (!seld || seld->data().size() != sizeof ticket)
        return {};
    std::memcpy(&ticket, seld->data().data(), sizeof ticket);
    return BridgedObjects::find(ticket);
}

} // namespace quoddle
