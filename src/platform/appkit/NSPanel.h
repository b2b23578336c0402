// SPDX-License-Identifier: MIT
// NSPanel: a dialog that is ended by its buttons and by nothing else, and the keys that press them.
// One decision: a key presses a button because the button says so (its key equivalent), not because of where the button stands. Return
// presses the button that the user has moved the focus to, before the one that has Return as its key. A key that is held down from an
// earlier dialog presses nothing. Keys for copying and paging that no control wants go to the texts of the panel.
// Main thread only.
#pragma once

#include "platform/appkit/NSViewController.h"

#include <QDialog>
#include <QPointer>
#include <QPushButton>

#include <vector>

class QLabel;

namespace quoddle {

inline const QString kReturnKeyEquivalent = QStringLiteral("\r");
inline const QString kEscapeKeyEquivalent = QStringLiteral("\x1b");

/// Sets the key that presses the button without modifiers, from anywhere in its panel: Return, Escape or empty for none. The button with
/// Return is drawn as the default one. When two buttons have the same key the one that was made first is pressed.
void setKeyEquivalent(QPushButton& button, const QString& key);
/// The key that was set; empty for none.
QString keyEquivalent(const QPushButton& button);
/// Sets a title in which "&" is a character like any other. The button's text and its accessible name have it on one line, and the end of
/// an excessively long one is not shown.
void setButtonTitle(QPushButton& button, const QString& title);
/// The title as it was set.
QString buttonTitle(const QPushButton& button);
/// Shortens the visible titles that are too long for a row of this width; the distances between the buttons are not counted in the width.
void fitButtonTitles(std::vector<QPushButton*> buttons, int width);

/// The width of the longest word of a label, which cannot be broken.
int widthOfWords(const QLabel& label);
/// The height of a label whose lines are broken, in a scroll area of the width; 0 for an empty one.
int heightOfText(const QLabel& label, int width);
/// As much of a text as anybody reads in a dialog: the end of an excessively long one is left out.
QString readableText(const QString& text);
/// A tool tip that shows the text as it is, although the toolkit takes some texts for markup.
QString toolTipText(const QString& text);
/// The text on one line that a title bar can show.
QString titleText(const QString& text);

class NSPanel : public QDialog {
    Q_OBJECT
public:
    explicit NSPanel(QWidget* parent = nullptr);
    ~NSPanel() override;

    /// Fills the panel with the controller's view, which is loaded now. The controller is not owned.
    void setContentViewController(NSViewController* controller);

    /// Sets the button that the window's close button presses, and Escape where no button has it as its key. Null: the panel has no close
    /// button.
    void setCloseButton(QPushButton* button);
    /// Presses the close button; without one nothing happens.
    void reject() override;
    void setVisible(bool visible) override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// Handles a key for copying the texts or paging through them; false for any other key.
    bool useForTexts(const QKeyEvent& event);
    QPushButton* buttonWithKey(const QString& key) const;

    QPointer<NSViewController> mContent;
    QPushButton* mCloseButton = nullptr;
};

} // namespace quoddle
