// SPDX-License-Identifier: MIT
// Rich text files as documents: ".rtf", and ".rtfd" folders with their pictures. Text, fonts, sizes, colours, styles, alignment, indents,
// links and attached pictures are taken over; tables and lists degrade to text.
#pragma once

#include "platform/base/OSStatus.h"

#include <QColor>
#include <QString>

class QTextDocument;

namespace quoddle {

/// The most bytes of a ".rtf" file, or of the text of a ".rtfd" folder, that are read: what is in files is shown, and formats take their
/// time.
inline constexpr qint64 kLargestRichTextFile = qint64{256} << 10;
/// The most bytes of a text in memory.
inline constexpr qint64 kLargestRichText = qint64{32} << 20;

/// Replaces what is in the document. Otherwise the document is untouched: memFullErr when there is more than the most bytes, another error
/// when the file cannot be read or is no rich text. Any damage inside costs formatting, not text. Main thread.
OSStatus readRichText(const QString& path, QTextDocument& document);
/// For the text of a ".rtf" file that is in memory: false when there is too much of it or it is no rich text.
bool readRichTextData(const QByteArray& bytes, QTextDocument& document);

/// Text without a colour and black text take the label colour in a dark appearance and stand as they were written in a light one; other
/// colours are kept. May be called again when the appearance changes.
void adaptRichText(QTextDocument& document, bool isDark, const QColor& labelColor);

} // namespace quoddle
