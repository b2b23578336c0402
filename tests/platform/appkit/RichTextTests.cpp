// SPDX-License-Identifier: MIT
// Rich text as word processors write it, with pictures beside it, and damaged rich text.
#include "platform/appkit/rtf/QuickLayout.h"
#include "platform/appkit/rtf/RichText.h"
#include "platform/foundation/TemporaryFiles.h"

#include <random>
#include <sys/stat.h>

#include <QDir>
#include <QImage>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QUrl>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

class RichTextTest : public test::TemporaryFiles {
protected:
    bool read(const QByteArray& body) {
        return readRichText(write(u"t.rtf"_s, "{\\rtf1\\ansi\\ansicpg1252" + body + "}"), document) == noErr;
    }
    QTextCharFormat formatOf(const QString& text) { return document.find(text).charFormat(); }

    QTextDocument document;
};

} // namespace

TEST_F(RichTextTest, ReadsText) {
    const struct {
        const char* what;
        QByteArray body;
        QString expected;
    } kCases[] = {
        {"paragraphs", "one\\par\ntwo\\\nthree", u"one\ntwo\nthree"_s},
        {"bytes of the code page", "caf\\'e9 \\'93x\\'94", u"café “x”"_s},
        {"bytes of a font's character set", "{\\fonttbl\\f0\\fcharset128 Mincho;\\f1\\fcharset0 Arial;}\\f0 \\'93\\'fa\\f1 \\'e9",
         u"日é"_s},
        {"unicode with fallbacks", "\\u26085 ?\\uc0\\u26412\\uc2\\u233 ??x", u"日本éx"_s},
        {"a surrogate pair", "\\u-10179 ?\\u-8704 ?!", u"😀!"_s},
        {"signs", "a\\tab b\\emdash c\\~d\\\\\\{\\}", u"a\tb—c d\\{}"_s},
        {"what is not for showing", "{\\info{\\title T}}{\\*\\unknown x{y}}{\\stylesheet{S;}}{\\pict 00ff}shown{\\*\\expandedcolortbl;;}",
         u"shown"_s},
        {"binary data", "a{\\*\\x\\bin4 }}}}}b", u"ab"_s},
        {"ends too early", "a{\\b b{c", u"abc"_s},
        {"closes too often", "a}}}b", u"ab"_s},
    };
    for (const auto& row : kCases) {
        EXPECT_TRUE(read(row.body)) << row.what;
        EXPECT_EQ(document.toPlainText(), row.expected) << row.what << ": " << document.toPlainText().toStdString();
    }
}

TEST_F(RichTextTest, ReadsFormatsAndAdaptsThemToTheAppearance) {
    ASSERT_TRUE(read("{\\fonttbl\\f0\\fswiss Helvetica;}{\\colortbl;\\red255\\green0\\blue0;\\red0\\green0\\blue0;}"
                     "\\f0\\fs48 {\\b bold} {\\i\\ul slanted} {\\cf1 red} {\\cf2 black} plain\\par\\qc middle\\par\\pard"
                     "{\\field{\\*\\fldinst{HYPERLINK \"https://example.org/\"}}{\\fldrslt a link}} end"));
    EXPECT_EQ(formatOf(u"bold"_s).fontWeight(), int(QFont::Bold));
    EXPECT_TRUE(formatOf(u"slanted"_s).fontItalic() && formatOf(u"slanted"_s).fontUnderline());
    EXPECT_NE(formatOf(u"plain"_s).fontWeight(), int(QFont::Bold));
    EXPECT_EQ(formatOf(u"plain"_s).fontPointSize(), 18.0);
    EXPECT_EQ(formatOf(u"plain"_s).fontFamilies().toStringList(), QStringList{u"Helvetica"_s});
    EXPECT_EQ(document.find(u"middle"_s).blockFormat().alignment(), Qt::AlignHCenter);
    EXPECT_EQ(formatOf(u"a link"_s).anchorHref(), u"https://example.org/"_s);
    EXPECT_FALSE(formatOf(u" end"_s).isAnchor());
    for (int round = 0; round < 2; ++round) { // the appearance may change to dark and back any number of times
        adaptRichText(document, true, Qt::white);
        EXPECT_EQ(formatOf(u"red"_s).foreground().color(), QColor(Qt::red));
        EXPECT_EQ(formatOf(u"black"_s).foreground().color(), QColor(Qt::white));
        EXPECT_EQ(formatOf(u"plain"_s).foreground().color(), QColor(Qt::white));
        EXPECT_EQ(formatOf(u"a link"_s).foreground().color(), QColor(Qt::white));
        EXPECT_EQ(formatOf(u"a link"_s).anchorHref(), u"https://example.org/"_s);
        adaptRichText(document, false, Qt::black);
        EXPECT_EQ(formatOf(u"red"_s).foreground().color(), QColor(Qt::red));
        EXPECT_EQ(formatOf(u"black"_s).foreground().color(), QColor(Qt::black));
        EXPECT_EQ(formatOf(u"plain"_s).foreground().style(), Qt::NoBrush);
    }
}

