// SPDX-License-Identifier: MIT
#include "window/ProgressViewController.h"

#include "platform/foundation/NSLog.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "runtime/AppDelegate.h"
#include "ui_ProgressViewController.h"

#include <QLocale>
#include <QShortcut>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

/// The values that the pane shows for one snapshot.
struct Shown {
    qint64 percentage = 0;
    QString message;
    QString message2;
    bool indeterminate = false;
};

/// The percentage steps × 100 / totalSteps in whole numbers, for steps > 0 and totalSteps ≥ 1; at most 100.
qint64 percentageOf(qint64 steps, qint64 totalSteps) {
    if (steps >= totalSteps)
        return 100;
    // The product may not fit in 64 bits. Adding the steps a hundred times and taking out every full total does.
    qint64 percentage = 0;
    quint64 rest = 0;
    for (int i = 0; i < 100; ++i) {
        rest += static_cast<quint64>(steps);
        if (rest >= static_cast<quint64>(totalSteps)) {
            rest -= static_cast<quint64>(totalSteps);
            ++percentage;
        }
    }
    return percentage;
}

QString grouped(qint64 number) {
    return QLocale().toString(number);
}

Shown shownFor(qint64 total, qint64 steps, const QString& description, const QString& additional) {
    Shown shown;
    shown.percentage = total >= 1 && steps > 0 ? percentageOf(steps, total) : 0;
    shown.indeterminate = total < 0 || steps < 0;
    shown.message = description;
    if (description.isEmpty() && total >= 0)
        shown.message = stringWithFormat(ProgressViewController::tr("%d%% completed"), {shown.percentage});
    shown.message2 = additional;
    if (additional.isEmpty() && total >= 0)
        shown.message2 = stringWithFormat(ProgressViewController::tr("%@ of %@"), {grouped(steps), grouped(total)});
    return shown;
}

} // namespace

ProgressViewController::ProgressViewController(QObject* parent)
    : NSViewController(parent), mUi(std::make_unique<Ui::ProgressViewController>()) {}

ProgressViewController::~ProgressViewController() {
    NSNotificationCenter::defaultCenter().removeObserver(this);
}

QWidget* ProgressViewController::loadView() {
    auto* widget = new QWidget;
    mUi->setupUi(widget);
    return widget;
}

void ProgressViewController::viewDidLoad() {
    QFont bold = mUi->messageView->font();
    bold.setBold(true);
    mUi->messageView->setFont(bold);
    QSizePolicy keepingRoom = mUi->stopButton->sizePolicy();
    keepingRoom.setRetainSizeWhenHidden(true); // the bar stays in its place when the button is hidden
    mUi->stopButton->setSizePolicy(keepingRoom);
    connect(mUi->stopButton, &QPushButton::clicked, this, &ProgressViewController::stop);
    connectStopKeys();

    mUi->stopButton->setEnabled(true);
    mUi->progressView->setIndeterminate(true);
    mUi->messageView->setText({});
    mUi->message2View->setText({});
    NSNotificationCenter::defaultCenter().addObserver(
        this, [this](const NSNotification& notification) { _progressDidChange(notification); }, ProgressChangedNotification);
}

void ProgressViewController::connectStopKeys() {
    for (const QKeySequence& keys : {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_Period)}) {
        auto* shortcut = new QShortcut(keys, mUi->stopButton->parentWidget());
        connect(shortcut, &QShortcut::activated, this, [this] {
            if (mUi->stopButton->isVisible())
                mUi->stopButton->click(); // click() acts at once; animateClick() takes a tenth of a second, in which the script works on
        });
    }
}

void ProgressViewController::stop() {
    mUi->stopButton->setEnabled(false);
    AppDelegate::instance()->stopRunningScript();
}

void ProgressViewController::resetStarted() {
    std::ignore = view();
    mUi->stopButton->setEnabled(true);
    mUi->progressView->setIndeterminate(true);
    mUi->progressView->startAnimation();
    mUi->messageView->setText({});
    mUi->message2View->setText({});
}

void ProgressViewController::resetStopped() {
    std::ignore = view();
    mUi->stopButton->setEnabled(false);
    mUi->progressView->stopAnimation();
}

void ProgressViewController::_progressDidChange(const NSNotification& notification) {
    NSLogTrace(u"_progressDidChange: %@"_s, {notification.userInfo});
    const qint64 total = notification.userInfo.value(u"totalSteps"_s).toLongLong();
    const qint64 steps = notification.userInfo.value(u"steps"_s).toLongLong();
    const QString description = notification.userInfo.value(u"description"_s).toString();
    const QString additional = notification.userInfo.value(u"additionalDescription"_s).toString();
    if (total == 0 && steps >= 0 && description.isEmpty() && additional.isEmpty()) {
        mUi->progressView->setDoubleValue(0);
        mUi->progressView->setIndeterminate(true);
        return; // both lines stay as they are
    }
    const Shown shown = shownFor(total, steps, description, additional);
    mUi->messageView->setText(shown.message);
    mUi->message2View->setText(shown.message2);
    mUi->progressView->setIndeterminate(shown.indeterminate);
    mUi->progressView->setDoubleValue(static_cast<double>(shown.percentage));
}

QPushButton* ProgressViewController::stopButton() const {
    return mUi->stopButton;
}

ProgressBar* ProgressViewController::progressView() const {
    return mUi->progressView;
}

ElidedLabel* ProgressViewController::messageView() const {
    return mUi->messageView;
}

ElidedLabel* ProgressViewController::message2View() const {
    return mUi->message2View;
}

bool ProgressViewController::stopButtonHidden() const {
    return mUi->stopButton->isHidden();
}

void ProgressViewController::setStopButtonHidden(bool hidden) {
    mUi->stopButton->setHidden(hidden);
}

bool ProgressViewController::stopButtonEnabled() const {
    return mUi->stopButton->isEnabled();
}

void ProgressViewController::setStopButtonEnabled(bool enabled) {
    mUi->stopButton->setEnabled(enabled);
}

} // namespace quoddle
