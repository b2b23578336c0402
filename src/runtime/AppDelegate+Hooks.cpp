// SPDX-License-Identifier: MIT
// Handlers and properties with fixed names by which a script shapes its applet: which files it takes, the images and prompts of the
// droplet's panes, the answers to the updater. They are called directly, on the main thread, beside whatever runs on the script queue.
#include "runtime/AppDelegate.h"

#include "engine/NSAppleEventDescriptor+Additions.h"
#include "engine/QXOSAException.h"
#include "platform/foundation/NSLog.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr FourCharCode kImageTypes[] = {"GIF "_4cc, "JPEG"_4cc, "PDF "_4cc, "PNG "_4cc, "TIFF"_4cc,
                                        "gif "_4cc, "jpeg"_4cc, "pdf "_4cc, "png "_4cc, "tiff"_4cc};

const QString kAcceptanceHook = u"appletfileisacceptable"_s;

constexpr double kHookPatience = 1;     // seconds until the user is offered to stop a hook
constexpr double kEventInterval = 0.01; // seconds between two turns of the main thread's events while a hook runs

/// The path of the file; empty when the descriptor names none.
QString localPath(const NSAppleEventDescriptorRef& fileReference) {
    const auto path = fileReference ? fileReference->fileURLValue() : std::nullopt;
    return path ? QString::fromStdString(*path) : QString();
}

/// Answers the questions of a screen reader for some milliseconds. It asks hundreds of small questions, each when the one before has been
/// answered; with one turn of the event loop for each, describing a window would take seconds.
void answerScreenReader() {
    constexpr int kNextQuestion = 1, kMost = 8; // milliseconds
    const QDeadlineTimer end(kMost);
    QTimer silence;
    silence.setSingleShot(true);
    silence.setTimerType(Qt::PreciseTimer);
    do {
        silence.start(kNextQuestion);
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    } while (silence.isActive() && !end.hasExpired());
}

/// The property of the name; nil when the script has none.
QXOSAIDRef propertyOf(const QXOSAIDRef& script, const QString& name) {
    return script && script->hasPropertyNamed(name) ? script->propertyForName(name) : nullptr;
}

} // namespace

/// A hook on the stack, from its call to its end. Hooks nest, because what the user does while one waits may lead to another one.
class AppDelegate::HookCall {
public:
    explicit HookCall(AppDelegate& owner) : outer(owner.mHook), depth(outer ? outer->depth + 1 : 0), mOwner(owner) {
        lastTurn = owner.mParts.performs->now();
        if (!outer)
            owner.mHookBegin = lastTurn;
        owner.mHook = this;
    }
    ~HookCall() {
        mOwner.mHook = outer;
        mOwner.mHookWasStopped = isStopped;
        if (!outer && mOwner.mParts.hookStopper)
            mOwner.mParts.hookStopper->dismiss();
    }
    HookCall(const HookCall&) = delete;
    HookCall& operator=(const HookCall&) = delete;

    HookCall* const outer;
    const int depth;
    double lastTurn; // time of the last turn of the main thread's events, by the clock of the performs
    bool isStopped = false;

private:
    AppDelegate& mOwner;
};

int AppDelegate::hookDepth() const {
    return mHook ? mHook->depth + 1 : 0;
}

void AppDelegate::stopHook(int depth) {
    for (HookCall* call = mHook; call; call = call->outer)
        if (call->depth == depth)
            call->isStopped = true;
}

void AppDelegate::hookDidYield() {
    if (!mHook || mHook->isStopped)
        return;
    const double now = mParts.performs->now();
    if (now - mHook->lastTurn < kEventInterval)
        return;
    mHook->lastTurn = now;
    offerToStopHook();
    QCoreApplication::processEvents();
    if (QAccessible::isActive())
        answerScreenReader();
}

void AppDelegate::offerToStopHook() {
    if (!mParts.hookStopper || mIsDragging)
        return;
    // While the hook itself asks the user the time stands still.
    if (isDisplayingPanel() && !_isRespondingToScript()) {
        mHookBegin = mParts.performs->now();
        mParts.hookStopper->dismiss();
    } else if (mParts.performs->now() - mHookBegin >= kHookPatience) {
        mParts.hookStopper->show(mainBundle()->name(), [this] {
            for (HookCall* call = mHook; call; call = call->outer)
                call->isStopped = true;
        });
    }
}

/// Decides whether a script on the main thread has to stop. A hook ends by its own Stop or with the application, never by the Stop that is
/// meant for the handler on the script queue.
std::optional<bool> AppDelegate::isMainThreadScriptCancelled() {
    if (!mHook)
        return {};
    return mHook->isStopped || !mParts.application->isRunning();
}

