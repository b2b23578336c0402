// SPDX-License-Identifier: MIT
// The parts that the runtime is built on: the application, the ways to show something, and the parts of the shell in the layers above.
// One decision: the runtime names an operation and knows no widget, no dialog and no updater. A part may be absent; the comments say how
// the runtime then behaves.
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
    /// Shows an alert as a sheet on the applet's window and returns at once; the completion is called when the alert has been dismissed.
    virtual void beginSheet(const RuntimeAlert& alert, WindowController& onWindowOf, std::function<void()> completion) = 0;
    /// Shows an alert and returns when it has been dismissed.
    virtual void runModal(const RuntimeAlert& alert) = 0;
};

/// The name of the system's picture of several documents.
inline const QString kMultipleDocumentsImage = QStringLiteral("NSMultipleDocuments");

/// The source of the images that scripts name. Such images may come from anybody; too large or damaged ones count as absent.
class ImageSource {
public:
    virtual ~ImageSource() = default;
    /// The image of the name; null when there is none, as for the other functions.
    virtual QImage imageNamed(const QString& name) = 0;
    virtual QImage imageFile(const QString& path) = 0;
    virtual QImage imageWithData(const std::string& data) = 0;
};

/// Lets the user end a hook that keeps the main thread busy for long.
class HookStopper {
public:
    virtual ~HookStopper() = default;
    /// Shows, without taking the keyboard, that the application of that name waits for its script; does nothing while that is shown. `stop`
    /// is called when the user wants the hook to end.
    virtual void show(const QString& applicationName, std::function<void()> stop) = 0;
    /// Hides what is shown; `stop` is not called any more.
    virtual void dismiss() = 0;
};

class Updater {
public:
    virtual ~Updater() = default;
    /// Sets the delegate, which is not owned; null: no delegate.
    virtual void setDelegate(SUUpdaterDelegate* delegate) = 0;
    virtual void checkForUpdates() = 0;
};

struct AppDelegateParts {
    /// Required; outlives the delegate.
    SharedApplication* application = nullptr;
    /// Required; outlives the delegate.
    AlertPresenter* alerts = nullptr;
    /// Required. Makes one of the two window controllers ("dropletWindowController", "appletWindowController") and loads its window, so
    /// that it has registered itself with AppDelegate::setMainWindowController().
    std::function<std::shared_ptr<WindowController>(const QString& identifier)> instantiateController;
    /// The applet; null: the process's main bundle.
    std::shared_ptr<NSBundle> mainBundle;
    /// The clock and timers of the delegate.
    std::unique_ptr<DelayedPerforms> performs = std::make_unique<DelayedPerforms>();

    /// Whether a script or another application has launched the applet, not the user.
    bool isLaunchedByOther = false;
    /// Whether another application has launched the applet for an event that takes the place of the run.
    bool isLaunchedInsteadOfRun = false;
    /// Whether the other applications that sent something to the applet have their answers. An applet whose work is done ends by itself
    /// only when this is true. `isEndCertain` tells that the script cannot refuse. When empty, the answer is true.
    std::function<bool(bool isEndCertain)> areOthersAnswered;

    /// The images that scripts name; outlives the delegate. Null: there are no images.
    ImageSource* images = nullptr;
    /// Installs the applet's own dialog commands. When empty, scripts get the standard ones.
    std::function<void(AppDelegate&)> installOSAXEventHandlers;
    /// Lets the user choose the applet for the test mode; answers its path, empty when the choice was cancelled. When empty, the choice
    /// counts as cancelled.
    std::function<QString()> chooseTestApplet;
    /// Outlives the delegate. Null: a hook ends by itself or not at all.
    HookStopper* hookStopper = nullptr;
    /// Outlives the delegate. Null: there is no menu item for updates.
    Updater* updater = nullptr;
};

} // namespace quoddle
