// SPDX-License-Identifier: MIT
#include "platform/ae/AEFlatten.h"

#include <algorithm>

namespace quoddle {

namespace {

constexpr std::string_view kMagic = "QAE1";

enum class BodyForm : std::uint8_t { Bytes, List, Record, Event };

class Writer {
public:
    bool write(const AEDesc& desc, std::size_t depth) {
        if (depth > kAEMaxDepth || ++mCount > kAEMaxCount)
            return false;
        number(desc.type());
        if (desc.isAppleEvent())
            return event(desc, depth);
        if (desc.isRecord())
            return form(BodyForm::Record) && fields(desc.fields(), depth);
        if (desc.isList())
            return form(BodyForm::List) && list(desc.items(), depth);
        form(BodyForm::Bytes);
        number(static_cast<std::uint32_t>(std::min(desc.data().size(), kAEMaxSize + 1)));
        bytes.append(desc.data().substr(0, kAEMaxSize + 1));
        return bytes.size() <= kAEMaxSize;
    }

    std::string bytes = std::string(kMagic);

private:
    template<class T = std::uint32_t>
    void number(T value) {
        for (int shift = (static_cast<int>(sizeof(T)) - 1) * 8; shift >= 0; shift -= 8)
            bytes += static_cast<char>(value >> shift);
    }

    bool form(BodyForm form) {
        bytes += static_cast<char>(form);
        return true;
    }

    bool list(std::span<const AEDesc> items, std::size_t depth) {
        number(static_cast<std::uint32_t>(items.size()));
        return std::ranges::all_of(items, [&](const AEDesc& item) { return write(item, depth + 1); });
    }

    bool fields(std::span<const AEItem> items, std::size_t depth) {
        number(static_cast<std::uint32_t>(items.size()));
        return std::ranges::all_of(items, [&](const AEItem& item) {
            number(item.key);
            return write(item.value, depth + 1);
        });
    }

    bool event(const AEDesc& desc, std::size_t depth) {
        form(BodyForm::Event);
        number(desc.eventClass());
        number(desc.eventID());
        number(static_cast<std::uint16_t>(desc.attribute("rtid"_4cc)->asInt32().value_or(kAutoGenerateReturnID)));
        number(static_cast<std::uint32_t>(desc.attribute("tran"_4cc)->asInt32().value_or(kAnyTransactionID)));
        return fields(desc.attributes(), depth) && fields(desc.fields(), depth);
    }

    std::size_t mCount = 0;
};

// Reads a flattened descriptor. Once a read has failed, all further reads fail, too.
class Reader {
public:
    explicit Reader(std::string_view bytes, const AEMayTake* mayTake = nullptr) : mRest(bytes), mMayTake(mayTake) {}

    std::optional<AEDesc> read(std::size_t depth) {
        if (depth > kAEMaxDepth)
            return {};
        std::uint32_t type = number<std::uint32_t>();
        auto form = static_cast<BodyForm>(number<std::uint8_t>());
        if (mFailed)
            return {};
        switch (form) {
        case BodyForm::Bytes:
            return scalar(type);
        case BodyForm::List:
            return list(depth, type);
        case BodyForm::Record: {
            auto items = fields(depth);
            return items ? std::optional(AEDesc::record(std::move(*items), type)) : std::nullopt;
        }
        case BodyForm::Event:
            return type == "aevt"_4cc ? event(depth) : std::nullopt;
        }
        return {};
    }

    bool hasFailed() const { return mFailed; }
    std::size_t left() const { return mRest.size(); }
    std::size_t taken() const { return mTaken; }
    bool mayNotTake() const { return mMayNotTake; }

private:
    /// Whether memory for so many more bytes may be taken; always true without `mMayTake`.
    bool take(std::size_t bytes) {
        mTaken += bytes;
        if (!mMayTake || mTaken <= mGranted)
            return true;
        mGranted = mTaken + kStep;
        mMayNotTake = !(*mMayTake)(mGranted);
        return !mMayNotTake;
    }

    template<class T>
    T number() {
        if (mRest.size() < sizeof(T)) {
            mFailed = true;
            return 0;
        }
        T value = 0;
        for (std::size_t i = 0; i < sizeof(T); ++i)
            value = static_cast<T>(static_cast<std::uint64_t>(value) << 8 | static_cast<unsigned char>(mRest[i]));
        mRest.remove_prefix(sizeof(T));
        return value;
    }

    // Reads a count. A count for which there are not enough bytes left is refused before anything is allocated for it.
    std::optional<std::uint32_t> count(std::size_t smallest) {
        auto count = number<std::uint32_t>();
        return !mFailed && count <= mRest.size() / smallest ? std::optional(count) : std::nullopt;
    }

