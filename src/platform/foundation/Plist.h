// SPDX-License-Identifier: MIT
// Reads property lists in XML, binary and OpenStep text form, and writes XML.
// Decision: values are QVariants of a fixed set of types, so that no caller needs a class of its own for stored objects.
//
//   dictionary QVariantMap · array QVariantList · text QString · data QByteArray · true/false bool
//   integer qlonglong (qulonglong above its range) · real double · date QDateTime (UTC) · UID QVariantMap {"CF$UID": n}
//
// Files are not trusted: size, depth and number of nodes are bounded. Objects of a binary list may be shared, so a value that was cheap to
// read can be endless to walk through: walk through values from outside with a limit of your own.
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

/// The content tells the format. A bare word is legal OpenStep text, so check that the value has the type you need. The error is an English
/// sentence for the log.
Result<QVariant, QString> read(const QByteArray& bytes);
Result<QVariant, QString> readFile(const QString& path);
/// The bytes of a file for a reader of the caller's choice. An error for files larger than kMaxBytes and for anything but regular files.
Result<QByteArray, QString> bytesOf(const QString& path);

/// The texts of a strings table (base/strings/StringsFile.h); an error in the table is an error of the whole.
Result<QHash<QString, QString>, QString> readStrings(const QByteArray& bytes);

/// An error for a value of any type but those above, and beyond the bounds of depth and nodes.
Result<QByteArray, QString> writeXML(const QVariant& value);

} // namespace quoddle::Plist
