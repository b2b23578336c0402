// SPDX-License-Identifier: MIT
// Rich text as word processors write it, pictures beside it, damage in it.
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
    for (int round = 0; round < 2; ++round) { // to dark and back, as often as one likes
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
    const QString path = folder.filePath(u"d.rtfd"_s);
    ASSERT_TRUE(QDir().mkpath(path));
    QByteArray text = "{\\rtf1\\mac ";
    QImage image(3000, 3000, QImage::Format_Mono); // as a file a few hundred bytes
    image.fill(1);
    for (int i = 0; i < 25; ++i) {
        const QString name = QString::number(i) + u".png"_s;
        ASSERT_TRUE(image.save(path + u'/' + name));
        for (int again = 0; again < 2; ++again)
            text += "{{\\NeXTGraphic " + name.toUtf8() + "}\\'ac}";
    }
    write(u"d.rtfd/TXT.rtf"_s, text + "end}");
    ASSERT_EQ(readRichText(path, document), noErr);
    qint64 pixels = 0;
    for (int i = 0; i < 25; ++i) {
        const auto kept = document.resource(QTextDocument::ImageResource, QUrl(u"attachment:%1.png"_s.arg(i))).value<QImage>();
        pixels += qint64{kept.width()} * kept.height();
    }
    EXPECT_GT(pixels, 4'000'000);
    EXPECT_LT(pixels, 20'000'000);
    QTextCursor picture(&document);
    picture.setPosition(2);
    EXPECT_EQ(picture.charFormat().toImageFormat().name(), u"attachment:0.png"_s) << "a second time";
    EXPECT_EQ(picture.charFormat().toImageFormat().width(), 3000.0);
    EXPECT_TRUE(document.toPlainText().endsWith(u"end"_s));
}

TEST_F(RichTextTest, RefusesWhatIsNoRichText) {
    document.setPlainText(u"before"_s);
    EXPECT_EQ(readRichText(write(u"x.rtf"_s, "plain text"), document), paramErr);
    EXPECT_EQ(readRichText(folder.filePath(u"missing.rtf"_s), document), fnfErr);
    EXPECT_NE(readRichText(folder.path(), document), noErr);
    EXPECT_EQ(readRichText(write(u"large.rtf"_s, "{\\rtf1 " + QByteArray(kLargestRichText, 'x')), document), memFullErr);
    for (const QString& name : {u"pipe.rtf"_s, u"p.rtfd/TXT.rtf"_s}) { // would be waited for
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
