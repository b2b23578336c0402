// SPDX-License-Identifier: MIT
// From source text to the tree of stored nodes: exactly the tree (kinds, children, flags) that a compiled script holds, NodeKind.h lists
// it.
//
// Decision: the grammar is read by recursive descent with the longest term that fits at every word, and the parser knows only what words
// are, never what they do; so a tree may still be refused by the compiler. Nesting is bounded: too deep a script is an error, not a crash.
#pragma once

#include "platform/applescript/image/Object.h"
#include "platform/applescript/syntax/ApplicationLiteral.h"
#include "platform/applescript/terminology/Term.h"
#include "platform/base/OSStatus.h"
#include "platform/base/Result.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quoddle::syntax {

struct ParseError {
    OSStatus number = noErr;
    std::u16string message;
    /// The offending text, in UTF-16 units of the source.
    std::size_t start = 0;
    std::size_t end = 0;
};

struct SourceRange {
    std::uint32_t start = 0;
    std::uint32_t end = 0;
};

/// Where in the source each node of a tree was written.
class SourceMap {
public:
    void add(const Object* node, SourceRange range) { mRanges.emplace_back(node, range); }
    /// nullopt for objects that are no nodes of that parse.
    std::optional<SourceRange> find(const Object* node) const;

private:
    // Most trees are never asked: the table is sorted when the first question comes.
    mutable std::vector<std::pair<const Object*, SourceRange>> mRanges;
    mutable std::size_t mSorted = 0;
};

struct ParseOptions {
    /// The dictionary of an application; nullptr, or no function: it cannot be had and its words are unknown. It must outlive the parse.
    std::function<const TermSource*(const ApplicationName&)> applicationTerms;
    /// Seconds since 1904-01-01 in local time, for date literals that lack the date.
    std::int64_t now = 0;
    /// Filled when not null; it may be asked as long as the store lives.
    SourceMap* sourceMap = nullptr;
};

/// The tree of a script: what the tree child of its Script block holds. Nil for a script without a line. The objects are made in `store`.
Result<Object*, ParseError> parse(std::u16string_view source, ObjectStore& store, const ParseOptions& options = {});

} // namespace quoddle::syntax
