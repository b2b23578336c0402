// SPDX-License-Identifier: MIT
#include "platform/preview/QLPreviewPanel.h"

#include "platform/appkit/Appearance.h"
#include "platform/appkit/DrawnIcon.h"
#include "platform/appkit/ElidedLabel.h"
#include "platform/appkit/KeyRepetition.h"
#include "platform/appkit/NSApplication.h"
#include "platform/appkit/NSPanel.h"
#include "platform/appkit/WindowLayout.h"
#include "platform/foundation/FileTypes.h"
#include "platform/preview/PreviewView.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QHash>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QToolButton>
#include <QWindow>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kSize(680, 540); // points; the first size
constexpr QSize kSmallest(320, 240);
constexpr int kEdge = 6;            // points; the width of the border that resizes the panel
constexpr int kMostSearched = 1000; // items among which reloadData() looks for the current one
constexpr int kPatience = 150;      // milliseconds for which the last file stays visible while the next one is read
constexpr QSize kPage(760, 1075);   // points; the pages' size, with room for a larger panel

QLPreviewPanel* sharedPanel = nullptr;

QHash<const QObject*, QLPreviewPanelController*>& controllers() {
    static QHash<const QObject*, QLPreviewPanelController*> all;
    return all;
}

/// Draws the close button's cross in the text colour; the toolkit's own icon is always black.
void paintCross(QPainter& painter) {
    painter.setPen(QPen(QApplication::palette().color(QPalette::ButtonText), 6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(16, 16, 48, 48);
    painter.drawLine(48, 16, 16, 48);
}

QToolButton* makeToolButton(const QString& name, const QIcon& icon, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setAccessibleName(name);
    button->setToolTip(name);
    button->setIcon(icon);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

} // namespace

QLPreviewPanelController::~QLPreviewPanelController() {
    QLPreviewPanel::forget(this);
}

// --- The shared panel

QLPreviewPanel& QLPreviewPanel::sharedPreviewPanel() {
    if (!sharedPanel) {
        sharedPanel = new QLPreviewPanel;
        qAddPostRoutine([] { delete sharedPanel; });
    }
    return *sharedPanel;
}

bool QLPreviewPanel::sharedPreviewPanelExists() {
    return sharedPanel != nullptr;
}

QLPreviewPanel::QLPreviewPanel() : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint) {
    setAccessibleName(tr("Preview"));
    setAttribute(Qt::WA_QuitOnClose, false);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setMinimumSize(kSmallest);
    buildControls();
    connectLoader();
    watchKeyRepetition();
    focusChanged();
    connect(qApp, &QGuiApplication::focusWindowChanged, this, &QLPreviewPanel::focusChanged);
    connect(qApp, &QApplication::focusChanged, this, &QLPreviewPanel::focusChanged); // focus changes within a window
}

QLPreviewPanel::~QLPreviewPanel() {
    sharedPanel = nullptr;
}

void QLPreviewPanel::buildControls() {
    auto* closeButton = makeToolButton(tr("Close"), makeDrawnIcon(paintCross), this);
    const bool isRightToLeft = layoutDirection() == Qt::RightToLeft;
    const QIcon left = style()->standardIcon(QStyle::SP_ArrowLeft, nullptr, this);
    const QIcon right = style()->standardIcon(QStyle::SP_ArrowRight, nullptr, this);
    mPrevious = makeToolButton(tr("Previous"), isRightToLeft ? right : left, this);
    mNext = makeToolButton(tr("Next"), isRightToLeft ? left : right, this);
    mTitle = new ElidedLabel(this);
    mTitle->setAlignment(Qt::AlignCenter);
    mTitle->setElideMode(Qt::ElideMiddle);
    mTitle->setAttribute(Qt::WA_TransparentForMouseEvents); // presses move the panel
    mOpen = new QPushButton(tr("Open"), this);
    mOpen->setAutoDefault(false);
    mOpen->setFocusPolicy(Qt::TabFocus);
    mView = new PreviewView(this);
    mNotice = new QLabel(this);
    mNotice->setTextFormat(Qt::PlainText);
    mNotice->setAlignment(Qt::AlignCenter);
    mNotice->hide();

    auto* head = new QHBoxLayout;
    for (QWidget* control : std::initializer_list<QWidget*>{closeButton, mPrevious, mNext})
        head->addWidget(control);
    head->addWidget(mTitle, 1);
    head->addWidget(mOpen);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kEdge, kEdge, kEdge, kEdge);
    column->addLayout(head);
    column->addWidget(mView, 1);
    column->addWidget(mNotice);

    connect(closeButton, &QToolButton::clicked, this, &QLPreviewPanel::orderOut);
    connect(mPrevious, &QToolButton::clicked, this, [this] { setCurrentPreviewItemIndex(mIndex - 1); });
    connect(mNext, &QToolButton::clicked, this, [this] { setCurrentPreviewItemIndex(mIndex + 1); });
    connect(mOpen, &QPushButton::clicked, this, &QLPreviewPanel::openItem);
    for (QWidget* view : mView->findChildren<QWidget*>())
        view->installEventFilter(this);
}

