// SPDX-License-Identifier: MIT
// The dialog of "choose from list", ready to be shown as a sheet or a window of its own.
// One decision: it is as large as its items want and the screen allows; of a long list only the longest texts are measured.
// Main thread only.
#pragma once

#include "platform/panels/ChooseFromListViewController.h"
#include "platform/panels/CommandParameters.h"

class QMainWindow;

namespace quoddle {

struct ChooseFromListParameters {
    AEDesc list = AEDesc::list(); ///< the items as they were given
    QStringList texts;            ///< the items as they are shown
    QList<int> defaultRows;
    QString title;
    std::optional<QString> prompt; ///< this and the two button names: the panel's own when absent
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
    /// Gives the sheet the size of its items, as far as there is room below the title of the window, which must be visible. To be called
    /// just before the sheet is shown.
    void prepareForSheetOn(const QMainWindow& parent);
    /// Gives a window of its own the size of its items, as far as the screen allows and not smaller than is usable, and removes its close
    /// button. To be called just before it is shown.
    void prepareForModalForm();
    /// The items of the list in the selected rows, as they were given.
    AEDesc selectedItems() const;

    /// The width of the column in points, for the widest of the items; at most 30 of the longest are measured.
    static int _calculateColumnWidthFor(const QStringList& texts, const QFont& font);

private:
    void sizeView(const QSize& room);

    const AEDesc mList;
    int mHeaderHeight = 0;
    ChooseFromListViewController mViewController;
    NSPanel mWindow;
};

} // namespace quoddle
