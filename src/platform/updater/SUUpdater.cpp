// SPDX-License-Identifier: MIT
#include "platform/updater/SUUpdater.h"

#include "platform/appkit/BundleIcon.h"
#include "platform/appkit/NSAlert.h"
#include "platform/appkit/NSApplication.h"
#include "platform/foundation/NSLog.h"
#include "platform/foundation/NSNotificationCenter.h"
#include "platform/updater/NotesText.h"
#include "platform/updater/UpdateInstallation.h"
#include "platform/updater/UpdatePanel.h"
#include "platform/updater/UpdateProgressPanel.h"

#include <QDesktopServices>
#include <QTemporaryDir>

namespace quoddle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kFirstLook = 2s;
constexpr std::chrono::seconds kShortestTimer = 1min, kLongestTimer = 24h; // longer intervals would overflow a timer
constexpr qint64 kMaximumNotes = 512 << 10;

/// Releases a window that may be just calling us from one of its buttons.
template<class Window>
void dismiss(std::unique_ptr<Window>& window) {
    if (window)
        NSApplication::sharedApplication()->releaseLater(std::shared_ptr<Window>(std::move(window)));
}

} // namespace

SUUpdater::SUUpdater(std::shared_ptr<const NSBundle> bundle) : mBundle(std::move(bundle)), mSettings(mBundle) {
    mTimer.setSingleShot(true);
    connect(&mTimer, &QTimer::timeout, this, &SUUpdater::considerChecking);
    NSNotificationCenter::defaultCenter().addObserver(
        this,
        [this](const NSNotification&) {
            if (mRelaunches)
                waitForEnd();
        },
        NSApplicationDidRefuseTerminationNotification);
}

SUUpdater::~SUUpdater() {
    NSNotificationCenter::defaultCenter().removeObserver(this);
}

void SUUpdater::setDelegate(SUUpdaterDelegate* delegate) {
    mDelegate = delegate;
    if (delegate)
        mTimer.start(kFirstLook);
}

// --- Automatic checks

void SUUpdater::considerChecking() {
    const auto decision = mSettings.checksAutomatically();
    if (decision == true && mSettings.timeToNextCheck() == 0s)
        checkForUpdatesInBackground();
    if (decision == true)
        return scheduleNextCheck();
    // The user is not asked at the first launch, which is for the applet itself.
    if (!mSettings.noteLaunch() || decision || !mDelegate)
        return;
    if (mDelegate->updaterShouldPromptForPermissionToCheckForUpdates() && NSApplication::sharedApplication()->isRunning())
        askForPermission();
}

void SUUpdater::askForPermission() {
    mPermission = std::make_unique<NSAlert>();
    mPermission->setAlertStyle(NSAlertStyle::informational);
    mPermission->setIcon(applicationIcon(mBundle.get()));
    mPermission->setMessageText(tr("Should %1 look for updates by itself?").arg(mBundle->name()));
    mPermission->setInformativeText(tr("You can look for them at any time with “Check for Updates…” in the menu."));
    mPermission->addButton(tr("Check Automatically"));
    setKeyEquivalent(*mPermission->addButton(tr("Don’t Check")), kEscapeKeyEquivalent);
    NSPanel& panel = mPermission->window();
    panel.setWindowTitle(titleText(mBundle->name()));
    panel.setAttribute(Qt::WA_ShowWithoutActivating);
    mPermission->show([this] {
        mSettings.setChecksAutomatically(mPermission->window().result() == NSAlertFirstButtonReturn);
        dismiss(mPermission);
        if (mSettings.checksAutomatically() == true)
            considerChecking();
    });
}

void SUUpdater::scheduleNextCheck() {
    mTimer.start(std::clamp<std::chrono::seconds>(mSettings.timeToNextCheck(), kShortestTimer, kLongestTimer));
}

void SUUpdater::checkForUpdatesInBackground() {
    if (mStage != Stage::idle)
        return;
    mIsAsked = false;
    check();
}

// --- Checks

void SUUpdater::checkForUpdates() {
    if (mPermission)
        show(mPermission->window());
    if (mStage == Stage::ready)
        return installByEnding();
    mIsAsked = true;
    if (mPanel)
        show(*mPanel);
    else if (mProgress)
        show(*mProgress);
    else if (mStage == Stage::checking)
        showProgress(tr("Looking for updates…"));
    else if (mStage == Stage::announcing)
        showProgress(tr("Preparing version %1…").arg(mItem.displayVersion));
    else
        check();
}

