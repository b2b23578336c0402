// SPDX-License-Identifier: MIT
// A bundle: a folder NAME.app/Contents with an Info.plist, resources and their localised variants.
// Decision: everything is read on first use and kept; changes of the bundle on disk while it is in use are not noticed.
// A bundle loads no code and knows no other layout than Contents/….
#pragma once

#include <memory>

#include <QHash>
#include <QMutex>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

namespace quoddle {

/// Thread-safe once it has been created.
class NSBundle {
public:
    /// The bundle of this process; null until setMainBundle().
    static std::shared_ptr<NSBundle> mainBundle();
    /// Main thread, before any other thread calls mainBundle().
    static void setMainBundle(std::shared_ptr<NSBundle> bundle);

    /// Null when there is no folder at the path. A folder without Contents is a bundle without information and resources.
    static std::shared_ptr<NSBundle> bundleWithPath(const QString& path);
    /// The bundle of an executable at BUNDLE/Contents/Linux/NAME; null for any other path. Links are not followed, so that an executable
    /// that is a link to a program outside still stands for its bundle.
    static std::shared_ptr<NSBundle> bundleForExecutable(const QString& executablePath);

    /// Sets the texts for keys that a bundle's tables lack, for one table name ("" is the default table). Main thread, at the start.
    static void setFallbackStrings(const QString& table, const QHash<QString, QString>& strings);

    /// Absolute, without a slash at the end.
    QString bundlePath() const { return mPath; }
    QUrl bundleURL() const { return QUrl::fromLocalFile(mPath); }
    QString resourcePath() const { return mPath + QStringLiteral("/Contents/Resources"); }
    /// "CFBundleIdentifier"; empty when there is none.
    QString bundleIdentifier() const;

    /// "CFBundleName", else the name of the bundle's folder without the extension.
    QString name() const;

    /// The contents of Contents/Info.plist, not localised; empty when there is none or it cannot be read (which is logged once).
    QVariantMap infoDictionary() const;
    /// The localised value ("InfoPlist.strings"), else the info dictionary's; an empty QVariant when neither has the key.
    QVariant objectForInfoDictionaryKey(const QString& key) const;

    /// The languages of the .lproj folders to use for this user, best first; "Base", the development region and English come last.
    QStringList preferredLocalizations() const;
    /// The absolute path of a file or folder, looked for in Resources[/subdirectory], then in Resources/LANGUAGE.lproj[/subdirectory] in
    /// the order of preference. `type` is the extension without its dot, empty for none. Empty when there is no such resource.
    QString pathForResource(const QString& name, const QString& type, const QString& inDirectory = {}) const;

    /// The text for the key in the first preferred language whose table has the key. Without one: `value`, or the key itself when `value`
    /// is empty. The default table is "Localizable".
    QString localizedString(const QString& key, const QString& value = {}, const QString& table = {}) const;

private:
    explicit NSBundle(QString path) : mPath(std::move(path)) {}

    using StringsTable = QHash<QString, QString>;
    QString localizedOrEmpty(const QString& key, const QString& table) const;
    /// The table outside all .lproj folders, then those of the preferred languages in order.
    QList<StringsTable> tablesNamed(const QString& table) const;
    QStringList findLocalizations() const;
    QVariantMap readInfo() const;

    const QString mPath;
    mutable QMutex mMutex;
    mutable std::unique_ptr<const QVariantMap> mInfo;
    mutable std::unique_ptr<const QStringList> mLocalizations;
    mutable QHash<QString, QList<StringsTable>> mTables;
};

/// The platform's conversion of a stored object to a boolean. True for numbers other than 0 and for texts that begin with Y, y, T, t or a
/// digit from 1 to 9, after blanks, a sign and zeros. False for anything else and for an empty QVariant.
bool boolValue(const QVariant& object);
/// Whether the platform counts the object as a number; booleans are numbers.
bool isNumber(const QVariant& object);

} // namespace quoddle
