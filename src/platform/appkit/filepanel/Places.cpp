// SPDX-License-Identifier: MIT
#include "platform/appkit/filepanel/Places.h"

#include "platform/appkit/filepanel/RowDelegate.h"
#include "platform/appkit/NSPanel.h"
#include "platform/base/Volumes.h"
#include "platform/foundation/Bookmarks.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QStandardPaths>
#include <QStyle>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMostListed = 50;
constexpr int kWidth = 148;

struct StandardPlace {
    Place::Kind kind;
    QStandardPaths::StandardLocation location;
    const char* title;
};

constexpr StandardPlace kStandardPlaces[] = {
    {Place::Kind::home, QStandardPaths::HomeLocation, QT_TRANSLATE_NOOP("Places", "Home")},
    {Place::Kind::desktop, QStandardPaths::DesktopLocation, QT_TRANSLATE_NOOP("Places", "Desktop")},
    {Place::Kind::folder, QStandardPaths::DocumentsLocation, QT_TRANSLATE_NOOP("Places", "Documents")},
    {Place::Kind::folder, QStandardPaths::DownloadLocation, QT_TRANSLATE_NOOP("Places", "Downloads")},
    {Place::Kind::folder, QStandardPaths::MusicLocation, QT_TRANSLATE_NOOP("Places", "Music")},
    {Place::Kind::folder, QStandardPaths::PicturesLocation, QT_TRANSLATE_NOOP("Places", "Pictures")},
    {Place::Kind::folder, QStandardPaths::MoviesLocation, QT_TRANSLATE_NOOP("Places", "Videos")},
};

struct PlaceIcon {
    const char* themed;
    QStyle::StandardPixmap otherwise;
};

constexpr PlaceIcon kIcons[] = {
    {"user-home", QStyle::SP_DirHomeIcon},      {"user-desktop", QStyle::SP_DesktopIcon}, {"folder", QStyle::SP_DirIcon},
    {"drive-harddisk", QStyle::SP_DriveHDIcon}, {"computer", QStyle::SP_ComputerIcon},
};

QString nameOf(const QString& path) {
    return path.mid(path.lastIndexOf(u'/') + 1);
}

QIcon iconOf(Place::Kind kind) {
    const PlaceIcon& icon = kIcons[static_cast<int>(kind)];
    const QIcon themed = QIcon::fromTheme(QString::fromLatin1(icon.themed));
    return themed.isNull() ? QApplication::style()->standardIcon(icon.otherwise) : themed;
}

} // namespace

QList<Place> availablePlaces() {
    QList<Place> places;
    const auto add = [&places](const Place& place) {
        const bool isKnown = std::any_of(places.begin(), places.end(), [&](const Place& each) { return each.path == place.path; });
        if (!isKnown && !place.path.isEmpty())
            places.append(place);
    };
    for (const StandardPlace& place : kStandardPlaces) {
        const QString path = QDir::cleanPath(QStandardPaths::writableLocation(place.location));
        if (QFileInfo(path).isDir())
            add({place.kind, QCoreApplication::translate("Places", place.title), path});
    }
    const QList<Bookmark> bookmarks = fileManagerBookmarks();
    for (const Bookmark& bookmark : bookmarks.first(std::min(bookmarks.size(), kMostListed)))
        if (const QString path = bookmark.address.toLocalFile(); path.startsWith(u'/'))
            add({Place::Kind::folder, bookmark.title.isEmpty() ? nameOf(path) : bookmark.title, path});
    for (const std::string& volume : mountedVolumes(kMostListed)) {
        const QString path = QFile::decodeName(volume.c_str());
        add({Place::Kind::volume, nameOf(path), path});
    }
    add({Place::Kind::computer, QCoreApplication::translate("Places", "Computer"), u"/"_s});
    return places;
}

PlacesList::PlacesList(QWidget* parent) : QListWidget(parent) {
    const QList<Place> places = availablePlaces();
    for (const Place& place : places) {
        auto* item = new QListWidgetItem(iconOf(place.kind), place.title, this);
        item->setData(Qt::UserRole, place.path);
        item->setToolTip(toolTipText(place.path));
    }
    setItemDelegate(new RowDelegate(this));
    setTextElideMode(Qt::ElideMiddle);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(this, &QListWidget::itemClicked, this, &PlacesList::choose);
}

void PlacesList::setCurrentPlace(const QString& path) {
    QListWidgetItem* current = nullptr;
    for (int row = 0; row < count(); ++row)
        if (item(row)->data(Qt::UserRole).toString() == path)
            current = item(row);
    setCurrentItem(current);
    if (!current)
        clearSelection();
}

QSize PlacesList::sizeHint() const {
    return {kWidth, QListWidget::sizeHint().height()};
}

void PlacesList::choose(const QListWidgetItem* item) {
    if (item)
        Q_EMIT placeChosen(item->data(Qt::UserRole).toString());
}

void PlacesList::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space)
        choose(currentItem()); // the key goes no further, so the panel is not confirmed
    else
        QListWidget::keyPressEvent(event);
}

} // namespace quoddle
