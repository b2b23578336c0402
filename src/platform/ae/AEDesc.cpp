// SPDX-License-Identifier: MIT
#include "platform/ae/AEDesc.h"

#include <algorithm>
#include <atomic>
#include <cstring>

namespace quoddle {

// Storage that descriptors share. It must not be changed while more than one descriptor refers to it.
struct AEDescStorage {
    enum class Kind : std::uint8_t { Bytes, List, Record, Event };

    explicit AEDescStorage(Kind storageKind) : kind(storageKind) {}
    AEDescStorage(const AEDescStorage& other) : kind(other.kind) {}
    AEDescStorage& operator=(const AEDescStorage&) = delete;

    std::atomic<std::uint32_t> references = 1;
    const Kind kind;
    AEDescStorage* nextDoomed = nullptr;
};

namespace {

using Kind = AEDescStorage::Kind;

struct BytesStorage : AEDescStorage {
    explicit BytesStorage(std::string_view data) : AEDescStorage(Kind::Bytes), bytes(data) {}
    std::string bytes;
};

struct ListStorage : AEDescStorage {
    explicit ListStorage(std::vector<AEDesc> list) : AEDescStorage(Kind::List), items(std::move(list)) {}
    std::vector<AEDesc> items;
};

struct RecordStorage : AEDescStorage {
    explicit RecordStorage(std::vector<AEItem> record, Kind recordKind = Kind::Record)
        : AEDescStorage(recordKind), fields(std::move(record)) {}
    std::vector<AEItem> fields;
};

struct EventStorage : RecordStorage {
    EventStorage() : RecordStorage({}, Kind::Event) {}
    AEEventClass eventClass = 0;
    AEEventID eventID = 0;
    std::int16_t returnID = kAutoGenerateReturnID;
    std::int32_t transactionID = kAnyTransactionID;
    std::vector<AEItem> attributes;
};

// The allocator's own overhead for two allocations: the storage and its contents.
constexpr std::size_t kAllocations = 2 * 2 * sizeof(void*);
static_assert(sizeof(EventStorage) <= kAELargestStorage && sizeof(RecordStorage) + kAllocations <= kAELargestStorage &&
              sizeof(ListStorage) + kAllocations <= kAELargestStorage && sizeof(BytesStorage) + kAllocations <= kAELargestStorage);

template<class S>
S* as(AEDescStorage* storage, Kind kind) {
    return storage && storage->kind == kind ? static_cast<S*>(storage) : nullptr;
}

ListStorage* listOf(AEDescStorage* storage) {
    return as<ListStorage>(storage, Kind::List);
}

EventStorage* eventOf(AEDescStorage* storage) {
    return as<EventStorage>(storage, Kind::Event);
}

RecordStorage* recordOf(AEDescStorage* storage) {
    return storage && (storage->kind == Kind::Record || storage->kind == Kind::Event) ? static_cast<RecordStorage*>(storage) : nullptr;
}

AEDescStorage* cloned(AEDescStorage& storage) {
    switch (storage.kind) {
    case Kind::Bytes:
        return new BytesStorage(static_cast<BytesStorage&>(storage));
    case Kind::List:
        return new ListStorage(static_cast<ListStorage&>(storage));
    case Kind::Record:
        return new RecordStorage(static_cast<RecordStorage&>(storage));
    case Kind::Event:
        return new EventStorage(static_cast<EventStorage&>(storage));
    }
    return nullptr;
}

void destroy(AEDescStorage* storage) {
    switch (storage->kind) {
    case Kind::Bytes:
        delete static_cast<BytesStorage*>(storage);
        break;
    case Kind::List:
        delete static_cast<ListStorage*>(storage);
        break;
    case Kind::Record:
        delete static_cast<RecordStorage*>(storage);
        break;
    case Kind::Event:
        delete static_cast<EventStorage*>(storage);
        break;
    }
}

template<class Visit>
void forEachChild(AEDescStorage* storage, Visit visit) {
    if (ListStorage* list = listOf(storage))
        for (AEDesc& item : list->items)
            visit(item);
    if (RecordStorage* record = recordOf(storage))
        for (AEItem& field : record->fields)
            visit(field.value);
    if (EventStorage* event = eventOf(storage))
        for (AEItem& attribute : event->attributes)
            visit(attribute.value);
}

AEItem* fieldIn(std::vector<AEItem>& fields, AEKeyword key) {
    auto found = std::find_if(fields.begin(), fields.end(), [key](const AEItem& field) { return field.key == key; });
    return found == fields.end() ? nullptr : &*found;
}

void putField(std::vector<AEItem>& fields, AEKeyword key, AEDesc value) {
    if (AEItem* field = fieldIn(fields, key))
        field->value = std::move(value);
    else
        fields.push_back({key, std::move(value)});
}

} // namespace

AEDesc::AEDesc(DescType type, std::string_view data) : mType(type), mForm(Form::Small), mSmallSize(0), mSmall{} {
    if (data.size() <= sizeof mSmall) {
        std::copy(data.begin(), data.end(), mSmall);
        mSmallSize = static_cast<std::uint8_t>(data.size());
    } else {
        mForm = Form::Shared;
        mStorage = new BytesStorage(data);
    }
}

AEDesc::AEDesc(DescType type, AEDescStorage& storage) noexcept : mType(type), mForm(Form::Shared), mSmallSize(0), mStorage(&storage) {}

AEDesc::AEDesc(const AEDesc& other) noexcept : mType(other.mType), mForm(other.mForm), mSmallSize(other.mSmallSize) {
    std::memcpy(mSmall, other.mSmall, sizeof mSmall);
    if (AEDescStorage* storage = shared())
        storage->references.fetch_add(1, std::memory_order_relaxed);
}

AEDesc::AEDesc(AEDesc&& other) noexcept : AEDesc() {
    std::swap(mType, other.mType);
    std::swap(mForm, other.mForm);
    std::swap(mSmallSize, other.mSmallSize);
    std::swap(mSmall, other.mSmall);
}

AEDesc& AEDesc::operator=(AEDesc other) noexcept {
    std::swap(mType, other.mType);
    std::swap(mForm, other.mForm);
    std::swap(mSmallSize, other.mSmallSize);
    std::swap(mSmall, other.mSmall);
    return *this;
}

AEDesc::~AEDesc() {
    if (AEDescStorage* storage = shared())
        release(storage);
}

// Destroys nested descriptors from a list of doomed storage. Recursion would exhaust the stack when they are nested deeply.
void AEDesc::release(AEDescStorage* storage) noexcept {
    AEDescStorage* doomed = nullptr;
    auto drop = [&doomed](AEDescStorage* dropped) {
        if (dropped->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            dropped->nextDoomed = doomed;
            doomed = dropped;
        }
    };
    drop(storage);
    while (doomed) {
        AEDescStorage* current = doomed;
        doomed = current->nextDoomed;
        forEachChild(current, [&drop](AEDesc& child) {
            if (AEDescStorage* childStorage = child.shared()) {
                child.mForm = Form::Small;
                drop(childStorage);
            }
        });
        destroy(current);
    }
}

// The storage for a change, copied first when other descriptors share it. Only for descriptors with storage.
AEDescStorage& AEDesc::writable() {
    if (mStorage->references.load(std::memory_order_acquire) > 1) {
        AEDescStorage* copy = cloned(*mStorage);
        release(mStorage);
        mStorage = copy;
    }
    return *mStorage;
}

AEDesc AEDesc::list(std::vector<AEDesc> items) {
    return {"list"_4cc, *new ListStorage(std::move(items))};
}

AEDesc AEDesc::list() {
    return list({});
}

AEDesc AEDesc::record(std::vector<AEItem> fields, DescType type) {
    return {type, *new RecordStorage(std::move(fields))};
}

AEDesc AEDesc::record(DescType type) {
    return record({}, type);
}

AEDesc AEDesc::appleEvent(AEEventClass eventClass, AEEventID eventID, AEDesc target, std::int16_t returnID, std::int32_t transactionID) {
    return appleEvent(eventClass, eventID, returnID, transactionID, {{"addr"_4cc, std::move(target)}}, {});
}

AEDesc AEDesc::appleEvent(AEEventClass eventClass, AEEventID eventID, std::int16_t returnID, std::int32_t transactionID,
                          std::vector<AEItem> attributes, std::vector<AEItem> parameters) {
    auto* event = new EventStorage;
    event->eventClass = eventClass;
    event->eventID = eventID;
    event->returnID = returnID;
    event->transactionID = transactionID;
    event->attributes = std::move(attributes);
    event->fields = std::move(parameters);
    return {"aevt"_4cc, *event};
}

AEDesc AEDesc::withType(DescType type) const {
    if (const EventStorage* event = eventOf(shared()); event && type != mType)
        return record(event->fields, type);
    AEDesc result = *this;
    result.mType = type;
    return result;
}

bool AEDesc::isList() const {
    return listOf(shared());
}

bool AEDesc::isRecord() const {
    return recordOf(shared());
}

bool AEDesc::isAppleEvent() const {
    return eventOf(shared());
}

std::string_view AEDesc::data() const {
    if (mForm == Form::Small)
        return {mSmall, mSmallSize};
    const auto* bytes = as<BytesStorage>(mStorage, Kind::Bytes);
    return bytes ? std::string_view(bytes->bytes) : std::string_view();
}

FourCharCode AEDesc::code() const {
    FourCharCode code = 0;
    if (std::string_view bytes = data(); bytes.size() >= sizeof code)
        std::memcpy(&code, bytes.data(), sizeof code);
    return code;
}

std::size_t AEDesc::count() const {
    return isList() ? items().size() : fields().size();
}

const AEDesc* AEDesc::itemAt(std::size_t index) const {
    if (index == 0 || index > count())
        return nullptr;
    return isList() ? &items()[index - 1] : &fields()[index - 1].value;
}

AEKeyword AEDesc::keyAt(std::size_t index) const {
    return index == 0 || index > fields().size() ? 0 : fields()[index - 1].key;
}

const AEDesc* AEDesc::find(AEKeyword key) const {
    RecordStorage* record = recordOf(shared());
    const AEItem* field = record ? fieldIn(record->fields, key) : nullptr;
    return field ? &field->value : nullptr;
}

std::span<const AEDesc> AEDesc::items() const {
    const ListStorage* list = listOf(shared());
    return list ? std::span<const AEDesc>(list->items) : std::span<const AEDesc>();
}

std::span<const AEItem> AEDesc::fields() const {
    const RecordStorage* record = recordOf(shared());
    return record ? std::span<const AEItem>(record->fields) : std::span<const AEItem>();
}

OSStatus AEDesc::insertItem(std::size_t index, AEDesc item) {
    if (!isList())
        return errAEWrongDataType;
    std::size_t end = count() + 1;
    if (index > end)
        return errAEIllegalIndex;
    auto& items = listOf(&writable())->items;
    items.insert(items.begin() + static_cast<std::ptrdiff_t>((index == 0 ? end : index) - 1), std::move(item));
    return noErr;
}

OSStatus AEDesc::removeItem(std::size_t index) {
    if (index == 0 || index > count())
        return errAEIllegalIndex;
    AEDescStorage& storage = writable();
    auto offset = static_cast<std::ptrdiff_t>(index - 1);
    if (ListStorage* list = listOf(&storage))
        list->items.erase(list->items.begin() + offset);
    else
        recordOf(&storage)->fields.erase(recordOf(&storage)->fields.begin() + offset);
    return noErr;
}

OSStatus AEDesc::put(AEKeyword key, AEDesc value) {
    if (!isRecord())
        return errAEWrongDataType;
    putField(recordOf(&writable())->fields, key, std::move(value));
    return noErr;
}

OSStatus AEDesc::remove(AEKeyword key) {
    if (!find(key))
        return errAEDescNotFound;
    std::erase_if(recordOf(&writable())->fields, [key](const AEItem& field) { return field.key == key; });
    return noErr;
}

AEEventClass AEDesc::eventClass() const {
    const EventStorage* event = eventOf(shared());
    return event ? event->eventClass : 0;
}

AEEventID AEDesc::eventID() const {
    const EventStorage* event = eventOf(shared());
    return event ? event->eventID : 0;
}

std::optional<AEDesc> AEDesc::attribute(AEKeyword key) const {
    EventStorage* event = eventOf(shared());
    if (!event)
        return {};
    switch (key) {
    case "evcl"_4cc:
        return ofType(event->eventClass);
    case "evid"_4cc:
        return ofType(event->eventID);
    case "rtid"_4cc:
        return AEDesc("shor"_4cc, {reinterpret_cast<const char*>(&event->returnID), sizeof event->returnID});
    case "tran"_4cc:
        return ofInt32(event->transactionID);
    default:
        const AEItem* found = fieldIn(event->attributes, key);
        return found ? std::optional(found->value) : std::nullopt;
    }
}

OSStatus AEDesc::setAttribute(AEKeyword key, AEDesc value) {
    if (!isAppleEvent())
        return errAENotAppleEvent;
    EventStorage& event = *eventOf(&writable());
    switch (key) {
    case "evcl"_4cc:
        event.eventClass = value.asType().value_or(event.eventClass);
        break;
    case "evid"_4cc:
        event.eventID = value.asType().value_or(event.eventID);
        break;
    case "rtid"_4cc:
        event.returnID = static_cast<std::int16_t>(value.asInt32().value_or(event.returnID));
        break;
    case "tran"_4cc:
        event.transactionID = value.asInt32().value_or(event.transactionID);
        break;
    default:
        putField(event.attributes, key, std::move(value));
    }
    return noErr;
}

std::span<const AEItem> AEDesc::attributes() const {
    const EventStorage* event = eventOf(shared());
    return event ? std::span<const AEItem>(event->attributes) : std::span<const AEItem>();
}

bool AEDesc::operator==(const AEDesc& other) const {
    if (mType != other.mType || isList() != other.isList() || isRecord() != other.isRecord() || isAppleEvent() != other.isAppleEvent())
        return false;
    if (shared() && shared() == other.shared())
        return true;
    return data() == other.data() && eventClass() == other.eventClass() && eventID() == other.eventID() &&
           std::ranges::equal(items(), other.items()) && std::ranges::equal(fields(), other.fields()) &&
           std::ranges::equal(attributes(), other.attributes());
}

} // namespace quoddle
