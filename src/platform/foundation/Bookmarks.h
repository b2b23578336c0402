// SPDX-License-Identifier: MIT
// The places that the user keeps in the file manager. File managers share one list, the file gtk-3.0/bookmarks in the folder for settings:
// each line has an address and, after a blank, an optional title.
#pragma once

#include <QList>
#include <QUrl>

namespace quoddle {

struct Bookmark {
    QUrl address;  // a folder of this computer (file:) or a place on a server
    QString title; // empty when the user has given no title
};

/// The bookmarks in the user's order; at most 1,000.
QList<Bookmark> fileManagerBookmarks();

} // namespace quoddle
