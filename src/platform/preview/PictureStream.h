// SPDX-License-Identifier: MIT
// How the pictures of a file come from the process that decodes it, one after the other: a head of three numbers of 32 bits in the
// machine's own order, its magic, width and height, then the pixels row by row, each 32 bits of alpha, red, green and blue, premultiplied.
// A head with another magic ends the stream.
// One decision: the reader believes nothing, for the process may be in the hands of the file that it decodes.
#pragma once

#include <optional>

#include <QByteArray>
#include <QImage>

namespace quoddle {

class PictureStream {
public:
    enum class End : quint32 {
        none = 0,
        whole = 0x656e6464,     // all there is has come
        cut = 0x656e646d,       // the file has more
        tooLarge = 0x656e6462,  // the picture is too large to be decoded
        unreadable = 0x656e6466 // it is damaged, protected or of no known kind
    };

    /// No picture is larger than `largest`; those that would make more pixels than that of all together are cut off.
    PictureStream(QSize largest, qint64 mostPixels) : mLargest(largest), mPixelsLeft(mostPixels) {}

    /// Takes bytes as they come; what they make complete is left to be taken.
    void feed(const QByteArray& bytes);
    std::optional<QImage> take();
    /// None before the end. A picture that is too large, or no sense at all, ends the stream: `unreadable`.
    End end() const { return mEnd; }

    static QByteArray head(const QImage& picture);
    static QByteArray head(End end);

private:
    struct Head {
        quint32 magic, width, height;
    };
    /// None when a picture follows.
    End endBy(const Head& head) const;

    const QSize mLargest;
    qint64 mPixelsLeft;
    QByteArray mBytes;
    End mEnd = End::none;
};

} // namespace quoddle
