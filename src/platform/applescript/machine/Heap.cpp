// SPDX-License-Identifier: MIT
#include "platform/applescript/machine/Heap.h"

#include "platform/applescript/machine/Code.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace quoddle::machine {

namespace {

constexpr std::size_t kGranule = 16;
constexpr std::size_t kClasses = 8;
constexpr std::size_t kBlockSize = std::size_t(64) << 10;
constexpr std::size_t kReserve = std::size_t(4) << 20; // takes address space only; the memory is never touched

std::size_t sizeOf(HeapType type) {
    switch (type) {
    case HeapType::Symbol:
        return sizeof(Symbol);
    case HeapType::EventName:
        return sizeof(EventName);
    case HeapType::Text:
        return sizeof(Text);
    case HeapType::List:
        return sizeof(List);
    case HeapType::Record:
        return sizeof(Record);
    case HeapType::Date:
        return sizeof(Date);
    case HeapType::Data:
        return sizeof(Data);
    case HeapType::Application:
        return sizeof(Application);
    case HeapType::Specifier:
        return sizeof(Specifier);
    case HeapType::Handler:
        return sizeof(Handler);
    case HeapType::Script:
        return sizeof(Script);
    case HeapType::Environment:
        return sizeof(Environment);
    case HeapType::Stored:
        return sizeof(Stored);
    }
    return 0;
}

/// Shorter texts get no room to grow: most of them are joined once.
constexpr std::uint32_t kLengthThatGrows = 16;

TextBuffer* makeBuffer(std::size_t capacity) {
    void* memory = std::malloc(sizeof(TextBuffer) + capacity * sizeof(char16_t));
    if (!memory)
        throw std::bad_alloc();
    return new (memory) TextBuffer{1, 0, 0, static_cast<std::uint32_t>(capacity)};
}

template<class Buffer>
void releaseBuffer(Buffer* buffer) {
    if (buffer && --buffer->references == 0)
        std::free(buffer);
}

/// The share of its room that a list is charged for.
std::size_t sharedRoom(const List* list) {
    return list->buffer ? list->buffer->capacity / list->buffer->references : 0;
}

/// The capacity for a list that has grown beyond its room: twice its length, since lists that grow tend to grow on.
std::size_t grown(const List* list) {
    return std::clamp<std::size_t>(std::size_t(list->count) * 2, 4, Heap::kMaximumListLength);
}

/// The number of items that may be appended to a list in its present buffer.
std::size_t roomBehind(const List* list) {
    if (!list->buffer || (list->isShared() && list->end() != list->buffer->used))
        return 0;
    return list->buffer->capacity - list->end();
}

} // namespace

Handler::Handler(const Object* block, std::shared_ptr<ObjectStore> blockStore)
    : HeapObject(kType), source(block), store(std::move(blockStore)) {}

Handler::Handler(Handler* original, Script* script)
    : HeapObject(kType), source(original->source), store(original->store),
      definition(original->definition ? original->definition : original), home(script) {}

Handler::~Handler() {
    if (!definition)
        delete code;
}

bool Script::isDefinedWithin(const Script* other) const {
    const HeapObject* scope = outer;
    for (int limit = 0; other && scope && limit < kMaximumScopes; ++limit, scope = scopeAround(scope))
        if (scope == other)
            return true;
    return false;
}

void Script::set(Value slotName, Value value) {
    std::uint32_t index = layout->find(slotName);
    if (index == Layout::kNone) {
        if (layout.use_count() > 1)
            layout = std::make_shared<Layout>(*layout);
        index = layout->add(slotName);
        slots.resize(layout->names.size());
    }
    slots[index] = value;
}

void Script::remove(Value slotName) {
    const std::uint32_t index = layout->find(slotName);
    if (index == Layout::kNone)
        return;
    // The script gets a new layout even when nobody shares the old one, because caches may know the name's place by the old layout's ID.
    layout = std::make_shared<Layout>(*layout);
    layout->indexes.erase(slotName.bits());
    layout->names[index] = Value();
    slots[index] = Value();
}

