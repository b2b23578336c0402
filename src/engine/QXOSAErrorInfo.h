// SPDX-License-Identifier: MIT
// A snapshot of one error: all that a component tells about its last script error, or only a status. Later calls do not change it. A value:
// cheap to copy, and safe to pass to another thread.
#pragma once

#include "engine/QXRange.h"
#include "platform/ae/NSAppleEventDescriptor.h"

#include <memory>

#include <QString>

namespace quoddle {

class QXOSAComponent;
class QXOSAErrorInfo;
/// Nil when there is no error record.
using QXOSAErrorInfoRef = std::shared_ptr<QXOSAErrorInfo>;

class QXOSAErrorInfo {
public:
    static QXOSAErrorInfoRef errorInfoForComponent(QXOSAComponent& component) { return std::make_shared<QXOSAErrorInfo>(component); }
    static QXOSAErrorInfoRef errorInfoForOSStatus(OSStatus status) { return std::make_shared<QXOSAErrorInfo>(status); }
    /// Asks the component on the calling thread. Without an error the range is (kQXNotFound, 0).
    explicit QXOSAErrorInfo(QXOSAComponent& component);
    /// The range is (0, 0), which also stands for none.
    explicit QXOSAErrorInfo(OSStatus status) : _error(status) {}

    QString description() const;
    bool isRuntimeError() const { return _runtimeError; }
    void setRuntimeError(bool runtimeError) { _runtimeError = runtimeError; }
    OSStatus error() const { return _error; }
    /// Null strings and nil descriptors when the component had nothing to tell.
    const QString& briefMessage() const { return _briefMessage; }
    const QString& message() const { return _message; }
    const NSAppleEventDescriptorRef& offendingObject() const { return _offendingObject; }
    const NSAppleEventDescriptorRef& partialResult() const { return _partialResult; }
    const NSAppleEventDescriptorRef& application() const { return _application; }
    const NSAppleEventDescriptorRef& expectedType() const { return _expectedType; }
    QXRange errorRange() const { return _errorRange; }

private:
    bool _runtimeError = false;
    OSStatus _error = noErr;
    QString _briefMessage;
    QString _message;
    NSAppleEventDescriptorRef _offendingObject;
    NSAppleEventDescriptorRef _partialResult;
    NSAppleEventDescriptorRef _application;
    NSAppleEventDescriptorRef _expectedType;
    QXRange _errorRange;
};

} // namespace quoddle
