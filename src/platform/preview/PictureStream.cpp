// SPDX-License-Identifier: MIT
#include "platform/preview/PictureStream.h"

#include <array>
#include <cstring>

namespace quoddle {

namespace {

constexpr quint32 kPicture = 0x70696374;
constexpr qint64 kPixelSize = 4;

} // namespace

void PictureStream::feed(const QByteArray& bytes) {
    if (mEnd == End::none)
        mBytes += bytes;
}

PictureStream::End PictureStream::endBy(const Head& head) const {
    if (head.magic != kPicture) {
        constexpr std::array ends{End::whole, End::cut, End::tooLarge};
        const auto end = std::find(ends.begin(), ends.end(), static_cast<End>(head.magic));
        return end == ends.end() ? End::unreadable : *end;
    }
    const auto isWithin = [](quint32 extent, int most) { return extent > 0 && extent <= static_cast<quint32>(std::max(most, 0)); };
    if (!isWithin(head.width, mLargest.width()) || !isWithin(head.height, mLargest.height()))
        return End::unreadable;
    return qint64{head.width} * head.height <= mPixelsLeft ? End::none : End::cut;
}

std::optional<QImage> PictureStream::take() {
    Head head{};
    if (mEnd != End::none || mBytes.size() < static_cast<qsizetype>(sizeof head))
        return {};
    std::memcpy(&head, mBytes.constData(), sizeof head);
    mEnd = endBy(head);
    if (mEnd != End::none) {
        mBytes.clear();
        return {};
    }
    const qint64 pixels = qint64{head.width} * head.height;
    const qsizetype size = static_cast<qsizetype>(sizeof head) + pixels * kPixelSize;
    if (mBytes.size() < size)
        return {};
    const auto* rows = reinterpret_cast<const uchar*>(mBytes.constData()) + sizeof head;
    QImage picture = QImage(rows, static_cast<int>(head.width), static_cast<int>(head.height), QImage::Format_ARGB32_Premultiplied).copy();
    mBytes.remove(0, size);
    mPixelsLeft -= pixels;
    return picture;
}

QByteArray PictureStream::head(const QImage& picture) {
    const Head head{kPicture, static_cast<quint32>(picture.width()), static_cast<quint32>(picture.height())};
    return {reinterpret_cast<const char*>(&head), sizeof head};
}

QByteArray PictureStream::head(End end) {
    const Head head{static_cast<quint32>(end), 0, 0};
    return {reinterpret_cast<const char*>(&head), sizeof head};
}

} // namespace quoddle