Heap::Heap(std::function<void(Heap&)> markRoots, std::function<void()> forgetUnmarked)
    : mMarkRoots(std::move(markRoots)), mForgetUnmarked(std::move(forgetUnmarked)) {}

Heap::~Heap() {
    for (HeapObject* object : mObjects)
        release(object);
    for (auto& [key, symbol] : mSymbols)
        delete symbol;
    for (auto& [key, name] : mEventNames)
        delete name;
}

/// Small objects lie in blocks that are cut into cells of one size; the cell freed last is handed out first.
void* Heap::allocate(std::size_t size) {
    const std::size_t sizeClass = (size + kGranule - 1) / kGranule;
    mAllocated += size;
    if (sizeClass > kClasses)
        return ::operator new(size);
    void*& free = mFree[sizeClass - 1];
    if (!free) {
        const std::size_t cell = sizeClass * kGranule;
        char* block = mBlocks.emplace_back(new char[kBlockSize]).get();
        for (std::size_t at = 0; at + cell <= kBlockSize; at += cell) {
            std::memcpy(block + at, &free, sizeof(void*));
            free = block + at;
        }
    }
    void* memory = free;
    std::memcpy(&free, memory, sizeof(void*));
    return memory;
}

void Heap::release(HeapObject* object) {
    const std::size_t size = sizeOf(object->type);
    switch (object->type) {
    case HeapType::Text:
        releaseBuffer(static_cast<Text*>(object)->buffer);
        break;
    case HeapType::List:
        releaseBuffer(static_cast<List*>(object)->buffer);
        break;
    case HeapType::Record:
        static_cast<Record*>(object)->~Record();
        break;
    case HeapType::Data:
        static_cast<Data*>(object)->~Data();
        break;
    case HeapType::Application:
        static_cast<Application*>(object)->~Application();
        break;
    case HeapType::Handler:
        static_cast<Handler*>(object)->~Handler();
        break;
    case HeapType::Script:
        static_cast<Script*>(object)->~Script();
        break;
    case HeapType::Environment:
        static_cast<Environment*>(object)->~Environment();
        break;
    default:
        break;
    }
    const std::size_t sizeClass = (size + kGranule - 1) / kGranule;
    if (sizeClass > kClasses) {
        ::operator delete(object);
        return;
    }
    std::memcpy(static_cast<void*>(object), &mFree[sizeClass - 1], sizeof(void*));
    mFree[sizeClass - 1] = object;
}

Symbol* Heap::symbol(std::string_view key, std::string_view spelling) {
    auto [entry, isNew] = mSymbols.try_emplace(std::string(key), nullptr);
    if (isNew)
        entry->second = new Symbol(key, spelling.empty() ? key : spelling);
    return entry->second;
}

EventName* Heap::eventName(std::string_view bytes) {
    auto [entry, isNew] = mEventNames.try_emplace(std::string(bytes.substr(0, 8)), nullptr);
    if (isNew) {
        std::string whole(bytes);
        if (whole.size() < 24)
            whole += std::string("****\0\0\0\0\0\0\0\0****", 16);
        entry->second = new EventName(whole);
    }
    return entry->second;
}

Text* Heap::text(std::u16string_view characters) {
    Text* text = make<Text>();
    if (characters.empty())
        return text;
    text->buffer = makeBuffer(characters.size());
    std::memcpy(text->buffer->characters(), characters.data(), characters.size() * sizeof(char16_t));
    text->buffer->used = text->length = static_cast<std::uint32_t>(characters.size());
    text->characters = text->buffer->characters();
    mAllocated += characters.size() * sizeof(char16_t) + sizeof(TextBuffer);
    return text;
}

Text* Heap::text(std::string_view ascii) {
    Text* text = make<Text>();
    if (ascii.empty())
        return text;
    text->buffer = makeBuffer(ascii.size());
    std::copy(ascii.begin(), ascii.end(), text->buffer->characters());
    text->buffer->used = text->length = static_cast<std::uint32_t>(ascii.size());
    text->characters = text->buffer->characters();
    text->flags = Text::kKnownSimple;
    mAllocated += ascii.size() * sizeof(char16_t) + sizeof(TextBuffer);
    return text;
}

