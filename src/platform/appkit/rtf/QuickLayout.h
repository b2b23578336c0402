// SPDX-License-Identifier: MIT
// How much of a document can be laid out without keeping anybody waiting.
//
// Decision: the contents decide, not a clock, so that a text is shown on every machine or on none. Characters, changes of format,
// paragraphs and fonts, which cost the toolkit time, each have a price. Within one paragraph the time grows with the square of its changes
// of format and of stretches in which no line can break, so these have bounds of their own.
#pragma once

class QTextDocument;

namespace quoddle {

/// The number of paragraphs, from the first on, that can be laid out quickly; blockCount() when it is the whole document. Lays nothing out.
/// Called on the thread of the document.
int quicklyLaidOutParagraphs(const QTextDocument& document);

} // namespace quoddle
