// SPDX-License-Identifier: MIT
#include "platform/foundation/DefaultApplication.h"

#include "platform/foundation/DesktopEntry.h"

#include <QFileInfo>
#include <QMimeDatabase>
#include <QStandardPaths>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kLargestList = std::size_t(4) << 20; // bytes

QStringList applicationFolders() {
    return QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
}

/// The paths of the lists of associations, those that take precedence first: the user's before the system's, and in each folder the current
/// desktop's before the one for all desktops.
QStringList associationLists() {
    QStringList prefixes;
    for (const QString& desktop : qEnvironmentVariable("XDG_CURRENT_DESKTOP").toLower().split(u':', Qt::SkipEmptyParts))
        if (!desktop.contains(u'/'))
            prefixes << desktop + u'-';
    prefixes << QString();
    QStringList lists;
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation) + applicationFolders())
        for (const QString& prefix : std::as_const(prefixes))
            lists << folder + u'/' + prefix + u"mimeapps.list"_s;
    return lists;
}

/// The path of an installed desktop entry; a dash in its identifier may stand for a folder. Empty when it is not installed.
QString entryPath(const QString& identifier) {
    if (identifier.contains(u'/') || !identifier.endsWith(".desktop"_L1))
        return {};
    for (const QString& folder : applicationFolders()) {
        QString below = identifier;
        for (;;) {
            const QString path = folder + u'/' + below;
            if (QFileInfo(path).isFile())
                return path;
            const qsizetype dash = below.indexOf(u'-');
            if (dash < 0)
                break;
            below[dash] = u'/';
        }
    }
    return {};
}

/// Empty for an application that is not installed or cannot be started.
QString nameOfApplication(const QString& identifier) {
    const QString path = entryPath(identifier);
    const auto entry = path.isEmpty() ? std::nullopt : desktopEntryValues(path);
    if (!entry || entry->value(u"Type"_s) != "Application"_L1 || entry->value(u"Hidden"_s) == "true"_L1)
        return {};
    const QString program = entry->value(u"TryExec"_s);
    const bool isThere = program.isEmpty() || !QStandardPaths::findExecutable(program).isEmpty();
    return isThere ? desktopEntryName(*entry) : QString();
}

QStringList identifiers(const DesktopEntryValues& group, const QString& type) {
    return group.value(type).split(u';', Qt::SkipEmptyParts);
}

QString firstInstalled(const QStringList& applications, const QStringList& except) {
    for (const QString& identifier : applications)
        if (!except.contains(identifier) && !nameOfApplication(identifier).isEmpty())
            return identifier;
    return {};
}

struct Associations {
    DesktopEntryValues defaults, added, removed;
};

class Desktop {
public:
    Desktop() {
        for (const QString& list : associationLists())
            if (QFileInfo(list).isFile())
                mLists.push_back({desktopFileGroup(list, u"Default Applications"_s, kLargestList),
                                  desktopFileGroup(list, u"Added Associations"_s, kLargestList),
                                  desktopFileGroup(list, u"Removed Associations"_s, kLargestList)});
        for (const QString& folder : applicationFolders())
            mCaches.push_back(desktopFileGroup(folder + u"/mimeinfo.cache"_s, u"MIME Cache"_s, kLargestList));
    }

    /// The identifier of the program for a type, or else for one of those that it is a kind of.
    QString defaultFor(const QMimeType& type, const QString& except = {}) const {
        for (const QString& name : QStringList{type.name()} + type.allAncestors())
            if (const QString application = defaultForOne(name, except); !application.isEmpty())
                return application;
        return {};
    }

private:
    QString defaultForOne(const QString& type, const QString& except) const {
        for (const Associations& list : mLists)
            if (const QString found = firstInstalled(identifiers(list.defaults, type), {except}); !found.isEmpty())
                return found;
        QStringList passedOver = {except};
        for (const Associations& list : mLists) {
            if (const QString found = firstInstalled(identifiers(list.added, type), passedOver); !found.isEmpty())
                return found;
            passedOver += identifiers(list.removed, type);
        }
        for (const DesktopEntryValues& cache : mCaches)
            if (const QString found = firstInstalled(identifiers(cache, type), passedOver); !found.isEmpty())
                return found;
        return {};
    }

    QList<Associations> mLists;
    QList<DesktopEntryValues> mCaches;
};

} // namespace

QString defaultApplicationOfFile(const QString& path) {
    const QString identifier = Desktop().defaultFor(QMimeDatabase().mimeTypeForFile(path));
    return identifier.isEmpty() ? QString() : nameOfApplication(identifier);
}

bool isApplicationInstalled(const QString& identifier) {
    return !nameOfApplication(identifier).isEmpty();
}

QString defaultApplicationOfType(const QString& type, const QString& except) {
    return Desktop().defaultFor(QMimeDatabase().mimeTypeForName(type), except);
}

} // namespace quoddle