Text* Heap::substring(const Text* whole, std::size_t start, std::size_t length) {
    if (length == 1 && whole->characters[start] < std::size(mCharacters)) {
        Text*& character = mCharacters[whole->characters[start]];
        if (!character) {
            character = text({whole->characters + start, 1});
            character->flags = Text::kKnownSimple;
        }
        return character;
    }
    Text* text = make<Text>();
    if (length == 0)
        return text;
    // A short piece of a long text gets a copy of its characters, so that it does not keep the whole buffer alive.
    if (length < 32 && whole->buffer->capacity > 4096) {
        text->buffer = makeBuffer(length);
        std::memcpy(text->buffer->characters(), whole->characters + start, length * sizeof(char16_t));
        text->buffer->used = static_cast<std::uint32_t>(length);
        text->characters = text->buffer->characters();
        mAllocated += length * sizeof(char16_t) + sizeof(TextBuffer);
    } else {
        text->buffer = whole->buffer;
        ++text->buffer->references;
        text->characters = whole->characters + start;
    }
    text->length = static_cast<std::uint32_t>(length);
    text->flags = whole->flags & Text::kKnownSimple;
    return text;
}

Text* Heap::concatenate(const Text* left, const Text* right) {
    const std::size_t length = std::size_t(left->length) + right->length;
    if (length > kMaximumTextLength)
        return nullptr;
    TextBuffer* const first = left->buffer;
    TextBuffer* const second = right->buffer;
    const bool atEnd = first && left->characters + left->length == first->characters() + first->used;
    const bool atBeginning = second && right->characters == second->characters() + second->begin;
    Text* text = make<Text>();
    if (atEnd && right->length <= first->capacity - first->used) {
        // `right` may lie in the same buffer, but always before `used`, so the two do not overlap.
        std::memcpy(first->characters() + first->used, right->characters, right->length * sizeof(char16_t));
        first->used += right->length;
        ++first->references;
        text->buffer = first;
        text->characters = left->characters;
    } else if (atBeginning && left->length <= second->begin) {
        second->begin -= left->length;
        std::memcpy(second->characters() + second->begin, left->characters, left->length * sizeof(char16_t));
        ++second->references;
        text->buffer = second;
        text->characters = second->characters() + second->begin;
    } else {
        // A text that has grown at one side tends to grow there again, so it gets room for that, and keeps the room at the other side.
        const bool growsBehind = atEnd && left->length >= kLengthThatGrows;
        const bool growsBefore = atBeginning && right->length >= kLengthThatGrows && right->length > left->length;
        const bool beginsBuffer = first && left->characters == first->characters() + first->begin;
        const bool endsBuffer = second && right->characters + right->length == second->characters() + second->used;
        const std::size_t most = kMaximumTextLength - length;
        const std::size_t before = std::min(growsBefore ? length : growsBehind && beginsBuffer ? first->begin : 0, most);
        const std::size_t behind = std::min(growsBehind                 ? length
                                            : growsBefore && endsBuffer ? second->capacity - second->used
                                                                        : 0,
                                            most - before);
        TextBuffer* buffer = makeBuffer(before + length + behind);
        text->buffer = buffer;
        text->characters = buffer->characters() + before;
        std::memcpy(buffer->characters() + before, left->characters, left->length * sizeof(char16_t));
        std::memcpy(buffer->characters() + before + left->length, right->characters, right->length * sizeof(char16_t));
        buffer->begin = static_cast<std::uint32_t>(before);
        buffer->used = static_cast<std::uint32_t>(before + length);
        mAllocated += buffer->capacity * sizeof(char16_t) + sizeof(TextBuffer);
    }
    text->length = static_cast<std::uint32_t>(length);
    const bool joinsLineEnd =
        left->length > 0 && right->length > 0 && text->characters[left->length - 1] == u'\r' && text->characters[left->length] == u'\n';
    if (!joinsLineEnd)
        text->flags = left->flags & right->flags & Text::kKnownSimple;
    return text;
}

