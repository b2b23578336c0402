// SPDX-License-Identifier: MIT
// The panel of "choose URL": the user types an address or takes a known one.
// Main thread only.
#pragma once

#include <memory>

#include <QDialog>
#include <QStringList>

namespace Ui {
class ChooseURLPanel;
}

namespace quoddle {

class ChooseURLPanel : public QDialog {
    Q_OBJECT
public:
    /// Offers `addresses` in their order. When the address is not editable the user can only choose one of these.
    ChooseURLPanel(const QStringList& addresses, bool editable);
    ~ChooseURLPanel() override;

    /// The address in the field, without blanks around it.
    QString address() const;

private:
    std::unique_ptr<Ui::ChooseURLPanel> mUi;
};

} // namespace quoddle
