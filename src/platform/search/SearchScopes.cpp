// SPDX-License-Identifier: MIT
#include "platform/search/SearchScopes.h"

#include "platform/base/Volumes.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/search/NSMetadataQuery.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kMostVolumes = 100;

QString userName() {
    const passwd* user = getpwuid(geteuid());
    return user ? QFile::decodeName(user->pw_name) : QString();
}

/// The device of a folder; 0 when the folder does not exist.
dev_t deviceOf(const QString& folder) {
    struct stat status;
    return stat(QFile::encodeName(folder).constData(), &status) == 0 ? status.st_dev : 0;
}

/// Answers the volumes that the user has plugged in. Desktops mount them below folders of the user.
QStringList volumesOfUser() {
    QStringList volumes;
    const QString user = userName();
    if (user.isEmpty())
        return volumes;
    for (const std::string& path : mountedVolumes(kMostVolumes)) {
        const QString volume = QFile::decodeName(path.c_str());
        if (volume.startsWith(u"/media/"_s + user + u'/') || volume.startsWith(u"/run/media/"_s + user + u'/'))
            volumes << volume;
    }
    return volumes;
}

QStringList localComputer() {
    QStringList folders = standardUserDefaults().value(NSMetadataQueryLocalComputerScope).toStringList();
    if (folders.isEmpty())
        return QStringList(QDir::homePath()) + volumesOfUser();
    for (QString& folder : folders)
        if (folder == u'~' || folder.startsWith("~/"_L1))
            folder = QDir::homePath() + folder.mid(1);
    return folders;
}

bool isSearchedWith(const QString& folder, const QString& outer) {
    if (!folder.startsWith(outer == u'/' ? outer : outer + u'/'))
        return false;
    return !QStringView(folder).mid(outer.size() - 1).contains("/."_L1) && deviceOf(folder) == deviceOf(outer);
}

} // namespace

QStringList foldersOfSearchScopes(const QStringList& scopes) {
    QStringList all;
    for (const QString& scope : scopes)
        all += scope == NSMetadataQueryLocalComputerScope ? localComputer() : QStringList(scope);
    QStringList folders;
    for (QString& folder : all)
        if (folder.startsWith(u'/') && !folders.contains(folder = QDir::cleanPath(folder)))
            folders << folder;
    const QStringList absolute = folders;
    folders.removeIf([&absolute](const QString& folder) {
        return std::any_of(absolute.begin(), absolute.end(), [&folder](const QString& outer) { return isSearchedWith(folder, outer); });
    });
    return folders;
}

} // namespace quoddle
