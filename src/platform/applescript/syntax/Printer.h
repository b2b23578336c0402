// SPDX-License-Identifier: MIT
// From the tree of stored nodes to source text: what a script's author gets to see.
//
// Decision: the tree says everything about the text but its words: spellings are in the flags, parentheses and blank lines are nodes, so
// the printer adds parentheses only where the tree could not be read back without them. Words come from a Terminology, codes that nobody
// has a word for are printed raw. How deep it goes is bounded.
#pragma once

#include "platform/applescript/image/Object.h"
#include "platform/applescript/syntax/Parser.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace quoddle::syntax {

enum class PrintedKind : std::uint8_t { Plain, Keyword, Term, Identifier, Operator, Literal, Comment };

/// A stretch of printed text of one kind, for whoever wants to style it.
struct PrintedRun {
    std::size_t start = 0; // UTF-16 units
    std::size_t length = 0;
    PrintedKind kind = PrintedKind::Plain;
};

struct PrintOptions {
    /// As for the parser: the dictionary of an application, nullptr when it cannot be had.
    std::function<const TermSource*(const ApplicationName&)> applicationTerms;
    /// Filled when not null: the runs of the text in order, without gaps.
    std::vector<PrintedRun>* runs = nullptr;
};

/// The source of a tree as parse() makes it, or of any node of one. Lines end with a line feed; the last has none. Empty when the tree is
/// not well formed (syntax/TreeShape.h), as one out of a damaged file may be.
std::u16string printTree(const Object* tree, const PrintOptions& options = {});

} // namespace quoddle::syntax
