// SPDX-License-Identifier: MIT
// An alert: a message, further information, and buttons; shown as a sheet of a window, as a window of its own or application-modal.
// One decision: texts are shown as they are, never as markup, because they come from scripts.
// Main thread only.
#pragma once

#include "platform/appkit/NSPanel.h"

#include <functional>
#include <memory>
#include <vector>

namespace Ui {
class NSAlert;
}

namespace quoddle {

class NSWindow;

/// The return code of the first button; the others have the numbers that follow.
constexpr int NSAlertFirstButtonReturn = 1000;

enum class NSAlertStyle { warning = 0, informational = 1, critical = 2 };

class NSAlert {
public:
    NSAlert();
    ~NSAlert();

    void setAlertStyle(NSAlertStyle style);
    void setMessageText(const QString& text);
    void setInformativeText(const QString& text);
    /// Shows this icon in place of the icon of the style.
    void setIcon(const QIcon& icon);
    /// The first button stands at the end of the row and gets Return as its key, one called "Cancel" gets Escape; the keys may be changed.
    QPushButton* addButton(const QString& title);
    /// The buttons in the order in which they were added; owned by the alert.
    const std::vector<QPushButton*>& buttons() const { return mButtons; }
    NSPanel& window() { return *mPanel; }
    const NSPanel& window() const { return *mPanel; }

    /// Shows the alert as a sheet and does not wait. The alert must live until the completion, which gets the button's return code (or the
    /// code with which the sheet was ended). An alert without buttons gets an "OK". A single button is also pressed by Escape.
    void beginSheetModal(NSWindow& window, std::function<void(int returnCode)> completion);
    /// Shows the alert as a window of its own, beside which everything else goes on. The alert must live until the completion.
    void show(std::function<void()> completion);
    /// Shows the alert application-modal and answers the return code.
    int runModal();
    /// Completes the alert: buttons, icon, size. The functions that show it do so first; others who show its window call this.
    void layout();

private:
    void fitTexts(const QSize& room);

    std::unique_ptr<Ui::NSAlert> mUi;
    std::unique_ptr<NSPanel> mPanel;
    std::vector<QPushButton*> mButtons;
    NSAlertStyle mStyle = NSAlertStyle::warning;
    bool mHasOwnIcon = false;
};

} // namespace quoddle
