// SPDX-License-Identifier: MIT
#include "platform/panels/ChooseFromListViewController.h"

#include "platform/appkit/ListKeys.h"
#include "ui_ChooseFromListViewController.h"

#include <set>

#include <QAbstractListModel>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMargin = 20;
constexpr int kRowPadding = 6;
constexpr int kMostPromptLines = 10;
constexpr int kMaximumPromptHeight = 170;
constexpr int kLongestShown = 2000; // characters of one item; more would be wider than any screen

} // namespace

/// The list as the table's model.
class ListModel final : public QAbstractListModel {
public:
    explicit ListModel(const ChooseFromListViewController& source) : mSource(source) {}

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : mSource.numberOfRowsInTableView(); }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
            return {};
        QString text = mSource.theList[index.row()];
        text.truncate(kLongestShown);
        if (role == Qt::DisplayRole) // an item takes one line
            text.replace(u'\n', u' ').replace(u'\r', u' ');
        return text;
    }

private:
    const ChooseFromListViewController& mSource;
};

ChooseFromListViewController::ChooseFromListViewController(QObject* parent)
    : NSViewController(parent), mUi(std::make_unique<Ui::ChooseFromListViewController>()) {}

ChooseFromListViewController::~ChooseFromListViewController() {
    if (isViewLoaded())
        tableView()->setModel(nullptr); // the view still exists when the model is destroyed
}

QWidget* ChooseFromListViewController::loadView() {
    auto* widget = new QWidget;
    mUi->setupUi(widget);
    return widget;
}

void ChooseFromListViewController::viewDidLoad() {
    mModel = std::make_unique<ListModel>(*this);
    QTableView& table = *tableView();
    table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table.verticalHeader()->setMinimumSectionSize(1);
    table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().height() + kRowPadding);
    table.setModel(mModel.get());
    watchListKeys(table);
    setAllowsMultipleSelection(false);
    setButtonTitle(*okButton(), tr("OK"));
    setButtonTitle(*cancelButton(), tr("Cancel"));
    connect(okButton(), &QPushButton::clicked, this, &ChooseFromListViewController::doOkButton);
    connect(cancelButton(), &QPushButton::clicked, this, &ChooseFromListViewController::doCancelButton);
    connect(&table, &QTableView::doubleClicked, this, &ChooseFromListViewController::doDoubleClickEntry);
    connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &ChooseFromListViewController::tableViewSelectionDidChange);
    tableViewSelectionDidChange();
}

void ChooseFromListViewController::setPrompt(const QString& prompt) {
    promptField()->setText(readableText(prompt));
}

void ChooseFromListViewController::setAllowsMultipleSelection(bool allows) {
    tableView()->setSelectionMode(allows ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection);
}

void ChooseFromListViewController::setAllowsEmptySelection(bool allows) {
    mAllowsEmptySelection = allows;
    tableViewSelectionDidChange();
}

void ChooseFromListViewController::selectRows(const QList<int>& rows) {
    QItemSelection selection;
    QModelIndex first;
    // a set, because the toolkit would count a range that is given twice twice
    for (const int row : std::set<int>(rows.begin(), rows.end())) {
        const QModelIndex index = mModel->index(row);
        if (!index.isValid())
            continue;
        selection.append(QItemSelectionRange(index));
        if (!first.isValid())
            first = index;
        if (tableView()->selectionMode() == QAbstractItemView::SingleSelection)
            break;
    }
    tableView()->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    tableView()->selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
    tableView()->scrollTo(first);
}

QList<int> ChooseFromListViewController::selectedRows() const {
    QList<int> rows;
    for (const QItemSelectionRange& range : tableView()->selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows << row;
    std::sort(rows.begin(), rows.end());
    return rows;
}

void ChooseFromListViewController::tableViewSelectionDidChange() {
    okButton()->setEnabled(mAllowsEmptySelection || tableView()->selectionModel()->hasSelection());
}

void ChooseFromListViewController::doDoubleClickEntry() {
    if (okButton()->isEnabled())
        doOkButton();
}

int ChooseFromListViewController::rowHeight() const {
    return tableView()->verticalHeader()->defaultSectionSize();
}

int ChooseFromListViewController::fitPrompt(int viewWidth) {
    const int textWidth = viewWidth - 2 * kMargin;
    const int tenLines = kMostPromptLines * promptField()->fontMetrics().lineSpacing();
    const int height = std::min({heightOfText(*promptField(), textWidth), tenLines, kMaximumPromptHeight});
    mUi->promptScrollArea->setFixedHeight(height);
    return height;
}

QLabel* ChooseFromListViewController::promptField() const {
    return mUi->promptField;
}

QTableView* ChooseFromListViewController::tableView() const {
    return mUi->tableView;
}

QPushButton* ChooseFromListViewController::okButton() const {
    return mUi->okButton;
}

QPushButton* ChooseFromListViewController::cancelButton() const {
    return mUi->cancelButton;
}

void ChooseFromListViewController::end(int returnCode) {
    if (NSPanel* panel = window())
        panel->done(returnCode);
}

} // namespace quoddle
