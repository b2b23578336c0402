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

/// A program that is never there. It stands in the user's line for programs that have gone, and what is behind it is ours.
const QString kBound = u"quoddle-from-here.desktop"_s;

bool isApplet(const QString& identifier) {
    return identifier.startsWith("applet-"_L1);
}

/// Whether the line is one of ours: the default of before, and behind it the applets that made us write it down.
bool isMarked(const QStringList& programs) {
    return programs.size() > 1 && std::any_of(programs.begin() + 1, programs.end(), isApplet);
}

/// Takes the applet out of the lines of all types but those in which it stands first and that are to be kept. Of a line that was written
/// down for applets, the default of before goes with the last of them; a line that the user has changed stays, as do all lines in which the
/// applet is the first.
void forget(MimeAppsList& list, const QString& identifier, const QStringList& kept = {}) {
    for (const QString& type : list.typesWith(identifier)) {
        const bool isBehind = list.programsFor(type).value(0) != identifier;
        if (!isBehind && kept.contains(type))
            continue;
        list.remove(type, identifier);
        const QStringList left = list.programsFor(type);
        const qsizetype bound = left.indexOf(kBound);
        if (bound >= 0 && std::none_of(left.begin() + bound, left.end(), isApplet))
            for (const QString& program : left.mid(bound))
                list.removeFromLastLine(type, program);
        else if (isBehind && left.size() == 1)
            list.removeFromLastLine(type, left.front());
    }
}

/// Writes the default of before down in a list.
void remember(MimeAppsList& list, const QString& type, const QString& before, const QString& identifier) {
    const QStringList programs = list.programsFor(type);
    if (programs.value(0) == identifier)
        return;
    if (isMarked(programs))
        return list.append(type, identifier);
    if (before.isEmpty() || std::any_of(programs.begin(), programs.end(), isApplicationInstalled))
        return;
    if (programs.isEmpty())
        return list.add(type, {before, identifier});
    for (const QString& program : {kBound, before, identifier})
        list.append(type, program);
}

} // namespace

std::string setDefaultPrograms(const QString& identifier, const QStringList& types, DefaultProgram which) {
    QMap<QString, QString> before;
    for (const QString& type : types)
        before[type] = defaultApplicationOfType(type, identifier);
    MimeAppsList list(defaultsOfBefore());
    forget(list, identifier, types);
    // A list that stands for both keeps the default of before behind the applet.
    std::error_code error;
    const bool isOneList = std::filesystem::equivalent(defaultsOfBefore(), ownChoices(), error);
    if (!isOneList || which == DefaultProgram::before)
        for (const QString& type : types)
            remember(list, type, before[type], identifier);
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
