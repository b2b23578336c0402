// SPDX-License-Identifier: MIT
#include "platform/appkit/ImageFile.h"

#include "platform/foundation/FileBytes.h"

#include <QFileInfo>
#include <QtEndian>
#include <QXmlStreamReader>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaximumExtent = 16384; // pixels

bool refersToItself(const QXmlStreamAttribute& attribute) {
    const QStringView value = attribute.value().trimmed();
    return !attribute.qualifiedName().endsWith(QLatin1StringView("href")) || value.isEmpty() || value.startsWith(u'#') ||
           value.startsWith(QLatin1StringView("data:"));
}

/// Whether a drawing names nothing outside itself. The reader resolves entities and encodings, as the code that draws will do.
bool isSelfContained(const QByteArray& drawing) {
    QXmlStreamReader reader(drawing);
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        if (token == QXmlStreamReader::ProcessingInstruction) // a processing instruction may name a style sheet elsewhere
            return false;
        const QXmlStreamAttributes attributes = reader.attributes();
        if (token == QXmlStreamReader::StartElement && !std::all_of(attributes.begin(), attributes.end(), &refersToItself))
            return false;
    }
    return !reader.hasError();
}

/// Whether the bytes say that they are a PNG picture of more pixels to a side than the entries of icon files have.
bool isLargePNG(QByteArrayView bytes) {
    constexpr quint32 kLargestSide = 1024;
    constexpr qsizetype kWidth = 16, kHeight = 20; // places of the numbers in the file
    return bytes.startsWith("\x89PNG") && bytes.size() >= kHeight + 4 &&
           std::max(qFromBigEndian<quint32>(bytes.data() + kWidth), qFromBigEndian<quint32>(bytes.data() + kHeight)) > kLargestSide;
}

/// An icon file reduced to the entries that are complete and no larger than such entries are, because the sizes of entries are not known
/// before they are decoded. Its table of contents is left out: the decoder would believe the lengths there.
QByteArray checkedIcon(const QByteArray& icon) {
    constexpr qsizetype kHeader = 8;
    QByteArray checked = icon.left(kHeader);
    for (qsizetype at = kHeader; at + kHeader <= icon.size();) {
        const qsizetype size = qFromBigEndian<quint32>(icon.constData() + at + 4);
        if (size < kHeader || size > icon.size() - at)
            break;
        const QByteArrayView entry = QByteArrayView(icon).sliced(at, size);
        if (!entry.startsWith("TOC ") && !isLargePNG(entry.sliced(kHeader)))
            checked += entry;
        at += size;
    }
    qToBigEndian(static_cast<quint32>(checked.size()), checked.data() + 4);
    return checked;
}

/// A TIFF file without the pictures that come after the first `kMostPictures`: the decoder goes through all pictures to count them, and a
/// file of some megabytes can hold hundreds of thousands. A file in the form that is meant for more than 4 GiB becomes empty.
QByteArray withFewPictures(QByteArray tiff) {
    constexpr qsizetype kHeader = 8, kEntry = 12;
    const bool isBigEndian = tiff.startsWith("MM");
    const auto number = [&]<class Number>(qsizetype at, Number) {
        return isBigEndian ? qFromBigEndian<Number>(tiff.constData() + at) : qFromLittleEndian<Number>(tiff.constData() + at);
    };
    const quint16 version = tiff.size() < kHeader ? 0 : number(2, quint16());
    if (version != 42)
        return version == 43 ? QByteArray() : tiff;
    qsizetype next = 4; // the place of the number that says where the next picture begins
    for (int i = 0; i < ImageFile::kMostPictures; ++i) {
        const qsizetype picture = number(next, quint32());
        if (picture == 0 || picture > tiff.size() - 2)
            return tiff;
        next = picture + 2 + number(picture, quint16()) * kEntry;
        if (next > tiff.size() - 4)
            return tiff;
    }
    std::fill_n(tiff.data() + next, 4, '\0');
    return tiff;
}

/// The bytes that the decoder gets: those of the file, less the parts that would cost it too much.
QByteArray checked(const QByteArray& bytes) {
    if (bytes.startsWith("icns") && bytes.size() > 8)
        return checkedIcon(bytes);
    return bytes.startsWith("II") || bytes.startsWith("MM") ? withFewPictures(bytes) : bytes;
}

/// The bytes of memory that decoding a picture takes when it is not made smaller on the way. The toolkit counts at least 32 bits a pixel.
/// In damaged files the format may be a number without meaning.
qint64 bytesWhileDecoding(QSize size, QImage::Format format) {
    constexpr int kFewestBits = 32;
    const bool isKnown = format > QImage::Format_Invalid && format < QImage::NImageFormats;
    const int bits = isKnown ? QImage::toPixelFormat(format).bitsPerPixel() : kFewestBits;
    return qint64{size.width()} * size.height() * std::max(bits, kFewestBits) / 8;
}

