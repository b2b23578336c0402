// SPDX-License-Identifier: MIT
// The delegate itself, the applet's configuration and its script.
#include "runtime/AppDelegate.h"

#include "engine/QXOSAException.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/NSLog.h"
#include "platform/osa/KeptScript.h"

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

std::atomic<AppDelegate*> sharedDelegate = nullptr;

class NoWindow final : public WindowController {
public:
    bool isWindowVisible() const override { return false; }
    void showWindow() override {}
    const void* windowObject() const override { return nullptr; }
};

} // namespace

AppDelegate* AppDelegate::instance() {
    return sharedDelegate;
}

AppDelegate::AppDelegate(AppDelegateParts parts) : mParts(std::move(parts)) {
    setMainBundle(mParts.mainBundle ? mParts.mainBundle : NSBundle::mainBundle());
    sharedDelegate = this;
}

AppDelegate::~AppDelegate() {
    NSNotificationCenter::defaultCenter().removeObserver(this);
    NSAppleEventManager::sharedAppleEventManager().removeEventHandlerForEventClass("ascr"_4cc, "psbr"_4cc);
    removeOutsideEvents();
    mParts.performs->cancelPreviousPerformRequests(this);
    if (mMainScript)
        mMainScript->component()->setDelegate(nullptr);
    sharedDelegate = nullptr;
}

bool AppDelegate::isStayOpenScript() const {
    return boolValue(mainBundle()->infoDictionary().value(u"KVBStayOpen"_s));
}

bool AppDelegate::showStartupScreen() const {
    const QVariant shown = mainBundle()->infoDictionary().value(u"KVBShowStartupScreen"_s);
    return !shown.isValid() || boolValue(shown);
}

QXOSAIDRef AppDelegate::mainGenericScript() {
    if (mMainGenericScript)
        return mMainGenericScript;
    const QXOSAComponentRef generic = QXOSAComponent::genericComponent();
    if (!generic)
        return nullptr;
    const QString path = mainBundle()->pathForResource(u"main"_s, u"scpt"_s, u"Scripts"_s);
    mMainGenericScript = QXOSAID::QXOSAIDWithComponent(generic);
    try {
        const QString kept = path.isEmpty() ? path : QString::fromStdString(fileOfLastRun(path.toStdString()));
        mMainGenericScript->loadFileURL(path.isEmpty() ? QUrl() : QUrl::fromLocalFile(kept), kOSAModeCompileIntoContext);
        mMainGenericScript->setScriptLocation(mainBundle()->bundleURL());
    } catch (const QXOSAException&) {
        // A script that cannot be loaded counts as one without handlers; the launch decision deals with that.
    }
    return mMainGenericScript;
}

QXOSAIDRef AppDelegate::mainScript() {
    if (mMainScript)
        return mMainScript;
    Q_ASSERT(MainThread::isCurrent());
    const QXOSAIDRef generic = mainGenericScript();
    if (!generic || !generic->isValid())
        return nullptr;
    try {
        mMainScript = generic->realFromGeneric();
        if (mMainScript)
            prepareMainScript();
    } catch (const QXOSAException& exception) {
        NSLog(u"mainScript: %@"_s, {exception.reason()});
    }
    return mMainScript;
}

void AppDelegate::storeProperties() {
    const QString path = mainBundle()->pathForResource(u"main"_s, u"scpt"_s, u"Scripts"_s);
    try {
        if (!mMainScript || path.isEmpty())
            return;
        setAppletIsQuitting(false, mMainScript);
        if (!mMainScript->getInfoForSelector("modi"_4cc))
            return;
        const NSAppleEventDescriptorRef stored = mMainScript->store();
        const OSStatus status = stored ? keepScript(path.toStdString(), stored->aeDesc().data()) : errOSAGeneralError;
        if (status != noErr)
            NSLog(u"the properties could not be stored: %d"_s, {status});
    } catch (const QXOSAException& exception) {
        NSLog(u"the properties could not be stored: %@"_s, {exception.reason()});
    }
}

/// Begins to watch whether properties change; the one that each execution sets is there before. What a component cannot tell is not kept.
void AppDelegate::watchProperties() {
    try {
        mMainScript->setInfo(0, "modi"_4cc);
        setAppletIsQuitting(false, mMainScript);
        mMainScript->setInfo(0, "modi"_4cc);
    } catch (const QXOSAException&) {
    }
}

void AppDelegate::prepareMainScript() {
    mMainScript->component()->setDelegate(this);
    watchProperties();
    const QXOSAIDRef asObj = mMainScript->propertyForPropertyID("ascr"_4cc);
    if (!asObj)
        return;
    const std::int32_t totalSteps = hasOpenHandler() ? -1 : 0; // a droplet starts with an indeterminate bar
    asObj->setDescriptorForPropertyID(NSAppleEventDescriptor::descriptorWithInt32(totalSteps), "ppgt"_4cc);
    asObj->setDescriptorForPropertyID(NSAppleEventDescriptor::descriptorWithInt32(0), "ppgc"_4cc);
    const QXOSAIDRef emptyText = valueOf(NSAppleEventDescriptor::descriptorWithString(u""), asObj);
    asObj->setValueForPropertyID(emptyText, "ppgd"_4cc);
    asObj->setValueForPropertyID(emptyText, "ppga"_4cc);
}

QXOSAIDRef AppDelegate::valueOf(const NSAppleEventDescriptorRef& descriptor, const QXOSAIDRef& script) {
    const QXOSAIDRef value = QXOSAID::QXOSAIDWithComponent(script->component());
    value->setDescriptor(descriptor);
    return value;
}

bool AppDelegate::ask(const QXOSAIDRef& script, bool (QXOSAID::*query)()) {
    try {
        return script && (script.get()->*query)();
    } catch (const QXOSAException& exception) {
        NSLog(u"hasHandler: %@"_s, {exception.reason()});
        return false;
    }
}

// QUIRK: a script that has continued its run goes on resuming when that run is over, and has no handlers from then on: it gets no idle
// calls, and its quit handler is not called. Users rely on being able to end such an applet.
bool AppDelegate::hasHandler(bool (QXOSAID::*query)()) {
    const QXOSAIDRef script = mainScript();
    return script && !script->component()->isResuming() && ask(script, query);
}

NSMenuItem* AppDelegate::checkForUpdatesMenuItem() const {
    const auto menu = mParts.application->mainMenu();
    return menu ? menu->itemWithIdentifier(u"checkForUpdatesMenuItem"_s) : nullptr;
}

WindowController& AppDelegate::windowController() const {
    static NoWindow none;
    const auto controller = mainWindowController(); // this object keeps the controller alive
    return controller ? *controller : none;
}

QString AppDelegate::localized(const QString& key) const {
    return mainBundle()->localizedString(key);
}

} // namespace quoddle
