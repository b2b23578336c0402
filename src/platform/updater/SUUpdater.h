// SPDX-License-Identifier: MIT
// The updater of an applet: looks for a newer version in the feed that the bundle names, shows it to the user, and installs it when the
// user wants it.
//
// Decision: an update takes the applet's place only when the applet has ended, never while its script runs; until then it stays beside the
// applet. Automatic checks are silent, do not take the keyboard focus, and need the user's permission, for which they ask once.
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
    /// Needs an NSApplication. Does nothing until it is called or has a delegate.
    explicit SUUpdater(std::shared_ptr<const NSBundle> bundle);
    ~SUUpdater() override;

    /// Not owned. Automatic checks begin a little later, when the applet's own window is there, if they are wanted.
    void setDelegate(SUUpdaterDelegate* delegate);
    /// A check that the user has asked for: shows its progress and its outcome. Shows the update in progress when there is one.
    void checkForUpdates();
    /// Checks silently, and shows only a version that the user has not skipped.
    void checkForUpdatesInBackground();

    /// Called at the end of the program, when nothing of the applet is running: puts an update that is ready in the applet's place, and
    /// tells the user when that fails. True when the applet is to be launched again.
    bool finish();

private:
    enum class Stage {
        idle,
        checking,
        offering,
        fetching,
        announcing, ///< unpacked; the applet is being notified
        ready       ///< unpacked; installed when the applet ends
    };

    void considerChecking();
    void askForPermission();
    void scheduleNextCheck();
    /// Calls the delegate. False when the check or update was abandoned during the call.
    bool call(const std::function<void()>& delegate);
    void check();
    void readFeed(const QByteArray& feed);
    void fetchNotes(const AppcastItem& item);
    void offer(const QString& notes);
    void choose(int choice);
    void fetch();
    void prepare(const QString& unpacked);
    /// Notifies the applet. False when the update was abandoned during the call.
    bool announce(const std::function<void(SUUpdaterDelegate& delegate)>& notice);
    void installByEnding();
    void waitForEnd();
    void becomeIdle();
    /// Ends the check or update. The message is shown when the user has asked for it; it is always logged.
    void fail(const QString& message, const QString& reason);
    void tell(const QString& message, const QString& information, bool isError = false);
    void showProgress(const QString& activity);
    void show(NSPanel& panel);

    const std::shared_ptr<const NSBundle> mBundle;
    UpdateSettings mSettings;
    SUUpdaterDelegate* mDelegate = nullptr;
    UpdateFetcher mFetcher;
    QTimer mTimer; // until the next automatic check
    Stage mStage = Stage::idle;
    int mRound = 0;           // grows when a check or update ends; results of earlier rounds are ignored
    std::optional<int> mCall; // the call depth of the delegate's call in progress
    bool mIsAsked = false;    // the user has asked for this check or update
    bool mRelaunches = false;
    AppcastItem mItem;
    QUrl mPage;
    std::unique_ptr<QTemporaryDir> mStaging; // a folder beside the bundle
    QString mUnpacked;
    std::unique_ptr<NSAlert> mAlert;
    std::unique_ptr<NSAlert> mPermission;
    std::unique_ptr<UpdatePanel> mPanel;
    std::unique_ptr<UpdateProgressPanel> mProgress;
};

} // namespace quoddle
