// SPDX-License-Identifier: MIT
#include "platform/foundation/FileTypes.h"
#include "platform/foundation/UTType.h"
#include "platform/foundation/UTTypeTable.h"

#include "platform/foundation/QtPrinters.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

const QByteArray kPNG("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);

class FileTypes : public ::testing::Test {
protected:
    /// Makes a file, or a folder when the name ends in a slash.
    QString make(const QString& name, const QByteArray& contents = {}) {
        const QString path = mFolder.filePath(name);
        QDir().mkpath(name.endsWith(u'/') ? path : QFileInfo(path).path());
        if (!name.endsWith(u'/')) {
            QFile file(path);
            EXPECT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(contents);
        }
        return QDir::cleanPath(path);
    }
    QTemporaryDir mFolder;
};

QStringList listed(const char* words) {
    return QString::fromLatin1(words).split(u' ', Qt::SkipEmptyParts);
}

} // namespace

TEST(UTType, TheTableHoldsTogether) {
    QStringList seen;
    for (const UTTypeRow& row : declaredTypes()) {
        EXPECT_FALSE(seen.contains(QString::fromLatin1(row.identifier))) << row.identifier;
        seen << QString::fromLatin1(row.identifier);
        for (const QString& parent : listed(row.conformsTo))
            EXPECT_TRUE(UTTypeIsDeclared(parent)) << row.identifier << " conforms to " << parent.toStdString();
        for (const QString& extension : listed(row.extensions))
            EXPECT_EQ(extension, extension.toLower()) << row.identifier;
        EXPECT_EQ(qstrlen(row.osTypes) % 4, 0u) << row.identifier;
    }
    EXPECT_GT(seen.size(), 150);
}

TEST(UTType, OneIsAKindOfAnother) {
    struct {
        const char* type;
        const char* of;
        bool conforms;
    } const cases[] = {
        {"public.png", "public.image", true},
        {"public.png", "public.data", true},
        {"public.png", "public.content", true},
        {"PUBLIC.PNG", "Public.Image", true},
        {"public.png", "public.text", false},
        {"public.image", "public.png", false},
        {"public.python-script", "public.plain-text", true},
        {"public.python-script", "public.script", true},
        {"com.apple.application-bundle", "public.directory", true},
        {"com.apple.application-bundle", "public.folder", false},
        {"com.apple.applescript.script-bundle", "com.apple.package", true},
        {"public.folder", "public.data", false},
        {"nobody.knows.this", "nobody.knows.this", true},
        {"nobody.knows.this", "public.item", false},
        {"dyn.", "public.image", false},
        {"dyn.zz", "public.text", false},
    };
    for (const auto& each : cases)
        EXPECT_EQ(UTTypeConformsTo(QString::fromLatin1(each.type), QString::fromLatin1(each.of)), each.conforms)
            << each.type << " of " << each.of;
}

TEST(UTType, MimeTypesWithoutARowAreWhatTheirAncestorsAre) {
    const QString comic = UTTypeCreatePreferredIdentifierForTag(kUTTagClassMIMEType, u"application/vnd.comicbook+zip"_s);
    EXPECT_TRUE(comic.startsWith(u"dyn."_s)) << comic.toStdString();
    EXPECT_TRUE(UTTypeConformsTo(comic, u"public.zip-archive"_s));
    const QString picture = UTTypeCreatePreferredIdentifierForTag(kUTTagClassMIMEType, u"image/x-pcx"_s);
    EXPECT_TRUE(UTTypeConformsTo(picture, u"public.image"_s));
    // PDF has an alias that begins like a picture's type.
    const QString pdf = UTTypeCreatePreferredIdentifierForTag(kUTTagClassMIMEType, u"image/pdf"_s);
    EXPECT_EQ(pdf, u"com.adobe.pdf"_s);
    EXPECT_FALSE(UTTypeConformsTo(pdf, u"public.image"_s));
    EXPECT_EQ(UTTypeCreatePreferredIdentifierForTag(kUTTagClassMIMEType, u"x-nonsense/none"_s), QString());
}

