// SPDX-License-Identifier: MIT
// A single search term that may be spread over a name, prepared for many names.
//
// QUIRK: characters that have a meaning in regular expressions keep it, and a term that is no valid expression is found nowhere; users who
// search with expressions rely on the first.
//
// Decision: the term is compiled to an expression. Plain terms are found in plain names without it (PlainTerm), with the same result. An
// expression that takes too long for a name finds nothing in it, and after several such names it finds nothing at all.
#pragma once

#include "platform/search/ranking/PlainName.h"
#include "platform/search/ranking/PlainTerm.h"

#include <memory>
#include <string>

struct URegularExpression;

namespace quoddle {

/// Used on one thread at a time.
class SpreadTerm {
public:
    explicit SpreadTerm(std::u16string_view term);
    ~SpreadTerm();
    SpreadTerm(const SpreadTerm&) = delete;
    SpreadTerm& operator=(const SpreadTerm&) = delete;

    /// The places of the term; empty when it does not occur.
    NameRanges rangesIn(std::u16string_view name);
    /// The same, always by the expression; used to check the way for plain terms.
    NameRanges rangesByExpression(std::u16string_view name);

    /// The term's expression, such as "(re).*?(p).*?(o)".
    static std::u16string expressionFor(std::u16string_view term);

private:
    struct Close {
        void operator()(URegularExpression* expression) const;
    };
    std::unique_ptr<URegularExpression, Close> mExpression; // compiled at the first use
    const std::u16string mTerm;
    const std::optional<PlainTerm> mPlain;
    PlainName mName;
    bool mIsCompiled = false;
    int mTimeouts = 0;
};

} // namespace quoddle
