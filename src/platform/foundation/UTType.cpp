// SPDX-License-Identifier: MIT
#include "platform/foundation/UTType.h"

#include "platform/foundation/UTTypeTable.h"

#include <QHash>
#include <QMimeDatabase>
#include <QReadWriteLock>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMostAddedTypes = 10000; // a limit for the declarations of bundles
constexpr qsizetype kMostTagsOfAType = 200;
constexpr auto kDynamicPrefix = "dyn."_L1;

struct WildcardRow {
    const char* mimePrefix;
    const char* type;
};

// The prefix is compared with a MIME type's main name and not with its aliases, because PDF has an alias that begins with "image/".
constexpr WildcardRow kWildcards[] = {
    {"image/", "public.image"}, {"audio/", "public.audio"}, {"video/", "public.movie"},
    {"text/", "public.text"},   {"font/", "public.font"},   {"model/", "public.3d-content"},
};

QStringList words(const char* list) {
    return QString::fromLatin1(list).split(u' ', Qt::SkipEmptyParts);
}

QStringList fours(const char* list) {
    const QString all = QString::fromLatin1(list);
    QStringList codes;
    for (qsizetype i = 0; i + 4 <= all.size(); i += 4)
        codes << all.mid(i, 4);
    return codes;
}

QString keyOf(const QString& tagClass, const QString& tag) {
    return tagClass == kUTTagClassOSType ? tag : tag.toLower();
}

/// The "dyn.…" identifier of a MIME type without a declared type; mimeNameOf() is the inverse.
QString dynamicIdentifier(const QString& mimeName) {
    return kDynamicPrefix + QString::fromLatin1(mimeName.toUtf8().toHex());
}

QString mimeNameOf(const QString& dynamicIdentifier) {
    return QString::fromUtf8(QByteArray::fromHex(dynamicIdentifier.mid(kDynamicPrefix.size()).toLatin1()));
}

class Registry {
public:
    Registry();
    static Registry& shared() {
        static auto& registry = *new Registry; // never destroyed, because other threads may ask while the process ends
        return registry;
    }

    bool isDeclared(const QString& type) const {
        const QReadLocker lock(&mLock);
        return mConformsTo.contains(type.toLower());
    }
    QStringList tagged(const QString& tagClass, const QString& tag) const {
        const QReadLocker lock(&mLock);
        return mTags.value(tagClass).value(keyOf(tagClass, tag));
    }
    QStringList conformances(const QString& type) const;
    void declare(const QString& identifier, const QStringList& conformsTo, const QHash<QString, QStringList>& tags);
    QString typeForMimeType(const QString& name) const;

private:
    QStringList parentsOf(const QString& type) const;
    QStringList parentsOfMimeType(const QString& name) const;

    mutable QReadWriteLock mLock{QReadWriteLock::Recursive};
    QHash<QString, QStringList> mConformsTo;           // the types that a type conforms to, by its identifier in lower case
    QHash<QString, QHash<QString, QStringList>> mTags; // the types with a tag, by the tag's class, then by the tag
    mutable QHash<QString, QString> mKnownMimeTypes;   // results of typeForMimeType()
    mutable QReadWriteLock mKnownLock;
};

Registry::Registry() {
    for (const UTTypeRow& row : declaredTypes())
        declare(QString::fromLatin1(row.identifier), words(row.conformsTo),
                {{kUTTagClassMIMEType, words(row.mimeTypes)},
                 {kUTTagClassFilenameExtension, words(row.extensions)},
                 {kUTTagClassOSType, fours(row.osTypes)}});
}

void Registry::declare(const QString& identifier, const QStringList& conformsTo, const QHash<QString, QStringList>& tags) {
    const QWriteLocker lock(&mLock);
    const QString key = identifier.toLower();
    if (key.isEmpty() || mConformsTo.contains(key) || mConformsTo.size() >= kMostAddedTypes)
        return;
    mConformsTo.insert(key, conformsTo);
    for (auto tagClass = tags.begin(); tagClass != tags.end(); ++tagClass)
        for (const QString& tag : tagClass.value())
            mTags[tagClass.key()][keyOf(tagClass.key(), tag)] << identifier;
}

QStringList Registry::parentsOf(const QString& type) const {
    const auto declared = mConformsTo.constFind(type.toLower());
    if (declared != mConformsTo.constEnd())
        return *declared;
    return type.startsWith(kDynamicPrefix) ? parentsOfMimeType(mimeNameOf(type)) : QStringList();
}

