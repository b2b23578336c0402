// SPDX-License-Identifier: MIT
// QXOSAComponent: one open scripting component, the callbacks through which its scripts yield, send and continue events (OSACallbacks.h),
// and what those callbacks use: deadline, cancellation, delegate, guard. Held by std::shared_ptr. Checked failures raise QXOSAException
// "QXOSAComponent Failure"; queries of the last error never raise. The run state may be set on any thread; everything else is used on one
// thread.
#pragma once

#include "engine/QXOSAComponentDelegate.h"
#include "engine/QXOSAErrorInfo.h"
#include "platform/base/Wait.h"
#include "platform/foundation/NSOperationQueue.h"
#include "platform/osa/OSA.h"

#include <atomic>
#include <memory>
#include <mutex>

#include <QDateTime>
#include <QObject>
#include <QStringList>
#include <QUrl>

namespace quoddle {

class QXOSAID;
using QXOSAIDRef = std::shared_ptr<QXOSAID>;
class QXOSAComponent;
using QXOSAComponentRef = std::shared_ptr<QXOSAComponent>;

inline const QString kQXOSAThreadOperationKey = QStringLiteral("kQXOSAThreadOperationKey");
inline const QString kQXOSAThreadScriptKey = QStringLiteral("kQXOSAThreadScriptKey");

class QXOSAComponent : public QObject, public std::enable_shared_from_this<QXOSAComponent> {
    Q_OBJECT
public:
    /// Shared for the lifetime of the process; nil while no such component is registered.
    static QXOSAComponentRef appleScriptComponent();
    static QXOSAComponentRef genericComponent();
    /// Runs up to 10 operations at once; for callers that run scripts off the main thread.
    static NSOperationQueue& osaOperationQueue();
    static NSAppleEventDescriptorRef _asResultPropertyDescriptor();
    /// The component for a callback's reference constant; nil when it no longer exists or is not held by a shared_ptr. Any thread.
    static QXOSAComponentRef _componentForRefCon(const void* refCon);

    /// New instances; nil when the component cannot be opened.
    static QXOSAComponentRef componentWithLanguageSubType(OSType languageSubType) { return initWithLanguageSubType(languageSubType); }
    static QXOSAComponentRef initWithAppleScriptComponent() { return initWithLanguageSubType(kAppleScriptSubtype); }
    static QXOSAComponentRef initWithGenericComponent() { return initWithLanguageSubType(kOSAGenericScriptingComponentSubtype); }
    static QXOSAComponentRef initWithLanguageSubType(OSType languageSubType);
    /// Installs the three procedures. After this object is destroyed they stay without a reference constant and act without it
    /// (OSACallbacks.h).
    QXOSAComponent(ComponentInstance component, bool ownsComponent);
    ~QXOSAComponent() override;

    ComponentInstance component() const { return mComponent; }
    std::int32_t version() const;
    /// 0 when the component was adopted.
    OSType languageSubType() const { return mLanguageSubType; }
    OSType defaultLanguageSubType();
    void setDefaultLanguageSubType(OSType subType);
    OSType languageSubTypeForStoredScript(const NSAppleEventDescriptorRef& descriptor);
    OSType languageSubTypeForStoredScriptAEDesc(const AEDesc& aeDesc);
    QXOSAComponentRef realComponentForLanguageSubType(OSType subType);

    OSStatus lastError();
    QString lastErrorMessage();
    QString lastBriefErrorMessage();
    QXRange lastErrorRange();
    NSAppleEventDescriptorRef lastErrorExpectedType() { return lastErrorForSelector("errt"_4cc); }
    NSAppleEventDescriptorRef lastErrorOffendingObject() { return lastErrorForSelector("erob"_4cc); }
    NSAppleEventDescriptorRef lastErrorPartialResult() { return lastErrorForSelector("ptlr"_4cc); }
    NSAppleEventDescriptorRef lastErrorApplication() { return lastErrorForSelector("erap"_4cc); }
    NSAppleEventDescriptorRef lastErrorForSelector(FourCharCode selector);
    QXOSAErrorInfoRef lastErrorInfo() { return QXOSAErrorInfo::errorInfoForComponent(*this); }

