// SPDX-License-Identifier: MIT
// The list of results. A drag of files over it brings up the drop pane, which takes them.
// Main thread only.
#pragma once

#include <QListView>

namespace quoddle {

class SpotlightViewController;

class SpotlightResultsView : public QListView {
    Q_OBJECT
public:
    explicit SpotlightResultsView(QWidget* parent = nullptr);

    /// Sets the pane that carries out keys; not owned, null at first.
    void setController(SpotlightViewController* controller) { mController = controller; }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;

private:
    void _setupView();

    SpotlightViewController* mController = nullptr;
};

} // namespace quoddle
