// SPDX-License-Identifier: MIT
// Binary property lists ("bplist00"). An object that is referred to several times is read once and shared. Lists whose objects together
// claim more bytes than the file has (that is, overlap) are refused, so the file's size bounds time and memory.
#include "platform/foundation/PlistReaders.h"

#include <cstring>

#include <QtEndian>
#include <QTimeZone>

namespace quoddle::Plist {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kHeaderSize = 8;
constexpr qsizetype kTrailerSize = 32;

Failure<QString> corrupt(const QString& what) {
    return failure(u"corrupt binary property list: "_s + what);
}

class BinaryReader {
public:
    explicit BinaryReader(const QByteArray& bytes)
        : mBytes(reinterpret_cast<const uchar*>(bytes.constData())), mSize(bytes.size()), mBudget(bytes.size()) {}

    Value readDocument() {
        if (mSize < kHeaderSize + kTrailerSize + 1)
            return corrupt(u"too short"_s);
        const uchar* trailer = mBytes + mSize - kTrailerSize;
        mOffsetSize = trailer[6];
        mReferenceSize = trailer[7];
        const quint64 count = qFromBigEndian<quint64>(trailer + 8);
        const quint64 top = qFromBigEndian<quint64>(trailer + 16);
        const quint64 table = qFromBigEndian<quint64>(trailer + 24);
        mEnd = mSize - kTrailerSize;
        if (mOffsetSize < 1 || mOffsetSize > 8 || mReferenceSize < 1 || mReferenceSize > 8)
            return corrupt(u"impossible sizes"_s);
        if (table < static_cast<quint64>(kHeaderSize) || table >= static_cast<quint64>(mEnd) ||
            count > (static_cast<quint64>(mEnd) - table) / static_cast<quint64>(mOffsetSize) || top >= count)
            return corrupt(u"the offset table lies outside"_s);
        if (count > static_cast<quint64>(kMaxNodes))
            return tooMany();
        mTable = mBytes + table;
        mObjects.resize(static_cast<std::size_t>(count));
        return readObject(top, 0);
    }

private:
    struct Object {
        enum { unread, reading, read } state = unread;
        QVariant value;
    };

    /// The part of an object in front of its content: kind and size.
    struct Marker {
        int kind;
        int low;
        quint64 count; // the number of bytes, characters or items
        qsizetype at;  // the offset of the content
    };

    quint64 bigEndian(const uchar* at, int size) const {
        quint64 number = 0;
        for (int i = 0; i < size; ++i)
            number = number << 8 | at[i];
        return number;
    }

    bool has(qsizetype at, quint64 count) const { return at <= mEnd && count <= static_cast<quint64>(mEnd - at); }

    bool spend(quint64 bytes) {
        if (bytes > static_cast<quint64>(mBudget))
            return false;
        mBudget -= static_cast<qsizetype>(bytes);
        return true;
    }

    Value readObject(quint64 index, int depth) {
        if (index >= mObjects.size())
            return corrupt(u"a reference to no object"_s);
        Object& object = mObjects[static_cast<std::size_t>(index)];
        if (object.state == Object::read)
            return object.value;
        if (object.state == Object::reading)
            return corrupt(u"a cycle"_s);
        if (depth >= kMaxDepth)
            return tooDeep();
        object.state = Object::reading;
        Value value = readContent(bigEndian(mTable + index * static_cast<quint64>(mOffsetSize), mOffsetSize), depth);
        if (value) {
            object.value = *value;
            object.state = Object::read;
        }
        return value;
    }

    Value readContent(quint64 offset, int depth) {
        if (offset < static_cast<quint64>(kHeaderSize) || offset >= static_cast<quint64>(mEnd))
            return corrupt(u"an object outside"_s);
        Marker marker{mBytes[offset] >> 4, mBytes[offset] & 15, 0, static_cast<qsizetype>(offset) + 1};
        if (!spend(1))
            return corrupt(u"overlapping objects"_s);
        if (marker.kind >= 0x4 && marker.kind != 0x8 && !readCount(marker))
            return corrupt(u"a bad count"_s);
        switch (marker.kind) {
        case 0x0:
            return marker.low == 8 || marker.low == 9 ? Value(QVariant(marker.low == 9)) : Value(corrupt(u"an unknown object"_s));
        case 0x1:
        case 0x2:
        case 0x3:
        case 0x8:
            return readNumber(marker);
        case 0x4:
        case 0x5:
        case 0x6:
            return readText(marker);
        case 0xA:
        case 0xC: // a set becomes a list; its order has no meaning
            return readArray(marker, depth);
        case 0xD:
            return readDictionary(marker, depth);
        default:
            return corrupt(u"an unknown object"_s);
        }
    }

    bool readCount(Marker& marker) {
        marker.count = static_cast<quint64>(marker.low);
        if (marker.low != 15)
            return true;
        if (!has(marker.at, 1) || mBytes[marker.at] >> 4 != 1 || (mBytes[marker.at] & 15) > 3)
            return false;
        const int size = 1 << (mBytes[marker.at] & 15);
        if (!has(marker.at + 1, static_cast<quint64>(size)))
            return false;
        marker.count = bigEndian(mBytes + marker.at + 1, size);
        marker.at += 1 + size;
        return true;
    }

