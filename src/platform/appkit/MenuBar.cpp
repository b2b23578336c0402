// SPDX-License-Identifier: MIT
#include "platform/appkit/MenuBar.h"

#include "platform/appkit/NSApplication.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QScreen>

namespace quoddle {

namespace {

constexpr int kWidestInBar = 160; // points; leaves room for the menus behind a long name

// A title in which an ampersand is shown and does not mark a shortcut; names of applets may hold one.
QString plainTitle(const QString& title) {
    return QString(title).replace(u'&', QStringLiteral("&&"));
}

} // namespace

MenuBar::MenuBar(std::shared_ptr<NSMenu> menu, QMainWindow& window) : QMenuBar(&window), mMenu(std::move(menu)), mWindow(window) {
    mMenu->setChangeHandler([this] {
        if (mRebuildPending)
            return;
        mRebuildPending = true; // titles change together, so one rebuild serves many changes
        QMetaObject::invokeMethod(this, &MenuBar::rebuild, Qt::QueuedConnection);
    });
    rebuild();
    window.setMenuBar(this);
    window.installEventFilter(this);
}

MenuBar::~MenuBar() {
    mMenu->setChangeHandler({});
}

void MenuBar::rebuild() {
    mRebuildPending = false;
    qDeleteAll(findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly));
    clear();
    for (const auto& item : mMenu->itemArray()) {
        if (!item->submenu())
            continue; // a bar holds menus only
        QMenu* menu = addMenu(QString());
        setTitle(*menu->menuAction(), item->title(), kWidestInBar);
        fill(*menu, *item->submenu());
    }
}

void MenuBar::fill(QMenu& menu, const NSMenu& items) {
    std::vector<std::pair<QAction*, const NSMenuItem*>> judged;
    for (const auto& item : items.itemArray()) {
        if (item->isSeparatorItem()) {
            menu.addSeparator();
        } else if (item->submenu()) {
            QMenu* submenu = menu.addMenu(QString());
            setTitle(*submenu->menuAction(), item->title(), widestInMenu());
            fill(*submenu, *item->submenu());
        } else {
            QAction* action = actionFor(*item);
            action->setParent(&menu);
            menu.addAction(action);
            mWindow.addAction(action); // the window has the shortcut also while the bar is hidden
            judged.emplace_back(action, item.get());
        }
    }
    // Items are grey only while their menu is shown: a disabled action would not tell us that its shortcut was pressed.
    connect(&menu, &QMenu::aboutToShow, this, [judged] {
        for (const auto& [action, item] : judged)
            action->setEnabled(NSApplication::sharedApplication()->validateMenuItem(*item));
    });
    connect(&menu, &QMenu::aboutToHide, this, [this, judged] {
        // Enabling waits for the event loop, because the choice that hides the menu is still being handled.
        for (const auto& [action, item] : judged)
            QMetaObject::invokeMethod(
                action, [action = action] { action->setEnabled(true); }, Qt::QueuedConnection);
    });
}

int MenuBar::widestInMenu() const {
    return mWindow.screen()->availableGeometry().width() * 2 / 3;
}

void MenuBar::setTitle(QAction& action, const QString& title, int widest) const {
    action.setText(plainTitle(fontMetrics().elidedText(title, Qt::ElideMiddle, widest)));
}

QAction* MenuBar::actionFor(const NSMenuItem& item) {
    auto* action = new QAction;
    setTitle(*action, item.title(), widestInMenu());
    action->setObjectName(item.identifier().isEmpty() ? item.action() : item.identifier());
    action->setShortcut(QKeySequence(item.keyEquivalent(), QKeySequence::PortableText));
    connect(action, &QAction::triggered, this, [&item] {
        if (!NSApplication::sharedApplication()->sendAction(item))
            QApplication::beep();
    });
    return action;
}

void MenuBar::popUp(const QPoint& globalPosition) {
    auto* menu = new QMenu(&mWindow);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions(actions());
    menu->popup(globalPosition);
}

bool MenuBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &mWindow && isHidden()) {
        if (event->type() == QEvent::ContextMenu) {
            popUp(static_cast<QContextMenuEvent*>(event)->globalPos());
            return true;
        }
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F10) {
            popUp(mWindow.mapToGlobal(QPoint()));
            return true;
        }
    }
    return QMenuBar::eventFilter(watched, event);
}

} // namespace quoddle
