// SPDX-License-Identifier: MIT
#include "platform/foundation/predicate/NSPredicate.h"

#include "platform/foundation/NSBundle.h"
#include "platform/foundation/QtPrinters.h"

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

NSPredicateRef predicate(const QString& format, const QVariantList& arguments = {}) {
    auto made = NSPredicate::predicateWithFormat(format, arguments);
    if (made)
        return *made;
    ADD_FAILURE() << format.toStdString() << ": " << made.error().toStdString();
    return NSCompoundPredicate::orPredicateWithSubpredicates({});
}

const QVariantMap kFile = {
    {u"path"_s, u"/home/ann/Report.PDF"_s},
    {u"type"_s, u"com.adobe.pdf"_s},
    {u"isDir"_s, false},
    {u"size"_s, 1200},
    {u"AND1"_s, u"x"_s},
    {u"one"_s, u"1"_s},
    {u"empty"_s, QString()},
    {u"real"_s, 1.5},
};

NSPredicateRef comparison(const QVariant& left, bool leftIsKey, const QVariant& right,
                          NSComparisonPredicate::Operator type = NSComparisonPredicate::Operator::equalTo, std::uint8_t options = 0) {
    return std::make_shared<NSComparisonPredicate>(NSComparisonPredicate::Expression{leftIsKey, left}, type, options,
                                                   NSComparisonPredicate::Expression{false, right});
}

bool isSame(const NSComparisonPredicate::Expression& a, const NSComparisonPredicate::Expression& b) {
    if (a.isKey || b.isKey || !isNumber(a.content) || !isNumber(b.content))
        return a.isKey == b.isKey && a.content.isValid() == b.content.isValid() && a.content.toString() == b.content.toString();
    return (a.content.typeId() == QMetaType::Bool) == (b.content.typeId() == QMetaType::Bool) &&
           comparison(a.content, false, b.content)->evaluateWithObject(QVariantMap());
}

/// Compares two predicates as trees. Compounds of one part count as that part, because they are printed as it.
bool isSame(const NSPredicate& a, const NSPredicate& b) {
    const auto* compoundA = dynamic_cast<const NSCompoundPredicate*>(&a);
    const auto* compoundB = dynamic_cast<const NSCompoundPredicate*>(&b);
    const auto isTransparent = [](const NSCompoundPredicate* compound) {
        return compound && compound->compoundPredicateType() != NSCompoundPredicate::Type::notPredicate &&
               compound->subpredicates().size() == 1;
    };
    if (isTransparent(compoundA))
        return isSame(*compoundA->subpredicates().first(), b);
    if (isTransparent(compoundB))
        return isSame(a, *compoundB->subpredicates().first());
    if (compoundA && compoundB)
        return compoundA->compoundPredicateType() == compoundB->compoundPredicateType() &&
               std::equal(compoundA->subpredicates().begin(), compoundA->subpredicates().end(), compoundB->subpredicates().begin(),
                          compoundB->subpredicates().end(), [](const auto& one, const auto& other) { return isSame(*one, *other); });
    const auto* comparisonA = dynamic_cast<const NSComparisonPredicate*>(&a);
    const auto* comparisonB = dynamic_cast<const NSComparisonPredicate*>(&b);
    return comparisonA && comparisonB && isSame(comparisonA->leftExpression(), comparisonB->leftExpression()) &&
           isSame(comparisonA->rightExpression(), comparisonB->rightExpression()) &&
           comparisonA->predicateOperatorType() == comparisonB->predicateOperatorType() && comparisonA->options() == comparisonB->options();
}

