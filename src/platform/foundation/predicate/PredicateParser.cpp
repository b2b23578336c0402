// SPDX-License-Identifier: MIT
// Reads the text of a predicate: NSPredicate::predicateWithFormat().
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/predicate/PredicateWords.h"

#include <cmath>

namespace quoddle {

using namespace Qt::StringLiterals;
using Operator = NSComparisonPredicate::Operator;
using Expression = NSComparisonPredicate::Expression;

namespace {

constexpr int kMaximumDepth = 100; // of compounds in the predicate
// of constructs in the text; in printed form a negation takes its word and a pair of parentheses
constexpr int kMaximumNesting = 2 * kMaximumDepth + 1;

struct Constant {
    QLatin1StringView word;
    QVariant value;
};
const QList<Constant>& constants() {
    static const QList<Constant> kConstants = {
        {"YES"_L1, true}, {"NO"_L1, false}, {"TRUE"_L1, true}, {"FALSE"_L1, false}, {"NIL"_L1, {}}, {"NULL"_L1, {}},
    };
    return kConstants;
}
constexpr QLatin1StringView kWords[] = {"AND"_L1, "OR"_L1, "NOT"_L1, "ENDSWITH"_L1, "LIKE"_L1, "TRUEPREDICATE"_L1, "FALSEPREDICATE"_L1};

bool isReserved(const QString& name) {
    const auto isSame = [&](QLatin1StringView word) { return name.compare(word, Qt::CaseInsensitive) == 0; };
    return std::any_of(std::begin(kWords), std::end(kWords), isSame) ||
           std::any_of(constants().begin(), constants().end(), [&](const Constant& constant) { return isSame(constant.word); });
}

bool isQuote(QChar c) {
    return c == u'"' || c == u'\'';
}
bool isNameStart(QChar c) {
    return c.isLetter() || c == u'_' || c == u'$';
}
bool isNamePart(QChar c) {
    return isNameStart(c) || c.isDigit() || c == u'.';
}

bool isConstant(const QVariant& value) {
    return !value.isValid() || value.typeId() == QMetaType::QString || (isNumber(value) && std::isfinite(value.toDouble()));
}

/// The number of compounds that are nested in one another.
int depthOf(const NSPredicate& predicate) {
    const auto* compound = dynamic_cast<const NSCompoundPredicate*>(&predicate);
    int depth = 0;
    if (compound)
        for (const NSPredicateRef& part : compound->subpredicates())
            depth = std::max(depth, depthOf(*part) + 1);
    return depth;
}

class Parser {
public:
    Parser(const QString& format, const QVariantList& arguments) : mText(format), mArguments(arguments) {}

    Result<NSPredicateRef, QString> parse() {
        NSPredicateRef predicate = anyOf();
        skipBlanks();
        if (predicate && mAt < mText.size())
            fail(u"unexpected text"_s);
        if (predicate && mNextArgument < mArguments.size())
            fail(u"more arguments than places for them"_s);
        if (predicate && depthOf(*predicate) > kMaximumDepth)
            fail(u"nested too deeply"_s);
        if (!mError.isEmpty())
            return Failure{mError};
        return predicate;
    }

private:
    // Each of these functions returns null after an error.
    NSPredicateRef anyOf() { return listOf(&Parser::allOf, "OR"_L1, "||"_L1, &NSCompoundPredicate::orPredicateWithSubpredicates); }
    NSPredicateRef allOf() { return listOf(&Parser::negation, "AND"_L1, "&&"_L1, &NSCompoundPredicate::andPredicateWithSubpredicates); }
    NSPredicateRef listOf(NSPredicateRef (Parser::*part)(), QLatin1StringView word, QLatin1StringView sign,
                          NSPredicateRef (*combined)(QList<NSPredicateRef>));
    NSPredicateRef negation();
    NSPredicateRef comparison();
    std::optional<Operator> comparisonOperator();
    std::optional<std::uint8_t> options();
    std::optional<Expression> expression();
    std::optional<Expression> argument(bool isKey);
    std::optional<QString> quotedText();
    std::optional<Expression> number();

    void skipBlanks() {
        while (mAt < mText.size() && mText.at(mAt).isSpace())
            ++mAt;
    }
    QChar next() const { return mAt < mText.size() ? mText.at(mAt) : QChar(); }
    bool take(QLatin1StringView sign);
    bool takeWord(QLatin1StringView word);
    std::nullptr_t fail(const QString& what) {
        if (mError.isEmpty())
            mError = u"%1 at character %2"_s.arg(what).arg(mAt + 1);
        return nullptr;
    }

