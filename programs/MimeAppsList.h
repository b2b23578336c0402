// SPDX-License-Identifier: MIT
// A mimeapps.list: which programs open files of a type by default, by the MIME Applications Associations Specification.
//
// Decision: the list belongs to its user. All that is not asked for stays as it is written, and a program that is added and taken out
// again leaves the very bytes of before. For that, only a line of ours has no semicolon behind its last program, and a group that we had to
// add stands at the top, below a comment of ours that also tells whether there was a file.
#pragma once

#include <string>

#include <QByteArrayList>
#include <QStringList>

namespace quoddle::tool {

class MimeAppsList {
public:
    /// Reads the list; there need not be one.
    explicit MimeAppsList(const std::string& path);

    /// The default programs of a type, by the names of their desktop entries; empty when it has none.
    QStringList programsFor(const QString& type) const;
    /// The types that have the program among their default programs.
    QStringList typesWith(const QString& program) const;

    /// Puts a program in front of the others, also one that is among them already.
    void prepend(const QString& type, const QString& program);
    /// Gives a type its programs, which had none.
    void add(const QString& type, const QStringList& programs);
    /// Puts a program behind the others of a type that has a line.
    void append(const QString& type, const QString& program);
    /// Takes a program out, wherever it stands for the type. A line of ours that has no other goes.
    void remove(const QString& type, const QString& program);
    /// Takes a program out of the line that programsFor() tells, the last one; a list may have several for a type.
    void removeFromLastLine(const QString& type, const QString& program);

    /// Writes what has changed; a file that was only made for our lines goes with them. Answers an error as a sentence; empty when there is
    /// none.
    std::string save() const;

private:
    void removeFromLine(qsizetype number, const QString& program);
    qsizetype lineOf(const QString& type) const;
    QList<qsizetype> lines() const;
    qsizetype groupStart();
    bool hasEmptyGroupOfOurs() const;

    std::string mPath;
    QByteArray mText;      ///< as it was read
    QByteArrayList mLines; ///< without their ends; the last one is empty when the text ends with a line end
    bool mIsReadable, mExists;
};

} // namespace quoddle::tool
