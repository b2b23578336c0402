// SPDX-License-Identifier: MIT
#include "droplet/SearchTerms.h"

#include "platform/foundation/QtPrinters.h"

#include <gtest/gtest.h>

namespace quoddle {

using namespace Qt::StringLiterals;

TEST(SearchTerms, AreWordsAndPhrases) {
    const struct {
        const char* text;
        QStringList terms;
        bool allowsDiscontiguous;
    } rows[] = {
        {"", {}, true},
        {"hello world", {u"hello"_s, u"world"_s}, true},
        {"\"hello world\"", {u"hello world"_s}, false},
        {"foo“bar baz”", {u"foo"_s, u"bar baz"_s}, false},
        {"“open \"end", {u"open \"end"_s}, false}, // a quotation is closed by its own sign only
        {"«a b» ‘c’\td", {u"a b"_s, u"c"_s, u"d"_s}, false},
        {"a \"\" b", {u"a"_s, u"b"_s}, false},
    };
    for (const auto& row : rows) {
        bool allows = !row.allowsDiscontiguous;
        EXPECT_EQ(splitIntoContentTerms(QString::fromUtf8(row.text), allows), row.terms) << row.text;
        EXPECT_EQ(allows, row.allowsDiscontiguous) << row.text;
    }
}

TEST(SearchTerms, BecomeAPredicate) {
    const std::pair<const char*, const char*> rows[] = {
        {"hello", "kMDItemFSName LIKE[cdw] \"he*l*l*o*\""},
        {"he", "kMDItemFSName LIKE[cdw] \"he\""},
        {"hello world", "kMDItemFSName LIKE[cdw] \"*hello*\" OR kMDItemFSName LIKE[cdw] \"*world*\""},
        {"\"hello world\"", "kMDItemFSName LIKE[cdw] \"*hello world*\""},
        {".pdf", "kMDItemFSName LIKE[cdw] \".pdf\""},
        {"report.pdf", "kMDItemFSName LIKE[cdw] \"re*p*o*r*t*\" AND kMDItemFSName LIKE[cdw] \".pdf\""},
        {"a.b c", "(kMDItemFSName LIKE[cdw] \"*a*\" AND kMDItemFSName LIKE[cdw] \".b\") OR kMDItemFSName LIKE[cdw] \"*c*\""},
    };
    for (const auto& [text, format] : rows) {
        bool allows = true;
        const QStringList terms = splitIntoContentTerms(QString::fromUtf8(text), allows);
        EXPECT_EQ(predicateForTerms(terms, allows)->predicateFormat(), QString::fromUtf8(format));
    }
    EXPECT_EQ(discontiguousMatchString(u"report.pdf"_s), u"re*p*o*r*t*.pdf"_s);
    EXPECT_EQ(discontiguousMatchString(u".pdf"_s), u".pdf"_s);
    EXPECT_EQ(discontiguousMatchString(u"abe\u0301"_s), u"ab*e\u0301*"_s);
}

} // namespace quoddle
