// SPDX-License-Identifier: MIT
#include "Applet.h"

#include "platform/foundation/URLResources.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

namespace quoddle {

using namespace Qt::StringLiterals;
using test::Applet;

namespace {

QString formatOf(const NSPredicateRef& predicate) {
    return predicate ? predicate->predicateFormat() : QString();
}

} // namespace

TEST(FileTypeFilter, FollowsWhatTheBundleDeclares) {
    const QString guard = u"(NSURLIsDirectoryKey == NO OR NSURLIsPackageKey == YES)"_s;
    const QString noFolder = u"kMDItemContentType != \"public.folder\""_s;
    const struct {
        const char *name, *handlers, *info, *editor;
        QString drop, search;
    } rows[] = {
        {"nothing declared", "open", "", "", {}, {}},
        {"extensions", "open", "CFBundleDocumentTypes = ({CFBundleTypeExtensions = (jpg, png);}, {CFBundleTypeExtensions = (jpg);});", "",
         u"(_NSURLPathKey ENDSWITH \"jpg\" OR _NSURLPathKey ENDSWITH \"png\") AND "_s + guard,
         u"(kMDItemFSName ENDSWITH \".jpg\" OR kMDItemFSName ENDSWITH \".png\") AND "_s + noFolder},
        {"one extension", "open", "CFBundleDocumentTypes = ({CFBundleTypeExtensions = (Txt);});", "",
         u"_NSURLPathKey ENDSWITH \"Txt\" AND "_s + guard, u"kMDItemFSName ENDSWITH \".Txt\" AND "_s + noFolder},
        {"types", "open", "CFBundleDocumentTypes = ({LSItemContentTypes = (\"public.image\", \"public.text\");});", "",
         u"NSURLTypeIdentifierKey UTI-CONFORMS-TO \"public.image\" OR NSURLTypeIdentifierKey UTI-CONFORMS-TO \"public.text\""_s,
         u"kMDItemContentType == \"public.image\" OR kMDItemContentType == \"public.text\""_s},
        {"both", "open", "CFBundleDocumentTypes = ({LSItemContentTypes = (a); CFBundleTypeExtensions = (x);});", "",
         u"(_NSURLPathKey ENDSWITH \"x\" AND "_s + guard + u") OR NSURLTypeIdentifierKey UTI-CONFORMS-TO \"a\""_s,
         u"(kMDItemFSName ENDSWITH \".x\" AND "_s + noFolder + u") OR kMDItemContentType == \"a\""_s},
        {"everything",
         "open",
         "CFBundleDocumentTypes = ({CFBundleTypeOSTypes = (\"****\"); CFBundleTypeExtensions = (txt);});",
         "",
         {},
         {}},
        {"not understood",
         "open",
         "CFBundleDocumentTypes = ({CFBundleTypeExtensions = {a = b;};}, x, {LSItemContentTypes = ((y));});",
         "",
         {},
         {}},
        {"a droplet does not ask the editor", "open", "", "{BWDropletUTIsEntry = a;}", {}, {}},
        {"editor", "run", "CFBundleDocumentTypes = ({CFBundleTypeExtensions = (jpg);});",
         "{BWDropletExtensionsEntry = \" TXT  csv txt \"; BWDropletUTIsEntry = \"Public.Image\";}",
         u"((_NSURLPathKey ENDSWITH \"txt\" OR _NSURLPathKey ENDSWITH \"\" OR _NSURLPathKey ENDSWITH \"csv\") AND "_s + guard +
             u") OR NSURLTypeIdentifierKey UTI-CONFORMS-TO \"Public.Image\""_s,
         u"((kMDItemFSName ENDSWITH \".txt\" OR kMDItemFSName ENDSWITH \".\" OR kMDItemFSName ENDSWITH \".csv\") AND "_s + noFolder +
             u") OR kMDItemContentType == \"Public.Image\""_s},
        {"editor, empty", "run", "", "{BWDropletExtensionsEntry = \"  \"; BWDropletUTIsEntry = \"\";}", {}, {}},
        {"editor, everything", "run", "", "{BWDropletExtensionsEntry = \"a *\"; BWDropletUTIsEntry = b;}", {}, {}},
        {"editor, damaged", "run", "", "{BWDropletExtensionsEntry = ", {}, {}},
    };
    for (const auto& row : rows) {
        Applet applet({.handlers = row.handlers, .info = row.info, .editor = row.editor});
        applet.delegate->_setupApplication(false);
        EXPECT_EQ(formatOf(applet.delegate->dropPredicate()), row.drop) << row.name;
        EXPECT_EQ(formatOf(applet.delegate->spotlightPredicate()), row.search) << row.name;
    }
}

TEST(FileTypeFilter, JudgesFilesAsTheyAre) {
    QTemporaryDir folder;
    const auto make = [&folder](const QString& name) {
        const QString path = folder.filePath(name);
        if (name.endsWith(u'/'))
            QDir().mkpath(path);
        else
            EXPECT_TRUE(QFile(path).open(QIODevice::WriteOnly));
        return QDir::cleanPath(path);
    };
    Applet applet({.handlers = "open",
                   .info = "CFBundleDocumentTypes = ({CFBundleTypeExtensions = (txt, rtfd); LSItemContentTypes = "
                           "(\"public.image\");});"});
    applet.delegate->_setupApplication(false);
    const std::pair<const char*, bool> rows[] = {
        {"a.txt", true},  {"notxt", true},   {"a.TXT", false},  {"a.png", true},
        {"a.pdf", false}, {"b.txt/", false}, {"b.rtfd/", true}, {"c/", false},
    };
    for (const auto& [name, isTaken] : rows)
        EXPECT_EQ(applet.delegate->dropPredicate()->evaluateWithObject(resourceValuesOfFile(make(QString::fromUtf8(name)))), isTaken)
            << name;
    const NSPredicateRef isFolder = *NSPredicate::predicateWithFormat(u"%K == YES"_s, {NSURLIsDirectoryKey});
    QFile::link(make(u"c/"_s), folder.filePath(u"link"_s));
    EXPECT_FALSE(isFolder->evaluateWithObject(resourceValuesOfFile(folder.filePath(u"link"_s))));
    EXPECT_TRUE(isFolder->evaluateWithObject(resourceValuesOfFile(folder.filePath(u"c"_s))));
    EXPECT_FALSE(isFolder->evaluateWithObject(resourceValuesOfFile(folder.filePath(u"none"_s))));
}

} // namespace quoddle
