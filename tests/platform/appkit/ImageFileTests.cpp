// SPDX-License-Identifier: MIT
// Files that are no pictures, pictures that are too large, and drawings that refer to other files.
#include "platform/appkit/ImageFile.h"
#include "platform/appkit/StockIcons.h"
#include "platform/foundation/TemporaryFiles.h"

#include <sys/stat.h>

#include <QBuffer>
#include <QDir>
#include <QImage>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kAnySize(1000, 1000);

/// The most address space that this process has had so far, in KiB.
qint64 peak() {
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const qsizetype at = text.indexOf("VmPeak:") + 7;
    return text.mid(at, text.indexOf("kB", at) - at).trimmed().toLongLong();
}

class ImageFileTest : public test::TemporaryFiles {
protected:
    QString picture(const QString& name, int width, int height) {
        QImage image(width, height, QImage::Format_Mono);
        image.fill(1);
        EXPECT_TRUE(image.save(folder.filePath(name)));
        return folder.filePath(name);
    }
};

} // namespace

TEST_F(ImageFileTest, IsDecodedNoLargerThanAsked) {
    ImageFile file(picture(u"large.png"_s, 3000, 1500));
    EXPECT_EQ(file.size(), QSize(3000, 1500));
    EXPECT_EQ(file.read({1000, 1000}).size(), QSize(1000, 500));
    EXPECT_EQ(ImageFile(picture(u"thin.png"_s, 5000, 1)).read(kAnySize).size(), QSize(1000, 1));
    EXPECT_TRUE(ImageFile(picture(u"wide.png"_s, 16385, 1)).read(kAnySize).isNull());
    QFile::copy(folder.filePath(u"large.png"_s), folder.filePath(u"large.gif"_s));
    EXPECT_FALSE(ImageFile(folder.filePath(u"large.gif"_s)).read(kAnySize).isNull()) << "told by content";
    EXPECT_EQ(iconFromImageFile(folder.filePath(u"large.png"_s)).availableSizes(), QList<QSize>{QSize(1024, 512)});
}

TEST_F(ImageFileTest, ASmallDrawingIsDrawnInTheSizeOfIcons) {
    const auto drawing = [this](int width, int height) {
        return write(u"drawing.svg"_s, QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='" + QByteArray::number(width) +
                                                  "' height='" + QByteArray::number(height) + "'><circle cx='8' cy='8' r='7'/></svg>"));
    };
    EXPECT_EQ(iconFromImageFile(drawing(16, 16)).availableSizes(), QList<QSize>{QSize(256, 256)});
    EXPECT_EQ(iconFromImageFile(drawing(16, 8)).availableSizes(), QList<QSize>{QSize(256, 128)});
    EXPECT_EQ(iconFromImageFile(drawing(300, 16)).availableSizes(), QList<QSize>{QSize(300, 16)});
    EXPECT_EQ(ImageFile(drawing(16, 16)).read(kAnySize).size(), QSize(16, 16));
    EXPECT_EQ(iconFromImageFile(picture(u"small.png"_s, 16, 16)).availableSizes(), QList<QSize>{QSize(16, 16)});
}

TEST_F(ImageFileTest, WaitsForNoPipe) {
    const QString pipe = folder.filePath(u"pipe.png"_s);
    ASSERT_EQ(::mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    for (const QString& path : {pipe, folder.path(), folder.filePath(u"missing.png"_s), u"/dev/zero"_s}) {
        ImageFile file(path);
        EXPECT_EQ(file.count(), 1);
        EXPECT_TRUE(!file.select(0) && file.size().isEmpty() && file.read(kAnySize).isNull()) << path.toStdString();
        EXPECT_TRUE(iconFromImageFile(path).isNull());
    }
}

TEST_F(ImageFileTest, IconsHoldWhatTheySay) {
    QByteArray png;
    QBuffer buffer(&png);
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "png"));
    const auto entry = [](const char* kind, const QByteArray& body, quint32 length) {
        return kind + QByteArray::fromHex(QByteArray::number(length, 16).rightJustified(8, '0')) + body;
    };
    const auto icon = [&](const QByteArray& contents, quint32 length) {
        const QByteArray body = contents + entry("icp4", png, length);
        return write(u"i.icns"_s, entry("icns", body, static_cast<quint32>(body.size()) + 8));
    };
    const auto honest = static_cast<quint32>(png.size()) + 8;
    // The table of contents promises half a gigabyte, for which the decoder would make room.
    const qint64 before = peak();
    for (const QByteArray& contents : {QByteArray(), entry("TOC ", entry("icp4", {}, 0x20000073), 16)}) {
        ImageFile file(icon(contents, honest));
        EXPECT_EQ(file.read(kAnySize).size(), QSize(16, 16));
    }
    EXPECT_LT(peak() - before, 200 << 10);
    EXPECT_TRUE(ImageFile(icon({}, honest + 1)).read(kAnySize).isNull());
    EXPECT_TRUE(ImageFile(icon({}, 7)).read(kAnySize).isNull());
    for (const int side : {1024, 1025}) {
        QByteArray large;
        QBuffer out(&large);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly) && QImage(side, 1024, QImage::Format_RGB32).save(&out, "png"));
        ImageFile file(icon(entry("ic10", large, static_cast<quint32>(large.size()) + 8), honest));
        EXPECT_EQ(file.count(), side == 1024 ? 2 : 1) << "icons have no larger ones";
    }
}

TEST_F(ImageFileTest, DrawingsReferToThemselvesAlone) {
    const QByteArray outside = picture(u"outside.png"_s, 8, 8).toUtf8();
    const auto isShown = [&](const QByteArray& body, const QByteArray& prologue = {}) {
        return !ImageFile(write(u"d.svg"_s, prologue +
                                                "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
                                                "width='20' height='10'>" +
                                                body + "</svg>"))
                    .read(kAnySize)
                    .isNull();
    };
    EXPECT_TRUE(isShown("<defs><rect id='r' width='9' height='9'/></defs><use xlink:href='#r'/>"));
    EXPECT_TRUE(isShown("<image width='1' height='1' xlink:href='data:image/png;base64,AAAA'/>"));
    EXPECT_FALSE(isShown("<image width='8' height='8' xlink:href='" + outside + "'/>"));
    EXPECT_FALSE(isShown("<image width='8' height='8' xlink:href='&#47;dev/zero'/>"));
    EXPECT_FALSE(isShown("&i;", "<!DOCTYPE svg [<!ENTITY i '<image width=\"8\" height=\"8\" xlink:href=\"" + outside + "\"/>'>]>"));
    EXPECT_FALSE(isShown({}, "<?xml-stylesheet type=\"text/css\" href=\"" + outside + "\"?>"));
}

} // namespace quoddle
