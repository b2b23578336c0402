// SPDX-License-Identifier: MIT
// The animation of the panel's picture that grows from a row, or shrinks back into it.
// Decision: only a picture in a frameless window moves. The panel itself is just shown or hidden, so that no window manager has to animate
// it. Main thread only.
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

    /// Whether the user wants animations and the desktop lets programs place their windows.
    static bool isPossible();
    /// Replaces a running animation. `done` (may be empty) is called at the end, but not after cancel().
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
