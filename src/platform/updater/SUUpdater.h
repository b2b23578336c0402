// SPDX-License-Identifier: MIT
// The updater of an applet: looks for a newer version in the feed that its bundle names, tells of it, and installs it when the user says
// so.
//
// Decision: an update takes the applet's place when the applet has ended, never while its script runs; until then everything stands beside
// it. What looks for updates by itself does so silently, does not take the keyboard, and asks once whether it may.
// Main thread only.
#pragma once

#include "platform/foundation/SUUpdaterDelegate.h"
#include "platform/updater/UpdateFetcher.h"
#include "platform/updater/UpdateSettings.h"

#include <functional>
#include <memory>
#include <optional>

#include <QObject>
#include <QTimer>

class QTemporaryDir;

namespace quoddle {

class NSAlert;
class NSPanel;
class UpdatePanel;
class UpdateProgressPanel;

class SUUpdater : public QObject {
    Q_OBJECT
public:
    /// Needs an NSApplication. Does nothing until it is asked or has a delegate.
    explicit SUUpdater(std::shared_ptr<const NSBundle> bundle);
    ~SUUpdater() override;

    /// Not owned. A little later, when the applet's own window is there, looking for updates by itself begins, if that is wanted.
    void setDelegate(SUUpdaterDelegate* delegate);
    /// The user wants to know: says what it does and what came of it. While something of the kind is under way, shows that.
    void checkForUpdates();
    /// Shows nothing unless there is a version that the user has not skipped.
    void checkForUpdatesInBackground();

    /// For the end of the program, when nothing of the applet runs any more: puts an update that is ready in the applet's place, and tells
    /// the user when that fails. True when the applet is to be started again.
    bool finish();

private:
    enum class Stage {
        idle,
        checking,
        offering,
        fetching,
        announcing, ///< unpacked, and the applet is being told so
        ready       ///< unpacked, and installed when the applet ends
    };

    void considerChecking();
    void askForPermission();
    void scheduleNextCheck();
    /// Calls the delegate. False when what that was about was given up meanwhile.
    bool call(const std::function<void()>& delegate);
    void check();
    void readFeed(const QByteArray& feed);
    void fetchNotes(const AppcastItem& item);
    void offer(const QString& notes);
    void choose(int choice);
    void fetch();
    void prepare(const QString& unpacked);
    /// Gives the applet a notice. False when the update was given up meanwhile.
    bool announce(const std::function<void(SUUpdaterDelegate& delegate)>& notice);
    void installByEnding();
    void waitForEnd();
    void becomeIdle();
    /// Shown to the user who has asked, or else logged.
    void fail(const QString& message, const QString& reason);
    void tell(const QString& message, const QString& information, bool isError = false);
    void showProgress(const QString& activity);
    void show(NSPanel& panel);

    const std::shared_ptr<const NSBundle> mBundle;
    UpdateSettings mSettings;
    SUUpdaterDelegate* mDelegate = nullptr;
    UpdateFetcher mFetcher;
    QTimer mTimer; // to the next look by itself
    Stage mStage = Stage::idle;
    int mRound = 0;           // counts what was begun and ended: what comes back from an older one is not heard
    std::optional<int> mCall; // of the delegate, that is under way
    bool mIsAsked = false;    // by the user
    bool mRelaunches = false;
    AppcastItem mItem;
    QUrl mPage;
    std::unique_ptr<QTemporaryDir> mStaging; // beside the bundle
    QString mUnpacked;
    std::unique_ptr<NSAlert> mAlert;
    std::unique_ptr<NSAlert> mPermission;
    std::unique_ptr<UpdatePanel> mPanel;
    std::unique_ptr<UpdateProgressPanel> mProgress;
};

} // namespace quoddle
