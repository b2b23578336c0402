// SPDX-License-Identifier: MIT
#include "platform/appkit/NSWindow.h"

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/WindowFrame.h"
#include "platform/appkit/WindowLayout.h"
#include "platform/foundation/NSApplicationDelegate.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/foundation/NSUserDefaults.h"

#include <QCloseEvent>
#include <QDialog>
#include <QLayout>
#include <QScreen>
#include <QWindow>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr auto kAnswerTime = std::chrono::milliseconds(400); // a window manager has answered a hide within this time

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
    setContextMenuPolicy(Qt::NoContextMenu); // the toolkit's menu for tool bars and docks is of no use to our users
    mPlacement.setSingleShot(true);
    connect(&mPlacement, &QTimer::timeout, this, &NSWindow::presentSheet);
}

NSWindow::~NSWindow() {
    while (!mSheets.empty()) {
        const Sheet sheet = std::move(mSheets.front());
        mSheets.pop_front();
        sheet.dialog->disconnect(this);
        sheet.dialog->setParent(nullptr); // the caller owns the dialog
        if (sheet.completion)
            sheet.completion(NSModalResponseAbort);
    }
    // The controller owns its view.
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
    completeLayout(*this);
    if (layout()->sizeConstraint() != QLayout::SetFixedSize)
        resize(mRestoredFrame->size().expandedTo(minimumSizeHint()));
    move(mRestoredFrame->topLeft());
}

