// SPDX-License-Identifier: MIT
// A picture of the panel that grows out of a row, or shrinks back into it.
// One decision: what moves is a picture in a window without a frame; the panel itself is only shown or hidden, so no window manager is
// asked to follow. Main thread only.
#pragma once

#include <functional>

#include <QLabel>
#include <QPixmap>
#include <QVariantAnimation>

namespace quoddle {

class PanelZoom : public QObject {
    Q_OBJECT
public:
    explicit PanelZoom(QObject* parent = nullptr);

    /// Whether the user wants animations and windows can be put where they are wanted.
    static bool isPossible();
    /// In the place of the one before. `done` is called at the end, unless that is a cancellation; it may be empty.
    void run(const QPixmap& picture, const QRect& from, const QRect& to, std::function<void()> done);
    void cancel();
    bool isRunning() const { return mMove.state() == QAbstractAnimation::Running; }

private:
    void ended();

    std::unique_ptr<QLabel> mGhost;
    QVariantAnimation mMove;
    std::function<void()> mDone;
};

} // namespace quoddle
