// SPDX-License-Identifier: MIT
#include "platform/appkit/BestPictures.h"

#include "platform/appkit/ImageFile.h"
#include "platform/foundation/NSLog.h"

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

// the most pixels that are decoded of a file with several pictures
constexpr qint64 kMostPixels = (qint64{ImageFile::kMostMegabytes} << 20) / 4;
constexpr int kLeastDrawing = 256;                 // pixels to a side, as many as any icon is shown with
constexpr qint64 kUnknownPixels = qint64{1} << 20; // taken for an icon that does not say how large it is

struct Candidate {
    int index;
    QSize size; // empty when the size is not known

    qint64 pixels() const { return size.isEmpty() ? kUnknownPixels : qint64{size.width()} * size.height(); }
    QSize sizeWithin(int extent) const {
        const bool isLarger = std::max(size.width(), size.height()) > extent;
        return isLarger ? size.scaled(extent, extent, Qt::KeepAspectRatio).expandedTo({1, 1}) : size;
    }
};

/// The pictures of the file in the order in which they are to be read.
std::vector<Candidate> candidatesOf(ImageFile& file, int extent) {
    std::vector<Candidate> candidates;
    const int count = file.count();
    for (int i = 0; i < count && file.select(i); ++i)
        candidates.push_back({i, count > 1 ? file.size() : QSize()});
    const auto rank = [extent](const Candidate& candidate) {
        const bool isLargeEnough = std::max(candidate.size.width(), candidate.size.height()) >= extent;
        return candidate.size.isEmpty() ? std::pair(2, qint64{0})
               : isLargeEnough          ? std::pair(0, candidate.pixels())
                                        : std::pair(1, -candidate.pixels());
    };
    std::stable_sort(candidates.begin(), candidates.end(), [&](const auto& a, const auto& b) { return rank(a) < rank(b); });
    return candidates;
}

} // namespace

QList<QImage> bestPictures(ImageFile& file, const QString& name, int extent, int most) {
    QList<QImage> pictures;
    QSize leftOut;
    qint64 pixelsLeft = kMostPixels;
    const QSize leastDrawing = QSize(kLeastDrawing, kLeastDrawing).boundedTo({extent, extent});
    for (const Candidate& candidate : candidatesOf(file, extent)) {
        const bool isKnown = !candidate.size.isEmpty();
        if (isKnown && pictures.size() == most)
            break;
        const auto hasThatSize = [&](const QImage& picture) { return picture.size() == candidate.sizeWithin(extent); };
        if (isKnown && std::any_of(pictures.begin(), pictures.end(), hasThatSize))
            continue;
        if (candidate.pixels() > pixelsLeft) {
            leftOut = isKnown ? candidate.size : leftOut;
            continue;
        }
        pixelsLeft -= candidate.pixels();
        const QImage picture = file.select(candidate.index) ? file.read({extent, extent}, leastDrawing) : QImage();
        if (!picture.isNull())
            pictures << picture;
    }
    const QString tooMuch =
        leftOut.isEmpty() ? QString()
                          : u"it has %1 × %2 pixels, which is more than is read of a file with several pictures"_s.arg(leftOut.width())
                                .arg(leftOut.height());
    if (pictures.isEmpty())
        NSLog(u"%@ is not shown: %@"_s, {name, tooMuch.isEmpty() ? file.problem() : tooMuch});
    else if (!tooMuch.isEmpty())
        NSLog(u"A picture of %@ is not shown: %@"_s, {name, tooMuch});
    const auto isLarger = [](const QImage& a, const QImage& b) { return a.width() > b.width(); };
    std::stable_sort(pictures.begin(), pictures.end(), isLarger);
    return pictures.mid(0, most);
}

} // namespace quoddle
