// SPDX-License-Identifier: MIT
// A handler's code as the machine runs it, and the translation that makes it from stored code.
//
// Decision: register code. The stack code of compiled scripts is translated once, when the handler is first called: places on the operand
// stack become registers behind the locals, pushes of locals and literals disappear into the instructions that use them, and frequent
// sequences become one instruction. The stored code is never changed. Price: a translation of some microseconds for each handler that is
// called, and two forms to keep apart.
#pragma once

#include "platform/applescript/machine/HeapObject.h"
#include "platform/base/OSStatus.h"

namespace quoddle::machine {

// X(name): the internal instructions. r = register, k = constant; the operands a b c d have 16 bits, `target` takes the place of c and d.
// clang-format off
#define QUODDLE_INSTRUCTIONS(X) \
    X(Move)            /* r[a] = r[b] */ \
    X(LoadConstant)    /* r[a] = k[b] */ \
    X(LoadMe) X(LoadIt) /* r[a] */ \
    X(CheckVariable)   /* error unless r[a] is defined; k[b] is its name */ \
    X(CheckResult)     /* error unless r[a] is defined */ \
    X(Add) X(Subtract) X(Multiply) X(Divide) X(Quotient) X(Remainder) X(Power) X(Concatenate) /* r[a] = r[b] op r[c] */ \
    X(AddConstant) X(SubtractConstant) X(MultiplyConstant) X(QuotientConstant) X(RemainderConstant) /* r[a] = r[b] op k[c], a number */ \
    X(Equal) X(NotEqual) X(Greater) X(GreaterOrEqual) X(Less) X(LessOrEqual) X(StartsWith) X(EndsWith) X(Contains) /* r[a] = r[b] op r[c] */ \
    X(BranchUnlessEqual) X(BranchUnlessNotEqual) X(BranchUnlessGreater) X(BranchUnlessGreaterOrEqual) X(BranchUnlessLess) X(BranchUnlessLessOrEqual) \
                       /* to target unless r[a] op r[b] */ \
    X(BranchUnlessEqualConstant) X(BranchUnlessNotEqualConstant) X(BranchUnlessGreaterConstant) X(BranchUnlessGreaterOrEqualConstant) \
    X(BranchUnlessLessConstant) X(BranchUnlessLessOrEqualConstant) /* to target unless r[a] op k[b] */ \
    X(Negate) X(Not)   /* r[a] = op r[b] */ \
    X(Coerce)          /* r[a] = r[b] as r[c] */ \
    X(Jump)            /* to target */ \
    X(JumpBack)        /* to target, the beginning of a loop */ \
    X(BranchIfFalse)   /* r[a] */ \
    X(BranchIfTrue)    /* r[a] */ \
    X(RepeatInRange)   /* r[a]: from to by; r[b] = from, from += by; to target when done */ \
    X(RepeatInCollection) /* r[a]: list n i; r[b] = reference to item i; to target when done */ \
    X(RepeatTimes)     /* r[a]: limit i; to target when done */ \
    X(GetSlot) X(SetSlot)     /* slot b of the script that owns the handler, r[a] */ \
    X(GetScope) X(SetScope)   /* r[a], b scopes out, its variable c */ \
    X(GetGlobal) X(SetGlobal) /* r[a], k[b] is the name; cache c */ \
    X(GetResult) X(SetResult) /* r[a] */ \
    X(MakeSpecifier)   /* r[a] = specifier of form c from r[b], r[b + 1] … */ \
    X(GetProperty)     /* r[a] = property k[c] of r[b]; d: Evaluate */ \
    X(BuildElement)    /* r[a] = specifier of the element of class k[d], index r[c], of r[b] */ \
    X(GetItem)         /* r[a] = item r[c] of r[b] */ \
    X(GetElement)      /* r[a] = element of class k[d], index r[c] of r[b] */ \
    X(GetElementLocally) /* likewise, while the container is a value of this machine */ \
    X(SetProperty)     /* property k[c] of r[a] = r[b] */ \
    X(SetElement)      /* element of class k[d], index r[b] of r[a] = r[c] */ \
    X(SetEnd)          /* end of r[a] = r[b] */ \
    X(SetSpecifier) X(CopySpecifier) /* r[a] = r[b] stored in what specifier r[c] names */ \
    X(Evaluate)        /* r[a] = value of r[b] */ \
    X(EvaluateLocally) /* likewise, unless it belongs to an application */ \
    X(MakeReference)   /* r[a] = r[b] as a reference value */ \
    X(Clone)           /* r[a] = deep copy of r[b] */ \
    X(MakeList)        /* r[a] = list of c values from r[b] */ \
    X(MakeRecord)      /* r[a] = record of c keys and values from r[b] */ \
    X(Count)           /* r[a] = number of items of r[b] */ \
    X(Call)            /* r[a] = call of handler k[c] of r[a] with b values from r[a + 1] */ \
    X(CallMine)        /* likewise; the target is me and r[a] is unused; cache d */ \
    X(Send)            /* r[a] = command k[c], direct r[a], b labels and values from r[a + 1] */ \
    X(ContinueCall)    /* like Call, from the parent of the handler's script on */ \
    X(ContinueSend)    /* like Send, likewise */ \
    X(Return)          /* r[a] */ \
    X(Raise)           /* b labels and values from r[a], message r[a + b] */ \
    X(BeginTell)       /* keeps it in r[a]; it = r[b] */ \
    X(EndTell)         /* it = r[a] */ \
    X(BeginConsider)   /* keeps the considerations in r[a]; k[b] considered, k[c] ignored */ \
    X(EndConsider) \
    X(BeginTimeout)    /* keeps the time-out in r[a]; r[b] seconds */ \
    X(EndTimeout) \
    X(BeginTry)        /* keeps it, the considerations and the time-out in r[a] … */ \
    X(CatchError)      /* restores them; binds the error to k[b] (message) and k[c] (pattern), or raises it again */ \
    X(DefineScript)    /* r[a] = new script of initialiser k[c], name r[a], tree k[b] */ \
    X(DefineHandler)   /* r[a] = handler k[b], stored in the variable of its name */ \
    X(DefineParent)    /* the parent of the script being made = r[a] */ \
    X(Corrupt)         /* the stored code made no sense */
// clang-format on

enum class Op : std::uint16_t {
#define QUODDLE_INSTRUCTION(name) name,
    QUODDLE_INSTRUCTIONS(QUODDLE_INSTRUCTION)
#undef QUODDLE_INSTRUCTION
};

/// How far an instruction that reads a reference follows it.
enum class Evaluate : std::uint16_t {
    Never,   // leaves a specifier, unless its value would do as well
    Locally, // to the value, unless an application has to be asked for it
    Fully,
};

struct Instruction {
    const void* go = nullptr; // the address in the interpreter's loop; set when the translation is complete
    std::uint16_t a = 0;
    std::uint16_t b = 0;
    std::uint16_t c = 0;
    std::uint16_t d = 0;

