// SPDX-License-Identifier: MIT
#include "droplet/SpotlightResultsView.h"

#include "droplet/DropFilesView.h"
#include "droplet/DropletWindowController.h"
#include "droplet/SpotlightViewController.h"
#include "platform/appkit/KeyRepetition.h"

#include <QDragEnterEvent>

namespace quoddle {

SpotlightResultsView::SpotlightResultsView(QWidget* parent) : QListView(parent) {
    _setupView();
}

void SpotlightResultsView::_setupView() {
    setUniformItemSizes(true);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAcceptDrops(true);
    viewport()->setAcceptDrops(true);
}

void SpotlightResultsView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && mController) {
        if (!isKeyRepetition(*event)) // a key held down would open and close the panel again and again
            mController->doQuickLook();
    } else if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && mController) {
        if (selectionModel()->hasSelection())
            mController->doOK();
    } else {
        QListView::keyPressEvent(event);
    }
}

void SpotlightResultsView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) // only the left button opens files
        QListView::mouseDoubleClickEvent(event);
}

void SpotlightResultsView::dragEnterEvent(QDragEnterEvent* event) {
    if (!filenamesFrom(*event->mimeData()))
        return event->ignore();
    event->setDropAction(Qt::CopyAction);
    event->accept();
    if (DropletWindowController* controller = DropletWindowController::current())
        controller->showDropFilesViewController();
}

/// Refuses drops here: the drop pane, which takes them, has come up and is under the pointer with its next move at the latest.
void SpotlightResultsView::dragMoveEvent(QDragMoveEvent* event) {
    event->setDropAction(Qt::IgnoreAction);
    event->ignore();
}

} // namespace quoddle