TEST_F(RichTextTest, ReadsPicturesOfItsOwnFolderOnly) {
    const QString path = folder.filePath(u"d.rtfd"_s);
    ASSERT_TRUE(QDir().mkpath(path));
    QImage image(8, 4, QImage::Format_RGB32);
    image.fill(Qt::green);
    ASSERT_TRUE(image.save(path + u"/dot.png"_s));
    ASSERT_TRUE(image.save(folder.filePath(u"outside.png"_s)));
    write(u"d.rtfd/TXT.rtf"_s, "{\\rtf1\\mac a{{\\NeXTGraphic dot.png \\width320 \\height160}\\'ac}b{{\\NeXTGraphic ../outside.png}\\'ac}"
                               "{{\\NeXTGraphic none.png}\\'ac}c}");
    ASSERT_EQ(readRichText(path, document), noErr);
    EXPECT_EQ(document.toPlainText(), u"a\uFFFCbc"_s) << document.toPlainText().toStdString();
    QTextCursor picture(&document);
    picture.setPosition(2);
    EXPECT_EQ(picture.charFormat().toImageFormat().width(), 16.0);
    EXPECT_FALSE(document.resource(QTextDocument::ImageResource, QUrl(u"attachment:dot.png"_s)).isNull());
}

TEST_F(RichTextTest, AllPicturesTogetherHaveABound) {
    constexpr int kSide = 1800, kPictures = 10; // six of the pictures have more pixels than are decoded of all together
    QImage image(kSide, kSide, QImage::Format_Mono);
    image.fill(1);
    const auto kept = [this](int i) {
        return document.resource(QTextDocument::ImageResource, QUrl(u"attachment:%1.png"_s.arg(i))).value<QImage>();
    };
    for (const bool areDamaged : {false, true}) {
        const QString path = folder.filePath(areDamaged ? u"damaged.rtfd"_s : u"good.rtfd"_s);
        ASSERT_TRUE(QDir().mkpath(path));
        QByteArray text = "{\\rtf1\\mac ";
        for (int i = 0; i < kPictures; ++i) {
            const QString name = QString::number(i) + u".png"_s, file = path + u'/' + name;
            ASSERT_TRUE(image.save(file)); // the file has a few hundred bytes
            if (areDamaged && i < kPictures - 1) {
                ASSERT_TRUE(QFile::resize(file, QFileInfo(file).size() / 2));
            }
            for (int again = 0; again < 2; ++again)
                text += "{{\\NeXTGraphic " + name.toUtf8() + "}\\'ac}";
        }
        write(QFileInfo(path).fileName() + u"/TXT.rtf"_s, text + "end}");
        ASSERT_EQ(readRichText(path, document), noErr);
        EXPECT_TRUE(document.toPlainText().endsWith(u"end"_s));
        EXPECT_TRUE(kept(kPictures - 1).isNull()) << "there was no room left";
        if (areDamaged)
            continue;
        EXPECT_TRUE(!kept(3).isNull() && kept(3).width() < kSide);
        QTextCursor picture(&document);
        picture.setPosition(2);
        EXPECT_EQ(picture.charFormat().toImageFormat().name(), u"attachment:0.png"_s) << "a second time";
        EXPECT_EQ(picture.charFormat().toImageFormat().width(), kSide);
    }
}

