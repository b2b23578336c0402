// SPDX-License-Identifier: MIT
// QLPreviewPanel: the one window of a process in which files can be looked at without being opened.
// One decision: the panel belongs to whoever has the keyboard. It asks the widgets from the one with the focus up to the window for a
// controller that accepts it, each time it is brought to the front and each time the focus moves outside it; that controller says what is
// shown. Where nobody accepts it, the controller of before keeps it.
// A file that changes on the disk is read again.
// Keys: Escape closes it, the left and right arrows page where there are several items, the delegate has the others; what it does not want
// closes (space) or scrolls.
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
    /// Made by the first call; ends with the application object.
    static QLPreviewPanel& sharedPreviewPanel();
    static bool sharedPreviewPanelExists();
    ~QLPreviewPanel() override;

    /// From now on the controller is asked when the keyboard is in `responder` or in something inside it. Neither is owned; either may go
    /// first. A responder has one controller, the last one registered.
    static void registerController(QWidget& responder, QLPreviewPanelController& controller);

    /// Null when nobody controls the panel.
    QLPreviewPanelController* currentController() const { return mController; }
    /// Asks the responders anew. When none of them accepts, the current controller stays as long as it has a responder.
    void updateController();

    /// Not owned; null: nothing to show.
    void setDataSource(QLPreviewPanelDataSource* dataSource);
    QLPreviewPanelDataSource* dataSource() const { return mDataSource; }
    void setDelegate(QLPreviewPanelDelegate* delegate) { mDelegate = delegate; }
    QLPreviewPanelDelegate* delegate() const { return mDelegate; }

    /// Finds the controller and shows its current item; the panel takes the keyboard.
    void makeKeyAndOrderFront();
    /// Ends the control.
    void orderOut();
    /// True as well while the panel is still growing out of its row.
    bool isVisible() const { return mIsOrderedIn; }

    /// Asks the data source how many items there are and shows the current one; a file that is shown already is not read again.
    void reloadData();
    /// Reads the file of the current item again. What is shown of it stays until then.
    void refreshCurrentPreviewItem();
    /// -1 when there is no item.
    int currentPreviewItemIndex() const { return mItems > 0 ? mIndex : -1; }
    /// The nearest index there is.
    void setCurrentPreviewItemIndex(int index);
    const QLPreviewItem* currentPreviewItem() const { return mItem.get(); }

Q_SIGNALS:
    /// All that is to be seen of the current item is there.
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
    /// An empty path shows that there is none.
    void showFile(const QString& path);
    void read();
    void finish();
    /// With the program that it leads to, as far as that is known.
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
    QPointer<QWidget> mLastWindow; // that was active before the panel
    std::shared_ptr<const QLPreviewItem> mItem;
    QString mPath; // that is shown or being read; empty: none
    int mItems = 0;
    int mIndex = 0;
    bool mIsOrderedIn = false;
    bool mWasPlaced = false;
    bool mIsPressed = false;   // by the left button, which is to move or resize
    bool mHasPictures = false; // of the current item
    bool mIsReading = false;
    bool mIsOutdated = false;  // the file has changed while it is being read
    PreviewContents mContents; // of the current item, when they have come
    PreviewLoader mLoader;
    FileWatch mWatch;
    PanelZoom mZoom;
    QTimer mPatience; // runs while what was shown before may stay
    ElidedLabel* mTitle;
    QLabel* mNotice;
    PreviewView* mView;
    QToolButton* mPrevious;
    QToolButton* mNext;
    QPushButton* mOpen;
};

} // namespace quoddle
