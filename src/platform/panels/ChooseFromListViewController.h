// SPDX-License-Identifier: MIT
// The content of a dialog that lets the user choose from a list: a prompt above a table of one column, Cancel and OK.
// One decision: rows are only made for what is seen, so a list may be as long as a script can make it.
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

    /// The items' texts; before the view is loaded.
    QStringList theList;

    /// As they stand, never as markup.
    void setPrompt(const QString& prompt);
    void setAllowsMultipleSelection(bool allows);
    /// Not, unless it is set: OK can then only be pressed when a row is selected.
    void setAllowsEmptySelection(bool allows);
    bool allowsEmptySelection() const { return mAllowsEmptySelection; }
    /// In place of what is selected; rows that there are not are left out, and all but the uppermost one where only one may be selected.
    /// That one is scrolled to.
    void selectRows(const QList<int>& rows);
    /// Ascending.
    QList<int> selectedRows() const;
    /// The panel that shows the view.
    NSPanel* window() { return qobject_cast<NSPanel*>(view()->window()); }

    int numberOfRowsInTableView() const { return static_cast<int>(theList.size()); }
    void tableViewSelectionDidChange();
    void doOkButton() { end(kOKReturn); }
    void doCancelButton() { end(kCancelReturn); }
    void doDoubleClickEntry();

    /// Of one row, with the space to the next.
    int rowHeight() const;
    /// What the prompt takes in a view of the width, and gets from now on; more than ten lines scroll.
    int fitPrompt(int viewWidth);

    // Outlets, when the view has been loaded.
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
