// SPDX-License-Identifier: MIT
#include "platform/applescript/image/Image.h"

#include "platform/applescript/image/Block.h"
#include "platform/applescript/image/ImageFormat.h"
#include "platform/base/Text.h"

#include <bit>
#include <cstring>
#include <unordered_map>

namespace quoddle {

namespace {

using namespace image;

std::string_view withoutShebang(std::string_view bytes) {
    if (!bytes.starts_with("#!"))
        return bytes;
    auto end = bytes.find('\n');
    return end == std::string_view::npos ? std::string_view() : bytes.substr(end + 1);
}

/// Old scripts have names in Mac Roman, newer ones in UTF-8; in memory all are UTF-8.
std::string nameFromBytes(std::string_view bytes) {
    return isValidUTF8(bytes) ? std::string(bytes) : utf8FromUTF16(utf16FromMacRoman(bytes));
}

class Reader {
public:
    Reader(std::string_view bytes, ObjectStore& store) : mBytes(bytes), mStore(store) {}

    /// Null when the stream is damaged.
    Object* readRoot() { return resolve(0); }

private:
    struct Header {
        std::uint8_t kind;
        std::int16_t reference;
        std::uint16_t size;
    };
    /// A list or record cell in the middle of a chain, which another record may share.
    struct Cell {
        Object* chain;
        std::size_t offset;
    };

    bool take(std::size_t count, std::string_view& into) {
        if (count > mBytes.size() - mAt)
            return false;
        into = mBytes.substr(mAt, count);
        mAt += count;
        return true;
    }
    template<class Integer>
    bool take(Integer& into) {
        std::string_view bytes;
        if (!take(sizeof(Integer), bytes))
            return false;
        std::make_unsigned_t<Integer> value = 0;
        for (char c : bytes)
            value = static_cast<decltype(value)>(static_cast<std::uint64_t>(value) << 8 | static_cast<unsigned char>(c));
        into = static_cast<Integer>(value);
        return true;
    }
    bool take(Header& header) { return take(header.kind) && take(header.reference) && take(header.size); }

    Object* remember(std::int16_t reference, Object* object) {
        if (object && reference >= 0)
            mShared[reference] = object;
        return object;
    }

    Object* resolve(std::int16_t reference) {
        if (reference >= 0) {
            if (auto known = mShared.find(reference); known != mShared.end())
                return known->second;
            if (auto cell = mCells.find(reference); cell != mCells.end())
                return tailOf(cell->second);
        }
        Header header;
        if (++mDepth > kMaximumDepth || !take(header) || header.reference != reference)
            return nullptr;
        Object* object = readRecord(header);
        --mDepth;
        return object;
    }

    Object* tailOf(const Cell& cell) {
        if (cell.offset > cell.chain->children.size())
            return nullptr; // a chain that is still being read would contain itself
        auto rest = cell.chain->children.subspan(cell.offset);
        if ((mCopied += rest.size()) > kMaximumCopied)
            return nullptr; // a small file can hold very many lists that end in one long tail, each of which needs a copy of it
        return cell.chain->kind == ObjectKind::List ? mStore.list(rest) : mStore.record(rest);
    }

    Object* readRecord(const Header& header);
    Object* readChain(const Header& header, ObjectKind kind, std::uint16_t cellSize);
    Object* readChildren(const Header& header, ObjectKind kind, std::uint8_t tag);
    Object* readTextBlock(const Header& header);
    Object* readIdentifier(const Header& header);
    Object* readOldText(const Header& header);
    Object* readNode(const Header& header);
    Object* readBytes(const Header& header, std::size_t size, ObjectKind kind, std::uint8_t tag);

