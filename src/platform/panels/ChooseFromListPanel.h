// SPDX-License-Identifier: MIT
// The dialog of "choose from list", ready to be shown as a sheet or a window of its own.
// One decision: it is as large as its items want and the screen allows; long lists are not measured but by their longest texts.
// Main thread only.
#pragma once

#include "platform/panels/ChooseFromListViewController.h"
#include "platform/panels/CommandParameters.h"

namespace quoddle {

struct ChooseFromListParameters {
    AEDesc list = AEDesc::list(); ///< the items as they were given
    QStringList texts;            ///< the same as they are shown
    QList<int> defaultRows;
    QString title;
    std::optional<QString> prompt; ///< these three: the panel's own unless given
    std::optional<QString> okButtonName;
    std::optional<QString> cancelButtonName;
    bool multipleSelectionsAllowed = false;
    bool emptySelectionAllowed = false;

    static std::optional<CommandError> read(const AEDesc& event, ChooseFromListParameters& parameters);
};

class ChooseFromListPanel {
public:
    /// `parent`: the window on which it may hang, for the room that there is below; null: none.
    ChooseFromListPanel(const ChooseFromListParameters& parameters, const QWidget* parent);

    NSPanel& window() { return mWindow; }
    ChooseFromListViewController& viewController() { return mViewController; }
    /// For a window of its own: without close button, and not smaller than what can be used.
    void prepareForModalForm(const QString& title);
    /// The items of the list in the selected rows.
    AEDesc selectedItems() const;

    /// In points, for the widest of the items; at most 30 of the longest are measured.
    static int _calculateColumnWidthFor(const QStringList& texts, const QFont& font);

private:
    void sizeView(const QWidget* parent);

    const AEDesc mList;
    int mHeaderHeight = 0;
    ChooseFromListViewController mViewController;
    NSPanel mWindow;
};

} // namespace quoddle
