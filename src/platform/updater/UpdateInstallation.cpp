// SPDX-License-Identifier: MIT
#include "platform/updater/UpdateInstallation.h"

#include "platform/base/File.h"
#include "platform/base/FolderReplacement.h"
#include "platform/foundation/NSBundle.h"
#include "platform/updater/UpdateSettings.h"
#include "platform/updater/VersionOrder.h"

#include <filesystem>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

namespace fs = std::filesystem;

constexpr qint64 kLargestArchive = qint64(1) << 30;
constexpr const char* kPrograms = "Contents/Linux";
const QString kStagingMark = QStringLiteral(".update-");

QString realPath(const NSBundle& bundle) {
    const QString path = QFileInfo(bundle.bundlePath()).canonicalFilePath();
    return path.isEmpty() ? bundle.bundlePath() : path;
}

bool isWritable(const QString& path) {
    return ::access(QFile::encodeName(path).constData(), W_OK) == 0;
}

/// "CFBundleExecutable"; empty when there is none or its path leads elsewhere.
std::string executableName(const QString& bundlePath) {
    const auto bundle = NSBundle::bundleWithPath(bundlePath);
    const QString name = bundle ? bundle->infoDictionary().value(u"CFBundleExecutable"_s).toString() : QString();
    return name.contains(u'/') || name.startsWith(u'.') ? std::string() : QFile::encodeName(name).toStdString();
}

/// Copies the programs of the installed bundle (Contents/Linux) into the new one. The launcher gets the name that the new bundle gives; it
/// works in any bundle.
OSStatus carryOverPrograms(const fs::path& from, const fs::path& to) {
    std::error_code error, ignored;
    fs::remove_all(to / kPrograms, error);
    if (error || !fs::is_directory(from / kPrograms, ignored))
        return statusFromErrno(error.value());
    fs::copy(from / kPrograms, to / kPrograms, fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
    const auto oldName = executableName(QFile::decodeName(from.c_str())), newName = executableName(QFile::decodeName(to.c_str()));
    if (!error && !oldName.empty() && !newName.empty() && !fs::exists(to / kPrograms / newName, ignored))
        fs::copy(to / kPrograms / oldName, to / kPrograms / newName, fs::copy_options::copy_symlinks, error);
    return statusFromErrno(error.value());
}

} // namespace

bool belongsToPackage(const QString& path) {
    static const QStringList sFolders = {u"/usr/"_s,  u"/bin/"_s,       u"/lib/"_s,       u"/app/"_s,
                                         u"/snap/"_s, u"/nix/store/"_s, u"/gnu/store/"_s, u"/var/lib/flatpak/"_s};
    return !path.startsWith("/usr/local/"_L1) &&
           std::any_of(sFolders.begin(), sFolders.end(), [&path](const QString& folder) { return path.startsWith(folder); });
}

QString obstacleToInstalling(const NSBundle& installed, const AppcastItem& item) {
    const QString path = realPath(installed);
    if (item.archive.isEmpty())
        return QCoreApplication::translate("UpdateInstallation", "There is nothing to download in the list of versions.");
    if (publicKeyOfBundle(installed).isEmpty())
        return QCoreApplication::translate("UpdateInstallation",
                                           "The applet has no key to tell by whether a download comes from its maker.");
    if (item.signature.isEmpty())
        return QCoreApplication::translate("UpdateInstallation", "Its maker has not signed it.");
    if (item.archiveLength <= 0 || item.archiveLength > kLargestArchive)
        return QCoreApplication::translate("UpdateInstallation", "The list of versions does not say how large it is.");
    if (belongsToPackage(path))
        return QCoreApplication::translate("UpdateInstallation",
                                           "The applet belongs to a software package, which is updated with the system.");
    if (!isWritable(path) || !isWritable(QFileInfo(path).path()))
        return QCoreApplication::translate("UpdateInstallation", "You may not change the folder that the applet is in.");
    return {};
}

QString faultOfUnpackedBundle(const NSBundle& unpacked, const NSBundle& installed, const AppcastItem& item) {
    if (unpacked.bundleIdentifier() != installed.bundleIdentifier())
        return QCoreApplication::translate("UpdateInstallation", "What was downloaded is another applet.");
    const QString version = versionOfBundle(unpacked);
    if (versionOrder(version, item.version) != 0)
        return QCoreApplication::translate("UpdateInstallation", "What was downloaded is another version.");
    if (unpacked.pathForResource(u"main"_s, u"scpt"_s, u"Scripts"_s).isEmpty())
        return QCoreApplication::translate("UpdateInstallation", "What was downloaded has no script.");
    return {};
}

QString stagingTemplate(const NSBundle& installed) {
    const QFileInfo place(realPath(installed));
    return place.path() + "/."_L1 + place.fileName() + kStagingMark + "XXXXXX"_L1;
}

void removeStaleStaging(const NSBundle& installed) {
    const QFileInfo place(realPath(installed));
    const QString beginning = u'.' + place.fileName() + kStagingMark;
    for (const QString& name : QDir(place.path()).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot))
        if (name.startsWith(beginning))
            QDir(place.path() + u'/' + name).removeRecursively();
}

OSStatus installUpdate(const QString& unpacked, const QString& installed) {
    const std::string from = QFile::encodeName(unpacked).toStdString(), place = QFile::encodeName(installed).toStdString();
    const auto fill = [&](const std::string& folder) {
        if (const OSStatus status = carryOverPrograms(place, from); status != noErr)
            return status;
        std::error_code error;
        fs::rename(from, folder, error); // replaces the empty folder
        return statusFromErrno(error.value());
    };
    return replaceFolder(
        place, [](const std::string&) { return true; }, fill, OldContent::dropped);
}

} // namespace quoddle
