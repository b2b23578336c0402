// SPDX-License-Identifier: MIT
// From what somebody types into the search field to the terms of the search and to the predicate that finds files by them.
#pragma once

#include "platform/foundation/predicate/NSPredicate.h"

#include <QStringList>

namespace quoddle {

/// White space parts terms, a phrase in quotes is one. `allowDiscontiguous` is set: false when something was quoted, and then no term is
/// looked for spread over a name. No more than a hundred terms are taken: those behind them are not looked for.
QStringList splitIntoContentTerms(const QString& text, bool& allowDiscontiguous);

/// A LIKE pattern for a term whose characters may lie apart, the first two aside: "re*p*o*r*t*" for "report".
QString discontiguousMatchString(const QString& term);

/// Finds the names that have one of the terms, at least one, in them; what a name must have of them is the ranking's matter.
NSPredicateRef predicateForTerms(const QStringList& terms, bool allowDiscontiguous);

} // namespace quoddle
