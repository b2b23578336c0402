// SPDX-License-Identifier: MIT
// A file with pictures, which may come from anybody: read whole and bounded, decoded no larger than it is shown.
//
// Decision: a drawing (SVG) may refer to itself alone. Other files and addresses that it names would be opened, wherever they lead.
// The limit on the decoders' memory holds for the whole process and is set by the first file.
#pragma once

#include <QBuffer>
#include <QImageReader>

namespace quoddle {

class ImageFile {
public:
    /// The largest files that are read, in bytes: of an icon or a small picture, and of a photograph, of which 24 million pixels of 16 bits
    /// a colour hardly take less.
    static constexpr qint64 kMostBytes = qint64{64} << 20;
    static constexpr qint64 kMostBytesOfPhotograph = qint64{192} << 20;

    /// A file that is not a regular one, one larger than `mostBytes` and a drawing that refers to other files have no pictures.
    explicit ImageFile(const QString& path, qint64 mostBytes = kMostBytes);
    /// The pictures in the bytes of a file with that suffix, of at most `kMostBytes`.
    explicit ImageFile(const QByteArray& bytes, const QString& suffix = {});

    /// The most pictures of one file that are looked at.
    static constexpr int kMostPictures = 64;
    /// The number of pictures, from 1 to `kMostPictures`.
    int count() const;
    /// Selects a picture for size() and read(). False when there is no such picture.
    bool select(int index);
    /// The size of the selected picture, upright; empty when it is not known.
    QSize size() const;
    /// The selected picture, made smaller where it is larger than `largest`, and larger where it is a drawing of lines that is smaller than
    /// `least`. Null when there is none, when it has more than 16384 pixels to a side, or when decoding it takes more than
    /// `kMostMegabytes`.
    QImage read(QSize largest, QSize least = {});
    /// Why there is no picture, in words for a log; empty while there is no reason.
    const QString& problem() const { return mProblem; }

    /// The most memory that decoding one picture may take: enough for 24 million pixels of 16 bits a colour.
    static constexpr int kMostMegabytes = 256;

private:
    void open(const QByteArray& bytes, const QString& suffix, qint64 mostBytes);

    QString mProblem;
    QByteArray mBytes;
    QBuffer mBuffer;
    QImageReader mReader;
    int mSelected = 0;
};

} // namespace quoddle
