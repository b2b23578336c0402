// SPDX-License-Identifier: MIT
#include "platform/appkit/DesktopApplication.h"

#include "platform/appkit/NSApplication.h"
#include "platform/appkit/SessionBus.h"
#include "platform/base/FileURL.h"
#include "platform/foundation/DesktopEntry.h"
#include "platform/foundation/NSNotificationCenter.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDir>
#include <QEventLoop>
#include <QGuiApplication>
#include <QTimer>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMaximumFiles = 10'000;
constexpr qsizetype kMaximumURLLength = 16 << 10;
constexpr std::size_t kMaximumWaiting = 64;
constexpr int kPatience = 3000;
constexpr qsizetype kLongestToken = 256; // bytes
constexpr uint kInQueue = 2;             // the bus's answer when another process has the name and this one is next in line

constexpr auto kInvalidArguments = "org.freedesktop.DBus.Error.InvalidArgs"_L1;
constexpr auto kLimitsExceeded = "org.freedesktop.DBus.Error.LimitsExceeded"_L1;

/// The token in what a desktop says about the place where the user asked for the applet. Desktops without a word for it use that for the
/// same purpose on X servers.
QByteArray tokenIn(const QVariantMap& platformData) {
    for (const QString& key : {u"activation-token"_s, u"desktop-startup-id"_s})
        if (const QByteArray token = platformData.value(key).toString().toUtf8(); !token.isEmpty() && token.size() <= kLongestToken)
            return token;
    return {};
}

QDBusMessage callToBus(const QString& method) {
    return QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, method);
}

} // namespace

DesktopApplication::DesktopApplication(const QString& name) : mName(name) {
    connect(this, &DesktopApplication::stateChanged, this, &DesktopApplication::deliver, Qt::QueuedConnection);
}

DesktopApplication::~DesktopApplication() {
    NSNotificationCenter::defaultCenter().removeObserver(this);
    leaveBus();
}

void DesktopApplication::connectToBus() {
    if (mBus)
        return;
    auto bus = runningSessionBus();
    // The object is registered before the name is asked for, because requests that wait for the name arrive together with it.
    if (!bus || !bus->registerObject(desktopObjectPath(mName), this, QDBusConnection::ExportScriptableSlots))
        return;
    mBus = bus;
    QDBusMessage question = callToBus(u"RequestName"_s);
    question << mName << uint(0);
    auto* watcher = new QDBusPendingCallWatcher(bus->asyncCall(question, kPatience), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<uint> reply = *watcher;
        mIsElsewhere = reply.isValid() && reply.value() == kInQueue;
        Q_EMIT stateChanged();
    });
}

void DesktopApplication::leaveBus() {
    if (!mBus)
        return;
    QDBusMessage message = callToBus(u"ReleaseName"_s);
    message << mName;
    mBus->call(message, QDBus::NoBlock);
    mBus->unregisterObject(desktopObjectPath(mName));
    mBus.reset();
}

DesktopApplication::Arrival DesktopApplication::waitForRequest(std::chrono::milliseconds patience) {
    if (mRequests.empty() && !mIsElsewhere && mBus) {
        QEventLoop loop;
        connect(this, &DesktopApplication::stateChanged, &loop, [this, &loop] {
            if (!mRequests.empty() || mIsElsewhere)
                loop.quit();
        });
        QTimer::singleShot(patience, &loop, &QEventLoop::quit);
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    }
    if (!mRequests.empty())
        return Arrival::request;
    return mIsElsewhere ? Arrival::elsewhere : Arrival::nothing;
}

std::optional<DesktopApplication::Request> DesktopApplication::takeRequest() {
    if (mRequests.empty())
        return std::nullopt;
    Request request = std::move(mRequests.front());
    mRequests.pop_front();
    if (QGuiApplication::platformName().startsWith("wayland"_L1)) { // the toolkit takes the token from there
        if (request.token.isEmpty())
            qunsetenv("XDG_ACTIVATION_TOKEN"); // of an earlier request that brought no window
        else
            qputenv("XDG_ACTIVATION_TOKEN", request.token);
    }
    return request;
}

void DesktopApplication::serve(NSApplication& application) {
    if (!application.isRunning())
        return leaveBus();
    mApplication = &application;
    // While the application ends, a request is better answered by a new process.
    NSNotificationCenter::defaultCenter().addObserver(
        this,
        [this](const NSNotification&) {
            mApplication = nullptr;
            leaveBus();
        },
        NSApplicationWillTerminateNotification);
    Q_EMIT stateChanged();
}

void DesktopApplication::Activate(const QVariantMap& platformData) {
    accept({Kind::activate, {}, tokenIn(platformData)});
}

void DesktopApplication::Open(const QStringList& uris, const QVariantMap& platformData) {
    if (uris.isEmpty())
        return refuse(kInvalidArguments, u"There is no file to open."_s);
    if (uris.size() > kMaximumFiles)
        return refuse(kLimitsExceeded, u"These are too many files at once."_s);
    QStringList files;
    for (const QString& uri : uris) {
        if (uri.size() > kMaximumURLLength)
            return refuse(kLimitsExceeded, u"The address of a file is too long."_s);
        const auto path = pathFromFileURL(uri.toStdString());
        if (!path)
            return refuse(kInvalidArguments, u"Only files of this computer can be opened, not \"%1\"."_s.arg(uri.left(200)));
        files << QDir::cleanPath(QString::fromStdString(*path));
    }
    accept({Kind::open, files, tokenIn(platformData)});
}

void DesktopApplication::ActivateAction(const QString& action, const QVariantList&, const QVariantMap&) {
    if (action != "quit"_L1)
        return refuse(kInvalidArguments, u"There is no action \"%1\"; the only one is \"quit\"."_s.arg(action.left(200)));
    accept({Kind::quit, {}, {}});
}

void DesktopApplication::refuse(const QString& error, const QString& message) {
    if (calledFromDBus())
        sendErrorReply(error, message);
}

void DesktopApplication::accept(Request request) {
    if (mRequests.size() >= kMaximumWaiting)
        return refuse(kLimitsExceeded, u"The applet is busy with earlier requests."_s);
    mRequests.push_back(std::move(request));
    Q_EMIT stateChanged();
}

void DesktopApplication::deliver() {
    while (mApplication && mApplication->isRunning()) {
        const auto request = takeRequest();
        if (!request)
            return;
        if (request->kind == Kind::open)
            mApplication->openFiles(request->files);
        else if (request->kind == Kind::activate)
            mApplication->reopen(true);
        else
            mApplication->terminate();
    }
}

} // namespace quoddle
