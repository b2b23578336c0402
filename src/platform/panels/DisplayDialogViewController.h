// SPDX-License-Identifier: MIT
// The content of a dialog that asks: prompt, up to three buttons, an optional icon and an optional field for an answer, plain or hidden.
// One decision: it only shows. The meaning of each button is known to the code that shows the dialog; a button ends the panel with a code
// for its place.
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

    // To be set before the view is loaded, which makes only the parts that are needed.
    bool hasIcon = false;
    bool hasAnswer = false;
    bool hiddenAnswer = false;
    unsigned buttonCount = 1; ///< 1 to 3

    /// Sets the prompt; shown as it is, never as markup. The end of an excessively long one is left out.
    void setPrompt(const QString& prompt);
    /// Puts the text into the field, if there is one, and selects it.
    void setAnswer(const QString& answer);
    /// The text in the field; empty without a field.
    QString answer() const;
    void setIcon(const QPixmap& icon);
    /// When set, Return and Tab put a line break and a tab into the answer, instead of pressing a button and moving on.
    void setIsAnswerDelegate(bool isDelegate);
    /// The panel that shows the view; null when there is none.
    NSPanel* window() { return qobject_cast<NSPanel*>(view()->window()); }
    /// Gives the focus to the answer, else to the button with Return, else to no button. For a panel that is about to appear.
    void takeInitialFocus();
    /// Narrows a view that is wider than this, in points.
    void limitWidth(int width);

    void doLeftButton() { end(kLeftButtonReturn); }
    void doMiddleButton() { end(kMiddleButtonReturn); }
    void doRightButton() { end(kRightButtonReturn); }

    // Outlets; the view must have been loaded. Null for parts that were not needed.
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
    /// Puts a line break or a tab into an answer field. False, without an effect, for other controls and keys.
    bool control(QObject* control, int key);
    QWidget* fieldInUse() const;
    void fitPrompt();

    std::unique_ptr<Ui::DisplayDialogViewController> mUi;
    QPointer<AnswerField> mAnswerField;
    QPointer<QLineEdit> mSecureAnswerField;
    QPointer<QPushButton> mLeftButton, mMiddleButton, mRightButton;
    QPointer<QLabel> mIconImageView;
    // Distances in the layout, owned by the view.
    QSpacerItem* buttonToPromptConstraint = nullptr;
    QSpacerItem* middleButtonLeadingConstraint = nullptr;
    QSpacerItem* answerLeadingConstraint = nullptr;
    QSpacerItem* secureAnswerLeadingConstraint = nullptr;
    QSpacerItem* promptLeadingConstraint = nullptr;
    QSpacerItem* leftButtonLeadingConstraint = nullptr;
    QSpacerItem* rightButtonLeadingConstraint = nullptr;
    int mWidthLimit = 0; ///< points; 0: no limit
};

} // namespace quoddle
