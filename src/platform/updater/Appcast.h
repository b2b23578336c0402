// SPDX-License-Identifier: MIT
// A feed of versions: an RSS channel whose items each announce a version, with the archive to download as its enclosure.
//
// Decision: elements and attributes of foreign namespaces are recognized by their local names, because feeds differ in prefixes, not in
// names. An item with missing or malformed parts is left out; the rest of the feed is used.
#pragma once

#include "platform/base/Result.h"

#include <optional>

#include <QList>
#include <QString>
#include <QUrl>

namespace quoddle {

struct AppcastItem {
    QString version;        ///< by which versions are compared; never empty
    QString displayVersion; ///< shown to the user; the same as `version` when the feed has no other
    QString minimumSystemVersion;
    QString operatingSystem; ///< empty for any system
    QUrl page;               ///< a web page about the version; empty for none
    QUrl notesURL;           ///< empty for none
    QString description;     ///< the notes in the feed itself, as text or HTML
    QUrl archive;            ///< empty when there is nothing to download
    qint64 archiveLength = 0;
    QByteArray signature; ///< in Base64, as in the feed; empty for none
};

struct Appcast {
    QUrl page; ///< a web page about all versions; empty for none
    QList<AppcastItem> items;
};

/// The size up to which feeds are read, in bytes.
constexpr qint64 kMaximumFeedSize = 4 << 20;

/// Relative links are resolved against `source`, the URL of the feed. The error is a message for the user.
Result<Appcast, QString> readAppcast(const QByteArray& feed, const QUrl& source);

/// The newest item that is for this system and newer than the installed version. `systemVersion` is the shell's version, which an item for
/// Linux may require; an item with another required system is not for us.
std::optional<AppcastItem> newestItem(const Appcast& feed, const QString& installedVersion, const QString& systemVersion);

} // namespace quoddle
