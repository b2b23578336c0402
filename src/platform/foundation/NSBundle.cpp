// SPDX-License-Identifier: MIT
#include "platform/foundation/NSBundle.h"

#include "platform/foundation/NSLog.h"
#include "platform/foundation/Plist.h"
#include "platform/foundation/Translations.h"

#include <QDir>
#include <QFileInfo>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

std::shared_ptr<NSBundle>& mainBundleSlot() {
    static std::shared_ptr<NSBundle> bundle;
    return bundle;
}

QHash<QString, QHash<QString, QString>>& fallbackStrings() {
    static QHash<QString, QHash<QString, QString>> tables;
    return tables;
}

QString tableName(const QString& table) {
    return table.isEmpty() ? u"Localizable"_s : table;
}

// The folders of old bundles are named after the language in English.
constexpr struct {
    QLatin1StringView language, name;
} kOldNames[] = {{"en"_L1, "English"_L1}, {"fr"_L1, "French"_L1},    {"de"_L1, "German"_L1},  {"ja"_L1, "Japanese"_L1},
                 {"es"_L1, "Spanish"_L1}, {"it"_L1, "Italian"_L1},   {"nl"_L1, "Dutch"_L1},   {"sv"_L1, "Swedish"_L1},
                 {"da"_L1, "Danish"_L1},  {"no"_L1, "Norwegian"_L1}, {"fi"_L1, "Finnish"_L1}, {"pt"_L1, "Portuguese"_L1},
                 {"ko"_L1, "Korean"_L1}};

/// All names that a folder for this language may have, the most specific first. For "fr-Latn-CA": fr-Latn-CA, fr-CA, fr-Latn, fr, each also
/// with underscores, and French. A region tells more than a script, because few tags are written with a script.
QStringList folderNamesFor(const QString& tag) {
    const QStringList parts = tag.split(u'-');
    QStringList tags{tag};
    if (parts.size() > 2)
        tags << parts.first() + u'-' + parts.last() << parts[0] + u'-' + parts[1];
    tags << parts.first();
    QStringList names;
    for (const QString& each : std::as_const(tags))
        names << each << QString(each).replace(u'-', u'_');
    for (const auto& old : kOldNames)
        if (parts.first() == old.language)
            names << old.name;
    return names;
}

} // namespace

std::shared_ptr<NSBundle> NSBundle::mainBundle() {
    return mainBundleSlot();
}

void NSBundle::setMainBundle(std::shared_ptr<NSBundle> bundle) {
    mainBundleSlot() = std::move(bundle);
}

void NSBundle::setFallbackStrings(const QString& table, const QHash<QString, QString>& strings) {
    fallbackStrings()[tableName(table)] = strings;
}

std::shared_ptr<NSBundle> NSBundle::bundleWithPath(const QString& path) {
    const QFileInfo info(path);
    if (path.isEmpty() || !info.isDir())
        return nullptr;
    return std::shared_ptr<NSBundle>(new NSBundle(QDir::cleanPath(info.absoluteFilePath())));
}

std::shared_ptr<NSBundle> NSBundle::bundleForExecutable(const QString& executablePath) {
    const QString folder = QFileInfo(executablePath).absolutePath();
    return folder.endsWith("/Contents/Linux"_L1) ? bundleWithPath(folder.chopped(15)) : nullptr;
}

QString NSBundle::bundleIdentifier() const {
    return infoDictionary().value(u"CFBundleIdentifier"_s).toString();
}

QString NSBundle::name() const {
    const QString name = infoDictionary().value(u"CFBundleName"_s).toString();
    return name.isEmpty() ? QFileInfo(mPath).completeBaseName() : name;
}

QVariantMap NSBundle::readInfo() const {
    const QString path = mPath + u"/Contents/Info.plist"_s;
    if (!QFileInfo::exists(path))
        return {};
    auto info = Plist::readFile(path);
    if (info && info->typeId() == QMetaType::QVariantMap)
        return info->toMap();
    NSLog(u"NSBundle: %@ is left out: %@"_s, {path, info ? u"not a dictionary"_s : info.error()});
    return {};
}

QVariantMap NSBundle::infoDictionary() const {
    QMutexLocker lock(&mMutex);
    if (!mInfo)
        mInfo = std::make_unique<const QVariantMap>(readInfo());
    return *mInfo;
}

