// SPDX-License-Identifier: MIT
// Notices that a file, or a folder that is shown as one thing, has become another: written, replaced, removed or come back.
// One decision: the system's watches only say when to look. What counts is whether the file is what it was, looked at a few times a second
// at most, so that one that is written all the time keeps nobody busy.
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

    /// From now on, and in place of the one before; empty: none. The same path again goes on.
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
