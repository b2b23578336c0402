// SPDX-License-Identifier: MIT
// Predicates: conditions on an object's values. They are written as text ("%K ENDSWITH %@", "a == 1 AND NOT (b LIKE[cd] 'x*')"), can be
// combined, and are evaluated for one object after the other.
//
// Decision: the language is small and complete in itself: = == != ENDSWITH LIKE UTI-CONFORMS-TO with the options [cdw], AND OR NOT and
// their signs && || !, parentheses, numbers, quoted texts, YES NO TRUE FALSE NIL, names of values, TRUEPREDICATE FALSEPREDICATE. A name
// that is also a word of the language is written #like, a name with other characters than letters and digits #"like this". Anything else is
// an error in the format, never a guess.
//
// The options: c ignores case, d ignores accents. w is for LIKE alone; other operators ignore it. Without w a pattern covers the whole
// text. With w it covers any part of the text that begins and ends at a border of words: at the ends of the text, beside a character that
// is neither letter nor digit, between a letter and a digit, and between a small letter and a capital.
//
// Predicates are immutable; any thread.
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
/// Not null, except where a declaration says that null means "no predicate".
using NSPredicateRef = std::shared_ptr<const NSPredicate>;
/// The value that an object has for a name; an empty QVariant when it has none. Called only for values that the result depends on.
using PredicateValues = std::function<QVariant(const QString& key)>;

class NSPredicate {
public:
    virtual ~NSPredicate() = default;

    /// Each %K in the format is replaced by the name of a value, each %@ by a constant (text, finite number, boolean or an empty QVariant),
    /// in the order of the arguments. The error is a message: the format cannot be read, the arguments are too few, too many or of another
    /// kind, or more than 100 compounds are nested. The number of conditions side by side is not limited.
    static Result<NSPredicateRef, QString> predicateWithFormat(const QString& format, const QVariantList& arguments = {});

    virtual bool evaluateWithObject(const PredicateValues& valueForKey) const = 0;
    bool evaluateWithObject(const QVariantMap& values) const;
    /// The predicate as text. predicateWithFormat() makes an equal predicate from it, unless the nesting is too deep for that.
    virtual QString predicateFormat() const = 0;
};

class NSComparisonPredicate final : public NSPredicate {
public:
    enum class Operator { equalTo, notEqualTo, endsWith, like, conformsToType };

    /// One side of a comparison: the name of a value, or a constant.
    struct Expression {
        bool isKey = false;
        QVariant content; // a key's name, or a constant of a type that predicateWithFormat() takes for %@

        QVariant value(const PredicateValues& valueForKey) const { return isKey ? valueForKey(content.toString()) : content; }
    };

    /// `options` is a sum of LikePattern::Option values. matchesWords is dropped for operators other than LIKE.
    NSComparisonPredicate(Expression left, Operator type, std::uint8_t options, Expression right);

    const Expression& leftExpression() const { return mLeft; }
    const Expression& rightExpression() const { return mRight; }
    Operator predicateOperatorType() const { return mOperator; }
    std::uint8_t options() const { return mOptions; }

    using NSPredicate::evaluateWithObject;
    /// A text only equals texts, never the number or boolean that is written like it. Booleans are numbers; YES is 1. Numbers are compared
    /// exactly, whatever their types. A missing value only equals nil. ENDSWITH and LIKE compare texts only; with other values they are
    /// false. No text ends with the empty text.
    bool evaluateWithObject(const PredicateValues& valueForKey) const override;
    QString predicateFormat() const override;

private:
    const Expression mLeft;
    const Operator mOperator;
    const std::uint8_t mOptions;
    const Expression mRight;
    const std::optional<LikePattern> mPattern; // compiled once when the right side is a constant
};

class NSCompoundPredicate final : public NSPredicate {
public:
    enum class Type { notPredicate, andPredicate, orPredicate };

    /// A `notPredicate` has exactly one part. Without parts AND is true and OR is false.
    NSCompoundPredicate(Type type, QList<NSPredicateRef> subpredicates) : mType(type), mSubpredicates(std::move(subpredicates)) {}
    static NSPredicateRef andPredicateWithSubpredicates(QList<NSPredicateRef> subpredicates);
    static NSPredicateRef orPredicateWithSubpredicates(QList<NSPredicateRef> subpredicates);
    static NSPredicateRef notPredicateWithSubpredicate(NSPredicateRef predicate);

    Type compoundPredicateType() const { return mType; }
    const QList<NSPredicateRef>& subpredicates() const { return mSubpredicates; }

    using NSPredicate::evaluateWithObject;
    /// Evaluates the parts from left to right until the result is known.
    bool evaluateWithObject(const PredicateValues& valueForKey) const override;
    QString predicateFormat() const override;

private:
    const Type mType;
    const QList<NSPredicateRef> mSubpredicates;
};

} // namespace quoddle
