// SPDX-License-Identifier: MIT
// Turns the text of the search field into the terms of the search, and these into the predicate that finds files by them.
#pragma once

#include "platform/foundation/predicate/NSPredicate.h"

#include <QStringList>

namespace quoddle {

/// Splits a text into terms at white space; a phrase in quotes is one term. `allowDiscontiguous` becomes false when something was quoted:
/// then no term is found spread over a name. Only the first hundred terms are taken.
QStringList splitIntoContentTerms(const QString& text, bool& allowDiscontiguous);

/// The LIKE pattern of a term whose characters may lie apart, except the first two: "re*p*o*r*t*" for "report".
QString discontiguousMatchString(const QString& term);

/// The predicate of the names that contain at least one of the terms. The ranking then judges how much of the terms a name must contain.
NSPredicateRef predicateForTerms(const QStringList& terms, bool allowDiscontiguous);

} // namespace quoddle
