// SPDX-License-Identifier: MIT
// The widgets of the main menu: a menu bar for one window, made from an NSMenu and made again when that changes.
// One decision: a window that only reports keeps the bar hidden; its shortcuts work all the same, and the menu pops up with the right
// button, F10 or the Menu key. Main thread only.
#pragma once

#include "platform/foundation/NSMenu.h"

#include <QMainWindow>
#include <QMenuBar>

namespace quoddle {

class MenuBar : public QMenuBar {
    Q_OBJECT
public:
    /// Becomes the window's menu bar. The menu lives as long as the bar.
    MenuBar(std::shared_ptr<NSMenu> menu, QMainWindow& window);
    ~MenuBar() override;

    /// The same menu as a pop-up.
    void popUp(const QPoint& globalPosition);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void rebuild();
    void fill(QMenu& menu, const NSMenu& items);
    /// Without its middle where it is wider than so many points.
    void setTitle(QAction& action, const QString& title, int widest) const;
    /// Titles in menus are told in full as long as the screen is wide enough.
    int widestInMenu() const;
    QAction* actionFor(const NSMenuItem& item);

    std::shared_ptr<NSMenu> mMenu;
    QMainWindow& mWindow;
    bool mRebuildPending = false;
};

} // namespace quoddle
