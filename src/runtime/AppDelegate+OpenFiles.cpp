// SPDX-License-Identifier: MIT
// Files for the open handler: held back, refused, or run as one event.
// One decision: the script is asked about files in slices of time, so that ten thousand of them do not stop the window.
#include "runtime/AppDelegate.h"

#include <QScopedValueRollback>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr double kFirstSlice = 0.06; // seconds; enough for few files, and for any number when no script is asked about them
constexpr double kSlice = 0.008;     // seconds
constexpr double kPatience = 0.5;    // seconds until the progress pane shows that the applet is busy

NSApplicationDelegateReply openReply(const QXOSAErrorInfoRef& error) {
    if (!error)
        return NSApplicationDelegateReply::success;
    return error->error() == userCanceledErr ? NSApplicationDelegateReply::cancel : NSApplicationDelegateReply::failure;
}

} // namespace

struct AppDelegate::OpenRequest {
    OpenRequest(QStringList names, int requestNumber, double now) : filenames(std::move(names)), number(requestNumber), begin(now) {}

    const QStringList filenames;
    const int number; // the application's number for the request
    const double begin;
    const NSAppleEventDescriptorRef files = NSAppleEventDescriptor::listDescriptor(); // the accepted files
    qsizetype judged = 0;
    bool isRefused = false;
    bool isStopped = false; // the user has stopped it
    bool isShown = false;
};

void AppDelegate::takeTestApplet() {
    // QUIRK: "~" is not replaced by the home folder, so the applet is found only below a folder of that name; testers rely on being asked
    // for an applet instead.
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
            // The files are kept for the launch decision or the Run button; the request stays unanswered until then.
            setFilenamesToOpen(filenames);
            return;
        }
    }
    setScriptStarted(true);
    // asked of the script directly, because hasOpenHandler() is false while it is resuming
    if (!ask(mainScript(), &QXOSAID::hasOpenHandler)) {
        const RuntimeAlert alert{localized(u"NoOpenHandlerMessage"_s), localized(u"NoOpenHandlerInformation"_s),
                                 localized(u"QuitButton"_s)};
        if (windowController().isWindowVisible())
            mParts.alerts->beginSheet(alert, windowController(), [this] { terminate(); });
        else
            terminate(); // an alert would appear where nobody looks
        mParts.application->replyToOpenOrPrint(NSApplicationDelegateReply::cancel, mParts.application->openRequest());
        return;
    }
    mFilesToJudge.push_back(std::make_shared<OpenRequest>(filenames, mParts.application->openRequest(), mParts.performs->now()));
    if (mFilesToJudge.size() == 1) // later requests are judged after the first one
        judgeFilesToOpen(kFirstSlice);
}

void AppDelegate::judgeFilesToOpen(double seconds) {
    // While a hook waits, this can be called again from inside it.
    if (mIsJudgingFiles || !mParts.application->isRunning())
        return;
    const QScopedValueRollback judging(mIsJudgingFiles, true);
    mJudgingDepth = hookDepth();
    const double begin = mParts.performs->now();
    while (!mFilesToJudge.empty() && mParts.application->isRunning()) {
        OpenRequest& request = *mFilesToJudge.front();
        const double now = mParts.performs->now();
        if (now - begin >= seconds) {
            if (now - request.begin >= kPatience && !request.isShown) {
                request.isShown = true;
                showProgressPane();
            }
            const QString again = u"judgeFilesToOpen"_s;
            mParts.performs->cancelPreviousPerformRequests(this, again);
            return mParts.performs->perform(
                this, again, [this] { judgeFilesToOpen(kSlice); }, 0);
        }
        if (!request.isRefused && request.judged < request.filenames.size()) {
            const QString filename = request.filenames.at(request.judged++);
            // stopJudgingFiles() may have refused the request meanwhile
            request.isRefused = !isFileAcceptable(filename) || request.isRefused;
            if (!request.isRefused)
                request.files->insertDescriptor(NSAppleEventDescriptor::descriptorWithFileURL(filename), 0);
            continue;
        }
        const std::shared_ptr<OpenRequest> judged = std::move(mFilesToJudge.front());
        mFilesToJudge.pop_front();
        if (!judged->isRefused)
            openAcceptedFiles(*judged);
        else
            refuseFiles(*judged);
    }
}

bool AppDelegate::stopJudgingFiles() {
    if (mFilesToJudge.empty())
        return false;
    for (const auto& request : mFilesToJudge)
        request->isRefused = request->isStopped = true;
    if (mIsJudgingFiles)
        stopHook(mJudgingDepth);
    judgeFilesToOpen(kSlice);
    return true;
}

/// Refuses all files of a request, because one of them is not acceptable or the user has stopped the judging.
void AppDelegate::refuseFiles(const OpenRequest& request) {
    const auto reply = request.isStopped ? NSApplicationDelegateReply::cancel : NSApplicationDelegateReply::failure;
    mParts.application->replyToOpenOrPrint(reply, request.number);
    if (_isRespondingToScript())
        return; // the end of the run removes the progress pane
    if (request.isStopped)
        afterOpening();
    else // removes the progress pane that a launch for these files has shown
        windowController().showLastViewController();
}

void AppDelegate::afterOpening() {
    if (!mFilesToJudge.empty())
        showProgressPane();
    else if (!isStayOpenScript())
        terminate();
    else if (hasOpenHandler())
        windowController().showLastViewController();
}

void AppDelegate::openAcceptedFiles(const OpenRequest& request) {
    const auto event = NSAppleEventDescriptor::appleEventWithEventClass("aevt"_4cc, "odoc"_4cc);
    event->setParamDescriptor(request.files, "----"_4cc);
    _respondToEventInBackground(event, [this, number = request.number](const QXOSAIDRef&, const QXOSAErrorInfoRef& error) {
        mParts.application->replyToOpenOrPrint(openReply(error), number);
        afterOpening();
    });
}

} // namespace quoddle
