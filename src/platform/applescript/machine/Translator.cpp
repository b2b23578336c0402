// SPDX-License-Identifier: MIT
// The operand stack is followed symbolically. An entry that is a local, a literal, me or it costs no instruction until it is used; an entry that was computed lies
// in the register that belongs to its depth. At every place that is jumped to, all entries are put into their registers first.
#include "platform/applescript/machine/Translator.h"

#include "platform/applescript/image/Block.h"
#include "platform/applescript/machine/Heap.h"
#include "platform/applescript/machine/StoredCode.h"

#include <algorithm>

namespace quoddle {

namespace {

constexpr std::size_t kMaximumRegisters = 60000;

struct Entry {
    enum class Kind : std::uint8_t { Register, Local, Constant, Me, It, Next, Saved };
    Kind kind = Kind::Register;
    std::uint16_t index = 0;      // local or constant
    bool raw = false;             // may hold a specifier that is still to be followed
    bool boolean = false;         // surely true or false
    bool maybeUndefined = false;  // what a handler returned
    std::int32_t producer = -1;   // the instruction that put it into its register
};

struct Label {
    bool isTarget = false;
    bool isReached = false;
    std::vector<std::uint16_t> shape; // see shapeOf
    std::vector<bool> defined;
    std::int32_t position = -1;
    std::vector<std::size_t> uses;
};

/// What is left of an entry where ways meet: a register, or a saved state and the instruction that restores it.
std::uint16_t shapeOf(const Entry& entry) {
    return entry.kind == Entry::Kind::Saved ? static_cast<std::uint16_t>(0x8000 | entry.index) : std::uint16_t(0);
}

struct Loop {
    std::int32_t exit;
    std::size_t depth;
};

/// Code at the end of the handler for the rare way out of an instruction.
struct Detour {
    std::size_t branch; // the instruction that goes there
    Instruction work;
    Op workOp;
    std::int32_t target;
};

struct Corruption {};

bool isComparison(Opcode opcode) {
    return opcode <= Opcode::LessThanOrEqual;
}

constexpr Op kBranchUnless[] = {Op::BranchUnlessEqual,          Op::BranchUnlessNotEqual, Op::BranchUnlessGreater,
                                Op::BranchUnlessGreaterOrEqual, Op::BranchUnlessLess,     Op::BranchUnlessLessOrEqual};
constexpr Op kBranchUnlessConstant[] = {Op::BranchUnlessEqualConstant,          Op::BranchUnlessNotEqualConstant, Op::BranchUnlessGreaterConstant,
                                        Op::BranchUnlessGreaterOrEqualConstant, Op::BranchUnlessLessConstant,     Op::BranchUnlessLessOrEqualConstant};
/// = ≠ > ≥ < ≤ by their opcodes; each with the one that says the opposite.
constexpr std::size_t kOpposite[] = {1, 0, 5, 4, 3, 2};

class Translator {
public:
    Translator(const Handler& handler, Heap& heap, LiteralLoader load, void* context)
        : mHandler(handler), mHeap(heap), mLoad(load), mContext(context), mCode(std::make_unique<Code>()) {}

    std::unique_ptr<Code> run(const void* const* labels);

private:
    // Preparation
    void readHandler();
    void findTargets();
    void findCertainLocals();
    struct Threaded {
        std::int32_t target;
        bool needsValue;
        bool value;
    };
    Threaded thread(std::int32_t target, bool value) const;
    bool isBooleanCoercion(std::size_t at) const;
    bool topIsDead(std::int32_t at, int limit = 40) const;

    // Emission
    std::size_t emit(Op op, std::size_t a = 0, std::size_t b = 0, std::size_t c = 0, std::size_t d = 0);
    std::size_t emitBranch(Op op, std::size_t a, std::size_t b, std::int32_t target);
    bool isLast(std::int32_t producer) const {
        return producer >= 0 && static_cast<std::size_t>(producer) + 1 == mCode->instructions.size() && producer > mBarrier;
    }
    void barrier() { mBarrier = static_cast<std::int32_t>(mCode->instructions.size()) - 1; }
    std::uint16_t constant(Value value);
    Value literal(std::int32_t index);
    std::size_t cache() {
        mCode->caches.emplace_back();
        return mCode->caches.size() - 1;
    }

    // The symbolic stack
    std::size_t slot(std::size_t depth) const {
        if (mBase + depth >= kMaximumRegisters)
            throw Corruption();
        return mBase + depth;
    }
    std::size_t top() const { return mStack.size() - 1; }
    void push(Entry entry);
    void pushRegister(std::size_t producer, bool raw = false, bool boolean = false);
    void pushConstant(Value value);
    Entry pop();
    void popSaved();
    std::int32_t popCount();
    /// The register that holds an entry, which is put into its own when it is in none.
    std::size_t reg(std::size_t depth);
    void materialise(std::size_t depth);
    void materialiseFrom(std::size_t depth);
    void flush(bool exceptTop = false);
    /// Puts an entry that lay in a higher place on top of the stack.
    void pushMoved(const Entry& entry, std::size_t fromDepth);
    void follow(std::size_t depth, Evaluate how);
    /// Likewise for a container, but that "every word" and its like stay what they are: what is asked of them is asked of each.
    void followContainer(std::size_t depth);
    void requireResult(std::size_t depth);
    /// Is "it" something other than me here?
    bool inTell() const {
        return std::any_of(mStack.begin(), mStack.end(), [](const Entry& entry) {
            return entry.kind == Entry::Kind::Saved && entry.index == static_cast<std::uint16_t>(Op::EndTell);
        });
    }
    void merge(std::int32_t target, std::size_t dropped = 0);
    void jump(std::int32_t target);
    void place(std::size_t at);
    const Value& constantOf(const Entry& entry) const { return mCode->constants[entry.index]; }

    // Instructions
    void translate(std::size_t at);
    void binary(Op op, Op withConstant);
    void compare(std::size_t at);
    void shortCircuit(std::size_t at, bool jumpsWhen);
    void testIf(std::size_t at);
    void pushLocal(std::size_t index);
    void storeLocal(std::size_t index);
    void makeElement();
    void makeProperty();
    void makeSpecifier(Specifier::Form form, std::size_t operands);
    void setData(bool copies);
    void call(std::size_t at, bool continues);
    void send(std::size_t at);
    void continueSend(std::size_t at);
    void raise();
    void repeatInRange(const StoredInstruction& instruction);
    void repeatInCollection(const StoredInstruction& instruction);
    void repeatTimes();
    void repeatWhile(bool whileTrue);
    void loopVariable(const StoredInstruction& instruction, Op op, std::size_t firstDepth);
    void exitLoop();
    void swap();
    void duplicate(std::size_t at);
    void endScope(Op op, std::size_t at);
    void begin(Op op, std::size_t savedCount);
    void defineScript(std::size_t at);
    void defineHandler(std::size_t at);

