// SPDX-License-Identifier: MIT
// Menus as data: titles, actions and submenus, without widgets. appkit/MenuBar.h makes the widgets.
// Decision: an action is the name of an operation ("terminate:"), so that menus can come from files, and actions can be enabled by name.
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
    /// Empty for an item without an action of its own.
    const QString& action() const { return mAction; }
    /// The shortcut in Qt's portable notation ("Ctrl+Q"); may be empty.
    const QString& keyEquivalent() const { return mKeyEquivalent; }
    /// The name by which itemWithIdentifier() finds the item; may be empty.
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
    /// Makes a menu from a list of dictionaries { title; action; key; id; submenu = ( … ); }, in which the text "-" is a separator.
    /// Anything else is an error, with a message.
    static Result<std::shared_ptr<NSMenu>, QString> menuFromPropertyList(const QVariant& list);

    const std::vector<std::unique_ptr<NSMenuItem>>& itemArray() const { return mItems; }
    /// Destroys the item, and separators that would then stand first, last or beside another one.
    void removeItem(const NSMenuItem* item);
    /// Searches this menu and its submenus; null when there is no such item.
    NSMenuItem* itemWithIdentifier(const QString& identifier) const;
    /// `handler` is called after any change in this menu or its submenus.
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
