// SPDX-License-Identifier: MIT
#pragma once

#include "platform/applescript/machine/HeapObject.h"

namespace quoddle::component {

/// A hash of a value and of all it holds: items, fields, the properties of script objects. Two fingerprints of one value, taken in one process
/// while the value is alive, are equal when nothing in it has changed between them. What a run cannot change, the trees and the code of
/// handlers, is not walked. Allocates as much as the value has objects; touches no heap.
std::uint64_t fingerprintOf(machine::Value value);

} // namespace quoddle::component
