// SPDX-License-Identifier: MIT
#include "droplet/SpotlightViewController.h"

#include "droplet/NSImage+Additions.h"
#include "droplet/SearchTerms.h"
#include "droplet/SpotlightResultsCell.h"
#include "droplet/SpotlightResultsController.h"
#include "platform/appkit/NSApplication.h"
#include "platform/foundation/NSLog.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/preview/QLPreviewPanel.h"
#include "runtime/AppDelegate.h"
#include "ui_SpotlightViewController.h"

#include <algorithm>

#include <QDeadlineTimer>
#include <QKeyEvent>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr double kBatchingInterval = 0.25; // seconds
constexpr qsizetype kShortestText = 2;     // UTF-16 units
constexpr double kSlice = 8;               // milliseconds of judging and showing before the window may work again
constexpr double kShortestJudging = 2;     // milliseconds of a slice that judging has at least
constexpr double kCostOfWaiting = 10;      // the time between two updates of the list, as a multiple of what an update takes
constexpr int kJudgingPatience = 100;      // milliseconds; when judging takes longer, the hits found so far are shown

constexpr int kIconExtent = 48; // points

/// Logs each result when tracing is on.
void trace(const NSNotification& notification, const QString& format) {
    if (!NSLogIsTracing())
        return;
    const auto items = notification.userInfo.value(NSMetadataQueryUpdateAddedItemsKey).value<QList<NSMetadataItem>>();
    for (const NSMetadataItem& item : items)
        NSLogTrace(format, {item.valueForAttribute(NSMetadataItemFSNameKey), item.valueForAttribute(NSMetadataItemContentTypeKey),
                            item.valueForAttribute(NSMetadataItemContentTypeTreeKey),
                            item.valueForAttribute(NSMetadataQueryResultContentRelevanceAttribute).toDouble()});
}

} // namespace

SpotlightViewController::SpotlightViewController(QObject* parent)
    : NSViewController(parent), mUi(std::make_unique<Ui::SpotlightViewController>()),
      mResultsController(std::make_unique<SpotlightResultsController>()) {}

SpotlightViewController::~SpotlightViewController() {
    NSNotificationCenter::defaultCenter().removeObserver(this);
}

QWidget* SpotlightViewController::loadView() {
    auto* widget = new QWidget;
    mUi->setupUi(widget);
    return widget;
}

SpotlightResultsView* SpotlightViewController::resultsView() const {
    return mUi->resultsView;
}

void SpotlightViewController::viewDidLoad() {
    AppDelegate* delegate = AppDelegate::instance();
    mUi->promptView->setText(delegate->appletSearchPrompt());
    const QImage image = delegate->appletSearchImage();
    mUi->iconView->setVisible(!image.isNull());
    if (!image.isNull())
        mUi->iconView->setPixmap(pixmapWithin(image, kIconExtent, mUi->iconView->devicePixelRatioF()));
    auto* cell = new SpotlightResultsCell(mUi->resultsView);
    mUi->resultsView->setItemDelegate(cell);
    mUi->resultsView->setModel(mResultsController.get());
    mUi->resultsView->setController(this);
    connect(cell, &SpotlightResultsCell::iconChanged, mUi->resultsView->viewport(), qOverload<>(&QWidget::update));
    QSizePolicy keepingRoom = mUi->progressView->sizePolicy();
    keepingRoom.setRetainSizeWhenHidden(true);
    mUi->progressView->setSizePolicy(keepingRoom);
    mUi->progressView->setIndeterminate(true);
    mUi->progressView->hide();
    mUi->noteView->hide();
    connectControls();

    mNameQuery = std::make_unique<NSMetadataQuery>();
    mNameQuery->setSearchScopes({NSMetadataQueryLocalComputerScope});
    mNameQuery->setNotificationBatchingInterval(kBatchingInterval);
    observeQuery();
    mNextSlice.setSingleShot(true);
    connect(&mNextSlice, &QTimer::timeout, this, &SpotlightViewController::mergeResults);
    mShown.start();
    mJudgesLong.setSingleShot(true);
    connect(&mJudgesLong, &QTimer::timeout, this, &SpotlightViewController::showUsable);
    updateButtons();
}

