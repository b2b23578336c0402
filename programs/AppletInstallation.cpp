// SPDX-License-Identifier: MIT
#include "AppletInstallation.h"

#include "Applets.h"
#include "DesktopFiles.h"
#include "DocumentTypes.h"
#include "IconFile.h"
#include "platform/appkit/SessionBus.h"
#include "platform/base/File.h"
#include "platform/foundation/DesktopEntry.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

namespace quoddle::tool {

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 5000;
constexpr std::size_t kMaximumServiceSize = 64 << 10;

/// The files of an applet below the data folder, by its desktop name.
struct Places {
    explicit Places(const QString& name)
        : entry(desktopEntryPath(name)), service(dataFolder() + u"/dbus-1/services/"_s + name + u".service"_s),
          icon(dataFolder() + u"/quoddle/icons/"_s + name + u".png"_s) {}
    static QString dataFolder() { return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation); }
    QString entry, service, icon;
};

std::string messageFor(const QString& path, OSStatus status) {
    switch (status) {
    case -54:
        return printable(path) + ": no permission to write there";
    case -34:
        return printable(path) + ": the disk is full";
    default:
        return printable(path) + ": cannot be written (" + std::to_string(status) + ")";
    }
}

/// Writes a file. Answers the error as a sentence; empty when there is none.
std::string write(const QString& path, const std::string& bytes) {
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder))
        return printable(folder) + ": the folder cannot be made";
    const OSStatus status = writeFile(path.toStdString(), bytes);
    return status == noErr ? "" : messageFor(path, status);
}

/// Whether the path is in use: by a file, a folder, or a link, even one that leads nowhere.
bool stands(const QString& path) {
    return QFileInfo(path).isSymLink() || QFileInfo::exists(path);
}

/// Whether the service file at the path was made by somebody else. The desktop entry is told by a mark of its own, and icons have a folder
/// of ours.
bool isServiceForeign(const QString& path) {
    const auto text = readFile(path.toStdString(), kMaximumServiceSize);
    return text ? !isServiceOfOurs(*text) : stands(path);
}

void removeAll(const Places& places) {
    if (!isServiceForeign(places.service))
        QFile::remove(places.service);
    for (const QString& path : {places.entry, places.icon})
        QFile::remove(path);
}

/// Tells the bus and the desktop to read their files again. When one of the two does not answer in time, it reads them at its next start.
void tellDesktop() {
    if (const auto bus = runningSessionBus())
        bus->call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s,
                                                 u"ReloadConfig"_s),
                  QDBus::Block, kPatience);
    const QString program = QStandardPaths::findExecutable(u"update-desktop-database"_s);
    if (program.isEmpty())
        return;
    QProcess process;
    process.start(program, {u"-q"_s, desktopEntriesFolder()});
    if (!process.waitForFinished(kPatience))
        process.kill();
}

/// Whether a desktop entry can hold the path: it has escapes for line ends and tabs, but for no other control characters.
bool isExpressible(const QString& path) {
    return std::none_of(path.begin(), path.end(), [](QChar c) {
        const bool hasEscape = c == u'\n' || c == u'\r' || c == u'\t';
        return (c.category() == QChar::Other_Control && !hasEscape) || c == QChar::ReplacementCharacter;
    });
}

/// Writes the parts. The entry comes last, so that the desktop never sees it without the others.
std::string writeParts(const DesktopApplet& applet, const Places& places, const std::optional<std::string>& icon) {
    if (icon) {
        if (std::string error = write(places.icon, *icon); !error.empty())
            return error;
    } else {
        QFile::remove(places.icon);
    }
    std::string error = write(places.service, serviceText(applet));
    return error.empty() ? write(places.entry, desktopEntryText(applet)) : error;
}

QString canonicalOr(const QString& path) {
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(QFileInfo(path).absoluteFilePath()) : canonical;
}

QStringList installedNames() {
    QStringList names;
    for (const QString& file : QDir(desktopEntriesFolder()).entryList({u"applet-*.desktop"_s}, QDir::Files))
        if (desktopEntryValue(desktopEntriesFolder() + u'/' + file, kDesktopEntryBundleKey))
            names << file.chopped(8);
    return names;
}

} // namespace

Result<Installed, std::string> install(const NSBundle& bundle, const std::string& shell) {
    const QString name = desktopNameForBundle(bundle);
    const Places places(name);
    DesktopApplet applet{.desktopName = name,
                         .title = bundle.name(),
                         .bundlePath = canonicalOr(bundle.bundlePath()),
                         .shell = QString::fromStdString(shell),
                         .tool = QCoreApplication::applicationFilePath()};
    if (!isExpressible(applet.bundlePath) || !isExpressible(applet.shell) || !isExpressible(applet.tool))
        return Failure{printable(applet.bundlePath) + ": the path has characters that a desktop entry cannot hold; rename the folder"};
    const auto before = desktopEntryValue(places.entry, kDesktopEntryBundleKey);
    if (!before && stands(places.entry))
        return Failure{printable(places.entry) + ": a launcher that quoddle has not made; move it away first"};

    if (isServiceForeign(places.service))
        return Failure{printable(places.service) + ": a service that quoddle has not made; move it away first"};

    const auto icon = pngIconOf(bundle);
    if (icon)
        applet.icon = places.icon;
    const QVariantMap info = bundle.infoDictionary();
    applet.mimeTypes = desktopTypesFor(documentTypesIn(info), info);
    if (std::string error = writeParts(applet, places, icon); !error.empty()) {
        if (!before)
            removeAll(places);
        return Failure{std::move(error)};
    }
    tellDesktop();
    const bool isOther = before && canonicalOr(*before) != applet.bundlePath && QFileInfo::exists(*before);
    return Installed{places.entry, isOther ? *before : QString()};
}

Result<InstalledApplet, std::string> findInstalled(const std::string& word) {
    const QString text = QFile::decodeName(word.c_str());
    QStringList found;
    for (const QString& name : installedNames()) {
        const auto bundle = desktopEntryValue(desktopEntryPath(name), kDesktopEntryBundleKey);
        if (canonicalOr(*bundle) == canonicalOr(text) || name == text || desktopEntryValue(desktopEntryPath(name), u"Name"_s) == text)
            found << name;
    }
    if (found.isEmpty())
        return Failure{printable(text) + ": not installed; give the path of the applet, or its name in the menu"};
    if (found.size() > 1)
        return Failure{printable(text) + ": several applets are installed under this name: " + printable(found.join(u", "_s)) +
                       "; give one of these"};
    const QString entry = desktopEntryPath(found.front());
    return InstalledApplet{found.front(), entry, desktopEntryValue(entry, kDesktopEntryBundleKey).value_or(QString())};
}

std::string uninstall(const InstalledApplet& applet) {
    const Places places(applet.desktopName);
    if (!QFile::remove(places.entry))
        return printable(places.entry) + ": cannot be removed; no permission to write there";
    removeAll(places);
    tellDesktop();
    return "";
}

} // namespace quoddle::tool
