// SPDX-License-Identifier: MIT
// Objects of this process to which scripts hold references ("ocid" specifiers carry eight bytes).
// Decision: the eight bytes are a ticket and not an address, so a forged or outdated one finds nothing instead of accessing memory.
#pragma once

#include "platform/ae/NSAppleEventDescriptor.h"

#include <QVariant>

namespace quoddle::BridgedObjects {

/// Returns a ticket, never 0, that is valid until it is withdrawn. All functions may be called on any thread.
std::uint64_t add(const QVariant& object);
void withdraw(std::uint64_t ticket);
/// An invalid variant for an unknown ticket.
QVariant find(std::uint64_t ticket);
/// A specifier for the object with the ticket, for use in scripts.
NSAppleEventDescriptorRef descriptor(std::uint64_t ticket);

} // namespace quoddle::BridgedObjects
