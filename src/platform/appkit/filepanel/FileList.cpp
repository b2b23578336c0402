// SPDX-License-Identifier: MIT
#include "platform/appkit/filepanel/FileList.h"

#include "platform/appkit/Appearance.h"
#include "platform/appkit/filepanel/RowDelegate.h"
#include "platform/appkit/ListKeys.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>

namespace quoddle {

using namespace Qt::StringLiterals;

FileList::FileList(QWidget* parent) : QTreeView(parent) {
    setItemDelegate(new RowDelegate(this));
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSortingEnabled(true);
    setTextElideMode(Qt::ElideMiddle);
    setEditTriggers(NoEditTriggers);
    setExpandsOnDoubleClick(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    header()->setHighlightSections(false);
    header()->setSortIndicator(0, Qt::AscendingOrder);
}

void FileList::setPlaceholder(const QString& text) {
    mPlaceholder = text;
    setAccessibleDescription(text);
    viewport()->update();
}

void FileList::keyPressEvent(QKeyEvent* event) {
    const bool isRightToLeft = layoutDirection() == Qt::RightToLeft;
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const int inwards = isRightToLeft ? Qt::Key_Left : Qt::Key_Right;
    const int outwards = isRightToLeft ? Qt::Key_Right : Qt::Key_Left;
    if (isPlain && (event->key() == outwards || event->key() == Qt::Key_Backspace))
        Q_EMIT parentRequested();
    else if (isPlain && event->key() == inwards)
        Q_EMIT entryRequested(currentIndex());
    else if (event->text() == "/"_L1 || event->text() == "~"_L1)
        Q_EMIT pathBegun(event->text());
    else if (!moveFromNowhere(*this, *event))
        QTreeView::keyPressEvent(event);
}

void FileList::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    if (mPlaceholder.isEmpty())
        return;
    QPainter painter(viewport());
    painter.setPen(Appearance::secondaryLabelColor(palette()));
    painter.drawText(viewport()->rect().adjusted(16, 16, -16, -16), Qt::AlignCenter | Qt::TextWordWrap, mPlaceholder);
}

} // namespace quoddle
