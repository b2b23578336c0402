// SPDX-License-Identifier: MIT
// The notes about a version as plain text.
//
// Decision: notes come from the network and often in HTML. They are shown but never interpreted: the markup is removed here and reaches no
// HTML reader, so there are no scripts, no pictures from elsewhere and no layouts that take all memory.
#pragma once

#include <QString>

namespace quoddle {

/// Text without markup stays unchanged. Paragraphs, list items and line breaks become lines; scripts and styles are dropped. Notes that are
/// too long are cut at the end.
QString plainNotes(const QString& notes);

} // namespace quoddle
