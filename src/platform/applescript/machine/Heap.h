// SPDX-License-Identifier: MIT
// The heap of one machine: precise mark and sweep.
//
// Decision: collection happens only at safe points, when the machine asks for it between two instructions; making an object never collects.
// Native code may therefore hold values in C++ variables freely, as long as it does not run script code or give up the interpreter lock in
// between; where it does, it roots them with a Root, or puts collection off with a Hold where they are too many. Price: the garbage of one
// instruction, however much, stays until the instruction ends.
//
// Roots are what the owner marks in its callback, the living Root objects, and the interned names. Not thread-safe: the interpreter lock
// guards the heap.
#pragma once

#include "platform/applescript/machine/HeapObject.h"

#include <functional>
#include <span>

namespace quoddle::machine {

class Heap {
public:
    /// A collection calls `forgetUnmarked` when all living objects are marked. Whatever refers to objects without keeping them alive must
    /// then let go of those that are not (isMarked).
    explicit Heap(std::function<void(Heap&)> markRoots, std::function<void()> forgetUnmarked = {});
    ~Heap();
    Heap(const Heap&) = delete;
    Heap& operator=(const Heap&) = delete;

    // Names are interned and live as long as the heap.
    Symbol* symbol(std::string_view key, std::string_view spelling = {});
    EventName* eventName(std::string_view bytes);

    Text* text(std::u16string_view characters);
    Text* text(std::string_view ascii);
    /// A text over part of another's characters, which the two share.
    Text* substring(const Text* text, std::size_t start, std::size_t length);
    /// Both texts in one. Uses the free room behind `left` or in front of `right`, so that growing a text at either side in a loop costs
    /// what is added. Null when the result would be longer than kMaximumTextLength.
    Text* concatenate(const Text* left, const Text* right);
    /// Thrown for a list that would become longer than kMaximumListLength.
    struct TooLong : std::bad_alloc {};
    /// Throws TooLong.
    List* list(std::size_t capacity = 0);
    Record* record();
    template<class T, class... Arguments>
    T* make(Arguments&&... arguments) {
        T* object = new (allocate(sizeof(T))) T(std::forward<Arguments>(arguments)...);
        mObjects.push_back(object);
        return object;
    }

    /// Counts memory that objects own besides themselves, for the pace of collection.
    void charge(std::size_t bytes) { mAllocated += bytes; }
    static constexpr std::size_t kMaximumTextLength = std::size_t(1) << 27; // UTF-16 units
    static constexpr std::size_t kMaximumListLength = std::size_t(1) << 25;

    /// False when the list would become longer than kMaximumListLength.
    [[nodiscard]] bool append(List* list, Value value);
    /// Puts an item in front of the others; in a loop that costs no more than appending. False as for append.
    [[nodiscard]] bool prepend(List* list, Value value);
    [[nodiscard]] bool reserve(List* list, std::size_t capacity);
    /// A list over part of another's items. They are shared until one of the lists is changed; a small part is copied at once.
    List* part(List* list, std::size_t start, std::size_t length);
    /// Both lists in one, with the same use of room as for texts. Null when the result would be longer than kMaximumListLength.
    List* concatenate(List* left, std::span<const Value> items);
    /// Gives a list a buffer of its own, if it shares one.
    void detach(List* list);

    bool wantsCollection() const { return mAllocated >= mThreshold && mHolds == 0; }
    /// Does nothing while there is a Hold, or when memory is too short to collect.
    void collect();
    void mark(Value value) {
        if (value.isObject())
            mark(value.asObject());
    }
    void mark(HeapObject* object) {
        if (object && !object->marked) {
            object->marked = true;
            mGray.push_back(object);
        }
    }
    /// Gives the reserve back to the system: memory that is kept for the time when there is no more, so that an error can be told.
    void releaseReserve() { mReserve.reset(); }
    /// Takes the reserve again, if memory can be had.
    void keepReserve();
    static bool isMarked(const HeapObject* object) { return object->marked; }
    /// Bytes in use as far as they were charged; exact after a collection.
    std::size_t allocated() const { return mAllocated; }
    std::size_t collections() const { return mCollections; }

    class Root;
    class Hold;

private:
    void* allocate(std::size_t size);
    bool moveTo(List* list, std::size_t capacity, std::size_t roomInFront = 0);
    static void share(List* list, List* with);
    void scan(HeapObject* object);
    void markAll();
    void unmarkAll();
    void release(HeapObject* object);

    std::function<void(Heap&)> mMarkRoots;
    std::function<void()> mForgetUnmarked;
    std::vector<HeapObject*> mObjects;
    std::vector<HeapObject*> mGray;
    Root* mRoots = nullptr;
    std::size_t mHolds = 0;
    std::unordered_map<std::string, Symbol*> mSymbols;
    std::unordered_map<std::string, EventName*> mEventNames;
    Text* mCharacters[128] = {}; // the texts of one ASCII character that have been asked for
    void* mFree[8] = {};         // free cells, by size in steps of 16 bytes
    std::vector<std::unique_ptr<char[]>> mBlocks;
    std::unique_ptr<char[]> mReserve;
    std::size_t mAllocated = 0;
    static constexpr std::size_t kMinimumThreshold = std::size_t(4) << 20;
    std::size_t mThreshold = kMinimumThreshold;
    std::size_t mCollections = 0;
};

/// Keeps a value alive while script code runs inside native code. Roots are destroyed in any order, because threads take turns inside the
/// machine.
class Heap::Root {
public:
    Root(Heap& heap, Value value) : mHeap(heap), mValue(value), mNext(heap.mRoots) {
        if (mNext)
            mNext->mPrevious = this;
        mHeap.mRoots = this;
    }
    ~Root() {
        (mPrevious ? mPrevious->mNext : mHeap.mRoots) = mNext;
        if (mNext)
            mNext->mPrevious = mPrevious;
    }
    Root(const Root&) = delete;
    Root& operator=(const Root&) = delete;

    Value get() const { return mValue; }

private:
    friend class Heap;
    Heap& mHeap;
    Value mValue;
    Root* mPrevious = nullptr;
    Root* mNext;
};

/// Puts collection off while native code that holds values waits for another application. Meant for short waits, because garbage gathers
/// meanwhile.
class Heap::Hold {
public:
    explicit Hold(Heap& heap) : mHeap(heap) { ++mHeap.mHolds; }
    ~Hold() { --mHeap.mHolds; }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

private:
    Heap& mHeap;
};

} // namespace quoddle::machine
