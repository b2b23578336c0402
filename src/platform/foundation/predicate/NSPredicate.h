// SPDX-License-Identifier: MIT
// Predicates: conditions on an object's values, written as text ("%K ENDSWITH %@", "a == 1 AND NOT (b LIKE[cd] 'x*')"), put together and
// asked of one object after the other.
//
// Decision: a small language, whole in what it has: = == != ENDSWITH LIKE UTI-CONFORMS-TO with the options [cdw], AND OR NOT and their
// signs && || !, parentheses, numbers, quoted texts, YES NO TRUE FALSE NIL, names of values, TRUEPREDICATE FALSEPREDICATE. A name that is a
// word of the language is written #like, one with other signs than letters and digits #"like this". Anything else is an error of the
// format, never a guess.
//
// The options: c takes upper and lower case, d letters with and without accents for the same. w is for LIKE alone, other operators pass
// over it: without it a pattern covers the whole text, with it any part of the text that begins and ends where words do, which is at the
// ends of the text, beside a sign that is neither letter nor digit, between a letter and a digit, and between a small letter and a capital.
//
// Predicates do not change; any thread.
#pragma once

#include "platform/base/LikePattern.h"
#include "platform/base/Result.h"

#include <functional>
#include <memory>
#include <optional>

#include <QList>
#include <QString>
#include <QVariant>

namespace quoddle {

class NSPredicate;
/// Never null where a predicate is required; null means "no predicate" where one may be absent.
using NSPredicateRef = std::shared_ptr<const NSPredicate>;
/// The value that an object has for a name; an empty QVariant when it has none. Asked only for what the answer depends on.
using PredicateValues = std::function<QVariant(const QString& key)>;

class NSPredicate {
public:
    virtual ~NSPredicate() = default;

    /// %K in the format is replaced by the name of a value, %@ by a constant (text, finite number, truth value or an empty QVariant), in
    /// the order of the arguments. A text when the format cannot be read, the arguments are too few, too many or of another kind, or more
    /// than 100 compounds stand one inside the other. Any number of conditions may stand side by side.
    static Result<NSPredicateRef, QString> predicateWithFormat(const QString& format, const QVariantList& arguments = {});

    virtual bool evaluateWithObject(const PredicateValues& valueForKey) const = 0;
    bool evaluateWithObject(const QVariantMap& values) const;
    /// The predicate as text, from which predicateWithFormat() makes an equal one, as long as it is not nested more deeply than that takes.
    virtual QString predicateFormat() const = 0;
};

class NSComparisonPredicate final : public NSPredicate {
public:
    enum class Operator { equalTo, notEqualTo, endsWith, like, conformsToType };

    /// One side of a comparison: the name of a value, or a constant.
    struct Expression {
        bool isKey = false;
        QVariant content; // of a key: its name; of a constant: what predicateWithFormat() takes for %@

        QVariant value(const PredicateValues& valueForKey) const { return isKey ? valueForKey(content.toString()) : content; }
    };

    /// `options`: a sum of LikePattern::Option values; matchesWords is dropped where the operator is not LIKE.
    NSComparisonPredicate(Expression left, Operator type, std::uint8_t options, Expression right);

    const Expression& leftExpression() const { return mLeft; }
    const Expression& rightExpression() const { return mRight; }
    Operator predicateOperatorType() const { return mOperator; }
    std::uint8_t options() const { return mOptions; }

    using NSPredicate::evaluateWithObject;
    /// A text equals texts only, never the number or truth value that is written like it; truth values are numbers, YES is 1. Numbers
    /// are compared exactly, whatever their types. A value that is not there equals nil only. Texts alone are compared by ENDSWITH and
    /// LIKE; anything else satisfies neither. No text ends with the empty text.
    bool evaluateWithObject(const PredicateValues& valueForKey) const override;
    QString predicateFormat() const override;

private:
    const Expression mLeft;
    const Operator mOperator;
    const std::uint8_t mOptions;
    const Expression mRight;
    const std::optional<LikePattern> mPattern; // when the right side is a constant
};

class NSCompoundPredicate final : public NSPredicate {
public:
    enum class Type { notPredicate, andPredicate, orPredicate };

    /// `notPredicate` has one part. Without parts AND is true and OR is false.
    NSCompoundPredicate(Type type, QList<NSPredicateRef> subpredicates) : mType(type), mSubpredicates(std::move(subpredicates)) {}
    static NSPredicateRef andPredicateWithSubpredicates(QList<NSPredicateRef> subpredicates);
    static NSPredicateRef orPredicateWithSubpredicates(QList<NSPredicateRef> subpredicates);
    static NSPredicateRef notPredicateWithSubpredicate(NSPredicateRef predicate);

    Type compoundPredicateType() const { return mType; }
    const QList<NSPredicateRef>& subpredicates() const { return mSubpredicates; }

    using NSPredicate::evaluateWithObject;
    /// From left to right, as far as is needed.
    bool evaluateWithObject(const PredicateValues& valueForKey) const override;
    QString predicateFormat() const override;

private:
    const Type mType;
    const QList<NSPredicateRef> mSubpredicates;
};

} // namespace quoddle