    std::optional<AEDesc> scalar(DescType type) {
        auto size = count(1);
        if (!size || (*size > kLargestInside && !take(kAELargestStorage + *size)))
            return {};
        AEDesc desc(type, mRest.substr(0, *size));
        mRest.remove_prefix(*size);
        return desc;
    }

    /// An empty vector with room for `size` items. nullopt beyond the bounds.
    template<class T>
    std::optional<std::vector<T>> places(std::optional<std::uint32_t> size) {
        mCount += size.value_or(0);
        if (!size || mCount > kAEMaxCount || !take(kAELargestStorage + *size * sizeof(T)))
            return {};
        std::vector<T> places;
        places.reserve(*size);
        return places;
    }

    std::optional<AEDesc> list(std::size_t depth, DescType type) {
        const auto size = count(kSmallestDesc);
        auto items = places<AEDesc>(size);
        if (!items)
            return {};
        for (std::uint32_t i = 0; i < *size; ++i) {
            auto item = read(depth + 1);
            if (!item)
                return {};
            items->push_back(std::move(*item));
        }
        return AEDesc::list(std::move(*items)).withType(type);
    }

    std::optional<std::vector<AEItem>> fields(std::size_t depth) {
        const auto size = count(kSmallestDesc + sizeof(AEKeyword));
        auto items = places<AEItem>(size);
        if (!items)
            return {};
        for (std::uint32_t i = 0; i < *size; ++i) {
            auto key = number<AEKeyword>();
            auto value = read(depth + 1);
            if (!value)
                return {};
            items->push_back({key, std::move(*value)});
        }
        return items;
    }

    std::optional<AEDesc> event(std::size_t depth) {
        auto eventClass = number<AEEventClass>();
        auto eventID = number<AEEventID>();
        auto returnID = static_cast<std::int16_t>(number<std::uint16_t>());
        auto transactionID = static_cast<std::int32_t>(number<std::uint32_t>());
        auto attributes = fields(depth);
        auto parameters = attributes ? fields(depth) : std::nullopt;
        if (!parameters)
            return {};
        return AEDesc::appleEvent(eventClass, eventID, returnID, transactionID, std::move(*attributes), std::move(*parameters));
    }

    static constexpr std::size_t kSmallestDesc = 9;  // a type, a form and the size 0
    static constexpr std::size_t kLargestInside = 8; // longer data is kept in storage outside the descriptor
    static constexpr std::size_t kStep = 16 << 10;
    std::string_view mRest;
    const AEMayTake* mMayTake;
    std::size_t mTaken = 0;
    std::size_t mGranted = 0;
    bool mMayNotTake = false;
    std::size_t mCount = 1; // announced descriptors, whether read already or not
    bool mFailed = false;
};

} // namespace

OSStatus AEFlattenDesc(const AEDesc& desc, std::string& bytes) {
    Writer writer;
    // The size is checked here again, because frames without data count as well.
    if (!writer.write(desc, 1) || writer.bytes.size() > kAEMaxSize) {
        bytes.clear();
        return errAECorruptData;
    }
    bytes = std::move(writer.bytes);
    return noErr;
}

namespace {

OSStatus readFirst(std::string_view bytes, AEDesc& desc, std::size_t& length, std::size_t& taken, const AEMayTake* mayTake) {
    if (bytes.size() > kAEMaxSize || !bytes.starts_with(kMagic))
        return errAECorruptData;
    Reader reader(bytes.substr(kMagic.size()), mayTake);
    std::optional<AEDesc> read = reader.read(1);
    if (!read || reader.hasFailed())
        return reader.mayNotTake() ? memFullErr : errAECorruptData;
    desc = std::move(*read);
    length = bytes.size() - reader.left();
    taken = reader.taken();
    return noErr;
}

OSStatus readWhole(std::string_view bytes, AEDesc& desc, std::size_t& taken, const AEMayTake* mayTake) {
    AEDesc first;
    std::size_t length = 0;
    if (const OSStatus status = readFirst(bytes, first, length, taken, mayTake); status != noErr)
        return status;
    if (length != bytes.size())
        return errAECorruptData;
    desc = std::move(first);
    return noErr;
}

} // namespace

OSStatus AEUnflattenFirstDesc(std::string_view bytes, AEDesc& desc, std::size_t& length) {
    std::size_t taken = 0;
    return readFirst(bytes, desc, length, taken, nullptr);
}

OSStatus AEUnflattenDesc(std::string_view bytes, AEDesc& desc) {
    std::size_t taken = 0;
    return readWhole(bytes, desc, taken, nullptr);
}

OSStatus AEUnflattenDesc(std::string_view bytes, AEDesc& desc, const AEMayTake& mayTake, std::size_t& taken) {
    return readWhole(bytes, desc, taken, &mayTake);
}

} // namespace quoddle
