// SPDX-License-Identifier: MIT
// The instruction set of compiled scripts. One list, read by the compiler, the decoder, the verifier and the translator of the machine.
//
// An instruction is one byte of operation code, then 16-bit operands, high byte first. A branch offset is counted from the place of the
// operand itself. The comments show what an instruction takes from the stack and leaves there, bottom first; "keep" means that the value is
// stored and stays on the stack.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quoddle {

/// Of the code of one handler, in bytes. While it is translated it takes more than a hundred times as much memory.
constexpr std::size_t kLongestCode = std::size_t(8) << 20;

enum class Operands : std::uint8_t {
    None,
    Literal,       // index of a literal
    Local,         // index of a local variable
    Scope,         // depth, index
    Branch,        // offset
    TwoLiterals,   // message variable, pattern
    PackedLocal,   // index of a local variable, in the low 4 bits of the operation code
    PackedLiteral, // index of a literal, likewise
};

// X(name, code, operands, values taken, values left). A count of -1 means that the integer on top of the stack gives the number.
// clang-format off
#define QUODDLE_OPCODES(X) \
    X(Equal, 0x00, None, 2, 1) X(NotEqual, 0x01, None, 2, 1) X(GreaterThan, 0x02, None, 2, 1) X(GreaterThanOrEqual, 0x03, None, 2, 1) \
    X(LessThan, 0x04, None, 2, 1) X(LessThanOrEqual, 0x05, None, 2, 1) X(StartsWith, 0x06, None, 2, 1) X(EndsWith, 0x07, None, 2, 1) \
    X(Contains, 0x08, None, 2, 1) \
    X(And, 0x09, Branch, 1, 0)              /* a → (a false: a, jump) (a true: nothing) */ \
    X(Or, 0x0A, Branch, 1, 0)               /* likewise, jumps when true */ \
    X(Not, 0x0B, None, 1, 1) \
    X(MessageSend, 0x0C, Literal, -1, 1)    /* direct k1 v1 … n → result; n counts keys and values */ \
    X(MakeList, 0x0D, None, -1, 1)          /* v1 … vn n → linked list */ \
    X(MakeRecord, 0x0E, None, -1, 1)        /* k1 v1 … n → record; n counts keys and values */ \
    X(Return, 0x0F, None, 1, 0) \
    X(Continue, 0x10, Literal, -1, 1)       /* me k1 v1 … n next direct → result */ \
    X(MakeReference, 0x11, None, 1, 1)      /* specifier → reference value */ \
    X(Tell, 0x12, Branch, 1, 0)             /* target → ; branch to the matching EndTell */ \
    X(Consider, 0x13, Branch, 2, 0)         /* considered ignored → ; branch to the matching EndConsider */ \
    X(ErrorHandler, 0x14, Branch, 0, 0)     /* branch to HandleError */ \
    X(Error, 0x15, None, -1, 1)             /* me k1 v1 … n message → raises */ \
    X(Exit, 0x16, None, 1, 0)               /* v → ; leaves the innermost loop with v */ \
    X(LinkRepeat, 0x17, Branch, 0, 0)       /* opens a loop; branch to its exit */ \
    X(RepeatNTimes, 0x18, None, 3, 2)       /* limit i v → (limit i+1) (done: v, exit) */ \
    X(RepeatWhile, 0x19, None, 2, 0)        /* v condition → (true: nothing) (false: v, exit) */ \
    X(RepeatUntil, 0x1A, None, 2, 0)        /* v condition → (false: nothing) (true: v, exit) */ \
    X(RepeatInCollection, 0x1B, Local, 4, 3) /* list n i v → (local := item i; list n i+1) (done: v, exit) */ \
    X(RepeatInRange, 0x1C, Local, 4, 3)     /* from to by v → (local := from; from+by to by) (done: v, exit) */ \
    X(TestIf, 0x1D, Branch, 1, 0)           /* condition → ; jumps when false */ \
    X(Add, 0x1E, None, 2, 1) X(Subtract, 0x1F, None, 2, 1) X(Multiply, 0x20, None, 2, 1) X(Divide, 0x21, None, 2, 1) \
    X(Quotient, 0x22, None, 2, 1) X(Remainder, 0x23, None, 2, 1) X(Power, 0x24, None, 2, 1) X(Concatenate, 0x25, None, 2, 1) \
    X(Coerce, 0x26, None, 2, 1)             /* value class → value */ \
    X(Negate, 0x27, None, 1, 1) \
    X(PushMe, 0x29, None, 0, 1) X(PushIt, 0x2A, None, 0, 1) \
    X(PositionalMessageSend, 0x2B, Literal, -1, 1) /* target a1 … an n → result */ \
    X(MakeProperty, 0x2C, None, 2, 1)       /* container property → specifier */ \
    X(MakeEvery, 0x2D, None, 2, 1)          /* container class → specifier */ \
    X(MakeSome, 0x2E, None, 2, 1)           /* container class → specifier */ \
    X(MakeElement, 0x2F, None, 3, 1)        /* container class index-or-name → specifier */ \
    X(MakeElementByKey, 0x30, None, 4, 1)   /* container class key form → specifier */ \
    X(MakeFilter, 0x31, None, 2, 1)         /* specifier test → specifier */ \
    X(MakeRange, 0x32, None, 4, 1)          /* container class from to → specifier */ \
    X(MakeBefore, 0x33, None, 2, 1) X(MakeAfter, 0x34, None, 2, 1)     /* object class → specifier */ \
    X(MakeBeginning, 0x35, None, 1, 1) X(MakeEnd, 0x36, None, 1, 1)    /* container → specifier */ \
    X(MakeMiddle, 0x37, None, 2, 1)         /* container class → specifier */ \
    X(TestEqual, 0x38, None, 2, 1) X(TestNotEqual, 0x39, None, 2, 1) X(TestGreater, 0x3A, None, 2, 1) X(TestGreaterOrEqual, 0x3B, None, 2, 1) \
    X(TestLess, 0x3C, None, 2, 1) X(TestLessOrEqual, 0x3D, None, 2, 1) X(TestStartsWith, 0x3E, None, 2, 1) X(TestEndsWith, 0x3F, None, 2, 1) \
    X(TestContains, 0x40, None, 2, 1) X(TestAnd, 0x41, None, 2, 1) X(TestOr, 0x42, None, 2, 1) X(TestNot, 0x43, None, 1, 1) \
    X(GetData, 0x45, None, 1, 1)            /* specifier → value; a value passes through */ \
    X(SetData, 0x46, None, 2, 1)            /* value specifier → value */ \
    X(CopyData, 0x47, None, 2, 1)           /* value specifier → value, copied */ \
    X(PositionalContinue, 0x4A, Literal, -1, 1) /* me a1 … an n next it → result */ \
    X(DefineActor, 0x4B, Literal, 2, 0)     /* name tree → ; literal: the initialiser whose locals become the slots */ \
    X(DefineProcedure, 0x4C, Literal, 0, 1) /* → handler, bound to the slot of its name */ \
    X(DefineProperty, 0x4E, Literal, 1, 1)  /* keep; the property that the code names */ \
    X(StoreResult, 0x4F, None, 1, 0) X(GetResult, 0x50, None, 0, 1) \
    X(Clone, 0x51, None, 1, 1)              /* deep copy */ \
    X(EndDefineActor, 0x53, None, 0, 1) \
    X(EndTell, 0x55, None, 1, 1) X(EndConsider, 0x56, None, 1, 1) \
    X(EndErrorHandler, 0x57, Branch, 1, 1)  /* closes the handler and jumps */ \
    X(HandleError, 0x58, TwoLiterals, 0, 0) X(Jump, 0x59, Branch, 0, 0) \
    X(Pop, 0x5A, None, 1, 0) X(Dup, 0x5B, None, 1, 2) X(Swap, 0x5C, None, 2, 2) \
    X(PushVariableLong, 0x5D, Local, 0, 1) X(PopVariableLong, 0x5E, Local, 1, 1) \
    X(PushGlobalLong, 0x5F, Literal, 0, 1) X(PopGlobalLong, 0x60, Literal, 1, 1) X(PushLiteralLong, 0x61, Literal, 0, 1) \
    X(PushParentVariable, 0x62, Scope, 0, 1) X(PopParentVariable, 0x63, Scope, 1, 1) \
    X(PushNext, 0x64, None, 0, 1)           /* the marker of a continue */ \
    X(PushTrue, 0x65, None, 0, 1) X(PushFalse, 0x66, None, 0, 1) X(PushEmpty, 0x67, None, 0, 1) X(PushUndefined, 0x68, None, 0, 1) \
    X(PushMinus1, 0x69, None, 0, 1) X(Push0, 0x6A, None, 0, 1) X(Push1, 0x6B, None, 0, 1) X(Push2, 0x6C, None, 0, 1) X(Push3, 0x6D, None, 0, 1) \
    X(BeginTimeout, 0x6E, None, 1, 0) X(EndTimeout, 0x6F, None, 1, 1) \
    X(BeginTransaction, 0x70, Branch, 1, 0) X(EndTransaction, 0x71, None, 1, 1) \
    X(MakeVector, 0x76, None, -1, 1)        /* v1 … vn n → list */ \
    X(PushVariable, 0xA0, PackedLocal, 0, 1) X(PopVariable, 0xB0, PackedLocal, 1, 1) \
    X(PushGlobal, 0xC0, PackedLiteral, 0, 1) X(PopGlobal, 0xD0, PackedLiteral, 1, 1) X(PushLiteral, 0xE0, PackedLiteral, 0, 1)
// clang-format on

enum class Opcode : std::uint8_t {
#define QUODDLE_OPCODE(name, code, operands, taken, left) name = code,
    QUODDLE_OPCODES(QUODDLE_OPCODE)
#undef QUODDLE_OPCODE
};

} // namespace quoddle