void QLPreviewPanel::connectLoader() {
    connect(&mLoader, &PreviewLoader::contentsCame, this, &QLPreviewPanel::showContents);
    connect(&mLoader, &PreviewLoader::pictureCame, this, [this](const QImage& picture) {
        mPatience.stop();
        mHasPictures = true;
        mView->addPicture(picture, mContents.kind == PreviewKind::Pages);
    });
    connect(&mLoader, &PreviewLoader::picturesEnded, this, &QLPreviewPanel::picturesEnded);
    mPatience.setSingleShot(true);
    mPatience.setInterval(kPatience);
    mPatience.callOnTimeout(this, [this] {
        FileFacts facts = mContents.facts;
        facts.path = mPath;
        facts.name = displayNameOfFile(mPath);
        mView->showCard(facts);
        updateOpenButton();
    });
    connect(&mWatch, &FileWatch::changed, this, [this] {
        if (mIsReading)
            mIsOutdated = true;
        else
            refreshCurrentPreviewItem();
    });
}

// --- Control

void QLPreviewPanel::registerController(QWidget& responder, QLPreviewPanelController& controller) {
    controllers().insert(&responder, &controller);
    QObject::connect(&responder, &QObject::destroyed, [](QObject* gone) {
        controllers().remove(gone);
        if (sharedPanel && sharedPanel->mIsOrderedIn) // asked later, because the controller may also be about to be destroyed
            QMetaObject::invokeMethod(sharedPanel, &QLPreviewPanel::updateController, Qt::QueuedConnection);
    });
}

void QLPreviewPanel::forget(QLPreviewPanelController* controller) {
    controllers().removeIf([controller](const auto& row) { return row.value() == controller; });
    if (!sharedPanel || sharedPanel->mController != controller)
        return;
    sharedPanel->mController = nullptr;
    sharedPanel->mDelegate = nullptr;
    sharedPanel->setDataSource(nullptr);
}

void QLPreviewPanel::focusChanged() {
    QWidget* active = QApplication::activeWindow();
    if (!active || active == this)
        return;
    mLastWindow = active;
    if (mIsOrderedIn)
        updateController();
}

void QLPreviewPanel::updateController() {
    QLPreviewPanelController* found = nullptr;
    if (mLastWindow)
        for (QWidget* at = mLastWindow->focusWidget() ? mLastWindow->focusWidget() : mLastWindow.data(); at && !found;
             at = at->parentWidget())
            if (auto* controller = controllers().value(at); controller && controller->acceptsPreviewPanelControl(*this))
                found = controller;
    const bool staysWithController = !found && mController && controllers().values().contains(mController);
    if (!staysWithController)
        takeControl(found);
}

void QLPreviewPanel::takeControl(QLPreviewPanelController* controller) {
    if (mController == controller)
        return;
    if (mController)
        mController->endPreviewPanelControl(*this);
    mController = controller;
    mDelegate = nullptr;
    mDataSource = nullptr;
    if (mController)
        mController->beginPreviewPanelControl(*this);
    reloadData();
}

// --- Items

void QLPreviewPanel::setDataSource(QLPreviewPanelDataSource* dataSource) {
    mDataSource = dataSource;
    reloadData();
}

void QLPreviewPanel::reloadData() {
    mItems = mDataSource && mController ? std::max(mDataSource->numberOfPreviewItemsInPreviewPanel(*this), 0) : 0;
    // The current item stays current when its index has changed.
    int index = mIndex;
    for (int i = 0; mItem && i < std::min(mItems, kMostSearched); ++i)
        if (const auto item = mDataSource->previewPanelPreviewItemAtIndex(*this, i);
            item && item->previewItemURL() == mItem->previewItemURL()) {
            index = i;
            break;
        }
    setCurrentPreviewItemIndex(index);
}

void QLPreviewPanel::setCurrentPreviewItemIndex(int index) {
    mIndex = std::clamp(index, 0, std::max(mItems - 1, 0));
    mItem = mItems > 0 ? mDataSource->previewPanelPreviewItemAtIndex(*this, mIndex) : nullptr;
    const QUrl url = mItem ? mItem->previewItemURL() : QUrl();
    showFile(url.isLocalFile() && mIsOrderedIn ? url.toLocalFile() : QString());
    updateControls();
}

