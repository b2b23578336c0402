// SPDX-License-Identifier: MIT
#include "droplet/DropFilesView.h"

#include "droplet/DropletWindowController.h"
#include "droplet/JudgingView.h"
#include "droplet/NSColor+Additions.h"
#include "droplet/NSImage+Additions.h"
#include "droplet/PromptView.h"
#include "platform/appkit/NSApplication.h"
#include "platform/appkit/WindowLayout.h"
#include "platform/base/FileURL.h"
#include "platform/foundation/URLResources.h"
#include "runtime/AppDelegate.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QStyle>
#include <QVBoxLayout>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kArtworkExtent = 72; // points
constexpr int kIconExtent = 96;
constexpr int kColorChangeTime = 500; // milliseconds
constexpr int kSlice = 8;             // milliseconds of judging before the window may work again
constexpr int kSilentWait = 500;      // milliseconds after a drop before the progress of the judging is shown
constexpr int kVerdictTime = 1000;    // milliseconds for which a refusal after the drop stays visible
constexpr int kSilence = 500;         // milliseconds without an event of a drag after which the drag is taken to be over
const QColor kAcceptedColor = QColor::fromRgbF(0.459f, 0.82f, 0.482f);
const QColor kRefusedColor = QColor::fromRgbF(0.894f, 0.259f, 0.282f);

/// The extent of a picture: smaller on a screen so low that pictures would take most of a window.
int fittingExtent(int usual, const QWidget& view) {
    return std::min(usual, roomOnScreen(view).height() / 6);
}

/// Paints a plate below the artwork, within its frame, because the colour of a selection can hardly be told from the verdict's behind it.
void paintPlate(QPixmap& artwork, const QColor& color) {
    QPainter painter(&artwork);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    const double extent = kArtworkExtent, frame = extent / 16;
    painter.drawRoundedRect(QRectF(frame, frame, extent - 2 * frame, extent - 2 * frame), 2.5 * frame, 2.5 * frame);
}

} // namespace

std::optional<QStringList> filenamesFrom(const QMimeData& pasteboard) {
    if (!pasteboard.hasUrls())
        return std::nullopt;
    QStringList filenames;
    const QList<QUrl> urls = pasteboard.urls();
    for (const QUrl& url : urls)
        if (const auto path = pathFromFileURL(url.toEncoded().toStdString()))
            filenames << QDir::cleanPath(QString::fromStdString(*path));
    if (filenames.isEmpty() && !urls.isEmpty())
        return std::nullopt;
    return filenames;
}

DropFilesView::DropFilesView(QWidget* parent)
    : QWidget(parent), mForthcomingView(new QLabel(this)), mIconView(new QLabel(this)), mPromptView(new PromptView(this)),
      mJudgingView(new JudgingView(this)) {
    _setupView();
}

void DropFilesView::_setupView() {
    setAcceptDrops(true);
    setAccessibleName(tr("Drop zone"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 24);
    layout->setSpacing(12);
    layout->addStretch(1);
    for (QWidget* view : {static_cast<QWidget*>(mIconView), static_cast<QWidget*>(mPromptView), static_cast<QWidget*>(mForthcomingView)}) {
        view->setAcceptDrops(false); // this view takes drops itself
        layout->addWidget(view);
    }
    mIconView->setAlignment(Qt::AlignCenter);
    mForthcomingView->setAlignment(Qt::AlignCenter);
    mPromptView->setTextAlignment(Qt::AlignCenter);
    layout->addStretch(1);
    layout->addWidget(mJudgingView);
    mIconView->setAccessibleName(tr("Picture"));
    mIconView->hide();
    mForthcomingView->setAccessibleName(tr("Drop files here"));
    setSelected(false);

    mColorChange.setDuration(kColorChangeTime);
    connect(&mColorChange, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& color) { setBackgroundColor(color.value<QColor>()); });
    mNextSlice.setSingleShot(true);
    connect(&mNextSlice, &QTimer::timeout, this, &DropFilesView::judgeNextSlice);
    mSilence.setSingleShot(true);
    mVerdictIsSeen.setSingleShot(true);
    connect(&mVerdictIsSeen, &QTimer::timeout, this, &DropFilesView::dropEndedWithoutOpening);
    connect(mJudgingView, &JudgingView::stopRequested, this, &DropFilesView::stopJudging);
    connect(&mSilence, &QTimer::timeout, this, &DropFilesView::draggingExited);
}

QString DropFilesView::promptString() const {
    return mPromptView->text();
}

