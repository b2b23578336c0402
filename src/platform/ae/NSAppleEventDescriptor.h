// SPDX-License-Identifier: MIT
// A descriptor as an object with reference semantics. It owns one AEDesc.
// Handles are std::shared_ptr (NSAppleEventDescriptorRef); nil is the empty pointer and must be tested before `->`.
// A descriptor taken out of another one is a copy: changing it leaves the container unchanged.
// One object is used by one thread at a time; to pass a descriptor to another thread, pass its aeDesc().
// QUIRK: operations that change a descriptor of the wrong kind do nothing; code written for the platform relies on their not failing.
#pragma once

#include "platform/ae/AEDesc.h"
#include "platform/base/TextArgument.h"

#include <memory>

namespace quoddle {

class NSAppleEventDescriptor;
using NSAppleEventDescriptorRef = std::shared_ptr<NSAppleEventDescriptor>;

class NSAppleEventDescriptor {
public:
    explicit NSAppleEventDescriptor(AEDesc aeDesc = {}) : mDesc(std::move(aeDesc)) {}
    static NSAppleEventDescriptorRef descriptorWithAEDesc(AEDesc aeDesc) {
        return std::make_shared<NSAppleEventDescriptor>(std::move(aeDesc));
    }

    static NSAppleEventDescriptorRef nullDescriptor();
    static NSAppleEventDescriptorRef currentProcessDescriptor();
    static NSAppleEventDescriptorRef descriptorWithDescriptorType(DescType descriptorType, const void* bytes, std::size_t length);
    static NSAppleEventDescriptorRef descriptorWithDescriptorType(DescType descriptorType, std::string_view data);
    static NSAppleEventDescriptorRef descriptorWithBoolean(bool boolean);
    static NSAppleEventDescriptorRef descriptorWithEnumCode(FourCharCode enumerator);
    static NSAppleEventDescriptorRef descriptorWithTypeCode(FourCharCode typeCode);
    static NSAppleEventDescriptorRef descriptorWithInt32(std::int32_t signedInt);
    static NSAppleEventDescriptorRef descriptorWithDouble(double doubleValue);
    static NSAppleEventDescriptorRef descriptorWithString(const TextArgument& string);
    /// `date` is in seconds since 1970-01-01 00:00 UTC.
    static NSAppleEventDescriptorRef descriptorWithDate(double date);
    /// `path` is absolute; the descriptor holds its file URL.
    static NSAppleEventDescriptorRef descriptorWithFileURL(const TextArgument& path);
    static NSAppleEventDescriptorRef descriptorWithProcessIdentifier(std::int32_t processIdentifier);
    static NSAppleEventDescriptorRef descriptorWithBundleIdentifier(const TextArgument& bundleIdentifier);
    static NSAppleEventDescriptorRef listDescriptor();
    static NSAppleEventDescriptorRef recordDescriptor();
    /// A nil target stands for the null address, which means the current process.
    static NSAppleEventDescriptorRef appleEventWithEventClass(AEEventClass eventClass, AEEventID eventID,
                                                              const NSAppleEventDescriptorRef& targetDescriptor = {},
                                                              std::int16_t returnID = kAutoGenerateReturnID,
                                                              std::int32_t transactionID = kAnyTransactionID);

    const AEDesc& aeDesc() const { return mDesc; }
    void setAEDesc(AEDesc aeDesc) { mDesc = std::move(aeDesc); }
    DescType descriptorType() const { return mDesc.type(); }
    /// The bytes of a scalar; the flattened form of lists, records and events.
    std::string data() const;

    /// Values after a coercion; 0, false or empty when it fails.
    bool booleanValue() const;
    FourCharCode enumCodeValue() const;
    FourCharCode typeCodeValue() const;
    std::int32_t int32Value() const;
    double doubleValue() const;
    std::optional<std::u16string> stringValue() const;
    /// Seconds since 1970-01-01 00:00 UTC; nullopt when the coercion fails.
    std::optional<double> dateValue() const;
    /// The absolute path of a file URL; nullopt for anything else.
    std::optional<std::string> fileURLValue() const;
    /// The coerced descriptor; nil when the coercion fails.
    NSAppleEventDescriptorRef coerceToDescriptorType(DescType descriptorType) const;
    NSAppleEventDescriptorRef copy() const { return descriptorWithAEDesc(mDesc); }

    /// The class and ID of an Apple event; 0 for anything else.
    AEEventClass eventClass() const { return mDesc.eventClass(); }
    AEEventID eventID() const { return mDesc.eventID(); }
    std::int16_t returnID() const;
    std::int32_t transactionID() const;
    NSAppleEventDescriptorRef paramDescriptorForKeyword(AEKeyword keyword) const { return descriptorForKeyword(keyword); }
    void setParamDescriptor(const NSAppleEventDescriptorRef& descriptor, AEKeyword forKeyword) { setDescriptor(descriptor, forKeyword); }
    void removeParamDescriptorWithKeyword(AEKeyword keyword) { removeDescriptorWithKeyword(keyword); }
    NSAppleEventDescriptorRef attributeDescriptorForKeyword(AEKeyword keyword) const;
    void setAttributeDescriptor(const NSAppleEventDescriptorRef& descriptor, AEKeyword forKeyword);

    bool isRecordDescriptor() const { return mDesc.isRecord(); }
    std::size_t numberOfItems() const { return mDesc.count(); }
    /// Inserts in front of the item at the index, counted from 1; 0 appends, and an index beyond the end does nothing. Nil inserts the null
    /// descriptor.
    void insertDescriptor(const NSAppleEventDescriptorRef& descriptor, std::size_t atIndex);
    /// The item at the index, counted from 1; nil when there is none.
    NSAppleEventDescriptorRef descriptorAtIndex(std::size_t index) const;
    void removeDescriptorAtIndex(std::size_t index);
    /// Nil stores the null descriptor.
    void setDescriptor(const NSAppleEventDescriptorRef& descriptor, AEKeyword forKeyword);
    NSAppleEventDescriptorRef descriptorForKeyword(AEKeyword keyword) const;
    void removeDescriptorWithKeyword(AEKeyword keyword);
    /// The key at the index, counted from 1; 0 when there is none.
    AEKeyword keywordForDescriptorAtIndex(std::size_t index) const { return mDesc.keyAt(index); }

private:
    AEDesc mDesc;
};

/// The null descriptor for nil.
inline AEDesc aeDescOf(const NSAppleEventDescriptorRef& descriptor) {
    return descriptor ? descriptor->aeDesc() : AEDesc();
}

} // namespace quoddle
