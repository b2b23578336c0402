// SPDX-License-Identifier: MIT
// How much of a document can be laid out without keeping anybody waiting.
//
// Decision: told by what is in it, not by a clock, so that a text is shown on every machine or on none. What the toolkit takes its time for
// has a price each: characters, changes of format, paragraphs, fonts; and within one paragraph, where the time grows with the square,
// changes of format and stretches in which no line can break have a bound of their own.
#pragma once

class QTextDocument;

namespace quoddle {

/// Counted from the first; blockCount() when it is the whole document. Lays nothing out. On the thread of the document.
int quicklyLaidOutParagraphs(const QTextDocument& document);

} // namespace quoddle
