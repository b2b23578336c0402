// SPDX-License-Identifier: MIT
#include "droplet/SpotlightViewController.h"

#include "droplet/SearchTerms.h"
#include "droplet/SpotlightResultsCell.h"
#include "droplet/SpotlightResultsController.h"
#include "platform/appkit/NSApplication.h"
#include "platform/foundation/NSLog.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "runtime/AppDelegate.h"
#include "ui_SpotlightViewController.h"

#include <algorithm>

#include <QElapsedTimer>
#include <QKeyEvent>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr double kBatchingInterval = 0.25; // seconds
constexpr qsizetype kShortestText = 2;     // UTF-16 units
constexpr qint64 kSlice = 8;               // milliseconds of judging before the window gets its turn
constexpr int kIconExtent = 48;            // points

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
    if (!image.isNull()) {
        const double ratio = mUi->iconView->devicePixelRatioF();
        QPixmap icon =
            QPixmap::fromImage(image.scaled(QSize(kIconExtent, kIconExtent) * ratio, Qt::KeepAspectRatio, Qt::SmoothTransformation));
        icon.setDevicePixelRatio(ratio);
        mUi->iconView->setPixmap(icon);
    }
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
    connectControls();

    mNameQuery = std::make_unique<NSMetadataQuery>();
    mNameQuery->setSearchScopes({NSMetadataQueryLocalComputerScope});
    mNameQuery->setNotificationBatchingInterval(kBatchingInterval);
    observeQuery();
    mNextSlice.setSingleShot(true);
    connect(&mNextSlice, &QTimer::timeout, this, &SpotlightViewController::mergeResults);
    updateButtons();
}

void SpotlightViewController::connectControls() {
    connect(mUi->searchView, &QLineEdit::textChanged, this, &SpotlightViewController::_updateSearchPredicate);
    mUi->searchView->installEventFilter(this);
    connect(mUi->resultsView, &QListView::doubleClicked, this, &SpotlightViewController::doOK);
    connect(mUi->openButton, &QPushButton::clicked, this, &SpotlightViewController::doOK);
    connect(mUi->quitButton, &QPushButton::clicked, this, &SpotlightViewController::doQuit);
    connect(mUi->resultsView->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!mSelectsByItself)
            mSelectionChangedByUser = true;
        updateButtons();
    });
}

void SpotlightViewController::observeQuery() {
    const auto observe = [this](const QString& name, void (SpotlightViewController::*handler)()) {
        NSNotificationCenter::defaultCenter().addObserver(
            this,
            [this, handler](const NSNotification& notification) {
                if (notification.object == mNameQuery.get())
                    (this->*handler)();
            },
            name);
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
        mNameQuery->startQuery();
    }
    setSelectionChangedByUser(false);
}

void SpotlightViewController::stopSearch() {
    mUi->progressView->stopAnimation();
    mUi->progressView->hide();
    mUi->resultsCountView->clear();
    mNameQuery->stopQuery();
    mNextSlice.stop();
    removeAllPaths();
}

void SpotlightViewController::removeAllPaths() {
    mJudged.clear();
    mExamined = 0;
    mHasStale = false;
    mPaths.clear();
    mResultsController->removeAllObjects();
    updateButtons();
}

void SpotlightViewController::_applicationsQueryGatheringStart() {
    if (!mNameQuery->isStarted())
        return;
    mUi->progressView->show();
    mUi->progressView->startAnimation();
    mUi->resultsCountView->clear();
}

void SpotlightViewController::_applicationsQueryGatheringProgress() {
    mergeResults();
}

void SpotlightViewController::_applicationsQueryGatheringFinish() {
    if (mNameQuery->isGathering())
        return;
    mUi->progressView->stopAnimation();
    mUi->progressView->hide();
    mergeResults();
}

/// Results may have gone as well as come, so all of them are looked at again; those that were judged before keep their verdict.
void SpotlightViewController::_applicationsQueryUpdated() {
    mExamined = 0;
    mHasStale = true;
    mergeResults();
}

