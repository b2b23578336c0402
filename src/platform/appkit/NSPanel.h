// SPDX-License-Identifier: MIT
// NSPanel: a dialog that is ended by its buttons and by nothing else, and the keys that press them.
// One decision: a key presses a button because the button says so (its key equivalent), not because of where it stands; a button that the
// user has moved the focus to takes Return before the one that has it as its key. A key that is held down from an earlier dialog presses
// nothing. What no control wants of the keys for copying and paging goes to the texts of the panel.
// Main thread only.
#pragma once

#include "platform/appkit/NSViewController.h"

#include <QDialog>
#include <QPointer>
#include <QPushButton>

#include <vector>

namespace quoddle {

inline const QString kReturnKeyEquivalent = QStringLiteral("\r");
inline const QString kEscapeKeyEquivalent = QStringLiteral("\x1b");

/// Pressed without modifiers, from anywhere in the button's panel: one of the two above, or empty for none. The button with Return is drawn
/// as the default one. When two buttons have the same key the one that was made first is pressed.
void setKeyEquivalent(QPushButton& button, const QString& key);
/// Empty for none.
QString keyEquivalent(const QPushButton& button);
/// A title in which "&" is a character like any other, on one line as the button's text and its accessible name; the end of an endless one
/// is not shown.
void setButtonTitle(QPushButton& button, const QString& title);
/// As it was set.
QString buttonTitle(const QPushButton& button);
/// Shortens what is seen of the titles that are too long for a row of this width, the distances between the buttons not counted.
void fitButtonTitles(std::vector<QPushButton*> buttons, int width);

/// As much of a text as anybody reads in a dialog: the end of an endless one is left out.
QString readableText(const QString& text);
/// A tool tip that shows the text as it is, though the toolkit would take some texts for marked-up ones.
QString toolTipText(const QString& text);
/// The text on one line that a title bar can show.
QString titleText(const QString& text);

class NSPanel : public QDialog {
    Q_OBJECT
public:
    explicit NSPanel(QWidget* parent = nullptr);
    ~NSPanel() override;

    /// The panel is filled by the controller's view; not owned. It is loaded now.
    void setContentViewController(NSViewController* controller);

    /// What the window's close button presses, and Escape where no button has it as its key; null: the panel has no close button.
    void setCloseButton(QPushButton* button);
    /// Presses that button; without one nothing happens.
    void reject() override;
    void setVisible(bool visible) override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// Copies the texts or pages through them; false when the key is for neither.
    bool useForTexts(const QKeyEvent& event);
    QPushButton* buttonWithKey(const QString& key) const;

    QPointer<NSViewController> mContent;
    QPushButton* mCloseButton = nullptr;
};

} // namespace quoddle