bool SUUpdater::call(const std::function<void()>& delegate) {
    const int round = mRound;
    const auto outer = std::exchange(mCall, mDelegate->updaterCallDepth());
    delegate();
    mCall = outer;
    return mRound == round;
}

void SUUpdater::check() {
    mStage = Stage::checking;
    mSettings.noteCheck();
    bool isAllowed = true;
    if (mDelegate && !call([&] { isAllowed = mDelegate->updaterMayCheckForUpdates(); }))
        return;
    if (!isAllowed) {
        NSLogTrace(u"updates: the applet does not allow looking for them now"_s);
        becomeIdle();
        if (mIsAsked && NSApplication::sharedApplication()->isRunning() && !mDelegate->updaterIsOutOfTurn())
            tell(tr("%1 does not look for updates now.").arg(mBundle->name()), tr("Try again later."));
        return;
    }
    const QUrl feed = mSettings.feedURL();
    if (feed.isEmpty() || mSettings.installedVersion().isEmpty())
        return fail(tr("%1 cannot look for updates.").arg(mBundle->name()),
                    feed.isEmpty() ? tr("The address in its SUFeedURL is none.") : tr("It does not say which version it is."));
    if (mIsAsked && !mProgress)
        showProgress(tr("Looking for updates…"));
    mFetcher.fetchText(feed, kMaximumFeedSize, [this](Result<QByteArray, QString> fetched) {
        if (fetched)
            readFeed(*fetched);
        else
            fail(tr("%1 could not look for updates.").arg(mBundle->name()), fetched.error());
    });
}

void SUUpdater::readFeed(const QByteArray& bytes) {
    const auto feed = readAppcast(bytes, mSettings.feedURL());
    if (!feed)
        return fail(tr("%1 could not look for updates.").arg(mBundle->name()), feed.error());
    const auto item = newestItem(*feed, mSettings.installedVersion(), QStringLiteral(QUODDLE_VERSION));
    const bool isWanted = item && (mIsAsked || mSettings.skippedVersion() != item->version);
    if (!isWanted) {
        becomeIdle();
        if (mIsAsked)
            tell(tr("%1 is up to date.").arg(mBundle->name()),
                 tr("Version %1 is the newest one.").arg(mSettings.installedDisplayVersion()));
        return;
    }
    mItem = *item;
    mPage = mItem.page.isEmpty() ? feed->page : mItem.page;
    fetchNotes(mItem);
}

void SUUpdater::fetchNotes(const AppcastItem& item) {
    if (!item.description.isEmpty() || item.notesURL.isEmpty())
        return offer(plainNotes(item.description));
    mFetcher.fetchText(item.notesURL, kMaximumNotes, [this](Result<QByteArray, QString> fetched) {
        offer(fetched ? plainNotes(QString::fromUtf8(*fetched))
                      : tr("The notes about this version could not be fetched. %1").arg(fetched.error()));
    });
}

// --- Choices of the user

void SUUpdater::offer(const QString& notes) {
    dismiss(mProgress);
    mStage = Stage::offering;
    mPanel = std::make_unique<UpdatePanel>(UpdateDescription{.appletName = mBundle->name(),
                                                             .version = mItem.displayVersion,
                                                             .installedVersion = mSettings.installedDisplayVersion(),
                                                             .notes = notes,
                                                             .obstacle = obstacleToInstalling(*mBundle, mItem),
                                                             .hasPage = !mPage.isEmpty()},
                                           applicationIcon(mBundle.get()));
    connect(mPanel.get(), &QDialog::finished, this, &SUUpdater::choose);
    if (mIsAsked)
        return show(*mPanel);
    mPanel->setAttribute(Qt::WA_ShowWithoutActivating);
    mPanel->show();
}

void SUUpdater::choose(int choice) {
    becomeIdle();
    if (choice == UpdatePanel::skip)
        mSettings.setSkippedVersion(mItem.version);
    else if (choice == UpdatePanel::openPage)
        QDesktopServices::openUrl(mPage);
    else if (choice == UpdatePanel::install)
        fetch();
}

