// SPDX-License-Identifier: MIT
// quoddle-clipboard: the desktop's clipboard for scripts, which end before somebody pastes what they have copied. Commands come as Apple
// events over the socket on standard input: "set the clipboard to" with a list of forms, and "the clipboard", answered with such a list.
// When the other side closes the socket, the program ends, or stays as long as its contents are the clipboard, until another program takes
// over.
//
// One decision: it has no window, so on Wayland it needs a desktop that gives programs without one the clipboard. On other desktops it uses
// an X server for older programs, which shares the clipboard.
#include "EventSocket.h"
#include "platform/appkit/ApplicationEnd.h"
#include "platform/base/ProgramMain.h"
#include "platform/clipboard/DataControlClipboard.h"
#include "platform/clipboard/QtClipboard.h"

#include <cstdlib>
#include <unistd.h>

#include <QGuiApplication>

using namespace quoddle;

namespace {

/// Whether a Wayland desktop lets us have its clipboard. If so, the application needs no windows. If not, it had better not use Wayland.
bool chooseWayland() {
    const QByteArray chosen = qgetenv("QT_QPA_PLATFORM");
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") || (!chosen.isEmpty() && !chosen.startsWith("wayland")))
        return false;
    const bool isOffered = DataControlClipboard::isOffered();
    if (isOffered)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    else if (!qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb");
    return isOffered;
}

std::unique_ptr<DesktopClipboard> connectToDesktop(bool isWayland) {
    if (isWayland)
        return DataControlClipboard::connectToDesktop();
    return std::make_unique<QtClipboard>();
}

void perform(DesktopClipboard& clipboard, const AEDesc& event, const EventSocket::Completion& completion) {
    AEDesc reply = EventSocket::emptyReply();
    const AEDesc* forms = event.find("----"_4cc);
    const AEDesc* wanted = event.find("rtyp"_4cc);
    if (event.eventID() == "gClp"_4cc)
        (void)reply.put("----"_4cc, AEDesc::list(clipboard.contents(wanted ? wanted->code() : 0)));
    else if (event.eventID() != "pClp"_4cc || !forms || !clipboard.setContents({forms->items().begin(), forms->items().end()}))
        (void)reply.put("errn"_4cc, AEDesc::ofInt32(errAEEventFailed));
    completion(reply);
}

int holdClipboard(int argc, char** argv) {
    if (const auto status = EventSocket::startedByHand("quoddle-clipboard: holds what scripts copy", argc, argv))
        return *status;
    if (::chdir("/") != 0) // it may run for days and must not keep a disk from being ejected
        return EXIT_FAILURE;
    const bool isWayland = chooseWayland();
    const ApplicationPointer<QGuiApplication> application(new QGuiApplication(argc, argv));
    const auto clipboard = connectToDesktop(isWayland);
    if (!clipboard)
        return EventSocket::kNoDisplayStatus;
    EventSocket socket([&](const AEDesc& event, const EventSocket::Completion& completion) { perform(*clipboard, event, completion); });
    const auto endWhenDone = [&] {
        if (!socket.isOpen() && !clipboard->isOwner())
            QCoreApplication::exit(EXIT_SUCCESS);
    };
    QObject::connect(&socket, &EventSocket::closed, application.get(), endWhenDone);
    QObject::connect(clipboard.get(), &DesktopClipboard::lost, application.get(), endWhenDone);
    return QGuiApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    return programMain("quoddle-clipboard", argc, argv, &holdClipboard);
}