/// Random predicates made of names and texts that are easily mistaken for something else in their printed form.
class RandomPredicates {
public:
    NSPredicateRef predicate(int depth) {
        using Type = NSCompoundPredicate::Type;
        if (depth == 0 || below(3) == 0)
            return std::make_shared<NSComparisonPredicate>(expression(), static_cast<NSComparisonPredicate::Operator>(below(5)),
                                                           static_cast<std::uint8_t>(below(8)), expression());
        const auto type = static_cast<Type>(below(3));
        QList<NSPredicateRef> parts;
        for (int count = type == Type::notPredicate ? 1 : below(4); count > 0; --count)
            parts << predicate(depth - 1);
        return std::make_shared<NSCompoundPredicate>(type, parts);
    }

private:
    int below(int end) { return static_cast<int>(mRandom() % static_cast<unsigned>(end)); }
    QString text() {
        static const QStringList kPieces = {u"NO"_s, u"and"_s,    u"Like"_s, u"nil"_s, u"a"_s,  u"$_"_s, u"."_s, u"7"_s,
                                            u" "_s,  u"\""_s,     u"'"_s,    u"\\"_s,  u"#"_s,  u"%@"_s, u"("_s, u"\u0308"_s,
                                            u"é"_s,  u"\u0663"_s, u"😀"_s,    u"\n"_s,  u"=="_s, u"-"_s,  u"E"_s, u"TRUEPREDICATE"_s};
        QString text;
        for (int count = below(4); count > 0; --count)
            text += kPieces.at(below(static_cast<int>(kPieces.size())));
        return text;
    }
    QVariant constant() {
        switch (below(5)) {
        case 0:
            return {};
        case 1:
            return below(2) == 0;
        case 2:
            return static_cast<qlonglong>(static_cast<quint64>(mRandom()) << 32 | mRandom()) >> below(64);
        case 3:
            return std::ldexp(static_cast<double>(mRandom()) - 0x1p31, below(1900) - 1000);
        default:
            return text();
        }
    }
    NSComparisonPredicate::Expression expression() {
        return below(2) == 0 ? NSComparisonPredicate::Expression{true, text()} : NSComparisonPredicate::Expression{false, constant()};
    }

    std::mt19937 mRandom{5};
};

} // namespace

TEST(NSPredicate, ReadsPrintsAndEvaluates) {
    const struct {
        const char* format;
        const char* printed;
        bool holds;
    } rows[] = {
        {"path ENDSWITH 'PDF'", "path ENDSWITH \"PDF\"", true},
        {"path endswith[c] \"pdf\"", "path ENDSWITH[c] \"pdf\"", true},
        {"path ENDSWITH 'pdf'", "path ENDSWITH \"pdf\"", false},
        {"path ENDSWITH ''", "path ENDSWITH \"\"", false},
        {"path ENDSWITH[c] '*df'", "path ENDSWITH[c] \"*df\"", false},
        {"path LIKE[cdw] '*rép*'", "path LIKE[cdw] \"*rép*\"", true},
        {"path LIKE path", "path LIKE path", true},
        {"path LIKE 'Report'", "path LIKE \"Report\"", false},
        {"path LIKE[w] 'Report'", "path LIKE[w] \"Report\"", true},
        {"path LIKE[w] 'Repo'", "path LIKE[w] \"Repo\"", false},
        {"path LIKE[cw] 'repo*'", "path LIKE[cw] \"repo*\"", true},
        {"path ENDSWITH[cw] 'report'", "path ENDSWITH[c] \"report\"", false},
        {"path ==[w] 'Report'", "path == \"Report\"", false},
        {"type UTI-CONFORMS-TO 'public.data'", "type UTI-CONFORMS-TO \"public.data\"", true},
        {"type UTI-CONFORMS-TO 'public.image'", "type UTI-CONFORMS-TO \"public.image\"", false},
        {"(isDir == NO) OR (isDir == YES)", "isDir == NO OR isDir == YES", true},
        {"isDir = 0", "isDir == 0", true},
        {"size == 1200.0", "size == 1200", true},
        {"size != 12", "size != 12", true},
        {"size == '1200'", "size == \"1200\"", false}, // numbers do not equal texts
        {"size !=[c] '1200'", "size !=[c] \"1200\"", true},
        {"one == 1", "one == 1", false},
        {"one == YES", "one == YES", false},
        {"isDir == '0'", "isDir == \"0\"", false},
        {"isDir == 'false'", "isDir == \"false\"", false},
        {"real == '1.5'", "real == \"1.5\"", false},
        {"empty == nil", "empty == nil", false},
        {"empty == ''", "empty == \"\"", true},
        {"none == ''", "none == \"\"", false},
        {"none == 0", "none == 0", false},
        {"none == nil", "none == nil", true},
        {"none ENDSWITH 'x'", "none ENDSWITH \"x\"", false},
        {"size LIKE '*'", "size LIKE \"*\"", false}, // LIKE is false for numbers
        {"isDir==YES OR size==1200 AND NOT path=='x'", "isDir == YES OR (size == 1200 AND (NOT (path == \"x\")))", true},
        {"(isDir==YES || size==1200) && !(size==1200)", "(isDir == YES OR size == 1200) AND (NOT (size == 1200))", false},
        {"AND1 == \"x\" AND 'it''s' == nil", nullptr, false},
        {"TRUEPREDICATE and not falsepredicate", "TRUEPREDICATE AND (NOT (FALSEPREDICATE))", true},
        {"#like == nil", "#like == nil", true},
        {"size == 12e2", "size == 1200", true},
        {"size != 1e+20 AND size != -2.5E-7", "size != 1e+20 AND size != -2.5e-07", true},
        {"#'odd \\\"name\\\"' == #\"\"", "#\"odd \\\"name\\\"\" == #\"\"", true},
        {"#\"path\" LIKE path", "path LIKE path", true},
        {"path != 'a\\'\\\"\\\\'", "path != \"a'\\\"\\\\\"", true},
    };
    for (const auto& row : rows) {
        const QString format = QString::fromUtf8(row.format);
        if (!row.printed) {
            EXPECT_FALSE(NSPredicate::predicateWithFormat(format)) << row.format;
            continue;
        }
        const NSPredicateRef read = predicate(format);
        EXPECT_EQ(read->predicateFormat(), QString::fromUtf8(row.printed));
        EXPECT_EQ(read->evaluateWithObject(kFile), row.holds) << row.format;
        const NSPredicateRef again = predicate(read->predicateFormat());
        EXPECT_EQ(again->predicateFormat(), read->predicateFormat());
        EXPECT_EQ(again->evaluateWithObject(kFile), row.holds) << row.format;
    }
}

