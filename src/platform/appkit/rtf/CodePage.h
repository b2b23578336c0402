// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace quoddle {

/// Text in a code page by its Windows number (10000: Mac Roman); one that is not known counts as 1252. Bytes that mean nothing become
/// U+FFFD.
QString decodeCodePage(const QByteArray& bytes, int codePage);

/// The code page of a font's character set (\fcharset); 0 when the document's own is meant.
int codePageOfCharset(int charset);

} // namespace quoddle
