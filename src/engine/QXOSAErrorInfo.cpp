// SPDX-License-Identifier: MIT
#include "engine/QXOSAErrorInfo.h"

#include "engine/NSAppleEventDescriptor+Additions.h"
#include "engine/QXOSAComponent.h"
#include "platform/foundation/NSLog.h"

namespace quoddle {

namespace {

// The text, or an invalid variant, which is printed as null, for a null string.
QVariant shown(const QString& text) {
    return text.isNull() ? QVariant() : QVariant(text);
}

QVariant shown(const NSAppleEventDescriptorRef& descriptor) {
    if (!descriptor)
        return {};
    QString type = QString::fromLatin1(bytesOf(descriptor->descriptorType()).c_str(), 4);
    QString value = stringValue(descriptor);
    if (value.isNull())
        value = QStringLiteral("%1 items").arg(descriptor->numberOfItems());
    return QStringLiteral("<NSAppleEventDescriptor: '%1'(%2)>").arg(type, value);
}

} // namespace

QXOSAErrorInfo::QXOSAErrorInfo(QXOSAComponent& component)
    : _runtimeError(true), _error(component.lastError()), _errorRange{kQXNotFound, 0} {
    if (_error == noErr)
        return;
    _errorRange = component.lastErrorRange();
    _message = component.lastErrorMessage();
    _briefMessage = component.lastBriefErrorMessage();
    _application = component.lastErrorApplication();
    _expectedType = component.lastErrorExpectedType();
    _partialResult = component.lastErrorPartialResult();
    _offendingObject = component.lastErrorOffendingObject();
}

QString QXOSAErrorInfo::description() const {
    QString range = QStringLiteral("{%1, %2}").arg(_errorRange.location).arg(_errorRange.length);
    return stringWithFormat(QStringLiteral("<QXOSAErrorInfo error: %ld, errorRange: %@, message: %@, briefMessage: %@, application: %@, "
                                           "expectedType: %@, partialResult: %@, offendingObject: %@>"),
                            {_error, range, shown(_message), shown(_briefMessage), shown(_application), shown(_expectedType),
                             shown(_partialResult), shown(_offendingObject)});
}

} // namespace quoddle
