// SPDX-License-Identifier: MIT
#include "PackedApplets.h"

#include "Applets.h"
#include "platform/base/FolderReplacement.h"
#include "platform/base/UserFolders.h"

#include <filesystem>

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

namespace quoddle::tool {

namespace fs = std::filesystem;
using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kLargestFile = qint64(1) << 30;
constexpr auto kEnding = ".appletz"_L1;
constexpr OSStatus kDuplicateName = -48;
constexpr OSStatus kNotUnpacked = -36;

QString packedFolder() {
    return QFile::decodeName((dataFolder() + "/quoddle/packed").c_str());
}

/// Runs quoddle-fetch. Answers the last line of its output, or that of its complaint.
Result<QString, QString> fetch(const QStringList& words, Speech speech) {
    const QString program = QCoreApplication::applicationDirPath() + u"/quoddle-fetch"_s;
    QProcess process;
    if (speech == Speech::english) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
        environment.remove(u"LANGUAGE"_s);
        process.setProcessEnvironment(environment);
    }
    process.start(program, words);
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit)
        return Failure{program + u": "_s + process.errorString()};
    const bool isDone = process.exitCode() == 0;
    const QString text = QString::fromUtf8(isDone ? process.readAllStandardOutput() : process.readAllStandardError());
    const QString line = text.trimmed().section(u'\n', -1);
    if (!isDone)
        return Failure{line};
    return line;
}

/// The bundle in a folder of ours; empty when there is none.
QString bundleIn(const QString& folder) {
    for (const QString& name : QDir(folder).entryList({u"*.app"_s}, QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks))
        if (QFileInfo(folder + u'/' + name + u"/Contents"_s).isDir())
            return folder + u'/' + name;
    return {};
}

/// Whether the path is that of a folder. A link is none: its target belongs to somebody else.
bool isOwnFolder(const QString& path) {
    const QFileInfo info(path);
    return info.isDir() && !info.isSymLink();
}

/// Removes what processes that were killed have left half unpacked.
void removeLeftovers() {
    const QDateTime longAgo = QDateTime::currentDateTime().addSecs(-3600);
    for (const QFileInfo& left :
         QDir(packedFolder()).entryInfoList({u".*"_s}, QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks))
        if (left.lastModified() < longAgo)
            QDir(left.filePath()).removeRecursively();
}

QString unreadable(const QString& path, const QString& why) {
    return QCoreApplication::translate("PackedApplets", "“%1” cannot be read: %2").arg(QFileInfo(path).fileName(), why);
}

} // namespace

bool isPackedAppletName(const std::string& word) {
    const QString name = QFile::decodeName(fs::path(word).filename().c_str());
    return name.size() > kEnding.size() && name.endsWith(kEnding, Qt::CaseInsensitive);
}

bool isPackedApplet(const std::string& word) {
    std::error_code error;
    return isPackedAppletName(word) && fs::is_regular_file(word, error);
}

Result<std::string, std::string> packApplet(const std::string& bundle, const std::string& output) {
    std::string file = output;
    if (file.empty()) {
        const fs::path folder = fs::path(bundle).filename();
        file = "./" + (folder.extension() == ".app" ? folder.stem() : folder).string() + kEnding.data();
    }
    const QString shownFile = QFile::decodeName(file.c_str());
    std::error_code error;
    if (const auto there = fs::status(file, error); fs::exists(there) && !fs::is_regular_file(there))
        return Failure{printable(shownFile) + ": something that is no file has this name"};
    if (const auto packed = fetch({u"pack"_s, QFile::decodeName(bundle.c_str()), shownFile}, Speech::english); !packed)
        return Failure{printable(packed.error())};
    if (const auto made = PackedApplet::read(file))
        made->remember();
    return file.starts_with("./") ? file.substr(2) : file;
}

