// SPDX-License-Identifier: MIT
// The dialog of "choose from list", ready to be shown as a sheet or a window of its own.
// One decision: it is as large as its items want and the screen allows; long lists are not measured but by their longest texts.
// Main thread only.
#pragma once

#include "platform/panels/ChooseFromListViewController.h"
#include "platform/panels/CommandParameters.h"

class QMainWindow;

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
    explicit ChooseFromListPanel(const ChooseFromListParameters& parameters);

    NSPanel& window() { return mWindow; }
    ChooseFromListViewController& viewController() { return mViewController; }
    /// Gives it the size of its items, as far as there is room below the title of the window, which is visible. Just before it is shown.
    void prepareForSheetOn(const QMainWindow& parent);
    /// The same for a window of its own: without close button, and not smaller than what can be used.
    void prepareForModalForm();
    /// The items of the list in the selected rows.
    AEDesc selectedItems() const;

    /// In points, for the widest of the items; at most 30 of the longest are measured.
    static int _calculateColumnWidthFor(const QStringList& texts, const QFont& font);

private:
    void sizeView(const QSize& room);

    const AEDesc mList;
    int mHeaderHeight = 0;
    ChooseFromListViewController mViewController;
    NSPanel mWindow;
};

} // namespace quoddle
