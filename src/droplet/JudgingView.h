// SPDX-License-Identifier: MIT
// Shows how many of the dropped files have been judged, with a button to stop the judging, which Escape presses.
// Main thread only.
#pragma once

#include <QWidget>

namespace quoddle {

class ProgressBar;

class JudgingView final : public QWidget {
    Q_OBJECT
public:
    /// The view is hidden at first.
    explicit JudgingView(QWidget* parent);
    /// Shows the view with the numbers of judged and of all files.
    void showProgress(qsizetype judged, qsizetype all);

Q_SIGNALS:
    void stopRequested();

private:
    ProgressBar* mProgressView;
};

} // namespace quoddle
