// SPDX-License-Identifier: MIT
#include "window/HookStopPanel.h"

#include "platform/appkit/NSPanel.h"
#include "platform/appkit/ProgressBar.h"

#include <QCoreApplication>
#include <QLabel>
#include <QVBoxLayout>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kEventInterval = 20; // milliseconds
constexpr int kTextWidth = 320;       // points

} // namespace

HookStopPanel::HookStopPanel() = default;
HookStopPanel::~HookStopPanel() = default;

bool HookStopPanel::isStopRequested(const QString& applicationName) {
    if (!mPanel)
        show(applicationName);
    if (mSinceEvents.isValid() && mSinceEvents.elapsed() < kEventInterval)
        return false;
    QCoreApplication::processEvents();
    mSinceEvents.start();
    return std::exchange(mIsStopRequested, false);
}

void HookStopPanel::show(const QString& applicationName) {
    mIsStopRequested = false;
    mPanel = std::make_unique<NSPanel>();
    mPanel->setWindowModality(Qt::ApplicationModal);
    mPanel->setWindowTitle(titleText(applicationName));
    auto* text = new QLabel(
        QCoreApplication::translate("HookStopPanel", "“%1” is waiting for an answer from its script.").arg(titleText(applicationName)));
    text->setTextFormat(Qt::PlainText);
    text->setWordWrap(true);
    text->setMinimumWidth(kTextWidth);
    auto* bar = new ProgressBar;
    bar->setAccessibleName(QCoreApplication::translate("HookStopPanel", "Waiting for the script"));
    bar->setIndeterminate(true);
    bar->startAnimation();
    auto* stop = new QPushButton;
    setButtonTitle(*stop, QCoreApplication::translate("HookStopPanel", "Stop"));
    setKeyEquivalent(*stop, kEscapeKeyEquivalent);
    stop->setFocusPolicy(Qt::NoFocus); // the panel comes by itself, and blanks and Returns may be meant for what was in front
    QObject::connect(stop, &QPushButton::clicked, mPanel.get(), [this] { mIsStopRequested = true; });
    auto* layout = new QVBoxLayout(mPanel.get());
    layout->setContentsMargins(20, 20, 20, 20);
    layout->setSpacing(14);
    layout->addWidget(text);
    layout->addWidget(bar);
    layout->addWidget(stop, 0, Qt::AlignTrailing);
    mPanel->setCloseButton(stop);
    mPanel->show();
    mPanel->raise();
    mPanel->activateWindow();
}

void HookStopPanel::dismiss() {
    mPanel.reset();
    mSinceEvents.invalidate();
}

} // namespace quoddle