    const Handler& mHandler;
    Heap& mHeap;
    LiteralLoader mLoad;
    void* mContext;
    std::unique_ptr<Code> mCode;
    std::vector<Op> mOps;
    std::vector<StoredInstruction> mStored;
    std::span<Object* const> mLiterals;
    std::vector<Label> mLabels;
    std::vector<Entry> mStack;
    std::vector<Loop> mLoops;
    std::vector<Detour> mDetours;
    std::vector<bool> mCertain;  // locals that only ever receive real values
    std::vector<bool> mDefined;  // locals that surely have a value here
    std::vector<std::pair<std::int32_t, std::uint32_t>> mOpenTries; // handler, begin
    std::unordered_map<std::uint64_t, std::uint16_t> mConstantIndexes;
    std::size_t mBase = 0;
    std::size_t mMaximumDepth = 0;
    std::size_t mSkip = 0;
    std::int32_t mBarrier = -1;
    bool mReachable = true;
    bool mUsesResult = false;
};

// --- Preparation

void Translator::readHandler() {
    const Object& block = *mHandler.source;
    if (block.children.size() < block::kHandlerChildren || block.children[block::kCode]->kind != ObjectKind::Raw)
        throw Corruption();
    mLiterals = block.children[block::kLiterals]->children;
    auto locals = block.children[block::kLocals]->children;
    for (const Object* name : locals)
        mCode->localNames.push_back(mLoad(mContext, name, mHandler.store));
    const Object& name = *block.children[block::kName];
    mCode->isInitialiser = name.isCode(CodeTag::Event) && name.bytes.starts_with("ascrinit");
    mCode->hasScope = mCode->isInitialiser || block.tag == block::Closure;
    mCode->localCount = static_cast<std::uint32_t>(locals.size());
    mBase = mCode->hasScope ? 0 : locals.size();
    if (mCode->hasScope && !mCode->isInitialiser)
        mCode->scopeNames = std::make_shared<const std::vector<Value>>(mCode->localNames);

    const Object& parameters = *block.children[block::kParameters];
    const bool noLabels = block.children[block::kLabels]->children.empty();
    if (parameters.isBlock(block::List) && parameters.children.size() == 2 && noLabels) {
        auto items = parameters.children[1]->children;
        bool simple = items.size() <= locals.size();
        for (std::size_t i = 0; simple && i < items.size(); ++i)
            simple = items[i]->kind == ObjectKind::Identifier && items[i]->bytes == locals[i]->bytes;
        mCode->isPositional = simple;
        mCode->positionalCount = simple ? static_cast<std::uint32_t>(items.size()) : 0;
    } else {
        mCode->isPositional = noLabels && parameters.kind == ObjectKind::List && parameters.children.empty();
    }

    auto decoded = decodeStored(block.children[block::kCode]->bytes, mLiterals.size(), locals.size());
    if (!decoded)
        throw Corruption();
    mStored = std::move(*decoded);
}

bool Translator::isBooleanCoercion(std::size_t at) const {
    if (at + 1 >= mStored.size() || mStored[at + 1].opcode != Opcode::Coerce || mLabels[at + 1].isTarget)
        return false;
    const StoredInstruction& stored = mStored[at];
    if (stored.opcode != Opcode::PushLiteral && stored.opcode != Opcode::PushLiteralLong)
        return false;
    const Object* literal = mLiterals[static_cast<std::size_t>(stored.first)];
    return literal->isCode(CodeTag::Class) && literal->code() == "bool"_4cc;
}

/// Where a jump with a known truth value on the stack really leads.
Translator::Threaded Translator::thread(std::int32_t target, bool value) const {
    for (int limit = 0; limit < 64; ++limit) {
        const auto at = static_cast<std::size_t>(target);
        if (at >= mStored.size())
            break;
        const StoredInstruction& stored = mStored[at];
        if (stored.opcode == Opcode::TestIf)
            return {value ? target + 1 : stored.first, false, value};
        if (stored.opcode == Opcode::And || stored.opcode == Opcode::Or) {
            if (value == (stored.opcode == Opcode::And))
                return {target + 1, false, value};
            target = stored.first;
        } else if (stored.opcode == Opcode::Not) {
            value = !value;
            ++target;
        } else if (isBooleanCoercion(at)) {
            target += 2;
        } else {
            break;
        }
    }
    return {target, true, value};
}

void Translator::findTargets() {
    mLabels.resize(mStored.size() + 2);
    for (std::size_t i = 0; i < mStored.size(); ++i) {
        const StoredInstruction& stored = mStored[i];
        if (infoOf(stored.opcode).operands != Operands::Branch)
            continue;
        std::int32_t target = stored.first;
        if (stored.opcode == Opcode::And || stored.opcode == Opcode::Or)
            target = thread(target, stored.opcode == Opcode::Or).target;
        // Tell and Consider only say where they end.
        const bool jumps = stored.opcode != Opcode::Tell && stored.opcode != Opcode::Consider && stored.opcode != Opcode::BeginTransaction;
        if (jumps && stored.opcode != Opcode::LinkRepeat)
            mLabels[static_cast<std::size_t>(target)].isTarget = true;
        if (stored.opcode == Opcode::LinkRepeat)
            mLabels[static_cast<std::size_t>(target)].isTarget = true;
        if (stored.opcode == Opcode::GetResult)
            mUsesResult = true;
    }
    for (const StoredInstruction& stored : mStored) {
        if (stored.opcode == Opcode::GetResult)
            mUsesResult = true;
        if (stored.opcode == Opcode::PushGlobal || stored.opcode == Opcode::PushGlobalLong) {
            const Object* name = mLiterals[static_cast<std::size_t>(stored.first)];
            mUsesResult |= name->isCode(CodeTag::Class) && name->code() == "rslt"_4cc;
        }
    }
}

/// A local that is only given computed values and literals can never be without a value once it has been set.
void Translator::findCertainLocals() {
    mCertain.assign(mCode->localCount, true);
    for (std::size_t i = 0; i < mStored.size(); ++i) {
        const StoredInstruction& stored = mStored[i];
        if (stored.opcode == Opcode::HandleError) { // the parts of an error may be missing
            std::fill(mCertain.begin(), mCertain.end(), false);
            return;
        }
        if (stored.opcode != Opcode::PopVariable && stored.opcode != Opcode::PopVariableLong)
            continue;
        std::size_t source = i;
        bool certain = false;
        while (source > 0 && !mLabels[source].isTarget) {
            const Opcode before = mStored[--source].opcode;
            if (before == Opcode::GetData || before == Opcode::Clone)
                continue;
            certain = (before >= Opcode::Add && before <= Opcode::Negate) || (before >= Opcode::Equal && before <= Opcode::Contains) ||
                      before == Opcode::MakeVector || before == Opcode::MakeRecord || before == Opcode::PushLiteral ||
                      before == Opcode::PushLiteralLong || before == Opcode::Not ||
                      (before >= Opcode::PushMinus1 && before <= Opcode::Push3) || before == Opcode::PushTrue || before == Opcode::PushFalse;
            break;
        }
        if (!certain)
            mCertain[static_cast<std::size_t>(stored.first)] = false;
    }
}

/// Is the value on top at this place thrown away without being looked at?
bool Translator::topIsDead(std::int32_t target, int limit) const {
    for (auto at = static_cast<std::size_t>(target); at < mStored.size() && limit > 0; --limit) {
        const StoredInstruction& stored = mStored[at];
        switch (stored.opcode) {
        case Opcode::StoreResult:
            return !mUsesResult;
        case Opcode::Pop:
            return true;
        case Opcode::Dup:
            if (mUsesResult || at + 1 >= mStored.size() || mStored[at + 1].opcode != Opcode::StoreResult)
                return false;
            at += 2;
            break;
        case Opcode::EndTell:
        case Opcode::EndConsider:
        case Opcode::EndTimeout:
        case Opcode::EndTransaction:
            ++at;
            break;
        case Opcode::EndErrorHandler:
            at = static_cast<std::size_t>(stored.first);
            break;
        case Opcode::Jump:
            if (stored.first <= static_cast<std::int32_t>(at)) { // back to the beginning of a loop, whose value it is
                for (const Loop& loop : mLoops)
                    if (loop.exit == static_cast<std::int32_t>(at) + 1)
                        return topIsDead(loop.exit, limit - 1);
                return false;
            }
            at = static_cast<std::size_t>(stored.first);
            break;
        default:
            return false;
        }
    }
    return false;
}

// --- Emission

std::size_t Translator::emit(Op op, std::size_t a, std::size_t b, std::size_t c, std::size_t d) {
    if (std::max({a, b, c, d}) > 0xFFFF)
        throw Corruption();
    Instruction instruction;
    instruction.a = static_cast<std::uint16_t>(a);
    instruction.b = static_cast<std::uint16_t>(b);
    instruction.c = static_cast<std::uint16_t>(c);
    instruction.d = static_cast<std::uint16_t>(d);
    mCode->instructions.push_back(instruction);
    mOps.push_back(op);
    return mCode->instructions.size() - 1;
}

std::size_t Translator::emitBranch(Op op, std::size_t a, std::size_t b, std::int32_t target) {
    const std::size_t at = emit(op, a, b);
    mLabels[static_cast<std::size_t>(target)].uses.push_back(at);
    return at;
}

std::uint16_t Translator::constant(Value value) {
    auto [entry, isNew] = mConstantIndexes.try_emplace(value.bits(), static_cast<std::uint16_t>(mCode->constants.size()));
    if (isNew) {
        if (mCode->constants.size() > 0xFFF0)
            throw Corruption();
        mCode->constants.push_back(value);
    }
    return entry->second;
}

Value Translator::literal(std::int32_t index) {
    return mLoad(mContext, mLiterals[static_cast<std::size_t>(index)], mHandler.store);
}

// --- The symbolic stack

void Translator::push(Entry entry) {
    mStack.push_back(entry);
    mMaximumDepth = std::max(mMaximumDepth, mStack.size());
}

void Translator::pushRegister(std::size_t producer, bool raw, bool boolean) {
    Entry entry;
    entry.producer = static_cast<std::int32_t>(producer);
    entry.raw = raw;
    entry.boolean = boolean;
    push(entry);
}

void Translator::pushConstant(Value value) {
    Entry entry;
    entry.kind = Entry::Kind::Constant;
    entry.index = constant(value);
    entry.boolean = value.isBoolean();
    entry.raw = is<Specifier>(value) && !(value.asObject()->flags & Specifier::kIsReference);
    push(entry);
}

Entry Translator::pop() {
    if (mStack.empty() || mStack.back().kind == Entry::Kind::Saved)
        throw Corruption();
    Entry entry = mStack.back();
    mStack.pop_back();
    return entry;
}

void Translator::popSaved() {
    if (mStack.empty() || mStack.back().kind != Entry::Kind::Saved)
        throw Corruption();
    mStack.pop_back();
}

std::int32_t Translator::popCount() {
    const Entry entry = pop();
    if (entry.kind != Entry::Kind::Constant || !constantOf(entry).isInteger())
        throw Corruption();
    const std::int32_t count = constantOf(entry).asInteger();
    if (count < 0 || static_cast<std::size_t>(count) > mStack.size())
        throw Corruption();
    return count;
}

std::size_t Translator::reg(std::size_t depth) {
    Entry& entry = mStack[depth];
    if (entry.kind == Entry::Kind::Local)
        return entry.index;
    materialise(depth);
    return slot(depth);
}

void Translator::materialise(std::size_t depth) {
    Entry& entry = mStack[depth];
    std::size_t producer = 0;
    switch (entry.kind) {
    case Entry::Kind::Register:
    case Entry::Kind::Saved:
        return;
    case Entry::Kind::Local:
        producer = emit(Op::Move, slot(depth), entry.index);
        break;
    case Entry::Kind::Constant:
        producer = emit(Op::LoadConstant, slot(depth), entry.index);
        break;
    case Entry::Kind::Me:
        producer = emit(Op::LoadMe, slot(depth));
        break;
    case Entry::Kind::It:
        producer = emit(Op::LoadIt, slot(depth));
        break;
    case Entry::Kind::Next:
        throw Corruption();
    }
    entry.kind = Entry::Kind::Register;
    entry.producer = static_cast<std::int32_t>(producer);
}

void Translator::materialiseFrom(std::size_t depth) {
    for (; depth < mStack.size(); ++depth)
        materialise(depth);
}

void Translator::flush(bool exceptTop) {
    const std::size_t count = mStack.size() - (exceptTop && !mStack.empty() ? 1 : 0);
    for (std::size_t depth = 0; depth < count; ++depth)
        materialise(depth);
}

void Translator::pushMoved(const Entry& entry, std::size_t fromDepth) {
    if (entry.kind != Entry::Kind::Register) {
        push(entry);
        return;
    }
    Entry moved = entry;
    moved.producer = static_cast<std::int32_t>(emit(Op::Move, slot(mStack.size()), slot(fromDepth)));
    push(moved);
}

/// Follows a specifier to its value: where its instruction can still be changed, that instruction does it.
void Translator::follow(std::size_t depth, Evaluate how) {
    Entry& entry = mStack[depth];
    if (!entry.raw)
        return;
    if (entry.kind == Entry::Kind::Register && entry.producer > mBarrier) {
        const auto at = static_cast<std::size_t>(entry.producer);
        Instruction& producer = mCode->instructions[at];
        switch (mOps[at]) {
        case Op::GetProperty:
            producer.d = static_cast<std::uint16_t>(how);
            entry.raw = how != Evaluate::Fully;
            return;
        case Op::BuildElement:
        case Op::GetElementLocally:
            if (how == Evaluate::Locally)
                mOps[at] = Op::GetElementLocally;
            else
                mOps[at] = mCode->constants[producer.d] == Value::code("cobj"_4cc) ? Op::GetItem : Op::GetElement;
            entry.raw = how != Evaluate::Fully;
            return;
        default:
            break;
        }
    }
    const std::size_t from = reg(depth);
    const std::size_t at = emit(how == Evaluate::Fully ? Op::Evaluate : Op::EvaluateLocally, slot(depth), from);
    entry.kind = Entry::Kind::Register;
    entry.producer = static_cast<std::int32_t>(at);
    entry.raw = how != Evaluate::Fully;
    entry.maybeUndefined = false;
    barrier(); // asking an application may change anything
}

void Translator::followContainer(std::size_t depth) {
    const Entry& entry = mStack[depth];
    const bool isMany = entry.kind == Entry::Kind::Register && entry.producer > mBarrier && mOps[static_cast<std::size_t>(entry.producer)] == Op::MakeSpecifier;
    if (!isMany)
        follow(depth, Evaluate::Locally);
}

void Translator::requireResult(std::size_t depth) {
    if (!mStack[depth].maybeUndefined)
        return;
    emit(Op::CheckResult, reg(depth));
    mStack[depth].maybeUndefined = false;
}

/// Notes what the stack looks like at a place that is jumped to from here.
void Translator::merge(std::int32_t target, std::size_t dropped) {
    Label& label = mLabels[static_cast<std::size_t>(target)];
    if (!label.isTarget)
        throw Corruption();
    std::vector<std::uint16_t> shape;
    for (std::size_t i = 0; i + dropped < mStack.size(); ++i)
        shape.push_back(shapeOf(mStack[i]));
    if (!label.isReached) {
        if (label.position >= 0)
            throw Corruption(); // backwards, into code that was passed over
        label.isReached = true;
        label.shape = std::move(shape);
        label.defined = mDefined;
        return;
    }
    if (label.shape != shape)
        throw Corruption();
    if (label.position >= 0)
        return;
    for (std::size_t i = 0; i < mDefined.size(); ++i)
        label.defined[i] = label.defined[i] && mDefined[i];
}

void Translator::jump(std::int32_t target) {
    flush(topIsDead(target));
    merge(target);
    const bool back = mLabels[static_cast<std::size_t>(target)].position >= 0;
    emitBranch(back ? Op::JumpBack : Op::Jump, 0, 0, target);
    mReachable = false;
}

void Translator::place(std::size_t at) {
    Label& label = mLabels[at];
    if (label.isTarget) {
        if (mReachable) {
            flush(!mStack.empty() && topIsDead(static_cast<std::int32_t>(at)));
            merge(static_cast<std::int32_t>(at));
        }
        if (label.isReached) {
            mStack.clear();
            for (std::uint16_t shape : label.shape) {
                Entry entry;
                entry.kind = shape == 0 ? Entry::Kind::Register : Entry::Kind::Saved;
                entry.index = shape & 0x7FFF;
                push(entry);
            }
            // A loop may come back here with an uncertain variable unset again.
            for (std::size_t local = 0; local < mDefined.size(); ++local)
                mDefined[local] = label.defined[local] && mCertain[local];
            mReachable = true;
        }
        barrier();
    }
    label.position = static_cast<std::int32_t>(mCode->instructions.size());
    while (!mLoops.empty() && mLoops.back().exit <= static_cast<std::int32_t>(at))
        mLoops.pop_back();
    while (!mOpenTries.empty() && mOpenTries.back().first <= static_cast<std::int32_t>(at)) {
        const auto here = static_cast<std::uint32_t>(mCode->instructions.size());
        mCode->tries.push_back({mOpenTries.back().second, here, here});
        mOpenTries.pop_back();
    }
}

// --- Instructions

void Translator::binary(Op op, Op withConstant) {
    if (mStack.size() < 2)
        throw Corruption();
    const std::size_t left = mStack.size() - 2;
    follow(left, Evaluate::Fully);
    follow(left + 1, Evaluate::Fully);
    const Entry& right = mStack[left + 1];
    std::size_t at;
    if (withConstant != Op::Corrupt && right.kind == Entry::Kind::Constant && constantOf(right).isNumber()) {
        at = emit(withConstant, slot(left), reg(left), right.index);
    } else {
        const std::size_t leftRegister = reg(left);
        at = emit(op, slot(left), leftRegister, reg(left + 1));
    }
    pop();
    pop();
    pushRegister(at);
}

void Translator::compare(std::size_t at) {
    if (mStack.size() < 2)
        throw Corruption();
    const std::size_t left = mStack.size() - 2;
    const auto which = static_cast<std::size_t>(mStored[at].opcode);
    follow(left, Evaluate::Fully);
    follow(left + 1, Evaluate::Fully);

    // What comes next may only want to know where to go on.
    bool inverted = false;
    std::int32_t target = -1;
    std::size_t next = at + 1;
    if (next < mStored.size() && !mLabels[next].isTarget && mStored[next].opcode == Opcode::Not) {
        inverted = true;
        ++next;
    }
    if (next < mStored.size() && !mLabels[next].isTarget) {
        const StoredInstruction& following = mStored[next];
        if (following.opcode == Opcode::TestIf) {
            target = following.first;
        } else if (following.opcode == Opcode::And || following.opcode == Opcode::Or) {
            const Threaded threaded = thread(following.first, following.opcode == Opcode::Or);
            if (!threaded.needsValue) {
                target = threaded.target;
                inverted ^= following.opcode == Opcode::Or;
            }
        }
    }
    const bool backwards = target >= 0 && mLabels[static_cast<std::size_t>(target)].position >= 0;
    if (target < 0 || backwards) {
        const std::size_t leftRegister = reg(left);
        const std::size_t producer = emit(static_cast<Op>(static_cast<std::size_t>(Op::Equal) + which), slot(left), leftRegister, reg(left + 1));
        pop();
        pop();
        pushRegister(producer, false, true);
        return;
    }
    // The rest of the stack must be in place on both ways.
    for (std::size_t depth = 0; depth < left; ++depth)
        materialise(depth);
    const std::size_t test = inverted ? kOpposite[which] : which;
    const Entry& right = mStack[left + 1];
    if (right.kind == Entry::Kind::Constant && constantOf(right).isInteger()) {
        const std::uint16_t index = right.index;
        emitBranch(kBranchUnlessConstant[test], reg(left), index, target);
    } else {
        const std::size_t leftRegister = reg(left);
        emitBranch(kBranchUnless[test], leftRegister, reg(left + 1), target);
    }
    merge(target, 2);
    pop();
    pop();
    mSkip = next - at;
}

void Translator::shortCircuit(std::size_t at, bool jumpsWhen) {
    if (mStack.empty())
        throw Corruption();
    follow(top(), Evaluate::Fully);
    const std::size_t condition = reg(top());
    const Threaded threaded = thread(mStored[at].first, jumpsWhen);
    const Op op = jumpsWhen ? Op::BranchIfTrue : Op::BranchIfFalse;
    pop();
    flush();
    if (!threaded.needsValue) {
        emitBranch(op, condition, 0, threaded.target);
        merge(threaded.target);
        return;
    }
    Detour detour;
    detour.branch = emit(op, condition);
    detour.workOp = Op::LoadConstant;
    detour.work.a = static_cast<std::uint16_t>(slot(mStack.size()));
    detour.work.b = constant(Value::boolean(threaded.value));
    detour.target = threaded.target;
    mDetours.push_back(detour);
    Entry value;
    push(value);
    merge(threaded.target);
    pop();
}

void Translator::testIf(std::size_t at) {
    if (mStack.empty())
        throw Corruption();
    follow(top(), Evaluate::Fully);
    std::size_t condition = reg(top());
    Op op = Op::BranchIfFalse;
    const Entry entry = pop();
    if (entry.kind == Entry::Kind::Register && isLast(entry.producer) && mOps.back() == Op::Not) {
        condition = mCode->instructions.back().b;
        mCode->instructions.pop_back();
        mOps.pop_back();
        op = Op::BranchIfTrue;
    }
    flush();
    emitBranch(op, condition, 0, mStored[at].first);
    merge(mStored[at].first);
}

void Translator::pushLocal(std::size_t index) {
    Entry entry;
    if (mCode->hasScope) {
        pushRegister(emit(Op::GetScope, slot(mStack.size()), 0, index));
        return;
    }
    if (!mDefined[index]) {
        emit(Op::CheckVariable, index, constant(mCode->localNames[index]));
        mDefined[index] = true;
    }
    entry.kind = Entry::Kind::Local;
    entry.index = static_cast<std::uint16_t>(index);
    push(entry);
}

bool writesOnlyItsTarget(Op op) {
    return (op >= Op::Move && op <= Op::LoadIt) || (op >= Op::Add && op <= Op::Contains) || (op >= Op::Negate && op <= Op::Coerce) ||
           op == Op::GetSlot || op == Op::GetScope || op == Op::GetGlobal || op == Op::GetResult || op == Op::GetProperty || op == Op::GetItem ||
           op == Op::GetElement || op == Op::GetElementLocally || op == Op::BuildElement || op == Op::Evaluate || op == Op::EvaluateLocally ||
           op == Op::MakeReference || op == Op::Clone || op == Op::MakeList || op == Op::MakeRecord || op == Op::Count;
}

void Translator::storeLocal(std::size_t index) {
    if (mStack.empty())
        throw Corruption();
    follow(top(), Evaluate::Fully);
    if (mCode->hasScope) {
        emit(Op::SetScope, reg(top()), 0, index);
        return;
    }
    bool isPending = false; // the old value still waits on the stack
    for (std::size_t depth = 0; depth < top(); ++depth) {
        Entry& entry = mStack[depth];
        if (entry.kind == Entry::Kind::Local && entry.index == index) {
            isPending = true;
            materialise(depth);
        }
    }
    Entry& entry = mStack.back();
    if (entry.kind == Entry::Kind::Register && !isPending && isLast(entry.producer) && writesOnlyItsTarget(mOps.back())) {
        mCode->instructions.back().a = static_cast<std::uint16_t>(index);
    } else if (entry.kind == Entry::Kind::Constant) {
        emit(Op::LoadConstant, index, entry.index);
    } else {
        const std::size_t from = reg(top());
        if (from != index)
            emit(Op::Move, index, from);
    }
    const bool maybe = mStack.back().maybeUndefined;
    Entry local;
    local.kind = Entry::Kind::Local;
    local.index = static_cast<std::uint16_t>(index);
    local.maybeUndefined = maybe;
    mStack.back() = local;
    mDefined[index] = mCertain[index] || !maybe;
}

void Translator::makeProperty() {
    if (mStack.size() < 2)
        throw Corruption();
    const std::size_t container = mStack.size() - 2;
    const Entry key = mStack.back();
    const bool isName = key.kind == Entry::Kind::Constant && (constantOf(key).isCode() || is<Symbol>(constantOf(key)));
    if (!isName)
        return makeSpecifier(Specifier::Form::Property, 2);
    followContainer(container);
    requireResult(container);
    const std::size_t from = reg(container);
    pop();
    pop();
    pushRegister(emit(Op::GetProperty, slot(mStack.size()), from, key.index, static_cast<std::size_t>(Evaluate::Never)), true);
}

void Translator::makeElement() {
    if (mStack.size() < 3)
        throw Corruption();
    const std::size_t container = mStack.size() - 3;
    const Entry elementClass = mStack[container + 1];
    if (elementClass.kind != Entry::Kind::Constant)
        return makeSpecifier(Specifier::Form::Element, 3);
    followContainer(container);
    follow(container + 2, Evaluate::Fully);
    requireResult(container);
    const std::size_t from = reg(container);
    const std::size_t index = reg(container + 2);
    pop();
    pop();
    pop();
    pushRegister(emit(Op::BuildElement, slot(mStack.size()), from, index, elementClass.index), true);
}

void Translator::makeSpecifier(Specifier::Form form, std::size_t operands) {
    if (mStack.size() < operands)
        throw Corruption();
    const std::size_t first = mStack.size() - operands;
    followContainer(first);
    requireResult(first);
    std::size_t from;
    if (operands == 1) {
        from = reg(first);
    } else {
        materialiseFrom(first);
        from = slot(first);
    }
    for (std::size_t i = 0; i < operands; ++i)
        pop();
    pushRegister(emit(Op::MakeSpecifier, slot(mStack.size()), from, static_cast<std::size_t>(form)), true);
}

void Translator::setData(bool copies) {
    if (mStack.size() < 2)
        throw Corruption();
    const std::size_t value = mStack.size() - 2;
    follow(value, Evaluate::Fully);
    requireResult(value);
    const Entry target = mStack.back();
    // Putting the value into a register must not come between the specifier and its use.
    if (mStack[value].kind == Entry::Kind::Constant || mStack[value].kind == Entry::Kind::Me || mStack[value].kind == Entry::Kind::It) {
        const bool last = target.kind == Entry::Kind::Register && isLast(target.producer);
        if (last) {
            const Instruction saved = mCode->instructions.back();
            const Op savedOp = mOps.back();
            mCode->instructions.pop_back();
            mOps.pop_back();
            materialise(value);
            mCode->instructions.push_back(saved);
            mOps.push_back(savedOp);
            mStack.back().producer = static_cast<std::int32_t>(mCode->instructions.size()) - 1;
        }
    }
    std::size_t from = reg(value);
    if (copies) {
        emit(Op::Clone, slot(value), from);
        mStack[value].kind = Entry::Kind::Register;
        from = slot(value);
    }
    const Entry& spec = mStack.back();
    if (spec.kind == Entry::Kind::Register && isLast(spec.producer)) {
        Instruction producer = mCode->instructions.back();
        const Op op = mOps.back();
        const bool isEnd = op == Op::MakeSpecifier && producer.c == static_cast<std::uint16_t>(Specifier::Form::End);
        if (op == Op::GetProperty || op == Op::BuildElement || isEnd) {
            mCode->instructions.pop_back();
            mOps.pop_back();
            if (op == Op::GetProperty)
                emit(Op::SetProperty, producer.b, from, producer.c);
            else if (op == Op::BuildElement)
                emit(Op::SetElement, producer.b, producer.c, from, producer.d);
            else
                emit(Op::SetEnd, producer.b, from);
            barrier();
            pop();
            return;
        }
    }
    emit(Op::SetSpecifier, 0, from, reg(top()));
    barrier();
    pop();
}

void Translator::call(std::size_t at, bool continues) {
    if (continues) {
        pop(); // it
        if (pop().kind != Entry::Kind::Next)
            throw Corruption();
    }
    const auto count = static_cast<std::size_t>(popCount());
    if (mStack.size() < count + 1)
        throw Corruption();
    const std::size_t target = mStack.size() - count - 1;
    for (std::size_t depth = target; depth < mStack.size(); ++depth) {
        follow(depth, Evaluate::Locally);
        requireResult(depth);
    }
    const Entry::Kind kind = mStack[target].kind;
    const bool isMine = kind == Entry::Kind::Me || (kind == Entry::Kind::It && !inTell());
    materialiseFrom(isMine ? target + 1 : target);
    // Register windows overlap: the arguments are the first locals of the callee, so nothing may wait in a symbol below them that the callee could change.
    const std::size_t name = constant(literal(mStored[at].first));
    const std::size_t base = slot(target);
    const Op op = continues ? Op::ContinueCall : isMine ? Op::CallMine : Op::Call;
    const std::size_t producer = emit(op, base, count, name, cache());
    barrier();
    for (std::size_t i = 0; i <= count; ++i)
        mStack.pop_back();
    pushRegister(producer);
    mStack.back().maybeUndefined = true;
}

void Translator::send(std::size_t at) {
    const auto count = static_cast<std::size_t>(popCount());
    if (mStack.size() < count + 1)
        throw Corruption();
    const std::size_t direct = mStack.size() - count - 1;
    const Value command = literal(mStored[at].first);
    const EventName* event = as<EventName>(command);
    if (event && event->eventClass == "core"_4cc && event->eventID == "cnte"_4cc) {
        const bool eachItem = count == 2 && mStack[direct + 1].kind == Entry::Kind::Constant && mStack[direct + 2].kind == Entry::Kind::Constant &&
                              constantOf(mStack[direct + 1]) == Value::code("kocl"_4cc) && constantOf(mStack[direct + 2]) == Value::code("cobj"_4cc);
        if (count == 0 || eachItem) {
            while (mStack.size() > direct + 1)
                pop();
            follow(direct, Evaluate::Locally);
            requireResult(direct);
            const std::size_t from = reg(direct);
            pop();
            pushRegister(emit(Op::Count, slot(direct), from));
            return;
        }
    }
    for (std::size_t depth = direct; depth < mStack.size(); ++depth) {
        follow(depth, Evaluate::Locally);
        requireResult(depth);
    }
    materialiseFrom(direct);
    const std::size_t producer = emit(Op::Send, slot(direct), count, constant(command), cache());
    barrier();
    for (std::size_t i = 0; i <= count; ++i)
        mStack.pop_back();
    pushRegister(producer);
    mStack.back().maybeUndefined = true;
}

/// me k1 v1 … n next direct: the direct parameter is brought to where the count stood.
void Translator::continueSend(std::size_t at) {
    const std::size_t directDepth = top();
    const Entry direct = pop();
    if (pop().kind != Entry::Kind::Next)
        throw Corruption();
    const auto count = static_cast<std::size_t>(popCount());
    if (mStack.size() < count + 1)
        throw Corruption();
    pushMoved(direct, directDepth);
    const std::size_t base = mStack.size() - count - 2;
    for (std::size_t depth = base; depth < mStack.size(); ++depth)
        follow(depth, Evaluate::Locally);
    materialiseFrom(base);
    const std::size_t producer = emit(Op::ContinueSend, slot(base), count, constant(literal(mStored[at].first)));
    barrier();
    for (std::size_t i = 0; i < count + 2; ++i)
        mStack.pop_back();
    pushRegister(producer);
    mStack.back().maybeUndefined = true;
}

/// me k1 v1 … n message
void Translator::raise() {
    const std::size_t messageDepth = top();
    const Entry message = pop();
    const auto count = static_cast<std::size_t>(popCount());
    if (mStack.size() < count + 1)
        throw Corruption();
    pushMoved(message, messageDepth);
    const std::size_t first = mStack.size() - count - 1;
    for (std::size_t depth = first; depth < mStack.size(); ++depth)
        follow(depth, Evaluate::Fully);
    materialiseFrom(first);
    emit(Op::Raise, slot(first), count);
    barrier();
    for (std::size_t i = 0; i < count + 2; ++i)
        mStack.pop_back();
    Entry value; // nothing comes back, but the code around counts on a value
    push(value);
}

void Translator::loopVariable(const StoredInstruction& instruction, Op op, std::size_t firstDepth) {
    if (mLoops.empty())
        throw Corruption();
    flush();
    const std::int32_t exit = mLoops.back().exit;
    const auto local = static_cast<std::size_t>(instruction.first);
    pop(); // the value of the last turn
    const std::size_t variable = mCode->hasScope || op == Op::RepeatTimes ? slot(mStack.size()) : local;
    if (topIsDead(exit)) {
        emitBranch(op, slot(firstDepth), variable, exit);
    } else {
        Detour detour;
        detour.branch = emit(op, slot(firstDepth), variable);
        detour.workOp = Op::Move;
        detour.work.a = static_cast<std::uint16_t>(slot(firstDepth));
        detour.work.b = static_cast<std::uint16_t>(slot(mStack.size()));
        detour.target = exit;
        mDetours.push_back(detour);
    }
    merge(exit, mStack.size() - firstDepth - 1);
    if (op == Op::RepeatTimes)
        return;
    if (mCode->hasScope)
        emit(Op::SetScope, variable, 0, local);
    else
        mDefined[local] = true;
}

void Translator::repeatInRange(const StoredInstruction& instruction) {
    if (mStack.size() < 4)
        throw Corruption();
    loopVariable(instruction, Op::RepeatInRange, mStack.size() - 4);
}

void Translator::repeatInCollection(const StoredInstruction& instruction) {
    if (mStack.size() < 4)
        throw Corruption();
    loopVariable(instruction, Op::RepeatInCollection, mStack.size() - 4);
}

void Translator::repeatTimes() {
    if (mStack.size() < 3)
        throw Corruption();
    loopVariable({Opcode::RepeatNTimes, 0}, Op::RepeatTimes, mStack.size() - 3);
}

void Translator::repeatWhile(bool whileTrue) {
    if (mStack.size() < 2 || mLoops.empty())
        throw Corruption();
    const std::int32_t exit = mLoops.back().exit;
    follow(top(), Evaluate::Fully);
    const std::size_t condition = reg(top());
    pop();
    flush();
    emitBranch(whileTrue ? Op::BranchIfFalse : Op::BranchIfTrue, condition, 0, exit);
    merge(exit);
    pop();
}

/// Leaves the scopes inside the loop, outermost last, and goes on behind it.
void Translator::exitLoop() {
    if (mLoops.empty())
        throw Corruption();
    const Loop loop = mLoops.back();
    if (mStack.size() < loop.depth)
        throw Corruption();
    for (std::size_t depth = mStack.size(); depth-- > loop.depth;) {
        const Entry& entry = mStack[depth];
        if (entry.kind == Entry::Kind::Saved && entry.index != 0)
            emit(static_cast<Op>(entry.index), slot(depth));
    }
    std::vector<Entry> saved(mStack.begin(), mStack.end());
    while (mStack.size() > loop.depth)
        mStack.pop_back();
    if (!topIsDead(loop.exit)) {
        if (mUsesResult)
            emit(Op::GetResult, slot(loop.depth));
        else
            emit(Op::LoadConstant, slot(loop.depth), constant(Value::undefined()));
    }
    Entry value;
    push(value);
    merge(loop.exit);
    emitBranch(Op::Jump, 0, 0, loop.exit);
    mStack = std::move(saved);
    mReachable = false;
}

void Translator::duplicate(std::size_t at) {
    if (mStack.empty())
        throw Corruption();
    // "repeat with x in …": the list is made once, not at every turn.
    const bool countsItems = at + 1 < mStored.size() && (mStored[at + 1].opcode == Opcode::PushLiteral || mStored[at + 1].opcode == Opcode::PushLiteralLong) &&
                             literal(mStored[at + 1].first) == Value::code("kocl"_4cc);
    const Op producer = mStack.back().producer >= 0 ? mOps[static_cast<std::size_t>(mStack.back().producer)] : Op::Corrupt;
    if (countsItems || producer == Op::GetProperty || producer == Op::BuildElement)
        follow(top(), Evaluate::Locally);
    Entry entry = mStack.back();
    if (entry.kind != Entry::Kind::Register) {
        push(entry);
        return;
    }
    entry.producer = static_cast<std::int32_t>(emit(Op::Move, slot(mStack.size()), slot(top())));
    push(entry);
}

void Translator::swap() {
    if (mStack.size() < 2)
        throw Corruption();
    const std::size_t low = mStack.size() - 2;
    Entry& a = mStack[low];
    Entry& b = mStack[low + 1];
    if (a.kind == Entry::Kind::Saved || b.kind == Entry::Kind::Saved)
        throw Corruption();
    const bool aInRegister = a.kind == Entry::Kind::Register, bInRegister = b.kind == Entry::Kind::Register;
    if (aInRegister && bInRegister) {
        emit(Op::Move, slot(low + 2), slot(low));
        emit(Op::Move, slot(low), slot(low + 1));
        emit(Op::Move, slot(low + 1), slot(low + 2));
        mMaximumDepth = std::max(mMaximumDepth, mStack.size() + 1);
        a.producer = b.producer = -1;
    } else if (bInRegister) {
        if (isLast(b.producer) && writesOnlyItsTarget(mOps.back()))
            mCode->instructions.back().a = static_cast<std::uint16_t>(slot(low));
        else
            b.producer = static_cast<std::int32_t>(emit(Op::Move, slot(low), slot(low + 1)));
    } else if (aInRegister) {
        a.producer = static_cast<std::int32_t>(emit(Op::Move, slot(low + 1), slot(low)));
    }
    std::swap(a, b);
}

void Translator::begin(Op op, std::size_t savedCount) {
    const Op closing = op == Op::BeginTell ? Op::EndTell : op == Op::BeginConsider ? Op::EndConsider : op == Op::BeginTimeout ? Op::EndTimeout : Op::Move;
    for (std::size_t i = 0; i < savedCount; ++i) {
        Entry entry;
        entry.kind = Entry::Kind::Saved;
        entry.index = closing == Op::Move ? 0 : static_cast<std::uint16_t>(closing);
        push(entry);
    }
}

/// The value of a scope goes down to where the scope began.
void Translator::endScope(Op op, std::size_t at) {
    if (mStack.size() < 2)
        throw Corruption();
    follow(top(), Evaluate::Fully);
    const bool dead = topIsDead(static_cast<std::int32_t>(at) + 1);
    const std::size_t valueDepth = top();
    if (mStack.back().kind == Entry::Kind::It)
        materialise(valueDepth);
    const Entry value = pop();
    popSaved();
    if (op != Op::Corrupt)
        emit(op, slot(mStack.size()));
    if (dead)
        pushConstant(Value::undefined());
    else
        pushMoved(value, valueDepth);
}

void Translator::defineScript(std::size_t at) {
    if (mStack.size() < 2)
        throw Corruption();
    const Entry tree = pop();
    if (tree.kind != Entry::Kind::Constant)
        throw Corruption();
    materialise(top());
    const std::size_t depth = top();
    pop();
    const Value initialiser = literal(mStored[at].first);
    if (!is<Handler>(initialiser))
        throw Corruption();
    const std::size_t producer = emit(Op::DefineScript, slot(depth), tree.index, constant(initialiser));
    barrier();
    pushRegister(producer);
}

void Translator::defineHandler(std::size_t at) {
    const Value handler = literal(mStored[at].first);
    const Handler* object = as<Handler>(handler);
    if (!object || object->source->children.size() < block::kHandlerChildren)
        throw Corruption();
    const Value name = mLoad(mContext, object->source->children[block::kName], mHandler.store);
    pushRegister(emit(Op::DefineHandler, slot(mStack.size()), constant(handler)));
    auto local = std::find(mCode->localNames.begin(), mCode->localNames.end(), name);
    if (local != mCode->localNames.end())
        storeLocal(static_cast<std::size_t>(local - mCode->localNames.begin()));
}

void Translator::translate(std::size_t at) {
    const StoredInstruction& stored = mStored[at];
    const auto need = [this](std::size_t count) {
        if (mStack.size() < count)
            throw Corruption();
    };
    const auto unary = [&](Op op, bool boolean) {
        need(1);
        follow(top(), Evaluate::Fully);
        const std::size_t from = reg(top());
        pop();
        pushRegister(emit(op, slot(mStack.size()), from), false, boolean);
    };
    const auto first = static_cast<std::size_t>(stored.first);
    if (isComparison(stored.opcode))
        return compare(at);
    switch (stored.opcode) {
    case Opcode::StartsWith:
        binary(Op::StartsWith, Op::Corrupt);
        mStack.back().boolean = true;
        return;
    case Opcode::EndsWith:
        binary(Op::EndsWith, Op::Corrupt);
        mStack.back().boolean = true;
        return;
    case Opcode::Contains:
        binary(Op::Contains, Op::Corrupt);
        mStack.back().boolean = true;
        return;
    case Opcode::Add:
        return binary(Op::Add, Op::AddConstant);
    case Opcode::Subtract:
        return binary(Op::Subtract, Op::SubtractConstant);
    case Opcode::Multiply:
        return binary(Op::Multiply, Op::MultiplyConstant);
    case Opcode::Divide:
        return binary(Op::Divide, Op::Corrupt);
    case Opcode::Quotient:
        return binary(Op::Quotient, Op::QuotientConstant);
    case Opcode::Remainder:
        return binary(Op::Remainder, Op::RemainderConstant);
    case Opcode::Power:
        return binary(Op::Power, Op::Corrupt);
    case Opcode::Concatenate:
        return binary(Op::Concatenate, Op::Corrupt);
    case Opcode::Coerce: {
        need(2);
        const Entry& target = mStack.back();
        const bool toBoolean = target.kind == Entry::Kind::Constant && constantOf(target) == Value::code("bool"_4cc);
        if (toBoolean && mStack[top() - 1].boolean) {
            pop();
            return;
        }
        return binary(Op::Coerce, Op::Corrupt);
    }
    case Opcode::Negate:
        return unary(Op::Negate, false);
    case Opcode::Not:
        return unary(Op::Not, true);
    case Opcode::And:
        return shortCircuit(at, false);
    case Opcode::Or:
        return shortCircuit(at, true);
    case Opcode::TestIf:
        return testIf(at);
    case Opcode::Jump:
        return jump(stored.first);
    case Opcode::MessageSend:
        return send(at);
    case Opcode::PositionalMessageSend:
        return call(at, false);
    case Opcode::PositionalContinue:
        need(3);
        return call(at, true);
    case Opcode::Continue:
        need(3);
        return continueSend(at);
    case Opcode::Error:
        need(3);
        return raise();
    case Opcode::Return:
        need(1);
        follow(top(), Evaluate::Fully);
        emit(Op::Return, reg(top()));
        mReachable = false;
        return;
    case Opcode::MakeVector:
    case Opcode::MakeList:
    case Opcode::MakeRecord: {
        const auto count = static_cast<std::size_t>(popCount());
        const std::size_t base = mStack.size() - count;
        for (std::size_t depth = base; depth < mStack.size(); ++depth) {
            follow(depth, Evaluate::Locally);
            requireResult(depth);
        }
        materialiseFrom(base);
        for (std::size_t i = 0; i < count; ++i)
            pop();
        if (stored.opcode == Opcode::MakeRecord)
            pushRegister(emit(Op::MakeRecord, slot(base), slot(base), count));
        else
            pushRegister(emit(Op::MakeList, slot(base), slot(base), count, stored.opcode == Opcode::MakeList ? 1 : 0));
        return;
    }
    case Opcode::MakeReference:
        need(1);
        {
            const std::size_t from = reg(top());
            pop();
            pushRegister(emit(Op::MakeReference, slot(mStack.size()), from));
        }
        return;
    case Opcode::Tell:
    case Opcode::BeginTimeout:
    case Opcode::BeginTransaction: {
        need(1);
        follow(top(), Evaluate::Locally);
        requireResult(top());
        const std::size_t from = reg(top());
        pop();
        const Op op = stored.opcode == Opcode::Tell ? Op::BeginTell : Op::BeginTimeout;
        if (stored.opcode == Opcode::BeginTransaction)
            return begin(Op::Move, 1);
        emit(op, slot(mStack.size()), from);
        return begin(op, 1);
    }
    case Opcode::EndTell:
        return endScope(Op::EndTell, at);
    case Opcode::EndTimeout:
        return endScope(Op::EndTimeout, at);
    case Opcode::EndTransaction:
        return endScope(Op::Corrupt, at);
    case Opcode::Consider: {
        need(2);
        const Entry ignored = pop(), considered = pop();
        if (ignored.kind != Entry::Kind::Constant || considered.kind != Entry::Kind::Constant)
            throw Corruption();
        emit(Op::BeginConsider, slot(mStack.size()), considered.index, ignored.index);
        begin(Op::BeginConsider, 1);
        return;
    }
    case Opcode::EndConsider:
        return endScope(Op::EndConsider, at);
    case Opcode::ErrorHandler:
        flush();
        slot(mStack.size() + 3);
        emit(Op::BeginTry, slot(mStack.size()));
        begin(Op::BeginTry, 3);
        if (stored.first <= static_cast<std::int32_t>(at))
            throw Corruption();
        merge(stored.first);
        mOpenTries.emplace_back(stored.first, static_cast<std::uint32_t>(mCode->instructions.size()));
        barrier();
        return;
    case Opcode::EndErrorHandler: {
        need(4);
        follow(top(), Evaluate::Fully);
        const std::size_t valueDepth = top();
        if (mStack.back().kind == Entry::Kind::It)
            materialise(valueDepth);
        const Entry value = pop();
        for (int i = 0; i < 3; ++i)
            popSaved();
        if (topIsDead(stored.first))
            pushConstant(Value::undefined());
        else
            pushMoved(value, valueDepth);
        return jump(stored.first);
    }
    case Opcode::HandleError: {
        for (int i = 0; i < 3; ++i)
            popSaved();
        emit(Op::CatchError, slot(mStack.size()), constant(literal(stored.first)),
             constant(Value::object(mHeap.make<Stored>(mLiterals[static_cast<std::size_t>(stored.second)]))));
        barrier();
        std::fill(mDefined.begin(), mDefined.end(), false);
        return;
    }
    case Opcode::LinkRepeat:
        if (stored.first <= static_cast<std::int32_t>(at))
            throw Corruption();
        mLoops.push_back({stored.first, mStack.size()});
        return;
    case Opcode::Exit:
        return exitLoop();
    case Opcode::RepeatNTimes:
        return repeatTimes();
    case Opcode::RepeatWhile:
        return repeatWhile(true);
    case Opcode::RepeatUntil:
        return repeatWhile(false);
    case Opcode::RepeatInCollection:
        return repeatInCollection(stored);
    case Opcode::RepeatInRange:
        return repeatInRange(stored);
    case Opcode::PushMe:
    case Opcode::PushIt:
    case Opcode::PushNext: {
        Entry entry;
        entry.kind = stored.opcode == Opcode::PushMe ? Entry::Kind::Me : stored.opcode == Opcode::PushIt ? Entry::Kind::It : Entry::Kind::Next;
        return push(entry);
    }
    case Opcode::MakeProperty:
        return makeProperty();
    case Opcode::MakeElement:
        return makeElement();
    case Opcode::MakeEvery:
        return makeSpecifier(Specifier::Form::Every, 2);
    case Opcode::MakeSome:
        return makeSpecifier(Specifier::Form::Some, 2);
    case Opcode::MakeElementByKey:
        return makeSpecifier(Specifier::Form::ElementByKey, 4);
    case Opcode::MakeFilter:
        return makeSpecifier(Specifier::Form::Filter, 2);
    case Opcode::MakeRange:
        return makeSpecifier(Specifier::Form::Range, 4);
    case Opcode::MakeBefore:
        return makeSpecifier(Specifier::Form::Before, 2);
    case Opcode::MakeAfter:
        return makeSpecifier(Specifier::Form::After, 2);
    case Opcode::MakeBeginning:
        return makeSpecifier(Specifier::Form::Beginning, 1);
    case Opcode::MakeEnd:
        return makeSpecifier(Specifier::Form::End, 1);
    case Opcode::MakeMiddle:
        return makeSpecifier(Specifier::Form::Middle, 2);
    case Opcode::TestEqual:
    case Opcode::TestNotEqual:
    case Opcode::TestGreater:
    case Opcode::TestGreaterOrEqual:
    case Opcode::TestLess:
    case Opcode::TestLessOrEqual:
    case Opcode::TestStartsWith:
    case Opcode::TestEndsWith:
    case Opcode::TestContains:
    case Opcode::TestAnd:
    case Opcode::TestOr:
    case Opcode::TestNot: {
        // A test is kept as a description: the operator goes between its operands.
        const bool isNot = stored.opcode == Opcode::TestNot;
        need(isNot ? 1 : 2);
        Entry right;
        std::size_t rightDepth = top();
        if (!isNot) {
            follow(top(), Evaluate::Locally);
            right = pop();
        }
        if (right.kind == Entry::Kind::Register && !isNot) { // make room for the operator below it
            push(right);
            Entry operation;
            push(operation);
            emit(Op::Move, slot(top()), slot(top() - 1));
            emit(Op::LoadConstant, slot(top() - 1), constant(Value::integer(static_cast<std::int32_t>(stored.opcode))));
            mStack[top() - 1] = Entry();
        } else {
            pushConstant(Value::integer(static_cast<std::int32_t>(stored.opcode)));
            if (isNot)
                pushConstant(Value::undefined());
            else
                pushMoved(right, rightDepth);
        }
        makeSpecifier(Specifier::Form::Test, 3);
        mStack.back().raw = false;
        return;
    }
    case Opcode::GetData:
        need(1);
        return follow(top(), Evaluate::Fully);
    case Opcode::SetData:
        return setData(false);
    case Opcode::CopyData:
        return setData(true);
    case Opcode::DefineActor:
        return defineScript(at);
    case Opcode::EndDefineActor:
        return need(1);
    case Opcode::DefineProcedure:
        return defineHandler(at);
    case Opcode::DefineProperty:
        need(1);
        follow(top(), Evaluate::Fully);
        emit(Op::DefineParent, reg(top()), 0, constant(literal(stored.first)));
        return;
    case Opcode::StoreResult: {
        need(1);
        if (mUsesResult) {
            follow(top(), Evaluate::Fully);
            emit(Op::SetResult, reg(top()));
        } else if (mStack.back().raw) {
            follow(top(), Evaluate::Fully);
        }
        pop();
        return;
    }
    case Opcode::GetResult:
        return pushRegister(emit(Op::GetResult, slot(mStack.size())));
    case Opcode::Clone:
        need(1);
        {
            const std::size_t from = reg(top());
            pop();
            pushRegister(emit(Op::Clone, slot(mStack.size()), from));
        }
        return;
    case Opcode::Pop:
        pop();
        return;
    case Opcode::Dup:
        return duplicate(at);
    case Opcode::Swap:
        return swap();
    case Opcode::PushVariable:
    case Opcode::PushVariableLong:
        return pushLocal(first);
    case Opcode::PopVariable:
    case Opcode::PopVariableLong:
        return storeLocal(first);
    case Opcode::PushGlobal:
    case Opcode::PushGlobalLong: {
        const Value name = literal(stored.first);
        if (name == Value::code("rslt"_4cc)) {
            const std::size_t producer = emit(Op::GetResult, slot(mStack.size()));
            pushRegister(producer);
            emit(Op::CheckVariable, slot(top()), constant(name));
            return;
        }
        return pushRegister(emit(Op::GetGlobal, slot(mStack.size()), constant(name), cache()));
    }
    case Opcode::PopGlobal:
    case Opcode::PopGlobalLong:
        need(1);
        follow(top(), Evaluate::Fully);
        emit(Op::SetGlobal, reg(top()), constant(literal(stored.first)), cache());
        return;
    case Opcode::PushLiteral:
    case Opcode::PushLiteralLong:
        return pushConstant(literal(stored.first));
    case Opcode::PushParentVariable:
        if (stored.first == 1 && !mCode->hasScope)
            return pushRegister(emit(Op::GetSlot, slot(mStack.size()), static_cast<std::size_t>(stored.second)));
        return pushRegister(emit(Op::GetScope, slot(mStack.size()), first, static_cast<std::size_t>(stored.second)));
    case Opcode::PopParentVariable:
        need(1);
        follow(top(), Evaluate::Fully);
        if (stored.first == 1 && !mCode->hasScope)
            emit(Op::SetSlot, reg(top()), static_cast<std::size_t>(stored.second));
        else
            emit(Op::SetScope, reg(top()), first, static_cast<std::size_t>(stored.second));
        return;
    case Opcode::PushTrue:
        return pushConstant(Value::boolean(true));
    case Opcode::PushFalse:
        return pushConstant(Value::boolean(false));
    case Opcode::PushEmpty:
        return pushConstant(Value::object(mHeap.list()));
    case Opcode::PushUndefined:
        return pushConstant(Value::undefined());
    case Opcode::PushMinus1:
    case Opcode::Push0:
    case Opcode::Push1:
    case Opcode::Push2:
    case Opcode::Push3:
        return pushConstant(Value::integer(static_cast<std::int32_t>(stored.opcode) - static_cast<std::int32_t>(Opcode::Push0)));
    default:
        throw Corruption();
    }
}

std::unique_ptr<Code> Translator::run(const void* const* labels) {
    try {
        readHandler();
        mLabels.resize(mStored.size() + 2);
        findTargets();
        findCertainLocals();
        mDefined.assign(mCode->localCount, false);
        // Every way of passing parameters sets them all.
        std::fill_n(mDefined.begin(), mCode->positionalCount, true);
        for (std::size_t i = 0; i < mStored.size(); ++i) {
            place(i);
            if (mSkip > 0) {
                --mSkip;
                continue;
            }
            if (!mReachable)
                continue;
            const auto here = static_cast<std::uint32_t>(mCode->instructions.size());
            if (!mCode->positions.empty() && mCode->positions.back().instruction == here)
                mCode->positions.back().offset = mStored[i].offset;
            else
                mCode->positions.push_back({here, mStored[i].offset});
            translate(i);
        }
        place(mStored.size());
        if (mReachable) { // fell off the end
            const std::size_t last = emit(Op::LoadConstant, slot(0), constant(Value::undefined()));
            emit(Op::Return, mCode->instructions[last].a);
            mMaximumDepth = std::max<std::size_t>(mMaximumDepth, 1);
        }
        for (const Detour& detour : mDetours) {
            mCode->instructions[detour.branch].setTarget(mCode->instructions.size());
            emit(detour.workOp, detour.work.a, detour.work.b);
            emitBranch(Op::Jump, 0, 0, detour.target);
        }
        for (const Label& label : mLabels)
            for (std::size_t use : label.uses) {
                if (label.position < 0)
                    throw Corruption();
                mCode->instructions[use].setTarget(static_cast<std::size_t>(label.position));
            }
        mCode->frameSize = static_cast<std::uint32_t>(mBase + mMaximumDepth + 2);
    } catch (const Corruption&) {
        mCode = std::make_unique<Code>();
        mOps.clear();
        mCode->isPositional = true;
        mCode->instructions.emplace_back();
        mOps.push_back(Op::Corrupt);
    }
    for (std::size_t i = 0; i < mOps.size(); ++i)
        mCode->instructions[i].go = labels[static_cast<std::size_t>(mOps[i])];
    return std::move(mCode);
}

} // namespace

std::uint32_t Code::offsetOf(std::size_t instruction) const {
    auto after = std::upper_bound(positions.begin(), positions.end(), instruction, [](std::size_t at, const Position& position) { return at < position.instruction; });
    return after == positions.begin() ? 0 : std::prev(after)->offset;
}

std::unique_ptr<Code> translate(const Handler& handler, Heap& heap, LiteralLoader load, void* context, const void* const* labels) {
    return Translator(handler, heap, load, context).run(labels);
}

} // namespace quoddle
