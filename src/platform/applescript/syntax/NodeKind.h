// SPDX-License-Identifier: MIT
// The kinds of syntax-tree nodes, with the numbers under which compiled scripts store them. One list, read by the parser, the printer and
// the compiler. A child marked "or nil" is a Nil object when absent.
#pragma once

#include <cstdint>

namespace quoddle {
struct Object;
}

namespace quoddle::syntax {

// clang-format off
#define QUODDLE_NODE_KINDS(X) \
    X(Term, 49)            /* property, class or other term: code */ \
    X(Every, 50)           /* class; flag 1: plural written */ \
    X(Some, 51)            /* class */ \
    X(Element, 52)         /* class, index or name; flag 1 ordinal word, 2 numeric ordinal, 0x100 front/back */ \
    X(ElementByKey, 53)    /* class, key, form */ \
    X(Filter, 54)          /* specifier, test; flag 1: "where" */ \
    X(Range, 55)           /* class, from, to */ \
    X(Before, 56)          /* class */ \
    X(After, 57)           /* class */ \
    X(Beginning, 58) \
    X(End, 59) \
    X(Middle, 60)          /* class */ \
    X(Equal, 61) X(NotEqual, 62) X(Greater, 63) X(GreaterOrEqual, 64) X(Less, 65) X(LessOrEqual, 66) /* left, right */ \
    X(StartsWith, 67) X(EndsWith, 68) X(Contains, 69) /* left, right; Contains flag 1: written "b is in a" */ \
    X(And, 70) X(Or, 71) X(Not, 72) \
    X(Call, 73)            /* (identifier, list of arguments, labels) or (event, direct or nil, labels); also handler headings */ \
    X(List, 74) X(Record, 75) \
    X(Return, 76)          /* expression or nil */ \
    X(Continue, 77)        /* call */ \
    X(ReferenceTo, 78) \
    X(Tell, 79)            /* body, target; flag 1: "tell x to …" */ \
    X(Considering, 80)     /* body, considered list, ignored list */ \
    X(Try, 81)             /* body, error heading, handler body or nil */ \
    X(Error, 82)           /* event, message or nil, labels */ \
    X(Exit, 83) \
    X(Repeat, 84)          /* body */ \
    X(RepeatTimes, 85)     /* body, count */ \
    X(RepeatWhile, 86)     /* body, condition */ \
    X(RepeatUntil, 87)     /* body, condition */ \
    X(RepeatIn, 88)        /* body, variable, list */ \
    X(RepeatFrom, 89)      /* body, variable, from, to, by or nil */ \
    X(If, 90)              /* condition, then, list [condition, block …], else or nil; flag 1: one line */ \
    X(Add, 91) X(Subtract, 92) X(Multiply, 93) X(Divide, 94) X(Quotient, 95) X(Remainder, 96) X(Power, 97) X(Concatenate, 98) \
    X(As, 99)              /* value, class */ \
    X(Negate, 100) \
    X(Get, 101)            /* explicit get */ \
    X(Me, 102) X(It, 103) \
    X(Script, 104)         /* name, body */ \
    X(Handler, 105)        /* heading, body; flag 0x100: "to" */ \
    X(Property, 106)       /* name, value */ \
    X(Block, 107)          /* list of statements */ \
    X(Line, 108)           /* statement or nil, comment (8-bit), comment (Unicode, may be absent) */ \
    X(Literal, 109) \
    X(Of, 110)             /* part, container; flag 1 "my", 2 "'s" or "its", 0x100 "in" */ \
    X(Variable, 111)       /* identifier or code */ \
    X(Global, 112) X(Local, 113) /* list */ \
    X(Set, 114) X(Copy, 115)     /* value, target */ \
    X(Timeout, 116)        /* body, seconds */ \
    X(Transaction, 117)    /* body, session or nil */ \
    X(LinkedList, 118) \
    X(UsingTerms, 119)     /* body, application */ \
    X(Use, 120)            /* name or nil, target, options */
// clang-format on

enum class NodeKind : std::uint8_t {
#define QUODDLE_NODE(name, number) name = number,
    QUODDLE_NODE_KINDS(QUODDLE_NODE)
#undef QUODDLE_NODE
};

constexpr std::uint8_t tagOf(NodeKind kind) {
    return static_cast<std::uint8_t>(kind);
}

/// Whether a tree can be printed and compiled. Trees from the parser can; trees from files may be anything: every node must have the
/// children that its kind calls for, no node may contain itself, and depth and size when written out are bounded. Takes time in proportion
/// to the number of objects.
bool isWellFormed(const Object* tree);

} // namespace quoddle::syntax
