// SPDX-License-Identifier: MIT
// The applet shell: puts the parts together and hands control to the application framework. Nothing else knows everyone.
//
//   quoddle-shell APPLET.app [FILE…]          the applet by its path
//   APPLET.app/Contents/Linux/NAME [FILE…]    the same, as a link in the applet itself
#include "platform/additions/StandardAdditions.h"
#include "platform/ae/transport/AEApplicationLookup.h"
#include "platform/ae/transport/AESecondLaunch.h"
#include "platform/ae/transport/AETransport.h"
#include "platform/appkit/Appearance.h"
#include "platform/appkit/NSApplication.h"
#include "platform/applescript/AppleScriptComponent.h"
#include "platform/foundation/NSLog.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/foundation/Plist.h"
#include "runtime/AppDelegate.h"
#include "window/AboutPanel.h"
#include "window/AppKitAlertPresenter.h"
#include "window/AppletIconView.h"
#include "window/AppletWindowController.h"
#include "window/TestAppletPanel.h"

#include <cstdio>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTimer>

using namespace quoddle;
using namespace Qt::StringLiterals;

namespace {

constexpr int kUsageError = 2;
constexpr auto kScriptGrace = std::chrono::milliseconds(1500);

struct Invocation {
    std::shared_ptr<NSBundle> bundle;
    QStringList files;
};

Invocation invocationFrom(int argc, char** argv) {
    Invocation invocation;
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QFile::decodeName(argv[i]);
    invocation.bundle = NSBundle::bundleForExecutable(QFile::decodeName(argv[0]));
    if (!invocation.bundle && !arguments.isEmpty())
        invocation.bundle = NSBundle::bundleWithPath(arguments.takeFirst());
    for (const QString& file : std::as_const(arguments))
        invocation.files << (file == kTestModeFilename ? file : QDir::cleanPath(QFileInfo(file).absoluteFilePath()));
    return invocation;
}

bool hasDisplay() {
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
           qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}

QByteArray resource(const QString& name) {
    QFile file(u":/quoddle/"_s + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void takeIdentityOf(const NSBundle& bundle) {
    NSBundle::setMainBundle(NSBundle::bundleWithPath(bundle.bundlePath()));
    const QString identifier = bundle.bundleIdentifier().isEmpty() ? bundle.name() : bundle.bundleIdentifier();
    setUserDefaultsDomain(identifier);
    QCoreApplication::setApplicationName(bundle.name());
    QGuiApplication::setApplicationDisplayName(bundle.name());
    QGuiApplication::setDesktopFileName(u"applet-"_s + identifier);
    if (auto strings = Plist::readStrings(resource(u"en.lproj/Localizable.strings"_s)))
        NSBundle::setFallbackStrings({}, *strings);
}

std::shared_ptr<NSMenu> makeMainMenu() {
    const auto list = Plist::read(resource(u"MainMenu.plist"_s));
    if (list)
        if (auto menu = NSMenu::menuFromPropertyList(*list))
            return *menu;
    NSLog(u"main menu: cannot be read"_s);
    return nullptr;
}

AppDelegateParts makeParts(NSApplication& application, AlertPresenter& alerts) {
    AppDelegateParts parts;
    parts.application = &application;
    parts.alerts = &alerts;
    parts.mainBundle = NSBundle::mainBundle();
    parts.instantiateController = [](const QString&) {
        auto controller = std::make_shared<AppletWindowController>();
        controller->load();
        return controller;
    };
    parts.chooseTestApplet = &chooseTestApplet;
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
        std::fprintf(stderr, "quoddle-shell: %s, which runs already, was stopped before it had opened the files\n", name.constData());
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

int runApplet(NSApplication& application, const QStringList& files, AELaunchLock& lock) {
    AppKitAlertPresenter alerts;
    application.setMainMenu(makeMainMenu());
    application.setAction(u"orderFrontStandardAboutPanel:"_s, &showAboutPanel);
    AppDelegate delegate(makeParts(application, alerts));
    application.setDelegate(&delegate);
    AEInstallTransport();
    // Not before all handlers are there; the next launch waits for it.
    NSNotificationCenter::defaultCenter().addObserver(
        &application,
        [&lock](const NSNotification&) {
            listenToOthers(*NSBundle::mainBundle());
            lock.release();
        },
        NSApplicationDidFinishLaunchingNotification);
    const int status = application.run(files);

    application.setDelegate(nullptr);
    NSAppleEventManager::sharedAppleEventManager().answerSuspendedEvents();
    AEStopListening();
    standardUserDefaults().sync();
    // A quit handler may still have something to put away; a script that does not end goes with the process.
    if (!AppDelegate::waitForScripts(kScriptGrace)) {
        AppDelegate::cancelScripts();
        if (!AppDelegate::waitForScripts(kScriptGrace)) {
            std::fflush(nullptr);
            std::_Exit(status);
        }
    }
    return status;
}

} // namespace

int main(int argc, char** argv) {
    const Invocation invocation = invocationFrom(argc, argv);
    if (!invocation.bundle) {
        if (argc > 1)
            std::fprintf(stderr, "quoddle-shell: %s: no such applet\n", argv[1]);
        else
            std::fprintf(stderr, "usage: quoddle-shell APPLET.app [FILE...]\n");
        return kUsageError;
    }
    const std::string bundlePath = invocation.bundle->bundlePath().toStdString();
    AELaunchLock lock(bundlePath);
    if (AEFindRunningApplicationAtPath(bundlePath)) {
        lock.release(); // the answer may take as long as the files take
        if (const auto handedOver = AEHandOver(bundlePath, inUTF8(invocation.files)))
            return reportHandOver(*invocation.bundle, *handedOver);
    }
    if (!hasDisplay()) {
        std::fprintf(stderr, "quoddle-shell: no display\n");
        return EXIT_FAILURE;
    }
    takeIdentityOf(*invocation.bundle);
    registerAppleScriptComponent();
    installStandardAdditions();
    setApplicationPath(invocation.bundle->bundlePath().toStdString());
    NSApplication application(argc, argv);
    Appearance::applyRememberedScheme();
    // Whatever can wait until the first window is there.
    QTimer::singleShot(300, &application, [] {
        std::ignore = appletIcon();
        Appearance::followDesktop();
    });
    return runApplet(application, invocation.files, lock);
}
