// SPDX-License-Identifier: MIT
// Requests from outside the windows: signals, the end of the session, menu actions.
#include "platform/appkit/NSApplication.h"

#include "platform/appkit/NSWindow.h"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QSessionManager>
#include <QSocketNotifier>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

int signalPipe[2] = {-1, -1};

// Only writes a byte, because a signal handler is allowed little more; the event loop reads it and acts.
void noteSignal(int) {
    const int saved = errno;
    const char byte = 0;
    [[maybe_unused]] const auto written = write(signalPipe[1], &byte, 1);
    errno = saved;
}

/// The slot of the widget with the focus that performs an editing action; null for an action of another kind.
const char* editingSlot(const QString& action) {
    static constexpr struct {
        QLatin1StringView action;
        const char* slot;
    } kSlots[] = {{"undo:"_L1, "undo"}, {"redo:"_L1, "redo"},   {"cut:"_L1, "cut"},
                  {"copy:"_L1, "copy"}, {"paste:"_L1, "paste"}, {"selectAll:"_L1, "selectAll"}};
    for (const auto& row : kSlots)
        if (action == row.action)
            return row.slot;
    return nullptr;
}

bool focusHas(const char* slot) {
    const QWidget* focus = QApplication::focusWidget();
    return focus && focus->metaObject()->indexOfMethod(QByteArray(slot) + "()") >= 0;
}

} // namespace

void NSApplication::watchSignals() {
    if (signalPipe[0] >= 0 || pipe2(signalPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    struct sigaction action = {};
    action.sa_handler = &noteSignal;
    action.sa_flags = SA_RESTART;
    for (int number : {SIGTERM, SIGINT, SIGHUP})
        sigaction(number, &action, nullptr);
    auto* notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char bytes[16];
        while (read(signalPipe[0], bytes, sizeof bytes) > 0) {
        }
        if (!mTerminating && !(mDelegate && mDelegate->applicationReceivedSignal()))
            terminate();
    });
}

void NSApplication::endOfSession(QSessionManager& manager) {
    // The session manager asks once and needs the answer now, so an answer that comes later is waited for, but not for long.
    constexpr qint64 kPatience = 3000;
    terminate();
    QElapsedTimer timer;
    timer.start();
    while (mReplyPending && !mTerminating && timer.elapsed() < kPatience)
        processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents, 50);
    if (!mTerminating)
        manager.cancel();
}

bool NSApplication::validatesAction(const QString& action) const {
    if (const char* slot = editingSlot(action))
        return focusHas(slot);
    if (action == "performClose:"_L1 || action == "performMiniaturize:"_L1) {
        const auto* window = qobject_cast<NSWindow*>(activeWindow());
        return window && !window->attachedSheet();
    }
    return action == "terminate:"_L1 || mActions.contains(action);
}

bool NSApplication::validateMenuItem(const NSMenuItem& item) const {
    if (item.action().isEmpty())
        return item.submenu() != nullptr;
    if (mDelegate && mDelegate->respondsToAction(item.action()))
        return mDelegate->validateMenuItem(item);
    return validatesAction(item.action());
}

bool NSApplication::sendAction(const NSMenuItem& item) {
    if (!validateMenuItem(item))
        return false;
    const QString action = item.action();
    if (mDelegate && mDelegate->respondsToAction(action))
        mDelegate->performAction(action);
    else if (const auto added = mActions.constFind(action); added != mActions.constEnd())
        (*added)();
    else if (const char* slot = editingSlot(action))
        QMetaObject::invokeMethod(focusWidget(), slot);
    else if (action == "performClose:"_L1)
        activeWindow()->close();
    else if (action == "performMiniaturize:"_L1)
        activeWindow()->showMinimized();
    else
        terminate();
    return true;
}

} // namespace quoddle
