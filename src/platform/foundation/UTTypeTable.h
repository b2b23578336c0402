// SPDX-License-Identifier: MIT
// The types that are declared from the start, as a table.
#pragma once

#include <span>

namespace quoddle {

/// Lists are separated by blanks. OSTypes have four characters each and follow one another without a separator.
struct UTTypeRow {
    const char* identifier;
    const char* conformsTo;
    const char* mimeTypes = "";
    const char* extensions = "";
    const char* osTypes = "";
};

/// The first of several rows with the same tag is the preferred type for that tag.
std::span<const UTTypeRow> declaredTypes();

} // namespace quoddle
