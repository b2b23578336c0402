// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace quoddle {

/// Decodes text of a code page, which has its Windows number (10000: Mac Roman). An unknown number counts as 1252. Bytes that mean nothing
/// become U+FFFD.
QString decodeCodePage(const QByteArray& bytes, int codePage);

/// The code page of a font's character set (\fcharset); 0 when the font has that of the document.
int codePageOfCharset(int charset);

} // namespace quoddle
