// SPDX-License-Identifier: MIT
// The format in which the decoding process sends the pictures of a file, one after the other: a head of three numbers of 32 bits in the
// machine's byte order (magic, width, height), then the pixels row by row, each 32 bits of alpha, red, green and blue, premultiplied. A
// head with another magic ends the stream.
// Decision: the reader trusts nothing, because the file may have taken control of the process that decodes it.
#pragma once

#include <optional>

#include <QByteArray>
#include <QImage>

namespace quoddle {

class PictureStream {
public:
    enum class End : quint32 {
        none = 0,
        whole = 0x656e6464,     // the file has no more pictures
        cut = 0x656e646d,       // the file has more pictures
        tooLarge = 0x656e6462,  // the picture is too large to be decoded
        unreadable = 0x656e6466 // damaged, protected or of an unknown kind
    };

    /// `largest` is the largest size of a picture. The stream is cut before a picture with which all pictures would have more than
    /// `mostPixels`.
    PictureStream(QSize largest, qint64 mostPixels) : mLargest(largest), mPixelsLeft(mostPixels) {}

    /// Adds bytes as they arrive. take() then returns the complete pictures.
    void feed(const QByteArray& bytes);
    std::optional<QImage> take();
    /// `none` before the end. A picture that is too large and a malformed head end the stream with `unreadable`.
    End end() const { return mEnd; }

    static QByteArray head(const QImage& picture);
    static QByteArray head(End end);

private:
    struct Head {
        quint32 magic, width, height;
    };
    /// `none` when the head is followed by a picture.
    End endBy(const Head& head) const;

    const QSize mLargest;
    qint64 mPixelsLeft;
    QByteArray mBytes;
    End mEnd = End::none;
};

} // namespace quoddle