TEST_F(RichTextTest, WhatTakesLongToLayOutIsKnownBefore) {
    const QByteArray line = "The quick brown fox jumps over the lazy dog, and then it does so again. ";
    const QByteArray chapter = "{\\b\\fs48 Heading}\\par " + line.repeated(8) + "{\\i now and then}" + line + "\\par ";
    QByteArray fonts = "{\\fonttbl", manyFonts;
    for (int i = 0; i < 40; ++i) {
        fonts += "{\\f" + QByteArray::number(i) + " F" + QByteArray::number(i) + ";}";
        manyFonts += "\\f" + QByteArray::number(i) + " x ";
    }
    fonts += "}";
    const struct {
        const char* what;
        QByteArray body;
        bool isQuick;
    } rows[] = {
        {"nothing", "", true},
        {"a book", chapter.repeated(150), true},
        {"a long paragraph", line.repeated(1000), true},
        {"a page without a blank", QByteArray("\\u20013?").repeated(3000), true},
        {"a page of bold and plain", QByteArray("{\\b a} b ").repeated(400), true},
        {"more than a book", chapter.repeated(300), false},
        {"a word without end", QByteArray(600, 'x'), false},
        {"marks without end", "a" + QByteArray("\\u769?").repeated(600), false},
        {"marks everywhere", QByteArray("a\\u769? ").repeated(20'000), false},
        {"an endless paragraph of formats", QByteArray("{\\b a} b ").repeated(600), false},
        {"formats in paragraphs", QByteArray("{\\b a}b\\par ").repeated(4000), false},
        {"empty paragraphs", QByteArray("\\par ").repeated(10'000), false},
        {"lines", QByteArray("a\\line ").repeated(20'000), false},
        {"large letters", "\\fs400 " + line.repeated(200), false},
        {"fonts", fonts + manyFonts, false},
    };
    for (const auto& row : rows) {
        ASSERT_TRUE(read(row.body)) << row.what;
        EXPECT_EQ(quicklyLaidOutParagraphs(document) == document.blockCount(), row.isQuick) << row.what;
    }
    ASSERT_TRUE(read("a\\par " + QByteArray(600, 'x') + "\\par b"));
    EXPECT_EQ(quicklyLaidOutParagraphs(document), 1) << "the beginning";
}

TEST_F(RichTextTest, TheTableOfFontsHasABound) {
    QByteArray table = "{\\fonttbl";
    for (int i = 0; i < 1000; ++i)
        table += "{\\f" + QByteArray::number(i) + " F" + QByteArray::number(i) + ";}";
    // Font tables that are opened again, and names without end.
    table += "{\\f3 more;}}{\\fonttbl{\\f4 more;}{\\f0 }}{\\fonttbl\\f7 x}";
    ASSERT_TRUE(read(table + "\\f3 three\\f4 four\\plain\\f999 last"));
    EXPECT_EQ(formatOf(u"three"_s).fontFamilies().toStringList(), QStringList{u"F3"_s});
    EXPECT_EQ(formatOf(u"four"_s).fontFamilies().toStringList(), QStringList{u"F4"_s});
    EXPECT_FALSE(formatOf(u"last"_s).hasProperty(QTextFormat::FontFamilies));
    ASSERT_TRUE(read("{\\fonttbl\\f0 " + QByteArray(10'000, 'F') + ";}\\f0 endless"));
    EXPECT_LE(formatOf(u"endless"_s).fontFamilies().toStringList().first().size(), 100);
}

TEST_F(RichTextTest, RefusesWhatIsNoRichText) {
    document.setPlainText(u"before"_s);
    EXPECT_EQ(readRichText(write(u"x.rtf"_s, "plain text"), document), paramErr);
    EXPECT_EQ(readRichText(folder.filePath(u"missing.rtf"_s), document), fnfErr);
    EXPECT_NE(readRichText(folder.path(), document), noErr);
    EXPECT_EQ(readRichText(write(u"large.rtf"_s, "{\\rtf1 " + QByteArray(kLargestRichTextFile, 'x')), document), memFullErr);
    for (const QString& name : {u"pipe.rtf"_s, u"p.rtfd/TXT.rtf"_s}) { // reading from a pipe would wait for a writer
        ASSERT_TRUE(QDir(folder.path()).mkpath(u"p.rtfd"_s));
        ASSERT_EQ(::mkfifo(folder.filePath(name).toLocal8Bit().constData(), 0600), 0);
        EXPECT_NE(readRichText(folder.filePath(name.section(u'/', 0, 0)), document), noErr);
    }
    EXPECT_EQ(document.toPlainText(), u"before"_s);
}

TEST_F(RichTextTest, SurvivesAnything) {
    std::mt19937 random(11);
    const QByteArray good =
        "{\\rtf1\\ansi{\\fonttbl\\f0\\fcharset128 A;}{\\colortbl;\\red1;}\\f0\\cf1\\u-1 ?\\'e9\\b x\\par"
        "{{\\NeXTGraphic p.png \\width9}\\'ac}{\\field{\\*\\fldinst{HYPERLINK \"a:b\"}}{\\fldrslt l}}\\bin3 abc\\uc5\\u65 }";
    constexpr char kSigns[] = "\\{}'*0-9u \xFF";
    for (int round = 0; round < 2000; ++round) {
        QByteArray bytes = good;
        for (int change = 0; change < 4; ++change)
            bytes[5 + static_cast<qsizetype>(random() % static_cast<unsigned>(bytes.size() - 5))] = kSigns[random() % 11];
        (void)readRichText(write(u"m.rtf"_s, bytes.left(5 + static_cast<qsizetype>(random() % static_cast<unsigned>(bytes.size())))),
                           document);
    }
    EXPECT_TRUE(read(QByteArray(100'000, '{') + "deep"));
}

} // namespace quoddle
