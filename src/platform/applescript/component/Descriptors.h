// SPDX-License-Identifier: MIT
// Between the values of a machine and the descriptors that travel in Apple events.
#pragma once

#include "platform/ae/AEDesc.h"
#include "platform/applescript/machine/Machine.h"

#include <optional>

namespace quoddle::component {

using machine::Application;
using machine::Machine;
using machine::Value;

/// Deeper values have no descriptor, and deeper descriptors are cut off.
constexpr std::size_t kMaximumDescriptorDepth = 64;

/// Local references are followed; references to an application's objects become object specifiers. Empty when the value has no descriptor
/// (a handler), when it nests too deeply, or when an error was raised on the way (it is then in the machine).
std::optional<AEDesc> descriptorFromValue(Machine& machine, Value value);
/// Likewise, but a reference is not followed: it becomes an object specifier.
std::optional<AEDesc> descriptorFromReference(Machine& machine, Value value);
/// The type in which a value is had best, mostly found without making the descriptor; "null" for what has none. A list or a record is one
/// whatever it holds, also a record with a class of its own.
DescType descriptorTypeOf(Machine& machine, Value value);
/// Any descriptor has a value; what the language does not know stays data. Nesting beyond the bounds is cut off.
Value valueFromDescriptor(Machine& machine, const AEDesc& descriptor);

/// The symbol of a name: compared without regard to case, unless it stands between vertical bars.
Value symbolFor(Machine& machine, std::u16string_view name);

/// The bytes of a script as they are stored, and back. Failure with the machine's error set, or empty, when it is no script.
std::optional<std::string> imageFromScript(Machine& machine, Value script, bool runOnly, OSStatus& status);
Value scriptFromImage(Machine& machine, std::string_view bytes, OSStatus& status);

/// The address of an application; the current process for the current application.
AEDesc addressOf(const Application& application);
/// The application that a specifier or an application value belongs to; null when it belongs to none.
const Application* applicationOf(Value value);

/// An "evnt" descriptor for an event's name, of which a script holds class and ID as eight characters. The descriptor has them as two codes in the byte order of the
/// processor, like all descriptor data.
AEDesc descriptorOfEventName(std::string_view characters);
/// The eight characters for an "evnt" descriptor. Empty when the descriptor holds fewer than two codes.
std::string eventNameOfDescriptor(const AEDesc& descriptor);

} // namespace quoddle::component
