// SPDX-License-Identifier: MIT
// A single search term, which may be spread over a name, ready to be looked for in many names.
//
// Kept on purpose: signs that mean something in regular expressions keep their meaning, and a term that is no expression is found nowhere.
//
// Decision: the term is compiled as the expression that it stands for; a plain term is looked for in plain names without it (PlainTerm),
// with the same outcome. An expression that takes too long for a name finds nothing in it, and after several such names nothing at all.
#pragma once

#include "platform/search/ranking/PlainName.h"
#include "platform/search/ranking/PlainTerm.h"

#include <memory>
#include <string>

struct URegularExpression;

namespace quoddle {

/// One thread at a time.
class SpreadTerm {
public:
    explicit SpreadTerm(std::u16string_view term);
    ~SpreadTerm();
    SpreadTerm(const SpreadTerm&) = delete;
    SpreadTerm& operator=(const SpreadTerm&) = delete;

    /// Empty when the term does not occur.
    NameRanges rangesIn(std::u16string_view name);
    /// The same without the way for plain terms; for those who compare the two.
    NameRanges rangesByExpression(std::u16string_view name);

    /// The expression: "(re).*?(p).*?(o)" and so on.
    static std::u16string expressionFor(std::u16string_view term);

private:
    struct Close {
        void operator()(URegularExpression* expression) const;
    };
    std::unique_ptr<URegularExpression, Close> mExpression; // made when first needed
    const std::u16string mTerm;
    const std::optional<PlainTerm> mPlain;
    PlainName mName;
    bool mIsCompiled = false;
    int mTimeouts = 0;
};

} // namespace quoddle
