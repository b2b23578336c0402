// SPDX-License-Identifier: MIT
// quoddle-dialogs: shows dialogs for a program that has no windows of its own. Commands come as Apple events over the socket on standard
// input, one after the other, and their replies go back the same way; it ends when the other side closes the socket.
//
//   quoddle-dialogs NAME      for programs only; NAME is the application that asks, as people know it
//
// One decision: whatever the first dialog does not need is not there until it has been painted.
#include "platform/ae/AEFlatten.h"
#include "platform/ae/transport/AEFrame.h"
#include "platform/appkit/Appearance.h"
#include "platform/appkit/BundleIcon.h"
#include "platform/appkit/NSApplication.h"
#include "platform/base/ProgramMain.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/panels/StandardCommands.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <sys/socket.h>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

#include <QFile>
#include <QSocketNotifier>
#include <QTimer>

using namespace quoddle;
using namespace Qt::StringLiterals;

namespace {

constexpr int kUsageError = 2;
constexpr int kNoDisplay = 3; // known to who starts us
constexpr auto kFirstDialogTime = std::chrono::milliseconds(300);

/// Qt ends a program that finds no display by aborting, which leaves a core; it is nothing out of the ordinary.
void endQuietly(QtMsgType type, const QMessageLogContext&, const QString&) {
    if (type == QtFatalMsg)
        std::_Exit(kNoDisplay);
}

bool isSocket(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISSOCK(status.st_mode);
}

class Commands : public QObject {
public:
    Commands() : mReadable(STDIN_FILENO, QSocketNotifier::Read) { connect(&mReadable, &QSocketNotifier::activated, this, &Commands::read); }

private:
    void read() {
        char bytes[65536];
        const ssize_t count = ::recv(STDIN_FILENO, bytes, sizeof bytes, MSG_DONTWAIT);
        if (count < 0 && (errno == EINTR || errno == EAGAIN))
            return;
        if (count <= 0)
            return leave();
        mReader.append({bytes, static_cast<std::size_t>(count)});
        AEFrame frame;
        while (true) {
            const auto complete = mReader.next(frame);
            if (!complete)
                return leave();
            if (!*complete)
                return;
            perform(frame);
        }
    }

    void perform(const AEFrame& frame) {
        AEDesc event;
        if (frame.kind != AEFrame::Kind::Event || AEUnflattenDesc(frame.payload, event) != noErr || !event.isAppleEvent())
            return leave();
        StandardCommands::shared().perform(event, AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc),
                                           [this, id = frame.id](const AEDesc& reply) { answer(id, reply); });
    }

    void answer(std::uint32_t id, const AEDesc& reply) {
        AEFrame frame{.kind = AEFrame::Kind::Reply, .id = id};
        (void)AEFlattenDesc(reply, frame.payload);
        const std::string bytes = frame.bytes();
        // Who asked waits for it: the socket takes it as fast as it is read.
        for (std::string_view rest = bytes; !rest.empty();) {
            const ssize_t count = ::send(STDIN_FILENO, rest.data(), rest.size(), MSG_NOSIGNAL);
            if (count < 0 && errno != EINTR)
                return leave();
            rest.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        }
    }

    void leave() {
        mReadable.setEnabled(false);
        QCoreApplication::exit(EXIT_SUCCESS);
    }

    QSocketNotifier mReadable;
    AEFrameReader mReader;
};

int perform(int argc, char** argv) {
    if (!isSocket(STDIN_FILENO)) { // otherwise the argument is the name of a script
        const bool isAsked = argc > 1 && std::string_view(argv[1]) == "--help";
        std::fputs("quoddle-dialogs: shows dialogs for other programs, which start it when they need it\n", isAsked ? stdout : stderr);
        return isAsked ? EXIT_SUCCESS : kUsageError;
    }
    qInstallMessageHandler(&endQuietly);
    QCoreApplication::setApplicationName(argc > 1 ? QFile::decodeName(argv[1]) : u"Script"_s);
    setUserDefaultsDomain(u"quoddle-dialogs"_s);
    NSApplication application(argc, argv);
    Appearance::applyRememberedScheme();
    QTimer::singleShot(kFirstDialogTime, &application, [] {
        std::ignore = applicationIcon(nullptr);
        Appearance::followDesktop();
    });
    Commands commands;
    const int status = NSApplication::exec();
    standardUserDefaults().sync();
    return status;
}

} // namespace

int main(int argc, char** argv) {
    return programMain("quoddle-dialogs", argc, argv, &perform);
}
