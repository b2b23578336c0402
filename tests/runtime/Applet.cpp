// SPDX-License-Identifier: MIT
#include "Applet.h"

#include "platform/foundation/Plist.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

namespace quoddle::test {

using namespace Qt::StringLiterals;

void FakeApplication::terminate() {
    if (!running)
        return;
    const auto reply = delegate->applicationShouldTerminate();
    constexpr const char* kNames[] = {"cancel", "now", "later"};
    log << u"terminate: %1"_s.arg(QLatin1StringView(kNames[static_cast<int>(reply)]));
    if (reply == NSApplicationTerminateReply::now)
        running = false;
}

void FakeApplication::replyToApplicationShouldTerminate(bool shouldTerminate) {
    log << u"terminate reply: %1"_s.arg(shouldTerminate);
    if (shouldTerminate)
        running = false;
}

void FakeApplication::replyToOpenOrPrint(NSApplicationDelegateReply reply, int request) {
    answered << std::pair(request, static_cast<int>(reply));
    log << u"open reply: %1"_s.arg(static_cast<int>(reply));
}

void FakeAlerts::beginSheet(const RuntimeAlert& alert, WindowController&, std::function<void()> done) {
    shown << alert;
    modal = false;
    completion = std::move(done);
}

void FakeAlerts::runModal(const RuntimeAlert& alert) {
    shown << alert;
    modal = true;
}

void FakeAlerts::dismiss() {
    if (const auto done = std::exchange(completion, {}))
        done();
}

void FakeWindowController::showProgressViewController() {
    log << u"progress"_s;
    visible = true;
    stopHidden = false;
    stopEnabled = true;
}

void FakeWindowController::showStartupViewController() {
    log << u"startup"_s;
    visible = true;
}

void FakeWindowController::showLastViewController() {
    log << u"last"_s;
    visible = AppDelegate::instance()->showStartupScreen();
}

void FakeWindowController::showWindow() {
    log << u"show"_s;
    visible = true;
}

void ManualClock::advance(double seconds) {
    const double until = mNow + seconds;
    while (mWake && *mWake <= until) {
        mNow = std::max(mNow, *mWake);
        mWake.reset();
        onWake();
    }
    mNow = std::max(mNow, until); // a callback may have moved the time on
}

struct Applet::FakeUpdater final : Updater {
    explicit FakeUpdater(QStringList& sharedLog) : log(sharedLog) {}
    void setDelegate(SUUpdaterDelegate*) override { log << u"updater"_s; }
    void checkForUpdates() override { log << u"check"_s; }
    QStringList& log;
};

namespace {

void write(const QString& path, const QByteArray& content) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(content);
}

constexpr auto kMenu =
    "({title=APPNAME; submenu=({title=\"About APPNAME, APPNAME\"; submenu=({title=\"Deep APPNAME\";});}, "
    "{title=\"Check\"; action=\"checkForUpdates:\"; id=checkForUpdatesMenuItem;}, {title=Quit; action=\"terminate:\";});})";

} // namespace

Applet::Applet(Options options) {
    ScriptedComponent::registerComponent();
    ScriptedComponent::sCalls.clear();
    const QString contents = mFolder.path() + u"/Demo.app/Contents/"_s;
    const QByteArray openStep = "{ CFBundleName = \"Demo\"; " + QByteArray(options.info) + " }";
    const QByteArray xml = "<plist><dict><key>KVBUseStandardOSAXEN</key>" + QByteArray(options.infoXML) + "</dict></plist>";
    write(contents + u"Info.plist"_s, *options.infoXML ? xml : openStep);
    write(contents + u"Resources/Localizable.strings"_s, options.strings);
    if (*options.editor)
        write(contents + u"Brambleworks.plist"_s, options.editor);
    if (options.handlers)
        write(contents + u"Resources/Scripts/main.scpt"_s, "FasdUAS " + QByteArray(options.handlers));
    auto clock = std::make_unique<ManualClock>();
    mClock = clock.get();
    mUpdater = std::make_unique<FakeUpdater>(setup);
    application.menu = *NSMenu::menuFromPropertyList(*Plist::read(kMenu));

    AppDelegateParts parts;
    parts.application = &application;
    parts.alerts = &alerts;
    parts.mainBundle = NSBundle::bundleWithPath(mFolder.path() + u"/Demo.app"_s);
    parts.instantiateController = [this](const QString& identifier) {
        controllerIdentifier = identifier;
        window = std::make_shared<FakeWindowController>(windowLog);
        AppDelegate::instance()->setMainWindowController(window);
        return window;
    };
    parts.performs = std::make_unique<DelayedPerforms>(std::move(clock));
    mPerforms = parts.performs.get();
    parts.installOSAXEventHandlers = [this](AppDelegate&) { setup << u"osax"_s; };
    parts.chooseTestApplet = [this] { return chooseTestApplet ? chooseTestApplet() : QString(); };
    parts.isLaunchedInsteadOfRun = options.insteadOfRun;
    parts.areOthersAnswered = options.areOthersAnswered;
    parts.images = options.images;
    parts.hookStopper = options.hookStopper;
    parts.updater = mUpdater.get();
    delegate = std::make_unique<AppDelegate>(std::move(parts));
    application.delegate = delegate.get();
}

Applet::~Applet() {
    settle();
    ScriptedComponent::sHandlers.clear();
}

bool Applet::eventually(const std::function<bool()>& condition) {
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < 10'000)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
    return condition();
}

void Applet::settle() {
    // Executions that have left the queue have posted their finishing steps, which may begin new ones, so a few turns are needed.
    for (int turn = 0; turn < 3; ++turn) {
        EXPECT_TRUE(eventually([] { return AppDelegate::waitForScripts(std::chrono::milliseconds(0)); }));
        QCoreApplication::processEvents();
    }
}

void Applet::launch(const QStringList& files) {
    delegate->applicationWillFinishLaunching();
    if (!files.isEmpty())
        delegate->applicationOpenFiles(files);
    if (application.running)
        delegate->applicationDidFinishLaunching();
}

void Applet::closeWindow() {
    NSNotificationCenter::defaultCenter().postNotification(NSWindowWillCloseNotification, window->windowObject());
    window->visible = false;
    if (application.running && delegate->applicationShouldTerminateAfterLastWindowClosed())
        application.terminate();
}

} // namespace quoddle::test
