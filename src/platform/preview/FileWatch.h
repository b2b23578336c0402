// SPDX-License-Identifier: MIT
// Reports that a file, or a folder that is shown as one thing, has changed: written, replaced, removed or made again.
// Decision: the system's watches only start a check, which compares the file with what it was. There are only a few checks a second, so
// that a file that is written all the time costs little.
// Main thread only.
#pragma once

#include <memory>

#include <QFileSystemWatcher>
#include <QTimer>

namespace quoddle {

class FileWatch : public QObject {
    Q_OBJECT
public:
    explicit FileWatch(QObject* parent = nullptr);
    ~FileWatch() override;

    /// Watches this path instead of the one before; an empty path ends watching. Nothing changes when the path is the same.
    void watch(const QString& path);

Q_SIGNALS:
    void changed();

private:
    struct State;
    void addWatches();
    void look();

    QString mPath;
    std::unique_ptr<State> mState;
    std::unique_ptr<QFileSystemWatcher> mWatcher;
    QTimer mPause;
};

} // namespace quoddle
