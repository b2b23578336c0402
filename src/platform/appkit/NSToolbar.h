// SPDX-License-Identifier: MIT
// The toolbar of a window: its delegate says which items there are and makes them.
// Main thread only.
#pragma once

#include <QStringList>
#include <QToolBar>

namespace quoddle {

inline const QString NSToolbarFlexibleSpaceItemIdentifier = QStringLiteral("NSToolbarFlexibleSpaceItem");

class NSToolbar;

struct NSToolbarItem {
    QString identifier;
    QWidget* view = nullptr; // the toolbar takes ownership
};

class NSToolbarDelegate {
public:
    virtual ~NSToolbarDelegate() = default;
    virtual QStringList toolbarDefaultItemIdentifiers(const NSToolbar& toolbar) const = 0;
    virtual QStringList toolbarAllowedItemIdentifiers(const NSToolbar& toolbar) const = 0;
    /// The item of the name; an item without view means that there is none.
    virtual NSToolbarItem toolbarItemForItemIdentifier(const NSToolbar& toolbar, const QString& identifier) = 0;
    virtual void toolbarWillAddItem(const NSToolbarItem& item) { (void)item; }
};

class NSToolbar : public QToolBar {
    Q_OBJECT
public:
    NSToolbar(const QString& identifier, NSToolbarDelegate& delegate, QWidget* parent = nullptr);

    const QString& identifier() const { return mIdentifier; }

private:
    void addItem(NSToolbarDelegate& delegate, const QString& identifier);

    const QString mIdentifier;
};

} // namespace quoddle
