// SPDX-License-Identifier: MIT
// One applet under test: a bundle made on the spot, a delegate with fakes for everything that would be seen, and a clock that the test
// moves.
#pragma once

#include "platform/foundation/QtPrinters.h"
#include "runtime/AppDelegate.h"
#include "ScriptedComponent.h"

#include <QTemporaryDir>

namespace quoddle::test {

/// Takes the place of the framework: asks the delegate as the framework does, and ends by not running any more.
class FakeApplication final : public SharedApplication {
public:
    NSApplicationDelegate* delegate = nullptr;
    std::shared_ptr<NSMenu> menu;
    bool running = true;
    bool active = false;
    int refusals = 0;
    int asked = 0;                       ///< the number of the open request that is being made
    QList<std::pair<int, int>> answered; ///< numbers of open requests, with the replies
    QStringList log;                     ///< "terminate: now", "terminate reply: 1", "open reply: 0"

    void terminate() override;
    void replyToApplicationShouldTerminate(bool shouldTerminate) override;
    int openRequest() const override { return asked; }
    void replyToOpenOrPrint(NSApplicationDelegateReply reply, int request) override;
    void terminationWasRefused() override { ++refusals; }
    bool isRunning() const override { return running; }
    bool isActive() const override { return active; }
    void activate() override { active = true; }
    std::shared_ptr<NSMenu> mainMenu() const override { return menu; }
    bool validatesAction(const QString& action) const override { return action == QLatin1StringView("terminate:"); }
};

class FakeAlerts final : public AlertPresenter {
public:
    QList<RuntimeAlert> shown;
    bool modal = false;               ///< whether the last alert was modal
    std::function<void()> completion; ///< of the sheet that is shown

    void beginSheet(const RuntimeAlert& alert, WindowController& onWindowOf, std::function<void()> done) override;
    void runModal(const RuntimeAlert& alert) override;
    void dismiss();
};

class FakeWindowController final : public WindowController {
public:
    QStringList& log;
    bool visible = false;
    bool stopHidden = false;
    bool stopEnabled = false;

    explicit FakeWindowController(QStringList& sharedLog) : log(sharedLog) {}
    void showProgressViewController() override;
    void showStartupViewController() override;
    void showLastViewController() override;
    bool stopButtonHidden() const override { return stopHidden; }
    void setStopButtonHidden(bool hidden) override { stopHidden = hidden; }
    bool stopButtonEnabled() const override { return stopEnabled; }
    void setStopButtonEnabled(bool enabled) override { stopEnabled = enabled; }
    bool isWindowVisible() const override { return visible; }
    void showWindow() override;
    const void* windowObject() const override { return this; }
};

class ManualClock final : public Clock {
public:
    double now() const override { return mNow; }
    void wakeAt(double time) override { mWake = time; }
    void advance(double seconds);

private:
    double mNow = 0;
    std::optional<double> mWake;
};

class Applet {
public:
    struct Options {
        const char* handlers = "run"; ///< the script's handlers; null: there is no script
        const char* info = "";        ///< further entries of the Info.plist in the OpenStep form
        /// the value of KVBUseStandardOSAXEN in the XML form, which has numbers; the Info.plist then has no other entries
        const char* infoXML = "";
        const char* editor = ""; ///< the contents of the editor's settings file; empty: there is no file
        const char* strings = "RuntimeErrorInformation = \"because: %@\";";
        ImageSource* images = nullptr;
        HookStopper* hookStopper = nullptr;
        bool insteadOfRun = false;                        ///< whether the applet is launched for an event in place of the run
        std::function<bool(bool)> areOthersAnswered = {}; ///< empty: they always are
    };
    explicit Applet(Options options);
    ~Applet();

    FakeApplication application;
    FakeAlerts alerts;
    std::function<QString()> chooseTestApplet; ///< answers the user's choice; empty: the user cancels
    QStringList windowLog;                     ///< "progress", "startup", "last", "show", in the order of the calls
    QString controllerIdentifier;
    QStringList setup; ///< "osax", "updater"
    std::shared_ptr<FakeWindowController> window;
    std::unique_ptr<AppDelegate> delegate;

    /// Makes the delegate's calls of a launch: will finish, open the files if there are any, did finish.
    void launch(const QStringList& files = {});
    /// Processes events until nothing runs and nothing waits for the main thread.
    void settle();
    /// Processes events until the condition holds, at most for ten seconds; answers whether it holds.
    static bool eventually(const std::function<bool()>& condition);
    int pendingIdleCalls() const { return mPerforms->pendingCount(); }
    void advance(double seconds) { mClock->advance(seconds); }
    bool ended() const { return !application.running; }
    void closeWindow();

private:
    struct FakeUpdater;
    QTemporaryDir mFolder;
    std::unique_ptr<FakeUpdater> mUpdater;
    ManualClock* mClock = nullptr;
    DelayedPerforms* mPerforms = nullptr;
};

} // namespace quoddle::test
