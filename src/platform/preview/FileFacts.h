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
    QString name; // as file managers show it
    QString kind; // in words; empty for what is not there
    QString type; // a uniform type identifier, that of a link's target
    bool isDirectory = false;
    bool isPackage = false;
    qint64 size = -1;      // bytes; -1 for folders
    qint64 itemCount = -1; // of a folder, hidden ones left out; -1 for files, and when the folder cannot be read
    bool hasMoreItems = false;
    QDateTime created; // invalid where the file system does not know
    QDateTime modified;
    QString opener; // the program that the desktop opens it with, as menus name it; empty when there is none

    bool exists() const { return !kind.isEmpty(); }
    /// Kind, size or number of items, dates: what is known of them, each a line in the user's own format.
    QStringList lines() const;
};

/// A folder that is too large, or a cancellation, ends the counting.
FileFacts factsOfFile(const QString& path, const std::atomic<bool>& isCancelled);

} // namespace quoddle
