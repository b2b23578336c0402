// SPDX-License-Identifier: MIT
// A bundle: a folder NAME.app/Contents with an Info.plist, resources and their localised variants.
// One decision: everything is read on first use and kept; a bundle that changes on disk while it is in use is not looked at again.
// It loads no code and knows no other layout than Contents/….
#pragma once

#include <memory>

#include <QHash>
#include <QMutex>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

namespace quoddle {

/// Thread-safe after creation.
class NSBundle {
public:
    /// The bundle of this process; null until setMainBundle().
    static std::shared_ptr<NSBundle> mainBundle();
    /// Main thread, before any other thread asks.
    static void setMainBundle(std::shared_ptr<NSBundle> bundle);

    /// Null when there is no folder at the path. A folder without Contents is a bundle without information and resources.
    static std::shared_ptr<NSBundle> bundleWithPath(const QString& path);
    /// The bundle that an executable at BUNDLE/Contents/Linux/NAME belongs to; null for any other place. Links are not followed,
    /// so that a link in a bundle to a shell outside stands for the bundle.
    static std::shared_ptr<NSBundle> bundleForExecutable(const QString& executablePath);

    /// Texts for keys that no table of any bundle knows (for one table name; "" is the default one). Main thread, at start.
    static void setFallbackStrings(const QString& table, const QHash<QString, QString>& strings);

    /// Absolute, without a slash at the end.
    QString bundlePath() const { return mPath; }
    QUrl bundleURL() const { return QUrl::fromLocalFile(mPath); }
    QString resourcePath() const { return mPath + QStringLiteral("/Contents/Resources"); }
    /// "CFBundleIdentifier"; empty when there is none.
    QString bundleIdentifier() const;

    /// "CFBundleName"; a bundle without one is called as its folder is, without the extension.
    QString name() const;

    /// Contents/Info.plist as it stands; empty when there is none or it cannot be read (which is logged once).
    QVariantMap infoDictionary() const;
    /// The localised value ("InfoPlist.strings") or else the one of the info dictionary; an empty QVariant when absent.
    QVariant objectForInfoDictionaryKey(const QString& key) const;

    /// The languages whose .lproj folders serve this user, best first; "Base", the development region and English come last.
    QStringList preferredLocalizations() const;
    /// Absolute path of a file or folder: Resources[/subdirectory], then Resources/LANGUAGE.lproj[/subdirectory] in order of preference.
    /// `type` is the extension without its dot, empty for none. Empty when there is no such resource.
    QString pathForResource(const QString& name, const QString& type, const QString& inDirectory = {}) const;

    /// Looked up key by key: the first language that has the key answers. Default table: "Localizable".
    /// When no language has it: `value`, or the key itself when that is empty.
    QString localizedString(const QString& key, const QString& value = {}, const QString& table = {}) const;

private:
    explicit NSBundle(QString path) : mPath(std::move(path)) {}

    using StringsTable = QHash<QString, QString>;
    QString localizedOrEmpty(const QString& key, const QString& table) const;
    /// One table of each preferred language, in order, after the one outside every .lproj.
    QList<StringsTable> tablesNamed(const QString& table) const;
    QStringList findLocalizations() const;
    QVariantMap readInfo() const;

    const QString mPath;
    mutable QMutex mMutex;
    mutable std::unique_ptr<const QVariantMap> mInfo;
    mutable std::unique_ptr<const QStringList> mLocalizations;
    mutable QHash<QString, QList<StringsTable>> mTables;
};

/// The platform's boolean conversion of a stored object: numbers other than 0; texts that, after blanks, a sign and zeros, begin with
/// Y, y, T, t or a digit from 1 to 9. Anything else, and nothing at all, is false.
bool boolValue(const QVariant& object);
/// Whether the object is a number to the platform; booleans are.
bool isNumber(const QVariant& object);

} // namespace quoddle
