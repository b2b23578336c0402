// SPDX-License-Identifier: MIT
#include "DefaultPrograms.h"

#include "Applets.h"
#include "platform/base/File.h"
#include "platform/foundation/DefaultApplication.h"
#include "platform/foundation/DesktopEntry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QStandardPaths>

namespace quoddle::tool {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kLargestList = std::size_t(4) << 20;
const QByteArray kGroup = "[Default Applications]";

QString ownChoices() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/mimeapps.list"_s;
}

QString defaultsOfBefore() {
    return desktopEntriesFolder() + u"/mimeapps.list"_s;
}

bool isApplet(const QString& identifier) {
    return identifier.startsWith("applet-"_L1);
}

/// A list of defaults: all of its lines stay as they are, except those that are asked for.
class List {
public:
    explicit List(QString path) : mPath(std::move(path)) {
        const auto text = readFile(mPath.toStdString(), kLargestList);
        mIsReadable = text || text.error() == fnfErr;
        if (text)
            mText = QByteArray::fromStdString(*text);
        mLines = mText.split('\n');
        if (mLines.last().isEmpty())
            mLines.removeLast();
    }

    /// The programs of a type; empty when it has no line.
    QStringList programsFor(const QString& type) const {
        const qsizetype at = lineOf(type);
        return at < 0 ? QStringList()
                      : QString::fromUtf8(mLines[at].mid(mLines[at].indexOf('=') + 1)).trimmed().split(u';', Qt::SkipEmptyParts);
    }
    /// Without programs the line goes.
    void setProgramsFor(const QString& type, const QStringList& programs) {
        const QByteArray line = (type + u'=' + programs.join(u';') + u';').toUtf8();
        const qsizetype at = lineOf(type);
        if (at >= 0 && programs.isEmpty())
            mLines.removeAt(at);
        else if (at >= 0)
            mLines[at] = line;
        else if (!programs.isEmpty())
            mLines.insert(newLine(), line);
    }
    /// The types with a line that names the program.
    QStringList typesWith(const QString& program) const {
        QStringList types;
        for (qsizetype i = groupStart(); i > 0 && i < mLines.size() && !mLines[i].startsWith('['); ++i)
            if (const QString type = QString::fromUtf8(mLines[i].left(mLines[i].indexOf('='))); programsFor(type).contains(program))
                types << type;
        return types;
    }

    std::string save() const {
        const QByteArray text = mLines.isEmpty() ? QByteArray() : mLines.join('\n') + '\n';
        if (text == mText)
            return "";
        if (mLines.size() == 1 && mLines[0] == kGroup)
            return QFile::remove(mPath) ? "" : printable(mPath) + ": cannot be removed";
        const bool isWritten =
            mIsReadable && QDir().mkpath(QFileInfo(mPath).path()) && writeFile(mPath.toStdString(), text.toStdString()) == noErr;
        return isWritten ? "" : printable(mPath) + ": cannot be written";
    }

private:
    /// The first line behind the group's head; 0 when there is no such group.
    qsizetype groupStart() const { return mLines.indexOf(kGroup) + 1; }
    qsizetype lineOf(const QString& type) const {
        for (qsizetype i = groupStart(); i > 0 && i < mLines.size() && !mLines[i].startsWith('['); ++i)
            if (mLines[i].left(mLines[i].indexOf('=')).trimmed() == type.toUtf8() && mLines[i].contains('='))
                return i;
        return -1;
    }
    qsizetype newLine() {
        if (groupStart() == 0)
            mLines << kGroup;
        return groupStart();
    }

    QString mPath;
    QByteArray mText;
    QByteArrayList mLines;
    bool mIsReadable = false;
};

/// Takes the applet out of the lines in which it follows the default of before.
void forget(List& list, const QString& identifier) {
    for (const QString& type : list.typesWith(identifier)) {
        QStringList programs = list.programsFor(type);
        programs.removeAll(identifier);
        const bool isMarked = std::any_of(programs.begin() + !programs.isEmpty(), programs.end(), isApplet);
        list.setProgramsFor(type, isMarked ? programs : QStringList());
    }
}

} // namespace

std::string setDefaultPrograms(const QString& identifier, const QStringList& types, DefaultProgram which) {
    QMap<QString, QString> before;
    for (const QString& type : types)
        before[type] = defaultApplicationOfType(type, identifier);
    List list(defaultsOfBefore());
    forget(list, identifier);
    for (const QString& type : types) {
        QStringList programs = list.programsFor(type);
        const bool isForeign = !programs.isEmpty() && std::none_of(programs.begin() + 1, programs.end(), isApplet);
        if (isForeign || before[type].isEmpty())
            continue;
        if (programs.isEmpty())
            programs << before[type];
        list.setProgramsFor(type, programs << identifier);
    }
    if (std::string error = list.save(); !error.empty() || which == DefaultProgram::before)
        return error;
    List choices(ownChoices());
    for (const QString& type : types) {
        QStringList programs = choices.programsFor(type);
        programs.removeAll(identifier);
        programs.prepend(identifier);
        choices.setProgramsFor(type, programs);
    }
    return choices.save();
}

void removeDefaultPrograms(const QString& identifier) {
    List list(defaultsOfBefore());
    forget(list, identifier);
    (void)list.save();
    List choices(ownChoices());
    for (const QString& type : choices.typesWith(identifier)) {
        QStringList programs = choices.programsFor(type);
        programs.removeAll(identifier);
        choices.setProgramsFor(type, programs);
    }
    (void)choices.save();
}

} // namespace quoddle::tool