QVariant NSBundle::objectForInfoDictionaryKey(const QString& key) const {
    const QString localized = localizedOrEmpty(key, u"InfoPlist"_s);
    return localized.isNull() ? infoDictionary().value(key) : QVariant(localized);
}

QStringList NSBundle::findLocalizations() const {
    QStringList present = QDir(resourcePath()).entryList({u"*.lproj"_s}, QDir::Dirs | QDir::NoDotAndDotDot);
    for (QString& folder : present)
        folder.chop(6);
    QStringList wanted;
    for (const QString& language : userLanguages())
        wanted << folderNamesFor(language);
    wanted << u"Base"_s << folderNamesFor(infoDictionary().value(u"CFBundleDevelopmentRegion"_s).toString()) << folderNamesFor(u"en"_s);
    QStringList found;
    for (const QString& name : std::as_const(wanted))
        if (present.contains(name) && !found.contains(name))
            found << name;
    return found;
}

QStringList NSBundle::preferredLocalizations() const {
    {
        QMutexLocker lock(&mMutex);
        if (mLocalizations)
            return *mLocalizations;
    }
    const QStringList found = findLocalizations(); // takes the lock itself, when it asks for the info dictionary
    QMutexLocker lock(&mMutex);
    if (!mLocalizations)
        mLocalizations = std::make_unique<const QStringList>(found);
    return *mLocalizations;
}

QString NSBundle::pathForResource(const QString& name, const QString& type, const QString& inDirectory) const {
    const QString file = type.isEmpty() ? name : name + u'.' + type;
    const QString below = (inDirectory.isEmpty() ? QString() : inDirectory + u'/') + file;
    const QString plain = resourcePath() + u'/' + below;
    if (QFileInfo::exists(plain))
        return plain;
    for (const QString& language : preferredLocalizations()) {
        const QString localized = resourcePath() + u'/' + language + u".lproj/"_s + below;
        if (QFileInfo::exists(localized))
            return localized;
    }
    return {};
}

QList<NSBundle::StringsTable> NSBundle::tablesNamed(const QString& table) const {
    QStringList paths{resourcePath() + u'/' + table + u".strings"_s};
    for (const QString& language : preferredLocalizations())
        paths << resourcePath() + u'/' + language + u".lproj/"_s + table + u".strings"_s;
    QMutexLocker lock(&mMutex);
    auto known = mTables.find(table);
    if (known != mTables.end())
        return *known;
    QList<StringsTable> tables;
    for (const QString& path : std::as_const(paths)) {
        const auto bytes = Plist::bytesOf(path);
        if (!bytes)
            continue;
        auto read = Plist::readStrings(*bytes);
        if (read)
            tables << *read;
        else // one bad file must not make the texts of the other languages unavailable
            NSLog(u"NSBundle: %@ is left out: %@"_s, {path, read.error()});
    }
    return *mTables.insert(table, tables);
}

QString NSBundle::localizedOrEmpty(const QString& key, const QString& table) const {
    const QList<StringsTable> tables = tablesNamed(table);
    for (const StringsTable& strings : tables) {
        const auto found = strings.constFind(key);
        if (found != strings.constEnd())
            return found->isNull() ? u""_s : *found;
    }
    return {};
}

QString NSBundle::localizedString(const QString& key, const QString& value, const QString& table) const {
    const QString name = tableName(table);
    const QString localized = localizedOrEmpty(key, name);
    if (!localized.isNull())
        return localized;
    const auto fallback = fallbackStrings().constFind(name);
    if (fallback != fallbackStrings().constEnd() && fallback->contains(key))
        return fallback->value(key);
    return value.isEmpty() ? key : value;
}

bool isNumber(const QVariant& object) {
    switch (object.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

bool boolValue(const QVariant& object) {
    if (isNumber(object))
        return object.toDouble() != 0;
    if (object.typeId() != QMetaType::QString)
        return false;
    const QString text = object.toString();
    qsizetype at = 0;
    while (at < text.size() && text[at].isSpace())
        ++at;
    if (at < text.size() && (text[at] == u'+' || text[at] == u'-'))
        ++at;
    while (at < text.size() && text[at] == u'0')
        ++at;
    return at < text.size() && QStringView(u"YyTt123456789").contains(text[at]);
}

} // namespace quoddle
