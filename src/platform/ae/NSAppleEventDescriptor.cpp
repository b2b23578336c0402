// SPDX-License-Identifier: MIT
#include "platform/ae/NSAppleEventDescriptor.h"

#include "platform/ae/AECoercion.h"
#include "platform/ae/AEFlatten.h"
#include "platform/base/DateText.h"

#include <cmath>
#include <ctime>

namespace quoddle {

namespace {

std::int64_t offsetFromUTC(std::time_t moment) {
    std::tm local{};
    return localtime_r(&moment, &local) ? local.tm_gmtoff : 0;
}

NSAppleEventDescriptorRef handedOut(const AEDesc* desc) {
    return desc ? NSAppleEventDescriptor::descriptorWithAEDesc(*desc) : nullptr;
}

} // namespace

NSAppleEventDescriptorRef NSAppleEventDescriptor::nullDescriptor() {
    return descriptorWithAEDesc({});
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::currentProcessDescriptor() {
    return descriptorWithAEDesc(AEDesc::ofCurrentProcess());
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::descriptorWithDescriptorType(DescType descriptorType, const void* bytes,
                                                                               std::size_t length) {
    return descriptorWithDescriptorType(descriptorType, {static_cast<const char*>(bytes), length});
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::descriptorWithDescriptorType(DescType descriptorType, std::string_view data) {
    return descriptorWithAEDesc({descriptorType, data});
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::descriptorWithBoolean(bool boolean) {
    return descriptorWithAEDesc(AEDesc::ofBoolean(boolean));
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::descriptorWithEnumCode(FourCharCode enumerator) {
    return descriptorWithAEDesc(AEDesc::ofEnum(enumerator));
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::descriptorWithTypeCode(FourCharCode typeCode) {
    return descriptorWithAEDesc(AEDesc::ofType(typeCode));
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::descriptorWithInt32(std::int32_t signedInt) {
    return descriptorWithAEDesc(AEDesc::ofInt32(signedInt));
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::descriptorWithDouble(double doubleValue) {
    return descriptorWithAEDesc(AEDesc::ofDouble(doubleValue));
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::descriptorWithString(const TextArgument& string) {
    return descriptorWithAEDesc(AEDesc::ofText(string.view()));
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::descriptorWithDate(double date) {
    auto moment = static_cast<std::time_t>(std::floor(date));
    return descriptorWithAEDesc(AEDesc::ofDate(moment + offsetFromUTC(moment) + kSecondsFrom1904To1970));
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::descriptorWithFileURL(const TextArgument& path) {
    return descriptorWithAEDesc(AEDesc::ofFilePath(path.utf8()));
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::descriptorWithProcessIdentifier(std::int32_t processIdentifier) {
    return descriptorWithAEDesc(AEDesc::ofProcess(processIdentifier));
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::descriptorWithBundleIdentifier(const TextArgument& bundleIdentifier) {
    return descriptorWithDescriptorType("bund"_4cc, bundleIdentifier.utf8());
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::listDescriptor() {
    return descriptorWithAEDesc(AEDesc::list());
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::recordDescriptor() {
    return descriptorWithAEDesc(AEDesc::record());
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::appleEventWithEventClass(AEEventClass eventClass, AEEventID eventID,
                                                                           const NSAppleEventDescriptorRef& targetDescriptor,
                                                                           std::int16_t returnID, std::int32_t transactionID) {
    return descriptorWithAEDesc(AEDesc::appleEvent(eventClass, eventID, aeDescOf(targetDescriptor), returnID, transactionID));
}

std::string NSAppleEventDescriptor::data() const {
    if (!mDesc.isList() && !mDesc.isRecord())
        return std::string(mDesc.data());
    std::string bytes;
    AEFlattenDesc(mDesc, bytes);
    return bytes;
}

bool NSAppleEventDescriptor::booleanValue() const {
    return mDesc.asBoolean().value_or(false);
}

FourCharCode NSAppleEventDescriptor::enumCodeValue() const {
    return mDesc.asEnum().value_or(0);
}

FourCharCode NSAppleEventDescriptor::typeCodeValue() const {
    return mDesc.asType().value_or(0);
}

std::int32_t NSAppleEventDescriptor::int32Value() const {
    return mDesc.asInt32().value_or(0);
}

double NSAppleEventDescriptor::doubleValue() const {
    return mDesc.asDouble().value_or(0);
}

std::optional<std::u16string> NSAppleEventDescriptor::stringValue() const {
    return mDesc.asText();
}

std::optional<double> NSAppleEventDescriptor::dateValue() const {
    std::optional<AEDesc> date = AECoerced(mDesc, "ldt "_4cc);
    std::optional<std::int64_t> seconds = date ? date->withType("comp"_4cc).asInt64() : std::nullopt;
    constexpr std::int64_t kFarthest = std::int64_t{1} << 40; // farther dates have no time zone, and the sums below could overflow
    if (!seconds || *seconds > kFarthest || *seconds < -kFarthest)
        return {};
    std::time_t local = *seconds - kSecondsFrom1904To1970;
    // The offset from UTC must be that of the moment itself. The first guess is only wrong within hours of a change of the clocks.
    std::time_t moment = local - offsetFromUTC(local);
    return static_cast<double>(local - offsetFromUTC(moment));
}

std::optional<std::string> NSAppleEventDescriptor::fileURLValue() const {
    return mDesc.asFilePath();
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::coerceToDescriptorType(DescType descriptorType) const {
    std::optional<AEDesc> coerced = AECoerced(mDesc, descriptorType);
    return coerced ? descriptorWithAEDesc(std::move(*coerced)) : nullptr;
}

std::int16_t NSAppleEventDescriptor::returnID() const {
    auto attribute = mDesc.attribute("rtid"_4cc);
    return attribute ? static_cast<std::int16_t>(attribute->asInt32().value_or(0)) : std::int16_t{0};
}

std::int32_t NSAppleEventDescriptor::transactionID() const {
    auto attribute = mDesc.attribute("tran"_4cc);
    return attribute ? attribute->asInt32().value_or(0) : 0;
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::attributeDescriptorForKeyword(AEKeyword keyword) const {
    std::optional<AEDesc> attribute = mDesc.attribute(keyword);
    return attribute ? descriptorWithAEDesc(std::move(*attribute)) : nullptr;
}

void NSAppleEventDescriptor::setAttributeDescriptor(const NSAppleEventDescriptorRef& descriptor, AEKeyword forKeyword) {
    mDesc.setAttribute(forKeyword, aeDescOf(descriptor));
}

void NSAppleEventDescriptor::insertDescriptor(const NSAppleEventDescriptorRef& descriptor, std::size_t atIndex) {
    mDesc.insertItem(atIndex, aeDescOf(descriptor));
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::descriptorAtIndex(std::size_t index) const {
    return handedOut(mDesc.itemAt(index));
}

void NSAppleEventDescriptor::removeDescriptorAtIndex(std::size_t index) {
    mDesc.removeItem(index);
}

void NSAppleEventDescriptor::setDescriptor(const NSAppleEventDescriptorRef& descriptor, AEKeyword forKeyword) {
    mDesc.put(forKeyword, aeDescOf(descriptor));
}

NSAppleEventDescriptorRef NSAppleEventDescriptor::descriptorForKeyword(AEKeyword keyword) const {
    return handedOut(mDesc.find(keyword));
}

void NSAppleEventDescriptor::removeDescriptorWithKeyword(AEKeyword keyword) {
    mDesc.remove(keyword);
}

} // namespace quoddle
