// SPDX-License-Identifier: MIT
#include "AppletInstallation.h"

#include "Applets.h"
#include "DesktopFiles.h"
#include "DocumentTypes.h"
#include "IconFile.h"
#include "platform/appkit/SessionBus.h"
#include "platform/base/File.h"
#include "platform/base/UserFolders.h"
#include "platform/foundation/DesktopEntry.h"

#include <filesystem>

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QMap>
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
          package(dataFolder() + u"/mime/packages/"_s + name + u".xml"_s) {
        for (const QString& type : {u"png"_s, u"svg"_s}) {
            const QString size = type == "svg"_L1 ? u"scalable"_s : u"256x256"_s;
            icons[type] = {dataFolder() + u"/quoddle/icons/"_s + name + u'.' + type,
                           dataFolder() + u"/icons/hicolor/"_s + size + u"/mimetypes/"_s + name + u'.' + type};
        }
    }
    static QString dataFolder() { return QFile::decodeName(quoddle::dataFolder().c_str()); }
    QString entry, service, package;
    struct IconPlaces {
        QString applet, documents; ///< for the launcher, and in the theme for its types of files
    };
    QMap<QString, IconPlaces> icons; ///< by the type of the file
};

/// Writes a file. Answers the error as a sentence; empty when there is none.
std::string write(const QString& path, const std::string& bytes) {
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder))
        return printable(folder) + ": the folder cannot be made";
    const OSStatus status = writeFile(path.toStdString(), bytes);
    return status == noErr ? "" : unwritten(path, status);
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

bool isPackageForeign(const QString& path) {
    const auto text = readFile(path.toStdString(), kMaximumServiceSize);
    return text ? !isMIMEPackageOfOurs(*text) : stands(path);
}

/// Whether there are types of the applet's own. Icons in the theme are only ours beside them.
bool hasOwnTypes(const Places& places) {
    return stands(places.package) && !isPackageForeign(places.package);
}

/// Removes files, which need not be there. Answers the first error as a sentence; empty when there is none.
std::string removeFiles(const QStringList& paths) {
    for (const QString& path : paths)
        if (QFile file(path); stands(path) && !file.remove())
            return printable(path) + ": cannot be removed: " + printable(file.errorString());
    return "";
}

/// The files that an applet may have besides its entry. The types come last: their icons are only known as ours by them, and as long as
/// they stand a removal that is tried again tells the desktop of them.
QStringList partsOf(const Places& places) {
    QStringList parts;
    const bool hadTypes = hasOwnTypes(places);
    for (const auto& [applet, documents] : places.icons)
        parts << (hadTypes ? QStringList{applet, documents} : QStringList{applet});
    if (!isServiceForeign(places.service))
        parts << places.service;
    if (hadTypes)
        parts << places.package;
    return parts;
}

/// Removes all that may be there of an applet, the entry last: as long as it stands, the removal can be tried again.
std::string removeAll(const Places& places, const QString& name) {
    if (!QFileInfo(QFileInfo(places.entry).path()).isWritable())
        return printable(places.entry) + ": cannot be removed: no permission to write there";
    if (std::string error = removeDefaultPrograms(name + u".desktop"_s); !error.empty())
        return error;
    return removeFiles(partsOf(places) << places.entry);
}

void runIfThere(const QString& name, const QStringList& words) {
    const QString program = QStandardPaths::findExecutable(name);
    if (program.isEmpty())
        return;
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, words);
    if (!process.waitForFinished(kPatience))
        process.kill();
}

/// Tells the bus and the desktop to read their files again. When one of the two does not answer in time, it reads them at its next start.
void tellDesktop() {
    if (const auto bus = runningSessionBus())
        bus->call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s,
                                                 u"ReloadConfig"_s),
                  QDBus::Block, kPatience);
    runIfThere(u"update-desktop-database"_s, {u"-q"_s, desktopEntriesFolder()});
}

/// Makes the desktop read the packages of types anew.
void tellOfTypes() {
    runIfThere(u"update-mime-database"_s, {Places::dataFolder() + u"/mime"_s});
}

/// Whether a desktop entry can hold the path: it has escapes for line ends and tabs, but for no other control characters.
bool isExpressible(const QString& path) {
    return std::none_of(path.begin(), path.end(), [](QChar c) {
        const bool hasEscape = c == u'\n' || c == u'\r' || c == u'\t';
        return (c.category() == QChar::Other_Control && !hasEscape) || c == QChar::ReplacementCharacter;
    });
}

