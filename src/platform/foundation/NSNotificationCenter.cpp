// SPDX-License-Identifier: MIT
#include "platform/foundation/NSNotificationCenter.h"

namespace quoddle {

NSNotificationCenter& NSNotificationCenter::defaultCenter() {
    static auto* center = new NSNotificationCenter; // never destroyed, because worker threads may outlive static objects
    return *center;
}

void NSNotificationCenter::addObserver(const void* observer, Handler handler, const QString& name, const void* object) {
    std::lock_guard lock(mMutex);
    mObservers.push_back(std::make_shared<Observer>(Observer{observer, name, object, std::move(handler)}));
}

void NSNotificationCenter::removeObserver(const void* observer, const QString& name, const void* object) {
    std::lock_guard lock(mMutex);
    std::erase_if(mObservers, [&](const std::shared_ptr<Observer>& entry) {
        const bool matches = entry->observer == observer && (name.isEmpty() || entry->name == name) && (!object || entry->object == object);
        if (matches)
            entry->removed = true;
        return matches;
    });
}

void NSNotificationCenter::postNotification(const QString& name, const void* object, const QVariantMap& userInfo) {
    std::vector<std::shared_ptr<Observer>> interested;
    {
        std::lock_guard lock(mMutex);
        for (const auto& entry : mObservers)
            if ((entry->name.isEmpty() || entry->name == name) && (!entry->object || entry->object == object))
                interested.push_back(entry);
    }
    const NSNotification notification{name, object, userInfo};
    for (const auto& entry : interested) {
        {
            std::lock_guard lock(mMutex);
            if (entry->removed)
                continue;
        }
        entry->handler(notification);
    }
}

} // namespace quoddle
