// SPDX-License-Identifier: MIT
#include "platform/panels/ChooseURLPanel.h"

#include "ui_ChooseURLPanel.h"

#include <QCompleter>
#include <QLineEdit>

namespace quoddle {

using namespace Qt::StringLiterals;

ChooseURLPanel::ChooseURLPanel(const QStringList& addresses, bool editable) : mUi(std::make_unique<Ui::ChooseURLPanel>()) {
    mUi->setupUi(this);
    QComboBox& field = *mUi->addressField;
    field.addItems(addresses);
    field.setEditable(editable);
    if (editable) {
        field.setCurrentIndex(-1);
        field.completer()->setCompletionMode(QCompleter::PopupCompletion);
        field.lineEdit()->setAccessibleName(field.accessibleName());
        field.lineEdit()->setPlaceholderText(u"https://example.com"_s);
    } else if (addresses.isEmpty()) {
        field.setPlaceholderText(tr("No addresses are known"));
        field.setEnabled(false);
    }
    const auto validate = [this] { mUi->okButton->setEnabled(!address().isEmpty()); };
    connect(&field, &QComboBox::currentTextChanged, this, validate);
    connect(mUi->okButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(mUi->cancelButton, &QPushButton::clicked, this, &QDialog::reject);
    validate();
    setFixedHeight(sizeHint().height()); // more height is of no use, more width is
}

ChooseURLPanel::~ChooseURLPanel() = default;

QString ChooseURLPanel::address() const {
    return mUi->addressField->currentText().trimmed();
}

} // namespace quoddle