Result<PackedApplet, QString> PackedApplet::read(const std::string& path, Speech speech) {
    const QString absolute = QFileInfo(QFile::decodeName(path.c_str())).absoluteFilePath();
    QFile file(absolute);
    QCryptographicHash sum(QCryptographicHash::Sha256);
    if (QFile::encodeName(QFile::decodeName(path.c_str())).toStdString() != path)
        return Failure{unreadable(absolute, QCoreApplication::translate("PackedApplets", "its name is not UTF-8; rename it"))};
    if (file.size() > kLargestFile)
        return Failure{unreadable(absolute, QCoreApplication::translate("PackedApplets", "it is too large"))};
    if (!file.open(QIODevice::ReadOnly) || !sum.addData(&file))
        return Failure{unreadable(absolute, file.errorString())};
    return PackedApplet(absolute, QString::fromLatin1(sum.result().toHex()), speech);
}

QString PackedApplet::folder() const {
    return packedFolder() + u'/' + mSum;
}

void PackedApplet::remember() const {
    QDir().mkpath(folder());
}

bool PackedApplet::isKnown() const {
    return isOwnFolder(folder());
}

std::optional<std::string> PackedApplet::keptBundle() const {
    const QString bundle = isKnown() ? bundleIn(folder()) : QString();
    return bundle.isEmpty() ? std::nullopt : std::optional(QFile::encodeName(bundle).toStdString());
}

Result<std::string, QString> PackedApplet::unpackInto(const QString& place) const {
    const auto unpacked = fetch({u"unpack"_s, mPath, mSum, place}, mSpeech);
    if (!unpacked)
        return Failure{unreadable(mPath, unpacked.error())};
    const QString bundle = bundleIn(place);
    if (bundle.isEmpty())
        return Failure{unreadable(mPath, QCoreApplication::translate("PackedApplets", "there is no applet in it"))};
    return QFile::encodeName(bundle).toStdString();
}

Result<std::string, QString> PackedApplet::keep() const {
    if (auto kept = keptBundle())
        return std::move(*kept);
    if (!QDir().mkpath(packedFolder()))
        return Failure{QCoreApplication::translate("PackedApplets", "The folder %1 cannot be made.").arg(packedFolder())};
    removeLeftovers();
    const QString unmade = QCoreApplication::translate("PackedApplets", "The folder %1 cannot be made.").arg(folder());
    if (QFileInfo(folder()).isSymLink())
        return Failure{unmade};
    QString error;
    const OSStatus status = replaceFolder(
        QFile::encodeName(folder()).toStdString(),
        [](const std::string& old) { return bundleIn(QFile::decodeName(old.c_str())).isEmpty(); },
        [&](const std::string& made) {
            const auto unpacked = unpackInto(QFile::decodeName(made.c_str()));
            error = unpacked ? QString() : unpacked.error();
            return unpacked ? static_cast<OSStatus>(noErr) : kNotUnpacked;
        });
    // A duplicate is what another process has unpacked meanwhile.
    const auto kept = status == noErr || status == kDuplicateName ? keptBundle() : std::nullopt;
    if (kept)
        return *kept;
    return Failure{error.isEmpty() ? unmade : error};
}

Result<std::string, QString> PackedApplet::bundleToRead(const QTemporaryDir& place) const {
    if (auto kept = keptBundle())
        return std::move(*kept);
    return unpackInto(place.path());
}

bool isKeptBundle(const QString& bundle) {
    const QString packed = QFileInfo(packedFolder()).canonicalFilePath();
    return !packed.isEmpty() && QFileInfo(QFileInfo(QFileInfo(bundle).path()).path()).canonicalFilePath() == packed;
}

QString removeKeptFolder(const QString& folder) {
    if (!QFileInfo::exists(folder) && !QFileInfo(folder).isSymLink())
        return {};
    if (!isOwnFolder(folder))
        return QFile::remove(folder) ? QString() : folder + u": cannot be removed"_s;
    // Renamed first, so that no half of an applet stays a record.
    const QString old = packedFolder() + u"/.removed-"_s + QString::number(QCoreApplication::applicationPid());
    QDir(old).removeRecursively(); // of a process of the same number that was killed
    const bool isRemoved = QDir().rename(folder, old) && QDir(old).removeRecursively();
    return isRemoved ? QString() : folder + u": cannot be removed"_s;
}

} // namespace quoddle::tool
