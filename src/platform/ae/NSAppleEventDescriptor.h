// SPDX-License-Identifier: MIT
// NSAppleEventDescriptor: the descriptor as an object with reference semantics. It owns one AEDesc.
// Handles are std::shared_ptr (NSAppleEventDescriptorRef); nil is the empty pointer and must be tested before `->`.
// A descriptor taken out of another one is a copy: changing it leaves the container as it was.
// One object is used by one thread at a time; to hand a descriptor to another thread, hand over its aeDesc().
// Operations that change a descriptor of the wrong kind do nothing, as the platform's do.
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
    /// Seconds since 1970-01-01 00:00 UTC.
    static NSAppleEventDescriptorRef descriptorWithDate(double date);
    /// An absolute path; the descriptor holds its file URL.
    static NSAppleEventDescriptorRef descriptorWithFileURL(const TextArgument& path);
    static NSAppleEventDescriptorRef descriptorWithProcessIdentifier(std::int32_t processIdentifier);
    static NSAppleEventDescriptorRef descriptorWithBundleIdentifier(const TextArgument& bundleIdentifier);
    static NSAppleEventDescriptorRef listDescriptor();
    static NSAppleEventDescriptorRef recordDescriptor();
    /// A nil target is the null address, which is the current process.
    static NSAppleEventDescriptorRef appleEventWithEventClass(AEEventClass eventClass, AEEventID eventID,
                                                              const NSAppleEventDescriptorRef& targetDescriptor = {},
                                                              std::int16_t returnID = kAutoGenerateReturnID,
                                                              std::int32_t transactionID = kAnyTransactionID);

    const AEDesc& aeDesc() const { return mDesc; }
    void setAEDesc(AEDesc aeDesc) { mDesc = std::move(aeDesc); }
    DescType descriptorType() const { return mDesc.type(); }
    /// The bytes of a scalar; a flattened form for lists, records and events.
    std::string data() const;

    /// Values after coercion; 0, false or nothing when it fails.
    bool booleanValue() const;
    FourCharCode enumCodeValue() const;
    FourCharCode typeCodeValue() const;
    std::int32_t int32Value() const;
    double doubleValue() const;
    std::optional<std::u16string> stringValue() const;
    /// Seconds since 1970-01-01 00:00 UTC.
    std::optional<double> dateValue() const;
    /// The absolute path of a file URL.
    std::optional<std::string> fileURLValue() const;
    /// A new descriptor, or nil.
    NSAppleEventDescriptorRef coerceToDescriptorType(DescType descriptorType) const;
    NSAppleEventDescriptorRef copy() const { return descriptorWithAEDesc(mDesc); }

    /// Apple events; 0 for anything else.
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
    /// Index 0 appends, others are 1-based and insert in front of what is there; an index beyond the end does nothing. Nil inserts the null
    /// descriptor.
    void insertDescriptor(const NSAppleEventDescriptorRef& descriptor, std::size_t atIndex);
    /// 1-based; nil when there is none.
    NSAppleEventDescriptorRef descriptorAtIndex(std::size_t index) const;
    void removeDescriptorAtIndex(std::size_t index);
    /// A nil descriptor stores the null descriptor.
    void setDescriptor(const NSAppleEventDescriptorRef& descriptor, AEKeyword forKeyword);
    NSAppleEventDescriptorRef descriptorForKeyword(AEKeyword keyword) const;
    void removeDescriptorWithKeyword(AEKeyword keyword);
    /// 1-based; 0 when there is none.
    AEKeyword keywordForDescriptorAtIndex(std::size_t index) const { return mDesc.keyAt(index); }

private:
    AEDesc mDesc;
};

/// The null descriptor for nil.
inline AEDesc aeDescOf(const NSAppleEventDescriptorRef& descriptor) {
    return descriptor ? descriptor->aeDesc() : AEDesc();
}

} // namespace quoddle
