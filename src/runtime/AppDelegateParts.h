// SPDX-License-Identifier: MIT
// What the runtime is put together from: the application, the ways to show something, and the parts of the shell that stand above it.
// One decision: the runtime names an operation and knows no widget, no dialog and no updater; what is left out is not there, and the
// runtime then behaves as the comments say.
#pragma once

#include "platform/foundation/DelayedPerforms.h"
#include "platform/foundation/NSApplicationDelegate.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/SUUpdaterDelegate.h"

#include <functional>
#include <memory>
#include <string>

#include <QImage>

namespace quoddle {

class AppDelegate;
class WindowController;

/// A critical alert with one button.
struct RuntimeAlert {
    QString messageText;
    QString informativeText;
    QString buttonTitle;
};

class AlertPresenter {
public:
    virtual ~AlertPresenter() = default;
    /// As a sheet on the applet's window. Returns at once; the completion comes when the alert has been dismissed.
    virtual void beginSheet(const RuntimeAlert& alert, WindowController& onWindowOf, std::function<void()> completion) = 0;
    /// Returns when the alert has been dismissed.
    virtual void runModal(const RuntimeAlert& alert) = 0;
};

/// The name of the system's picture of several documents.
inline const QString kMultipleDocumentsImage = QStringLiteral("NSMultipleDocuments");

/// Where the images that scripts name come from. They may be anybody's: too large or damaged ones are none.
class ImageSource {
public:
    virtual ~ImageSource() = default;
    /// Null when there is none, as below.
    virtual QImage imageNamed(const QString& name) = 0;
    virtual QImage imageFile(const QString& path) = 0;
    virtual QImage imageWithData(const std::string& data) = 0;
};

/// Lets the user end a hook that keeps the main thread busy for long.
class HookStopper {
public:
    virtual ~HookStopper() = default;
    /// Shows that the application of that name waits for its script, unless it is shown already, without taking the keyboard. `stop` is
    /// called when the user wants the hook to end.
    virtual void show(const QString& applicationName, std::function<void()> stop) = 0;
    /// Nothing is shown any more, and `stop` is not called any more.
    virtual void dismiss() = 0;
};

class Updater {
public:
    virtual ~Updater() = default;
    /// Not owned; null: nobody.
    virtual void setDelegate(SUUpdaterDelegate* delegate) = 0;
    virtual void checkForUpdates() = 0;
};

struct AppDelegateParts {
    /// Required; outlives the delegate.
    SharedApplication* application = nullptr;
    /// Required; outlives the delegate.
    AlertPresenter* alerts = nullptr;
    /// Required. Makes the controller of one of the two kinds of window ("dropletWindowController", "appletWindowController"), its window
    /// loaded, so that it has registered itself with AppDelegate::setMainWindowController().
    std::function<std::shared_ptr<WindowController>(const QString& identifier)> instantiateController;
    /// The applet; null: the process's main bundle.
    std::shared_ptr<NSBundle> mainBundle;
    /// The time of idle calls.
    std::unique_ptr<DelayedPerforms> performs = std::make_unique<DelayedPerforms>();

    /// Launched by a script or another application, not by the user.
    bool isLaunchedByOther = false;
    /// Launched by another application for an event that takes the place of the run.
    bool isLaunchedInsteadOfRun = false;
    /// Asked, until it is true, before an applet whose work is done ends by itself: whether the other applications that sent it something
    /// have their answers. `isEndCertain`: the script cannot refuse. Without it: they have.
    std::function<bool(bool isEndCertain)> areOthersAnswered;

    /// Outlives the delegate. Without it there are no images.
    ImageSource* images = nullptr;
    /// Puts the in-applet dialog commands in place. Without it scripts get the standard ones.
    std::function<void(AppDelegate&)> installOSAXEventHandlers;
    /// Lets the user choose the applet for the test mode: its path, empty when the choice was cancelled. Without it the choice is
    /// cancelled.
    std::function<QString()> chooseTestApplet;
    /// Outlives the delegate. Without it a hook ends by itself or not at all.
    HookStopper* hookStopper = nullptr;
    /// Outlives the delegate. Without it there is no menu item for updates.
    Updater* updater = nullptr;
};

} // namespace quoddle
