// SPDX-License-Identifier: MIT
#include "platform/panels/ChooseApplicationPanel.h"

#include "platform/appkit/ListKeys.h"
#include "platform/panels/ApplicationList.h"
#include "ui_ChooseApplicationPanel.h"

#include <algorithm>
#include <chrono>

#include <QTimer>

namespace quoddle {

ChooseApplicationPanel::ChooseApplicationPanel(std::vector<ListedApplication> applications, bool multiple)
    : mUi(std::make_unique<Ui::ChooseApplicationPanel>()), mModel(new ApplicationListModel(std::move(applications), this)) {
    mUi->setupUi(this);
    QListView& list = *mUi->listView;
    list.setModel(mModel);
    watchListKeys(list);
    list.setSelectionMode(multiple ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection);
    connect(list.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { mUi->okButton->setEnabled(mUi->listView->selectionModel()->hasSelection()); });
    connect(&list, &QListView::doubleClicked, this, &QDialog::accept);
    connect(mUi->okButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(mUi->cancelButton, &QPushButton::clicked, this, &QDialog::reject);
    mUi->okButton->setEnabled(false);
    if (mModel->rowCount() > 0)
        list.setCurrentIndex(mModel->index(0));
    using namespace std::chrono_literals;
    QTimer::singleShot(100ms, mModel, &ApplicationListModel::showIcons);
}

ChooseApplicationPanel::~ChooseApplicationPanel() = default;

void ChooseApplicationPanel::setPrompt(const QString& prompt) {
    mUi->promptView->setText(prompt);
}

std::vector<ListedApplication> ChooseApplicationPanel::chosen() const {
    QModelIndexList rows = mUi->listView->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    std::vector<ListedApplication> applications;
    for (const QModelIndex& row : std::as_const(rows))
        applications.push_back(mModel->at(row.row()));
    return applications;
}

} // namespace quoddle
