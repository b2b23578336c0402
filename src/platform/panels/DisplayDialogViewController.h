// SPDX-License-Identifier: MIT
// The content of a dialog that asks: prompt, up to three buttons, an optional icon and an optional field for an answer, plain or hidden.
// One decision: it only shows; which button means what is known to whoever shows it. A button ends the panel with a code of its place.
// Main thread only.
#pragma once

#include "platform/appkit/NSPanel.h"
#include "platform/panels/AnswerField.h"

#include <QLabel>
#include <QLineEdit>

namespace Ui {
class DisplayDialogViewController;
}

class QSpacerItem;

namespace quoddle {

class DisplayDialogViewController final : public NSViewController {
    Q_OBJECT
public:
    static constexpr int kLeftButtonReturn = 1000;
    static constexpr int kMiddleButtonReturn = 1001;
    static constexpr int kRightButtonReturn = 1002;

    explicit DisplayDialogViewController(QObject* parent = nullptr);
    ~DisplayDialogViewController() override;

    // Set before the view is loaded; they decide what of it stays.
    bool hasIcon = false;
    bool hasAnswer = false;
    bool hiddenAnswer = false;
    unsigned buttonCount = 1; ///< 1 to 3

    /// Shown as it stands, never as markup; the end of an endless one is left out.
    void setPrompt(const QString& prompt);
    /// The text of the field that there is; it is selected.
    void setAnswer(const QString& answer);
    /// Empty without a field.
    QString answer() const;
    void setIcon(const QPixmap& icon);
    /// Return and Tab put a line break and a tab into the answer, instead of pressing a button and moving on.
    void setIsAnswerDelegate(bool isDelegate);
    /// The panel that shows the view.
    NSPanel* window() { return qobject_cast<NSPanel*>(view()->window()); }
    /// What has the focus when the panel appears: the answer, else the button with Return, else no button.
    void takeInitialFocus();
    /// Narrows a view that is wider than this.
    void limitWidth(int width);

    void doLeftButton() { end(kLeftButtonReturn); }
    void doMiddleButton() { end(kMiddleButtonReturn); }
    void doRightButton() { end(kRightButtonReturn); }

    // Outlets, when the view has been loaded; null for what was not needed.
    QLabel* promptField() const;
    AnswerField* answerField() const { return mAnswerField; }
    QLineEdit* secureAnswerField() const { return mSecureAnswerField; }
    QPushButton* leftButton() const { return mLeftButton; }
    QPushButton* middleButton() const { return mMiddleButton; }
    QPushButton* rightButton() const { return mRightButton; }
    QLabel* iconImageView() const { return mIconImageView; }

protected:
    QWidget* loadView() override;
    void viewDidLoad() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void end(int returnCode);
    /// True when the control is an answer field and the command a line break or a tab, which is then put in.
    bool control(QObject* control, int key);
    QWidget* fieldInUse() const;
    void fitPrompt();

    std::unique_ptr<Ui::DisplayDialogViewController> mUi;
    QPointer<AnswerField> mAnswerField;
    QPointer<QLineEdit> mSecureAnswerField;
    QPointer<QPushButton> mLeftButton, mMiddleButton, mRightButton;
    QPointer<QLabel> mIconImageView;
    // Distances in the layout; the view's.
    QSpacerItem* buttonToPromptConstraint = nullptr;
    QSpacerItem* middleButtonLeadingConstraint = nullptr;
    QSpacerItem* answerLeadingConstraint = nullptr;
    QSpacerItem* secureAnswerLeadingConstraint = nullptr;
    QSpacerItem* promptLeadingConstraint = nullptr;
    QSpacerItem* leftButtonLeadingConstraint = nullptr;
    QSpacerItem* rightButtonLeadingConstraint = nullptr;
    int mWidthLimit = 0; ///< 0: none yet
};

} // namespace quoddle
