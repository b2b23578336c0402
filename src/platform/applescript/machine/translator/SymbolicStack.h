// SPDX-License-Identifier: MIT
// The operand stack of the stored code, followed symbolically. An entry that is a local, a literal, `me` or `it` costs no instruction until
// it is used; a computed entry lies in the register that belongs to its depth.
#pragma once

#include "platform/applescript/machine/translator/CodeEmitter.h"
#include "platform/applescript/machine/translator/StoredHandler.h"

namespace quoddle::machine {

struct Entry {
    enum class Kind : std::uint8_t { Register, Local, Constant, Me, It, Next, Saved };
    Kind kind = Kind::Register;
    std::uint16_t index = 0;     // of the local or the constant; of a saved state the instruction that restores it, or 0
    bool raw = false;            // may hold a specifier that has not been followed to its value
    bool boolean = false;        // surely true or false
    bool maybeUndefined = false; // a handler returned it, perhaps without a value
    std::int32_t producer = -1;  // the instruction that set the register; -1 when unknown
};

/// The stack as it is kept where paths of execution meet: each entry is a register or a saved state.
using Shape = std::vector<std::uint16_t>;

/// All methods throw Corruption when the stack does not hold what they need.
class SymbolicStack {
public:
    explicit SymbolicStack(CodeEmitter& out) : mOut(out) {}
    /// The register of the entry at depth 0.
    void setBase(std::size_t base) { mBase = base; }

    std::size_t size() const { return mEntries.size(); }
    std::size_t top() const { return mEntries.size() - 1; }
    Entry& operator[](std::size_t depth) { return mEntries[depth]; }
    Entry& back() { return mEntries.back(); }
    void need(std::size_t count) const;
    std::size_t slot(std::size_t depth) const;
    std::size_t nextSlot() const { return slot(mEntries.size()); }
    /// Registers that a frame needs, locals included.
    std::size_t frameSize() const { return mBase + mMaximumDepth + 2; }

    void push(Entry entry);
    void pushRegister(std::size_t producer, bool raw = false, bool boolean = false);
    void pushConstant(Value value);
    /// Pushes an entry that was popped from a higher place, `fromDepth`.
    void pushMoved(const Entry& entry, std::size_t fromDepth);
    /// Makes the frame large enough for `count` registers above the stack.
    void reserve(std::size_t count);
    Entry pop();
    void pop(std::size_t count);
    void popSaved();
    /// Forgets everything from `depth` on, saved states too.
    void truncate(std::size_t depth) { mEntries.resize(depth); }
    /// Pops the number on top, which is at most the number of entries below.
    std::size_t popCount();

    bool isConstant(std::size_t depth) const { return mEntries[depth].kind == Entry::Kind::Constant; }
    const Value& constantOf(const Entry& entry) const { return mOut.constantAt(entry.index); }
    /// Whether `it` may be something other than `me` here.
    bool inTell() const;

    /// The register that holds an entry. An entry without one is put into the register of its depth.
    std::size_t reg(std::size_t depth);
    void materialise(std::size_t depth);
    void materialiseFrom(std::size_t depth);
    void flush(bool exceptTop = false);

    /// Follows a specifier to its value. Where the instruction that made the specifier can still be changed, it is made to do that.
    void follow(std::size_t depth, Evaluate how);
    /// Follows a container likewise, except "every word" and the like: a property is then asked of each.
    void followContainer(std::size_t depth);
    /// Emits a check that the handler which should have given the value gave one.
    void requireResult(std::size_t depth);

    Shape shape(std::size_t dropped) const;
    void setShape(const Shape& shape);

private:
    CodeEmitter& mOut;
    std::vector<Entry> mEntries;
    std::size_t mBase = 0;
    std::size_t mMaximumDepth = 0;
};

} // namespace quoddle::machine
