// SPDX-License-Identifier: MIT
#include "platform/foundation/predicate/NSPredicate.h"

#include "platform/foundation/QtPrinters.h"

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
        {"size == '1200'", "size == \"1200\"", false}, // a number is no text
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
        {"size LIKE '*'", "size LIKE \"*\"", false}, // no text
        {"isDir==YES OR size==1200 AND NOT path=='x'", "isDir == YES OR (size == 1200 AND (NOT (path == \"x\")))", true},
        {"(isDir==YES || size==1200) && !(size==1200)", "(isDir == YES OR size == 1200) AND (NOT (size == 1200))", false},
        {"AND1 == \"x\" AND 'it''s' == nil", nullptr, false},
        {"TRUEPREDICATE and not falsepredicate", "TRUEPREDICATE AND (NOT (FALSEPREDICATE))", true},
        {"#like == nil", "#like == nil", true},
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
    };
    for (const auto& [format, arguments] : rows)
        EXPECT_FALSE(NSPredicate::predicateWithFormat(QString::fromUtf8(format), arguments)) << format;
    EXPECT_FALSE(NSPredicate::predicateWithFormat(QString(100'000, u'(')));
    EXPECT_FALSE(NSPredicate::predicateWithFormat(QString(100'000, u'!')));
}

} // namespace quoddle
