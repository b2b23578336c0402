// SPDX-License-Identifier: MIT
// The content of a dialog that lets the user choose from a list: a prompt above a table of one column, Cancel and OK.
// One decision: rows are made only as far as they are visible, so a list may be as long as a script can make it.
// Main thread only.
#pragma once

#include "platform/appkit/NSPanel.h"

#include <QLabel>
#include <QTableView>

namespace Ui {
class ChooseFromListViewController;
}

namespace quoddle {

class ListModel;

class ChooseFromListViewController final : public NSViewController {
    Q_OBJECT
public:
    static constexpr int kOKReturn = 1;
    static constexpr int kCancelReturn = 0;

    explicit ChooseFromListViewController(QObject* parent = nullptr);
    ~ChooseFromListViewController() override;

    /// The items' texts; to be set before the view is loaded.
    QStringList theList;

    /// Sets the text above the table; shown as it is, never as markup.
    void setPrompt(const QString& prompt);
    void setAllowsMultipleSelection(bool allows);
    /// Whether OK can be pressed when no row is selected; false unless set.
    void setAllowsEmptySelection(bool allows);
    bool allowsEmptySelection() const { return mAllowsEmptySelection; }
    /// Replaces the selection and scrolls to its uppermost row. Rows that do not exist are ignored, and where only one row may be selected
    /// only the uppermost one is.
    void selectRows(const QList<int>& rows);
    /// The selected rows in ascending order.
    QList<int> selectedRows() const;
    /// The panel that shows the view; null when there is none.
    NSPanel* window() { return qobject_cast<NSPanel*>(view()->window()); }

    int numberOfRowsInTableView() const { return static_cast<int>(theList.size()); }
    void tableViewSelectionDidChange();
    void doOkButton() { end(kOKReturn); }
    void doCancelButton() { end(kCancelReturn); }
    void doDoubleClickEntry();

    /// The height of one row with the space to the next, in points.
    int rowHeight() const;
    /// Gives the prompt the height that it needs in a view of the width, and answers that height. A prompt of more than ten lines scrolls.
    int fitPrompt(int viewWidth);

    // Outlets; the view must have been loaded.
    QLabel* promptField() const;
    QTableView* tableView() const;
    QPushButton* okButton() const;
    QPushButton* cancelButton() const;

protected:
    QWidget* loadView() override;
    void viewDidLoad() override;

private:
    void end(int returnCode);

    std::unique_ptr<Ui::ChooseFromListViewController> mUi;
    std::unique_ptr<ListModel> mModel;
    bool mAllowsEmptySelection = false;
};

} // namespace quoddle
