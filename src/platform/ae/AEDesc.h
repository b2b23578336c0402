// SPDX-License-Identifier: MIT
// AEDesc is the value that travels between scripts, scripting components and applications: bytes of a type, a list, a record, or an Apple
// event.
// Decision: a descriptor takes 16 bytes, with small data inside and everything else in shared storage that is copied when it is changed.
// Copies are cheap and may be handed to another thread; one AEDesc object must not be changed by one thread while another one uses it.
// Coercions are in AECoercion.h, object specifiers in AEObjects.h; descriptors are flattened only for sockets and storage (AEFlatten.h).
// Data is in the machine's byte order; texts are encoded as their type says.
#pragma once

#include "platform/base/FourCharCode.h"
#include "platform/base/OSStatus.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quoddle {

struct AEItem;
struct AEDescStorage;

constexpr std::int16_t kAutoGenerateReturnID = -1;
constexpr std::int32_t kAnyTransactionID = 0;

class AEDesc {
public:
    /// The null descriptor: type "null", no data.
    AEDesc() noexcept : mType("null"_4cc), mForm(Form::Small), mSmallSize(0), mSmall{} {}
    AEDesc(DescType type, std::string_view data);
    AEDesc(const AEDesc& other) noexcept;
    AEDesc(AEDesc&& other) noexcept;
    AEDesc& operator=(AEDesc other) noexcept;
    ~AEDesc();

    static AEDesc ofInt32(std::int32_t value); ///< "long"
    static AEDesc ofInt64(std::int64_t value); ///< "comp"
    static AEDesc ofDouble(double value);      ///< "doub"
    static AEDesc ofBoolean(bool value);       ///< "bool", one byte
    static AEDesc ofType(FourCharCode code);   ///< "type"
    static AEDesc ofEnum(FourCharCode code);   ///< "enum"
    static AEDesc ofCode(DescType type, FourCharCode code);
    static AEDesc ofText(std::u16string_view text);  ///< "utxt"
    static AEDesc ofUTF8(std::string_view text);     ///< "utxt", from UTF-8
    static AEDesc ofFilePath(std::string_view path); ///< "furl": the file URL of an absolute UTF-8 path
    static AEDesc ofDate(std::int64_t seconds);      ///< "ldt ": seconds since 1904-01-01 00:00 local time
    static AEDesc ofProcess(std::int32_t processID); ///< "kpid"
    static AEDesc ofCurrentProcess();                ///< "psn " {0, 2}
    static AEDesc list(std::vector<AEDesc> items);
    static AEDesc list();
    static AEDesc record(std::vector<AEItem> fields, DescType type = "reco"_4cc);
    static AEDesc record(DescType type = "reco"_4cc);
    static AEDesc appleEvent(AEEventClass eventClass, AEEventID eventID, AEDesc target = {}, std::int16_t returnID = kAutoGenerateReturnID,
                             std::int32_t transactionID = kAnyTransactionID);

    /// Makes an event from all its parts. `attributes` has neither "evcl" nor "evid", "rtid" or "tran".
    static AEDesc appleEvent(AEEventClass eventClass, AEEventID eventID, std::int16_t returnID, std::int32_t transactionID,
                             std::vector<AEItem> attributes, std::vector<AEItem> parameters);

    DescType type() const { return mType; }
    /// The same data under another type; storage is shared.
    AEDesc withType(DescType type) const;
    bool isNull() const { return mType == "null"_4cc; }
    bool isList() const;
    /// Whether the descriptor has fields by key: a record of any type, or an Apple event (its parameters).
    bool isRecord() const;
    bool isAppleEvent() const;

    /// The bytes of a scalar, valid until this object changes; empty for lists, records and events.
    std::string_view data() const;
    /// The code in the first four bytes, whatever the type; 0 when there are fewer bytes.
    FourCharCode code() const;

    /// The number of a list's items, a record's fields or an event's parameters; 0 for a scalar.
    std::size_t count() const;
    /// The item with the number, from 1, without its key; null when there is none. Valid until this object changes.
    const AEDesc* itemAt(std::size_t index) const;
    /// The key of the field with the number; 0 when there is none, and in lists.
    AEKeyword keyAt(std::size_t index) const;
    const AEDesc* find(AEKeyword key) const;
    std::span<const AEDesc> items() const;  ///< the items of a list; empty for anything else
    std::span<const AEItem> fields() const; ///< the fields of a record or an event; empty for anything else

    /// Inserts an item in front of the one at `index`; index 0 or count + 1 appends. -1719 for an index beyond, -1703 when this is no list.
    OSStatus insertItem(std::size_t index, AEDesc item);
    /// For lists and records; -1719 when there is no such item.
    OSStatus removeItem(std::size_t index);
    /// For records and events: replaces the field's value, or adds the field at the end. -1703 for anything else.
    OSStatus put(AEKeyword key, AEDesc value);
    /// -1701 when there is no such field.
    OSStatus remove(AEKeyword key);

    /// 0 unless this is an Apple event.
    AEEventClass eventClass() const;
    AEEventID eventID() const;
    /// An attribute; "evcl", "evid", "rtid" and "tran" are attributes like all others. nullopt when there is none.
    std::optional<AEDesc> attribute(AEKeyword key) const;
    /// -1707 unless this is an Apple event.
    OSStatus setAttribute(AEKeyword key, AEDesc value);
    std::span<const AEItem> attributes() const;

    /// The value after a coercion (AECoercion.h); nullopt when the coercion fails.
    std::optional<std::int32_t> asInt32() const;
    std::optional<std::int64_t> asInt64() const;
    std::optional<std::uint64_t> asUInt64() const;
    std::optional<double> asDouble() const;
    std::optional<bool> asBoolean() const;
    std::optional<FourCharCode> asType() const;
    std::optional<FourCharCode> asEnum() const;
    std::optional<std::u16string> asText() const;
    std::optional<std::string> asUTF8() const;
    /// The absolute path of a file URL, an alias or a text path.
    std::optional<std::string> asFilePath() const;

    /// Equal descriptors have the same type, the same bytes and the same items in the same order.
    bool operator==(const AEDesc& other) const;

private:
    enum class Form : std::uint8_t { Small, Shared };
    AEDesc(DescType type, AEDescStorage& storage) noexcept;
    AEDescStorage* shared() const { return mForm == Form::Shared ? mStorage : nullptr; }
    AEDescStorage& writable();
    static void release(AEDescStorage* storage) noexcept;

    DescType mType;
    Form mForm;
    std::uint8_t mSmallSize;
    union {
        char mSmall[8];
        AEDescStorage* mStorage;
    };
};

/// The most bytes that the shared storage of one descriptor takes, without the data, items or fields in it.
constexpr std::size_t kAELargestStorage = 128;

/// A field of a record, or a parameter or attribute of an event.
struct AEItem {
    AEKeyword key = 0;
    AEDesc value;
    bool operator==(const AEItem&) const = default;
};

/// Whether a descriptor has keyed fields, whatever its type.
inline bool AECheckIsRecord(const AEDesc& desc) {
    return desc.isRecord();
}

} // namespace quoddle