    /// The index of the instruction that a jump goes to; it takes the place of c and d.
    std::uint32_t target() const { return c | static_cast<std::uint32_t>(d) << 16; }
    void setTarget(std::size_t index) {
        c = static_cast<std::uint16_t>(index & 0xFFFF);
        d = static_cast<std::uint16_t>(index >> 16);
    }
};
static_assert(sizeof(Instruction) == 16);

/// The slot that a name led to the last time; valid for scripts of the same layout.
struct SiteCache {
    std::uint32_t layout = 0;
    std::uint32_t slot = 0;
};

struct Code {
    /// The region of a try statement; inner regions come first. Positions are indexes of instructions.
    struct TryRegion {
        std::uint32_t begin;
        std::uint32_t end;
        std::uint32_t handler;
    };
    /// The instructions from this one on came from the stored instruction at `offset`.
    struct Position {
        std::uint32_t instruction;
        std::uint32_t offset;
    };

    std::vector<Instruction> instructions;
    std::vector<Value> constants;
    std::vector<SiteCache> caches;
    std::vector<TryRegion> tries;
    std::vector<Position> positions;
    std::vector<Value> localNames;
    // names of the locals, for the environments that this handler makes; null when it makes none
    std::shared_ptr<const std::vector<Value>> scopeNames;
    std::uint32_t localCount = 0;
    std::uint32_t frameSize = 0;       // registers
    std::uint32_t positionalCount = 0; // parameters that are passed by position and become the first locals
    bool isPositional = false;         // all parameters are positional
    bool hasScope = false;             // locals live in an environment or in the script being made, not in registers
    bool isInitialiser = false;

    /// The offset of the stored instruction that an instruction came from.
    std::uint32_t offsetOf(std::size_t instruction) const;
};

class Heap;

/// Turns a stored literal into a value; `context` is that given to translate.
using LiteralLoader = Value (*)(void* context, const Object* literal, const std::shared_ptr<ObjectStore>& store);

/// Translates the stored code of a handler and checks it on the way, so that the result is safe to run whatever the handler block holds.
/// Never null: code that makes no sense (unknown instruction, index out of range, jump into the middle of an instruction, unbalanced stack)
/// becomes one instruction that raises errOSACorruptData. `labels` are the interpreter's addresses by Op.
std::unique_ptr<Code> translate(const Handler& handler, Heap& heap, LiteralLoader load, void* context, const void* const* labels);

} // namespace quoddle::machine
