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

    /// The window shows the controller's view; not owned. It is loaded now.
    void setContentViewController(NSViewController* controller);
    /// Null when there is none any more.
    NSViewController* contentViewController() const { return mContent; }

    /// Takes the frame that was remembered under the name, when there is one and some screen still shows it, and remembers from now on.
    /// A window whose size the layout fixes remembers its place only.
    void setFrameAutosaveName(const QString& name);
    const QString& frameAutosaveName() const { return mFrameAutosaveName; }

    void setVisible(bool visible) override;
    /// For what the user has asked for: comes to the front, also out of the dock, and takes the keyboard; its sheet does so in its place.
    void makeKeyAndOrderFront();
    /// For what appears by itself: the keyboard stays where it is, and a window that is visible or minimised is left alone.
    void appear();
    /// Hides the window without closing it; while a sheet asks for an answer, not before it has been given.
    void orderOut();

    /// The return code of the dialog; NSModalResponseAbort when the window was destroyed first.
    using SheetCompletion = std::function<void(int returnCode)>;
    /// Shows the dialog as a sheet, after those that were begun before it; it moves with the window. The dialog stays the caller's and must
    /// live until the completion. The completion is called after the sheet has been hidden.
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
        const QObject* object; // the same; what is left of it while it is being destroyed
        SheetCompletion completion;
        bool shown = false;
    };
    void showNextSheet();
    /// The window has been shown and the window manager has not put it anywhere yet.
    bool isBeingPlaced() const;
    void presentSheet();
    void activateSheet();
    void placeSheet();
    /// Takes the sheet out, wherever it stands, and shows the next one when it was in front.
    void sheetEnded(const QObject* object, int returnCode);
    void recover();
    void saveFrame();
    void takeRestoredFrame();

    QPointer<NSViewController> mContent;
    QString mFrameAutosaveName;
    std::optional<QRect> mRestoredFrame; // until the window is first shown
    std::deque<Sheet> mSheets;           // the first one is shown
    QElapsedTimer mSinceChange;          // since the window was shown or hidden; invalid before
    QTimer mPlacement;                   // runs while the one in front waits for the window to be placed
    bool mSheetHasFrame = false;         // the window manager has put its frame around the one that is shown
    bool mGoesWithSheet = false;         // was ordered out while one was shown
};

} // namespace quoddle
