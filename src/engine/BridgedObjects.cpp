// SPDX-License-Identifier: MIT
#include "engine/BridgedObjects.h"

#include "platform/ae/AEObjects.h"

#include <mutex>

#include <QHash>

namespace quoddle::BridgedObjects {

namespace {

std::mutex sMutex;
std::uint64_t sLastTicket = 0;
QHash<quint64, QVariant> sObjects;

} // namespace

std::uint64_t add(const QVariant& object) {
    std::lock_guard lock(sMutex);
    sObjects.insert(++sLastTicket, object);
    return sLastTicket;
}

void withdraw(std::uint64_t ticket) {
    std::lock_guard lock(sMutex);
    sObjects.remove(ticket);
}

QVariant find(std::uint64_t ticket) {
    std::lock_guard lock(sMutex);
    return sObjects.value(ticket);
}

NSAppleEventDescriptorRef descriptor(std::uint64_t ticket) {
    AEDesc specifier;
    AEDesc key("ocid"_4cc, {reinterpret_cast<const char*>(&ticket), sizeof ticket});
    CreateObjSpecifier("ocid"_4cc, {}, "ID  "_4cc, key, specifier);
    return NSAppleEventDescriptor::descriptorWithAEDesc(std::move(specifier));
}

} // namespace quoddle::BridgedObjects
