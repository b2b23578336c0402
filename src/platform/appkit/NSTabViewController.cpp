// SPDX-License-Identifier: MIT
#include "platform/appkit/NSTabViewController.h"

#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QPropertyAnimation>
#include <QStackedWidget>
#include <QStyle>

namespace quoddle {

namespace {
constexpr int kFadeMilliseconds = 220;
}

NSTabViewController::NSTabViewController(QObject* parent) : NSViewController(parent) {}

NSTabViewController::~NSTabViewController() {
    for (Tab& tab : mTabs) // views belong to their controllers, so the stack must not delete them
        if (tab.inStack) {
            mStack->removeWidget(tab.controller->view());
            tab.controller->view()->setParent(nullptr);
        }
}

QWidget* NSTabViewController::loadView() {
    mStack = new QStackedWidget;
    return mStack;
}

void NSTabViewController::addTabViewController(std::unique_ptr<NSViewController> controller) {
    mTabs.push_back({std::move(controller)});
}

NSViewController* NSTabViewController::tabViewController(int index) const {
    return index >= 0 && index < tabCount() ? mTabs[static_cast<std::size_t>(index)].controller.get() : nullptr;
}

void NSTabViewController::reserveSpaceForTab(int index) {
    if (!tabViewController(index))
        return;
    Tab& tab = mTabs[static_cast<std::size_t>(index)];
    if (tab.inStack)
        return;
    std::ignore = view();
    mStack->addWidget(tab.controller->view());
    tab.inStack = true;
}

void NSTabViewController::setSelectedTabViewItemIndex(int index) {
    NSViewController* controller = tabViewController(index);
    if (!controller || index == mSelected)
        return;
    reserveSpaceForTab(index);
    const bool animated = mSelected >= 0 && mTransition == TransitionOptions::crossfade && mStack->isVisible() &&
                          mStack->style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, mStack) > 0;
    const QPixmap oldPane = animated ? mStack->grab() : QPixmap();
    endCrossfade();
    mSelected = index;
    mStack->setCurrentWidget(controller->view());
    if (animated)
        beginCrossfade(oldPane);
}

void NSTabViewController::beginCrossfade(const QPixmap& oldPane) {
    auto* overlay = new QLabel(mStack);
    overlay->setAttribute(Qt::WA_TransparentForMouseEvents);
    overlay->setPixmap(oldPane);
    overlay->setGeometry(mStack->rect());
    auto* opacity = new QGraphicsOpacityEffect(overlay);
    overlay->setGraphicsEffect(opacity);
    auto* fade = new QPropertyAnimation(opacity, "opacity", overlay);
    fade->setDuration(kFadeMilliseconds);
    fade->setStartValue(1.0);
    fade->setEndValue(0.0);
    fade->setEasingCurve(QEasingCurve::InOutQuad);
    connect(fade, &QPropertyAnimation::finished, this, &NSTabViewController::endCrossfade);
    mOverlay = overlay;
    overlay->show();
    overlay->raise();
    fade->start();
}

void NSTabViewController::endCrossfade() {
    if (!mOverlay)
        return;
    mOverlay->hide();
    mOverlay->deleteLater(); // an animation of the overlay may be calling this
    mOverlay = nullptr;
}

} // namespace quoddle
