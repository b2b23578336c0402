// SPDX-License-Identifier: MIT
// The contents of one folder as a table of name, size and date, in any order, kept up to date while the folder changes.
// One decision: it shows snapshots. After a change the folder is read again as a whole and the result put in place at once, so that the
// number of files never decides how long the window stands still.
// Main thread only.
#pragma once

#include "platform/appkit/filepanel/DirectoryReader.h"

#include <QAbstractTableModel>
#include <QFileSystemWatcher>
#include <QTimer>

namespace quoddle {

class FileIcons;

class DirectoryModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { nameColumn, sizeColumn, modifiedColumn, columnCountOfAll };

    explicit DirectoryModel(QObject* parent = nullptr);
    ~DirectoryModel() override;

    /// Shows another folder: the table is empty until the first instalment comes, and is reset each time something has changed.
    void setDirectory(const QString& path);
    /// The path of the folder: absolute, without a slash at the end (unless it is the root).
    const QString& directory() const { return mDirectory; }
    const DirectoryFilter& filter() const { return mFilter; }
    void setFilter(const DirectoryFilter& filter);
    /// The state of the reading; `reading` until all entries are there.
    DirectoryState state() const { return mState; }
    /// Whether the filter leaves out entries of the folder, hidden files not counted.
    bool leavesOthersOut() const { return mContents->leftOthersOut; }
    void refresh();

    const DirectoryEntry& entryAt(int row) const { return mContents->entries[mRows[static_cast<std::size_t>(row)]]; }
    QString pathAt(int row) const { return pathOf(entryAt(row).name); }
    /// The row of the entry; -1 when there is none of the name.
    int rowOf(const QString& name) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

Q_SIGNALS:
    /// Emitted when the reading state may have changed: when another folder is set, and after each reset with newly read contents.
    void stateChanged();

private:
    QString pathOf(const QString& name) const;
    void show(std::shared_ptr<const DirectoryContents> contents);
    void sortRows();
    void watch();
    QString textAt(const DirectoryEntry& entry, int column) const;

    QString mDirectory;
    DirectoryFilter mFilter;
    DirectoryState mState = DirectoryState::reading;
    std::shared_ptr<const DirectoryContents> mContents;
    std::vector<std::size_t> mRows; // indices into the contents
    int mSortColumn = nameColumn;
    Qt::SortOrder mSortOrder = Qt::AscendingOrder;
    bool mIsRefreshing = false; // the old contents stay visible until all has been read again
    std::unique_ptr<FileIcons> mIcons;
    QFileSystemWatcher mWatcher;
    QTimer mRefreshTimer;
    DirectoryReader mReader;
};

} // namespace quoddle
