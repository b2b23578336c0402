// SPDX-License-Identifier: MIT
#include "platform/appkit/NSWindow.h"

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/WindowFrame.h"
#include "platform/foundation/NSApplicationDelegate.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/foundation/NSUserDefaults.h"

#include <QCloseEvent>
#include <QDialog>
#include <QLayout>
#include <QScreen>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

QList<QRect> availableScreens() {
    QList<QRect> areas;
    for (const QScreen* screen : QGuiApplication::screens())
        areas << screen->availableGeometry();
    return areas;
}

QMargins marginsBetween(const QRect& outer, const QRect& inner) {
    return {inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(), outer.bottom() - inner.bottom()};
}

} // namespace

NSWindow::NSWindow(QWidget* parent) : QMainWindow(parent) {
    setContextMenuPolicy(Qt::NoContextMenu); // the one for tool bars and docks says nothing to our users
}

NSWindow::~NSWindow() {
    while (!mSheets.empty()) {
        const Sheet sheet = std::move(mSheets.front());
        mSheets.pop_front();
        sheet.dialog->disconnect(this);
        sheet.dialog->setParent(nullptr); // the caller's, not ours to delete
        if (sheet.completion)
            sheet.completion(NSModalResponseAbort);
    }
    // The view is its controller's.
    if (mContent && centralWidget() == mContent->view())
        takeCentralWidget()->setParent(nullptr);
}

void NSWindow::setContentViewController(NSViewController* controller) {
    mContent = controller;
    setCentralWidget(controller->view());
}

void NSWindow::setFrameAutosaveName(const QString& name) {
    mFrameAutosaveName = name;
    const QString stored = standardUserDefaults().value(WindowFrame::defaultsKey(name)).toString();
    const auto frame = WindowFrame::fromString(stored);
    if (!frame)
        return;
    mRestoredFrame = WindowFrame::constrained(*frame, availableScreens());
    takeRestoredFrame();
}

void NSWindow::takeRestoredFrame() {
    if (layout()->sizeConstraint() == QLayout::SetFixedSize) {
        if (centralWidget())
            centralWidget()->updateGeometry(); // what was put in since has only been noted to be told later
        layout()->invalidate();
        layout()->activate();
    } else {
        resize(mRestoredFrame->size().expandedTo(minimumSizeHint()));
    }
    move(mRestoredFrame->topLeft());
}

void NSWindow::setVisible(bool visible) {
    if (visible && mRestoredFrame) {
        // Once more, now that the content is complete: a layout that resizes a window while it appears makes the window system's frame
        // count twice, and the window would creep a title bar's height up with every launch.
        takeRestoredFrame();
        mRestoredFrame.reset();
    }
    if (visible)
        mGoesWithSheet = false;
    QMainWindow::setVisible(visible);
}

void NSWindow::saveFrame() {
    if (mFrameAutosaveName.isEmpty() || isMinimized() || isMaximized() || isFullScreen())
        return;
    const QString key = WindowFrame::defaultsKey(mFrameAutosaveName);
    const QString frame = WindowFrame::toString({pos(), size()});
    if (standardUserDefaults().value(key) != frame) // a window that comes and goes does not write each time
        standardUserDefaults().setValue(key, frame);
}

void NSWindow::makeKeyAndOrderFront() {
    if (isMinimized())
        showNormal();
    else
        show();
    raise();
    activateWindow();
}

void NSWindow::orderOut() {
    mGoesWithSheet = attachedSheet() != nullptr;
    if (!mGoesWithSheet)
        hide();
}

void NSWindow::hideEvent(QHideEvent* event) {
    if (!event->spontaneous())
        saveFrame();
    QMainWindow::hideEvent(event);
}

void NSWindow::closeEvent(QCloseEvent* event) {
    if (attachedSheet()) { // answered first
        attachedSheet()->raise();
        attachedSheet()->activateWindow();
        event->ignore();
        return;
    }
    auto* application = NSApplication::sharedApplication();
    const int questions = application ? application->terminationQuestionCount() : 0;
    NSNotificationCenter::defaultCenter().postNotification(NSWindowWillCloseNotification, this);
    event->accept();
    if (!application)
        return;
    // In the same turn: a delegate knows then what has led to the question.
    application->windowDidClose(*this, application->terminationQuestionCount() != questions);
}

