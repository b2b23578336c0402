// SPDX-License-Identifier: MIT
#include "DefaultPrograms.h"

#include "MimeAppsList.h"
#include "platform/base/UserFolders.h"
#include "platform/foundation/DefaultApplication.h"

#include <algorithm>
#include <filesystem>

#include <QMap>

namespace quoddle::tool {

using namespace Qt::StringLiterals;

namespace {

std::string ownChoices() {
    return configFolder() + "/mimeapps.list";
}

std::string defaultsOfBefore() {
    return dataFolder() + "/applications/mimeapps.list";
}

bool isApplet(const QString& identifier) {
    return identifier.startsWith("applet-"_L1);
}

/// Whether the line is one of ours: the default of before, and behind it the applets that made us write it down.
bool isMarked(const QStringList& programs) {
    return programs.size() > 1 && std::any_of(programs.begin() + 1, programs.end(), isApplet);
}

/// Takes the applet out of all lines. Of one that was written down for applets, the default of before goes with the last of them; a line
/// that the user has changed stays, as do all lines in which the applet is the first.
void forget(MimeAppsList& list, const QString& identifier) {
    for (const QString& type : list.typesWith(identifier)) {
        const bool isBehind = list.programsFor(type).front() != identifier;
        list.remove(type, identifier);
        const QStringList left = list.programsFor(type);
        if (isBehind && left.size() == 1)
            list.remove(type, left.front());
    }
}

} // namespace

std::string setDefaultPrograms(const QString& identifier, const QStringList& types, DefaultProgram which) {
    QMap<QString, QString> before;
    for (const QString& type : types)
        before[type] = defaultApplicationOfType(type, identifier);
    MimeAppsList list(defaultsOfBefore());
    forget(list, identifier);
    // A list that stands for both keeps the default of before behind the applet.
    std::error_code error;
    const bool isOneList = std::filesystem::equivalent(defaultsOfBefore(), ownChoices(), error);
    for (const QString& type : isOneList&& which == DefaultProgram::applet ? QStringList() : types) {
        const QStringList programs = list.programsFor(type);
        if (programs.isEmpty() && !before[type].isEmpty())
            list.add(type, {before[type], identifier});
        else if (isMarked(programs))
            list.append(type, identifier);
    }
    if (std::string fault = list.save(); !fault.empty())
        return fault;
    MimeAppsList choices(ownChoices());
    for (const QString& type : choices.typesWith(identifier))
        if (!types.contains(type))
            choices.remove(type, identifier);
    if (which == DefaultProgram::applet)
        for (const QString& type : types)
            choices.prepend(type, identifier);
    return choices.save();
}

std::string removeDefaultPrograms(const QString& identifier) {
    MimeAppsList list(defaultsOfBefore());
    forget(list, identifier);
    if (std::string error = list.save(); !error.empty())
        return error;
    MimeAppsList choices(ownChoices());
    for (const QString& type : choices.typesWith(identifier))
        choices.remove(type, identifier);
    return choices.save();
}

} // namespace quoddle::tool
