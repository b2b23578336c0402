// SPDX-License-Identifier: MIT
#include "engine/QXOSAComponent.h"

#include "engine/NSAppleEventDescriptor+Additions.h"
#include "engine/NSAppleEventDescriptor-QXAdditions.h"
#include "engine/OSACallbacks.h"
#include "engine/QXOSAException.h"
#include "engine/QXOSAID.h"
#include "platform/base/Wait.h"
#include "platform/foundation/NSLog.h"
#include "platform/foundation/URLResources.h"

#include <cmath>
#include <limits>
#include <unordered_set>

#include <QRegularExpression>

namespace quoddle {

namespace {

constexpr qint64 kNoTimeout = std::numeric_limits<qint64>::min();

// The components that exist. Callbacks look their component up here, because the procedures outlive the objects that have installed them.
struct LiveComponents {
    std::mutex mutex;
    std::unordered_set<const QXOSAComponent*> components;
};

LiveComponents& liveComponents() {
    static LiveComponents& live = *new LiveComponents;
    return live;
}

// A missing component is not remembered, because it may be registered later.
QXOSAComponentRef sharedComponent(QXOSAComponentRef& shared, OSType subType) {
    static std::mutex mutex;
    std::lock_guard lock(mutex);
    if (!shared)
        shared = QXOSAComponent::initWithLanguageSubType(subType);
    return shared;
}

// Leaves the procedure installed but clears its reference constant, which could otherwise mean a later object at the same address.
template<class Proc>
void leaveProc(ComponentInstance instance, OSStatus (*get)(ComponentInstance, Proc&, void*&),
               OSStatus (*set)(ComponentInstance, Proc, void*), const void* leaving) {
    Proc proc = nullptr;
    void* refCon = nullptr;
    if (get(instance, proc, refCon) == noErr && refCon == leaving)
        set(instance, proc, nullptr);
}

} // namespace

QXOSAComponentRef QXOSAComponent::appleScriptComponent() {
    static QXOSAComponentRef shared;
    return sharedComponent(shared, kAppleScriptSubtype);
}

QXOSAComponentRef QXOSAComponent::genericComponent() {
    static QXOSAComponentRef shared;
    return sharedComponent(shared, kOSAGenericScriptingComponentSubtype);
}

NSOperationQueue& QXOSAComponent::osaOperationQueue() {
    static NSOperationQueue queue(10);
    return queue;
}

NSAppleEventDescriptorRef QXOSAComponent::_asResultPropertyDescriptor() {
    static const auto shared = NSAppleEventDescriptor::descriptorWithAEDesc(AEDesc::ofCode("prop"_4cc, "rslt"_4cc));
    return shared;
}

QXOSAComponentRef QXOSAComponent::_componentForRefCon(const void* refCon) {
    LiveComponents& live = liveComponents();
    std::lock_guard lock(live.mutex);
    auto found = live.components.find(static_cast<const QXOSAComponent*>(refCon));
    return found == live.components.end() ? nullptr : std::const_pointer_cast<QXOSAComponent>((*found)->weak_from_this().lock());
}

QXOSAComponentRef QXOSAComponent::initWithLanguageSubType(OSType languageSubType) {
    ComponentInstance instance = OpenDefaultComponent(kOSAComponentType, languageSubType);
    if (instance == 0)
        return nullptr;
    auto component = std::make_shared<QXOSAComponent>(instance, true);
    component->mLanguageSubType = languageSubType;
    return component;
}

QXOSAComponent::QXOSAComponent(ComponentInstance component, bool ownsComponent)
    : mComponent(component), mOwnsComponent(ownsComponent), mTimeout(kNoTimeout) {
    {
        LiveComponents& live = liveComponents();
        std::lock_guard lock(live.mutex);
        live.components.insert(this);
    }
    OSAGetActiveProc(mComponent, mSaveActiveUPP, mSaveActiveRefCon);
    OSASetActiveProc(mComponent, OSAActiveCallback, this);
    OSAGetSendProc(mComponent, mSaveSendUPP, mSaveSendRefCon);
    OSASetSendProc(mComponent, OSASendCallback, this);
    OSAGetResumeDispatchProc(mComponent, mSaveResumeUPP, mSaveResumeRefCon);
    OSASetResumeDispatchProc(mComponent, OSAResumeCallback, this);
}

QXOSAComponent::~QXOSAComponent() {
    {
        LiveComponents& live = liveComponents();
        std::lock_guard lock(live.mutex);
        live.components.erase(this);
    }
    leaveProc(mComponent, OSAGetActiveProc, OSASetActiveProc, this);
    leaveProc(mComponent, OSAGetSendProc, OSASetSendProc, this);
    leaveProc(mComponent, OSAGetResumeDispatchProc, OSASetResumeDispatchProc, this);
    // The values are inside the instance, so they are destroyed before it is closed.
    mScratchID.reset();
    mUndefinedValue.reset();
    if (!mOwnsComponent || mComponent == 0)
        return;
    try {
        _failOSError(CloseComponent(mComponent));
    } catch (const QXOSAException& exception) {
        NSLog(QStringLiteral("%@"), {exception.reason()});
    }
}

std::int32_t QXOSAComponent::version() const {
    return CallComponentVersion(mComponent);
}

OSType QXOSAComponent::defaultLanguageSubType() {
    OSType subType = "null"_4cc;
    _failOSError(OSAGetDefaultScriptingComponent(mComponent, subType));
    return subType;
}

void QXOSAComponent::setDefaultLanguageSubType(OSType subType) {
    _failOSError(OSASetDefaultScriptingComponent(mComponent, subType));
}

OSType QXOSAComponent::languageSubTypeForStoredScript(const NSAppleEventDescriptorRef& descriptor) {
    return languageSubTypeForStoredScriptAEDesc(aeDescOf(descriptor));
}

OSType QXOSAComponent::languageSubTypeForStoredScriptAEDesc(const AEDesc& aeDesc) {
    OSType subType = "null"_4cc;
    _failOSError(OSAGetScriptingComponentFromStored(mComponent, aeDesc, subType));
    return subType;
}

QXOSAComponentRef QXOSAComponent::realComponentForLanguageSubType(OSType subType) {
    ComponentInstance instance = 0;
    if (OSAGetScriptingComponent(mComponent, subType, instance) != noErr || instance == 0)
        return nullptr;
    return std::make_shared<QXOSAComponent>(instance, false);
}

OSStatus QXOSAComponent::lastError() {
    if (OSStatus last = mLastError; last != noErr && last != errOSAScriptError)
        return last;
    NSAppleEventDescriptorRef number = lastErrorForSelector("errn"_4cc);
    return number ? number->int32Value() : noErr;
}

// Removes the fragments by which a reference to a database object is written in messages, where they read badly.
// QUIRK: the places of all fragments are those in the text before the first removal, so a second fragment is cut at the wrong place; code
// that compares messages relies on it.
QString QXOSAComponent::cleanErrorMessage(FourCharCode selector) {
    // With "(*ANY)" the dots do not match any kind of line end.
    static const QRegularExpression fragment(QStringLiteral("(*ANY)") + QStringLiteral(".class asDB. id \\(.+\\) of "));
    AEDesc text;
    if (OSAScriptError(mComponent, selector, "utxt"_4cc, text) != noErr)
        return {};
    const QString message = stringValue(NSAppleEventDescriptor::descriptorWithAEDesc(text));
    QString cleaned = message;
    for (auto matches = fragment.globalMatch(message); matches.hasNext();) {
        QRegularExpressionMatch match = matches.next();
        cleaned.remove(match.capturedStart(), match.capturedLength());
    }
    return cleaned;
}

QString QXOSAComponent::lastErrorMessage() {
    return cleanErrorMessage("errs"_4cc);
}

QString QXOSAComponent::lastBriefErrorMessage() {
    return cleanErrorMessage("errb"_4cc);
}

QXRange QXOSAComponent::lastErrorRange() {
    AEDesc range;
    if (OSAScriptError(mComponent, "erng"_4cc, "erng"_4cc, range) != noErr)
        return {kQXNotFound, 0};
    auto edge = [&range](AEKeyword key) {
        const AEDesc* value = range.find(key);
        return static_cast<std::int64_t>(value ? value->asInt32().value_or(0) : 0);
    };
    std::int64_t start = edge("srcs"_4cc), end = edge("srce"_4cc);
    return {static_cast<std::uint64_t>(start), static_cast<std::uint64_t>(end - start)};
}

NSAppleEventDescriptorRef QXOSAComponent::lastErrorForSelector(FourCharCode selector) {
    AEDesc value;
    if (OSAScriptError(mComponent, selector, "****"_4cc, value) != noErr)
        return nullptr;
    return NSAppleEventDescriptor::descriptorWithAEDesc(std::move(value));
}

void QXOSAComponent::setDefaultTarget(const NSAppleEventDescriptorRef& defaultTarget) {
    NSAppleEventDescriptorRef target = defaultTarget ? defaultTarget : NSAppleEventDescriptor::nullDescriptor();
    if (target != mDefaultTarget && _failOSError(OSASetDefaultTarget(mComponent, target->aeDesc())))
        mDefaultTarget = target;
}

QXOSAIDRef QXOSAComponent::loadFromStoredScript(const NSAppleEventDescriptorRef& descriptor, OSAModeFlags modeFlags) {
    OSAID script = 0;
    _failOSError(OSALoad(mComponent, aeDescOf(descriptor), modeFlags, script));
    return QXOSAID::QXOSAIDWithComponent(shared_from_this(), script);
}

QXOSAIDRef QXOSAComponent::loadFromURL(const QUrl& url, OSAModeFlags modeFlags, bool* storable) {
    std::optional<std::string> file = pathOfExistingFile(url);
    if (!file)
        return nullptr;
    OSAID script = 0;
    bool isStorable = false;
    _failOSError(OSALoadFile(mComponent, *file, &isStorable, modeFlags, script));
    if (storable)
        *storable = isStorable;
    return QXOSAID::QXOSAIDWithComponent(shared_from_this(), script);
}

std::vector<OSASourceStyle> QXOSAComponent::sourceAttributes() {
    std::vector<OSASourceStyle> styles;
    _failOSError(ASCopySourceAttributes(mComponent, styles));
    return styles;
}

void QXOSAComponent::setSourceAttributes(const std::vector<OSASourceStyle>& sourceAttributes) {
    _failOSError(ASSetSourceAttributes(mComponent, sourceAttributes));
}

std::optional<QStringList> QXOSAComponent::sourceAttributeNames() {
    AEDesc list;
    if (ASGetSourceStyleNames(mComponent, kOSAModeNull, list) != noErr)
        return {};
    QStringList names;
    for (const AEDesc& name : list.items())
        names.append(QString::fromStdU16String(name.asText().value_or(std::u16string())));
    return names;
}

QXOSAIDRef QXOSAComponent::lastResult() {
    OSAID value = 0;
    OSStatus status = OSAGetProperty(mComponent, kOSAModeNull, kOSANullScript, _asResultPropertyDescriptor()->aeDesc(), value);
    return status == noErr && value != 0 ? QXOSAID::QXOSAIDWithComponent(shared_from_this(), value) : nullptr;
}

void QXOSAComponent::setLastResult(const QXOSAIDRef& lastResult) {
    try {
        setScratchResult(lastResult);
    } catch (...) {
        // The last result is a convenience: a run counts although its result could not be kept.
    }
}

void QXOSAComponent::setScratchResult(const QXOSAIDRef& lastResult) {
    // The kept values must not keep this object alive, so they get a reference that does not own it.
    const QXOSAComponentRef unowned(QXOSAComponentRef(), this);
    if (!mScratchID) {
        mScratchID = QXOSAID::QXOSAIDWithComponent(unowned);
        if (!mScratchID->compile(QStringLiteral("-- xxx")))
            NSLog(QStringLiteral("compile 'log' failed: %@"), {lastErrorInfo()->description()});
    }
    if (!lastResult && !mUndefinedValue)
        mUndefinedValue = QXOSAID::QXOSAIDWithComponent(unowned, descriptorWithUndefinedValue());
    mScratchID->setValueForPropertyDescriptor(lastResult ? lastResult : mUndefinedValue, _asResultPropertyDescriptor());
}

std::shared_ptr<NSOperation> QXOSAComponent::operation() const {
    std::lock_guard lock(mOperationMutex);
    return mOperation;
}

void QXOSAComponent::setCancelled(bool cancelled) {
    mCancelled = cancelled;
    if (cancelled)
        wakeWaits();
}

void QXOSAComponent::setOperation(std::shared_ptr<NSOperation> operation) {
    {
        std::lock_guard lock(mOperationMutex);
        if (mOperation == operation)
            return;
        mOperation.swap(operation);
    }
    Q_EMIT isBusyChanged();
}

QDateTime QXOSAComponent::timeout() const {
    qint64 timeout = mTimeout;
    return timeout == kNoTimeout ? QDateTime() : QDateTime::fromMSecsSinceEpoch(timeout);
}

void QXOSAComponent::setTimeout(const QDateTime& timeout) {
    setTimeoutSinceEpoch(timeout.isValid() ? timeout.toMSecsSinceEpoch() : kNoTimeout);
}

void QXOSAComponent::setTimeoutInterval(double seconds) {
    constexpr double kFarthest = 1e12; // seconds; beyond any clock, and far from overflowing
    setTimeoutSinceEpoch(QDateTime::currentMSecsSinceEpoch() + std::llround(std::clamp(seconds, -kFarthest, kFarthest) * 1000));
}

void QXOSAComponent::setTimeoutSinceEpoch(qint64 milliseconds) {
    constexpr qint64 kDay = 24 * 60 * 60 * 1000; // longer than any pause of a wait
    mTimeout = milliseconds;
    if (milliseconds != kNoTimeout)
        mTimeoutAlarm.set(std::chrono::steady_clock::now() +
                          std::chrono::milliseconds(std::clamp<qint64>(milliseconds - QDateTime::currentMSecsSinceEpoch() + 1, 0, kDay)));
}

bool QXOSAComponent::isDangerousEventSuite(AEEventClass suite, AEEventID eventID) {
    struct SafeEvents {
        AEEventClass suite;
        std::initializer_list<AEEventID> events;
    };
    static const SafeEvents kSafeEvents[] = {
        {"core"_4cc, {"cnte"_4cc, "doex"_4cc, "getd"_4cc}},
        {"ears"_4cc, {"ffdr"_4cc, "lfdr"_4cc, "lvol"_4cc}},
        {"Jons"_4cc, {"gClp"_4cc, "iClp"_4cc}},
        {"ScTl"_4cc, {"ToAE"_4cc, "ToHT"_4cc, "ToXM"_4cc}},
        {"fbcs"_4cc, {"summ"_4cc}},
        {"fndr"_4cc, {"ToAE"_4cc, "ToHT"_4cc, "ToXM"_4cc, "gstl"_4cc}},
        {"misc"_4cc, {"curd"_4cc}},
        {"rdwr"_4cc, {"geof"_4cc}},
        {"syso"_4cc, {"cpls"_4cc, "cton"_4cc, "nfo4"_4cc, "ntoc"_4cc, "offs"_4cc, "rand"_4cc, "rond"_4cc}},
    };
    if (suite == "ascr"_4cc)
        return eventID == "psbr"_4cc; // "psbr", a call into another application
    for (const SafeEvents& safe : kSafeEvents)
        if (safe.suite == suite)
            return std::find(safe.events.begin(), safe.events.end(), eventID) == safe.events.end();
    return true;
}

bool QXOSAComponent::_failOSError(OSStatus status) {
    mLastError = status;
    if (status != noErr)
        throw QXOSAException(QStringLiteral("QXOSAComponent Failure"),
                             stringWithFormat(QStringLiteral("Error %d received from component instance"), {status}));
    return true;
}

} // namespace quoddle