void QLPreviewPanel::refreshCurrentPreviewItem() {
    if (!mPath.isEmpty())
        read();
}

void QLPreviewPanel::updateControls() {
    const QString given = mItem ? mItem->previewItemTitle() : QString();
    const QString title = mPath.isEmpty() ? tr("Preview") : drawableName(given.isEmpty() ? displayNameOfFile(mPath) : given);
    setWindowTitle(title);
    mTitle->setText(mItems > 1 ? tr("%1 (%2 of %3)").arg(title).arg(mIndex + 1).arg(mItems) : title);
    for (auto [button, isPossible] : {std::pair(mPrevious, mIndex > 0), std::pair(mNext, mIndex < mItems - 1)}) {
        button->setVisible(mItems > 1);
        button->setEnabled(isPossible);
    }
}

void QLPreviewPanel::updateOpenButton() {
    constexpr int kWidestName = 140; // points
    const QString& program = mContents.facts.opener;
    const QString label = tr("Open with “%1”");
    const QString shown = fontMetrics().elidedText(program, Qt::ElideMiddle, kWidestName);
    mOpen->setText(program.isEmpty() ? tr("Open") : label.arg(QString(shown).replace(u'&', u"&&"_s)));
    mOpen->setAccessibleName(program.isEmpty() ? tr("Open") : label.arg(program));
    mOpen->setToolTip(shown == program ? QString() : toolTipText(label.arg(program)));
}

void QLPreviewPanel::showFile(const QString& path) {
    if (!path.isEmpty() && path == mPath)
        return;
    mPath = path;
    mContents = {};
    mWatch.watch(mPath);
    mNotice->hide();
    mOpen->setEnabled(!mPath.isEmpty());
    if (mPath.isEmpty()) {
        mLoader.cancel();
        mIsReading = false;
        mPatience.stop();
        mView->showMessage(mIsOrderedIn ? tr("Nothing is selected.") : QString());
        updateOpenButton();
        return;
    }
    mPatience.start();
    read();
}

void QLPreviewPanel::read() {
    mIsReading = true;
    mIsOutdated = false;
    const double ratio = devicePixelRatioF();
    mLoader.load(mPath, screen()->size() * ratio, kPage * ratio);
}

void QLPreviewPanel::finish() {
    mPatience.stop();
    mIsReading = false;
    Q_EMIT previewFinished();
    if (mIsOutdated && !mIsReading)
        refreshCurrentPreviewItem();
}

void QLPreviewPanel::showContents(const PreviewContents& contents) {
    mContents = contents;
    mHasPictures = false;
    mView->showContents(contents);
    mNotice->hide();
    mOpen->setEnabled(contents.facts.exists());
    updateOpenButton();
    if (contents.kind == PreviewKind::Picture || contents.kind == PreviewKind::Pages)
        return;
    mNotice->setText(tr("Only the beginning of the text is shown."));
    mNotice->setVisible(contents.isCut);
    finish();
}

void QLPreviewPanel::picturesEnded(PictureStream::End end) {
    const bool isPages = mContents.kind == PreviewKind::Pages;
    if (!mHasPictures) {
        const QString reason = end == PictureStream::End::tooLarge ? tr("It is too large to be shown here.")
                               : isPages                           ? tr("Its pages cannot be shown.")
                                                                   : tr("The picture cannot be shown.");
        mView->showCard(mContents.facts, reason);
    } else if (end != PictureStream::End::whole) {
        mNotice->setText(isPages ? tr("Only the first pages are shown.") : QString());
        mNotice->setVisible(isPages);
    }
    finish();
}

void QLPreviewPanel::openItem() {
    if (mPath.isEmpty())
        return;
    const QUrl url = QUrl::fromLocalFile(mPath);
    orderOut();
    QDesktopServices::openUrl(url);
}

// --- The window

QRect QLPreviewPanel::sourceFrame() {
    return mDelegate && mItem ? mDelegate->previewPanelSourceFrameOnScreenForPreviewItem(*this, *mItem) : QRect();
}

void QLPreviewPanel::place() {
    const QScreen* on = mLastWindow ? mLastWindow->screen() : screen();
    const bool wasPlaced = std::exchange(mWasPlaced, true);
    if (wasPlaced && on == screen())
        return; // a placed panel stays where the user has moved it
    const QRect room = on->availableGeometry();
    QRect frame({}, (wasPlaced ? size() : kSize).boundedTo(room.size() * 9 / 10));
    frame.moveCenter(room.center());
    setGeometry(frame);
}

