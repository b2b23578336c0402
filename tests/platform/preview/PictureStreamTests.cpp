// SPDX-License-Identifier: MIT
// The bytes of a stream are not trusted, because a file may have taken control of the process that decodes it.
#include "platform/preview/PictureStream.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace quoddle {

namespace {

using End = PictureStream::End;

QByteArray head(quint32 width, quint32 height) {
    QByteArray bytes = PictureStream::head(QImage(1, 1, QImage::Format_ARGB32_Premultiplied));
    std::memcpy(bytes.data() + 4, &width, 4);
    std::memcpy(bytes.data() + 8, &height, 4);
    return bytes;
}

} // namespace

TEST(PictureStream, TakesPicturesInPieces) {
    QImage first(3, 2, QImage::Format_ARGB32_Premultiplied), second(1, 5, QImage::Format_ARGB32_Premultiplied);
    first.fill(Qt::green);
    second.fill(Qt::transparent);
    QByteArray all;
    for (const QImage& picture : {first, second})
        all += PictureStream::head(picture) + QByteArray(reinterpret_cast<const char*>(picture.constBits()), picture.sizeInBytes());
    all += PictureStream::head(End::cut);
    PictureStream stream({10, 10}, 100);
    QList<QImage> taken;
    for (const char byte : all) {
        EXPECT_EQ(stream.end(), End::none);
        stream.feed(QByteArray(1, byte));
        while (const auto picture = stream.take())
            taken << *picture;
    }
    EXPECT_EQ(taken, QList({first, second}));
    EXPECT_EQ(stream.end(), End::cut);
}

TEST(PictureStream, BelievesNothing) {
    struct Row {
        QByteArray bytes;
        End end;
    };
    const quint32 most = std::numeric_limits<quint32>::max();
    const QByteArray fits = head(10, 6) + QByteArray(240, 'x');
    for (const Row& row : std::initializer_list<Row>{{head(11, 1), End::unreadable},
                                                     {head(1, 11), End::unreadable},
                                                     {head(0, 1), End::unreadable},
                                                     {head(1, 0), End::unreadable},
                                                     {head(most, most), End::unreadable},
                                                     {head(0x80000001, 2), End::unreadable},
                                                     {QByteArray(12, '\0'), End::unreadable},
                                                     {"nonsense that never ends", End::unreadable},
                                                     {PictureStream::head(End::unreadable), End::unreadable},
                                                     {PictureStream::head(End::tooLarge), End::tooLarge},
                                                     {fits + head(10, 6), End::cut},
                                                     {head(10, 10), End::none}}) {
        PictureStream stream({10, 10}, 110);
        stream.feed(row.bytes);
        while (stream.take()) {
        }
        EXPECT_EQ(stream.end(), row.end) << row.bytes.left(12).toHex().toStdString();
    }
}

} // namespace quoddle