List* Heap::list(std::size_t capacity) {
    if (capacity > kMaximumListLength)
        throw TooLong();
    List* list = make<List>();
    if (!reserve(list, capacity))
        throw std::bad_alloc();
    return list;
}

Record* Heap::record() {
    return make<Record>();
}

bool Heap::reserve(List* list, std::size_t capacity) {
    if (capacity <= list->count + roomBehind(list))
        return true;
    if (capacity > kMaximumListLength)
        return false;
    if (!list->buffer || list->isShared() || list->items != list->buffer->values())
        return moveTo(list, capacity);
    auto* buffer = static_cast<ListBuffer*>(std::realloc(list->buffer, sizeof(ListBuffer) + capacity * sizeof(Value)));
    if (!buffer)
        return false;
    mAllocated += (capacity - buffer->capacity) * sizeof(Value);
    buffer->capacity = static_cast<std::uint32_t>(capacity);
    list->buffer = buffer;
    list->items = buffer->values();
    return true;
}

/// Moves a list to a buffer of its own. False when there is no memory.
bool Heap::moveTo(List* list, std::size_t capacity, std::size_t roomInFront) {
    void* memory = std::malloc(sizeof(ListBuffer) + capacity * sizeof(Value));
    if (!memory)
        return false;
    const auto used = static_cast<std::uint32_t>(roomInFront + list->count);
    auto* buffer = new (memory) ListBuffer{1, used, static_cast<std::uint32_t>(capacity)};
    std::copy_n(list->items, list->count, buffer->values() + roomInFront);
    releaseBuffer(list->buffer);
    mAllocated += capacity * sizeof(Value);
    list->buffer = buffer;
    list->items = buffer->values() + roomInFront;
    return true;
}

bool Heap::append(List* list, Value value) {
    if (roomBehind(list) == 0 && (list->count == kMaximumListLength || !reserve(list, grown(list))))
        return false;
    list->items[list->count++] = value;
    list->buffer->used = static_cast<std::uint32_t>(list->end());
    return true;
}

bool Heap::prepend(List* list, Value value) {
    // The room in front of the items in a shared buffer may be another list's.
    if (!list->buffer || list->isShared() || list->items == list->buffer->values()) {
        const std::size_t capacity = grown(list), room = capacity - list->count;
        if (room == 0 || !moveTo(list, capacity, room - room / 2)) // half of the room stays behind the items, because a queue grows there
            return false;
    }
    *--list->items = value;
    ++list->count;
    return true;
}

void Heap::detach(List* list) {
    if (list->isShared() && !moveTo(list, list->count))
        throw std::bad_alloc();
}

List* Heap::part(List* whole, std::size_t start, std::size_t length) {
    // A small part gets a buffer of its own, so that it neither keeps the whole list alive nor makes it move when one of them is changed.
    if (length < whole->count / 8 || length == 0 || length < whole->buffer->capacity / 32) {
        List* part = list(length);
        std::copy_n(whole->items + start, length, part->items);
        part->count = static_cast<std::uint32_t>(length);
        return part;
    }
    List* part = make<List>();
    share(whole, part);
    part->items = whole->items + start;
    part->count = static_cast<std::uint32_t>(length);
    return part;
}

void Heap::share(List* list, List* with) {
    if (!list->isShared())
        list->buffer->used = static_cast<std::uint32_t>(list->end());
    ++list->buffer->references;
    with->buffer = list->buffer;
    with->items = list->items;
    with->count = list->count;
}