TEST(NSPredicate, TakesAnyNumberOfConditions) {
    QStringList parts(5'000, u"size == 1"_s);
    parts.last() = u"size == 1200"_s;
    for (const auto& [sign, holds] : {std::pair(u" OR "_s, true), std::pair(u" AND "_s, false)}) {
        const QString format = parts.join(sign);
        EXPECT_EQ(predicate(format)->evaluateWithObject(kFile), holds);
        EXPECT_EQ(predicate(format)->predicateFormat(), format);
    }
}

TEST(NSPredicate, TakesNamesAndConstantsFromArguments) {
    const NSPredicateRef suffix = predicate(u"%K ENDSWITH %@"_s, {u"path"_s, u"P\"DF"_s});
    EXPECT_EQ(suffix->predicateFormat(), u"path ENDSWITH \"P\\\"DF\""_s);
    EXPECT_TRUE(predicate(u"(%K == NO) OR (%K == YES)"_s, {u"isDir"_s, u"isPackage"_s})->evaluateWithObject(kFile));
}

TEST(NSPredicate, PrintsWhatReadsAsTheSame) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const QString& key : {u"a b"_s, u"say \"it's\""_s, u"12"_s, u"-1"_s, u"3d"_s, u"not"_s, u"UTI-CONFORMS-TO"_s, u"a\\"_s, u"%K"_s,
                               u"#x"_s, u"NO\u0308"_s, u"ünder.lined_$1"_s, QString()})
        EXPECT_TRUE(isSame(*predicate(predicate(u"%K == 'x'"_s, {key})->predicateFormat()), *comparison(key, true, u"x"_s)))
            << key.toStdString();
    for (const QVariant& number :
         {QVariant(1e20), QVariant(-1.5e-300), QVariant(0.1F), QVariant(9007199254740993LL), QVariant(true),
          QVariant(std::numeric_limits<qlonglong>::min()), QVariant(5e-324), QVariant(1e16), QVariant(-197354941252108288.0), QVariant()})
        EXPECT_TRUE(isSame(*predicate(predicate(u"x == %@"_s, {number})->predicateFormat()), *comparison(u"x"_s, true, number)))
            << number.toString().toStdString();
    for (const QVariant& none : {QVariant(kInfinity), QVariant(std::nan("")), QVariant(QStringList{u"x"_s}), QVariant(QByteArray("x"))})
        EXPECT_FALSE(NSPredicate::predicateWithFormat(u"x == %@"_s, {none})) << none.typeName();

    RandomPredicates random;
    for (int round = 0; round < 5'000; ++round) {
        const NSPredicateRef made = random.predicate(6);
        const auto read = NSPredicate::predicateWithFormat(made->predicateFormat());
        ASSERT_TRUE(read) << made->predicateFormat().toStdString() << ": " << read.error().toStdString();
        EXPECT_TRUE(isSame(**read, *made)) << made->predicateFormat().toStdString() << " became "
                                           << (*read)->predicateFormat().toStdString();
    }
}

