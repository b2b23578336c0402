// SPDX-License-Identifier: MIT
#include "platform/panels/ApplicationList.h"

#include "platform/ae/transport/AEApplicationLookup.h"
#include "platform/appkit/BundleIcon.h"
#include "platform/appkit/NSPanel.h"
#include "platform/appkit/StockIcons.h"
#include "platform/foundation/DesktopEntry.h"

#include <algorithm>

#include <QApplication>
#include <QCollator>
#include <QDirIterator>
#include <QFileInfo>
#include <QSet>
#include <QStandardPaths>
#include <QStyle>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaximumEntries = 10'000;
constexpr int kIconSize = 24;

bool names(const QString& list, const QStringList& desktops) {
    const QStringList given = list.split(u';', Qt::SkipEmptyParts);
    return std::any_of(given.begin(), given.end(), [&](const QString& name) { return desktops.contains(name); });
}

bool isInMenu(const DesktopEntryValues& entry) {
    static const QStringList kDesktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts);
    if (entry.value(u"Type"_s) != "Application"_L1 || entry.value(u"NoDisplay"_s) == "true"_L1)
        return false;
    const QString only = entry.value(u"OnlyShowIn"_s);
    return (only.isEmpty() || names(only, kDesktops)) && !names(entry.value(u"NotShowIn"_s), kDesktops);
}

/// The applications of the desktop's menu. An entry of the user hides the system's entry with the same name, also when it is itself hidden.
std::vector<ListedApplication> applicationsOfMenu() {
    std::vector<ListedApplication> found;
    QSet<QString> known;
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        QDirIterator files(folder, {u"*.desktop"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext() && known.size() < kMaximumEntries) {
            const QString path = files.next();
            const QString name = path.mid(folder.size() + 1).replace(u'/', u'-');
            if (known.contains(name))
                continue;
            known.insert(name);
            const auto entry = desktopEntryValues(path);
            const QString shown = entry ? desktopEntryName(*entry) : QString();
            if (shown.isEmpty() || entry->value(u"Hidden"_s) == "true"_L1 || !isInMenu(*entry))
                continue;
            const QString bundle = entry->value(kDesktopEntryBundleKey);
            if (bundle.isEmpty())
                found.push_back({shown, path, entry->value(u"Icon"_s)});
            else if (QFileInfo(bundle).isDir())
                found.push_back({shown, bundle, entry->value(u"Icon"_s)});
        }
    }
    return found;
}

} // namespace

std::vector<ListedApplication> listApplications() {
    std::vector<ListedApplication> found = applicationsOfMenu();
    for (const AERunningApplication& running : AEListRunningApplications()) {
        const QString path = QString::fromStdString(running.path);
        const bool isNew = std::none_of(found.begin(), found.end(), [&](const ListedApplication& other) { return other.path == path; });
        if (isNew && !path.isEmpty())
            found.push_back({QString::fromStdString(running.name), path, {}});
    }
    QCollator order;
    order.setCaseSensitivity(Qt::CaseInsensitive);
    order.setNumericMode(true);
    std::sort(found.begin(), found.end(), [&](const auto& a, const auto& b) { return order.compare(a.name, b.name) < 0; });
    return found;
}

AEDesc descriptorOfApplication(const ListedApplication& application, bool asAlias) {
    if (asAlias)
        return AEDesc::ofFilePath(application.path.toStdString()).withType("alis"_4cc);
    // Scripts name applications by their names; the path is used when the name would find another application.
    const AEDesc byName("aprl"_4cc, application.name.toStdString());
    if (!QFileInfo(application.path).isDir())
        return byName;
    const auto found = AEFindApplication(byName);
    const bool isSame = found && AECanonicalPath(found->path) == AECanonicalPath(application.path.toStdString());
    return isSame ? byName : AEDesc("aprl"_4cc, application.path.toStdString());
}

ApplicationListModel::ApplicationListModel(std::vector<ListedApplication> applications, QObject* parent)
    : QAbstractListModel(parent), mApplications(std::move(applications)), mIcons(mApplications.size()) {}

int ApplicationListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(mApplications.size());
}

const QIcon& ApplicationListModel::iconAt(std::size_t row) const {
    QIcon& icon = mIcons[row];
    if (!icon.isNull())
        return icon;
    const ListedApplication& application = mApplications[row];
    if (application.icon.startsWith(u'/'))
        icon = iconFromImageFile(application.icon);
    else if (!application.icon.isEmpty())
        icon = QIcon::fromTheme(application.icon);
    if ((icon.isNull() || icon.pixmap(kIconSize).isNull()) && application.path.endsWith(".desktop"_L1))
        icon = QIcon::fromTheme(u"application-x-executable"_s, QApplication::style()->standardIcon(QStyle::SP_DesktopIcon));
    if (icon.isNull())
        icon = genericAppletIcon();
    return icon;
}

QVariant ApplicationListModel::data(const QModelIndex& index, int role) const {
    static const QPixmap kRoom = [] {
        QPixmap room(kIconSize, kIconSize);
        room.fill(Qt::transparent);
        return room;
    }();
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= mApplications.size())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return mApplications[row].name;
    case Qt::ToolTipRole:
        return toolTipText(mApplications[row].path);
    case Qt::DecorationRole:
        return mShowsIcons ? QVariant(iconAt(row)) : QVariant(kRoom);
    default:
        return {};
    }
}

void ApplicationListModel::showIcons() {
    mShowsIcons = true;
    if (!mApplications.empty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {Qt::DecorationRole});
}

} // namespace quoddle
