// SPDX-License-Identifier: MIT
// Rich text files as documents: ".rtf", and ".rtfd" folders with their pictures. Text, fonts, sizes, colours, styles, alignment, indents,
// links and attached pictures are taken over; tables and lists degrade to text.
#pragma once

#include <QColor>
#include <QString>

class QTextDocument;

namespace quoddle {

/// Replaces what is in the document. False, with the document untouched, when the file cannot be read, is larger than 32 MiB or is no rich
/// text. Any damage inside costs formatting, not text. Main thread.
bool readRichText(const QString& path, QTextDocument& document);
/// The same for the text of a ".rtf" file that is in memory.
bool readRichTextData(const QByteArray& bytes, QTextDocument& document);

/// Text without a colour and black text take the label colour in a dark appearance and stand as they were written in a light one; other
/// colours are kept. May be called again when the appearance changes.
void adaptRichText(QTextDocument& document, bool isDark, const QColor& labelColor);

} // namespace quoddle
