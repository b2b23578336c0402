// SPDX-License-Identifier: MIT
#include "platform/appkit/ListKeys.h"

#include <QAbstractItemView>
#include <QKeyEvent>

namespace quoddle {

namespace {

class ListKeyFilter final : public QObject {
    bool eventFilter(QObject* watched, QEvent* event) override {
        return event->type() == QEvent::KeyPress &&
               moveFromNowhere(*static_cast<QAbstractItemView*>(watched), *static_cast<const QKeyEvent*>(event));
    }
};

/// Whether a key leads to another row. Space does not: it selects the row that is marked as the current one.
bool isMove(const QKeyEvent& key) {
    switch (key.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        return true;
    default:
        return !key.text().isEmpty() && key.text().front().isPrint() && key.key() != Qt::Key_Space;
    }
}

} // namespace

bool moveFromNowhere(QAbstractItemView& list, const QKeyEvent& key) {
    const bool isPlain = (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (!isPlain || !isMove(key) || !list.selectionModel() || list.selectionModel()->hasSelection())
        return false;
    list.selectionModel()->clearCurrentIndex();
    if (key.key() != Qt::Key_End)
        return false;
    list.setCurrentIndex(list.model()->index(list.model()->rowCount() - 1, 0));
    return true;
}

void watchListKeys(QAbstractItemView& list) {
    static ListKeyFilter sFilter;
    list.installEventFilter(&sFilter);
}

} // namespace quoddle
