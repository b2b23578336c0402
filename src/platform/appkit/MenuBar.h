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
    /// Becomes the window's menu bar. The menu is owned together with others and is kept as long as the bar lives.
    MenuBar(std::shared_ptr<NSMenu> menu, QMainWindow& window);
    ~MenuBar() override;

    /// Shows the same menu as a pop-up.
    void popUp(const QPoint& globalPosition);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void rebuild();
    void fill(QMenu& menu, const NSMenu& items);
    /// Sets the title, with its middle left out where it is wider than `widest` points.
    void setTitle(QAction& action, const QString& title, int widest) const;
    /// The widest that a title in a menu may be, in points: two thirds of the screen, so that titles are nearly always shown in full.
    int widestInMenu() const;
    QAction* actionFor(const NSMenuItem& item);

    std::shared_ptr<NSMenu> mMenu;
    QMainWindow& mWindow;
    bool mRebuildPending = false;
};

} // namespace quoddle
