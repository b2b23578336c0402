// SPDX-License-Identifier: MIT
// Names that scripts take from frameworks of other systems: "current application's NSString", class "NSObject". There is nothing behind
// such a name here, but scripts keep the names in properties and use only some of them, so a name is a reference until it is called.
#pragma once

#include "platform/applescript/machine/Machine.h"

namespace quoddle::language {

/// Whether the reference names, directly or at the end of its containers, an identifier or a class in the current application.
bool isFrameworkName(const machine::Specifier& specifier);
/// Whether an element is a class that is named by a text, as in class "NSObject".
bool isNamedClass(FourCharCode elementClass, machine::Value name);
/// A reference value to class "NAME" of the current application.
machine::Value frameworkClass(machine::Machine& machine, machine::Value name);
/// Raises the error of a call to what such a name stands for; the message says the name. `target` is a framework name.
machine::Value noFramework(machine::Machine& machine, machine::Value target);

} // namespace quoddle::language
