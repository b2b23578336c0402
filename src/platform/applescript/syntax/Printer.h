// SPDX-License-Identifier: MIT
// Prints the tree of stored nodes as source text.
//
// Decision: the tree tells everything about the text but its words: flags tell spellings, and parentheses and blank lines are nodes. The
// printer adds parentheses only where the text could not be read back without them. Words come from a Terminology; codes without a word are
// printed raw. The depth is bounded.
#pragma once

#include "platform/applescript/image/Object.h"
#include "platform/applescript/syntax/Parser.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace quoddle::syntax {

enum class PrintedKind : std::uint8_t { Plain, Keyword, Term, Identifier, Operator, Literal, Comment };

/// A stretch of printed text of one kind, for styling.
struct PrintedRun {
    std::size_t start = 0; // UTF-16 units
    std::size_t length = 0;
    PrintedKind kind = PrintedKind::Plain;
};

struct PrintOptions {
    /// As in ParseOptions: answers the dictionary of an application, nullptr when it cannot be had.
    std::function<const TermSource*(const ApplicationName&)> applicationTerms;
    /// Filled when not null with the runs of the text, in order and without gaps.
    std::vector<PrintedRun>* runs = nullptr;
    /// Filled when not null with the places of the expressions in the text.
    SourceMap* sourceMap = nullptr;
};

/// The source of a tree as parse() makes it, or of any of its nodes. Lines end with a line feed, except the last. Empty when the tree is
/// not well formed (isWellFormed), as one from a damaged file may be.
std::u16string printTree(const Object* tree, const PrintOptions& options = {});

} // namespace quoddle::syntax
