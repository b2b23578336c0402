// SPDX-License-Identifier: MIT
#include "platform/appkit/NSToolbar.h"

namespace quoddle {

NSToolbar::NSToolbar(const QString& identifier, NSToolbarDelegate& delegate, QWidget* parent) : QToolBar(parent), mIdentifier(identifier) {
    setMovable(false);
    setFloatable(false);
    setContextMenuPolicy(Qt::PreventContextMenu); // the toolkit's context menu would only offer to hide the bar
    setToolButtonStyle(Qt::ToolButtonIconOnly);
    setAccessibleName(tr("Toolbar"));
    const QStringList allowed = delegate.toolbarAllowedItemIdentifiers(*this);
    const QStringList identifiers = delegate.toolbarDefaultItemIdentifiers(*this);
    for (const QString& item : identifiers)
        if (allowed.contains(item))
            addItem(delegate, item);
}

void NSToolbar::addItem(NSToolbarDelegate& delegate, const QString& identifier) {
    if (identifier == NSToolbarFlexibleSpaceItemIdentifier) {
        auto* space = new QWidget(this);
        space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
        addWidget(space);
        return;
    }
    const NSToolbarItem item = delegate.toolbarItemForItemIdentifier(*this, identifier);
    if (!item.view)
        return;
    delegate.toolbarWillAddItem(item);
    addWidget(item.view);
}

} // namespace quoddle