void SpotlightViewController::connectControls() {
    connect(mUi->searchView, &QLineEdit::textChanged, this, &SpotlightViewController::_updateSearchPredicate);
    mUi->searchView->installEventFilter(this);
    mUi->searchView->setAcceptDrops(false); // the field would take the address of a file for text
    mUi->resultsView->installEventFilter(this);
    connect(mUi->resultsView, &QListView::doubleClicked, this, &SpotlightViewController::doOK);
    connect(mUi->openButton, &QPushButton::clicked, this, &SpotlightViewController::doOK);
    connect(mUi->quitButton, &QPushButton::clicked, this, &SpotlightViewController::doQuit);
    connect(mUi->resultsView->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!mSelectsByItself)
            mSelectionChangedByUser = true;
        mSelected.reset();
        updateButtons();
        if (mPreviewPanel)
            mPreviewPanel->reloadData();
    });
    const auto forgetSelected = [this] { mSelected.reset(); }; // called when the rows of the selection may have changed
    connect(mResultsController.get(), &QAbstractItemModel::layoutChanged, this, forgetSelected);
    connect(mResultsController.get(), &QAbstractItemModel::rowsRemoved, this, forgetSelected);
    connect(mResultsController.get(), &QAbstractItemModel::modelReset, this, forgetSelected);
    connect(mUi->quickLookButton, &QPushButton::clicked, this, &SpotlightViewController::doQuickLook);
    QLPreviewPanel::registerController(*view(), *this);
}

void SpotlightViewController::observeQuery() {
    const auto observe = [this](const QString& name, void (SpotlightViewController::*handler)(const NSNotification&)) {
        NSNotificationCenter::defaultCenter().addObserver(
            this, [this, handler](const NSNotification& notification) { (this->*handler)(notification); }, name, mNameQuery.get());
    };
    observe(NSMetadataQueryDidUpdateNotification, &SpotlightViewController::_applicationsQueryUpdated);
    observe(NSMetadataQueryDidStartGatheringNotification, &SpotlightViewController::_applicationsQueryGatheringStart);
    observe(NSMetadataQueryGatheringProgressNotification, &SpotlightViewController::_applicationsQueryGatheringProgress);
    observe(NSMetadataQueryDidFinishGatheringNotification, &SpotlightViewController::_applicationsQueryGatheringFinish);
}

void SpotlightViewController::takeFocus() {
    mUi->searchView->setFocus();
    mUi->searchView->selectAll();
}

// --- The search

void SpotlightViewController::_updateSearchPredicate() {
    const QString text = mUi->searchView->text().trimmed();
    bool allowFuzzy = true;
    const QStringList terms = text.size() >= kShortestText ? splitIntoContentTerms(text, allowFuzzy) : QStringList();
    stopSearch();
    mContentTerms = terms;
    if (!terms.isEmpty()) {
        NSPredicateRef predicate = predicateForTerms(terms, allowFuzzy);
        if (const NSPredicateRef accepted = AppDelegate::instance()->spotlightPredicate())
            predicate = NSCompoundPredicate::andPredicateWithSubpredicates({predicate, accepted});
        mNameQuery->setPredicate(predicate);
        mNameQuery->setRankedTerm(terms.size() == 1 ? terms.first() : QString());
        mNameQuery->startQuery();
    }
    setSelectionChangedByUser(false);
}

void SpotlightViewController::stopSearch() {
    ++mSearch;
    if (mIsMerging) // the script is judging a file of this search
        AppDelegate::instance()->stopHook(mHookDepth);
    stopQuery();
    mUi->resultsCountView->clear();
    mUi->noteView->hide();
    removeAllPaths();
}

void SpotlightViewController::stopQuery() {
    mUi->progressView->stopAnimation();
    mUi->progressView->hide();
    mNameQuery->stopQuery();
    mNextSlice.stop();
    mJudgesLong.stop();
    mUnjudged.clear();
    mJudged = 0;
}

