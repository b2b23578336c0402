// SPDX-License-Identifier: MIT
// The applet as the desktop talks to it: org.freedesktop.Application on the session bus, under the name of its desktop entry.
// One decision: a request is checked and answered at once and carried out afterwards from the event loop, so that no caller waits for a
// script or a question. Nothing happens where there is no bus. Whether the desktop knows the applet is decided elsewhere (DesktopEntry.h).
#pragma once

#include <chrono>
#include <deque>
#include <optional>

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace quoddle {

class NSApplication;

/// Requests come in from connectToBus() on and are kept until takeRequest() or serve() takes them. Main thread.
class DesktopApplication final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    enum class Kind { activate, open, quit };
    struct Request {
        Kind kind;
        QStringList files; ///< of an open request: absolute paths, at least one
        QByteArray token;  ///< with which a Wayland desktop lets a window come to the front; empty for none
    };
    /// How waiting ended: a request has come, another process has the name, or the time is over.
    enum class Arrival { request, elsewhere, nothing };

    explicit DesktopApplication(const QString& name);
    ~DesktopApplication() override;

    /// Asks for the name and does not wait for the answer. While another process has the name this one stands in line for it.
    void connectToBus();
    /// Gives the name back; requests that have come stay.
    void leaveBus();

    /// Runs the event loop until a request is there or another process has the name, at most for `patience`.
    Arrival waitForRequest(std::chrono::milliseconds patience);
    /// On Wayland the next window that comes to the front does so with the request's token.
    std::optional<Request> takeRequest();
    /// Hands requests to the application from now on: open to openFiles(), activate to reopen(), quit to terminate(). The application is
    /// not owned. When it terminates, this ends with leaveBus().
    void serve(NSApplication& application);

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    /// Takes file URLs only, at least one and not more than 10,000, each at most 16 KiB long; a call with anything else is refused as a
    /// whole.
    Q_SCRIPTABLE void Open(const QStringList& uris, const QVariantMap& platformData);
    /// Performs "quit", the only action.
    Q_SCRIPTABLE void ActivateAction(const QString& action, const QVariantList& parameter, const QVariantMap& platformData);

Q_SIGNALS:
    void stateChanged();

private:
    void refuse(const QString& error, const QString& message);
    void accept(Request request);
    void deliver();

    const QString mName;
    std::optional<QDBusConnection> mBus;
    std::deque<Request> mRequests;
    NSApplication* mApplication = nullptr;
    bool mIsElsewhere = false;
};

} // namespace quoddle
