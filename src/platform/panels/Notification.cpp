// SPDX-License-Identifier: MIT
#include "platform/panels/Notification.h"

#include "platform/appkit/SessionBus.h"
#include "platform/panels/CommandDialog.h"
#include "platform/panels/CommandParameters.h"
#include "platform/panels/NotificationActions.h"
#include "platform/panels/NotificationSender.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QRegularExpression>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 5000;        // milliseconds; long enough for the bus to start the service
constexpr int kServiceDecides = -1;    // the service decides how long the notification is shown
constexpr qsizetype kLongest = 10'000; // letters; no service shows more

struct Notice {
    QString title, body, sound;
};

Notice noticeFrom(const AEDesc& event) {
    const QString title = textParameter(event, "appr"_4cc);
    QStringList lines = {textParameter(event, "subt"_4cc), textParameter(event, "----"_4cc)};
    lines.removeAll(QString());
    for (QString& line : lines)
        line = line.left(kLongest).replace(u'\r', u'\n');
    return {title.isEmpty() ? standardTitle() : title.left(kLongest), lines.join(u'\n'), textParameter(event, "nsou"_4cc)};
}

/// The hints for a sound, which is a name in the desktop's sound theme or the path of a file. Any other name, for instance one of another
/// system's sounds, stands for the sound of a new message.
QVariantMap hintsFor(const QString& sound) {
    static const QRegularExpression kThemeName(u"^[a-z]+(-[a-z0-9]+)+$"_s);
    if (sound.isEmpty())
        return {};
    if (sound.startsWith(u'/'))
        return {{u"sound-file"_s, sound}};
    return {{u"sound-name"_s, kThemeName.match(sound).hasMatch() ? sound : u"message-new-instant"_s}};
}

QDBusMessage callTo(const QString& method) {
    return QDBusMessage::createMethodCall(u"org.freedesktop.Notifications"_s, u"/org/freedesktop/Notifications"_s,
                                          u"org.freedesktop.Notifications"_s, method);
}

void whenAnswered(const QDBusPendingCall& call, std::function<void(const QDBusMessage& answer)> then) {
    auto* watcher = new QDBusPendingCallWatcher(call, QCoreApplication::instance());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, then = std::move(then)] {
        watcher->deleteLater();
        then(watcher->reply());
    });
}

void refuse(AEDesc reply, const std::function<void(const AEDesc&)>& completion) {
    setError(reply, errAENoUserInteraction, u"No service of this desktop shows notifications."_s);
    completion(reply);
}

} // namespace

void sendNotification(const AEDesc& event, const AEDesc& reply, std::function<void(const AEDesc& reply)> completion) {
    const auto bus = runningSessionBus();
    if (!bus)
        return refuse(reply, completion);
    // Services differ in whether they take the text as markup, so the service is asked first.
    const QDBusPendingCall question = bus->asyncCall(callTo(u"GetCapabilities"_s), kPatience);
    whenAnswered(question, [bus = *bus, reply, notice = noticeFrom(event), completion](const QDBusMessage& capabilities) {
        if (capabilities.type() != QDBusMessage::ReplyMessage)
            return refuse(reply, completion);
        const QStringList capable = capabilities.arguments().value(0).toStringList();
        const bool takesMarkup = capable.contains(u"body-markup"_s);
        const QStringList actions = capable.contains(u"actions"_s) ? NotificationActions::actionsNow() : QStringList();
        QDBusMessage call = callTo(u"Notify"_s);
        NotificationSender sender = notificationSender();
        sender.hints.insert(hintsFor(notice.sound));
        call << standardTitle() << 0U << sender.iconName << notice.title << (takesMarkup ? notice.body.toHtmlEscaped() : notice.body)
             << actions << sender.hints << kServiceDecides;
        whenAnswered(bus.asyncCall(call, kPatience), [bus, reply, completion, isWatched = !actions.isEmpty()](const QDBusMessage& answer) {
            if (isWatched && answer.type() == QDBusMessage::ReplyMessage)
                NotificationActions::shared().watch(bus, answer.arguments().value(0).toUInt());
            answer.type() == QDBusMessage::ReplyMessage ? completion(reply) : refuse(reply, completion);
        });
    });
}

} // namespace quoddle
