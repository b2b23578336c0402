// SPDX-License-Identifier: MIT
// Makes, loads, compiles, executes and stores script values.
#include "engine/QXOSAID.h"

#include "engine/OSACallbacks.h"
#include "platform/ae/AECoercion.h"
#include "platform/foundation/NSLog.h"
#include "platform/foundation/URLResources.h"

#include <cstdlib>
#include <execinfo.h>

#include <QFileInfo>

namespace quoddle {

namespace {

constexpr OSStatus kURLWithoutFile = -4960;

QString callStack() {
    void* frames[64];
    int count = backtrace(frames, static_cast<int>(std::size(frames)));
    std::unique_ptr<char*, decltype(&std::free)> symbols(backtrace_symbols(frames, count), std::free);
    QStringList lines;
    for (int i = 0; symbols && i < count; ++i)
        lines.append(QString::fromLocal8Bit(symbols.get()[i]));
    return lines.join(u'\n');
}

} // namespace

QXOSAID::QXOSAID(QXOSAComponentRef component, OSAID valueID, bool ownsValueID)
    : mOwnsValueID(ownsValueID), mValueID(valueID), mComponent(std::move(component)) {}

QXOSAID::~QXOSAID() {
    try {
        disposeOwnedValue();
    } catch (const QXOSAException& exception) {
        NSLog(QStringLiteral("%@"), {exception.reason()});
    }
}

QXOSAIDRef QXOSAID::initWithComponent(const QXOSAComponentRef& component, const NSAppleEventDescriptorRef& descriptor) {
    return descriptor ? initWithComponent(component, descriptor->aeDesc()) : nullptr;
}

QXOSAIDRef QXOSAID::initWithComponent(const QXOSAComponentRef& component, const AEDesc& aeDesc) {
    bool isStored = aeDesc.type() == "scpt"_4cc;
    bool hasData = aeDesc.isList() || aeDesc.isRecord() || !aeDesc.data().empty();
    if (!component || aeDesc.isNull() || (!isStored && !hasData))
        return nullptr;
    OSAID value = 0;
    OSStatus status = isStored ? OSALoad(component->component(), aeDesc, kOSAModeNull, value)
                               : OSACoerceFromDesc(component->component(), aeDesc, kOSAModeNull, value);
    return status == noErr && value != 0 ? std::make_shared<QXOSAID>(component, value) : nullptr;
}

QXOSAIDRef QXOSAID::QXOSAIDWithComponent(const QXOSAComponentRef& component, OSAID valueID, bool ownsValueID) {
    return std::make_shared<QXOSAID>(component, valueID, ownsValueID);
}

QXOSAIDRef QXOSAID::QXOSAIDWithComponent(const QXOSAComponentRef& component, const NSAppleEventDescriptorRef& descriptor) {
    return initWithComponent(component, descriptor);
}

QXOSAIDRef QXOSAID::QXOSAIDWithComponent(const QXOSAComponentRef& component, const AEDesc& aeDesc) {
    return initWithComponent(component, aeDesc);
}

QXOSAIDRef QXOSAID::QXOSAIDContextWithComponent(const QXOSAComponentRef& component) {
    static const auto source = NSAppleEventDescriptor::descriptorWithString(u"10");
    try {
        QXOSAIDRef context = QXOSAIDWithComponent(component);
        if (context->compileDescriptor(source, kOSAModeCompileIntoContext))
            return context;
    } catch (const QXOSAException&) {
        // The failure is logged below.
    }
    NSLog(QStringLiteral("QXOSAIDContextWithComponent failed"));
    return nullptr;
}

QXOSAIDRef QXOSAID::QXOSAIDContextWithComponent(const QXOSAComponentRef& component, const QXOSAIDRef& parent) {
    try {
        if (QXOSAIDRef context = QXOSAIDContextWithComponent(component)) {
            context->setValueForPropertyID(parent, "pare"_4cc, kOSAModeNull);
            if (context->lastError() == noErr)
                return context;
        }
    } catch (const QXOSAException&) {
        // The failure is logged below.
    }
    NSLog(QStringLiteral("QXOSAIDContextWithComponent:parent: failed"));
    return nullptr;
}

std::shared_ptr<QXOSAID::DescriptorCache> QXOSAID::descriptorCache() const {
    std::lock_guard lock(mCacheMutex);
    return mDescriptorCache;
}

void QXOSAID::setDescriptorCache(std::shared_ptr<DescriptorCache> descriptorCache) {
    std::lock_guard lock(mCacheMutex);
    mDescriptorCache.swap(descriptorCache);
}

void QXOSAID::emptyDescriptorCache() {
    std::lock_guard lock(mCacheMutex);
    if (mDescriptorCache)
        mDescriptorCache->clear();
}

void QXOSAID::disposeOwnedValue() {
    if (mOwnsValueID && mValueID != 0)
        _failOSError(OSADispose(instance(), mValueID));
}

void QXOSAID::replaceValue(OSAID valueID) {
    disposeOwnedValue();
    mValueID = valueID;
    mOwnsValueID = true;
    emptyDescriptorCache();
}

QXOSAIDRef QXOSAID::checkedResult(OSStatus status, OSAID valueID) {
    return _failOSError(status) && valueID != 0 ? std::make_shared<QXOSAID>(mComponent, valueID) : nullptr;
}

void QXOSAID::setDescriptor(const NSAppleEventDescriptorRef& descriptor, OSAModeFlags modeFlags) {
    AEDesc desc = aeDescOf(descriptor);
    OSAID value = 0;
    OSStatus status =
        desc.type() == "scpt"_4cc ? OSALoad(instance(), desc, modeFlags, value) : OSACoerceFromDesc(instance(), desc, modeFlags, value);
    if (_failOSError(status))
        replaceValue(value);
}

void QXOSAID::load(const NSAppleEventDescriptorRef& descriptor, OSAModeFlags modeFlags) {
    OSAID script = 0;
    if (_failOSError(OSALoad(instance(), aeDescOf(descriptor), modeFlags, script)))
        replaceValue(script);
}

void QXOSAID::loadFile(const QString& file, OSAModeFlags modeFlags) {
    OSAID script = 0;
    if (!_failOSError(OSALoadFile(instance(), file.toStdString(), nullptr, modeFlags, script)))
        return;
    replaceValue(script);
    setScriptLocation(QUrl::fromLocalFile(file));
}

void QXOSAID::loadFileURL(const QUrl& url, OSAModeFlags modeFlags) {
    if (std::optional<std::string> file = pathOfExistingFile(url))
        loadFile(QString::fromStdString(*file), modeFlags);
    else
        _failOSError(kURLWithoutFile);
}

// QUIRK: compiling keeps the cached descriptors of the former source; code written for the platform relies on it.
bool QXOSAID::compileDescriptor(const NSAppleEventDescriptorRef& descriptor, OSAModeFlags modeFlags) {
    OSAID script = mValueID;
    OSStatus status = OSACompile(instance(), aeDescOf(descriptor), modeFlags, script);
    mValueID = script;
    return _failOSError(status);
}

bool QXOSAID::compile(const QString& source, OSAModeFlags modeFlags) {
    return compileDescriptor(NSAppleEventDescriptor::descriptorWithString(source), modeFlags);
}

void QXOSAID::prepareToExecute() {
    if (mComponent)
        takeBackCancellation(*mComponent);
}

QXOSAIDRef QXOSAID::execute(OSAModeFlags modeFlags) {
    prepareToExecute();
    OSAID value = 0;
    OSStatus status = OSAExecute(instance(), mValueID, kOSANullScript, modeFlags, value);
    return checkedResult(status, value);
}

QXOSAIDRef QXOSAID::executeEvent(const NSAppleEventDescriptorRef& event, OSAModeFlags modeFlags) {
    if (!event)
        return execute(modeFlags);
    prepareToExecute();
    OSAID value = 0;
    OSStatus status = OSAExecuteEvent(instance(), event->aeDesc(), mValueID, modeFlags, value);
    return checkedResult(status, value);
}

QXOSAIDRef QXOSAID::executeInContext(const QXOSAIDRef& context, OSAModeFlags modeFlags) {
    prepareToExecute();
    OSAID value = 0;
    OSStatus status = OSAExecute(instance(), mValueID, context ? context->valueID() : kOSANullScript, modeFlags, value);
    return checkedResult(status, value);
}

QXOSAIDRef QXOSAID::executeSubroutine(const QString& name, const std::vector<NSAppleEventDescriptorRef>& parameters,
                                      OSAModeFlags modeFlags) {
    auto target = NSAppleEventDescriptor::currentProcessDescriptor();
    auto event = NSAppleEventDescriptor::appleEventWithEventClass("ascr"_4cc, "psbr"_4cc, target, kAutoGenerateReturnID, kAnyTransactionID);
    event->setParamDescriptor(NSAppleEventDescriptor::descriptorWithString(name), "snam"_4cc);
    auto list = NSAppleEventDescriptor::listDescriptor();
    // QUIRK: each parameter is inserted at the index that equals the number of items, which is in front of the last one, so three
    // parameters arrive as the second, the third and the first; code written for the platform relies on that order.
    for (const NSAppleEventDescriptorRef& parameter : parameters)
        list->insertDescriptor(parameter, list->numberOfItems());
    event->setParamDescriptor(list, "----"_4cc);
    return executeEvent(event, modeFlags);
}

NSAppleEventDescriptorRef QXOSAID::store(OSAModeFlags modeFlags) {
    AEDesc data;
    if (!isValid() || !_failOSError(OSAStore(instance(), mValueID, "scpt"_4cc, modeFlags, data)))
        return nullptr;
    return NSAppleEventDescriptor::descriptorWithAEDesc(std::move(data));
}

void QXOSAID::storeFile(const QString& file, OSAModeFlags modeFlags) {
    if (isValid())
        _failOSError(OSAStoreFile(instance(), mValueID, "scpt"_4cc, modeFlags, file.toStdString()));
}

std::optional<OSAAttributedText> QXOSAID::source(OSAModeFlags modeFlags) {
    OSAAttributedText text;
    if (!isValid() || !_failOSError(OSACopySourceString(instance(), mValueID, modeFlags, text)))
        return {};
    return text;
}

std::optional<OSAAttributedText> QXOSAID::display(OSAModeFlags modeFlags) {
    OSAAttributedText text;
    if (!isValid() || !_failOSError(OSACopyDisplayString(instance(), mValueID, modeFlags, text)))
        return {};
    return text;
}

QXOSAIDRef QXOSAID::copyScript() {
    OSAID copy = 0;
    OSStatus status = OSACopyScript(instance(), mValueID, copy);
    return checkedResult(status, copy);
}

QXOSAIDRef QXOSAID::copyID() {
    OSAID copy = 0;
    OSStatus status = OSACopyID(instance(), mValueID, copy);
    return checkedResult(status, copy);
}

void QXOSAID::clear() {
    replaceValue(0);
}

void QXOSAID::startRecording() {
    OSAID script = mValueID;
    OSStatus status = OSAStartRecording(instance(), script);
    mValueID = script;
    _failOSError(status);
}

void QXOSAID::stopRecording() {
    _failOSError(OSAStopRecording(instance(), mValueID));
}

QXOSAIDRef QXOSAID::realFromGeneric() {
    OSAID real = mValueID;
    ComponentInstance exact = 0;
    if (!_failOSError(OSAGenericToRealID(instance(), real, exact)))
        return nullptr;
    return QXOSAIDWithComponent(std::make_shared<QXOSAComponent>(exact, false), real, false);
}

QUrl QXOSAID::scriptLocation() {
    std::string path;
    if (!isValid() || OSAGetScriptInfo(instance(), mValueID, "fref"_4cc, path) != noErr)
        return {};
    return QUrl::fromLocalFile(QString::fromStdString(path));
}

void QXOSAID::setScriptLocation(const QUrl& url) {
    std::optional<std::string> file = pathOfExistingFile(url);
    if (!file || !isValid() || scriptLocation() == url)
        return;
    if (OSStatus status = OSASetScriptInfo(instance(), mValueID, "fref"_4cc, *file))
        NSLog(QStringLiteral("setScriptLocation: OSASetScriptInfo %@ => %d"), {url, status});
}

std::int32_t QXOSAID::getInfoForSelector(FourCharCode selector) {
    std::int32_t info = 0;
    return isValid() && _failOSError(OSAGetScriptInfo(instance(), mValueID, selector, info)) ? info : 0;
}

void QXOSAID::setInfo(std::int32_t info, FourCharCode forSelector) {
    _failOSError(OSASetScriptInfo(instance(), mValueID, forSelector, info));
}

QString QXOSAID::_description() const {
    return QStringLiteral("<QXOSAID: 0x%1>").arg(reinterpret_cast<quintptr>(this), 0, 16);
}

bool QXOSAID::_failOSError(OSStatus status) {
    mLastError = status;
    switch (status) {
    case noErr:
        return true;
    case errOSAScriptError:
    case userCanceledErr:
        return false;
    case errOSAInvalidID:
        NSLog(QStringLiteral("QXOSAID _failOSError: errOSAInvalidID: %@, stack: %@"), {_description(), callStack()});
        return false;
    case errOSAInternalTableOverflow:
        NSLog(QStringLiteral("QXOSAID _failOSError: errOSAInternalTableOverflow: %@, stack: %@"), {_description(), callStack()});
        break;
    }
    QVariantMap userInfo{{QStringLiteral("QXOSAID"), QVariant::fromValue(weak_from_this().lock())}, {QStringLiteral("OSStatus"), status}};
    throw QXOSAException(QStringLiteral("QXOSAID Failure"),
                         stringWithFormat(QStringLiteral("Error %d received from OSAID instance"), {status}), userInfo);
}

} // namespace quoddle