    Value readNumber(const Marker& marker) {
        const int size = marker.kind == 0x8 ? marker.low + 1 : marker.low <= 4 ? 1 << marker.low : 0;
        if (!size || !has(marker.at, static_cast<quint64>(size)) || !spend(static_cast<quint64>(size)))
            return corrupt(u"a bad number"_s);
        const uchar* at = mBytes + marker.at;
        if (marker.kind == 0x1)
            return readInteger(at, size);
        if (marker.kind == 0x8)
            return size <= 8 ? Value(QVariant(QVariantMap{{u"CF$UID"_s, static_cast<qlonglong>(bigEndian(at, size))}}))
                             : Value(corrupt(u"a bad UID"_s));
        double number = 0;
        if (size == 8) {
            const quint64 bits = bigEndian(at, 8);
            std::memcpy(&number, &bits, sizeof number);
        } else if (size == 4 && marker.kind == 0x2) {
            const auto bits = static_cast<quint32>(bigEndian(at, 4));
            float single = 0;
            std::memcpy(&single, &bits, sizeof single);
            number = static_cast<double>(single);
        } else {
            return corrupt(u"a bad number"_s);
        }
        return marker.kind == 0x2 ? Value(QVariant(number)) : readDate(number);
    }

    Value readInteger(const uchar* at, int size) {
        if (size <= 8)
            return QVariant(static_cast<qlonglong>(bigEndian(at, size))); // integers of 8 bytes are signed, shorter ones are not
        const quint64 high = bigEndian(at, 8);
        const quint64 low = bigEndian(at + 8, 8);
        if (high == 0)
            return low >> 63 ? QVariant(static_cast<qulonglong>(low)) : QVariant(static_cast<qlonglong>(low));
        if (high == ~quint64(0) && low >> 63)
            return QVariant(static_cast<qlonglong>(low));
        return corrupt(u"an integer beyond 64 bits"_s);
    }

    Value readDate(double seconds) {
        constexpr double kEpoch = 978307200; // 2001-01-01 in seconds since 1970
        constexpr double kLimit = 1e11;      // seconds; about three thousand years in each direction
        if (!(seconds > -kLimit && seconds < kLimit))
            return corrupt(u"an impossible date"_s);
        return QVariant(QDateTime::fromMSecsSinceEpoch(qRound64((seconds + kEpoch) * 1000), QTimeZone::utc()));
    }

    Value readText(const Marker& marker) {
        const quint64 width = marker.kind == 0x6 ? 2 : 1;
        if (marker.count > static_cast<quint64>(mSize) || !has(marker.at, marker.count * width))
            return corrupt(u"a text or data outside"_s);
        if (!spend(marker.count * width))
            return corrupt(u"overlapping objects"_s);
        const uchar* at = mBytes + marker.at;
        const auto count = static_cast<qsizetype>(marker.count);
        if (marker.kind == 0x4)
            return QVariant(QByteArray(reinterpret_cast<const char*>(at), count));
        if (marker.kind == 0x5)
            return QVariant(QString::fromLatin1(reinterpret_cast<const char*>(at), count));
        QString text(count, Qt::Uninitialized);
        qFromBigEndian<char16_t>(at, count, text.data());
        return QVariant(text);
    }

    bool spendReferences(const Marker& marker, quint64 width) {
        width *= static_cast<quint64>(mReferenceSize);
        return marker.count <= static_cast<quint64>(mSize) && has(marker.at, marker.count * width) && spend(marker.count * width) &&
               (mNodes += static_cast<qsizetype>(marker.count)) <= kMaxNodes;
    }

    quint64 reference(const Marker& marker, quint64 index) const {
        return bigEndian(mBytes + marker.at + static_cast<qsizetype>(index) * mReferenceSize, mReferenceSize);
    }

    Value readArray(const Marker& marker, int depth) {
        if (!spendReferences(marker, 1))
            return corrupt(u"a list outside, overlapping or too long"_s);
        QVariantList list;
        list.reserve(static_cast<qsizetype>(marker.count));
        for (quint64 i = 0; i < marker.count; ++i) {
            Value item = readObject(reference(marker, i), depth + 1);
            if (!item)
                return item;
            list.append(*item);
        }
        return QVariant(list);
    }

    Value readDictionary(const Marker& marker, int depth) {
        if (!spendReferences(marker, 2))
            return corrupt(u"a dictionary outside, overlapping or too long"_s);
        QVariantMap map;
        for (quint64 i = 0; i < marker.count; ++i) {
            Value key = readObject(reference(marker, i), depth + 1);
            if (!key)
                return key;
            if (key->typeId() != QMetaType::QString)
                return corrupt(u"a key that is no text"_s);
            Value value = readObject(reference(marker, marker.count + i), depth + 1);
            if (!value)
                return value;
            map.insert(key->toString(), *value);
        }
        return QVariant(map);
    }

    const uchar* mBytes;
    const qsizetype mSize;
    qsizetype mEnd = 0; // the offset of the trailer
    const uchar* mTable = nullptr;
    int mOffsetSize = 0;
    int mReferenceSize = 0;
    qsizetype mBudget; // the number of bytes that further objects may claim
    qsizetype mNodes = 0;
    std::vector<Object> mObjects;
};

} // namespace

Value readBinary(const QByteArray& bytes) {
    return BinaryReader(bytes).readDocument();
}

} // namespace quoddle::Plist
