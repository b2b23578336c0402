// SPDX-License-Identifier: MIT
#include "platform/applescript/image/Image.h"

#include "platform/applescript/image/Block.h"
#include "platform/applescript/image/ImageFormat.h"
#include "platform/base/Text.h"

#include <algorithm>
#include <bit>
#include <unordered_map>
#include <unordered_set>

namespace quoddle {

namespace {

using namespace image;

/// Which objects are written once and then referred to. References have 16 bits.
enum class Sharing : std::uint8_t {
    LargeValues,  // small objects without identity are written again at each use
    ObjectsAlone, // texts as well
};

bool isSharable(const Object& object, Sharing sharing) {
    switch (object.kind) {
    case ObjectKind::Nil:
    case ObjectKind::Boolean:
    case ObjectKind::Integer:
    case ObjectKind::Real:
    case ObjectKind::Code:
    case ObjectKind::Identifier:
        return false;
    case ObjectKind::List:
    case ObjectKind::Record:
        return !object.children.empty();
    case ObjectKind::Text:
        return sharing == Sharing::LargeValues;
    default:
        return true;
    }
}

class Writer {
public:
    OSStatus status = noErr;

    explicit Writer(Sharing sharing) : mSharing(sharing) {}

    std::string write(const Object* root) {
        findShared(root);
        mOut = kMagic;
        mOut += kVersion;
        mOut += kVersion;
        mReferences[root] = 0;
        writeObject(root, 0);
        const bool pad = mOut.size() % 2 != 0;
        if (pad)
            mOut += '\0';
        mOut += "ascr";
        put16(1);
        put16(pad ? 0x0D : 0x0C);
        mOut += kTrailerMark;
        return std::move(mOut);
    }

private:
    void findShared(const Object* root) {
        std::vector<const Object*> pending{root};
        std::unordered_set<const Object*> seen{root};
        mShared.insert(root);
        while (!pending.empty()) {
            const Object* object = pending.back();
            pending.pop_back();
            for (const Object* child : object->children) {
                if (!isSharable(*child, mSharing))
                    continue;
                if (seen.insert(child).second)
                    pending.push_back(child);
                else
                    mShared.insert(child);
            }
        }
    }

    void put8(unsigned value) { mOut += static_cast<char>(value); }
    void put16(unsigned value) {
        put8(value >> 8 & 0xFF);
        put8(value & 0xFF);
    }
    void put32(std::uint32_t value) {
        put16(value >> 16);
        put16(value & 0xFFFF);
    }
    unsigned size16(std::size_t size) {
        if (size > 0xFFFF)
            status = errOSAInternalTableOverflow;
        return static_cast<unsigned>(size & 0xFFFF);
    }
    void header(RecordKind kind, std::int16_t reference, std::size_t size) {
        put8(kind);
        put16(static_cast<std::uint16_t>(reference));
        put16(size16(size));
    }

    /// A reference for an object that is used once. Such numbers only have to be negative and to match between mention and record, so they
    /// start over when they run out.
    std::int16_t onceUsed() {
        mOnceUsed = mOnceUsed == INT16_MIN ? std::int16_t(-1) : static_cast<std::int16_t>(mOnceUsed - 1);
        return mOnceUsed;
    }

    std::int16_t mention(const Object* object) {
        if (!mShared.contains(object))
            return onceUsed();
        auto [entry, isNew] = mReferences.try_emplace(object, static_cast<std::int16_t>(0));
        if (isNew) {
            if (mReferences.size() > INT16_MAX)
                status = errOSAInternalTableOverflow;
            else
                entry->second = static_cast<std::int16_t>(mReferences.size() - 1);
        }
        return entry->second;
    }

    void writeMentioned(const Object* object, std::int16_t reference) {
        if (status == noErr && !(reference >= 0 && mWritten.contains(object)))
            writeObject(object, reference);
    }

    void writeChildren(const Object& object) {
        std::vector<std::int16_t> references;
        references.reserve(object.children.size());
        for (const Object* child : object.children) {
            references.push_back(mention(child));
            put16(static_cast<std::uint16_t>(references.back()));
        }
        for (std::size_t i = 0; i < references.size(); ++i)
            writeMentioned(object.children[i], references[i]);
    }

    void writeChain(const Object& object, std::int16_t reference) {
        const bool isList = object.kind == ObjectKind::List;
        const RecordKind kind = isList ? kListCell : kRecordCell;
        const std::size_t step = isList ? 1 : 2;
        for (std::size_t i = 0; i + step <= object.children.size(); i += step) {
            header(kind, reference, step + 1);
            std::int16_t heads[2] = {};
            for (std::size_t k = 0; k < step; ++k)
                put16(static_cast<std::uint16_t>(heads[k] = mention(object.children[i + k])));
            reference = onceUsed();
            put16(static_cast<std::uint16_t>(reference));
            for (std::size_t k = 0; k < step; ++k)
                writeMentioned(object.children[i + k], heads[k]);
        }
        header(kind, reference, 0);
    }

