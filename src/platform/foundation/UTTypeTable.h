// SPDX-License-Identifier: MIT
// The types that are declared from the start, as data.
#pragma once

#include <span>

namespace quoddle {

/// Lists are separated by blanks, except that OSTypes are four characters each, one after the other.
struct UTTypeRow {
    const char* identifier;
    const char* conformsTo;
    const char* mimeTypes = "";
    const char* extensions = "";
    const char* osTypes = "";
};

/// Where several rows name the same tag, the first has it for its own.
std::span<const UTTypeRow> declaredTypes();

} // namespace quoddle
