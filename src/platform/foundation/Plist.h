// SPDX-License-Identifier: MIT
// Property lists: XML, binary and OpenStep text in, XML out.
// One decision: values are QVariants of a fixed set of types, so that no caller meets a class of its own for a stored object.
//
//   dictionary QVariantMap · array QVariantList · text QString · data QByteArray · true/false bool
//   integer qlonglong (qulonglong above its range) · real double · date QDateTime (UTC) · UID QVariantMap {"CF$UID": n}
//
// Files are not trusted: size, depth and number of nodes are bounded. A binary list may share objects, so a value that was cheap to read
// can be endless to walk: walk values from outside with a limit of your own.
#pragma once

#include "platform/base/Result.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVariant>

namespace quoddle::Plist {

constexpr qsizetype kMaxBytes = 64 * 1024 * 1024;
constexpr int kMaxDepth = 256;
constexpr qsizetype kMaxNodes = 1'000'000;

/// The format is told by the content. A bare word is legal OpenStep text, so ask whether the value has the type you need.
/// The error is a sentence in English for the log.
Result<QVariant, QString> read(const QByteArray& bytes);
Result<QVariant, QString> readFile(const QString& path);
/// What a file holds, for the reader of your choice: not more than kMaxBytes, and nothing but regular files.
Result<QByteArray, QString> bytesOf(const QString& path);

/// A strings table, all of it or none (base/strings/StringsFile.h).
Result<QHash<QString, QString>, QString> readStrings(const QByteArray& bytes);

/// Fails on a value of another type than those above, and beyond the same bounds of depth and nodes.
Result<QByteArray, QString> writeXML(const QVariant& value);

} // namespace quoddle::Plist
