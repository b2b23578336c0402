// SPDX-License-Identifier: MIT
// A slim progress bar: a rounded line that fills, or a piece that wanders along it while the end is not known.
// One decision: it draws itself from the palette alone and so looks the same in every style, light and dark.
// Accessibility and the range come from QProgressBar.
#pragma once

#include <QProgressBar>

class QVariantAnimation;

namespace quoddle {

class ProgressBar : public QProgressBar {
    Q_OBJECT
public:
    /// A determinate bar with the range 0 to 100 and the value 0.
    explicit ProgressBar(QWidget* parent = nullptr);

    bool isIndeterminate() const { return mIndeterminate; }
    /// Keeps the value, which is shown again when the bar becomes determinate. An indeterminate bar stands still until it is started.
    void setIndeterminate(bool indeterminate);
    /// Whether the piece moves. It stands still while a modal dialog blocks the window, until the user has answered.
    bool isAnimating() const { return mStarted && mIndeterminate && !mIsBlocked; }
    void startAnimation();
    void stopAnimation();
    double doubleValue() const { return mValue; }
    /// Sets the value, cut to the range.
    void setDoubleValue(double value);

    QSize sizeHint() const override { return {160, 8}; }
    QSize minimumSizeHint() const override { return {40, 8}; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void updateAnimation();
    void updateRange();

    QVariantAnimation* mWandering;
    double mValue = 0;
    bool mIndeterminate = false;
    bool mStarted = false;
    bool mIsBlocked = false;
};

} // namespace quoddle
