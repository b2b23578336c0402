// SPDX-License-Identifier: MIT
// Notifications by name and sender, delivered on the posting thread before postNotification() returns.
// Decision: an observer that is removed while a notification is being delivered is not called any more.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include <QString>
#include <QVariantMap>

namespace quoddle {

struct NSNotification {
    QString name;
    /// The sender, only for comparing; may be null.
    const void* object = nullptr;
    QVariantMap userInfo;
};

/// All functions are thread-safe.
class NSNotificationCenter {
public:
    using Handler = std::function<void(const NSNotification&)>;

    static NSNotificationCenter& defaultCenter();

    /// An empty name observes every name, a null object every sender. `observer` only identifies the registration for removal; it is not
    /// kept alive.
    void addObserver(const void* observer, Handler handler, const QString& name, const void* object = nullptr);
    /// Removes the registrations with this name and object; an empty name stands for all names, a null object for all objects.
    void removeObserver(const void* observer, const QString& name = {}, const void* object = nullptr);
    /// Calls the observers in the order of their registration.
    void postNotification(const QString& name, const void* object = nullptr, const QVariantMap& userInfo = {});

private:
    struct Observer {
        const void* observer;
        QString name;
        const void* object;
        Handler handler;
        bool removed = false;
    };
    std::mutex mMutex;
    std::vector<std::shared_ptr<Observer>> mObservers;
};

} // namespace quoddle
