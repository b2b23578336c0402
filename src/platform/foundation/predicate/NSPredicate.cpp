// SPDX-License-Identifier: MIT
#include "platform/foundation/predicate/NSPredicate.h"

#include "platform/base/TextArgument.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/predicate/PredicateWords.h"
#include "platform/foundation/UTType.h"

#include <algorithm>
#include <cmath>

#include <QLocale>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

bool isText(const QVariant& value) {
    return value.typeId() == QMetaType::QString;
}

/// Escapes the characters that have a meaning in a LIKE pattern.
QString escaped(const QString& text) {
    QString pattern;
    for (const QChar c : text) {
        if (c == u'*' || c == u'?' || c == u'\\')
            pattern += u'\\';
        pattern += c;
    }
    return pattern;
}

bool isReal(const QVariant& number) {
    return number.typeId() == QMetaType::Double || number.typeId() == QMetaType::Float;
}

/// An integer of any type. The sign is kept apart, because a negative number and a large unsigned one may have the same bits.
struct Whole {
    bool isNegative;
    quint64 bits;
    bool operator==(const Whole&) const = default;
};

/// nullopt for a real number that is not whole, or is beyond the range of the integer types.
std::optional<Whole> wholeOf(const QVariant& number) {
    if (!isReal(number))
        return Whole{number.typeId() != QMetaType::ULongLong && number.toLongLong() < 0, number.toULongLong()};
    const double real = number.toDouble();
    if (real != std::trunc(real) || real < -0x1p63 || real >= 0x1p64)
        return {};
    return Whole{real < 0, real < 0 ? static_cast<quint64>(static_cast<qint64>(real)) : static_cast<quint64>(real)};
}

/// Compares exactly. Integers are not converted to reals, which cannot represent all of them.
bool areEqualNumbers(const QVariant& a, const QVariant& b) {
    const auto wholeA = wholeOf(a), wholeB = wholeOf(b);
    return wholeA || wholeB ? wholeA == wholeB : a.toDouble() == b.toDouble();
}

bool areEqual(const QVariant& a, const QVariant& b, std::uint8_t options) {
    if (isText(a) != isText(b))
        return false;
    if (isText(a))
        return options ? LikePattern(TextArgument(escaped(b.toString())).view(), options).matches(TextArgument(a.toString()).view())
                       : a.toString() == b.toString();
    if (isNumber(a) && isNumber(b))
        return areEqualNumbers(a, b);
    return a == b;
}

/// Adds a decimal point to digits that would be read as an integer of another value.
QString realFormat(double real) {
    const QString digits = QString::number(real, 'g', QLocale::FloatingPointShortest);
    const bool looksWhole = !digits.contains(u'.') && !digits.contains(u'e');
    return looksWhole && std::abs(real) > 0x1p53 ? digits + u".0"_s : digits;
}

QString expressionFormat(const NSComparisonPredicate::Expression& expression) {
    const QVariant& content = expression.content;
    if (expression.isKey)
        return predicateKeyFormat(content.toString());
    if (isText(content))
        return predicateTextFormat(content.toString());
    if (content.typeId() == QMetaType::Bool)
        return content.toBool() ? u"YES"_s : u"NO"_s;
    if (!isNumber(content))
        return u"nil"_s;
    return isReal(content) ? realFormat(content.toDouble()) : content.toString();
}

} // namespace

bool NSPredicate::evaluateWithObject(const QVariantMap& values) const {
    return evaluateWithObject([&values](const QString& key) { return values.value(key); });
}

NSComparisonPredicate::NSComparisonPredicate(Expression left, Operator type, std::uint8_t options, Expression right)
    : mLeft(std::move(left)), mOperator(type),
      mOptions(type == Operator::like ? options : options & ~std::uint8_t(LikePattern::matchesWords)), mRight(std::move(right)),
      mPattern(type == Operator::like && !mRight.isKey && isText(mRight.content)
                   ? std::optional<LikePattern>(std::in_place, TextArgument(mRight.content.toString()).view(), options)
                   : std::nullopt) {}

bool NSComparisonPredicate::evaluateWithObject(const PredicateValues& valueForKey) const {
    const QVariant left = mLeft.value(valueForKey), right = mRight.value(valueForKey);
    if (mOperator == Operator::equalTo)
        return areEqual(left, right, mOptions);
    if (mOperator == Operator::notEqualTo)
        return !areEqual(left, right, mOptions);
    if (!isText(left) || !isText(right))
        return false;
    const QString text = left.toString(), wanted = right.toString();
    if (mOperator == Operator::conformsToType)
        return UTTypeConformsTo(text, wanted);
    if (mPattern)
        return mPattern->matches(TextArgument(text).view());
    if (mOperator == Operator::like)
        return LikePattern(TextArgument(wanted).view(), mOptions).matches(TextArgument(text).view());
    if (wanted.isEmpty())
        return false;
    return mOptions ? LikePattern(TextArgument(u'*' + escaped(wanted)).view(), mOptions).matches(TextArgument(text).view())
                    : text.endsWith(wanted);
}

QString NSComparisonPredicate::predicateFormat() const {
    QString options;
    for (const PredicateOption& option : kPredicateOptions)
        if (mOptions & option.bit)
            options += QLatin1Char(option.letter);
    if (!options.isEmpty())
        options = u'[' + options + u']';
    return expressionFormat(mLeft) + u' ' + predicateOperatorName(mOperator) + options + u' ' + expressionFormat(mRight);
}

NSPredicateRef NSCompoundPredicate::andPredicateWithSubpredicates(QList<NSPredicateRef> subpredicates) {
    return std::make_shared<NSCompoundPredicate>(Type::andPredicate, std::move(subpredicates));
}

NSPredicateRef NSCompoundPredicate::orPredicateWithSubpredicates(QList<NSPredicateRef> subpredicates) {
    return std::make_shared<NSCompoundPredicate>(Type::orPredicate, std::move(subpredicates));
}

NSPredicateRef NSCompoundPredicate::notPredicateWithSubpredicate(NSPredicateRef predicate) {
    return std::make_shared<NSCompoundPredicate>(Type::notPredicate, QList<NSPredicateRef>{std::move(predicate)});
}

bool NSCompoundPredicate::evaluateWithObject(const PredicateValues& valueForKey) const {
    const auto holds = [&](const NSPredicateRef& part) { return part->evaluateWithObject(valueForKey); };
    switch (mType) {
    case Type::notPredicate:
        return !holds(mSubpredicates.first());
    case Type::andPredicate:
        return std::all_of(mSubpredicates.begin(), mSubpredicates.end(), holds);
    case Type::orPredicate:
        break;
    }
    return std::any_of(mSubpredicates.begin(), mSubpredicates.end(), holds);
}

QString NSCompoundPredicate::predicateFormat() const {
    if (mSubpredicates.isEmpty())
        return mType == Type::andPredicate ? u"TRUEPREDICATE"_s : u"FALSEPREDICATE"_s;
    QStringList parts;
    for (const NSPredicateRef& part : mSubpredicates) {
        const auto* compound = dynamic_cast<const NSCompoundPredicate*>(part.get());
        const bool standsAlone = !compound || compound->mSubpredicates.isEmpty();
        parts << (standsAlone && mType != Type::notPredicate ? part->predicateFormat() : u'(' + part->predicateFormat() + u')');
    }
    if (mType == Type::notPredicate)
        return u"NOT "_s + parts.first();
    return parts.join(mType == Type::andPredicate ? u" AND "_s : u" OR "_s);
}

} // namespace quoddle
