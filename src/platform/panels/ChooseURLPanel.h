// SPDX-License-Identifier: MIT
// The panel of choose URL: an address is typed, or taken from those that are known.
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
    /// `addresses` are offered in their order. One that is not editable is chosen among them only.
    ChooseURLPanel(const QStringList& addresses, bool editable);
    ~ChooseURLPanel() override;

    /// As it stands in the field, without blanks around it.
    QString address() const;

private:
    std::unique_ptr<Ui::ChooseURLPanel> mUi;
};

} // namespace quoddle
