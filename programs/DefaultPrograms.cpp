// SPDX-License-Identifier: MIT
#include "DefaultPrograms.h"

#include "MimeAppsList.h"
#include "platform/base/UserFolders.h"
#include "platform/foundation/DefaultApplication.h"

#include <algorithm>

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
        if (isBehind && list.programsFor(type).size() == 1)
            list.removeLine(type);
    }
}

} // namespace

std::string setDefaultPrograms(const QString& identifier, const QStringList& types, DefaultProgram which) {
    QMap<QString, QString> before;
    for (const QString& type : types)
        before[type] = defaultApplicationOfType(type, identifier);
    MimeAppsList list(defaultsOfBefore());
    forget(list, identifier);
    for (const QString& type : types) {
        const QStringList programs = list.programsFor(type);
        if (programs.isEmpty() && !before[type].isEmpty())
            list.add(type, {before[type], identifier});
        else if (isMarked(programs))
            list.append(type, identifier);
    }
    if (std::string error = list.save(); !error.empty() || which == DefaultProgram::before)
        return error;
    MimeAppsList choices(ownChoices());
    for (const QString& type : types)
        choices.prepend(type, identifier);
    return choices.save();
}

void removeDefaultPrograms(const QString& identifier) {
    MimeAppsList list(defaultsOfBefore());
    forget(list, identifier);
    (void)list.save();
    MimeAppsList choices(ownChoices());
    for (const QString& type : choices.typesWith(identifier))
        choices.remove(type, identifier);
    (void)choices.save();
}

} // namespace quoddle::tool
