// SPDX-License-Identifier: MIT
// A feed of versions: an RSS channel whose items each announce a version, with the archive to download as its enclosure.
//
// Decision: elements and attributes of foreign namespaces are known by their names alone; feeds differ in prefixes, not in names. What is
// missing or nonsense in an item takes that item away, not the feed.
#pragma once

#include "platform/base/Result.h"

#include <optional>

#include <QList>
#include <QString>
#include <QUrl>

namespace quoddle {

struct AppcastItem {
    QString version;        ///< never empty; what versions are compared by
    QString displayVersion; ///< what people are told; the version itself when the feed has no other
    QString minimumSystemVersion;
    QString operatingSystem; ///< empty: any
    QUrl page;               ///< where people read about it; empty for none
    QUrl notesURL;           ///< empty for none
    QString description;     ///< notes that stand in the feed, as text or HTML
    QUrl archive;            ///< empty: there is nothing to download
    qint64 archiveLength = 0;
    QByteArray signature; ///< as the feed has it, in Base64; empty for none
};

struct Appcast {
    QUrl page; ///< of all versions; empty for none
    QList<AppcastItem> items;
};

/// More than this is not read.
constexpr qint64 kMaximumFeedSize = 4 << 20;

/// `source` is where the feed was found, for links that are relative to it. The error is a text for people.
Result<Appcast, QString> readAppcast(const QByteArray& feed, const QUrl& source);

/// The newest of the items that are for this system and newer than the installed version. `systemVersion` is that of the shell, which is
/// what an item for Linux may ask for; what others ask for is a system that we are not.
std::optional<AppcastItem> newestItem(const Appcast& feed, const QString& installedVersion, const QString& systemVersion);

} // namespace quoddle