void NSWindow::setVisible(bool visible) {
    const bool isSoonShownAgain = mSinceChange.isValid() && !mSinceChange.hasExpired(kAnswerTime.count());
    const bool isShownFirst = visible && !mSinceChange.isValid();
    if (visible && !isVisible() && isSoonShownAgain)
        QTimer::singleShot(kAnswerTime, this, &NSWindow::recover);
    if (visible != isVisible())
        mSinceChange.start();
    if (visible && !isVisible()) {
        completeLayout(*this);
        if (isShownFirst)
            fitToScreen(*this);
        if (mRestoredFrame)
            takeRestoredFrame(); // restored again, because the content has got its size only now
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
    if (standardUserDefaults().value(key) != frame) // a window that is shown and hidden often does not write each time
        standardUserDefaults().setValue(key, frame);
}

// Shows a window again that the window manager has taken away because it answered a hide after the window had been shown again.
void NSWindow::recover() {
    const bool isLost = QGuiApplication::platformName() == "xcb"_L1 && isVisible() && mSinceChange.hasExpired(kAnswerTime.count() / 2) &&
                        !isMinimized() && windowHandle() && !windowHandle()->isExposed() && !attachedSheet();
    if (!isLost)
        return;
    hide();
    appear();
}

void NSWindow::makeKeyAndOrderFront() {
    recover();
    if (isMinimized())
        showNormal();
    else
        show();
    raise();
    if (attachedSheet())
        activateSheet();
    else
        activateWindow();
}

void NSWindow::appear() {
    if (isVisible()) // true of a minimised window, too
        return;
    constexpr auto kProperty = "_q_showWithoutActivating"; // the toolkit itself only looks at the attribute when it creates a window
    setAttribute(Qt::WA_ShowWithoutActivating);
    if (windowHandle())
        windowHandle()->setProperty(kProperty, true);
    show();
    setAttribute(Qt::WA_ShowWithoutActivating, false);
    windowHandle()->setProperty(kProperty, false);
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
    if (attachedSheet()) { // the sheet must be answered first
        activateSheet();
        event->ignore();
        return;
    }
    auto* application = NSApplication::sharedApplication();
    const int questions = application ? application->terminationQuestionCount() : 0;
    const bool wasDeciding = application && application->isDecidingTermination();
    NSNotificationCenter::defaultCenter().postNotification(NSWindowWillCloseNotification, this);
    event->accept();
    if (!application)
        return;
    // Asked in the same turn, while it is clear that the closing has led to the question.
    const bool hasBegunToDecide = !wasDeciding && application->isDecidingTermination();
    application->windowDidClose(*this, hasBegunToDecide || application->terminationQuestionCount() != questions);
}

QDialog* NSWindow::attachedSheet() const {
    return !mSheets.empty() && mSheets.front().shown ? mSheets.front().dialog : nullptr;
}

void NSWindow::beginSheet(QDialog* sheet, SheetCompletion completion) {
    mSheets.push_back({sheet, sheet, std::move(completion)});
    connect(sheet, &QObject::destroyed, this, [this](const QObject* object) { sheetEnded(object, NSModalResponseAbort); });
    // Connected before the sheet is shown, because its owner may end it while it waits for other sheets.
    connect(sheet, &QDialog::finished, this, [this, sheet](int returnCode) {
        sheet->disconnect(this);
        sheet->removeEventFilter(this);
        sheet->hide();
        if (sheet->parent() == this)
            sheet->setParent(nullptr); // given back to the caller, so that neither destroys the other
        sheetEnded(sheet, returnCode);
    });
    if (mSheets.size() == 1)
        showNextSheet();
}

void NSWindow::showNextSheet() {
    if (mSheets.empty() || mSheets.front().shown)
        return;
    QDialog* dialog = mSheets.front().dialog;
    mSheets.front().shown = true;
    mSheetHasFrame = false;
    // Qt::Sheet would give a window without title bar on Wayland, which the user could not move; programs cannot place windows there.
    dialog->setParent(this, Qt::Dialog | Qt::WindowTitleHint | Qt::CustomizeWindowHint);
    dialog->setWindowModality(Qt::WindowModal);
    if (dialog->windowTitle().isEmpty())
        dialog->setWindowTitle(windowTitle());
    completeLayout(*dialog);
    if (!dialog->testAttribute(Qt::WA_Resized)) // nobody has chosen a size
        dialog->adjustSize();
    fitToScreen(*dialog);
    dialog->installEventFilter(this);
    if (isBeingPlaced()) {
        // A sheet shown on a window without a place would have to follow it while the window manager places both, and one of them would end
        // up in the wrong place.
        constexpr auto kPatience = std::chrono::milliseconds(500);
        windowHandle()->installEventFilter(this);
        mPlacement.start(kPatience);
    } else {
        presentSheet();
    }
}

bool NSWindow::isBeingPlaced() const {
    return QGuiApplication::platformName() == "xcb"_L1 && windowHandle() && !windowHandle()->isExposed() && !isMinimized();
}

void NSWindow::presentSheet() {
    mPlacement.stop();
    QDialog* dialog = attachedSheet();
    if (!dialog || dialog->isVisible())
        return;
    placeSheet();
    dialog->show();
    activateSheet(); // the sheet takes the keyboard, also on a window that has appeared without it
}

void NSWindow::activateSheet() {
    attachedSheet()->raise();
    attachedSheet()->activateWindow();
}

// Places the sheet again once the window manager has put its frame around it. Until then the frame is taken to be like that of the window.
bool NSWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == windowHandle() && event->type() == QEvent::Expose && mPlacement.isActive())
        mPlacement.start(0);
    QDialog* dialog = attachedSheet();
    const bool mayHaveFrame = event->type() == QEvent::Move || event->type() == QEvent::Resize;
    if (watched == dialog && mayHaveFrame && !mSheetHasFrame && dialog->frameGeometry() != dialog->geometry()) {
        mSheetHasFrame = true; // placed for the last time: from now on the sheet stays where the user puts it
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
    const QRect fitted = WindowFrame::whollyVisible(wanted, availableScreens());
    if (fitted.size() != size)
        dialog->resize(fitted.size().shrunkBy(frame)); // the buttons of the sheet must be within reach
    dialog->move(mSheetHasFrame ? fitted.topLeft() : fitted.topLeft() + QPoint(frame.left(), frame.top()));
}

// Keeps the sheet in its place on the window, also when the window manager places a window that has just been shown: an error in the
// script's first line can bring up a sheet before that.
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
    showNextSheet(); // does nothing when the completion has begun a sheet
    if (!attachedSheet() && std::exchange(mGoesWithSheet, false))
        hide();
}

void NSWindow::endSheet(QDialog* sheet, int returnCode) {
    if (std::any_of(mSheets.begin(), mSheets.end(), [sheet](const Sheet& each) { return each.dialog == sheet; }))
        sheet->done(returnCode);
}

} // namespace quoddle
