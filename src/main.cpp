// SPDX-License-Identifier: MIT
// The applet shell: puts the parts together and hands control to the application framework. Nothing else knows everyone.
//
//   quoddle-shell APPLET.app [FILE…]          the applet by its path
//   quoddle-shell --activated APPLET.app      the same, started by the session bus for a request that then comes over it
//   APPLET.app/Contents/Linux/NAME [FILE…]    the same, as a link in the applet itself
#include "dialogs/AppDelegate+StandardAdditions.h"
#include "droplet/DropletWindowController.h"
#include "platform/additions/Interaction.h"
#include "platform/additions/StandardAdditions.h"
#include "platform/ae/transport/AEApplicationLookup.h"
#include "platform/ae/transport/AEClient.h"
#include "platform/ae/transport/AELaunching.h"
#include "platform/ae/transport/AERunningApplications.h"
#include "platform/ae/transport/AESecondLaunch.h"
#include "platform/ae/transport/AETransport.h"
#include "platform/appkit/Appearance.h"
#include "platform/appkit/ApplicationEnd.h"
#include "platform/appkit/DesktopApplication.h"
#include "platform/appkit/FontLoading.h"
#include "platform/appkit/NSApplication.h"
#include "platform/applescript/AppleScriptComponent.h"
#include "platform/base/ProgramMain.h"
#include "platform/base/Text.h"
#include "platform/clipboard/QtClipboard.h"
#include "platform/foundation/DesktopEntry.h"
#include "platform/foundation/NSLog.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/foundation/Plist.h"
#include "platform/foundation/Translations.h"
#include "platform/panels/PresentOnMainThread.h"
#include "platform/updater/SUUpdater.h"
#include "runtime/AppDelegate.h"
#include "window/AppKitAlertPresenter.h"
#include "window/AppletIconView.h"
#include "window/AppletImages.h"
#include "window/AppletPanels.h"
#include "window/AppletWindowController.h"
#include "window/HookStopPanel.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTimer>

using namespace quoddle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int kUsageError = 2;
constexpr const char* kUsage =
    "usage: quoddle-shell APPLET.app [FILE...]\n\n"
    "Runs an applet bundle, whether it was made here or on a Mac, and opens FILEs with it. One that runs already gets the files.\n";
constexpr auto kActivationPatience = std::chrono::seconds(5);
constexpr auto kFirstWindowTime = std::chrono::milliseconds(300);
constexpr auto kScriptGrace = std::chrono::milliseconds(1500);

struct Invocation {
    std::shared_ptr<NSBundle> bundle;
    QStringList files;
    bool isActivated = false; // the files come over the session bus
    AELaunchReason reason = AELaunchReason::none;
};

Invocation invocationFrom(int argc, char** argv) {
    Invocation invocation;
    invocation.reason = AETakeLaunchReason();
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QFile::decodeName(argv[i]);
    invocation.bundle = NSBundle::bundleForExecutable(QFile::decodeName(argv[0]));
    if (!invocation.bundle && arguments.size() > 1 && arguments.first() == "--activated"_L1) {
        invocation.isActivated = true;
        arguments.removeFirst();
    }
    if (!invocation.bundle && !arguments.isEmpty())
        invocation.bundle = NSBundle::bundleWithPath(arguments.takeFirst());
    for (const QString& file : std::as_const(arguments))
        invocation.files << (file == kTestModeFilename ? file : QDir::cleanPath(QFileInfo(file).absoluteFilePath()));
    return invocation;
}

