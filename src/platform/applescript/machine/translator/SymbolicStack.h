// SPDX-License-Identifier: MIT
// The operand stack of the stored code, followed symbolically: an entry that is a local, a literal, me or it costs no instruction until it
// is used; an entry that was computed lies in the register that belongs to its depth.
#pragma once

#include "platform/applescript/machine/translator/CodeEmitter.h"
#include "platform/applescript/machine/translator/StoredHandler.h"

namespace quoddle::machine {

struct Entry {
    enum class Kind : std::uint8_t { Register, Local, Constant, Me, It, Next, Saved };
    Kind kind = Kind::Register;
    std::uint16_t index = 0;     // local or constant; of a saved state, the instruction that restores it, or 0
    bool raw = false;            // may hold a specifier that is still to be followed
    bool boolean = false;        // surely true or false
    bool maybeUndefined = false; // what a handler returned
    std::int32_t producer = -1;  // the instruction that put it into its register
};

/// What is left of an entry where ways meet: a register, or a saved state.
using Shape = std::vector<std::uint16_t>;

/// Everything throws Corruption when the stack does not hold what is asked for.
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
    /// Puts an entry that lay in a higher place on top of the stack.
    void pushMoved(const Entry& entry, std::size_t fromDepth);
    /// A place above the stack is used for a moment.
    void reserve(std::size_t count);
    Entry pop();
    void pop(std::size_t count);
    void popSaved();
    /// Forgets everything from `depth` on, saved states too.
    void truncate(std::size_t depth) { mEntries.resize(depth); }
    /// The number on top, at most the number of entries below it.
    std::size_t popCount();

    bool isConstant(std::size_t depth) const { return mEntries[depth].kind == Entry::Kind::Constant; }
    const Value& constantOf(const Entry& entry) const { return mOut.constantAt(entry.index); }
    /// Is "it" something other than me here?
    bool inTell() const;

    /// The register that holds an entry, which is put into its own when it is in none.
    std::size_t reg(std::size_t depth);
    void materialise(std::size_t depth);
    void materialiseFrom(std::size_t depth);
    void flush(bool exceptTop = false);

    /// Follows a specifier to its value: where its instruction can still be changed, that instruction does it.
    void follow(std::size_t depth, Evaluate how);
    /// Likewise for a container, but that "every word" and its like stay what they are: what is asked of them is asked of each.
    void followContainer(std::size_t depth);
    /// An error when the handler that should have given the value gave none.
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
