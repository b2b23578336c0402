// SPDX-License-Identifier: MIT
// The second group of operations on descriptors: a record's user-defined fields by name, and file URLs as their bytes.
#pragma once

#include "platform/ae/NSAppleEventDescriptor.h"

#include <QUrl>

namespace quoddle {

/// This group has an undefined value of its own: equal to the other one, another instance.
namespace Additions {
NSAppleEventDescriptorRef descriptorWithUndefinedValue();
}

/// Nil for an empty URL. Raises "NSInternalInconsistencyException" when the URL has no bytes.
NSAppleEventDescriptorRef descriptorWithFileURLLegacy(const QUrl& url);

/// The value of the user-defined field with that name, case and all, or nil. A copy.
NSAppleEventDescriptorRef descriptorForPropertyName(const NSAppleEventDescriptorRef& record, const TextArgument& name);
/// Works on the list of fields as the look-up hands it out and does not write it back, so the record itself stays as it was.
void setDescriptorForPropertyName(const NSAppleEventDescriptorRef& record, const NSAppleEventDescriptorRef& descriptor,
                                  const TextArgument& name);
/// Inserts at the index; the item that was there is not removed.
void replaceDescriptorAtIndex(const NSAppleEventDescriptorRef& list, const NSAppleEventDescriptorRef& descriptor, std::size_t index);

/// The text of a descriptor; a null string when it is nil or does not coerce.
QString stringValue(const NSAppleEventDescriptorRef& descriptor);

} // namespace quoddle