    void writeText(const Object& object, std::int16_t reference) {
        if (object.flags & 1) {
            std::string bytes = macRomanFromUTF16(object.text);
            header(kOldText, reference, bytes.size() + 4 + 2);
            put16(size16(bytes.size()));
            mOut += bytes;
            put16(2);
            put16(0); // no style runs
            return;
        }
        header(kBlock, reference, 1);
        put8(block::Text);
        const std::int16_t raw = onceUsed();
        put16(static_cast<std::uint16_t>(raw));
        std::string bytes;
        bytes.reserve(object.text.size() * 2);
        for (char16_t c : object.text) {
            bytes += static_cast<char>(c >> 8);
            bytes += static_cast<char>(c & 0xFF);
        }
        writeRaw(bytes, raw);
    }

    void writeRaw(std::string_view bytes, std::int16_t reference) {
        const bool isLong = bytes.size() > 0xFFFF;
        header(isLong ? kLongRaw : kRaw, reference, isLong ? 0 : bytes.size());
        if (isLong)
            put32(static_cast<std::uint32_t>(bytes.size()));
        mOut += bytes;
    }

    void writeData(const Object& object, std::int16_t reference) {
        const bool isLong = object.bytes.size() > 0xFFFF;
        header(isLong ? kLongData : kData, reference, isLong ? 0 : object.bytes.size());
        put8(object.tag);
        if (isLong)
            put32(static_cast<std::uint32_t>(object.bytes.size()));
        mOut += object.bytes;
    }

    /// Offsets in long code may not fit. A node that begins too late has none then, and of one that ends too late its beginning is covered.
    void writePlace(const Object& node) {
        const bool fits = node.start <= 0xFFFF;
        put16(fits ? node.start : 0);
        put16(fits ? std::min<std::uint32_t>(node.end, 0xFFFF) : 0);
    }

    void writeInteger(std::int32_t value, std::int16_t reference) {
        if (value == static_cast<std::int16_t>(value))
            return header(kSmallInteger, reference, static_cast<std::uint16_t>(value));
        header(kInteger, reference, 4);
        put32(static_cast<std::uint32_t>(value));
    }

    void writeObject(const Object* object, std::int16_t reference);

    const Sharing mSharing;
    std::string mOut;
    std::int16_t mOnceUsed = 0;
    std::size_t mDepth = 0;
    std::unordered_set<const Object*> mShared;
    std::unordered_set<const Object*> mWritten;
    std::unordered_map<const Object*, std::int16_t> mReferences;
};

void Writer::writeObject(const Object* object, std::int16_t reference) {
    if (++mDepth > kMaximumDepth) {
        status = errOSADataBlockTooLarge;
        --mDepth;
        return;
    }
    mWritten.insert(object);
    switch (object->kind) {
    case ObjectKind::Nil:
        header(kNil, reference, 0);
        break;
    case ObjectKind::Boolean:
        header(kBoolean, reference, object->boolean ? 1 : 0);
        break;
    case ObjectKind::Integer:
        writeInteger(object->integer, reference);
        break;
    case ObjectKind::Real: {
        const auto bits = std::bit_cast<std::uint64_t>(object->real);
        header(kReal, reference, 8);
        put32(static_cast<std::uint32_t>(bits >> 32));
        put32(static_cast<std::uint32_t>(bits));
        break;
    }
    case ObjectKind::Code:
        header(kCode, reference, object->bytes.size());
        put8(object->tag);
        mOut += object->bytes;
        break;
    case ObjectKind::Identifier:
        header(kIdentifier, reference, 4 + object->bytes.size() + object->spelling.size());
        put8(kIdentifierTag);
        put16(size16(object->bytes.size()));
        mOut += object->bytes;
        put16(size16(object->spelling.size()));
        mOut += object->spelling;
        break;
    case ObjectKind::Text:
        writeText(*object, reference);
        break;
    case ObjectKind::Data:
        writeData(*object, reference);
        break;
    case ObjectKind::Raw:
        writeRaw(object->bytes, reference);
        break;
    case ObjectKind::List:
    case ObjectKind::Record:
        writeChain(*object, reference);
        break;
    case ObjectKind::Block:
        header(kBlock, reference, object->children.size());
        put8(object->tag);
        writeChildren(*object);
        break;
    case ObjectKind::Vector:
        header(kVector, reference, object->children.size());
        writeChildren(*object);
        break;
    case ObjectKind::Node:
        header(kNode, reference, object->children.size());
        put8(object->tag);
        put16(object->flags);
        writePlace(*object);
        writeChildren(*object);
        break;
    }
    --mDepth;
}

} // namespace

Result<std::string, OSStatus> writeImage(const Object* root) {
    OSStatus status = noErr;
    for (const Sharing sharing : {Sharing::LargeValues, Sharing::ObjectsAlone}) {
        Writer writer(sharing);
        std::string bytes = writer.write(root);
        if (writer.status == noErr)
            return bytes;
        status = writer.status;
        if (status != errOSAInternalTableOverflow)
            break;
    }
    return Failure{status};
}

} // namespace quoddle
