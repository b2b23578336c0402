// SPDX-License-Identifier: MIT
// Files for the open handler: held back, refused, or run as one event.
#include "runtime/AppDelegate.h"

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

NSApplicationDelegateReply openReply(const QXOSAErrorInfoRef& error) {
    if (!error)
        return NSApplicationDelegateReply::success;
    return error->error() == userCanceledErr ? NSApplicationDelegateReply::cancel : NSApplicationDelegateReply::failure;
}

} // namespace

void AppDelegate::takeTestApplet() {
    // As it is written, without a look at the home folder: found only where there is a folder called "~".
    auto applet = NSBundle::bundleWithPath(u"~/Desktop/KTest.app"_s);
    if (!applet) {
        const QString chosen = mParts.chooseTestApplet ? mParts.chooseTestApplet() : QString();
        if (chosen.isEmpty()) {
            terminate();
            return;
        }
        applet = NSBundle::bundleWithPath(chosen);
    }
    if (applet)
        setMainBundle(applet);
}

void AppDelegate::applicationOpenFiles(const QStringList& filenames) {
    if (filenames.value(0) == kTestModeFilename) {
        takeTestApplet();
        return;
    }
    if (!isInitialized()) {
        _setupApplication(true);
        if (showStartupScreen()) {
            setFilenamesToOpen(filenames); // for the launch decision or the Run button; the request stays unanswered until then
            return;
        }
    }
    setScriptStarted(true);
    if (!ask(mainScript(), &QXOSAID::hasOpenHandler)) { // whether or not the script is resuming
        const RuntimeAlert alert{localized(u"NoOpenHandlerMessage"_s), localized(u"NoOpenHandlerInformation"_s),
                                 localized(u"QuitButton"_s)};
        if (windowController().isWindowVisible())
            mParts.alerts->beginSheet(alert, windowController(), [this] { terminate(); });
        else
            terminate(); // nobody is looking: no alert
        mParts.application->replyToOpenOrPrint(NSApplicationDelegateReply::cancel);
        return;
    }
    const auto files = NSAppleEventDescriptor::listDescriptor();
    for (const QString& filename : filenames) {
        if (!isFileAcceptable(filename)) {
            mParts.application->replyToOpenOrPrint(NSApplicationDelegateReply::failure); // all or nothing
            return;
        }
        files->insertDescriptor(NSAppleEventDescriptor::descriptorWithFileURL(filename), 0);
    }
    const auto event = NSAppleEventDescriptor::appleEventWithEventClass("aevt"_4cc, "odoc"_4cc);
    event->setParamDescriptor(files, "----"_4cc);
    _respondToEventInBackground(event, [this](const QXOSAIDRef&, const QXOSAErrorInfoRef& error) {
        mParts.application->replyToOpenOrPrint(openReply(error));
        if (!isStayOpenScript())
            terminate();
        else if (hasOpenHandler())
            windowController().showLastViewController();
    });
}

} // namespace quoddle