    NSAppleEventDescriptorRef defaultTarget() const { return mDefaultTarget; }
    /// Nil stands for the null descriptor.
    void setDefaultTarget(const NSAppleEventDescriptorRef& defaultTarget);
    QXOSAIDRef loadFromStoredScript(const NSAppleEventDescriptorRef& descriptor, OSAModeFlags modeFlags);
    /// Nil, without an exception, when there is no file at the URL. `storable` may be null.
    QXOSAIDRef loadFromURL(const QUrl& url, OSAModeFlags modeFlags, bool* storable = nullptr);
    std::vector<OSASourceStyle> sourceAttributes();
    void setSourceAttributes(const std::vector<OSASourceStyle>& sourceAttributes);
    /// nullopt on failure.
    std::optional<QStringList> sourceAttributeNames();
    QXOSAIDRef lastResult();
    /// Nil stores the undefined value. Failures are ignored.
    void setLastResult(const QXOSAIDRef& lastResult);

    QXOSAComponentDelegate* delegate() const { return mDelegate; }
    /// The delegate is not owned. If it is destroyed before the component, it must be removed first.
    void setDelegate(QXOSAComponentDelegate* delegate) { mDelegate = delegate; }
    std::shared_ptr<NSOperation> operation() const;
    void setOperation(std::shared_ptr<NSOperation> operation);
    /// An invalid date means no deadline.
    QDateTime timeout() const;
    void setTimeout(const QDateTime& timeout);
    void setTimeoutInterval(double seconds);
    bool yieldCPU() const { return mYieldCPU; }
    void setYieldCPU(bool yieldCPU) { mYieldCPU = yieldCPU; }
    bool preventDestructiveEvents() const { return mPreventDestructiveEvents; }
    void setPreventDestructiveEvents(bool prevent) { mPreventDestructiveEvents = prevent; }
    OSStatus timeoutError() const { return mTimeoutError; }
    void setTimeoutError(OSStatus error) { mTimeoutError = error; }
    OSStatus threadCanceledError() const { return mThreadCanceledError; }
    void setThreadCanceledError(OSStatus error) { mThreadCanceledError = error; }
    OSStatus destructiveEventError() const { return mDestructiveEventError; }
    void setDestructiveEventError(OSStatus error) { mDestructiveEventError = error; }
    bool isCancelled() const { return mCancelled; }
    void setCancelled(bool cancelled);
    bool isResuming() const { return mResuming; }
    void setResuming(bool resuming) { mResuming = resuming; }
    /// QUIRK: true exactly when there is no operation; callers rely on the inverted sense.
    bool isBusy() const { return !operation(); }

    static bool isDangerousEventSuite(AEEventClass suite, AEEventID eventID);
    bool _failOSError(OSStatus status);

Q_SIGNALS:
    /// Emitted on the thread that has changed the operation.
    void isBusyChanged();

private:
    void setScratchResult(const QXOSAIDRef& lastResult);
    QString cleanErrorMessage(FourCharCode selector);

    ComponentInstance mComponent;
    bool mOwnsComponent;
    OSType mLanguageSubType = 0;
    NSAppleEventDescriptorRef mDefaultTarget;
    std::atomic<OSStatus> mLastError = noErr;
    QXOSAIDRef mScratchID;
    QXOSAIDRef mUndefinedValue;
    OSAActiveProc mSaveActiveUPP = nullptr;
    void* mSaveActiveRefCon = nullptr;
    OSASendProc mSaveSendUPP = nullptr;
    void* mSaveSendRefCon = nullptr;
    OSAResumeDispatchProc mSaveResumeUPP = nullptr;
    void* mSaveResumeRefCon = nullptr;
    std::atomic<QXOSAComponentDelegate*> mDelegate = nullptr;
    mutable std::mutex mOperationMutex;
    std::shared_ptr<NSOperation> mOperation;
    void setTimeoutSinceEpoch(qint64 milliseconds);

    WaitAlarm mTimeoutAlarm;
    std::atomic<qint64> mTimeout; ///< milliseconds since 1970, or kNoTimeout
    std::atomic<bool> mCancelled = false;
    std::atomic<bool> mResuming = false;
    std::atomic<bool> mYieldCPU = true;
    std::atomic<bool> mPreventDestructiveEvents = false;
    std::atomic<OSStatus> mTimeoutError = errAETimeout;
    std::atomic<OSStatus> mThreadCanceledError = userCanceledErr;
    std::atomic<OSStatus> mDestructiveEventError = errAEEventFailed;
};

} // namespace quoddle