QDialog* NSWindow::attachedSheet() const {
    return !mSheets.empty() && mSheets.front().shown ? mSheets.front().dialog : nullptr;
}

void NSWindow::beginSheet(QDialog* sheet, SheetCompletion completion) {
    mSheets.push_back({sheet, sheet, std::move(completion)});
    connect(sheet, &QObject::destroyed, this, [this](const QObject* object) { sheetEnded(object, NSModalResponseAbort); });
    if (mSheets.size() == 1)
        showNextSheet();
}

void NSWindow::showNextSheet() {
    if (mSheets.empty() || mSheets.front().shown)
        return;
    QDialog* dialog = mSheets.front().dialog;
    mSheets.front().shown = true;
    mSheetHasFrame = false;
    // Not Qt::Sheet: on Wayland such a window would have no title bar to be moved by, and programs cannot place windows there.
    dialog->setParent(this, Qt::Dialog | Qt::WindowTitleHint | Qt::CustomizeWindowHint);
    dialog->setWindowModality(Qt::WindowModal);
    if (dialog->windowTitle().isEmpty())
        dialog->setWindowTitle(windowTitle());
    if (!dialog->testAttribute(Qt::WA_Resized)) // it has no size of its own choice
        dialog->adjustSize();
    placeSheet();
    connect(dialog, &QDialog::finished, this, [this, dialog](int returnCode) {
        dialog->disconnect(this);
        dialog->removeEventFilter(this);
        dialog->hide();
        dialog->setParent(nullptr); // it is the caller's again, whichever of the two goes first
        sheetEnded(dialog, returnCode);
    });
    dialog->installEventFilter(this);
    dialog->show();
}

// The window manager's frame around a sheet is known once it is there; until then it is taken to be like that of the window.
bool NSWindow::eventFilter(QObject* watched, QEvent* event) {
    QDialog* dialog = attachedSheet();
    const bool mayHaveFrame = event->type() == QEvent::Move || event->type() == QEvent::Resize;
    if (watched == dialog && mayHaveFrame && !mSheetHasFrame && dialog->frameGeometry() != dialog->geometry()) {
        mSheetHasFrame = true; // where the user puts it from then on, it stays
        placeSheet();
    }
    return QMainWindow::eventFilter(watched, event);
}

void NSWindow::placeSheet() {
    QDialog* dialog = attachedSheet();
    if (!dialog)
        return;
    const QRect content = centralWidget() ? QRect(centralWidget()->mapToGlobal(QPoint()), centralWidget()->size()) : geometry();
    const QMargins frame =
        mSheetHasFrame ? marginsBetween(dialog->frameGeometry(), dialog->geometry()) : marginsBetween(frameGeometry(), geometry());
    const QSize size = dialog->size().grownBy(frame);
    const QRect wanted(QPoint(content.x() + (content.width() - size.width()) / 2, content.y()), size);
    const QPoint corner = WindowFrame::whollyVisible(wanted, availableScreens()).topLeft();
    dialog->move(mSheetHasFrame ? corner : corner + QPoint(frame.left(), frame.top()));
}

// A sheet hangs on its window. That holds for a window that has just been shown, too: where it stands is only known, by such an event, when
// the window manager has placed it, and an error in the script's first line is quicker than that.
void NSWindow::moveEvent(QMoveEvent* event) {
    QMainWindow::moveEvent(event);
    placeSheet();
}

void NSWindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    placeSheet();
}

void NSWindow::sheetEnded(const QObject* object, int returnCode) {
    auto ended = std::find_if(mSheets.begin(), mSheets.end(), [object](const Sheet& each) { return each.object == object; });
    if (ended == mSheets.end())
        return;
    const SheetCompletion completion = std::move(ended->completion);
    mSheets.erase(ended);
    if (completion)
        completion(returnCode);
    showNextSheet(); // unless the completion has begun one
    if (!attachedSheet() && std::exchange(mGoesWithSheet, false))
        hide();
}

void NSWindow::endSheet(QDialog* sheet, int returnCode) {
    if (sheet && attachedSheet() == sheet)
        sheet->done(returnCode);
    else
        sheetEnded(sheet, returnCode);
}

} // namespace quoddle
