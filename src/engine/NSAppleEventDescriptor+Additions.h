// SPDX-License-Identifier: MIT
// Further operations on descriptors: a record's user-defined fields by name, and file URLs as bytes.
#pragma once

#include "platform/ae/NSAppleEventDescriptor.h"

#include <QUrl>

namespace quoddle {

/// QUIRK: this group has an undefined value of its own, equal to descriptorWithUndefinedValue() but another instance; code that compares
/// instances relies on it.
namespace Additions {
NSAppleEventDescriptorRef descriptorWithUndefinedValue();
}

/// Nil for an empty URL. Raises "NSInternalInconsistencyException" when the URL has no bytes.
NSAppleEventDescriptorRef descriptorWithFileURLLegacy(const QUrl& url);

/// A copy of the value of the user-defined field with exactly this name; nil when there is none.
NSAppleEventDescriptorRef descriptorForPropertyName(const NSAppleEventDescriptorRef& record, const TextArgument& name);
/// QUIRK: changes only the copy of the fields that the look-up returns, so the record itself is unchanged; code written for the platform
/// relies on it.
void setDescriptorForPropertyName(const NSAppleEventDescriptorRef& record, const NSAppleEventDescriptorRef& descriptor,
                                  const TextArgument& name);
/// QUIRK: inserts at the index, and does not remove the item that is there; code written for the platform relies on it.
void replaceDescriptorAtIndex(const NSAppleEventDescriptorRef& list, const NSAppleEventDescriptorRef& descriptor, std::size_t index);

/// The text of a descriptor; a null string for nil and when it cannot be coerced.
QString stringValue(const NSAppleEventDescriptorRef& descriptor);

} // namespace quoddle
