// SPDX-License-Identifier: MIT
#include "platform/appkit/filepanel/FilePortal.h"

#include "platform/appkit/SessionBus.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QUrl>
#include <QWidget>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

const QString kService = u"org.freedesktop.portal.Desktop"_s;
const QString kPath = u"/org/freedesktop/portal/desktop"_s;
const QString kRequestFolder = kPath + u"/request/"_s;
const QString kInterface = u"org.freedesktop.portal.FileChooser"_s;
const QString kRequest = u"org.freedesktop.portal.Request"_s;
constexpr int kPatience = 3000;                        // milliseconds; long enough for the bus to start the portal
constexpr uint kKnowsFolders = 3, kBeginsInFolder = 4; // versions of the interface
constexpr qsizetype kMostFiles = 100'000;
constexpr qint64 kQuickest = 500; // milliseconds in which a person may have seen a chooser and closed it

/// One condition of a filter (us): the second is a pattern of names when the first is 0, a MIME type when it is 1.
struct FilterCondition {
    uint kind;
    QString value;
};
/// The filters a(sa(us)); each has a name, which the user sees.
struct FileFilter {
    QString name;
    QList<FilterCondition> conditions;
};

QDBusArgument& operator<<(QDBusArgument& argument, const FilterCondition& condition) {
    argument.beginStructure();
    argument << condition.kind << condition.value;
    argument.endStructure();
    return argument;
}
QDBusArgument& operator<<(QDBusArgument& argument, const FileFilter& filter) {
    argument.beginStructure();
    argument << filter.name << filter.conditions;
    argument.endStructure();
    return argument;
}
// Nothing asks for the values; the registration of the types does.
const QDBusArgument& operator>>(const QDBusArgument& argument, FilterCondition&) {
    return argument;
}
const QDBusArgument& operator>>(const QDBusArgument& argument, FileFilter&) {
    return argument;
}

QVariant filtersFor(const FilePortalRequest& request) {
    FileFilter filter{request.namePatterns.join(u' '), {}};
    for (const QString& pattern : request.namePatterns)
        filter.conditions.append({0, pattern});
    for (const QString& type : request.mimeTypes)
        filter.conditions.append({1, type});
    if (filter.name.isEmpty())
        filter.name = QCoreApplication::translate("FilePortal", "Files that can be chosen");
    qDBusRegisterMetaType<FilterCondition>();
    qDBusRegisterMetaType<QList<FilterCondition>>();
    qDBusRegisterMetaType<FileFilter>();
    qDBusRegisterMetaType<QList<FileFilter>>();
    return QVariant::fromValue(QList<FileFilter>{filter});
}

QVariantMap optionsFor(const FilePortalRequest& request, const QString& token) {
    QVariantMap options{{u"handle_token"_s, token}, {u"modal"_s, true}};
    if (!request.acceptLabel.isEmpty()) // underlines mark the letter of a shortcut there
        options.insert(u"accept_label"_s, QString(request.acceptLabel).replace(u'_', u"__"_s));
    if (!request.folder.isEmpty())
        options.insert(u"current_folder"_s, request.folder.toLocal8Bit() + '\0');
    if (request.saves) {
        if (!request.name.isEmpty())
            options.insert(u"current_name"_s, request.name);
        return options;
    }
    options.insert(u"multiple"_s, request.multiple);
    if (request.folders)
        options.insert(u"directory"_s, true);
    if (!request.namePatterns.isEmpty() || !request.mimeTypes.isEmpty())
        options.insert(u"filters"_s, filtersFor(request));
    return options;
}

/// The window as the portal names it; empty where the platform has no name that can be told.
QString nameOf(const QWidget* window) {
    if (!window || !window->internalWinId() || QGuiApplication::platformName() != "xcb"_L1)
        return {};
    return u"x11:"_s + QString::number(window->internalWinId(), 16);
}

QDBusMessage callTo(const QString& interface, const QString& method) {
    return QDBusMessage::createMethodCall(kService, kPath, interface, method);
}

uint versionNeededFor(const FilePortalRequest& request) {
    if (!request.saves && !request.folder.isEmpty())
        return kBeginsInFolder;
    return request.folders ? kKnowsFolders : 1;
}

} // namespace

FilePortal::FilePortal(QObject* parent) : QObject(parent) {
    connect(&mPortalWatcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { finish(Outcome::failed); });
}

