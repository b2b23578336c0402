// SPDX-License-Identifier: MIT
#include "platform/appkit/filepanel/FileIcons.h"

#include "platform/appkit/BundleIcon.h"
#include "platform/foundation/NSBundle.h"

#include <QApplication>
#include <QMimeDatabase>
#include <QStyle>

namespace quoddle {

namespace {

constexpr qsizetype kMostRemembered = 2000;

QIcon themedIcon(const QString& name, QStyle::StandardPixmap otherwise) {
    const QIcon themed = QIcon::fromTheme(name);
    return themed.isNull() ? QApplication::style()->standardIcon(otherwise) : themed;
}

} // namespace

FileIcons::FileIcons(QObject* parent) : QObject(parent) {
    mReadTimer.setInterval(0);
    connect(&mReadTimer, &QTimer::timeout, this, &FileIcons::readNext);
}

QIcon FileIcons::iconFor(const QString& path, bool isDirectory, bool isPackage) {
    if (isDirectory) {
        static const QIcon folder = themedIcon(QStringLiteral("folder"), QStyle::SP_DirIcon);
        return folder;
    }
    return isPackage ? iconOfPackage(path) : iconOfFileNamed(path.mid(path.lastIndexOf(u'/') + 1));
}

QIcon FileIcons::iconOfFileNamed(const QString& name) {
    const QMimeType type = QMimeDatabase().mimeTypeForFile(name, QMimeDatabase::MatchExtension);
    const auto known = mByMimeType.constFind(type.name());
    if (known != mByMimeType.constEnd())
        return *known;
    QIcon icon = QIcon::fromTheme(type.iconName());
    if (icon.isNull())
        icon = themedIcon(type.genericIconName(), QStyle::SP_FileIcon);
    mByMimeType.insert(type.name(), icon);
    return icon;
}

QIcon FileIcons::iconOfPackage(const QString& path) {
    const auto known = mByPath.constFind(path);
    if (known != mByPath.constEnd())
        return *known;
    if (!path.endsWith(QLatin1StringView(".app"), Qt::CaseInsensitive))
        return iconOfFileNamed(path.mid(path.lastIndexOf(u'/') + 1));
    if (mByPath.size() >= kMostRemembered)
        mByPath.clear();
    const QIcon general = genericAppletIcon();
    mByPath.insert(path, general);
    mToRead << path;
    mReadTimer.start();
    return general;
}

void FileIcons::readNext() {
    if (mToRead.isEmpty()) {
        mReadTimer.stop();
        return;
    }
    const QString path = mToRead.takeLast(); // the row that came into sight last is most likely still visible
    if (const auto bundle = NSBundle::bundleWithPath(path)) {
        mByPath.insert(path, iconForBundle(*bundle));
        Q_EMIT iconChanged(path);
    }
}

} // namespace quoddle
