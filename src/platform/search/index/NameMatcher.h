// SPDX-License-Identifier: MIT
// A predicate made ready to be asked of very many names.
//
// Decision: what can be told from the name alone is told from its bytes; the answer is "unknown" only when it depends on more, and then the
// predicate itself is asked of the file. So the kind of a file, which may have to be read for it, is found out only for names that fit.
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
        std::string_view reduced; // what NameReducer makes of it; the same when it is ASCII
        LetterSet letters;        // see FileNames::letters()
        bool isASCII;
        bool isPlain; // the reduced name
        bool isFolder;
    };

    virtual ~NameMatcher() = default;
    /// Any thread.
    virtual Answer match(const Name& name) const = 0;

    /// Null: everything matches. The matcher keeps what it needs of the predicate.
    static std::unique_ptr<NameMatcher> compile(const NSPredicateRef& predicate);
};

} // namespace quoddle
