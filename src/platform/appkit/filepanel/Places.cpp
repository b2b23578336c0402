// SPDX-License-Identifier: MIT
#include "platform/appkit/filepanel/Places.h"

#include "platform/appkit/filepanel/RowDelegate.h"
#include "platform/appkit/NSPanel.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QStandardPaths>
#include <QStyle>
#include <QUrl>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kLargestList = 256 * 1024; // bytes of a list of mounts or bookmarks
constexpr qsizetype kMostListed = 50;
constexpr int kWidth = 148;

struct StandardPlace {
    Place::Kind kind;
    QStandardPaths::StandardLocation location;
    const char* title;
};

constexpr StandardPlace kStandardPlaces[] = {
    {Place::Kind::home, QStandardPaths::HomeLocation, "Home"},
    {Place::Kind::desktop, QStandardPaths::DesktopLocation, "Desktop"},
    {Place::Kind::folder, QStandardPaths::DocumentsLocation, "Documents"},
    {Place::Kind::folder, QStandardPaths::DownloadLocation, "Downloads"},
    {Place::Kind::folder, QStandardPaths::MusicLocation, "Music"},
    {Place::Kind::folder, QStandardPaths::PicturesLocation, "Pictures"},
    {Place::Kind::folder, QStandardPaths::MoviesLocation, "Videos"},
};

struct PlaceIcon {
    const char* themed;
    QStyle::StandardPixmap otherwise;
};

constexpr PlaceIcon kIcons[] = {
    {"user-home", QStyle::SP_DirHomeIcon},      {"user-desktop", QStyle::SP_DesktopIcon}, {"folder", QStyle::SP_DirIcon},
    {"drive-harddisk", QStyle::SP_DriveHDIcon}, {"computer", QStyle::SP_ComputerIcon},
};

QList<QByteArray> linesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(kLargestList).split('\n') : QList<QByteArray>();
}

/// Blanks and the like stand in the list of mounts as three octal digits.
QString unescaped(const QByteArray& field) {
    QByteArray plain;
    for (qsizetype i = 0; i < field.size(); ++i) {
        bool isEscape = field.at(i) == '\\' && i + 3 < field.size();
        const int code = isEscape ? field.mid(i + 1, 3).toInt(&isEscape, 8) : 0;
        plain += isEscape ? static_cast<char>(code) : field.at(i);
        i += isEscape ? 3 : 0;
    }
    return QFile::decodeName(plain);
}

QList<Place> mountedVolumes() {
    QList<Place> places;
    for (const QByteArray& line : linesOf(u"/proc/self/mounts"_s)) {
        const QString path = unescaped(line.split(' ').value(1));
        const bool isTheUsers = path.startsWith("/media/"_L1) || path.startsWith("/run/media/"_L1) || path.startsWith("/mnt/"_L1);
        if (isTheUsers && places.size() < kMostListed)
            places.append({Place::Kind::volume, path.mid(path.lastIndexOf(u'/') + 1), path});
    }
    return places;
}

QList<Place> bookmarks() {
    QList<Place> places;
    const QString file = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/gtk-3.0/bookmarks"_s;
    for (const QByteArray& line : linesOf(file)) {
        const qsizetype blank = line.indexOf(' ');
        const QString path = QUrl::fromEncoded(line.first(blank < 0 ? line.size() : blank)).toLocalFile();
        const QString title = blank < 0 ? path.mid(path.lastIndexOf(u'/') + 1) : QString::fromUtf8(line.mid(blank + 1));
        if (path.startsWith(u'/') && places.size() < kMostListed)
            places.append({Place::Kind::folder, title, path});
    }
    return places;
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
            add({place.kind, QString::fromLatin1(place.title), path});
    }
    for (const Place& place : bookmarks())
        add(place);
    for (const Place& place : mountedVolumes())
        add(place);
    add({Place::Kind::computer, u"Computer"_s, u"/"_s});
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
        choose(currentItem()); // and the panel stays
    else
        QListWidget::keyPressEvent(event);
}

} // namespace quoddle
