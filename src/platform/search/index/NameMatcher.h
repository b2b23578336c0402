// SPDX-License-Identifier: MIT
// A predicate compiled for matching very many names.
//
// Decision: all that the name alone decides is decided from its bytes. The answer is "unknown" only when it depends on more; the predicate
// itself is then evaluated for the file. So the content type, for which a file may have to be read, is found out only for names that match.
#pragma once

#include "platform/foundation/predicate/NSPredicate.h"
#include "platform/search/ranking/LetterSet.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace quoddle {

class NameMatcher {
public:
    enum class Answer : std::uint8_t { no, yes, unknown };
    struct Name {
        std::string_view bytes;   // UTF-8
        std::string_view reduced; // the name as reduced by NameReducer; the name itself when it is ASCII
        LetterSet letters;        // see FileNames::letters()
        bool isASCII;
        bool isPlain; // whether the reduced name is plain
        bool isFolder;
    };

    virtual ~NameMatcher() = default;
    /// May be called on any thread.
    virtual Answer match(const Name& name) const = 0;

    /// Null matches everything. The matcher keeps what it needs of the predicate.
    static std::unique_ptr<NameMatcher> compile(const NSPredicateRef& predicate);
};

} // namespace quoddle
