// SPDX-License-Identifier: MIT
#include "platform/appkit/filepanel/DirectoryModel.h"

#include "platform/appkit/filepanel/FileIcons.h"

#include <numeric>

#include <QDateTime>
#include <QLocale>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr QChar kFirstStrongIsolate(0x2068);
constexpr QChar kPopDirectionalIsolate(0x2069);
constexpr int kRefreshDelay = 400; // milliseconds in which changes are gathered

} // namespace

DirectoryModel::DirectoryModel(QObject* parent)
    : QAbstractTableModel(parent), mContents(std::make_shared<DirectoryContents>()), mIcons(std::make_unique<FileIcons>()),
      mReader([this](std::shared_ptr<const DirectoryContents> contents) { show(std::move(contents)); }) {
    mRefreshTimer.setSingleShot(true);
    mRefreshTimer.setInterval(kRefreshDelay);
    connect(&mRefreshTimer, &QTimer::timeout, this, &DirectoryModel::refresh);
    connect(&mWatcher, &QFileSystemWatcher::directoryChanged, this, [this] {
        // not restarted by each change, so a folder that changes all the time is shown all the same
        if (!mRefreshTimer.isActive() && mState != DirectoryState::reading)
            mRefreshTimer.start();
    });
    connect(mIcons.get(), &FileIcons::iconChanged, this, [this](const QString& path) {
        const int row = path.startsWith(mDirectory) ? rowOf(path.mid(path.lastIndexOf(u'/') + 1)) : -1;
        if (row >= 0)
            Q_EMIT dataChanged(index(row, nameColumn), index(row, nameColumn), {Qt::DecorationRole});
    });
}

DirectoryModel::~DirectoryModel() = default;

void DirectoryModel::setDirectory(const QString& path) {
    mDirectory = path;
    mIsRefreshing = false;
    mRefreshTimer.stop();
    beginResetModel();
    mContents = std::make_shared<DirectoryContents>();
    mRows.clear();
    mState = DirectoryState::reading;
    endResetModel();
    watch();
    mReader.read(mDirectory, mFilter);
    Q_EMIT stateChanged();
}

void DirectoryModel::setFilter(const DirectoryFilter& filter) {
    mFilter = filter;
    if (!mDirectory.isEmpty())
        refresh();
}

void DirectoryModel::refresh() {
    mIsRefreshing = true;
    watch(); // the path may lead to another folder now, which needs a watch of its own
    mReader.read(mDirectory, mFilter);
}

void DirectoryModel::watch() {
    if (const QStringList watched = mWatcher.directories(); !watched.isEmpty())
        mWatcher.removePaths(watched);
    mWatcher.addPath(mDirectory);
}

void DirectoryModel::show(std::shared_ptr<const DirectoryContents> contents) {
    if (mIsRefreshing && contents->state == DirectoryState::reading)
        return;
    const bool isSame = *mContents == *contents;
    mIsRefreshing = false;
    if (isSame)
        return;
    beginResetModel();
    mContents = std::move(contents);
    mState = mContents->state;
    sortRows();
    endResetModel();
    Q_EMIT stateChanged();
}

void DirectoryModel::sortRows() {
    const auto& entries = mContents->entries;
    mRows.resize(entries.size());
    std::iota(mRows.begin(), mRows.end(), std::size_t(0));
    const bool descends = mSortOrder == Qt::DescendingOrder;
    // Entries come sorted by name. A stable sort keeps that order among equals, and folders stay in front in both directions.
    const auto firstFile = std::find_if(mRows.begin(), mRows.end(), [&entries](std::size_t row) { return !entries[row].isDirectory; });
    if (mSortColumn == nameColumn) {
        if (descends) {
            std::reverse(mRows.begin(), firstFile);
            std::reverse(firstFile, mRows.end());
        }
        return;
    }
    const auto value = mSortColumn == sizeColumn ? &DirectoryEntry::size : &DirectoryEntry::modified;
    const auto before = [&](std::size_t a, std::size_t b) {
        return descends ? entries[b].*value < entries[a].*value : entries[a].*value < entries[b].*value;
    };
    std::stable_sort(mRows.begin(), firstFile, before);
    std::stable_sort(firstFile, mRows.end(), before);
}

void DirectoryModel::sort(int column, Qt::SortOrder order) {
    beginResetModel();
    mSortColumn = column;
    mSortOrder = order;
    sortRows();
    endResetModel();
}

QString DirectoryModel::pathOf(const QString& name) const {
    return mDirectory.endsWith(u'/') ? mDirectory + name : mDirectory + u'/' + name;
}

int DirectoryModel::rowOf(const QString& name) const {
    for (std::size_t row = 0; row < mRows.size(); ++row)
        if (mContents->entries[mRows[row]].name == name)
            return static_cast<int>(row);
    return -1;
}

int DirectoryModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(mRows.size());
}

int DirectoryModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columnCountOfAll;
}

QString DirectoryModel::textAt(const DirectoryEntry& entry, int column) const {
    if (column == nameColumn)
        return entry.name;
    if (!entry.modified || (column == sizeColumn && (entry.isDirectory || entry.isPackage)))
        return {};
    const QLocale locale;
    if (column == sizeColumn)
        return entry.size == 1 ? tr("1 byte") : locale.formattedDataSize(entry.size, 1, QLocale::DataSizeSIFormat);
    const QString date = locale.toString(QDateTime::fromMSecsSinceEpoch(entry.modified), QLocale::ShortFormat);
    return kFirstStrongIsolate + date + kPopDirectionalIsolate; // isolated, so that the date is read in the direction of its own letters
}

QVariant DirectoryModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const DirectoryEntry& entry = entryAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return textAt(entry, index.column());
    case Qt::DecorationRole:
        return index.column() == nameColumn ? mIcons->iconFor(pathOf(entry.name), entry.isDirectory, entry.isPackage) : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() != nameColumn ? QVariant(Qt::AlignTrailing | Qt::AlignVCenter) : QVariant();
    case Qt::ToolTipRole:
        return index.column() == nameColumn ? QVariant(u"<p style='white-space:pre'>"_s + entry.name.toHtmlEscaped()) : QVariant();
    default:
        return {};
    }
}

QVariant DirectoryModel::headerData(int section, Qt::Orientation orientation, int role) const {
    const QString titles[] = {tr("Name"), tr("Size"), tr("Modified")};
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCountOfAll)
        return {};
    if (role == Qt::TextAlignmentRole && section != nameColumn)
        return QVariant(Qt::AlignTrailing | Qt::AlignVCenter);
    return role == Qt::DisplayRole ? QVariant(titles[section]) : QVariant();
}

Qt::ItemFlags DirectoryModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    const DirectoryEntry& entry = entryAt(index.row());
    const bool isUsable = entry.isDirectory || entry.canBeChosen;
    return isUsable ? Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren : Qt::ItemNeverHasChildren;
}

} // namespace quoddle