QByteArray resource(const QString& name) {
    QFile file(u":/quoddle/"_s + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void takeIdentityOf(const std::shared_ptr<NSBundle>& bundle) {
    NSBundle::setMainBundle(bundle);
    setUserDefaultsDomain(bundle->bundleIdentifier().isEmpty() ? bundle->name() : bundle->bundleIdentifier());
    QCoreApplication::setApplicationName(bundle->name()); // as the display name too, which would be added to the title of every dialog
    QGuiApplication::setDesktopFileName(desktopNameForBundle(*bundle));
}

/// Puts the titles, which are keys at first, into the user's language.
void localizeTitles(NSMenu& menu) {
    for (const auto& item : menu.itemArray()) {
        if (!item->title().isEmpty())
            item->setTitle(NSBundle::mainBundle()->localizedString(item->title(), {}, u"MainMenu"_s));
        if (item->submenu())
            localizeTitles(*item->submenu());
    }
}

std::shared_ptr<NSMenu> makeMainMenu() {
    const auto list = Plist::read(resource(u"MainMenu.plist"_s));
    if (list)
        if (auto menu = NSMenu::menuFromPropertyList(*list)) {
            localizeTitles(**menu);
            return *menu;
        }
    NSLog(u"main menu: cannot be read"_s);
    return nullptr;
}

template<class Controller>
std::shared_ptr<WindowController> loaded() {
    auto controller = std::make_shared<Controller>();
    controller->load();
    return controller;
}

/// There once the runtime wants it, which is when the bundle names a feed.
class AppletUpdater final : public Updater {
public:
    void setDelegate(SUUpdaterDelegate* delegate) override {
        if (!mUpdater)
            mUpdater = std::make_unique<SUUpdater>(NSBundle::mainBundle());
        mUpdater->setDelegate(delegate);
    }
    void checkForUpdates() override {
        if (mUpdater)
            mUpdater->checkForUpdates();
    }
    /// As SUUpdater::finish().
    bool finish() { return mUpdater && mUpdater->finish(); }

private:
    std::unique_ptr<SUUpdater> mUpdater;
};

AppDelegateParts makeParts(NSApplication& application, AlertPresenter& alerts, ImageSource& images, HookStopper& hookStopper,
                           AELaunchReason reason) {
    AppDelegateParts parts;
    parts.application = &application;
    parts.alerts = &alerts;
    parts.mainBundle = NSBundle::mainBundle();
    parts.images = &images;
    parts.hookStopper = &hookStopper;
    parts.instantiateController = [](const QString& identifier) {
        return identifier == "dropletWindowController"_L1 ? loaded<DropletWindowController>() : loaded<AppletWindowController>();
    };
    parts.installOSAXEventHandlers = &installOSAXEventHandlers;
    parts.chooseTestApplet = &chooseTestApplet;
    parts.isLaunchedByOther = reason != AELaunchReason::none;
    parts.isLaunchedInsteadOfRun = reason == AELaunchReason::eventInsteadOfRun;
    parts.areOthersAnswered = &AEIsAnswered;
    return parts;
}

/// Makes the applet one that other applications find. One that cannot be found works all the same.
void listenToOthers(const NSBundle& bundle) {
    const OSStatus status =
        AEListen({0, bundle.name().toStdString(), bundle.bundleIdentifier().toStdString(), bundle.bundlePath().toStdString()});
    if (status != noErr)
        NSLog(u"Apple events from other applications cannot be received: error %@"_s, {status});
}

/// The exit status of a launch that the running applet has answered.
int reportHandOver(const NSBundle& bundle, OSStatus status) {
    if (status == noErr)
        return EXIT_SUCCESS;
    const QByteArray name = bundle.name().toLocal8Bit();
    if (status == userCanceledErr)
        std::fprintf(stderr, "quoddle-shell: %s, which runs already, has not opened the files: it was stopped, or it opens none\n",
                     name.constData());
    else
        std::fprintf(stderr, "quoddle-shell: %s, which runs already, did not open the files (%d)\n", name.constData(), status);
    return EXIT_FAILURE;
}

std::vector<std::string> inUTF8(const QStringList& files) {
    std::vector<std::string> paths;
    for (const QString& file : files)
        paths.push_back(file.toStdString());
    return paths;
}

/// An applet that the desktop does not know is not to be asked over the bus.
void listenToDesktop(NSApplication& application, DesktopApplication& desktop, bool isActivated) {
    if (!isActivated && !isInstalledOnDesktop(*NSBundle::mainBundle()))
        return;
    desktop.connectToBus();
    desktop.serve(application);
}

int reportNoDisplay() {
    std::fputs("quoddle-shell: no display\n", stderr);
    return EXIT_FAILURE;
}

QtMessageHandler sNextMessageHandler = nullptr;

/// The toolkit ends a program that cannot reach the display by aborting, which leaves a core; it is nothing out of the ordinary.
void endInsteadOfAborting(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type == QtFatalMsg)
        std::_Exit(reportNoDisplay());
    sNextMessageHandler(type, context, message);
}

/// When the display goes, the toolkit says so and calls exit(), which takes things down that other threads are still working with. So this
/// is the last moment to end the scripts and what they have started; nothing else is taken down at all.
void endWithoutDisplay(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    sNextMessageHandler(type, context, message);
    // What scripts log is no warning.
    if (type != QtWarningMsg ||
        !(message.startsWith("The X11 connection broke"_L1) || message.startsWith("The Wayland connection broke"_L1)))
        return;
    AEUnregisterApplication();
    AppDelegate::cancelScripts();
    AppDelegate::waitForScripts(kScriptGrace);
    std::fflush(nullptr);
    std::_Exit(EXIT_FAILURE);
}

/// In place of this process; returns when that fails.
void launchAfresh(const std::string& bundlePath, const std::vector<std::string>& files) {
    std::vector<const char*> words = {"quoddle-shell", bundlePath.c_str()};
    for (const std::string& file : files)
        words.push_back(file.c_str());
    words.push_back(nullptr);
    ::execv("/proc/self/exe", const_cast<char**>(words.data()));
}

int runApplet(NSApplication& application, DesktopApplication& desktop, const Invocation& invocation, AELaunchLock& lock) {
    AppKitAlertPresenter alerts;
    AppletImages images;
    HookStopPanel hookStopPanel;
    AppletUpdater updater;
    application.setMainMenu(makeMainMenu());
    application.setAction(u"orderFrontStandardAboutPanel:"_s, &showAboutPanel);
    AppDelegateParts parts = makeParts(application, alerts, images, hookStopPanel, invocation.reason);
    parts.updater = &updater;
    AppDelegate delegate(std::move(parts));
    application.setDelegate(&delegate);
    AEInstallTransport();
    if (invocation.reason != AELaunchReason::none)
        AEExpectEvent();
    // Not before all handlers are there; the next launch waits for it.
    NSNotificationCenter::defaultCenter().addObserver(
        &application,
        [&](const NSNotification&) {
            listenToOthers(*NSBundle::mainBundle());
            lock.release();
            QTimer::singleShot(invocation.isActivated ? 0ms : kFirstWindowTime, &application,
                               [&] { listenToDesktop(application, desktop, invocation.isActivated); });
        },
        NSApplicationDidFinishLaunchingNotification);
    NSNotificationCenter::defaultCenter().addObserver(
        &application, [](const NSNotification&) { AppDelegate::dropWaitingScripts(); }, NSApplicationWillTerminateNotification);
    sNextMessageHandler = qInstallMessageHandler(&endWithoutDisplay);
    const int status = application.run(invocation.files);

    application.setDelegate(nullptr);
    NSAppleEventManager::sharedAppleEventManager().answerSuspendedEvents();
    AEStopListening();
    leaveClipboardBehind();
    standardUserDefaults().sync();
    // A quit handler may still have something to put away; a script that does not end goes with the process.
    bool haveEnded = AppDelegate::waitForScripts(kScriptGrace);
    if (!haveEnded) {
        AppDelegate::cancelScripts();
        haveEnded = AppDelegate::waitForScripts(kScriptGrace);
    }
    if (haveEnded)
        delegate.storeProperties();
    if (updater.finish())
        launchAfresh(NSBundle::mainBundle()->bundlePath().toStdString(), {});
    if (!haveEnded) {
        std::fflush(nullptr);
        std::_Exit(status);
    }
    return status;
}

/// Waits for what the bus has started the applet for. False when there is nothing to do after all: to quit, or somebody else does it.
bool takeFirstRequest(DesktopApplication& desktop, Invocation& invocation) {
    desktop.connectToBus();
    if (desktop.waitForRequest(kActivationPatience) == DesktopApplication::Arrival::elsewhere)
        return false;
    const auto request = desktop.takeRequest();
    if (request && request->kind == DesktopApplication::Kind::quit)
        return false;
    if (request)
        invocation.files = request->files;
    return true;
}

/// What is said, and the exit status, when `word`, the first of the command line, is no applet; null when there is no word.
int explainUsage(const char* word) {
    const bool isAsked = word && std::string_view(word) == "--help";
    if (word && !isAsked)
        std::fprintf(stderr, "quoddle-shell: %s: no such applet\n", withoutControls(word).c_str());
    else
        std::fputs(kUsage, isAsked ? stdout : stderr);
    return isAsked ? EXIT_SUCCESS : kUsageError;
}

OSStatus askToQuit(const std::string& bundlePath) {
    const auto running = AEFindRunningApplicationAtPath(bundlePath);
    if (!running)
        return noErr;
    const AEDesc event = AEDesc::appleEvent("aevt"_4cc, "quit"_4cc, AEDesc::ofProcess(running->processID));
    return AESendToProcess(running->processID, event, nullptr, kAENoReply, kNoTimeOut, {});
}

/// The bus has started the applet, which runs already but does not have the name: it was started before it was installed, or a moment ago.
/// What was asked goes to it like any second launch.
int handOverActivation(const NSBundle& bundle, int argc, char** argv) {
    QCoreApplication application(argc, argv);
    DesktopApplication desktop(desktopNameForBundle(bundle));
    desktop.connectToBus();
    if (desktop.waitForRequest(kActivationPatience) == DesktopApplication::Arrival::elsewhere)
        return EXIT_SUCCESS;
    desktop.leaveBus();
    const std::string bundlePath = bundle.bundlePath().toStdString();
    int status = EXIT_SUCCESS;
    while (const auto request = desktop.takeRequest()) {
        if (request->kind == DesktopApplication::Kind::quit) {
            status = std::max(status, reportHandOver(bundle, askToQuit(bundlePath)));
        } else if (const auto answer = AEHandOver(bundlePath, inUTF8(request->files))) {
            status = std::max(status, reportHandOver(bundle, *answer));
        } else {
            launchAfresh(bundlePath, inUTF8(request->files));
            status = EXIT_FAILURE;
        }
    }
    return status;
}

int launch(int argc, char** argv) {
    for (int i = 0; i < argc; ++i)
        if (!isValidUTF8(argv[i])) {
            std::fprintf(stderr, "quoddle-shell: %s: the path is not UTF-8; rename it\n", withoutControls(argv[i]).c_str());
            return kUsageError;
        }
    Invocation invocation = invocationFrom(argc, argv);
    if (!invocation.bundle)
        return explainUsage(argc > 1 ? argv[1] : nullptr);
    const std::string bundlePath = invocation.bundle->bundlePath().toStdString();
    AELaunchLock lock(bundlePath);
    if (AEFindRunningApplicationAtPath(bundlePath)) {
        lock.release(); // the answer may take as long as the files take
        if (invocation.isActivated)
            return handOverActivation(*invocation.bundle, argc, argv);
        if (invocation.reason != AELaunchReason::none)
            return EXIT_SUCCESS; // whoever has launched it finds the other one
        if (const auto handedOver = AEHandOver(bundlePath, inUTF8(invocation.files)))
            return reportHandOver(*invocation.bundle, *handedOver);
    }
    if (!hasDisplay())
        return reportNoDisplay();
    const FontLoading fonts;
    takeIdentityOf(invocation.bundle);
    registerAppleScriptComponent();
    installStandardAdditions();
    setInteractionPresenter(&presentOnMainThread);
    setApplicationPath(invocation.bundle->bundlePath().toStdString());
    sNextMessageHandler = qInstallMessageHandler(&endInsteadOfAborting);
    const ApplicationPointer<NSApplication> application(new NSApplication(argc, argv));
    qInstallMessageHandler(sNextMessageHandler);
    installTranslations();
    Appearance::applyRememberedScheme();
    // Whatever can wait until the first window is there.
    QTimer::singleShot(kFirstWindowTime, application.get(), [] {
        std::ignore = appletIcon();
        Appearance::followDesktop();
    });
    DesktopApplication desktop(desktopNameForBundle(*invocation.bundle));
    if (invocation.isActivated && !takeFirstRequest(desktop, invocation))
        return EXIT_SUCCESS;
    return runApplet(*application, desktop, invocation, lock);
}

} // namespace

int main(int argc, char** argv) {
    return programMain("quoddle-shell", argc, argv, &launch);
}
