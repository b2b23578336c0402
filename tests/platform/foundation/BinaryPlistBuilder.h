// SPDX-License-Identifier: MIT
// Builds binary property lists object by object, so that tests can make lists that no tool writes: with cycles, overlaps and wrong counts.
#pragma once

#include <vector>

#include <QByteArray>

namespace quoddle::test {

class BinaryPlistBuilder {
public:
    /// Adds an object's bytes unchanged; returns its index.
    int add(const QByteArray& object) {
        mOffsets.push_back(static_cast<quint32>(mBytes.size()));
        mBytes += object;
        return static_cast<int>(mOffsets.size()) - 1;
    }
    int addText(const QByteArray& ascii) { return add(counted(0x50, ascii.size()) + ascii); }
    int addArray(const std::vector<int>& items) { return add(counted(0xA0, static_cast<qsizetype>(items.size())) + references(items)); }
    /// Adds an object that starts at an offset among the bytes of others; returns its index.
    int addAt(quint32 offset) {
        mOffsets.push_back(offset);
        return static_cast<int>(mOffsets.size()) - 1;
    }

    static QByteArray counted(int kind, qsizetype count) {
        if (count < 15)
            return QByteArray(1, static_cast<char>(kind | static_cast<int>(count)));
        return QByteArray(1, static_cast<char>(kind | 15)) + '\x12' + bigEndian(static_cast<quint64>(count), 4);
    }
    static QByteArray references(const std::vector<int>& items) {
        QByteArray bytes;
        for (int item : items)
            bytes += bigEndian(static_cast<quint64>(item), 2);
        return bytes;
    }
    static QByteArray bigEndian(quint64 number, int size) {
        QByteArray bytes(size, '\0');
        for (int i = size - 1; i >= 0; --i, number >>= 8)
            bytes[i] = static_cast<char>(number & 0xFF);
        return bytes;
    }

    quint32 size() const { return static_cast<quint32>(mBytes.size()); }

    QByteArray finished(int top) const {
        QByteArray file = mBytes;
        for (quint32 offset : mOffsets)
            file += bigEndian(offset, 4);
        file += QByteArray(6, '\0') + '\4' + '\2';
        return file + bigEndian(mOffsets.size(), 8) + bigEndian(static_cast<quint64>(top), 8) + bigEndian(size(), 8);
    }

private:
    QByteArray mBytes = "bplist00";
    std::vector<quint32> mOffsets;
};

} // namespace quoddle::test
