// SPDX-License-Identifier: MIT
// The facts of a file for its information card. Any thread; it may read the first bytes of the file.
#pragma once

#include <atomic>

#include <QDateTime>
#include <QString>
#include <QStringList>

namespace quoddle {

struct FileFacts {
    QString path;
    QString name; // the name that file managers show
    QString kind; // in words; empty when there is no such file
    QString type; // the uniform type identifier, for a link that of its target
    bool isDirectory = false;
    bool isPackage = false;
    qint64 size = -1;      // in bytes; -1 for folders
    qint64 itemCount = -1; // items in a folder that are not hidden; -1 for files and for folders that cannot be read
    bool hasMoreItems = false;
    QDateTime created; // invalid when the file system does not store it
    QDateTime modified;
    QString opener; // the name of the program with which the desktop opens the file; empty when there is none

    bool exists() const { return !kind.isEmpty(); }
    /// The known facts among kind, size or number of items, and dates, one per line in the user's formats.
    QStringList lines() const;
};

/// The items of a folder that is too large are not counted to the end; a cancellation also ends the counting.
FileFacts factsOfFile(const QString& path, const std::atomic<bool>& isCancelled);

} // namespace quoddle
