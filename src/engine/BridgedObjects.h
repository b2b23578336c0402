// SPDX-License-Identifier: MIT
// Objects of this process that a script holds by reference ("ocid" specifiers carry eight bytes). The decision: the eight bytes are a
// ticket, not an address, so a forged or stale one finds nothing instead of touching memory.
#pragma once

#include "platform/ae/NSAppleEventDescriptor.h"

#include <QVariant>

namespace quoddle::BridgedObjects {

/// Any thread. The ticket stays good until it is withdrawn; never 0.
std::uint64_t add(const QVariant& object);
void withdraw(std::uint64_t ticket);
/// An invalid variant for an unknown ticket.
QVariant find(std::uint64_t ticket);
/// The specifier by which a script holds the object of the ticket.
NSAppleEventDescriptorRef descriptor(std::uint64_t ticket);

} // namespace quoddle::BridgedObjects
