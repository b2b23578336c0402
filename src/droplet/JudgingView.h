// SPDX-License-Identifier: MIT
// How far the judging of dropped files has come, and a button to stop it, which Escape presses.
// Main thread only.
#pragma once

#include <QWidget>

namespace quoddle {

class ProgressBar;

class JudgingView final : public QWidget {
    Q_OBJECT
public:
    /// Hidden at first.
    explicit JudgingView(QWidget* parent);
    /// `judged` of `all` files.
    void showProgress(qsizetype judged, qsizetype all);

Q_SIGNALS:
    void stopRequested();

private:
    ProgressBar* mProgressView;
};

} // namespace quoddle