TEST(NSPredicate, ReadsAsDeepAsItPrints) {
    const QString deepest = u"NOT "_s.repeated(100) + u"size == 1"_s;
    EXPECT_TRUE(isSame(*predicate(predicate(deepest)->predicateFormat()), *predicate(deepest)));
    EXPECT_FALSE(NSPredicate::predicateWithFormat(u"NOT "_s + deepest));
    const QString both = u"size == 1 AND NOT ("_s.repeated(50) + u"size == 1"_s + QString(50, u')');
    EXPECT_TRUE(isSame(*predicate(predicate(both)->predicateFormat()), *predicate(both)));
}

TEST(NSPredicate, ComparesNumbersExactly) {
    constexpr qlonglong kOdd = 9007199254740993; // not representable as a real
    const struct {
        QVariant left, right;
        bool areEqual;
    } rows[] = {
        {kOdd, kOdd - 1, false},
        {kOdd, 9007199254740992.0, false},
        {kOdd - 1, 9007199254740992.0, true},
        {std::numeric_limits<qlonglong>::min(), -0x1p63, true},
        {std::numeric_limits<qlonglong>::max(), 0x1p63, false},
        {std::numeric_limits<qulonglong>::max(), -1, false},
        {std::numeric_limits<qulonglong>::max(), 0x1p64, false},
        {quint64{1} << 63, 0x1p63, true},
        {1, 1.5, false},
        {1.5F, 1.5, true},
        {true, 1U, true},
        {1e300, 1e300, true},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(comparison(row.left, false, row.right)->evaluateWithObject(QVariantMap()), row.areEqual)
            << row.left.toString().toStdString();
        EXPECT_EQ(comparison(row.right, false, row.left)->evaluateWithObject(QVariantMap()), row.areEqual)
            << row.left.toString().toStdString();
    }
}

TEST(NSPredicate, AsksForNothingThatTheAnswerDoesNotNeed) {
    QStringList asked;
    const auto values = [&asked](const QString& key) {
        asked << key;
        return kFile.value(key);
    };
    EXPECT_FALSE(predicate(u"path ENDSWITH 'txt' AND type UTI-CONFORMS-TO 'public.text'"_s)->evaluateWithObject(values));
    EXPECT_EQ(asked, QStringList{u"path"_s});
}

TEST(NSPredicate, RefusesWhatItCannotRead) {
    const std::pair<const char*, QVariantList> rows[] = {
        {"", {}},
        {"path", {}},
        {"path ENDSWITH", {}},
        {"path BEGINSWITH 'x'", {}},
        {"path LIKE[x] 'x'", {}},
        {"path LIKE[c 'x'", {}},
        {"path == 'x", {}},
        {"(path == 'x'", {}},
        {"path == 'x')", {}},
        {"path == 'x' OR", {}},
        {"path == %@", {}},
        {"path == 'x'", {1}},
        {"%K == 'x'", {1}},
        {"like == 'x'", {}},
        {"size == 1.2.3", {}},
        {"size == 1e", {}},
        {"size == 1e999", {}},
        {"#'x == 1", {}},
    };
    for (const auto& [format, arguments] : rows)
        EXPECT_FALSE(NSPredicate::predicateWithFormat(QString::fromUtf8(format), arguments)) << format;
    EXPECT_FALSE(NSPredicate::predicateWithFormat(QString(100'000, u'(')));
    EXPECT_FALSE(NSPredicate::predicateWithFormat(QString(100'000, u'!')));
}

} // namespace quoddle
