// SPDX-License-Identifier: MIT
// Between the values of a machine and the descriptors that travel in Apple events.
#pragma once

#include "platform/ae/AEDesc.h"
#include "platform/applescript/image/Opcode.h"
#include "platform/applescript/machine/Machine.h"

#include <optional>

namespace quoddle::component {

using machine::Application;
using machine::Machine;
using machine::Value;

/// The depth beyond which values have no descriptor and descriptors are cut off.
constexpr std::size_t kMaximumDescriptorDepth = 64;

/// The descriptor of a value. Local references are followed; references to an application's objects become object specifiers. nullopt when
/// the value has no descriptor (a handler), when it nests too deeply, or when an error was raised, which is then in the machine.
std::optional<AEDesc> descriptorFromValue(Machine& machine, Value value);
/// Likewise, but a local reference becomes an object specifier, too.
std::optional<AEDesc> descriptorFromReference(Machine& machine, Value value);
/// The best descriptor type for a value, mostly found without making the descriptor; "null" for a value without a descriptor. A list or a
/// record has its own type whatever it holds, also a record with a class of its own.
DescType descriptorTypeOf(Machine& machine, Value value);
/// The value of a descriptor. Every descriptor has one: a type that the language does not know becomes Data. Nesting beyond
/// kMaximumDescriptorDepth is cut off. Object specifiers become references to objects of `owner`, an application or a reference to one;
/// undefined means the current application.
Value valueFromDescriptor(Machine& machine, const AEDesc& descriptor, Value owner = {});

/// The comparisons of a filter as descriptors have them. "Not equal" has no code of its own there.
struct TestRelation {
    Opcode opcode;
    DescType relation;
};
constexpr TestRelation kTestRelations[] = {
    {Opcode::TestEqual, "=   "_4cc},    {Opcode::TestGreater, ">   "_4cc},     {Opcode::TestGreaterOrEqual, ">=  "_4cc},
    {Opcode::TestLess, "<   "_4cc},     {Opcode::TestLessOrEqual, "<=  "_4cc}, {Opcode::TestStartsWith, "bgwt"_4cc},
    {Opcode::TestEndsWith, "ends"_4cc}, {Opcode::TestContains, "cont"_4cc},
};

/// The symbol of a name, which is compared without regard to case, unless the name stands between vertical bars.
Value symbolFor(Machine& machine, std::u16string_view name);

/// The bytes of a script as they are stored, and the script for such bytes. nullopt or failure, with `status` or the machine's error set,
/// when the value is not a script or the bytes are not one.
std::optional<std::string> imageFromScript(Machine& machine, Value script, bool runOnly, OSStatus& status);
Value scriptFromImage(Machine& machine, std::string_view bytes, OSStatus& status);

/// The address of an application; the current process for the current application.
AEDesc addressOf(const Application& application);
/// The application that a specifier or an application value belongs to; null when there is none.
const Application* applicationOf(Value value);

/// An "evnt" descriptor for an event's name, of which a script holds class and ID as eight characters. The descriptor has them as two codes
/// in the byte order of the processor, like all descriptor data.
AEDesc descriptorOfEventName(std::string_view characters);
/// The eight characters for an "evnt" descriptor. Empty when the descriptor holds fewer than two codes.
std::string eventNameOfDescriptor(const AEDesc& descriptor);

} // namespace quoddle::component
