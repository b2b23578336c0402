// SPDX-License-Identifier: MIT
#include "platform/appkit/NSSegmentedControl.h"

#include <QHBoxLayout>
#include <QToolButton>

namespace quoddle {

NSSegmentedControl::NSSegmentedControl(int segmentCount, QWidget* parent) : QWidget(parent) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (int segment = 0; segment < segmentCount; ++segment) {
        auto* made = new QToolButton(this);
        made->setCheckable(true);
        made->setFocusPolicy(Qt::NoFocus);
        layout->addWidget(made);
        mButtons.addButton(made, segment);
    }
    // Not the click: an assistive technology presses a button without one.
    connect(&mButtons, &QButtonGroup::idToggled, this, [this](int segment, bool isPressed) {
        button(segment)->setFocusPolicy(isPressed ? Qt::TabFocus : Qt::NoFocus); // the keyboard finds the chosen one
        if (isPressed && !mIsSetByProgram)
            Q_EMIT action(segment);
    });
    setSelectedSegment(0);
}

QToolButton* NSSegmentedControl::button(int segment) const {
    return static_cast<QToolButton*>(mButtons.button(segment));
}

void NSSegmentedControl::setSegment(int segment, const QIcon& icon, const QString& label) {
    button(segment)->setIcon(icon);
    button(segment)->setToolTip(label);
    button(segment)->setAccessibleName(label);
}

void NSSegmentedControl::setSelectedSegment(int segment) {
    mIsSetByProgram = true;
    if (QToolButton* chosen = button(segment))
        chosen->setChecked(true);
    mIsSetByProgram = false;
}

} // namespace quoddle
