// SPDX-License-Identifier: MIT
// Reads strings tables that are binary property lists: the texts of the outermost dictionary. A file whose texts together are much longer
// than the file itself (one text stored under very many keys) is refused, so that its size bounds time and memory.
#include "platform/base/strings/StringsReaders.h"

#include <cstdint>
#include <optional>

namespace quoddle {

namespace {

constexpr std::size_t kHeaderSize = 8;
constexpr std::size_t kTrailerSize = 32;
constexpr std::size_t kMostTextPerByte = 16;

class BinaryReader {
public:
    explicit BinaryReader(std::string_view bytes) : mBytes(bytes), mBudget(bytes.size() * kMostTextPerByte) {}

    StringsTable read() {
        StringsTable table;
        const auto dictionary = findDictionary();
        if (!dictionary || dictionary->kind != 0xD) {
            table.error = dictionary ? "not a table of strings" : "corrupt binary property list";
            return table;
        }
        for (std::uint64_t i = 0; i < dictionary->count; ++i) {
            const auto key = objectAt(reference(*dictionary, i));
            const auto value = objectAt(reference(*dictionary, dictionary->count + i));
            if (!key || !value || !isText(*key) || !spend(*key) || (isText(*value) && !spend(*value))) {
                table.error = "corrupt binary property list: a key or a text";
                break;
            }
            if (isText(*value))
                table.texts.insert_or_assign(textOf(*key), textOf(*value));
        }
        return table;
    }

private:
    struct Object {
        unsigned kind;
        std::uint64_t count; // the characters of a text or the entries of a dictionary; 0 for other kinds
        std::size_t at;      // the offset of the content
    };

    std::uint64_t number(std::size_t at, std::size_t size) const {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < size; ++i)
            value = value << 8 | static_cast<unsigned char>(mBytes[at + i]);
        return value;
    }
    bool has(std::uint64_t at, std::uint64_t count, std::uint64_t width) const { return at <= mEnd && count <= (mEnd - at) / width; }

    std::optional<Object> findDictionary() {
        if (mBytes.size() < kHeaderSize + kTrailerSize + 1)
            return std::nullopt;
        mEnd = mBytes.size() - kTrailerSize;
        mOffsetSize = number(mEnd + 6, 1);
        mReferenceSize = number(mEnd + 7, 1);
        mCount = number(mEnd + 8, 8);
        mTable = number(mEnd + 24, 8);
        if (mOffsetSize < 1 || mOffsetSize > 8 || mReferenceSize < 1 || mReferenceSize > 8 || !has(mTable, mCount, mOffsetSize))
            return std::nullopt;
        const auto top = objectAt(number(mEnd + 16, 8));
        return top && (top->kind != 0xD || (top->count <= mEnd && has(top->at, 2 * top->count, mReferenceSize))) ? top : std::nullopt;
    }

    std::uint64_t reference(const Object& dictionary, std::uint64_t index) const {
        return number(dictionary.at + static_cast<std::size_t>(index) * mReferenceSize, mReferenceSize);
    }

    std::optional<Object> objectAt(std::uint64_t index) const {
        if (index >= mCount)
            return std::nullopt;
        const std::uint64_t at = number(static_cast<std::size_t>(mTable) + static_cast<std::size_t>(index) * mOffsetSize, mOffsetSize);
        if (at < kHeaderSize || at >= mEnd)
            return std::nullopt;
        const auto marker = static_cast<unsigned char>(mBytes[static_cast<std::size_t>(at)]);
        Object object{unsigned(marker) >> 4, marker & 15u, static_cast<std::size_t>(at) + 1};
        if (object.kind != 0xD && !isText(object))
            return Object{object.kind, 0, object.at};
        if (object.count == 15) { // the count did not fit and follows as an integer
            if (!has(object.at, 1, 1) || number(object.at, 1) >> 4 != 1 || (number(object.at, 1) & 15) > 3)
                return std::nullopt;
            const std::size_t size = std::size_t(1) << (number(object.at, 1) & 15);
            if (!has(object.at + 1, 1, size))
                return std::nullopt;
            object.count = number(object.at + 1, size);
            object.at += 1 + size;
        }
        if (isText(object) && !has(object.at, object.count, object.kind == 0x6 ? 2 : 1))
            return std::nullopt;
        return object;
    }

    static bool isText(const Object& object) { return object.kind == 0x5 || object.kind == 0x6; }
    bool spend(const Object& text) {
        if (text.count > mBudget)
            return false;
        mBudget -= static_cast<std::size_t>(text.count);
        return true;
    }
    std::u16string textOf(const Object& object) const {
        std::u16string text(static_cast<std::size_t>(object.count), u'\0');
        const std::size_t width = object.kind == 0x6 ? 2 : 1;
        for (std::size_t i = 0; i < text.size(); ++i)
            text[i] = static_cast<char16_t>(number(object.at + i * width, width));
        return text;
    }

    const std::string_view mBytes;
    std::size_t mBudget;
    std::size_t mEnd = 0; // the offset of the trailer
    std::size_t mOffsetSize = 0, mReferenceSize = 0;
    std::uint64_t mCount = 0, mTable = 0;
};

} // namespace

StringsTable readBinaryStrings(std::string_view bytes) {
    return BinaryReader(bytes).read();
}

} // namespace quoddle
