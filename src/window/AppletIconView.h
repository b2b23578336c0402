// SPDX-License-Identifier: MIT
// The applet's icon in a pane: 64 by 64, decoded only after the pane has been painted for the first time, so that no window waits for it.
// Main thread only.
#pragma once

#include <QIcon>
#include <QWidget>

namespace quoddle {

class AppletIconView : public QWidget {
    Q_OBJECT
public:
    explicit AppletIconView(QWidget* parent = nullptr);

    QSize sizeHint() const override { return {64, 64}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool mAsked = false;
};

/// The icon of the running applet; read on first use. Main thread.
QIcon appletIcon();

} // namespace quoddle
