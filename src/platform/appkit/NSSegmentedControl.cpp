// SPDX-License-Identifier: MIT
#include "platform/appkit/NSSegmentedControl.h"

#include <QAccessibleWidget>
#include <QHBoxLayout>
#include <QToolButton>

namespace quoddle {

namespace {

/// Shows a segment to screen readers as a radio button. The toolkit takes a tool button that stays down for a check box, which a second
/// press would clear.
class SegmentInterface final : public QAccessibleWidget {
public:
    explicit SegmentInterface(QToolButton& segment) : QAccessibleWidget(&segment, QAccessible::RadioButton), mSegment(segment) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = true;
        state.checked = mSegment.isChecked();
        return state;
    }
    QStringList actionNames() const override { return QStringList{pressAction()} + QAccessibleWidget::actionNames(); }
    void doAction(const QString& name) override {
        if (name == pressAction())
            mSegment.click();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    QToolButton& mSegment;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    if (auto* control = qobject_cast<NSSegmentedControl*>(object))
        return new QAccessibleWidget(control, QAccessible::Grouping);
    auto* segment = qobject_cast<QToolButton*>(object);
    return segment && qobject_cast<NSSegmentedControl*>(segment->parent()) ? new SegmentInterface(*segment) : nullptr;
}

} // namespace

NSSegmentedControl::NSSegmentedControl(int segmentCount, QWidget* parent) : QWidget(parent) {
    static const bool isInstalled = (QAccessible::installFactory(&makeInterface), true);
    std::ignore = isInstalled;
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
    // The signal is "toggled" because an assistive technology can press a button without a click.
    connect(&mButtons, &QButtonGroup::idToggled, this, [this](int segment, bool isPressed) {
        button(segment)->setFocusPolicy(isPressed ? Qt::TabFocus : Qt::NoFocus); // the Tab key leads to the chosen segment
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