void DropFilesView::setPromptString(const QString& prompt) {
    mPromptView->setText(prompt);
}

void DropFilesView::setPromptIcon(const QImage& icon) {
    mPromptIcon = icon;
    mIconView->setVisible(!icon.isNull());
    showIcon();
}

void DropFilesView::showIcon() {
    if (mPromptIcon.isNull())
        return mIconView->clear();
    mIconView->setPixmap(pixmapWithin(mPromptIcon, fittingExtent(kIconExtent, *this), devicePixelRatioF()));
}

void DropFilesView::setBackgroundColor(const QColor& color) {
    if (color == mBackgroundColor)
        return;
    mBackgroundColor = color;
    mPromptView->setTextColor(color.isValid() ? contrastingLabelColor(color) : QColor());
    repaint();
}

void DropFilesView::setSelected(bool selected) {
    mIsSelected = selected;
    QColor color = palette().color(selected ? QPalette::Highlight : QPalette::WindowText);
    if (!selected)
        color.setAlphaF(0.45f);
    const int extent = fittingExtent(kArtworkExtent, *this);
    QPixmap artwork = tintedImageWithColor(templateImageNamed(u"ForthcomingTemplate"_s, extent, devicePixelRatioF()), color,
                                           QPainter::CompositionMode_SourceIn);
    if (selected)
        paintPlate(artwork, palette().color(QPalette::Base));
    mForthcomingView->setPixmap(artwork);
}

// --- Judging

NSDragOperation DropFilesView::draggingEntered(const QMimeData& pasteboard) {
    if (isFinishingDrop())
        return NSDragOperation::none;
    AppDelegate::instance()->setDragging(true);
    setSelected(true);
    mVerdictIsSeen.stop();
    forgetJudgement();
    mJudgement.number = ++mLastJudgement;
    mNextSlice.stop();
    const auto filenames = filenamesFrom(pasteboard);
    if (!filenames)
        return NSDragOperation::none;
    mJudgement.filenames = *filenames;
    mJudgement.isUnderWay = true;
    if (AppDelegate::instance()->asksAboutFiles())
        // Judging waits for the event loop: the script may take its time, and a drag whose source has no answer yet cannot be dropped.
        mNextSlice.start(0);
    else
        judgeNextSlice();
    return isTaking() ? NSDragOperation::generic : NSDragOperation::none;
}

/// QUIRK: a file that fails the predicate takes over the verdict on the file before it, so it is refused when it comes first and passes
/// behind an accepted one; users of droplets rely on dropping mixed selections.
bool DropFilesView::isAccepted(const QString& filename, bool previous) const {
    if (mDropPredicate && !mDropPredicate->evaluateWithObject(resourceValuesOfFile(filename)))
        return previous;
    return AppDelegate::instance()->isFileAcceptable(filename);
}

void DropFilesView::forgetJudgement() {
    mJudgement = {};
    mNextSlice.stop();
    if (mIsAsking)
        AppDelegate::instance()->stopHook(mHookDepth);
}

void DropFilesView::judgeNextSlice() {
    if (mIsAsking) // the script waits for something while it judges a file of an earlier drag
        return mNextSlice.start(kSlice);
    if (!mJudgement.isUnderWay)
        return;
    const QPointer<DropFilesView> alive(this);
    const QDeadlineTimer end(kSlice);
    while (mJudgement.next < mJudgement.filenames.size()) {
        const int number = mJudgement.number;
        mIsAsking = true;
        mHookDepth = AppDelegate::instance()->hookDepth();
        const bool accepted = isAccepted(mJudgement.filenames.at(mJudgement.next), mJudgement.isAccepted);
        if (!alive) // a script error has ended the applet
            return;
        mIsAsking = false;
        if (!mJudgement.isUnderWay || mJudgement.number != number) // this drag has ended meanwhile
            return;
        mJudgement.isAccepted = accepted;
        ++mJudgement.next;
        if (mJudgement.isDropped && mJudgement.sinceDrop.elapsed() >= kSilentWait)
            mJudgingView->showProgress(mJudgement.next, mJudgement.filenames.size());
        if (!accepted)
            break;
        if (end.hasExpired() && mJudgement.next < mJudgement.filenames.size())
            return mNextSlice.start(0);
    }
    judged();
}

void DropFilesView::judged() {
    mJudgement.isUnderWay = false;
    showVerdict(mJudgement.isAccepted ? kAcceptedColor : kRefusedColor);
    if (!mJudgement.isDropped)
        return;
    finishingDropDidChange();
    if (mJudgement.isAccepted) {
        open(std::exchange(mJudgement.filenames, {}));
        draggingEnded();
    } else {
        mJudgingView->hide();
        setSelected(false);
        mVerdictIsSeen.start(kVerdictTime);
    }
}

