// SPDX-License-Identifier: MIT
// Files for the open handler: held back, refused, or run as one event.
// One decision: the script is asked about files in slices of time, so that ten thousand of them do not stop the window.
#include "runtime/AppDelegate.h"

#include <QScopedValueRollback>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

// Seconds. Few files, or a script that is not asked, are through before the first slice ends.
constexpr double kFirstSlice = 0.06;
constexpr double kSlice = 0.008;
constexpr double kPatience = 0.5; // until the progress pane shows that the applet is busy

NSApplicationDelegateReply openReply(const QXOSAErrorInfoRef& error) {
    if (!error)
        return NSApplicationDelegateReply::success;
    return error->error() == userCanceledErr ? NSApplicationDelegateReply::cancel : NSApplicationDelegateReply::failure;
}

} // namespace

struct AppDelegate::OpenRequest {
    OpenRequest(QStringList names, int requestNumber, double now) : filenames(std::move(names)), number(requestNumber), begin(now) {}

    const QStringList filenames;
    const int number; // of the application
    const double begin;
    const NSAppleEventDescriptorRef files = NSAppleEventDescriptor::listDescriptor(); // those accepted
    qsizetype judged = 0;
    bool isRefused = false;
    bool isStopped = false; // by the user
    bool isShown = false;
};

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
        mParts.application->replyToOpenOrPrint(NSApplicationDelegateReply::cancel, mParts.application->openRequest());
        return;
    }
    mFilesToJudge.push_back(std::make_shared<OpenRequest>(filenames, mParts.application->openRequest(), mParts.performs->now()));
    if (mFilesToJudge.size() == 1) // the others have their turn when the first one is through
        judgeFilesToOpen(kFirstSlice);
}

void AppDelegate::judgeFilesToOpen(double seconds) {
    if (mIsJudgingFiles || !mParts.application->isRunning()) // a hook waits for something, and this comes in between
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
            request.isRefused = !isFileAcceptable(filename) || request.isRefused; // the user may have stopped the whole meanwhile
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

/// One file that is not acceptable refuses them all.
void AppDelegate::refuseFiles(const OpenRequest& request) {
    const auto reply = request.isStopped ? NSApplicationDelegateReply::cancel : NSApplicationDelegateReply::failure;
    mParts.application->replyToOpenOrPrint(reply, request.number);
    if (_isRespondingToScript())
        return; // the end of the run puts its pane away
    if (request.isStopped)
        afterOpening();
    else // a launch for these files has brought the progress pane up
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
