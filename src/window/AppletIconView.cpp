// SPDX-License-Identifier: MIT
#include "window/AppletIconView.h"

#include "platform/appkit/BundleIcon.h"
#include "runtime/AppDelegate.h"

#include <QApplication>
#include <QPainter>
#include <QTimer>

namespace quoddle {

QIcon appletIcon() {
    const AppDelegate* delegate = AppDelegate::instance();
    const auto bundle = delegate ? delegate->mainBundle() : nullptr;
    return applicationIcon(bundle.get());
}

AppletIconView::AppletIconView(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void AppletIconView::paintEvent(QPaintEvent*) {
    if (QApplication::windowIcon().isNull()) {
        if (!mAsked)
            QTimer::singleShot(0, this, [this] {
                std::ignore = appletIcon();
                update();
            });
        mAsked = true;
        return;
    }
    QPainter painter(this);
    QApplication::windowIcon().paint(&painter, rect());
}

} // namespace quoddle
