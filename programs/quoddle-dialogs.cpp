// SPDX-License-Identifier: MIT
// quoddle-dialogs: shows dialogs for a program that has no windows of its own. Commands come as Apple events over the socket on standard
// input, one after the other, and their replies go back the same way; it ends when the other side closes the socket.
//
//   quoddle-dialogs NAME      for programs only; NAME is the application that asks, as people know it
//
// One decision: parts that the first dialog does not need are made after it has been painted.
#include "EventSocket.h"
#include "platform/appkit/Appearance.h"
#include "platform/appkit/ApplicationEnd.h"
#include "platform/appkit/BundleIcon.h"
#include "platform/appkit/FontLoading.h"
#include "platform/appkit/NSApplication.h"
#include "platform/base/ProgramMain.h"
#include "platform/clipboard/QtClipboard.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/foundation/Translations.h"
#include "platform/panels/StandardCommands.h"

#include <chrono>
#include <cstdlib>
#include <tuple>

#include <QFile>
#include <QTimer>

using namespace quoddle;
using namespace Qt::StringLiterals;

namespace {

constexpr auto kFirstDialogTime = std::chrono::milliseconds(300);

int perform(int argc, char** argv) {
    if (const auto status = EventSocket::startedByHand("quoddle-dialogs: shows dialogs", argc, argv))
        return *status;
    QCoreApplication::setApplicationName(argc > 1 ? QFile::decodeName(argv[1]) : u"Script"_s);
    const FontLoading fonts;
    setUserDefaultsDomain(u"quoddle-dialogs"_s);
    const ApplicationPointer<NSApplication> application(new NSApplication(argc, argv));
    installTranslations();
    Appearance::applyRememberedScheme();
    QTimer::singleShot(kFirstDialogTime, application.get(), [] {
        std::ignore = applicationIcon(nullptr);
        Appearance::followDesktop();
    });
    EventSocket socket([](const AEDesc& event, EventSocket::Completion completion) {
        performStandardCommand(event, EventSocket::emptyReply(), std::move(completion));
    });
    QObject::connect(&socket, &EventSocket::closed, application.get(), [] { QCoreApplication::exit(EXIT_SUCCESS); });
    const int status = NSApplication::exec();
    leaveClipboardBehind();
    standardUserDefaults().sync();
    return status;
}

} // namespace

int main(int argc, char** argv) {
    return programMain("quoddle-dialogs", argc, argv, &perform);
}
