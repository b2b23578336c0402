// SPDX-License-Identifier: MIT
// A window of the application: content, menu bar, remembered frame, sheets.
// One decision: a window is hidden (ordered out) by the program and closed only by the user; only closing is announced and may end the
// application.
// Main thread only.
#pragma once

#include "platform/appkit/NSViewController.h"

#include <deque>
#include <functional>
#include <optional>

#include <QElapsedTimer>
#include <QMainWindow>
#include <QPointer>
#include <QTimer>

class QDialog;

namespace quoddle {

class NSWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit NSWindow(QWidget* parent = nullptr);
    ~NSWindow() override;

    /// Shows the controller's view, which is loaded now. The controller is not owned.
    void setContentViewController(NSViewController* controller);
    /// The controller of the view; null when there is none any more.
    NSViewController* contentViewController() const { return mContent; }

    /// Applies the frame that was remembered under the name, when there is one and some screen still shows it, and remembers the frame from
    /// now on. Of a window whose size the layout fixes only the place is remembered.
    void setFrameAutosaveName(const QString& name);
    const QString& frameAutosaveName() const { return mFrameAutosaveName; }

    void setVisible(bool visible) override;
    /// Shows a window that the user has asked for: it comes to the front, also when it is minimised, and takes the keyboard; its sheet does
    /// so in its place.
    void makeKeyAndOrderFront();
    /// Shows a window by itself: the keyboard stays where it is, and a window that is visible or minimised is left alone.
    void appear();
    /// Hides the window without closing it. While a sheet is shown, the window stays until the sheet has been answered.
    void orderOut();

    /// Gets the return code of the dialog; NSModalResponseAbort when the window was destroyed first.
    using SheetCompletion = std::function<void(int returnCode)>;
    /// Shows the dialog as a sheet, after the sheets that were begun before it; it moves with the window. The dialog belongs to the caller
    /// and must live until the completion, which is called after the sheet has been hidden.
    void beginSheet(QDialog* sheet, SheetCompletion completion);
    /// Ends a sheet that is shown or still waits; nothing happens for any other dialog.
    void endSheet(QDialog* sheet, int returnCode);
    /// The sheet that is shown, or null.
    QDialog* attachedSheet() const;

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Sheet {
        QDialog* dialog;
        const QObject* object; // the dialog's address as an object, to find it by while the dialog is being destroyed
        SheetCompletion completion;
        bool shown = false;
    };
    void showNextSheet();
    /// Whether the window has been shown but not yet placed by the window manager.
    bool isBeingPlaced() const;
    void presentSheet();
    void activateSheet();
    void placeSheet();
    /// Removes the sheet, shown or waiting, and shows the next one when it was the first.
    void sheetEnded(const QObject* object, int returnCode);
    void recover();
    void saveFrame();
    void takeRestoredFrame();

    QPointer<NSViewController> mContent;
    QString mFrameAutosaveName;
    std::optional<QRect> mRestoredFrame; // until the window is first shown
    std::deque<Sheet> mSheets;           // the first one is shown
    QElapsedTimer mSinceChange;          // time since the window was shown or hidden; invalid before
    QTimer mPlacement;                   // runs while the first sheet waits for the window to be placed
    bool mSheetHasFrame = false;         // the window manager has put its frame around the sheet that is shown
    bool mGoesWithSheet = false;         // the window was ordered out while a sheet was shown, and is hidden after the last one
};

} // namespace quoddle