void SpotlightViewController::removeAllPaths() {
    mUsable.clear();
    mCostOfShowing = 0;
    mMatches.clear();
    mPaths.clear();
    mResultsController->removeAllObjects();
    updateButtons();
    if (mPreviewPanel)
        mPreviewPanel->reloadData();
}

void SpotlightViewController::_applicationsQueryGatheringStart(const NSNotification&) {
    if (!mNameQuery->isStarted())
        return;
    mUi->progressView->show();
    mUi->progressView->startAnimation();
    mUi->resultsCountView->clear();
}

void SpotlightViewController::_applicationsQueryGatheringProgress(const NSNotification& notification) {
    trace(notification, u"kMDItemFSName: %@, kMDItemContentType: %@, kMDItemContentTypeTree: %@ relevance: %f"_s);
    takeResults(notification);
}

void SpotlightViewController::_applicationsQueryGatheringFinish(const NSNotification&) {
    if (mNameQuery->isGathering())
        return;
    mUi->progressView->stopAnimation();
    mUi->progressView->hide();
    if (!mNameQuery->followsChangesAtOnce())
        note(tr("The system cannot watch so many folders: new files in some of them appear after half a minute."));
    mNextSlice.start(0);
}

void SpotlightViewController::_applicationsQueryUpdated(const NSNotification& notification) {
    trace(notification, u"kMDItemFSName: %@, kMDItemContentType: %@, kMDItemContentTypeTree: %@, relevance: %f"_s);
    takeResults(notification);
}

void SpotlightViewController::takeResults(const NSNotification& notification) {
    removePaths(notification.userInfo.value(NSMetadataQueryUpdateRemovedItemsKey).toStringList());
    mUnjudged += notification.userInfo.value(NSMetadataQueryUpdateAddedItemsKey).value<QList<NSMetadataItem>>();
    mNextSlice.start(0);
}

void SpotlightViewController::removePaths(const QStringList& paths) {
    if (paths.isEmpty())
        return;
    const QSet<QString> gone(paths.begin(), paths.end());
    if (mIsMerging)
        mGoneMeanwhile += gone;
    mUsable.removeIf([&gone](const SpotlightMatchRef& match) { return gone.contains(match->path()); });
    mUnjudged.remove(0, std::exchange(mJudged, 0));
    mUnjudged.removeIf([&gone](const NSMetadataItem& item) { return gone.contains(item.path()); });
    QSet<const SpotlightMatch*> stale;
    for (const QString& path : gone)
        if (const SpotlightMatchRef match = mMatches.take(path))
            stale << match.get();
    mPaths.removeIf([&stale](const SpotlightMatchRef& match) { return stale.contains(match.get()); });
    const QList<SpotlightMatchRef>& rows = mResultsController->arrangedObjects();
    const int row = mUi->resultsView->currentIndex().row();
    const auto goneAbove = std::count_if(rows.begin(), rows.begin() + std::max(row, 0),
                                         [&stale](const SpotlightMatchRef& match) { return stale.contains(match.get()); });
    const bool hadSelection = mUi->resultsView->selectionModel()->hasSelection();
    mSelectsByItself = true;
    mResultsController->removeObjects(stale);
    const int last = mResultsController->rowCount() - 1;
    if (hadSelection && last >= 0 && !mUi->resultsView->selectionModel()->hasSelection())
        mUi->resultsView->setCurrentIndex(
            mResultsController->index(std::clamp(row - static_cast<int>(goneAbove), 0, last))); // the row behind the one that has gone
    mSelectsByItself = false;
    showCount();
}

SpotlightMatchRef SpotlightViewController::makeMatch(const NSMetadataItem& item) const {
    const double relevance = item.valueForAttribute(NSMetadataQueryResultContentRelevanceAttribute).toDouble();
    return std::make_shared<SpotlightMatch>(item.path(), mContentTerms, relevance);
}

