// SPDX-License-Identifier: MIT
// Rich text files as documents: ".rtf", and ".rtfd" folders with their pictures. Text, fonts, sizes, colours, styles, alignment, indents,
// links and attached pictures are taken over; tables and lists degrade to text.
#pragma once

#include "platform/base/OSStatus.h"

#include <QColor>
#include <QString>

class QTextDocument;

namespace quoddle {

/// The most bytes of a ".rtf" file, or of the text of a ".rtfd" folder, that are read: texts of files are shown, and laying out formats
/// takes time.
inline constexpr qint64 kLargestRichTextFile = qint64{256} << 10;
/// The most bytes of a text in memory that are read.
inline constexpr qint64 kLargestRichText = qint64{32} << 20;

/// Replaces the contents of the document by those of a file or folder. On an error the document is untouched: memFullErr when there is more
/// than the most bytes, another error when the file cannot be read or is no rich text. Any damage inside costs formatting, not text. Main
/// thread.
OSStatus readRichText(const QString& path, QTextDocument& document);
/// Reads the text of a ".rtf" file that is in memory. False when there is too much of it or it is no rich text.
bool readRichTextData(const QByteArray& bytes, QTextDocument& document);

/// Fits the text colours to the appearance. Text without a colour and black text take the label colour in a dark appearance and their own
/// colours in a light one; other colours are kept. May be called again when the appearance changes.
void adaptRichText(QTextDocument& document, bool isDark, const QColor& labelColor);

} // namespace quoddle