/// Writes the parts, and removes those of an earlier installation that are no longer wanted. The entry comes last, so that the desktop
/// never sees it without the others; before the first of them stands at least a record, so that an installation which is killed can be
/// taken back.
std::string writeParts(const DesktopApplet& applet, const Places& places, const std::optional<Icon>& icon, DefaultProgram defaults) {
    QStringList unwanted = partsOf(places);
    std::vector<std::pair<QString, std::string>> files;
    if (!stands(places.entry))
        files.emplace_back(places.entry, hiddenEntryText(applet));
    if (icon)
        files.emplace_back(places.icons[icon->type].applet, icon->bytes);
    if (!applet.ownTypes.isEmpty()) {
        files.emplace_back(places.package, mimePackageText(applet));
        // Behind the package, which tells that the icon is ours.
        if (const QString path = icon ? places.icons[icon->type].documents : QString(); icon && (unwanted.contains(path) || !stands(path)))
            files.emplace_back(path, icon->bytes);
    }
    files.emplace_back(places.service, serviceText(applet));
    for (const auto& [path, bytes] : files) {
        unwanted.removeAll(path);
        if (std::string error = write(path, bytes); !error.empty())
            return error;
    }
    if (std::string error = removeFiles(unwanted); !error.empty())
        return error;
    QStringList types = applet.mimeTypes;
    for (const OwnType& type : applet.ownTypes)
        types << type.mimeType;
    if (std::string error = setDefaultPrograms(applet.desktopName + u".desktop"_s, types, defaults); !error.empty())
        return error;
    return write(places.entry, desktopEntryText(applet));
}

/// The path without links, as far as there is something at it.
QString canonical(const QString& path) {
    std::error_code error;
    const auto found = std::filesystem::weakly_canonical(QFileInfo(path).absoluteFilePath().toStdString(), error);
    return error ? QDir::cleanPath(QFileInfo(path).absoluteFilePath()) : QString::fromStdString(found.string());
}

QStringList installedNames() {
    QStringList names;
    for (const QString& file : QDir(desktopEntriesFolder()).entryList({u"applet-*.desktop"_s}, QDir::Files))
        if (desktopEntryValue(desktopEntriesFolder() + u'/' + file, kDesktopEntryBundleKey))
            names << file.chopped(8);
    return names;
}

} // namespace

Result<Installed, std::string> install(const NSBundle& bundle, const std::string& shell, DefaultProgram defaults) {
    const QString name = desktopNameForBundle(bundle);
    const Places places(name);
    DesktopApplet applet{.desktopName = name,
                         .title = bundle.name(),
                         .bundlePath = canonical(bundle.bundlePath()),
                         .shell = QString::fromStdString(shell),
                         .tool = QCoreApplication::applicationFilePath()};
    if (!isExpressible(applet.bundlePath) || !isExpressible(applet.shell) || !isExpressible(applet.tool))
        return Failure{printable(applet.bundlePath) + ": the path has characters that a desktop entry cannot hold; rename the folder"};
    const auto before = desktopEntryValue(places.entry, kDesktopEntryBundleKey);
    if (!before && stands(places.entry))
        return Failure{printable(places.entry) + ": a launcher that quoddle has not made; move it away first"};

    if (isServiceForeign(places.service))
        return Failure{printable(places.service) + ": a service that quoddle has not made; move it away first"};

    if (isPackageForeign(places.package))
        return Failure{printable(places.package) + ": types of files that quoddle has not made; move them away first"};
    const auto icon = iconOf(bundle);
    if (icon)
        applet.icon = places.icons[icon->type].applet;
    const QVariantMap info = bundle.infoDictionary();
    applet.mimeTypes = desktopTypesFor(documentTypesIn(info), info);
    applet.ownTypes = ownTypesIn(info);
    const bool hadTypes = stands(places.package);
    if (std::string error = writeParts(applet, places, icon, defaults); !error.empty()) {
        if (!before)
            (void)removeAll(places, name);
        return Failure{std::move(error)};
    }
    tellDesktop();
    if (hadTypes || !applet.ownTypes.isEmpty())
        tellOfTypes();
    const bool isOther = before && canonical(*before) != applet.bundlePath && QFileInfo::exists(*before);
    return Installed{places.entry, isOther ? *before : QString()};
}

std::optional<InstalledApplet> findInstalledFrom(const QString& folder) {
    for (const QString& name : installedNames()) {
        const QString entry = desktopEntryPath(name);
        const QString bundle = desktopEntryValue(entry, kDesktopEntryBundleKey).value_or(QString());
        if (canonical(QFileInfo(bundle).path()) == canonical(folder))
            return InstalledApplet{name, entry, bundle};
    }
    return std::nullopt;
}

Result<InstalledApplet, std::string> findInstalled(const std::string& word) {
    const QString text = QFile::decodeName(word.c_str());
    QStringList found;
    for (const QString& name : installedNames()) {
        const auto bundle = desktopEntryValue(desktopEntryPath(name), kDesktopEntryBundleKey);
        if (canonical(*bundle) == canonical(text) || name == text || desktopEntryValue(desktopEntryPath(name), u"Name"_s) == text)
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
    const bool hadTypes = stands(places.package);
    if (std::string error = removeAll(places, applet.desktopName); !error.empty())
        return error;
    tellDesktop();
    if (hadTypes)
        tellOfTypes();
    return "";
}

} // namespace quoddle::tool
