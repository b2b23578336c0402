// SPDX-License-Identifier: MIT
// QLPreviewPanel: the single window of a process in which files can be looked at without opening them.
// Decision: the panel belongs to the object that has the keyboard focus. The panel asks the widgets from the focused one up to the window
// for a controller that accepts the panel, each time it is brought to the front and each time the focus changes outside it. That controller
// decides what is shown. When no controller accepts, the former one keeps the panel.
// A file that changes on disk is read again.
// Keys: Escape closes the panel; the left and right arrows change between several items; the delegate gets all other keys. Of the keys that
// it does not handle, space closes the panel and others scroll.
// Main thread only.
#pragma once

#include "platform/preview/FileWatch.h"
#include "platform/preview/PanelZoom.h"
#include "platform/preview/PreviewLoader.h"
#include "platform/preview/QLPreviewItem.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

class QLabel;
class QPushButton;
class QToolButton;

namespace quoddle {

class ElidedLabel;
class PreviewView;

class QLPreviewPanel : public QWidget {
    Q_OBJECT
public:
    /// Made by the first call; destroyed with the application object.
    static QLPreviewPanel& sharedPreviewPanel();
    static bool sharedPreviewPanelExists();
    ~QLPreviewPanel() override;

    /// The controller is asked when the keyboard focus is in `responder` or inside it. Neither is owned, and either may be destroyed first.
    /// A responder has one controller, the last one registered.
    static void registerController(QWidget& responder, QLPreviewPanelController& controller);

    /// Null when no controller has the panel.
    QLPreviewPanelController* currentController() const { return mController; }
    /// Asks the responders again. When none accepts, the current controller stays as long as it has a responder.
    void updateController();

    /// Not owned; null when there is nothing to show.
    void setDataSource(QLPreviewPanelDataSource* dataSource);
    QLPreviewPanelDataSource* dataSource() const { return mDataSource; }
    void setDelegate(QLPreviewPanelDelegate* delegate) { mDelegate = delegate; }
    QLPreviewPanelDelegate* delegate() const { return mDelegate; }

    /// Finds the controller, shows its current item and takes the keyboard focus.
    void makeKeyAndOrderFront();
    /// Hides the panel and takes it away from its controller.
    void orderOut();
    /// Whether the panel is shown, also while it is still growing from its row.
    bool isVisible() const { return mIsOrderedIn; }

    /// Asks the data source for the number of items and shows the current one. A file that is already shown is not read again.
    void reloadData();
    /// Reads the file of the current item again. The old contents stay visible until then.
    void refreshCurrentPreviewItem();
    /// The index of the current item; -1 when there are no items.
    int currentPreviewItemIndex() const { return mItems > 0 ? mIndex : -1; }
    /// Makes the item at the nearest valid index the current one.
    void setCurrentPreviewItemIndex(int index);
    const QLPreviewItem* currentPreviewItem() const { return mItem.get(); }

Q_SIGNALS:
    /// Emitted when the current item's contents are complete.
    void previewFinished();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    friend class QLPreviewPanelController;
    QLPreviewPanel();
    void buildControls();
    void connectLoader();

    void takeControl(QLPreviewPanelController* controller);
    static void forget(QLPreviewPanelController* controller);
    void focusChanged();

    void updateControls();
    /// An empty path shows that nothing is selected.
    void showFile(const QString& path);
    void read();
    void finish();
    /// Puts the name of the program that opens the file on the button, once it is known.
    void updateOpenButton();
    void showContents(const PreviewContents& contents);
    void picturesEnded(PictureStream::End end);
    void openItem();
    QRect sourceFrame();
    void place();
    void present();
    Qt::Edges edgesAt(const QPoint& place) const;

    QLPreviewPanelController* mController = nullptr;
    QLPreviewPanelDataSource* mDataSource = nullptr;
    QLPreviewPanelDelegate* mDelegate = nullptr;
    QPointer<QWidget> mLastWindow; // the window that was active before the panel
    std::shared_ptr<const QLPreviewItem> mItem;
    QString mPath; // the file that is shown or being read; empty for none
    int mItems = 0;
    int mIndex = 0;
    bool mIsOrderedIn = false;
    bool mWasPlaced = false;
    bool mIsPressed = false;   // the left button is held down, to move or resize the panel
    bool mHasPictures = false; // for the current item
    bool mIsReading = false;
    bool mIsOutdated = false;  // the file has changed while it was being read
    PreviewContents mContents; // of the current item; empty before they are loaded
    PreviewLoader mLoader;
    FileWatch mWatch;
    PanelZoom mZoom;
    QTimer mPatience; // runs while the last file stays visible
    ElidedLabel* mTitle;
    QLabel* mNotice;
    PreviewView* mView;
    QToolButton* mPrevious;
    QToolButton* mNext;
    QPushButton* mOpen;
};

} // namespace quoddle
