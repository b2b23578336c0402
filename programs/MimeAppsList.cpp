// SPDX-License-Identifier: MIT
#include "MimeAppsList.h"

#include "Applets.h"
#include "platform/base/File.h"

#include <algorithm>
#include <filesystem>

namespace quoddle::tool {

namespace {

constexpr std::size_t kLargestList = std::size_t(4) << 20;
const QByteArray kGroup = "[Default Applications]";
const QByteArray kMadeFile = "# This file was made by quoddle install.";
const QByteArray kAddedGroup = "# This group was added by quoddle install.";

QString typeIn(const QByteArray& line) {
    return QString::fromUtf8(line.left(line.indexOf('='))).trimmed();
}

/// The programs in a line.
struct Value {
    explicit Value(const QByteArray& line) : start(line.indexOf('=') + 1) {
        while (start < line.size() && (line[start] == ' ' || line[start] == '\t'))
            ++start;
        if (line.endsWith('\r'))
            end = "\r";
        programs = line.mid(start, line.size() - start - end.size()).split(';');
    }
    /// Blanks around names do not count.
    static bool isNamed(const QByteArray& word, const QString& program) { return QString::fromUtf8(word.trimmed()) == program; }
    bool contains(const QString& program) const {
        return std::any_of(programs.begin(), programs.end(), [&](const QByteArray& word) { return isNamed(word, program); });
    }
    qsizetype start;         ///< where the first program begins
    QByteArrayList programs; ///< as they are written, with blanks
    QByteArray end;          ///< what other systems end lines with
};

} // namespace

MimeAppsList::MimeAppsList(const std::string& path) : mPath(path) {
    const auto text = readFile(mPath, kLargestList);
    mExists = text || text.error() != fnfErr;
    mIsReadable = text || !mExists;
    if (text)
        mText = QByteArray::fromStdString(*text);
    mLines = mText.split('\n');
    // A group put in front of lines without one would take them in.
    const auto first = std::find_if(mLines.begin(), mLines.end(), [](const QByteArray& line) {
        const QByteArray words = line.trimmed();
        return !words.isEmpty() && !words.startsWith('#');
    });
    mIsReadable &= first == mLines.end() || first->trimmed().startsWith('[');
}

/// The numbers of the lines in the groups of default programs.
QList<qsizetype> MimeAppsList::lines() const {
    QList<qsizetype> found;
    bool isInGroup = false;
    for (qsizetype i = 0; i < mLines.size(); ++i) {
        const QByteArray line = mLines[i].trimmed();
        if (line.startsWith('['))
            isInGroup = line == kGroup;
        else if (isInGroup && !line.startsWith('#') && line.contains('='))
            found << i;
    }
    return found;
}

/// The last line of the type, which is the one that desktops go by; -1 when it has none.
qsizetype MimeAppsList::lineOf(const QString& type) const {
    qsizetype found = -1;
    for (const qsizetype i : lines())
        if (typeIn(mLines[i]) == type)
            found = i;
    return found;
}

QStringList MimeAppsList::programsFor(const QString& type) const {
    const qsizetype at = lineOf(type);
    QStringList programs;
    if (at >= 0)
        for (const QByteArray& program : Value(mLines[at]).programs)
            programs << QString::fromUtf8(program.trimmed());
    programs.removeAll(QString());
    return programs;
}

QStringList MimeAppsList::typesWith(const QString& program) const {
    QStringList types;
    for (const qsizetype i : lines())
        if (Value(mLines[i]).contains(program))
            types << typeIn(mLines[i]);
    types.removeDuplicates();
    return types;
}

void MimeAppsList::prepend(const QString& type, const QString& program) {
    remove(type, program);
    const qsizetype at = lineOf(type);
    if (at < 0)
        return add(type, {program});
    mLines[at].insert(Value(mLines[at]).start, program.toUtf8() + ';');
}

void MimeAppsList::add(const QString& type, const QStringList& programs) {
    const QByteArray value = programs.join(u';').toUtf8();
    if (const qsizetype at = lineOf(type); at >= 0)
        mLines[at].insert(Value(mLines[at]).start, value + ';');
    else
        mLines.insert(groupStart(), type.toUtf8() + '=' + value);
}

void MimeAppsList::append(const QString& type, const QString& program) {
    QByteArray& line = mLines[lineOf(type)];
    qsizetype end = line.size();
    if (line.endsWith('\r'))
        --end;
    const QByteArray name = program.toUtf8();
    line.insert(end, end > 0 && line[end - 1] == ';' ? name + ';' : ';' + name);
}

void MimeAppsList::remove(const QString& type, const QString& program) {
    const QList<qsizetype> all = lines();
    for (auto i = all.rbegin(); i != all.rend(); ++i)
        if (typeIn(mLines[*i]) == type)
            removeFromLine(*i, program);
}

void MimeAppsList::removeFromLastLine(const QString& type, const QString& program) {
    if (const qsizetype at = lineOf(type); at >= 0)
        removeFromLine(at, program);
}

void MimeAppsList::removeFromLine(qsizetype number, const QString& program) {
    QByteArray& line = mLines[number];
    Value value(line);
    if (value.programs.removeIf([&](const QByteArray& word) { return Value::isNamed(word, program); }) == 0)
        return;
    // Only a line of ours has nothing behind its last program.
    if (value.programs.isEmpty())
        mLines.removeAt(number);
    else
        line = line.left(value.start) + value.programs.join(';') + value.end;
}

/// The number of the first line of the group, which is added when there is none.
qsizetype MimeAppsList::groupStart() {
    for (qsizetype i = 0; i < mLines.size(); ++i)
        if (mLines[i].trimmed() == kGroup)
            return i + 1;
    mLines = QByteArrayList{mExists ? kAddedGroup : kMadeFile, kGroup} + mLines;
    return 2;
}

/// Whether the list begins with a group of ours in which nothing is left.
bool MimeAppsList::hasEmptyGroupOfOurs() const {
    if (mLines.size() < 2 || (mLines[0] != kAddedGroup && mLines[0] != kMadeFile) || mLines[1] != kGroup)
        return false;
    const QList<qsizetype> inGroup = lines();
    const auto next = std::find_if(mLines.begin() + 2, mLines.end(), [](const QByteArray& line) { return line.startsWith('['); });
    return inGroup.isEmpty() || inGroup.front() >= next - mLines.begin();
}

std::string MimeAppsList::save() const {
    const bool dropsGroup = hasEmptyGroupOfOurs();
    const bool hadNoFile = dropsGroup && mLines[0] == kMadeFile;
    const QByteArray text = (dropsGroup ? mLines.mid(2) : mLines).join('\n');
    if (text == mText)
        return "";
    std::error_code error;
    if (text.isEmpty() && hadNoFile)
        return std::filesystem::remove(mPath, error) ? ""
                                                     : printable(QString::fromStdString(mPath)) + ": cannot be removed: " + error.message();
    std::filesystem::create_directories(std::filesystem::path(mPath).parent_path(), error);
    const QString path = QString::fromStdString(mPath);
    if (!mIsReadable)
        return printable(path) + ": this list of default programs cannot be read; mend it, or move it away";
    const OSStatus status = writeFile(mPath, text.toStdString());
    return status == noErr ? "" : unwritten(path, status);
}

} // namespace quoddle::tool
