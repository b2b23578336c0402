// SPDX-License-Identifier: MIT
// The files that a droplet takes: the types that the bundle declares, as a condition on dropped files and as one on files that are searched
// for.
// QUIRK: the first condition compares the end of the whole path with the bare extension, the second the end of the name with dot and
// extension. So a file "notxt" can be dropped on an applet for "txt" but is not found by it; users rely on dropping such files.
#include "runtime/AppDelegate.h"

#include "platform/foundation/Plist.h"
#include "platform/foundation/URLResources.h"

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMostEntries = 1000; // the most entries of one kind

class Entries {
public:
    /// Adds entries that are new. When the list is full only the wildcard is still added, because it makes all others needless.
    void addNew(const QVariant& entries) {
        const QVariantList values = entries.toList();
        for (const QVariant& entry : values) {
            const QString text = entry.toString();
            if (entry.typeId() != QMetaType::QString || mKnown.contains(text) || (mList.size() >= kMostEntries && text != u'*'))
                continue;
            mKnown << text;
            mList << text;
        }
    }
    const QStringList& list() const { return mList; }

private:
    QStringList mList;
    QSet<QString> mKnown;
};

struct DeclaredTypes {
    QStringList extensions;
    QStringList identifiers;
};

DeclaredTypes declaredByDocumentTypes(const QVariantMap& info) {
    Entries extensions, identifiers;
    const QVariantList documentTypes = info.value(u"CFBundleDocumentTypes"_s).toList();
    for (const QVariant& documentType : documentTypes.first(std::min(documentTypes.size(), 10 * kMostEntries))) {
        const QVariantMap entry = documentType.toMap();
        extensions.addNew(entry.value(u"CFBundleTypeExtensions"_s));
        if (entry.value(u"CFBundleTypeOSTypes"_s).toList().contains(u"****"_s))
            extensions.addNew(QVariantList{u"*"_s});
        identifiers.addNew(entry.value(u"LSItemContentTypes"_s));
    }
    return {extensions.list(), identifiers.list()};
}

/// The entries of a text of the editor's settings. They are separated by one blank each; two blanks in a row stand for an empty entry
/// between them.
QStringList entriesIn(const QVariant& setting) {
    QString text = setting.toString();
    while (text.startsWith(u' '))
        text.remove(0, 1);
    while (text.endsWith(u' '))
        text.chop(1);
    Entries entries;
    if (!text.isEmpty())
        entries.addNew(text.split(u' '));
    return entries.list();
}

DeclaredTypes declaredByEditor(const NSBundle& bundle) {
    const auto settings = Plist::readFile(bundle.bundlePath() + u"/Contents/Brambleworks.plist"_s);
    if (!settings)
        return {};
    const QVariantMap entries = settings->toMap();
    return {entriesIn(entries.value(u"BWDropletExtensionsEntry"_s).toString().toLower()),
            entriesIn(entries.value(u"BWDropletUTIsEntry"_s))};
}

NSPredicateRef predicate(const QString& format, const QVariantList& arguments = {}) {
    const auto made = NSPredicate::predicateWithFormat(format, arguments);
    Q_ASSERT(made); // all formats are in this file
    return *made;
}

NSPredicateRef anyOf(const QList<NSPredicateRef>& predicates) {
    return predicates.size() == 1 ? predicates.first() : NSCompoundPredicate::orPredicateWithSubpredicates(predicates);
}

NSPredicateRef bothOf(const NSPredicateRef& first, const NSPredicateRef& second) {
    return NSCompoundPredicate::andPredicateWithSubpredicates({first, second});
}

NSPredicateRef dropPredicateForExtensions(const QStringList& extensions) {
    QList<NSPredicateRef> matches;
    for (const QString& extension : extensions)
        matches << predicate(u"%K ENDSWITH %@"_s, {NSURLPathKey, extension});
    return bothOf(anyOf(matches), predicate(u"(%K == NO) OR (%K == YES)"_s, {NSURLIsDirectoryKey, NSURLIsPackageKey}));
}

NSPredicateRef searchPredicateForExtensions(const QStringList& extensions) {
    QList<NSPredicateRef> matches;
    for (const QString& extension : extensions)
        matches << predicate(u"kMDItemFSName ENDSWITH %@"_s, {u'.' + extension});
    return bothOf(anyOf(matches), predicate(u"kMDItemContentType != 'public.folder'"_s));
}

QList<NSPredicateRef> dropMatches(const QStringList& identifiers) {
    QList<NSPredicateRef> matches;
    for (const QString& identifier : identifiers)
        matches << predicate(u"%K UTI-CONFORMS-TO %@"_s, {NSURLTypeIdentifierKey, identifier});
    return matches;
}

QList<NSPredicateRef> searchMatches(const QStringList& identifiers) {
    QList<NSPredicateRef> matches;
    for (const QString& identifier : identifiers)
        matches << predicate(u"kMDItemContentType == %@"_s, {identifier});
    return matches;
}

} // namespace

void AppDelegate::_loadExtAndUTIPrefs() {
    const DeclaredTypes types =
        hasOpenHandler() ? declaredByDocumentTypes(mainBundle()->infoDictionary()) : declaredByEditor(*mainBundle());
    if (types.extensions.contains(u"*"_s))
        return;
    if (!types.extensions.isEmpty() && !types.identifiers.isEmpty())
        _predsForUTIs(types.identifiers, types.extensions);
    else if (!types.extensions.isEmpty())
        _predsForExtensions(types.extensions);
    else if (!types.identifiers.isEmpty())
        _predsForUTIs(types.identifiers);
}

void AppDelegate::_predsForExtensions(const QStringList& extensions) {
    setDropPredicate(dropPredicateForExtensions(extensions));
    setSpotlightPredicate(searchPredicateForExtensions(extensions));
}

void AppDelegate::_predsForUTIs(const QStringList& identifiers) {
    setDropPredicate(anyOf(dropMatches(identifiers)));
    setSpotlightPredicate(anyOf(searchMatches(identifiers)));
}

void AppDelegate::_predsForUTIs(const QStringList& identifiers, const QStringList& andExtensions) {
    setDropPredicate(anyOf(QList{dropPredicateForExtensions(andExtensions)} + dropMatches(identifiers)));
    setSpotlightPredicate(anyOf(QList{searchPredicateForExtensions(andExtensions)} + searchMatches(identifiers)));
}

} // namespace quoddle
