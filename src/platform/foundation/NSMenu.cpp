// SPDX-License-Identifier: MIT
#include "platform/foundation/NSMenu.h"

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {
constexpr int kMaxDepth = 8;
}

void NSMenuItem::setTitle(const QString& title) {
    if (title == mTitle)
        return;
    mTitle = title;
    if (mMenu)
        mMenu->changed();
}

Result<std::shared_ptr<NSMenu>, QString> NSMenu::menuFromPropertyList(const QVariant& list) {
    auto menu = std::make_shared<NSMenu>();
    const QString error = fill(*menu, list, 0);
    if (!error.isEmpty())
        return Failure{error};
    return menu;
}

/// fill() and addItem() return an error message; empty when all went well.
QString NSMenu::fill(NSMenu& menu, const QVariant& list, int depth) {
    if (list.typeId() != QMetaType::QVariantList || depth > kMaxDepth)
        return u"a menu is a list, at most %1 deep"_s.arg(kMaxDepth);
    const QVariantList descriptions = list.toList();
    for (const QVariant& description : descriptions)
        if (QString error = addItem(menu, description, depth); !error.isEmpty())
            return error;
    return {};
}

QString NSMenu::addItem(NSMenu& menu, const QVariant& description, int depth) {
    auto item = std::make_unique<NSMenuItem>();
    item->mMenu = &menu;
    item->mSeparator = description.typeId() == QMetaType::QString && description.toString() == "-"_L1;
    if (!item->mSeparator) {
        const QVariantMap fields = description.toMap();
        item->mTitle = fields.value(u"title"_s).toString();
        if (item->mTitle.isEmpty())
            return u"a menu item without title"_s;
        item->mAction = fields.value(u"action"_s).toString();
        item->mKeyEquivalent = fields.value(u"key"_s).toString();
        item->mIdentifier = fields.value(u"id"_s).toString();
        if (fields.contains(u"submenu"_s)) {
            item->mSubmenu = std::make_unique<NSMenu>();
            item->mSubmenu->mSupermenu = &menu;
            if (QString error = fill(*item->mSubmenu, fields.value(u"submenu"_s), depth + 1); !error.isEmpty())
                return error;
        }
    }
    menu.mItems.push_back(std::move(item));
    return {};
}

void NSMenu::removeItem(const NSMenuItem* item) {
    std::erase_if(mItems, [item](const auto& each) { return each.get() == item; });
    removeStraySeparators();
    changed();
}

void NSMenu::removeStraySeparators() {
    bool wanted = false; // whether a separator may come next: directly behind an item
    std::erase_if(mItems, [&wanted](const auto& each) {
        const bool stray = each->isSeparatorItem() && !wanted;
        wanted = !each->isSeparatorItem();
        return stray;
    });
    if (!mItems.empty() && mItems.back()->isSeparatorItem())
        mItems.pop_back();
}

NSMenuItem* NSMenu::itemWithIdentifier(const QString& identifier) const {
    for (const auto& item : mItems) {
        if (item->identifier() == identifier)
            return item.get();
        if (item->submenu())
            if (NSMenuItem* found = item->submenu()->itemWithIdentifier(identifier))
                return found;
    }
    return nullptr;
}

void NSMenu::changed() {
    for (NSMenu* menu = this; menu; menu = menu->mSupermenu)
        if (menu->mOnChange)
            menu->mOnChange();
}

} // namespace quoddle