    std::string_view mBytes;
    std::size_t mAt = 0;
    std::size_t mDepth = 0;
    std::size_t mCopied = 0;
    ObjectStore& mStore;
    std::unordered_map<std::int16_t, Object*> mShared;
    std::unordered_map<std::int16_t, Cell> mCells;
};

Object* Reader::readBytes(const Header& header, std::size_t size, ObjectKind kind, std::uint8_t tag) {
    std::string_view bytes;
    if (!take(size, bytes))
        return nullptr;
    Object* object = mStore.unfinished(kind, tag, 0);
    object->bytes = mStore.keep(bytes);
    return remember(header.reference, object);
}

/// Reads cells in a loop and not recursively: a block of 5,000 statements is a chain of 5,000 cells.
Object* Reader::readChain(const Header& first, ObjectKind kind, std::uint16_t cellSize) {
    const RecordKind cellKind = kind == ObjectKind::List ? kListCell : kRecordCell;
    Object* chain = remember(first.reference, mStore.unfinished(kind, 0, 0));
    std::vector<Object*> children;
    Header header = first;
    while (header.size != 0) {
        if (header.size != cellSize)
            return nullptr;
        std::int16_t references[3] = {};
        for (std::uint16_t i = 0; i < cellSize; ++i)
            if (!take(references[i]))
                return nullptr;
        for (std::uint16_t i = 0; i + 1 < cellSize; ++i) {
            Object* child = resolve(references[i]);
            if (!child)
                return nullptr;
            children.push_back(child);
        }
        const std::int16_t tail = references[cellSize - 1];
        if (tail >= 0 && (mShared.contains(tail) || mCells.contains(tail))) {
            Object* rest = resolve(tail);
            if (!rest || rest->kind != kind || rest == chain)
                return nullptr;
            if ((mCopied += rest->children.size()) > kMaximumCopied)
                return nullptr;
            children.insert(children.end(), rest->children.begin(), rest->children.end());
            break;
        }
        if (!take(header) || header.reference != tail)
            return nullptr;
        if (header.kind == kNil && header.size == 0)
            break;
        if (header.kind != cellKind)
            return nullptr;
        if (tail >= 0)
            mCells[tail] = {chain, children.size()};
    }
    Object* whole = kind == ObjectKind::List ? mStore.list(children) : mStore.record(children);
    chain->children = whole->children;
    return chain;
}

Object* Reader::readChildren(const Header& header, ObjectKind kind, std::uint8_t tag) {
    std::vector<std::int16_t> references(header.size);
    for (auto& reference : references)
        if (!take(reference))
            return nullptr;
    // Graphs are cyclic, so an object must be known before its children are read.
    Object* object = remember(header.reference, mStore.unfinished(kind, tag, references.size()));
    for (std::size_t i = 0; i < references.size(); ++i)
        if (!(object->children[i] = resolve(references[i])))
            return nullptr;
    return object;
}

Object* Reader::readTextBlock(const Header& header) {
    std::int16_t reference;
    if (header.size != 1 || !take(reference))
        return nullptr;
    Object* raw = resolve(reference);
    if (!raw || raw->kind != ObjectKind::Raw || raw->bytes.size() % 2 != 0)
        return nullptr;
    std::u16string text(raw->bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i)
        text[i] =
            static_cast<char16_t>(static_cast<unsigned char>(raw->bytes[2 * i]) << 8 | static_cast<unsigned char>(raw->bytes[2 * i + 1]));
    return remember(header.reference, mStore.text(text));
}

Object* Reader::readIdentifier(const Header& header) {
    std::uint8_t tag;
    std::uint16_t keySize, spellingSize;
    std::string_view key, spelling;
    if (!take(tag) || !take(keySize) || !take(keySize, key) || !take(spellingSize) || !take(spellingSize, spelling) ||
        std::size_t(header.size) != 4u + keySize + spellingSize)
        return nullptr;
    return remember(header.reference, mStore.identifier(nameFromBytes(key), nameFromBytes(spelling)));
}

Object* Reader::readOldText(const Header& header) {
    std::uint16_t textSize, styleSize;
    std::string_view bytes, style;
    if (!take(textSize) || !take(textSize, bytes) || !take(styleSize) || !take(styleSize, style) ||
        std::size_t(header.size) != 4u + textSize + styleSize)
        return nullptr;
    Object* text = mStore.text(utf16FromMacRoman(bytes));
    text->flags = 1;
    return remember(header.reference, text);
}

Object* Reader::readNode(const Header& header) {
    std::uint8_t tag;
    std::uint16_t flags, start, end;
    if (!take(tag) || !take(flags) || !take(start) || !take(end))
        return nullptr;
    Object* node = readChildren(header, ObjectKind::Node, tag);
    if (node) {
        node->flags = flags;
        node->start = start;
        node->end = end;
    }
    return node;
}

Object* Reader::readRecord(const Header& header) {
    std::uint8_t tag = 0;
    switch (header.kind) {
    case kNil: {
        std::string_view ignored;
        if (header.size != 0 && !take(8, ignored))
            return nullptr;
        return remember(header.reference, mStore.nil());
    }
    case kListCell:
        return readChain(header, ObjectKind::List, 2);
    case kRecordCell:
        return readChain(header, ObjectKind::Record, 3);
    case kSmallInteger:
        return remember(header.reference, mStore.integer(static_cast<std::int16_t>(header.size)));
    case kInteger: {
        std::int32_t value;
        return header.size == 4 && take(value) ? remember(header.reference, mStore.integer(value)) : nullptr;
    }
    case kReal: {
        std::uint64_t bits;
        return header.size == 8 && take(bits) ? remember(header.reference, mStore.real(std::bit_cast<double>(bits))) : nullptr;
    }
    case kBoolean:
        return remember(header.reference, mStore.boolean(header.size != 0));
    case kCode: {
        const bool known = take(tag) && (header.size == 4 || header.size == 8 || header.size == 24);
        return known ? readBytes(header, header.size, ObjectKind::Code, tag) : nullptr;
    }
    case kIdentifier:
        return readIdentifier(header);
    case kOldText:
        return readOldText(header);
    case kNode:
        return readNode(header);
    case kOldBlock:
    case kBlock:
        if (!take(tag))
            return nullptr;
        return tag == block::Text ? readTextBlock(header) : readChildren(header, ObjectKind::Block, tag);
    case kVector:
        return readChildren(header, ObjectKind::Vector, 0);
    case kData:
        return take(tag) ? readBytes(header, header.size, ObjectKind::Data, tag) : nullptr;
    case kRaw:
        return readBytes(header, header.size, ObjectKind::Raw, 0);
    case kLongData:
    case kLongRaw: {
        const bool tagged = header.kind == kLongData;
        std::uint32_t size;
        if ((tagged && !take(tag)) || !take(size))
            return nullptr;
        return readBytes(header, size, tagged ? ObjectKind::Data : ObjectKind::Raw, tag);
    }
    default:
        return nullptr;
    }
}

} // namespace

bool looksLikeImage(std::string_view bytes) {
    return withoutShebang(bytes).starts_with("Fasd");
}

Result<Image, OSStatus> readImage(std::string_view bytes) {
    std::string_view stream = withoutShebang(bytes);
    if (!stream.starts_with("Fasd"))
        return Failure{errOSABadStorageType};
    if (!stream.starts_with(kMagic) || stream.size() < kMagic.size() + 4)
        return Failure{errOSACorruptData};
    std::string_view version = stream.substr(kMagic.size(), 4);
    std::size_t start = kMagic.size() + 4;
    if (version >= kVersion) {
        if (stream.size() < start + 4)
            return Failure{errOSACorruptData};
        version = stream.substr(start, 4);
        start += 4;
    }
    if (version <= "0.97")
        return Failure{errOSADataFormatObsolete};
    if (version >= "1.11")
        return Failure{errOSADataFormatTooNew};

    Image image{std::make_shared<ObjectStore>(), nullptr};
    image.root = Reader(stream.substr(start), *image.store).readRoot();
    if (!image.root || !(image.root->isNil() || image.root->isBlock(block::Script)))
        return Failure{errOSACorruptData};
    return image;
}

} // namespace quoddle