void SpotlightViewController::removeGonePaths() {
    QHash<QString, SpotlightMatchRef> gone = mJudged;
    for (qsizetype i = 0; i < mNameQuery->resultCount(); ++i)
        gone.remove(mNameQuery->resultAtIndex(i).path());
    QSet<const SpotlightMatch*> stale;
    for (auto entry = gone.constBegin(); entry != gone.constEnd(); ++entry) {
        mJudged.remove(entry.key());
        if (entry.value())
            stale << entry.value().get();
    }
    if (stale.isEmpty())
        return;
    mPaths.removeIf([&stale](const SpotlightMatchRef& match) { return stale.contains(match.get()); });
    mSelectsByItself = true;
    mResultsController->removeObjects(stale);
    mSelectsByItself = false;
}

void SpotlightViewController::mergeResults() {
    if (std::exchange(mHasStale, false))
        removeGonePaths();
    const QPointer<SpotlightViewController> alive(this);
    const QStringList terms = mContentTerms;
    QElapsedTimer time;
    time.start();
    QList<SpotlightMatchRef> usable;
    for (; mExamined < mNameQuery->resultCount() && time.elapsed() < kSlice; ++mExamined) {
        const NSMetadataItem item = mNameQuery->resultAtIndex(mExamined);
        const QString path = item.path();
        if (path.isEmpty() || mJudged.contains(path))
            continue;
        const double relevance = item.valueForAttribute(NSMetadataQueryResultContentRelevanceAttribute).toDouble();
        if (NSLogIsTracing())
            NSLogTrace(u"kMDItemFSName: %@, kMDItemContentType: %@, kMDItemContentTypeTree: %@ relevance: %f"_s,
                       {item.valueForAttribute(NSMetadataItemFSNameKey), item.valueForAttribute(NSMetadataItemContentTypeKey),
                        item.valueForAttribute(NSMetadataItemContentTypeTreeKey), relevance});
        const auto match = std::make_shared<SpotlightMatch>(path, terms, relevance);
        const bool isUsable = match->usableMatch(); // asks the script, whose error ends the applet
        if (!alive)
            return;
        mJudged.insert(path, isUsable ? match : nullptr);
        if (isUsable)
            usable << match;
    }
    mPaths += usable;
    mSelectsByItself = true;
    mResultsController->addObjects(usable);
    selectBestHit();
    mSelectsByItself = false;
    showCount();
    if (mExamined < mNameQuery->resultCount())
        mNextSlice.start(0);
    QTimer::singleShot(0, this, &SpotlightViewController::_revealSelectedResultsRow);
}

void SpotlightViewController::showCount() {
    mUi->resultsCountView->setText(stringWithFormat(u"%ld found"_s, {mPaths.size()}));
}

// --- The choice

void SpotlightViewController::selectBestHit() {
    if (!mSelectionChangedByUser && mResultsController->rowCount() > 0)
        mUi->resultsView->setCurrentIndex(mResultsController->index(0));
    updateButtons();
}

void SpotlightViewController::updateButtons() {
    mUi->openButton->setEnabled(mUi->resultsView->selectionModel()->hasSelection());
}

void SpotlightViewController::_revealSelectedResultsRow() {
    if (const QModelIndex current = mUi->resultsView->currentIndex(); current.isValid())
        mUi->resultsView->scrollTo(current);
}

QList<SpotlightMatchRef> SpotlightViewController::selectedObjects() const {
    QList<int> rows;
    const QModelIndexList indexes = mUi->resultsView->selectionModel()->selectedRows();
    for (const QModelIndex& index : indexes)
        rows << index.row();
    std::sort(rows.begin(), rows.end());
    QList<SpotlightMatchRef> matches;
    for (const int row : rows)
        matches << mResultsController->arrangedObjects().at(row);
    return matches;
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

/// Keys of the search field that are the list's: what moves the selection and what opens it.
bool SpotlightViewController::handleSearchKey(int key) {
    switch (key) {
    case Qt::Key_Down:
    case Qt::Key_PageDown:
        mUi->resultsView->setFocus();
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
    if (isViewLoaded() && watched == mUi->searchView && event->type() == QEvent::KeyPress &&
        handleSearchKey(static_cast<QKeyEvent*>(event)->key()))
        return true;
    return NSViewController::eventFilter(watched, event);
}

} // namespace quoddle