    const QString& mText;
    const QVariantList& mArguments;
    qsizetype mAt = 0;
    qsizetype mNextArgument = 0;
    int mNesting = 0;
    QString mError;
};

bool Parser::take(QLatin1StringView sign) {
    skipBlanks();
    if (!QStringView(mText).mid(mAt).startsWith(sign))
        return false;
    mAt += sign.size();
    return true;
}

bool Parser::takeWord(QLatin1StringView word) {
    skipBlanks();
    if (!QStringView(mText).mid(mAt).startsWith(word, Qt::CaseInsensitive))
        return false;
    const qsizetype end = mAt + word.size();
    if (isNamePart(word.back()) && end < mText.size() && isNamePart(mText.at(end)))
        return false;
    mAt = end;
    return true;
}

NSPredicateRef Parser::listOf(NSPredicateRef (Parser::*part)(), QLatin1StringView word, QLatin1StringView sign,
                              NSPredicateRef (*combined)(QList<NSPredicateRef>)) {
    QList<NSPredicateRef> parts;
    do {
        const NSPredicateRef predicate = (this->*part)();
        if (!predicate)
            return nullptr;
        parts << predicate;
    } while (takeWord(word) || take(sign));
    return parts.size() == 1 ? parts.first() : combined(parts);
}

NSPredicateRef Parser::negation() {
    if (++mNesting > kMaximumNesting)
        return fail(u"nested too deeply"_s);
    NSPredicateRef predicate;
    if (takeWord("NOT"_L1) || (!QStringView(mText).mid(mAt).startsWith("!="_L1) && take("!"_L1))) {
        predicate = negation();
        if (predicate)
            predicate = NSCompoundPredicate::notPredicateWithSubpredicate(predicate);
    } else if (take("("_L1)) {
        predicate = anyOf();
        if (predicate && !take(")"_L1))
            return fail(u"“)” is missing"_s);
    } else if (takeWord("TRUEPREDICATE"_L1)) {
        predicate = NSCompoundPredicate::andPredicateWithSubpredicates({});
    } else if (takeWord("FALSEPREDICATE"_L1)) {
        predicate = NSCompoundPredicate::orPredicateWithSubpredicates({});
    } else {
        predicate = comparison();
    }
    --mNesting;
    return predicate;
}

NSPredicateRef Parser::comparison() {
    const auto left = expression();
    if (!left)
        return nullptr;
    const auto type = comparisonOperator();
    if (!type)
        return fail(u"a comparison is missing"_s);
    const auto flags = options();
    if (!flags)
        return nullptr;
    const auto right = expression();
    if (!right)
        return nullptr;
    return std::make_shared<NSComparisonPredicate>(*left, *type, *flags, *right);
}

std::optional<Operator> Parser::comparisonOperator() {
    for (const PredicateOperator& known : kPredicateOperators)
        if (takeWord(known.word))
            return known.type;
    return {};
}

std::optional<std::uint8_t> Parser::options() {
    std::uint8_t bits = 0;
    if (!take("["_L1))
        return bits;
    while (!take("]"_L1)) {
        const auto* option = std::find_if(std::begin(kPredicateOptions), std::end(kPredicateOptions),
                                          [this](const PredicateOption& known) { return next().toLower() == QLatin1Char(known.letter); });
        if (option == std::end(kPredicateOptions)) {
            fail(u"an option that is not known"_s);
            return {};
        }
        bits |= option->bit;
        ++mAt;
    }
    return bits;
}

std::optional<Expression> Parser::expression() {
    skipBlanks();
    if (take("%K"_L1))
        return argument(true);
    if (take("%@"_L1))
        return argument(false);
    if (isQuote(next())) {
        const auto text = quotedText();
        return text ? std::optional(Expression{false, *text}) : std::nullopt;
    }
    if (next().isDigit() || next() == u'-')
        return number();
    for (const Constant& constant : constants())
        if (takeWord(constant.word))
            return Expression{false, constant.value};
    const bool isMarked = take("#"_L1);
    if (isMarked && isQuote(next())) {
        const auto name = quotedText();
        return name ? std::optional(Expression{true, *name}) : std::nullopt;
    }
    const qsizetype start = mAt;
    while (isNamePart(next()) && (mAt > start || isNameStart(next())))
        ++mAt;
    const QString name = mText.mid(start, mAt - start);
    if (name.isEmpty() || (!isMarked && isReserved(name))) {
        mAt = start;
        fail(u"a value is missing"_s);
        return {};
    }
    return Expression{true, name};
}

std::optional<Expression> Parser::argument(bool isKey) {
    if (mNextArgument >= mArguments.size()) {
        fail(u"an argument is missing"_s);
        return {};
    }
    const QVariant& content = mArguments.at(mNextArgument++);
    if (isKey && content.typeId() != QMetaType::QString) {
        fail(u"the argument for %K is no name"_s);
        return {};
    }
    if (!isConstant(content)) {
        fail(u"the argument for %@ is neither text nor number"_s);
        return {};
    }
    return Expression{isKey, content};
}

std::optional<QString> Parser::quotedText() {
    const QChar quote = mText.at(mAt++);
    QString text;
    while (mAt < mText.size()) {
        const QChar c = mText.at(mAt++);
        if (c == quote)
            return text;
        text += c == u'\\' && mAt < mText.size() ? mText.at(mAt++) : c;
    }
    fail(u"a text has no end"_s);
    return {};
}

std::optional<Expression> Parser::number() {
    const qsizetype start = mAt++;
    const auto passDigits = [this] {
        while (next().isDigit() || next() == u'.')
            ++mAt;
    };
    passDigits();
    if (next().toLower() == u'e') {
        ++mAt;
        if (next() == u'+' || next() == u'-')
            ++mAt;
        passDigits();
    }
    const QString digits = mText.mid(start, mAt - start);
    bool isWhole = false, isReal = false;
    const qlonglong whole = digits.toLongLong(&isWhole);
    const double real = digits.toDouble(&isReal);
    if (!isReal) {
        fail(u"a number that cannot be read"_s);
        return {};
    }
    return Expression{false, isWhole ? QVariant(whole) : QVariant(real)};
}

} // namespace

QString predicateTextFormat(QString text) {
    text.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s);
    return u'"' + text + u'"';
}

QString predicateKeyFormat(const QString& key) {
    if (key.isEmpty() || !isNameStart(key.front()) || !std::all_of(key.begin(), key.end(), isNamePart))
        return u'#' + predicateTextFormat(key);
    return isReserved(key) ? u'#' + key : key;
}

Result<NSPredicateRef, QString> NSPredicate::predicateWithFormat(const QString& format, const QVariantList& arguments) {
    return Parser(format, arguments).parse();
}

} // namespace quoddle
