// SPDX-License-Identifier: MIT
// A file with pictures, which may come from anybody: read whole and bounded, decoded no larger than it is shown.
//
// Decision: a drawing (SVG) may refer to itself alone. What it names besides would be opened, wherever it leads.
// The bound of the decoders' memory is one for the whole process, put in place by the first file.
#pragma once

#include <QBuffer>
#include <QImageReader>

namespace quoddle {

class ImageFile {
public:
    /// The largest file of an icon or a small picture, and of a photograph: 24 million pixels of 16 bits a colour hardly become less.
    static constexpr qint64 kMostBytes = qint64{64} << 20;
    static constexpr qint64 kMostBytesOfPhotograph = qint64{192} << 20;

    /// A file that is no regular one, larger than `mostBytes` or a drawing that refers to other files has no pictures.
    explicit ImageFile(const QString& path, qint64 mostBytes = kMostBytes);
    /// The same for what a file with that suffix would hold, of at most `kMostBytes`.
    explicit ImageFile(const QByteArray& bytes, const QString& suffix = {});

    /// So many pictures of one file are looked at.
    static constexpr int kMostPictures = 64;
    /// From 1 to `kMostPictures`.
    int count() const;
    /// False when there is no such picture.
    bool select(int index);
    /// Of the selected picture, upright; empty when that is not known.
    QSize size() const;
    /// The selected picture, made smaller where it is larger than `largest`. Null when there is none, or one of more than 16384 pixels to a
    /// side, or one that takes more than the most megabytes while it is decoded.
    QImage read(QSize largest);
    /// Why there is no picture, in words for a log; empty while there is no reason.
    const QString& problem() const { return mProblem; }

    /// Enough for 24 million pixels of 16 bits a colour.
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