TEST_F(FileTypes, AreFoundByNameThenByContents) {
    struct {
        const char* name;
        QByteArray contents;
        const char* type;
    } const cases[] = {
        {"a.png", {}, "public.png"},
        {"B.JPEG", {}, "public.jpeg"},
        {"picture", kPNG, "public.png"},
        {"letter.txt", kPNG, "public.plain-text"},
        {"notes", "some words\n", "public.plain-text"},
        {"all.tar.gz", {}, "org.gnu.gnu-zip-tar-archive"},
        {"one.gz", {}, "org.gnu.gnu-zip-archive"},
        {"main.scpt", {}, "com.apple.applescript.script"},
        {"tool", "#!/bin/sh\n", "public.shell-script"},
        {".png", "words", "public.plain-text"},
        {"Tool.app/", {}, "com.apple.application-bundle"},
        {"Tool.app.zip", {}, "public.zip-archive"},
        {"note.rtfd/", {}, "com.apple.rtfd"},
        {"photos.png/", {}, "public.folder"},
        {"plain/", {}, "public.folder"},
        {"odd.thing/Contents/Info.plist", {}, "com.apple.property-list"},
        {"odd.thing/", {}, "com.apple.bundle"},
        {"flat.app", "no folder", "public.plain-text"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(typeIdentifierOfFile(make(QString::fromLatin1(each.name), each.contents)), QString::fromLatin1(each.type)) << each.name;

    QFile::link(make(u"a.png"_s), mFolder.filePath(u"link"_s));
    EXPECT_EQ(typeIdentifierOfFile(mFolder.filePath(u"link"_s)), u"public.symlink"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(mFolder.filePath(u"pipe.png"_s)).constData(), 0600), 0);
    EXPECT_EQ(typeIdentifierOfFile(mFolder.filePath(u"pipe.png"_s)), u"public.item"_s);
    EXPECT_EQ(typeIdentifierOfFile(mFolder.filePath(u"missing.png"_s)), u"public.item"_s);

    EXPECT_TRUE(isFilePackage(mFolder.filePath(u"Tool.app"_s)));
    EXPECT_TRUE(isFilePackage(mFolder.filePath(u"odd.thing"_s)));
    EXPECT_FALSE(isFilePackage(mFolder.filePath(u"plain"_s)));
    EXPECT_FALSE(isFilePackage(mFolder.filePath(u"flat.app"_s)));
}

TEST(DrawableName, NothingBreaksTheLineVanishesOrReorders) {
    for (const auto& [name, drawn] : std::initializer_list<std::pair<QString, QString>>{
             {u"a\nb\t\x7F.txt"_s, u"a↵b\uFFFD\uFFFD.txt"_s},
             {u"a\u2028b\u0085c"_s, u"a↵b↵c"_s},
             {u"photo\u202Egpj.exe"_s, u"photo\uFFFDgpj.exe"_s},
             {u"\u2066x\u2069"_s, u"\uFFFDx\uFFFD"_s},
             {u"שלום السلام é 😀 a\u200Fb"_s, u"שלום السلام é 😀 a\u200Fb"_s},
         })
        EXPECT_EQ(drawableName(name), drawn);
}

TEST_F(FileTypes, AScriptsChoiceLetsThrough) {
    struct {
        QStringList allowed;
        const char* matching;
        const char* others;
    } const cases[] = {
        {{}, "a.png Tool.app words any.xyz", ""},
        {{u""_s}, "a.png", ""},
        {{u"png"_s, u"*"_s}, "any.xyz", ""},
        {{u"png"_s}, "a.png B.PNG picture", "c.jpg words Tool.app png pngs"},
        {{u".jpg"_s}, "c.jpg d.jpeg", "a.png"},
        {{u"*.jpg"_s}, "c.jpg", "a.png"},
        {{u"JPEG"_s}, "c.jpg d.jpeg", "a.png"},
        {{u"txt"_s}, "e.txt e.text words", "f.py a.png"},
        {{u"public.image"_s}, "a.png picture c.jpg", "e.txt Tool.app"},
        {{u"PUBLIC.IMAGE"_s}, "a.png", "e.txt"},
        {{u"public.plain-text"_s}, "e.txt f.py words", "a.png"},
        {{u"TEXT"_s}, "e.txt f.py g.html words", "a.png"},
        {{u"PNGf"_s, u"PDF "_s}, "a.png h.pdf", "c.jpg"},
        {{u"pngf"_s}, "", "a.png"},
        {{u"APPL"_s}, "Tool.app", "e.txt plain"},
        {{u"osas"_s}, "main.scpt", "e.txt"},
        {{u"fold"_s}, "plain", "e.txt Tool.app"},
        {{u"com.apple.application-bundle"_s}, "Tool.app", "plain"},
        {{u"tar.gz"_s}, "all.tar.gz", "one.gz"},
        {{u"xyz"_s}, "any.xyz", "xyz any.xyzz"},
        {{u"never.heard.of"_s}, "strange.never.heard.of", "a.png"},
    };
    for (const char* plain : {"B.PNG",      "c.jpg",  "d.jpeg",  "e.txt",    "e.text", "f.py", "g.html", "h.pdf", "main.scpt",
                              "all.tar.gz", "one.gz", "any.xyz", "any.xyzz", "xyz",    "png",  "pngs",   "a.png", "strange.never.heard.of",
                              "Tool.app/",  "plain/"})
        make(QString::fromLatin1(plain));
    make(u"picture"_s, kPNG);
    make(u"words"_s, "some words\n");
    for (const auto& each : cases) {
        const AllowedFileTypes allowed(each.allowed);
        for (const QString& name : listed(each.matching))
            EXPECT_TRUE(allowed.matches(mFolder.filePath(name))) << each.allowed.join(u',').toStdString() << ": " << name.toStdString();
        for (const QString& name : listed(each.others))
            EXPECT_FALSE(allowed.matches(mFolder.filePath(name))) << each.allowed.join(u',').toStdString() << ": " << name.toStdString();
    }
    QFile::link(mFolder.filePath(u"a.png"_s), mFolder.filePath(u"link"_s));
    EXPECT_TRUE(AllowedFileTypes({u"public.image"_s}).matches(mFolder.filePath(u"link"_s)));
    QFile::link(mFolder.filePath(u"any.xyz"_s), mFolder.filePath(u"another link"_s));
    EXPECT_TRUE(AllowedFileTypes({u"xyz"_s}).matches(mFolder.filePath(u"another link"_s)));
}

TEST_F(FileTypes, BundlesDeclareTheirOwn) {
    const auto declare = [](const char* identifier, const QVariant& conformsTo, const char* extension) {
        return QVariantMap{
            {u"UTTypeIdentifier"_s, QString::fromLatin1(identifier)},
            {u"UTTypeConformsTo"_s, conformsTo},
            {u"UTTypeTagSpecification"_s, QVariantMap{{u"public.filename-extension"_s, QVariantList{QString::fromLatin1(extension)}}}}};
    };
    UTTypeDeclareTypesOfBundle(
        {{u"UTExportedTypeDeclarations"_s, QVariantList{declare("com.example.sketch", u"public.image"_s, "sktch"),
                                                        declare("com.example.case", QVariantList{u"com.apple.package"_s}, "sktchcase"),
                                                        declare("com.example.round", u"com.example.trip"_s, "roundtrip"),
                                                        declare("com.example.trip", u"com.example.round"_s, "x-trip"),
                                                        declare("public.png", u"public.text"_s, "txt"), declare("", 3, ""), 17}}});
    EXPECT_TRUE(fileConformsToType(make(u"a.sktch"_s), u"public.image"_s));
    EXPECT_TRUE(isFilePackage(make(u"b.sktchcase/"_s)));
    EXPECT_TRUE(UTTypeConformsTo(u"com.example.round"_s, u"com.example.trip"_s)); // the two types conform to each other
    EXPECT_FALSE(UTTypeConformsTo(u"public.png"_s, u"public.text"_s));
    EXPECT_EQ(typeIdentifierOfFile(make(u"c.txt"_s)), u"public.plain-text"_s);
}

} // namespace quoddle
