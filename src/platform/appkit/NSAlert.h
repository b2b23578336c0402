// SPDX-License-Identifier: MIT
// An alert: a message, what else there is to say, and buttons; as a sheet of a window or application-modal.
// One decision: texts are shown as they are, never as markup, for they come from scripts.
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
    /// The first button stands at the end of the row and gets Return as its key, one called "Cancel" gets Escape; the keys may be changed.
    QPushButton* addButton(const QString& title);
    /// In the order in which they were added.
    const std::vector<QPushButton*>& buttons() const { return mButtons; }
    NSPanel& window() { return *mPanel; }
    const NSPanel& window() const { return *mPanel; }

    /// Shows it without waiting; the alert must live until the completion, which gets the button's return code (or the code with which the
    /// sheet was ended). An alert without buttons gets an "OK". An only button takes Escape as well.
    void beginSheetModal(NSWindow& window, std::function<void(int returnCode)> completion);
    /// A window of its own, beside which everything else goes on. The alert must live until the completion.
    void show(std::function<void()> completion);
    /// Waits for the answer.
    int runModal();
    /// Makes it complete, as all of these do first; for one that the caller shows by itself.
    void layout();

private:
    void fitToScreen(const QSize& screen);

    std::unique_ptr<Ui::NSAlert> mUi;
    std::unique_ptr<NSPanel> mPanel;
    std::vector<QPushButton*> mButtons;
    NSAlertStyle mStyle = NSAlertStyle::warning;
    bool mHasOwnIcon = false;
};

} // namespace quoddle
