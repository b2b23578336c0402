// SPDX-License-Identifier: MIT
// The notes about a version as plain text.
//
// Decision: notes come from anybody and often as HTML. What they say is shown, nothing in them is carried out: the markup is taken away
// here and never reaches a reader of HTML, so there are no scripts, no pictures from elsewhere and no layouts that take the memory.
#pragma once

#include <QString>

namespace quoddle {

/// Text without markup stays as it is. Paragraphs, list items and line breaks become lines; scripts and styles are left out. The end of
/// endless notes is left out, too.
QString plainNotes(const QString& notes);

} // namespace quoddle
