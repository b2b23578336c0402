// SPDX-License-Identifier: MIT
// Menus as data: titles, actions and submenus, without any widget. Who shows a menu (appkit/MenuBar.h) makes its widgets from it.
// One decision: an action is the name of an operation ("terminate:"), so that a menu can come from a file and be judged by name.
// Main thread only.
#pragma once

#include "platform/base/Result.h"

#include <functional>
#include <memory>
#include <vector>

#include <QString>
#include <QVariant>

namespace quoddle {

class NSMenu;

class NSMenuItem {
public:
    const QString& title() const { return mTitle; }
    void setTitle(const QString& title);
    /// Empty for an item that does nothing by itself.
    const QString& action() const { return mAction; }
    /// In the portable notation of key sequences ("Ctrl+Q"); may be empty.
    const QString& keyEquivalent() const { return mKeyEquivalent; }
    /// The name under which the item is looked up; may be empty.
    const QString& identifier() const { return mIdentifier; }
    bool isSeparatorItem() const { return mSeparator; }
    /// Null when there is none.
    NSMenu* submenu() const { return mSubmenu.get(); }
    /// The menu that holds the item.
    NSMenu* menu() const { return mMenu; }

private:
    friend class NSMenu;
    NSMenu* mMenu = nullptr;
    QString mTitle, mAction, mKeyEquivalent, mIdentifier;
    bool mSeparator = false;
    std::unique_ptr<NSMenu> mSubmenu;
};

class NSMenu {
public:
    /// A list of dictionaries { title; action; key; id; submenu = ( … ); }, a bare "-" for a separator. Fails, with a text, on anything
    /// else.
    static Result<std::shared_ptr<NSMenu>, QString> menuFromPropertyList(const QVariant& list);

    const std::vector<std::unique_ptr<NSMenuItem>>& itemArray() const { return mItems; }
    /// Destroys the item. A separator that would then stand first, last or beside another one goes too.
    void removeItem(const NSMenuItem* item);
    /// Searched in this menu and below; null when there is none.
    NSMenuItem* itemWithIdentifier(const QString& identifier) const;
    /// Called after any change in this menu or below.
    void setChangeHandler(std::function<void()> handler) { mOnChange = std::move(handler); }

private:
    friend class NSMenuItem;
    static QString fill(NSMenu& menu, const QVariant& list, int depth);
    static QString addItem(NSMenu& menu, const QVariant& description, int depth);
    void removeStraySeparators();
    void changed();

    NSMenu* mSupermenu = nullptr;
    std::vector<std::unique_ptr<NSMenuItem>> mItems;
    std::function<void()> mOnChange;
};

} // namespace quoddle
