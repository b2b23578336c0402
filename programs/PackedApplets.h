// SPDX-License-Identifier: MIT
// Applets in a single file, NAME.appletz: making one, and unpacking one so that it can be run.
//
// Decision: each packed applet has a folder of its own in the user's data folder, quoddle/packed/SUM, by the SHA-256 of the file. The
// folder is the record that this user has packed, installed or run the very same contents, or has agreed to run them; when they have run,
// the bundle is in it, and stays there with the properties that its script keeps. Another version is another file, so it never comes in the
// way of this one. The archives are read and made by quoddle-fetch, a process of its own.
#pragma once

#include "platform/base/Result.h"

#include <optional>
#include <string>

#include <QString>

class QTemporaryDir;

namespace quoddle::tool {

/// Whether a name or path ends in ".appletz", with something before that.
bool isPackedAppletName(const std::string& word);

/// Whether the word is the path of an ordinary file with such a name.
bool isPackedApplet(const std::string& word);

/// Packs the bundle and remembers that. Answers the path of the file; an empty `output` means the bundle's name in the current folder.
Result<std::string, std::string> packApplet(const std::string& bundle, const std::string& output);

/// The language of errors: windows speak the user's, the command line English. The program's own texts must be installed for the first.
enum class Speech { users, english };

class PackedApplet {
public:
    /// The error is a sentence, as in all that follows.
    static Result<PackedApplet, QString> read(const std::string& path, Speech speech = Speech::english);

    /// The path of the folder for its record and the kept bundle, which need not be there.
    QString folder() const;
    /// Remembers that this user has packed it, when that can be written.
    void remember() const;
    /// Whether this user has packed it, or has run it before.
    bool isKnown() const;
    /// The path of the bundle that is kept; nullopt when it has not been unpacked.
    std::optional<std::string> keptBundle() const;
    /// The kept bundle, unpacked when it is not there yet. Several processes may ask at the same time.
    Result<std::string, QString> keep() const;
    /// The kept bundle, or one that is unpacked into the folder.
    Result<std::string, QString> bundleToRead(const QTemporaryDir& folder) const;

private:
    PackedApplet(QString path, QString sum, Speech speech) : mPath(std::move(path)), mSum(std::move(sum)), mSpeech(speech) {}
    Result<std::string, QString> unpackInto(const QString& folder) const;

    QString mPath; ///< absolute
    QString mSum;
    Speech mSpeech;
};

/// Whether the path is that of a kept bundle, which may be gone.
bool isKeptBundle(const QString& bundle);
/// Removes the folder of a packed applet, the record with the kept bundle, if it is there. Answers the error as a sentence; empty when
/// there is none.
QString removeKeptFolder(const QString& folder);

} // namespace quoddle::tool
