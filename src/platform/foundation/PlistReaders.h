// SPDX-License-Identifier: MIT
// What the three readers of property lists have in common. Private to Plist.
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

/// Bytes in the encoding that the document declares, or text whose encoding is settled.
Value readXML(const QByteArray& bytes);
Value readXML(const QString& text);
Value readBinary(const QByteArray& bytes);

/// One value, or a strings table.
Value readOpenStep(const QString& text);

} // namespace quoddle::Plist
