// SPDX-License-Identifier: MIT
// quoddle-fetch: fetches what updates of applets need, texts, and bundles that are downloaded, checked and unpacked; packs applets into
// files, and unpacks these.
//
//   quoddle-fetch text URL MAXIMUM                        the text on standard output
//   quoddle-fetch bundle URL LENGTH SIGNATURE KEY FOLDER  a line with the number of bytes now and then, at the end the path of the bundle
//   quoddle-fetch pack BUNDLE FILE                        makes the file
//   quoddle-fetch unpack FILE SHA256 FOLDER               the path of the bundle, unpacked in the folder
//
// Paths in the output are percent-encoded, because a name may have line ends.
// For programs only. An error is a line for people on standard error, with exit status 1.
//
// One decision: the code that reads the network and foreign archives, or makes such, runs in a process of its own. That process can be
// ended at any time and takes no other one with it, and who needs none of it loads none of the libraries.
#include "platform/base/ProgramMain.h"
#include "platform/delivery/BundleArchive.h"
#include "platform/delivery/BundlePacking.h"
#include "platform/delivery/Download.h"
#include "platform/delivery/Signature.h"
#include "platform/foundation/Translations.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sys/prctl.h>
#include <sys/stat.h>

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QUrl>

using namespace quoddle;
using namespace Qt::StringLiterals;

namespace {

constexpr int kUsageError = 2;
constexpr auto kTextTime = std::chrono::seconds(60);
constexpr qint64 kReports = 100; // the most lines about the progress

int report(const QString& error) {
    std::fprintf(stderr, "%s\n", error.simplified().toUtf8().constData());
    return EXIT_FAILURE;
}

void tell(const QByteArray& line) {
    std::fprintf(stdout, "%s\n", line.constData());
    std::fflush(stdout);
}

int fetchText(const QStringList& words) {
    QFile output;
    if (!output.open(stdout, QIODevice::WriteOnly))
        return report(output.errorString());
    const auto outcome =
        download({.url = QUrl(words[0], QUrl::StrictMode), .maximumSize = words[1].toLongLong(), .wholeTime = kTextTime}, output);
    return outcome ? EXIT_SUCCESS : report(outcome.error());
}

QString faultOf(SignatureVerdict verdict) {
    switch (verdict) {
    case SignatureVerdict::good:
        return {};
    case SignatureVerdict::malformedKey:
        return QCoreApplication::translate("quoddle-fetch", "The applet's own key is damaged.");
    case SignatureVerdict::unreadableFile:
        return QCoreApplication::translate("quoddle-fetch", "What was downloaded cannot be read.");
    case SignatureVerdict::wrong:
    case SignatureVerdict::malformedSignature:
        break;
    }
    return QCoreApplication::translate("quoddle-fetch",
                                       "The signature is wrong: what was downloaded does not come from the applet's maker.");
}

int fetchBundle(const QStringList& words) {
    const qint64 length = words[1].toLongLong();
    const QString folder = words[4], archive = folder + "/archive"_L1, unpacked = folder + "/unpacked"_L1;
    QFile file(archive);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return report(file.errorString());
    qint64 told = 0;
    const auto progress = [&told, length](qint64 received) {
        if (received - told >= length / kReports)
            tell(QByteArray::number(told = received));
    };
    const auto received = download({.url = QUrl(words[0], QUrl::StrictMode), .maximumSize = length, .progress = progress}, file);
    if (!received)
        return report(received.error());
    if (*received != length)
        return report(QCoreApplication::translate("quoddle-fetch", "The download is shorter than was announced."));
    file.close();
    if (const QString fault = faultOf(verifySignature(archive, words[2].toLatin1(), words[3].toLatin1())); !fault.isEmpty())
        return report(fault);
    if (::mkdir(QFile::encodeName(unpacked).constData(), 0700) != 0)
        return report(QCoreApplication::translate("quoddle-fetch", "There is no folder to unpack the archive in."));
    const auto bundle = unpackBundle(archive, unpacked);
    if (!bundle)
        return report(bundle.error());
    tell(QUrl::toPercentEncoding(*bundle, "/"));
    return EXIT_SUCCESS;
}

/// The file is copied first, so that what is unpacked is what has the sum, even when somebody else writes to the file meanwhile.
int unpack(const QStringList& words) {
    const QString folder = words[2], copy = folder + "/archive"_L1;
    if (!QFile::copy(words[0], copy))
        return report(QCoreApplication::translate("quoddle-fetch", "What was packed cannot be read."));
    QFile file(copy);
    QCryptographicHash sum(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !sum.addData(&file) || sum.result().toHex() != words[1].toLatin1())
        return report(QCoreApplication::translate("quoddle-fetch", "The file has changed meanwhile. Try again."));
    const auto bundle = unpackBundle(copy, folder, {.onlyZip = true});
    if (!bundle)
        return report(bundle.error());
    QFile::remove(copy);
    tell(QUrl::toPercentEncoding(*bundle, "/"));
    return EXIT_SUCCESS;
}

int pack(const QStringList& words) {
    const QString error = packBundle(words[0], words[1]);
    return error.isEmpty() ? EXIT_SUCCESS : report(error);
}

int perform(int argc, char** argv) {
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    // Messages of the toolkit are dropped, because the last line on standard error is read as our report.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    QCoreApplication application(argc, argv);
    installTranslations();
    const QStringList words = QCoreApplication::arguments().mid(1);
    if (words.size() == 3 && words[0] == "text"_L1)
        return fetchText(words.mid(1));
    if (words.size() == 6 && words[0] == "bundle"_L1)
        return fetchBundle(words.mid(1));
    if (words.size() == 3 && words[0] == "pack"_L1)
        return pack(words.mid(1));
    if (words.size() == 4 && words[0] == "unpack"_L1)
        return unpack(words.mid(1));
    const bool isAsked = words == QStringList{u"--help"_s};
    std::fputs("quoddle-fetch: fetches updates for applets and unpacks them; other programs start it when they need it\n",
               isAsked ? stdout : stderr);
    return isAsked ? EXIT_SUCCESS : kUsageError;
}

} // namespace

int main(int argc, char** argv) {
    const int status = programMain("quoddle-fetch", argc, argv, &perform);
    std::fflush(nullptr);
    std::_Exit(status); // exit() would wait for the toolkit's network thread, which may still be working for nothing
}