FilePortal::~FilePortal() {
    cancel();
}

bool FilePortal::mayExist(const QWidget* window) {
    return qEnvironmentVariable("QUODDLE_FILE_PANEL") != "own"_L1 && (!window || !nameOf(window).isEmpty()) && runningSessionBus();
}

void FilePortal::begin(const FilePortalRequest& request, const QWidget* window, Completion completion) {
    Q_ASSERT(!isAsking());
    mCompletion = std::move(completion);
    const quint64 number = ++mNumber;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    mPortalWatcher.setConnection(bus);
    mPortalWatcher.setWatchedServices({kService});
    mPortalWatcher.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    QDBusMessage question = callTo(u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question << kInterface << u"version"_s;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question, kPatience), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, number, request, parent = nameOf(window)] {
        watcher->deleteLater();
        if (number != mNumber || !isAsking())
            return;
        const QDBusPendingReply<QDBusVariant> answer = *watcher;
        answer.isError() ? finish(Outcome::failed) : ask(request, parent, answer.value().variant().toUInt());
    });
}

void FilePortal::ask(const FilePortalRequest& request, const QString& window, uint version) {
    if (version < versionNeededFor(request))
        return finish(Outcome::failed);
    const QDBusConnection bus = QDBusConnection::sessionBus();
    // The answer may come before the call that asks for it returns, so its place is known and listened at before.
    const quint64 number = mNumber;
    const QString token = u"quoddle%1"_s.arg(number);
    listenAt(kRequestFolder + bus.baseService().mid(1).replace(u'.', u'_') + u'/' + token);
    QDBusMessage call = callTo(kInterface, request.saves ? u"SaveFile"_s : u"OpenFile"_s);
    call << window << request.title << optionsFor(request, token);
    mSinceAsked.start();
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, number] {
        watcher->deleteLater();
        if (number != mNumber || !isAsking())
            return;
        const QDBusPendingReply<QDBusObjectPath> answer = *watcher;
        if (answer.isError())
            return finish(Outcome::failed);
        const QString path = answer.value().path();
        if (!path.startsWith(kRequestFolder))
            return finish(Outcome::failed);
        if (path != mRequestPath) // portals before version 0.9 choose the place themselves
            listenAt(path);
    });
}

void FilePortal::listenAt(const QString& path) {
    stopListening();
    mRequestPath = path;
    QDBusConnection::sessionBus().connect(kService, path, kRequest, u"Response"_s, this, SLOT(responded(uint, QVariantMap)));
}

void FilePortal::stopListening() {
    if (mRequestPath.isEmpty())
        return;
    QDBusConnection::sessionBus().disconnect(kService, std::exchange(mRequestPath, {}), kRequest, u"Response"_s, this,
                                             SLOT(responded(uint, QVariantMap)));
}

void FilePortal::responded(uint response, const QVariantMap& results) {
    constexpr uint kChosen = 0, kCancelledByUser = 1;
    // Some portals answer "ended in another way" to the Escape key, and when they could not show the chooser at all.
    const bool wasClosed = response != kChosen && mSinceAsked.hasExpired(kQuickest);
    if (response == kCancelledByUser || wasClosed)
        return finish(Outcome::cancelled);
    QStringList paths;
    const QStringList uris = results.value(u"uris"_s).toStringList();
    for (const QString& uri : uris.first(std::min(uris.size(), kMostFiles))) {
        const QUrl url(uri);
        const QString path = url.isLocalFile() ? url.toLocalFile() : QString();
        if (path.startsWith(u'/') && !path.contains(QChar(0)))
            paths << path;
    }
    response == kChosen && !paths.isEmpty() ? finish(Outcome::chosen, paths) : finish(Outcome::failed);
}

void FilePortal::cancel() {
    if (!isAsking())
        return;
    mCompletion = {};
    ++mNumber;
    if (!mRequestPath.isEmpty())
        QDBusConnection::sessionBus().send(QDBusMessage::createMethodCall(kService, mRequestPath, kRequest, u"Close"_s));
    stopListening();
}

void FilePortal::finish(Outcome outcome, const QStringList& paths) {
    if (!isAsking())
        return;
    stopListening();
    std::exchange(mCompletion, {})(outcome, paths);
}

} // namespace quoddle
