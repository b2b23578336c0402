// SPDX-License-Identifier: MIT
// An alert: a message, what else there is to say, and buttons; as a sheet of a window or application-modal.
// One decision: texts are shown as they are, never as markup, for they come from scripts.
// Main thread only.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <QDialog>

class QPushButton;

namespace Ui {
class NSAlert;
}

namespace quoddle {

class NSWindow;

/// What the first button answers; the others follow it.
constexpr int NSAlertFirstButtonReturn = 1000;

enum class NSAlertStyle { warning = 0, informational = 1, critical = 2 };

class NSAlert {
public:
    NSAlert();
    ~NSAlert();

    void setAlertStyle(NSAlertStyle style);
    void setMessageText(const QString& text);
    void setInformativeText(const QString& text);
    /// Replaces the icon of the style.
    void setIcon(const QIcon& icon);
    /// The first button is the default one and stands at the end of the row. A button called "Cancel", or an only one, takes Escape.
    QPushButton* addButton(const QString& title);
    const std::vector<QPushButton*>& buttons() const { return mButtons; }
    QDialog& window() { return *mDialog; }

    /// Shows it without waiting; the alert must live until the completion, which gets the button's return code (or the code with which the
    /// sheet was ended). An alert without buttons gets an "OK".
    void beginSheetModal(NSWindow& window, std::function<void(int returnCode)> completion);
    /// A window of its own, beside which everything else goes on. The alert must live until the completion.
    void show(std::function<void()> completion);
    /// Waits for the answer.
    int runModal();

private:
    class Dialog;
    void prepare();

    std::unique_ptr<Ui::NSAlert> mUi;
    std::unique_ptr<Dialog> mOwnDialog;
    QDialog* mDialog;
    std::vector<QPushButton*> mButtons;
    NSAlertStyle mStyle = NSAlertStyle::warning;
    bool mHasOwnIcon = false;
};

} // namespace quoddle
