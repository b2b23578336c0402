// SPDX-License-Identifier: MIT
// The icons of files, folders and bundles, each found once.
// One decision: a caller gets an icon at once, without a read from the disk. The own icon of a bundle is read a little later and replaces
// the general one. Main thread only.
#pragma once

#include <QHash>
#include <QIcon>
#include <QObject>
#include <QStringList>
#include <QTimer>

namespace quoddle {

class FileIcons : public QObject {
    Q_OBJECT
public:
    explicit FileIcons(QObject* parent = nullptr);

    QIcon iconFor(const QString& path, bool isDirectory, bool isPackage);

Q_SIGNALS:
    void iconChanged(const QString& path);

private:
    QIcon iconOfFileNamed(const QString& name);
    QIcon iconOfPackage(const QString& path);
    void readNext();

    QHash<QString, QIcon> mByMimeType;
    QHash<QString, QIcon> mByPath; // the icons of applications
    QStringList mToRead;
    QTimer mReadTimer;
};

} // namespace quoddle