std::optional<bool> AppDelegate::askHook(const QString& handlerName, const std::vector<NSAppleEventDescriptorRef>& parameters) {
    const QXOSAIDRef script = mainScript();
    try {
        if (!script || !script->hasHandlerNamed(handlerName))
            return {};
        const HookCall call(*this);
        const QXOSAIDRef answer = script->executeSubroutine(handlerName, parameters);
        const QXOSAErrorInfoRef error = script->lastError() == errOSAScriptError ? script->component()->lastErrorInfo() : nullptr;
        if (error && error->error() != noErr && error->error() != userCanceledErr) {
            _displayRuntimeError(error);
            return false;
        }
        return answer && answer->booleanValue();
    } catch (const QXOSAException& exception) {
        NSLog(u"%@: %@"_s, {handlerName, exception.reason()});
        return {};
    }
}

// --- Files

bool AppDelegate::asksAboutFiles() {
    try {
        const QXOSAIDRef script = mainScript();
        return script && script->hasHandlerNamed(kAcceptanceHook);
    } catch (const QXOSAException& exception) {
        NSLog(u"%@: %@"_s, {kAcceptanceHook, exception.reason()});
        return false;
    }
}

bool AppDelegate::isFileAcceptable(const QString& path) {
    mHookWasStopped = false; // askHook() sets it when there is such a hook
    return hasOpenHandler() && askHook(kAcceptanceHook, {NSAppleEventDescriptor::descriptorWithFileURL(path)}).value_or(true);
}

// --- Panes

QString AppDelegate::appletSearchPrompt() {
    return prompt(u"appletsearchname"_s, u"DefaultFindFilesPrompt"_s);
}

QString AppDelegate::appletDropPrompt() {
    return prompt(u"appletdropname"_s, u"DefaultDropFilesPrompt"_s);
}

QString AppDelegate::prompt(const QString& propertyName, const QString& defaultKey) {
    try {
        const QXOSAIDRef script = mainScript();
        if (const QXOSAIDRef value = propertyOf(script, propertyName); value && !value->isMissingValue())
            return stringValue(value->descriptor());
    } catch (const QXOSAException& exception) {
        NSLog(u"%@: %@"_s, {propertyName, exception.reason()});
    }
    return localized(defaultKey);
}

QImage AppDelegate::appletSearchImage() {
    return imageProperty(u"appletsearchimage"_s, {});
}

QImage AppDelegate::appletDropImage() {
    return imageProperty(u"appletdropimage"_s, mParts.images ? mParts.images->imageNamed(kMultipleDocumentsImage) : QImage());
}

QImage AppDelegate::imageProperty(const QString& propertyName, const QImage& defaultImage) {
    try {
        const QXOSAIDRef script = mainScript();
        return _imageFromValue(propertyOf(script, propertyName), defaultImage);
    } catch (const QXOSAException& exception) {
        NSLog(u"%@: %@"_s, {propertyName, exception.reason()});
        return defaultImage;
    }
}

QImage AppDelegate::_imageFromValue(const QXOSAIDRef& value, const QImage& defaultImage) {
    if (!value)
        return defaultImage;
    if (value->isMissingValue() || !mParts.images)
        return {};
    if (value->isASObjCReference()) {
        const QVariant object = value->ASObjCReference();
        if (object.typeId() == QMetaType::QString)
            return mParts.images->imageNamed(object.toString());
        if (object.typeId() == QMetaType::QUrl)
            return mParts.images->imageFile(object.toUrl().toLocalFile());
        return object.typeId() == QMetaType::QImage ? object.value<QImage>() : defaultImage;
    }
    if (value->isText())
        return mParts.images->imageNamed(value->stringValue());
    const NSAppleEventDescriptorRef descriptor = value->descriptor();
    if (value->isFile())
        return mParts.images->imageFile(localPath(descriptor));
    if (descriptor && std::find(std::begin(kImageTypes), std::end(kImageTypes), descriptor->descriptorType()) != std::end(kImageTypes))
        return mParts.images->imageWithData(descriptor->data());
    return defaultImage;
}

// --- Updates

bool AppDelegate::updaterMayCheckForUpdates() {
    return askHook(u"appletmaycheckforupdates"_s).value_or(true);
}

bool AppDelegate::updaterShouldPromptForPermissionToCheckForUpdates() {
    return askHook(u"appletupdatershouldpromptforpermissiontocheckforupdates"_s).value_or(true);
}

void AppDelegate::updaterWillInstallUpdate() {
    askHook(u"appletupdaterwillinstallupdate"_s);
}

void AppDelegate::updaterWillRelaunchApplication() {
    askHook(u"appletupdaterwillrelaunchapplication"_s);
}

} // namespace quoddle