QString tooManyBytes(qint64 most) {
    return u"it is larger than %1 MiB"_s.arg(most >> 20);
}

/// The bytes of a file; empty, with `problem` set, when it is no regular file, cannot be read or is too large.
QByteArray bytesOfRegularFile(const QString& path, qint64 mostBytes, QString& problem) {
    const auto bytes = bytesOfFile(path, mostBytes);
    if (bytes)
        return *bytes;
    problem = bytes.error() == memFullErr ? tooManyBytes(mostBytes) : u"it cannot be read (error %1)"_s.arg(bytes.error());
    return {};
}

} // namespace

ImageFile::ImageFile(const QString& path, qint64 mostBytes) {
    open(bytesOfRegularFile(path, mostBytes, mProblem), QFileInfo(path).suffix(), mostBytes);
}

ImageFile::ImageFile(const QByteArray& bytes, const QString& suffix) {
    open(bytes, suffix, kMostBytes);
}

void ImageFile::open(const QByteArray& bytes, const QString& suffix, qint64 mostBytes) {
    if (bytes.size() > mostBytes)
        mProblem = tooManyBytes(mostBytes);
    else if (bytes.isEmpty() && mProblem.isEmpty())
        mProblem = u"it is empty"_s;
    if (!mProblem.isEmpty())
        return;
    static const bool isBounded = (QImageReader::setAllocationLimit(kMostMegabytes), true);
    std::ignore = isBounded;
    mBytes = checked(bytes);
    mBuffer.setBuffer(&mBytes);
    mBuffer.open(QIODevice::ReadOnly);
    mReader.setDevice(&mBuffer);
    mReader.setFormat(suffix.toLatin1().toLower()); // the suffix tells kinds that cannot be told by content
    mReader.setDecideFormatFromContent(true);
    mReader.setAutoTransform(true);
    if (mReader.format().startsWith("svg") && !isSelfContained(mBytes)) {
        mReader.setDevice(nullptr);
        mProblem = u"it is a drawing that is damaged or refers to other files"_s;
    }
}

int ImageFile::count() const {
    return mReader.device() ? std::clamp(mReader.imageCount(), 1, kMostPictures) : 1;
}

bool ImageFile::select(int index) {
    if (!mReader.device() || (index != mSelected && !mReader.jumpToImage(index)))
        return false;
    mSelected = index;
    return true;
}

QSize ImageFile::size() const {
    const QSize size = mReader.device() ? mReader.size() : QSize();
    return mReader.transformation() & QImageIOHandler::TransformationRotate90 ? size.transposed() : size;
}

QImage ImageFile::read(QSize largest, QSize least) {
    if (!mReader.device())
        return {};
    const QSize size = mReader.size();
    const QString measures = u"%1 × %2 pixels"_s.arg(size.width()).arg(size.height());
    if (size.width() > kMaximumExtent || size.height() > kMaximumExtent) {
        mProblem = u"it has %1, which is more than %2 to a side"_s.arg(measures).arg(kMaximumExtent);
        return {};
    }
    const bool isLarge = bytesWhileDecoding(size, mReader.imageFormat()) > qint64{kMostMegabytes} << 20;
    const bool isReduced = size.width() > largest.width() || size.height() > largest.height();
    const bool isSmallDrawing = mReader.format().startsWith("svg") && size.width() < least.width() && size.height() < least.height();
    const QSize scaled = isReduced        ? size.scaled(largest, Qt::KeepAspectRatio).expandedTo({1, 1})
                         : isSmallDrawing ? size.scaled(least, Qt::KeepAspectRatio).expandedTo({1, 1})
                                          : QSize();
    mReader.setScaledSize(scaled);
    const QImage image = mReader.read();
    if (image.isNull()) {
        mProblem = isLarge ? u"it has %1, which take more than %2 MiB"_s.arg(measures).arg(kMostMegabytes)
                           : u"it cannot be decoded (%1)"_s.arg(mReader.errorString());
        mBuffer.seek(0); // a decoder that has failed may not be able to read the other pictures, so a new one is made
        mReader.setDevice(&mBuffer);
        mSelected = 0;
    }
    const bool isLarger = image.width() > largest.width() || image.height() > largest.height();
    return isLarger ? image.scaled(largest, Qt::KeepAspectRatio, Qt::SmoothTransformation) : image;
}

} // namespace quoddle
