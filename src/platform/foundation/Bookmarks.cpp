// SPDX-License-Identifier: MIT
#include "platform/foundation/Bookmarks.h"

#include "platform/base/File.h"
#include "platform/base/UserFolders.h"

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kLargestList = 256 << 10; // bytes
constexpr qsizetype kMost = 1000;

} // namespace

QList<Bookmark> fileManagerBookmarks() {
    QList<Bookmark> bookmarks;
    const auto lines = readFileStart(configFolder() + "/gtk-3.0/bookmarks", kLargestList);
    if (!lines)
        return bookmarks;
    for (const QByteArray& line : QByteArray::fromStdString(*lines).split('\n')) {
        const qsizetype blank = line.indexOf(' ');
        const QUrl address = QUrl::fromEncoded(line.first(blank < 0 ? line.size() : blank));
        if (!address.isRelative() && address.isValid() && bookmarks.size() < kMost)
            bookmarks.append({address, blank < 0 ? QString() : QString::fromUtf8(line.mid(blank + 1))});
    }
    return bookmarks;
}

} // namespace quoddle
