// SPDX-License-Identifier: MIT
// The panel of "choose application": a list of names with icons; letters typed go to the name that begins with them.
// Main thread only.
#pragma once

#include <memory>
#include <vector>

#include <QDialog>

namespace Ui {
class ChooseApplicationPanel;
}

namespace quoddle {

class ApplicationListModel;
struct ListedApplication;

class ChooseApplicationPanel : public QDialog {
    Q_OBJECT
public:
    ChooseApplicationPanel(std::vector<ListedApplication> applications, bool multiple);
    ~ChooseApplicationPanel() override;

    void setPrompt(const QString& prompt);
    /// The selected applications from top to bottom.
    std::vector<ListedApplication> chosen() const;

private:
    std::unique_ptr<Ui::ChooseApplicationPanel> mUi;
    ApplicationListModel* mModel;
};

} // namespace quoddle
