// SPDX-License-Identifier: MIT
// The flags of syntax-tree nodes. A flag tells how the author wrote something that can be written in several ways. The parser sets the
// flags, the printer reads them; they do not matter for running. The flags for the spellings of operators are in the operator table.
#pragma once

#include <cstdint>

namespace quoddle::syntax::flags {

enum Flag : std::uint16_t {
    // Line, as a wrapper around an expression
    Parentheses = 5,
    BreakBefore = 9,
    BreakAfter = 10,
    The = 0x100,
    // Line, as a line of statements: the form of its comment
    BlockComment = 0,
    DashComment = 1,
    NoComment = 2,
    DashOnHeader = 3, // the comment stands on the line of the block's header, and the Line holds the whole body
    BlockOnHeader = 4,
    HashComment = 6,
    HashOnHeader = 7,
    // Of
    My = 1,
    Its = 2,
    Possessive = 3,
    In = 0x100,
    // Element
    OrdinalWord = 1,        // first, last
    NumericOrdinal = 0x102, // 1st
    FrontOrBack = 0x100,
    // Every
    Plural = 1,
    // Range; 0 means from … to
    Thru = 0x100,
    Through = 0x101,
    // Before, After
    FrontOf = 0x100, // in front of, in back of
    Behind = 1,
    // Filter
    Whose = 0x100,
    Where = 1,
    That = 2,
    // Call; a handler's call has 0, or Labelled when its parameters have labels
    Labelled = 1,
    OfForm = 1, // count of x
    Command = 2,
    Postfix = 3, // x exists
    // Equal, NotEqual
    Asks = 2, // x is running
    // If, Tell
    OneLine = 1,
    // Handler
    WrittenTo = 0x100, // to f()
    // Text
    OldText = 1,
};

} // namespace quoddle::syntax::flags