List* Heap::concatenate(List* left, std::span<const Value> items) {
    const std::size_t count = left->count + items.size();
    if (count > kMaximumListLength)
        return nullptr;
    const bool ownsEnd = left->buffer && (!left->isShared() || left->end() == left->buffer->used);
    List* whole = make<List>();
    if (ownsEnd && items.size() <= roomBehind(left)) {
        share(left, whole);
    } else {
        // A list that is appended to tends to be appended to again, so it gets room for that.
        if (!reserve(whole, ownsEnd && left->count >= 16 ? std::min(count * 2, kMaximumListLength) : count))
            throw std::bad_alloc();
        std::copy_n(left->items, left->count, whole->items);
        whole->count = left->count;
    }
    std::copy(items.begin(), items.end(), whole->items + whole->count);
    whole->count = static_cast<std::uint32_t>(count);
    if (whole->buffer)
        whole->buffer->used = static_cast<std::uint32_t>(whole->end());
    return whole;
}

void Heap::scan(HeapObject* object) {
    switch (object->type) {
    case HeapType::List: {
        auto* list = static_cast<List*>(object);
        for (std::uint32_t i = 0; i < list->count; ++i)
            mark(list->items[i]);
        break;
    }
    case HeapType::Record:
        for (const Record::Entry& entry : static_cast<Record*>(object)->entries)
            mark(entry.value);
        break;
    case HeapType::Specifier: {
        auto* specifier = static_cast<Specifier*>(object);
        for (Value part : {specifier->container, specifier->a, specifier->b, specifier->c})
            mark(part);
        break;
    }
    case HeapType::Handler: {
        auto* handler = static_cast<Handler*>(object);
        if (handler->definition)
            mark(handler->definition);
        else if (handler->code)
            for (Value constant : handler->code->constants)
                mark(constant);
        mark(handler->home);
        break;
    }
    case HeapType::Script: {
        auto* script = static_cast<Script*>(object);
        for (Value slot : script->slots)
            mark(slot);
        mark(script->name);
        mark(script->parent);
        mark(script->outer);
        break;
    }
    case HeapType::Environment: {
        auto* environment = static_cast<Environment*>(object);
        for (Value value : environment->values)
            mark(value);
        mark(environment->outer);
        break;
    }
    default:
        break;
    }
}

void Heap::keepReserve() {
    if (!mReserve)
        mReserve.reset(new (std::nothrow) char[kReserve]);
}

void Heap::markAll() {
    mMarkRoots(*this);
    for (const Root* root = mRoots; root; root = root->mNext)
        mark(root->mValue);
    for (Text* character : mCharacters)
        mark(character);
    while (!mGray.empty()) {
        HeapObject* object = mGray.back();
        mGray.pop_back();
        scan(object);
    }
}

void Heap::unmarkAll() {
    mGray.clear();
    for (HeapObject* object : mObjects)
        object->marked = false;
    for (auto& [key, symbol] : mSymbols)
        symbol->marked = false;
    for (auto& [key, name] : mEventNames)
        name->marked = false;
}

void Heap::collect() {
    if (mHolds > 0)
        return;
    try {
        markAll();
    } catch (const std::bad_alloc&) {
        // Memory was too short to mark everything. Unmarked objects may be alive, so nothing is swept; the garbage stays until the next
        // collection.
        unmarkAll();
        mThreshold = mAllocated + kMinimumThreshold;
        return;
    }
    if (mForgetUnmarked)
        mForgetUnmarked();
    // Interned names are never freed, so sweeping does not unmark them.
    for (auto& [key, symbol] : mSymbols)
        symbol->marked = false;
    for (auto& [key, name] : mEventNames)
        name->marked = false;

    std::size_t live = 0, kept = 0;
    for (HeapObject* object : mObjects) {
        if (!object->marked) {
            release(object);
            continue;
        }
        object->marked = false;
        mObjects[kept++] = object;
        live += sizeOf(object->type);
        if (object->type == HeapType::List)
            live += sharedRoom(static_cast<List*>(object)) * sizeof(Value);
        else if (object->type == HeapType::Text)
            live += static_cast<Text*>(object)->length * sizeof(char16_t);
        else if (object->type == HeapType::Record)
            live += static_cast<Record*>(object)->entries.capacity() * sizeof(Record::Entry);
    }
    mObjects.resize(kept);
    mAllocated = live;
    mThreshold = std::max(kMinimumThreshold, live * 2);
    ++mCollections;
}

} // namespace quoddle::machine
