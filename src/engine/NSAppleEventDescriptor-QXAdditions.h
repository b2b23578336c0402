// SPDX-License-Identifier: MIT
// Further operations on descriptors as free functions: special values, specifiers, type tests over all type codes that the language may
// deliver, 64-bit integers, references to bridged objects. All accept nil: tests return false, values 0, look-ups nil. Nothing here raises.
#pragma once

#include "platform/ae/NSAppleEventDescriptor.h"

#include <QVariant>

namespace quoddle {

/// The same instance on every call; it must not be changed.
NSAppleEventDescriptorRef descriptorWithMissingValue();
NSAppleEventDescriptorRef descriptorWithUndefinedValue();
NSAppleEventDescriptorRef descriptorWithAbsoluteOrdinal(FourCharCode ordinal);
/// A nil container stands for the application itself. Nil when the specifier cannot be built.
NSAppleEventDescriptorRef descriptorForObjectSpecifierFor(DescType desiredClass, const NSAppleEventDescriptorRef& container,
                                                          DescType keyForm, const NSAppleEventDescriptorRef& keyData);
NSAppleEventDescriptorRef descriptorForRangeObjectSpecifierFrom(const NSAppleEventDescriptorRef& from, const NSAppleEventDescriptorRef& to);

bool isMissingValue(const NSAppleEventDescriptorRef& descriptor);
bool isUndefinedValue(const NSAppleEventDescriptorRef& descriptor);
/// True for a record of any type.
bool isReallyARecord(const NSAppleEventDescriptorRef& descriptor);
bool isText(const NSAppleEventDescriptorRef& descriptor);
bool isInteger(const NSAppleEventDescriptorRef& descriptor);
bool isReal(const NSAppleEventDescriptorRef& descriptor);
bool isFile(const NSAppleEventDescriptorRef& descriptor);
bool isASObjCReference(const NSAppleEventDescriptorRef& descriptor);

/// 0 when the descriptor cannot be coerced.
std::int64_t KVBintegerValue(const NSAppleEventDescriptorRef& descriptor);
std::uint64_t KVBunsignedIntegerValue(const NSAppleEventDescriptorRef& descriptor);
std::int64_t integerValue(const NSAppleEventDescriptorRef& descriptor);
std::uint64_t unsignedIntegerValue(const NSAppleEventDescriptorRef& descriptor);
/// The object to which the reference refers (BridgedObjects.h); an invalid variant when there is none.
QVariant ASObjCReference(const NSAppleEventDescriptorRef& descriptor);

} // namespace quoddle
