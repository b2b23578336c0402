// SPDX-License-Identifier: MIT
// Files that another process decodes: intact, damaged, endless.
#include "platform/preview/PictureProcess.h"
#include "platform/preview/PreviewFiles.h"

#include <csignal>

#include <QtEndian>
#include <QTest>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

using End = PictureStream::End;
using Source = PictureProcess::Source;

constexpr QSize kRoom(300, 300);
constexpr int kPatience = 30'000; // milliseconds; a sanitized build is slow

class PictureProcessTest : public PreviewFiles {
protected:
    /// Decodes a file until the process ends.
    End decode(const QString& path, Source source) {
        pictures.clear();
        PictureProcess process(path, source, kRoom);
        process.setTimeLimit(kPatience);
        QObject::connect(&process, &PictureProcess::pictureCame, [this](const QImage& picture) { pictures << picture; });
        End end = End::none;
        QObject::connect(&process, &PictureProcess::ended, [&end](End told) {
            EXPECT_EQ(end, End::none) << "told twice";
            end = told;
        });
        EXPECT_TRUE(QTest::qWaitFor([&end] { return end != End::none; }, kPatience));
        return end;
    }
    /// A drawing with so many crossing lines that decoding takes longer than the time limit.
    QString endlessDrawing() {
        QByteArray path = "<path fill=\"blue\" stroke=\"red\" d=\"M0 0L";
        for (int i = 0; i < 2000; ++i)
            path += QByteArray::number(i * 7919 % 900) + ' ' + QByteArray::number(i * 104'729 % 900) + ' ';
        path += "Z\"/>";
        return write(u"endless.svg"_s,
                     R"(<svg xmlns="http://www.w3.org/2000/svg" width="900" height="900">)" + path.repeated(40) + "</svg>");
    }
    /// Whether the process ends before its own time limit.
    static bool ends(qint64 identifier) {
        return QTest::qWaitFor([identifier] { return ::kill(static_cast<pid_t>(identifier), 0) != 0; }, 5000);
    }
    static QByteArray bigEndian(qsizetype number) {
        QByteArray bytes(4, '\0');
        qToBigEndian(static_cast<quint32>(number), bytes.data());
        return bytes;
    }
    QList<QImage> pictures;
};

} // namespace

TEST_F(PictureProcessTest, PicturesAreFitted) {
    EXPECT_EQ(decode(picture(u"a.png"_s, {600, 300}), Source::Picture), End::whole);
    ASSERT_EQ(pictures.size(), 1);
    EXPECT_EQ(pictures.first().size(), QSize(300, 150));
    EXPECT_EQ(pictures.first().pixelColor(150, 75), QColor(Qt::red));
    EXPECT_EQ(decode(picture(u"small.bmp"_s, {5, 5}), Source::Picture), End::whole);
    EXPECT_EQ(pictures.first().size(), QSize(5, 5));
}

TEST_F(PictureProcessTest, TheLargestOfAnIconIsShown) {
    QByteArray icon;
    for (const auto& [kind, extent] : {std::pair("icp4", 16), {"ic07", 128}, {"icp5", 32}}) {
        QFile file(picture(u"part.png"_s, {extent, extent}));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray body = file.readAll();
        icon += kind + bigEndian(body.size() + 8) + body;
    }
    EXPECT_EQ(decode(write(u"i.icns"_s, "icns" + bigEndian(icon.size() + 8) + icon), Source::Picture), End::whole);
    ASSERT_EQ(pictures.size(), 1);
    EXPECT_EQ(pictures.first().size(), QSize(128, 128));
}

TEST_F(PictureProcessTest, WhatCannotBeShownIsSaidSo) {
    // A file of a few bytes with two gigabytes of pixels, in a format that decodes all of them before scaling.
    QByteArray bomb = QByteArray::fromHex("474946383961 f03f f03f 800000 ffffff 000000 2c 0000 0000 f03f f03f 00 02 02 4401 00 3b");
    QFile whole(picture(u"whole.png"_s, {200, 200}));
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    const QByteArray cut = whole.readAll().left(60);
    QFile large(folder.filePath(u"large.png"_s));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(qint64{200} << 20));
    struct Row {
        QString path;
        End end;
    };
    for (const Row& row : std::initializer_list<Row>{{write(u"bomb.gif"_s, bomb), End::tooLarge},
                                                     {write(u"cut.png"_s, cut), End::unreadable},
                                                     {large.fileName(), End::tooLarge},
                                                     {write(u"empty.png"_s, ""), End::unreadable},
                                                     {folder.path(), End::unreadable},
                                                     {folder.filePath(u"missing.png"_s), End::unreadable}}) {
        EXPECT_EQ(decode(row.path, Source::Picture), row.end) << row.path.toStdString();
        EXPECT_TRUE(pictures.isEmpty()) << row.path.toStdString();
    }
}

TEST_F(PictureProcessTest, TimeIsLimited) {
    PictureProcess process(endlessDrawing(), Source::Picture, kRoom);
    process.setTimeLimit(300);
    End end = End::none;
    QObject::connect(&process, &PictureProcess::ended, [&end](End told) { end = told; });
    const qint64 identifier = process.processIdentifier();
    ASSERT_GT(identifier, 0);
    ASSERT_TRUE(QTest::qWaitFor([&end] { return end != End::none; }, kPatience));
    EXPECT_EQ(end, End::unreadable);
    EXPECT_TRUE(ends(identifier));
}

TEST_F(PictureProcessTest, EndsWithItsOwner) {
    auto process = std::make_unique<PictureProcess>(endlessDrawing(), Source::Picture, kRoom);
    const qint64 identifier = process->processIdentifier();
    ASSERT_GT(identifier, 0);
    process.reset();
    EXPECT_TRUE(ends(identifier));
}

TEST_F(PictureProcessTest, PagesOfDocuments) {
#ifdef QUODDLE_HAS_QTPDF
    EXPECT_EQ(decode(document(u"a.pdf"_s, 2), Source::Pages), End::whole);
    ASSERT_EQ(pictures.size(), 2);
    EXPECT_EQ(pictures.last().size(), QSize(150, 300));
    EXPECT_EQ(pictures.last().pixelColor(20, 20), QColor(Qt::red));
    EXPECT_EQ(pictures.last().pixelColor(140, 290), QColor(Qt::white)) << "paper";
    EXPECT_EQ(decode(document(u"long.pdf"_s, PictureProcess::kMostPages + 1), Source::Pages), End::cut);
    EXPECT_EQ(pictures.size(), PictureProcess::kMostPages);
#endif
    EXPECT_EQ(decode(write(u"no.pdf"_s, "%PDF-1.7\n1 0 obj<</Type/Catalog/Pages 1 0 R>>"), Source::Pages), End::unreadable);
    EXPECT_EQ(decode(folder.filePath(u"missing.pdf"_s), Source::Pages), End::unreadable);
}

} // namespace quoddle
