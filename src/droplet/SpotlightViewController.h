// SPDX-License-Identifier: MIT
// The search pane: the droplet's second mode. Typing drives everything: each change of the text stops the search that runs, drops its hits
// and begins a new one; what is found is ranked and listed as it comes; Return or a double click opens what is selected.
// One decision: hits are judged in slices of time, because a script may be asked about each of them, and a slice that belongs to an older
// text is never shown.
// Main thread only.
#pragma once

#include "droplet/SpotlightMatch.h"
#include "platform/appkit/NSViewController.h"
#include "platform/search/NSMetadataQuery.h"

#include <QElapsedTimer>
#include <QHash>
#include <QPointer>
#include <QTimer>

namespace Ui {
class SpotlightViewController;
}

namespace quoddle {

struct NSNotification;
class SpotlightResultsController;
class SpotlightResultsView;

class SpotlightViewController : public NSViewController,
                                private QLPreviewPanelController,
                                private QLPreviewPanelDataSource,
                                private QLPreviewPanelDelegate {
    Q_OBJECT
public:
    explicit SpotlightViewController(QObject* parent = nullptr);
    ~SpotlightViewController() override;

    NSMetadataQuery& nameQuery() { return *mNameQuery; }
    const QStringList& contentTerms() const { return mContentTerms; }
    /// The usable hits, in the order in which they came.
    const QList<SpotlightMatchRef>& paths() const { return mPaths; }
    SpotlightResultsController& resultsController() { return *mResultsController; }
    /// Not since the search began: the best hit is selected by itself.
    bool selectionChangedByUser() const { return mSelectionChangedByUser; }
    void setSelectionChangedByUser(bool changed) { mSelectionChangedByUser = changed; }
    /// The selected hits, in the order of the list. Valid until the selection or the list changes.
    const QList<SpotlightMatchRef>& selectedObjects() const;

    /// Begins anew with what the search field says.
    void _updateSearchPredicate();
    void _revealSelectedResultsRow();
    /// Opens what is selected.
    void doOK();
    void doQuit();
    /// Shows the selected hits in the preview panel, or takes the panel away.
    void doQuickLook();
    /// The search field takes the keyboard.
    void takeFocus();

    // Outlets; the view must have been loaded.
    SpotlightResultsView* resultsView() const;

protected:
    QWidget* loadView() override;
    void viewDidLoad() override;
    void viewDidAppear() override;
    void viewDidDisappear() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void observeQuery();
    void connectControls();
    void _applicationsQueryGatheringStart(const NSNotification& notification);
    void _applicationsQueryGatheringProgress(const NSNotification& notification);
    void _applicationsQueryGatheringFinish(const NSNotification& notification);
    void _applicationsQueryUpdated(const NSNotification& notification);
    void stopQuery();
    void stopSearch();
    void removeAllPaths();
    void takeResults(const NSNotification& notification);
    void removePaths(const QStringList& paths);
    /// Judges results that have not been looked at, for as long as a slice lasts.
    void mergeResults();
    /// Collects the usable ones among the next results. False when the search, or the pane, did not survive the judging.
    bool judgeSlice();
    /// Puts the hits that have been found usable into the list.
    void showUsable();
    SpotlightMatchRef makeMatch(const NSMetadataItem& item) const;
    void showCount();
    /// Below the results, until the next search.
    void note(const QString& text);
    void selectBestHit();
    void updateButtons();
    bool handleSearchKey(int key);
    bool acceptsPreviewPanelControl(QLPreviewPanel& panel) override;
    void beginPreviewPanelControl(QLPreviewPanel& panel) override;
    void endPreviewPanelControl(QLPreviewPanel& panel) override;
    int numberOfPreviewItemsInPreviewPanel(QLPreviewPanel& panel) override;
    std::shared_ptr<const QLPreviewItem> previewPanelPreviewItemAtIndex(QLPreviewPanel& panel, int index) override;
    bool previewPanelHandleEvent(QLPreviewPanel& panel, QEvent& event) override;
    QRect previewPanelSourceFrameOnScreenForPreviewItem(QLPreviewPanel& panel, const QLPreviewItem& item) override;

    std::unique_ptr<Ui::SpotlightViewController> mUi;
    std::unique_ptr<NSMetadataQuery> mNameQuery;
    std::unique_ptr<SpotlightResultsController> mResultsController;
    QStringList mContentTerms;
    QList<SpotlightMatchRef> mPaths;
    QHash<QString, SpotlightMatchRef> mMatches;                // those in mPaths by their path
    QList<NSMetadataItem> mUnjudged;                           // results of the query
    qsizetype mJudged = 0;                                     // how many of them, from the first one on, have been judged all the same
    int mSearch = 0;                                           // the number of the search; a new text begins a new one
    bool mIsSuspended = false;                                 // the pane was shown and is not any more
    bool mIsMerging = false;                                   // further up on the stack
    int mHookDepth = 0;                                        // of the hook that judges a file
    QList<SpotlightMatchRef> mUsable;                          // hits that are not shown yet
    QSet<QString> mGoneMeanwhile;                              // paths that went while a file was being judged
    mutable std::optional<QList<SpotlightMatchRef>> mSelected; // kept: the preview panel asks for its items one by one
    bool mSelectionChangedByUser = false;
    bool mSelectsByItself = false; // the selection changes, and it is not the user
    QTimer mNextSlice, mJudgesLong;
    QElapsedTimer mShown;                    // since hits were shown last
    double mCostOfShowing = 0;               // milliseconds, the last time
    QLPreviewPanel* mPreviewPanel = nullptr; // while this pane controls it
};

} // namespace quoddle
