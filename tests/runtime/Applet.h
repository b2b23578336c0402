// SPDX-License-Identifier: MIT
// One applet under test: a bundle made on the spot, a delegate on fakes for everything that would be seen, time under control.
#pragma once

#include "platform/foundation/QtPrinters.h"
#include "runtime/AppDelegate.h"
#include "ScriptedComponent.h"

#include <QTemporaryDir>

namespace quoddle::test {

/// Stands for the framework: asks the delegate as the framework does, and ends by no longer running.
class FakeApplication final : public SharedApplication {
public:
    NSApplicationDelegate* delegate = nullptr;
    std::shared_ptr<NSMenu> menu;
    bool running = true;
    bool active = false;
    int refusals = 0;
    int asked = 0;                       ///< the open request that is being made
    QList<std::pair<int, int>> answered; ///< open requests and replies
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
    bool modal = false;               ///< whether the last one was
    std::function<void()> completion; ///< of the sheet that is up

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
        const char* handlers = "run"; ///< of the script; null: there is no script
        const char* info = "";        ///< further entries of the Info.plist, OpenStep form
        const char* infoXML = "";     ///< the value of KVBUseStandardOSAXEN in the XML form, which has numbers; no other entries then
        const char* editor = "";      ///< the editor's settings file; none when empty
        const char* strings = "RuntimeErrorInformation = \"because: %@\";";
        ImageSource* images = nullptr;
        HookStopper* hookStopper = nullptr;
        bool insteadOfRun = false;                        ///< launched for an event in place of the run
        std::function<bool(bool)> areOthersAnswered = {}; ///< nothing: yes
    };
    explicit Applet(Options options);
    ~Applet();

    FakeApplication application;
    FakeAlerts alerts;
    std::function<QString()> chooseTestApplet; ///< what the user answers; nothing: cancels
    QStringList windowLog;                     ///< "progress", "startup", "last", "show", in order
    QString controllerIdentifier;
    QStringList setup; ///< "osax", "updater"
    std::shared_ptr<FakeWindowController> window;
    std::unique_ptr<AppDelegate> delegate;

    /// Will finish, files if any, did finish.
    void launch(const QStringList& files = {});
    /// Until nothing runs and nothing waits for the main thread.
    void settle();
    /// Turns the event loop until the condition holds, two seconds at most; answers whether it does.
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
