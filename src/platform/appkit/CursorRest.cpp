// SPDX-License-Identifier: MIT
#include "platform/appkit/CursorRest.h"

#include <QApplication>
#include <QEvent>

namespace quoddle {

CursorRest::CursorRest(QObject* parent, std::chrono::milliseconds patience) : QObject(parent), mFlashTime(QApplication::cursorFlashTime()) {
    mPatience.setSingleShot(true);
    mPatience.setInterval(patience);
    mPatience.callOnTimeout(this, [] { QApplication::setCursorFlashTime(0); });
    if (mFlashTime > 0)
        qApp->installEventFilter(this);
}

CursorRest::~CursorRest() {
    if (mFlashTime > 0)
        QApplication::setCursorFlashTime(mFlashTime);
}

bool CursorRest::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::FocusIn:
        QApplication::setCursorFlashTime(mFlashTime);
        mPatience.start();
        break;
    default:
        break;
    }
    return false;
}

} // namespace quoddle
