// SPDX-License-Identifier: MIT
// The common ground of the readers of property lists. Private to Plist.
#pragma once

#include "platform/foundation/Plist.h"

#include <QDateTime>

namespace quoddle::Plist {

using Value = Result<QVariant, QString>;

inline Failure<QString> failure(const QString& text) {
    return Failure<QString>{text};
}
inline Failure<QString> tooDeep() {
    return failure(QStringLiteral("too deep: more than %1 levels").arg(kMaxDepth));
}
inline Failure<QString> tooMany() {
    return failure(QStringLiteral("too many values: more than %1").arg(kMaxNodes));
}

/// Takes bytes in the encoding that the document declares, or text that has been decoded.
Value readXML(const QByteArray& bytes);
Value readXML(const QString& text);
Value readBinary(const QByteArray& bytes);

/// Reads one value or a strings table.
Value readOpenStep(const QString& text);

} // namespace quoddle::Plist