void SUUpdater::fetch() {
    mStage = Stage::fetching;
    mIsAsked = true; // a user who has chosen to install wants to see the outcome
    const QString failure = tr("The update of %1 could not be installed.").arg(mBundle->name());
    removeStaleStaging(*mBundle);
    mStaging = std::make_unique<QTemporaryDir>(stagingTemplate(*mBundle));
    if (!mStaging->isValid())
        return fail(failure, mStaging->errorString());
    showProgress(tr("Downloading version %1…").arg(mItem.displayVersion));
    mProgress->setProgress(0, mItem.archiveLength);
    const auto progress = [this](qint64 received) { mProgress->setProgress(received, mItem.archiveLength); };
    mFetcher.fetchBundle(mItem, mSettings.publicKey(), mStaging->path(), progress, [this, failure](Result<QString, QString> fetched) {
        const auto unpacked = fetched ? NSBundle::bundleWithPath(*fetched) : nullptr;
        const QString fault = unpacked  ? faultOfUnpackedBundle(*unpacked, *mBundle, mItem)
                              : fetched ? tr("It is incomplete.")
                                        : fetched.error();
        if (fault.isEmpty())
            prepare(*fetched);
        else
            fail(failure, fault);
    });
}

// --- Installing

void SUUpdater::prepare(const QString& unpacked) {
    dismiss(mProgress);
    mUnpacked = unpacked;
    if (announce([](SUUpdaterDelegate& delegate) { delegate.updaterWillInstallUpdate(); }))
        installByEnding();
}

bool SUUpdater::announce(const std::function<void(SUUpdaterDelegate& delegate)>& notice) {
    mStage = Stage::announcing;
    if (mDelegate && !call([&] { notice(*mDelegate); }))
        return false;
    dismiss(mProgress);
    mStage = Stage::ready;
    return true;
}

void SUUpdater::installByEnding() {
    auto* application = NSApplication::sharedApplication();
    if (!application->isRunning() || !announce([](SUUpdaterDelegate& delegate) { delegate.updaterWillRelaunchApplication(); }) ||
        !application->isRunning())
        return;
    if (QApplication::activeModalWidget()) // a dialog of the script, or an error caused by the notice
        return waitForEnd();
    mRelaunches = true;
    application->terminate();
    if (application->isRunning() && !application->isDecidingTermination() && mRelaunches)
        waitForEnd();
}

void SUUpdater::waitForEnd() {
    mRelaunches = false;
    tell(tr("The update of %1 is ready.").arg(mBundle->name()), tr("It is installed as soon as the applet is quit."));
}

bool SUUpdater::finish() {
    if (mStage != Stage::ready)
        return false;
    const OSStatus status = installUpdate(mUnpacked, mBundle->bundlePath());
    mStage = Stage::idle;
    mStaging.reset();
    if (status == noErr)
        return mRelaunches;
    NSLog(u"updates: the new version could not be put in place: error %@"_s, {status});
    NSAlert alert;
    alert.setAlertStyle(NSAlertStyle::critical);
    alert.setMessageText(tr("The update of %1 could not be installed.").arg(mBundle->name()));
    alert.setInformativeText(tr("The applet stays as it is (error %1).").arg(status));
    alert.runModal();
    return mRelaunches;
}

// --- Windows

void SUUpdater::becomeIdle() {
    ++mRound;
    if (mCall)
        mDelegate->updaterStopsCall(*mCall);
    mFetcher.cancel();
    mStaging.reset();
    mStage = Stage::idle;
    dismiss(mProgress);
    dismiss(mPanel);
}

void SUUpdater::fail(const QString& message, const QString& reason) {
    NSLog(u"updates: %@ %@"_s, {message, reason});
    becomeIdle();
    if (mIsAsked)
        tell(message, reason, true);
}

void SUUpdater::tell(const QString& message, const QString& information, bool isError) {
    dismiss(mAlert);
    mAlert = std::make_unique<NSAlert>();
    mAlert->setAlertStyle(isError ? NSAlertStyle::critical : NSAlertStyle::informational);
    if (!isError)
        mAlert->setIcon(applicationIcon(mBundle.get()));
    mAlert->setMessageText(message);
    mAlert->setInformativeText(information);
    mAlert->window().setWindowTitle(titleText(mBundle->name()));
    mAlert->show([this] { dismiss(mAlert); });
    show(mAlert->window());
}

void SUUpdater::showProgress(const QString& activity) {
    mProgress = std::make_unique<UpdateProgressPanel>(mBundle->name(), activity);
    connect(mProgress.get(), &QDialog::finished, this, &SUUpdater::becomeIdle);
    show(*mProgress);
}

void SUUpdater::show(NSPanel& panel) {
    panel.show();
    panel.raise();
    panel.activateWindow();
}

} // namespace quoddle
