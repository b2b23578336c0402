// SPDX-License-Identifier: MIT
// Shows dialogs in a running applet, again and again, beside a bare message box of the toolkit on the same window, and says how long each
// took from the event (for the box: from the call) until it was painted.
//
//   bench-dialogs APPLET ROUNDS      milliseconds, the median of the rounds
#include "dialogs/AppDelegate+StandardAdditions.h"
#include "platform/ae/AESendMessage.h"
#include "platform/appkit/NSApplication.h"
#include "platform/applescript/AppleScriptComponent.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/NSBundle.h"
#include "runtime/AppDelegate.h"
#include "window/AppKitAlertPresenter.h"
#include "window/AppletWindowController.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include <QDialog>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTimer>

using namespace quoddle;

namespace {

using Clock = std::chrono::steady_clock;

/// Waits for the first painting of a dialog, notes the time and closes the dialog.
class Painting : public QObject {
public:
    Painting() { qApp->installEventFilter(this); }

    /// Finishes the work that the dialog before has left, so that it does not count.
    static void settle() {
        QElapsedTimer timer;
        for (timer.start(); timer.elapsed() < 100;)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }

    double millisecondsOf(const std::function<void()>& show) {
        settle();
        mPainted = false;
        mStart = Clock::now();
        show();
        while (!mPainted || mDialog)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return mMilliseconds;
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* dialog = event->type() == QEvent::Paint ? qobject_cast<QDialog*>(watched) : nullptr;
        if (dialog && !mPainted) {
            mPainted = true;
            mDialog = dialog;
            // Runs when the painting is over.
            QTimer::singleShot(0, this, [this] {
                mMilliseconds = std::chrono::duration<double, std::milli>(Clock::now() - mStart).count();
                QTimer::singleShot(30, this, [this] { std::exchange(mDialog, nullptr)->done(1); });
            });
        }
        return false;
    }

private:
    Clock::time_point mStart;
    double mMilliseconds = 0;
    bool mPainted = false;
    QDialog* mDialog = nullptr;
};

double median(std::vector<double> times) {
    std::nth_element(times.begin(), times.begin() + times.size() / 2, times.end());
    return times[times.size() / 2];
}

AEDesc listOf(int items) {
    std::vector<AEDesc> list;
    for (int i = 1; i <= items; ++i)
        list.push_back(AEDesc::ofUTF8("Item number " + std::to_string(i)));
    return AEDesc::list(std::move(list));
}

AEDesc command(AEEventClass eventClass, AEEventID eventID, AEDesc direct) {
    AEDesc event = AEDesc::appleEvent(eventClass, eventID, AEDesc::ofCurrentProcess());
    (void)event.put("----"_4cc, std::move(direct));
    return event;
}

/// Sends an event like a script: from another thread, which waits.
void sendAndWait(const AEDesc& event) {
    std::thread([event] {
        AEDesc reply;
        (void)AESendMessage(event, &reply, kAEWaitReply, kNoTimeOut);
    }).detach();
}

} // namespace

int main(int argc, char** argv) {
    const std::string bundlePath = argc > 1 ? argv[1] : "";
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 0;
    NSApplication application(argc, argv);
    registerAppleScriptComponent();
    NSBundle::setMainBundle(NSBundle::bundleWithPath(QString::fromStdString(bundlePath)));
    if (!NSBundle::mainBundle() || rounds < 1) {
        std::fprintf(stderr, "usage: bench-dialogs APPLET ROUNDS\n");
        return 2;
    }
    AppKitAlertPresenter alerts;
    std::shared_ptr<AppletWindowController> controller;
    AppDelegateParts parts;
    parts.application = &application;
    parts.alerts = &alerts;
    parts.installOSAXEventHandlers = &installOSAXEventHandlers;
    parts.instantiateController = [&controller](const QString&) {
        controller = std::make_shared<AppletWindowController>();
        controller->load();
        return controller;
    };
    AppDelegate delegate(std::move(parts));
    application.setDelegate(&delegate);
    delegate._setupApplication(false);
    controller->showWindow();

    Painting painting;
    const std::pair<const char*, std::function<void()>> kDialogs[] = {
        {"box",
         [&controller] {
             auto* box = new QMessageBox(QMessageBox::NoIcon, {}, QStringLiteral("Do you want to go on?"),
                                         QMessageBox::Ok | QMessageBox::Cancel, controller->window());
             box->setAttribute(Qt::WA_DeleteOnClose);
             box->open();
         }},
        {"dialog", [] { sendAndWait(command("syso"_4cc, "dlog"_4cc, AEDesc::ofUTF8("Do you want to go on?"))); }},
        {"alert", [] { sendAndWait(command("syso"_4cc, "disA"_4cc, AEDesc::ofUTF8("Do you want to go on?"))); }},
        {"list", [event = command("gtqp"_4cc, "chlt"_4cc, listOf(10))] { sendAndWait(event); }},
        {"longlist", [event = command("gtqp"_4cc, "chlt"_4cc, listOf(100'000))] { sendAndWait(event); }},
        {"file", [event = command("syso"_4cc, "stdf"_4cc, AEDesc())] { sendAndWait(event); }},
    };
    std::vector<std::vector<double>> times(std::size(kDialogs));
    for (int round = 0; round <= rounds; ++round)
        for (std::size_t i = 0; i < std::size(kDialogs); ++i) {
            const double took = painting.millisecondsOf(kDialogs[i].second);
            if (round > 0) // the first round runs without any cache and does not count
                times[i].push_back(took);
        }
    for (std::size_t i = 0; i < std::size(kDialogs); ++i)
        std::printf("%s %.2f\n", kDialogs[i].first, median(times[i]));
    std::fflush(stdout);
    std::_Exit(0); // skips the clean-up, which nobody needs here
}
