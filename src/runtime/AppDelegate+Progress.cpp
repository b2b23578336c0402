// SPDX-License-Identifier: MIT
// The way from the script's progress properties to the window.
#include "runtime/AppDelegate.h"

#include "engine/QXOSAException.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/NSLog.h"

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

/// The value of a property; nil when the script has removed it.
QXOSAIDRef propertyOf(const QXOSAIDRef& object, FourCharCode property) {
    try {
        return object->propertyForPropertyID(property);
    } catch (const QXOSAException&) {
        return nullptr;
    }
}

std::int32_t numberOf(const QXOSAIDRef& object, FourCharCode property) {
    if (const auto plain = object->plainValueForPropertyID(property))
        return plain->asInt32().value_or(0);
    const QXOSAIDRef value = propertyOf(object, property);
    const NSAppleEventDescriptorRef descriptor = value ? value->descriptor() : nullptr;
    return descriptor ? descriptor->int32Value() : 0;
}

/// The text of a property without white space around it. Never a null string, so that absent and empty texts compare equal.
QString trimmedTextOf(const QXOSAIDRef& object, FourCharCode property) {
    if (const auto plain = object->plainValueForPropertyID(property))
        return u""_s + QString::fromStdU16String(plain->asText().value_or(std::u16string())).trimmed();
    const QXOSAIDRef value = propertyOf(object, property);
    const QString text = value ? value->stringValue().trimmed() : QString();
    return text.isNull() ? u""_s : text;
}

} // namespace

std::optional<QVariantMap> AppDelegate::readProgress() {
    if (!asObj())
        setAsObj(mMainScript->propertyForPropertyID("ascr"_4cc));
    const QXOSAIDRef object = asObj();
    if (!object)
        return std::nullopt;
    const std::int32_t total = numberOf(object, "ppgt"_4cc);
    const std::int32_t completed = numberOf(object, "ppgc"_4cc);
    const QString description = trimmedTextOf(object, "ppgd"_4cc);
    const QString additional = trimmedTextOf(object, "ppga"_4cc);
    if (!currentProgress() && total == 0 && completed == 0 && description.isEmpty() && additional.isEmpty())
        return std::nullopt; // nothing was ever reported
    return QVariantMap{
        {u"totalSteps"_s, total}, {u"steps"_s, completed}, {u"description"_s, description}, {u"additionalDescription"_s, additional}};
}

void AppDelegate::scriptDidYield() {
    if (MainThread::isCurrent())
        hookDidYield();
    std::unique_lock lock(mObjectLock, std::defer_lock);
    if (!MainThread::isCurrent())
        lock.lock();
    // A script on the main thread must not wait for the lock: the script thread may hold it while it waits for the main thread to take its
    // progress.
    else if (!lock.try_lock())
        return;
    if (!mMainScript)
        return;
    std::optional<QVariantMap> progress;
    try {
        progress = readProgress();
    } catch (const QXOSAException& exception) {
        NSLog(u"scriptDidYield: %@"_s, {exception.reason()});
    }
    if (!progress || progress == currentProgress())
        return;
    setCurrentProgress(progress);
    MainThread::dispatchSync(
        [this, &progress] { NSNotificationCenter::defaultCenter().postNotification(ProgressChangedNotification, this, *progress); });
}

void AppDelegate::showProgressPane() {
    mPaneIsForCalls = mOwnExecutions == 0;
    windowController().showProgressViewController();
}

void AppDelegate::showProgressWhileResponding() {
    if (_isRespondingToScript())
        showProgressPane();
}

void AppDelegate::_progressDidChange(const NSNotification&) {
    showProgressWhileResponding();
}

} // namespace quoddle
