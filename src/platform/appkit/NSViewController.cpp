// SPDX-License-Identifier: MIT
#include "platform/appkit/NSViewController.h"

#include <QEvent>

namespace quoddle {

NSViewController::NSViewController(QObject* parent) : QObject(parent) {}

NSViewController::~NSViewController() {
    if (mView)
        mView->removeEventFilter(this); // the subclass part of this object has been destroyed already
}

QWidget* NSViewController::view() {
    if (!mView) {
        mView.reset(loadView());
        viewDidLoad();
        mView->installEventFilter(this);
    }
    return mView.get();
}

bool NSViewController::eventFilter(QObject* watched, QEvent* event) {
    if (watched == mView.get()) {
        const bool byProgram = !event->spontaneous();
        if (event->type() == QEvent::Show && byProgram)
            viewDidAppear();
        else if (event->type() == QEvent::Hide && byProgram)
            viewDidDisappear();
        else if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)
            viewDidChangeEffectiveAppearance();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace quoddle
