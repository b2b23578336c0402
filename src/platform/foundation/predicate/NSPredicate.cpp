// SPDX-License-Identifier: MIT
#include "platform/foundation/predicate/NSPredicate.h"

#include "platform/base/TextArgument.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/predicate/PredicateWords.h"
#include "platform/foundation/UTType.h"

#include <algorithm>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

bool isText(const QVariant& value) {
    return value.typeId() == QMetaType::QString;
}

/// The signs that a LIKE pattern gives a meaning to, as themselves.
QString escaped(const QString& text) {
    QString pattern;
    for (const QChar c : text) {
        if (c == u'*' || c == u'?' || c == u'\\')
            pattern += u'\\';
        pattern += c;
    }
    return pattern;
}

bool areEqual(const QVariant& a, const QVariant& b, std::uint8_t options) {
    if (isText(a) != isText(b))
        return false;
    if (isText(a))
        return options ? LikePattern(TextArgument(escaped(b.toString())).view(), options).matches(TextArgument(a.toString()).view())
                       : a.toString() == b.toString();
    if (isNumber(a) && isNumber(b))
        return a.toDouble() == b.toDouble();
    return a == b;
}

QString quoted(QString text) {
    text.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s);
    return u'"' + text + u'"';
}

QString expressionFormat(const NSComparisonPredicate::Expression& expression) {
    const QVariant& content = expression.content;
    if (expression.isKey)
        return predicateKeyFormat(content.toString());
    if (isText(content))
        return quoted(content.toString());
    return content.typeId() == QMetaType::Bool ? content.toBool() ? u"YES"_s : u"NO"_s : isNumber(content) ? content.toString() : u"nil"_s;
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
