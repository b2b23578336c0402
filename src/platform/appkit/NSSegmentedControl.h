// SPDX-License-Identifier: MIT
// A row of buttons of which one is pressed; to screen readers a group of radio buttons.
// Main thread only.
#pragma once

#include <QButtonGroup>
#include <QIcon>
#include <QWidget>

class QToolButton;

namespace quoddle {

class NSSegmentedControl : public QWidget {
    Q_OBJECT
public:
    explicit NSSegmentedControl(int segmentCount, QWidget* parent = nullptr);

    int segmentCount() const { return static_cast<int>(mButtons.buttons().size()); }
    /// Sets the icon and the label, which screen readers say and which is shown when the pointer rests on the segment.
    void setSegment(int segment, const QIcon& icon, const QString& label);
    /// The segment that is pressed; initially 0.
    int selectedSegment() const { return mButtons.checkedId(); }
    /// Presses a segment; action() is not emitted.
    void setSelectedSegment(int segment);

Q_SIGNALS:
    /// Emitted when the user has chosen a segment.
    void action(int segment);

private:
    QToolButton* button(int segment) const;

    QButtonGroup mButtons;
    bool mIsSetByProgram = false;
};

} // namespace quoddle
