// SPDX-License-Identifier: MIT
#include "engine/NSAppleEventDescriptor-QXAdditions.h"

#include "engine/BridgedObjects.h"
#include "platform/ae/AECoercion.h"
#include "platform/ae/AEObjects.h"
#include "platform/ae/AETypeTests.h"

#include <cstring>

namespace quoddle {

namespace {

bool hasType(const NSAppleEventDescriptorRef& descriptor, DescType type) {
    return descriptor && descriptor->descriptorType() == type;
}

bool isTypeHolding(const NSAppleEventDescriptorRef& descriptor, FourCharCode code) {
    return hasType(descriptor, "type"_4cc) && descriptor->typeCodeValue() == code;
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
    return descriptor && AEIsText(descriptor->aeDesc());
}

bool isInteger(const NSAppleEventDescriptorRef& descriptor) {
    return descriptor && AEIsInteger(descriptor->aeDesc());
}

bool isReal(const NSAppleEventDescriptorRef& descriptor) {
    return descriptor && AEIsReal(descriptor->aeDesc());
}

bool isFile(const NSAppleEventDescriptorRef& descriptor) {
    return descriptor && AEIsFile(descriptor->aeDesc());
}

bool isASObjCReference(const NSAppleEventDescriptorRef& descriptor) {
    auto record = hasType(descriptor, "obj "_4cc) ? descriptor->coerceToDescriptorType("reco"_4cc) : nullptr;
    auto want = record ? record->descriptorForKeyword("want"_4cc) : nullptr;
    return want && want->typeCodeValue() == "ocid"_4cc;
}

// QUIRK: a list has no integer value, not even a list of one that could be coerced; code written for the platform relies on getting 0.
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
