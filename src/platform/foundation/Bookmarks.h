// SPDX-License-Identifier: MIT
// The places that the user keeps in the file manager. File managers share one list: gtk-3.0/bookmarks in the folder for settings, an
// address in each line, a blank and a title after it.
#pragma once

#include <QList>
#include <QUrl>

namespace quoddle {

struct Bookmark {
    QUrl address;  // of a folder of this computer (file:) or a place on a server
    QString title; // empty when the user has given none
};

/// In the user's order; at most 1,000.
QList<Bookmark> fileManagerBookmarks();

} // namespace quoddle