void QLPreviewPanel::makeKeyAndOrderFront() {
    focusChanged();
    if (mIsOrderedIn) {
        updateController();
        if (!mZoom.isRunning())
            present();
        return;
    }
    mIsOrderedIn = true;
    updateController();
    place();
    completeLayout(*this);
    const QRect source = sourceFrame();
    mZoom.cancel();
    if (source.isEmpty() || !PanelZoom::isPossible())
        present();
    else
        mZoom.run(grab(), source, geometry(), [this] { present(); });
}

void QLPreviewPanel::present() {
    winId();
    if (mLastWindow && mLastWindow->windowHandle())
        windowHandle()->setTransientParent(mLastWindow->windowHandle()); // keeps the panel in front of that window
    show();
    raise();
    activateWindow();
    setFocus();
}

void QLPreviewPanel::orderOut() {
    if (!std::exchange(mIsOrderedIn, false))
        return;
    mZoom.cancel();
    const QRect source = sourceFrame();
    if (QWidget::isVisible() && !source.isEmpty() && PanelZoom::isPossible())
        mZoom.run(grab(), geometry(), source, {});
    const bool hadKeyboard = isActiveWindow();
    hide();
    takeControl(nullptr);
    setCurrentPreviewItemIndex(0); // releases the file
    if (hadKeyboard && mLastWindow)
        mLastWindow->activateWindow();
}

void QLPreviewPanel::closeEvent(QCloseEvent* event) {
    orderOut();
    QWidget::closeEvent(event);
}

void QLPreviewPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(Appearance::secondaryLabelColor(palette()));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

// --- Keys and pointer

bool QLPreviewPanel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() != Qt::Key_Space || key->modifiers() != Qt::NoModifier) // text views would use the space key to page
        return QWidget::eventFilter(watched, event);
    keyPressEvent(key);
    return true;
}

void QLPreviewPanel::keyPressEvent(QKeyEvent* event) {
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const bool closes = isPlain && (event->key() == Qt::Key_Escape || event->key() == Qt::Key_Space);
    if (closes && isKeyRepetition(*event)) // repetitions of the key that has opened the panel do not close it
        return;
    if (isPlain && event->key() == Qt::Key_Escape)
        return orderOut();
    if (isPlain && mItems > 1 && (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right)) {
        const bool isForward = (event->key() == Qt::Key_Right) == (layoutDirection() == Qt::LeftToRight);
        return setCurrentPreviewItemIndex(mIndex + (isForward ? 1 : -1));
    }
    if (mDelegate && mDelegate->previewPanelHandleEvent(*this, *event))
        return;
    if (event->keyCombination() == (Qt::CTRL | Qt::Key_W)) // the panel has no menus, so it handles their shortcuts itself
        return orderOut();
    if (event->keyCombination() == (Qt::CTRL | Qt::Key_Q))
        return NSApplication::sharedApplication()->terminate();
    if (closes)
        return orderOut();
    if (!isPlain || !mView->scroll(event->key()))
        QWidget::keyPressEvent(event);
}

void QLPreviewPanel::keyReleaseEvent(QKeyEvent* event) {
    if (!mDelegate || !mDelegate->previewPanelHandleEvent(*this, *event))
        QWidget::keyReleaseEvent(event);
}

Qt::Edges QLPreviewPanel::edgesAt(const QPoint& place) const {
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, place.x() < kEdge);
    edges.setFlag(Qt::RightEdge, place.x() >= width() - kEdge);
    edges.setFlag(Qt::TopEdge, place.y() < kEdge);
    edges.setFlag(Qt::BottomEdge, place.y() >= height() - kEdge);
    return edges;
}

void QLPreviewPanel::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    mIsPressed = true;
    // The move begins after events that are already queued. When the button has been released by then, the window manager would never see
    // the release.
    QTimer::singleShot(0, this, [this, edges = edgesAt(event->position().toPoint())] {
        if (!mIsPressed)
            return;
        if (edges)
            windowHandle()->startSystemResize(edges);
        else
            windowHandle()->startSystemMove();
    });
}

void QLPreviewPanel::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        mIsPressed = false;
}

void QLPreviewPanel::mouseMoveEvent(QMouseEvent* event) {
    const Qt::Edges edges = edgesAt(event->position().toPoint());
    const bool isHorizontal = edges & (Qt::LeftEdge | Qt::RightEdge);
    const bool isVertical = edges & (Qt::TopEdge | Qt::BottomEdge);
    const bool isFalling = edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge);
    if (isHorizontal && isVertical)
        setCursor(isFalling ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor);
    else if (isHorizontal || isVertical)
        setCursor(isHorizontal ? Qt::SizeHorCursor : Qt::SizeVerCursor);
    else
        unsetCursor();
}

} // namespace quoddle