/// Ends the judging of files that were dropped; they are not opened.
void DropFilesView::stopJudging() {
    forgetJudgement();
    finishingDropDidChange();
    dropEndedWithoutOpening();
}

void DropFilesView::dropEndedWithoutOpening() {
    draggingEnded();
    showLastPane();
}

void DropFilesView::finishingDropDidChange() {
    if (DropletWindowController* controller = DropletWindowController::current())
        controller->setFinishingDrop(isFinishingDrop());
}

/// Goes back to the search when a drag has led here from there. Does nothing while another pane is shown.
void DropFilesView::showLastPane() {
    if (const auto controller = AppDelegate::instance()->mainWindowController(); controller && isVisible())
        controller->showLastViewController();
}

void DropFilesView::showVerdict(const QColor& color) {
    mColorChange.stop();
    setBackgroundColor(Qt::white);
    mColorChange.setStartValue(QColor(Qt::white));
    mColorChange.setEndValue(color);
    if (style()->styleHint(QStyle::SH_Widget_Animation_Duration) == 0)
        setBackgroundColor(color);
    else
        mColorChange.start();
}

// --- The end of a drag

void DropFilesView::draggingExited() {
    if (isFinishingDrop())
        return;
    forgetJudgement();
    draggingEnded();
    showLastPane();
}

bool DropFilesView::performDragOperation(const QMimeData& pasteboard) {
    AppDelegate::instance()->setDragging(false);
    if (mJudgement.isUnderWay) {
        mJudgement.isDropped = true;
        mJudgement.sinceDrop.start();
        finishingDropDidChange();
        return true;
    }
    open(filenamesFrom(pasteboard).value_or(QStringList()));
    return true;
}

void DropFilesView::open(const QStringList& filenames) {
    NSApplication::sharedApplication()->openFiles(filenames);
}

void DropFilesView::draggingEnded() {
    if (AppDelegate* delegate = AppDelegate::instance()) // the view may be destroyed after the delegate
        delegate->setDragging(false);
    if (mJudgement.isUnderWay) // dropped before the verdict, which will end the drag
        return;
    mVerdictIsSeen.stop();
    mColorChange.stop();
    mJudgingView->hide();
    setSelected(false);
    setBackgroundColor({});
}

// --- The toolkit's events

void DropFilesView::dragEnterEvent(QDragEnterEvent* event) {
    mSilence.stop();
    const NSDragOperation operation = draggingEntered(*event->mimeData());
    event->setDropAction(operation == NSDragOperation::none ? Qt::IgnoreAction : Qt::CopyAction);
    event->accept(); // also for a refused drag, because otherwise no leave event would come
}

void DropFilesView::dragMoveEvent(QDragMoveEvent* event) {
    mSilence.stop();
    if (!mIsSelected) // the toolkit took this drag for one that ended without a leave event
        draggingEntered(*event->mimeData());
    event->setDropAction(isTaking() ? Qt::CopyAction : Qt::IgnoreAction);
    event->setAccepted(isTaking());
}

void DropFilesView::dragLeaveEvent(QDragLeaveEvent*) {
    mSilence.stop();
    if (isVisible())
        draggingExited();
}

void DropFilesView::dropEvent(QDropEvent* event) {
    mSilence.stop();
    event->setDropAction(isTaking() ? Qt::CopyAction : Qt::IgnoreAction);
    event->setAccepted(isTaking());
    if (isTaking())
        performDragOperation(*event->mimeData());
    draggingEnded();
}

/// Notices drags that end without a leave event, because the program that they came from has gone. During a drag no pointer events come;
/// when one comes and the drag stays silent, the drag is over.
void DropFilesView::enterEvent(QEnterEvent* event) {
    QWidget::enterEvent(event);
    if (mIsSelected && !isFinishingDrop())
        mSilence.start(kSilence);
}

/// Ends a drag when a run begins and its progress takes the place of this pane. The drag is not over this pane any more, so its end must
/// not bring the pane back.
void DropFilesView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    mSilence.stop();
    if (isFinishingDrop())
        return;
    forgetJudgement();
    draggingEnded();
}

void DropFilesView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.fillRect(event->rect(), mBackgroundColor.isValid() ? mBackgroundColor : palette().color(QPalette::Window));
}

void DropFilesView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        setSelected(mIsSelected);
}

} // namespace quoddle
