// SPDX-License-Identifier: MIT
// The words of the predicate language, shared by the parser and the printer.
#pragma once

#include "platform/foundation/predicate/NSPredicate.h"

namespace quoddle {

struct PredicateOperator {
    QLatin1StringView word;
    NSComparisonPredicate::Operator type;
};
/// The first spelling of an operator is the one that is printed.
inline constexpr PredicateOperator kPredicateOperators[] = {
    {QLatin1StringView("=="), NSComparisonPredicate::Operator::equalTo},
    {QLatin1StringView("="), NSComparisonPredicate::Operator::equalTo},
    {QLatin1StringView("!="), NSComparisonPredicate::Operator::notEqualTo},
    {QLatin1StringView("ENDSWITH"), NSComparisonPredicate::Operator::endsWith},
    {QLatin1StringView("LIKE"), NSComparisonPredicate::Operator::like},
    {QLatin1StringView("UTI-CONFORMS-TO"), NSComparisonPredicate::Operator::conformsToType},
};

struct PredicateOption {
    char letter;
    LikePattern::Option bit;
};
inline constexpr PredicateOption kPredicateOptions[] = {
    {'c', LikePattern::ignoresCase},
    {'d', LikePattern::ignoresDiacritics},
    {'w', LikePattern::matchesWords},
};

inline QString predicateOperatorName(NSComparisonPredicate::Operator type) {
    for (const PredicateOperator& known : kPredicateOperators)
        if (known.type == type)
            return known.word;
    return {};
}

/// A text as written in a predicate, in quotation marks.
QString predicateTextFormat(QString text);
/// The name of a value as written in a predicate: behind "#" when the name is also a word of the language, behind "#" and in quotation
/// marks when it has other characters than letters and digits.
QString predicateKeyFormat(const QString& key);

} // namespace quoddle
