// SPDX-License-Identifier: MIT
// The shell as main() puts it together, with an applet made on the spot and a script that is a C++ function.
#pragma once

#include "platform/appkit/NSApplication.h"
#include "platform/foundation/MainThread.h"
#include "runtime/AppDelegate.h"
#include "runtime/ScriptedComponent.h"
#include "window/AppKitAlertPresenter.h"
#include "window/AppletWindowController.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

namespace quoddle::test {

/// `Controller` is the class of the window's controller.
template<class Controller>
class ShellWith {
public:
    explicit ShellWith(const char* info = "KVBShowStartupScreen = NO;", const char* handlers = "run") {
        ScriptedComponent::registerComponent();
        const QString contents = mFolder.path() + QStringLiteral("/Demo.app/Contents/");
        write(contents + QStringLiteral("Info.plist"),
              "{ CFBundleName = \"A & B\"; CFBundleShortVersionString = \"1.2\"; " + QByteArray(info) + " }");
        write(contents + QStringLiteral("Resources/Scripts/main.scpt"), "FasdUAS " + QByteArray(handlers));
        AppDelegateParts parts;
        parts.application = NSApplication::sharedApplication();
        parts.alerts = &mAlerts;
        parts.mainBundle = NSBundle::bundleWithPath(mFolder.path() + QStringLiteral("/Demo.app"));
        parts.instantiateController = [this](const QString&) {
            controller = std::make_shared<Controller>();
            controller->load();
            return controller;
        };
        delegate = std::make_unique<AppDelegate>(std::move(parts));
        NSApplication::sharedApplication()->setDelegate(delegate.get());
    }
    ~ShellWith() {
        MainThread::close(); // drops the last steps of executions that nobody waited for: the delegate is about to go
        AppDelegate::cancelScripts();
        AppDelegate::waitForScripts(std::chrono::seconds(10));
        NSApplication::sharedApplication()->setDelegate(nullptr);
        ScriptedComponent::sHandlers.clear();
        MainThread::open();
    }

    void addResource(const QString& name, const QByteArray& content) {
        write(mFolder.path() + QStringLiteral("/Demo.app/Contents/Resources/") + name, content);
    }
    /// Makes the window without starting anything.
    Controller& setUp() {
        delegate->_setupApplication(false);
        return *controller;
    }
    /// Launches the applet and serves events until it has ended. Fails when it does not end within twenty seconds.
    void run() {
        QTimer guard;
        guard.setSingleShot(true);
        QObject::connect(&guard, &QTimer::timeout, &guard, [] {
            ADD_FAILURE() << "did not end";
            QCoreApplication::exit(1);
        });
        guard.start(20'000);
        NSApplication::sharedApplication()->run();
    }

    std::unique_ptr<AppDelegate> delegate;
    std::shared_ptr<Controller> controller;

private:
    static void write(const QString& path, const QByteArray& content) {
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(content);
    }
    QTemporaryDir mFolder;
    AppKitAlertPresenter mAlerts;
};

using Shell = ShellWith<AppletWindowController>;

} // namespace quoddle::test
