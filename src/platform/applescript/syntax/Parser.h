// SPDX-License-Identifier: MIT
// Parses source text to the tree of stored nodes: exactly the tree (kinds, children, flags) that a compiled script holds, as NodeKind.h
// lists it.
//
// Decision: recursive descent, with the longest term that fits at every word. The parser knows only what words are, never what they do, so
// the compiler may still refuse a tree. Nesting is bounded: a script that is nested too deeply is an error, not a crash.
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
    /// The target of the `tell` around a word that stopped the parser, when that application has no dictionary: the word may be its.
    std::optional<ApplicationName> withoutDictionary = {};
    /// In a source of whole lines: how many blocks are open, when the error is that it ends, which more lines may mend. 0 inside a text or
    /// a comment.
    std::optional<std::size_t> openBlocks = {};
};

struct SourceRange {
    std::uint32_t start = 0;
    std::uint32_t end = 0;
};

/// Where in the source each node of a tree was written.
class SourceMap {
public:
    void add(const Object* node, SourceRange range) { mRanges.emplace_back(node, range); }
    /// nullopt for objects that are not nodes of that parse.
    std::optional<SourceRange> find(const Object* node) const;

private:
    // Sorted at the first question, because most trees are never asked about.
    mutable std::vector<std::pair<const Object*, SourceRange>> mRanges;
    mutable std::size_t mSorted = 0;
};

struct ParseOptions {
    /// Answers the dictionary of an application, which must outlive the parse. When it answers nullptr, or there is no function, the
    /// application's words are unknown.
    std::function<const TermSource*(const ApplicationName&)> applicationTerms;
    /// The present, in seconds since 1904-01-01 local time, for date literals that lack the date.
    std::int64_t now = 0;
    /// Filled when not null. It may be used while the store lives.
    SourceMap* sourceMap = nullptr;
};

/// Answers the tree of a script, as it is stored in the script's block; Nil for a script without a line. The objects are made in `store`.
Result<Object*, ParseError> parse(std::u16string_view source, ObjectStore& store, const ParseOptions& options = {});

} // namespace quoddle::syntax
