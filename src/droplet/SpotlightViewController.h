// SPDX-License-Identifier: MIT
// The search pane: the droplet's second mode. Each change of the text stops the search that runs, drops its hits and begins a new one. Hits
// are ranked and listed as they come. Return or a double click opens the selected ones.
// One decision: hits are judged in slices of time, because a script may be asked about each of them, and results for an older text are
// never shown.
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
    /// The usable hits in the order in which they came.
    const QList<SpotlightMatchRef>& paths() const { return mPaths; }
    SpotlightResultsController& resultsController() { return *mResultsController; }
    /// Whether the user has changed the selection since the search began; until then the best hit is selected automatically.
    bool selectionChangedByUser() const { return mSelectionChangedByUser; }
    void setSelectionChangedByUser(bool changed) { mSelectionChangedByUser = changed; }
    /// The selected hits in the order of the list. Valid until the selection or the list changes.
    const QList<SpotlightMatchRef>& selectedObjects() const;

    /// Begins a new search for the text in the search field.
    void _updateSearchPredicate();
    void _revealSelectedResultsRow();
    /// Opens the selected files.
    void doOK();
    void doQuit();
    /// Shows the selected hits in the preview panel, or closes the panel when it is shown.
    void doQuickLook();
    /// Gives the search field the keyboard.
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
    /// Judges results for the length of a slice and shows usable ones now and then.
    void mergeResults();
    /// Collects the usable ones among the next results. False when the search, or the pane, has ended during the judging.
    bool judgeSlice();
    /// Puts the usable hits found so far into the list.
    void showUsable();
    SpotlightMatchRef makeMatch(const NSMetadataItem& item) const;
    void showCount();
    /// Shows a note below the results until the next search.
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
    QHash<QString, SpotlightMatchRef> mMatches;                // the hits in mPaths by their path
    QList<NSMetadataItem> mUnjudged;                           // results of the query that came since all were judged
    qsizetype mJudged = 0;                                     // so many of mUnjudged, from the first one on, have been judged
    int mSearch = 0;                                           // the number of the present search
    bool mIsSuspended = false;                                 // the pane was shown and is hidden now
    bool mIsMerging = false;                                   // results are being judged further up on the stack
    int mHookDepth = 0;                                        // the number of hooks that were under way before the one that judges a file
    QList<SpotlightMatchRef> mUsable;                          // usable hits that are not shown yet
    QSet<QString> mGoneMeanwhile;                              // paths that were removed while a file was being judged
    mutable std::optional<QList<SpotlightMatchRef>> mSelected; // kept because the preview panel asks for its items one by one
    bool mSelectionChangedByUser = false;
    bool mSelectsByItself = false; // the program, not the user, is changing the selection
    QTimer mNextSlice, mJudgesLong;
    QElapsedTimer mShown;                    // time since hits were last shown
    double mCostOfShowing = 0;               // milliseconds that showing hits took the last time
    QLPreviewPanel* mPreviewPanel = nullptr; // set while this pane controls the panel
};

} // namespace quoddle
