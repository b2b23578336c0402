// SPDX-License-Identifier: MIT
#include "engine/NSAppleEventDescriptor+Additions.h"

#include "engine/QXOSAException.h"
#include "platform/foundation/NSLog.h"

namespace quoddle {

namespace {

// A copy of the record's list of user-defined fields (name, value, name, value); nil when there is none.
NSAppleEventDescriptorRef userFieldsOf(const NSAppleEventDescriptorRef& record) {
    return record ? record->descriptorForKeyword("usrf"_4cc) : nullptr;
}

// The position of the value behind the name; 0 when there is none.
std::size_t positionOfValue(const NSAppleEventDescriptor& fields, std::u16string_view name) {
    for (std::size_t pair = 1; pair <= fields.numberOfItems() / 2; ++pair)
        if (fields.descriptorAtIndex(2 * pair - 1)->stringValue() == name)
            return 2 * pair;
    return 0;
}

} // namespace

NSAppleEventDescriptorRef Additions::descriptorWithUndefinedValue() {
    static const auto shared = NSAppleEventDescriptor::descriptorWithTypeCode("undf"_4cc);
    return shared;
}

NSAppleEventDescriptorRef descriptorWithFileURLLegacy(const QUrl& url) {
    if (url.isEmpty())
        return nullptr;
    QByteArray bytes = url.isValid() ? url.toEncoded() : QByteArray();
    if (bytes.isEmpty())
        throw QXOSAException(QStringLiteral("NSInternalInconsistencyException"),
                             stringWithFormat(QStringLiteral("Unable to extract bytes of URL (%@)"), {url.toString()}));
    return NSAppleEventDescriptor::descriptorWithDescriptorType("furl"_4cc, bytes.toStdString());
}

NSAppleEventDescriptorRef descriptorForPropertyName(const NSAppleEventDescriptorRef& record, const TextArgument& name) {
    NSAppleEventDescriptorRef fields = userFieldsOf(record);
    std::size_t position = fields ? positionOfValue(*fields, name.view()) : 0;
    return position ? fields->descriptorAtIndex(position) : nullptr;
}

void setDescriptorForPropertyName(const NSAppleEventDescriptorRef& record, const NSAppleEventDescriptorRef& descriptor,
                                  const TextArgument& name) {
    NSAppleEventDescriptorRef fields = userFieldsOf(record);
    if (!fields)
        fields = NSAppleEventDescriptor::listDescriptor();
    if (std::size_t position = positionOfValue(*fields, name.view())) {
        replaceDescriptorAtIndex(fields, descriptor, position);
        return;
    }
    fields->insertDescriptor(NSAppleEventDescriptor::descriptorWithString(name.view()), 0);
    fields->insertDescriptor(descriptor, 0);
}

void replaceDescriptorAtIndex(const NSAppleEventDescriptorRef& list, const NSAppleEventDescriptorRef& descriptor, std::size_t index) {
    if (list)
        list->insertDescriptor(descriptor, index);
}

QString stringValue(const NSAppleEventDescriptorRef& descriptor) {
    std::optional<std::u16string> text = descriptor ? descriptor->stringValue() : std::nullopt;
    return text ? QString::fromStdU16String(*text) : QString();
}

} // namespace quoddle