QStringList Registry::parentsOfMimeType(const QString& name) const {
    QStringList parents;
    for (const WildcardRow& row : kWildcards)
        if (name.startsWith(QLatin1StringView(row.mimePrefix)))
            parents << QString::fromLatin1(row.type);
    const QStringList ancestors = QMimeDatabase().mimeTypeForName(name).allAncestors();
    for (const QString& ancestor : ancestors) {
        const QStringList types = mTags.value(kUTTagClassMIMEType).value(ancestor);
        if (!types.isEmpty()) {
            parents << types.first();
            break;
        }
    }
    if (parents.isEmpty() && !name.startsWith("inode/"_L1))
        parents << u"public.data"_s;
    return parents.isEmpty() ? QStringList(u"public.item"_s) : parents;
}

QStringList Registry::conformances(const QString& type) const {
    const QReadLocker lock(&mLock);
    QStringList all(type);
    for (qsizetype i = 0; i < all.size(); ++i) // `all` grows in the loop; a type is added once, so circular declarations end
        for (const QString& parent : parentsOf(all.at(i)))
            if (!all.contains(parent, Qt::CaseInsensitive))
                all << parent;
    return all;
}

QString Registry::typeForMimeType(const QString& name) const {
    if (const QStringList types = tagged(kUTTagClassMIMEType, name); !types.isEmpty())
        return types.first();
    {
        const QReadLocker lock(&mKnownLock);
        if (const auto known = mKnownMimeTypes.constFind(name); known != mKnownMimeTypes.constEnd())
            return *known;
    }
    const QMimeType mimeType = QMimeDatabase().mimeTypeForName(name);
    QString type;
    if (mimeType.isValid()) {
        QStringList names(mimeType.name());
        names += mimeType.aliases();
        for (const QString& each : std::as_const(names))
            if (const QStringList types = tagged(kUTTagClassMIMEType, each); type.isEmpty() && !types.isEmpty())
                type = types.first();
        if (type.isEmpty())
            type = dynamicIdentifier(mimeType.name());
    }
    const QWriteLocker lock(&mKnownLock);
    if (mimeType.isValid()) // invalid names are not kept, because there is no limit to them
        mKnownMimeTypes.insert(name, type);
    return type;
}

/// A text or a list of texts of a property list as a list.
QStringList texts(const QVariant& value) {
    QStringList list;
    if (value.typeId() == QMetaType::QString)
        list << value.toString();
    const QVariantList items = value.toList();
    for (const QVariant& each : items)
        if (each.typeId() == QMetaType::QString)
            list << each.toString();
    return list.first(std::min(list.size(), kMostTagsOfAType));
}

} // namespace

bool UTTypeConformsTo(const QString& type, const QString& conformsTo) {
    return Registry::shared().conformances(type).contains(conformsTo, Qt::CaseInsensitive);
}

bool UTTypeIsDeclared(const QString& type) {
    return Registry::shared().isDeclared(type);
}

QStringList UTTypeCopyConformances(const QString& type) {
    return Registry::shared().conformances(type);
}

QString UTTypeCreatePreferredIdentifierForTag(const QString& tagClass, const QString& tag) {
    if (tagClass == kUTTagClassMIMEType)
        return Registry::shared().typeForMimeType(tag.toLower());
    const QStringList types = Registry::shared().tagged(tagClass, tag);
    return types.isEmpty() ? QString() : types.first();
}

QStringList UTTypeCreateAllIdentifiersForTag(const QString& tagClass, const QString& tag) {
    return Registry::shared().tagged(tagClass, tag);
}

void UTTypeDeclareTypesOfBundle(const QVariantMap& infoDictionary) {
    for (const auto& key : {u"UTExportedTypeDeclarations"_s, u"UTImportedTypeDeclarations"_s}) {
        const QVariantList declarations = infoDictionary.value(key).toList();
        for (const QVariant& each : declarations) {
            const QVariantMap declaration = each.toMap();
            const QVariantMap tags = declaration.value(u"UTTypeTagSpecification"_s).toMap();
            QHash<QString, QStringList> byClass;
            for (const QString& tagClass : {kUTTagClassFilenameExtension, kUTTagClassMIMEType, kUTTagClassOSType})
                byClass.insert(tagClass, texts(tags.value(tagClass)));
            Registry::shared().declare(declaration.value(u"UTTypeIdentifier"_s).toString(), texts(declaration.value(u"UTTypeConformsTo"_s)),
                                       byClass);
        }
    }
}

} // namespace quoddle