bool SpotlightViewController::judgeSlice() {
    const QPointer<SpotlightViewController> alive(this);
    const int search = mSearch;
    mHookDepth = AppDelegate::instance()->hookDepth();
    const QDeadlineTimer end(std::chrono::microseconds(qRound64(std::max(kSlice - mCostOfShowing, kShortestJudging) * 1000)));
    while (mJudged < mUnjudged.size() && !end.hasExpired()) {
        mGoneMeanwhile.clear();
        const SpotlightMatchRef match = makeMatch(mUnjudged.at(mJudged++));
        const bool isUsable = match->usableMatch(); // may ask the script, and a script error ends the applet
        if (!alive || search != mSearch)
            return false;
        if (isUsable) {
            if (!mGoneMeanwhile.contains(match->path()))
                mUsable << match;
        } else if (AppDelegate::instance()->isEndingWithError()) {
            stopQuery();
        } else if (AppDelegate::instance()->hookWasStopped()) {
            stopQuery(); // a script whose hook was stopped is not asked about the other files
            note(tr("The search was stopped. Type to search again."));
        }
    }
    return true;
}

void SpotlightViewController::mergeResults() {
    // A script that waits in a hook lets events in, which must not start judging again.
    if (mIsMerging || mIsSuspended)
        return;
    mIsMerging = true;
    mJudgesLong.start(kJudgingPatience);
    const QPointer<SpotlightViewController> alive(this);
    const bool isCurrent = judgeSlice();
    if (!alive)
        return;
    mJudgesLong.stop();
    mIsMerging = false;
    const bool isMore = mJudged < mUnjudged.size();
    if (!isMore) {
        mUnjudged.clear();
        mJudged = 0;
    }
    if (isCurrent && (!isMore || mShown.hasExpired(qRound64(mCostOfShowing * kCostOfWaiting))))
        showUsable();
    if (isMore)
        mNextSlice.start(0);
}

void SpotlightViewController::showUsable() {
    mShown.start();
    for (const SpotlightMatchRef& match : mUsable)
        mMatches.insert(match->path(), match);
    mPaths += mUsable;
    mSelectsByItself = true;
    mResultsController->addObjects(std::exchange(mUsable, {}));
    selectBestHit();
    mSelectsByItself = false;
    showCount();
    QTimer::singleShot(0, this, &SpotlightViewController::_revealSelectedResultsRow);
    mCostOfShowing = static_cast<double>(mShown.nsecsElapsed()) / 1e6;
}

void SpotlightViewController::note(const QString& text) {
    mUi->noteView->setText(text);
    mUi->noteView->show();
}

void SpotlightViewController::showCount() {
    mUi->resultsCountView->setText(stringWithFormat(tr("%ld found"), {mPaths.size()}));
}

// --- The choice

void SpotlightViewController::selectBestHit() {
    if (!mSelectionChangedByUser && mResultsController->rowCount() > 0)
        mUi->resultsView->setCurrentIndex(mResultsController->index(0));
    updateButtons();
}

void SpotlightViewController::updateButtons() {
    const bool hasSelection = mUi->resultsView->selectionModel()->hasSelection();
    mUi->openButton->setEnabled(hasSelection);
    mUi->quickLookButton->setEnabled(hasSelection);
}

void SpotlightViewController::_revealSelectedResultsRow() {
    if (const QModelIndex current = mUi->resultsView->currentIndex(); current.isValid())
        mUi->resultsView->scrollTo(current);
}

const QList<SpotlightMatchRef>& SpotlightViewController::selectedObjects() const {
    if (mSelected)
        return *mSelected;
    QList<int> rows;
    const QModelIndexList indexes = mUi->resultsView->selectionModel()->selectedRows();
    for (const QModelIndex& index : indexes)
        rows << index.row();
    std::sort(rows.begin(), rows.end());
    mSelected.emplace();
    for (const int row : rows)
        *mSelected << mResultsController->arrangedObjects().at(row);
    return *mSelected;
}

void SpotlightViewController::doOK() {
    QStringList filenames;
    for (const SpotlightMatchRef& match : selectedObjects())
        filenames << match->path();
    NSApplication::sharedApplication()->openFiles(filenames);
}

void SpotlightViewController::doQuit() {
    NSApplication::sharedApplication()->terminate();
}

/// Handles keys of the search field that belong to the list: the ones that move the selection and that open it.
bool SpotlightViewController::handleSearchKey(int key) {
    switch (key) {
    case Qt::Key_Down:
    case Qt::Key_PageDown:
        mUi->resultsView->setFocus();
        return true;
    case Qt::Key_Escape:
        mUi->searchView->clear();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (mUi->openButton->isEnabled())
            doOK();
        return true;
    default:
        return false;
    }
}

bool SpotlightViewController::eventFilter(QObject* watched, QEvent* event) {
    if (isViewLoaded() && watched == mUi->resultsView && event->type() == QEvent::FocusIn)
        setSelectionChangedByUser(true); // by going into the list the user has chosen the hit that is selected there
    if (isViewLoaded() && watched == mUi->searchView && event->type() == QEvent::KeyPress &&
        handleSearchKey(static_cast<QKeyEvent*>(event)->key()))
        return true;
    return NSViewController::eventFilter(watched, event);
}

// --- Quick Look

/// Another pane has taken the place of this one. Judging pauses, because the script must not be asked about files while a handler of it
/// runs.
void SpotlightViewController::viewDidDisappear() {
    mIsSuspended = true;
    if (mPreviewPanel)
        mPreviewPanel->orderOut();
}

void SpotlightViewController::viewDidAppear() {
    mIsSuspended = false;
    if (!mContentTerms.isEmpty())
        mNextSlice.start(0);
}

void SpotlightViewController::doQuickLook() {
    setSelectionChangedByUser(true); // the hits in the preview must stay selected
    if (QLPreviewPanel::sharedPreviewPanelExists() && QLPreviewPanel::sharedPreviewPanel().isVisible())
        QLPreviewPanel::sharedPreviewPanel().orderOut();
    else
        QLPreviewPanel::sharedPreviewPanel().makeKeyAndOrderFront();
}

bool SpotlightViewController::acceptsPreviewPanelControl(QLPreviewPanel&) {
    return true;
}

void SpotlightViewController::beginPreviewPanelControl(QLPreviewPanel& panel) {
    mPreviewPanel = &panel;
    panel.setDelegate(this);
    panel.setDataSource(this);
}

void SpotlightViewController::endPreviewPanelControl(QLPreviewPanel&) {
    mPreviewPanel = nullptr;
}

int SpotlightViewController::numberOfPreviewItemsInPreviewPanel(QLPreviewPanel&) {
    return static_cast<int>(selectedObjects().size());
}

std::shared_ptr<const QLPreviewItem> SpotlightViewController::previewPanelPreviewItemAtIndex(QLPreviewPanel&, int index) {
    return selectedObjects().value(index);
}

bool SpotlightViewController::previewPanelHandleEvent(QLPreviewPanel&, QEvent& event) {
    const auto* key = event.type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(&event) : nullptr;
    if (!key || key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) // such keys belong to the menu
        return false;
    QCoreApplication::sendEvent(mUi->resultsView, &event);
    return true;
}

QRect SpotlightViewController::previewPanelSourceFrameOnScreenForPreviewItem(QLPreviewPanel&, const QLPreviewItem& item) {
    const QList<SpotlightMatchRef>& arranged = mResultsController->arrangedObjects();
    const auto match =
        std::find_if(arranged.begin(), arranged.end(), [&item](const SpotlightMatchRef& each) { return each.get() == &item; });
    if (match == arranged.end())
        return {};
    const QRect row = mUi->resultsView->visualRect(mResultsController->index(static_cast<int>(match - arranged.begin())));
    const QWidget* viewport = mUi->resultsView->viewport();
    return row.intersects(viewport->rect()) ? QRect(viewport->mapToGlobal(row.topLeft()), row.size()) : QRect();
}

} // namespace quoddle
