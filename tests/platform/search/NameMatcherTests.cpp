// SPDX-License-Identifier: MIT
// The compiled matcher must agree with the predicate.
#include "platform/search/index/NameMatcher.h"

#include "platform/search/index/FileNames.h"
#include "platform/search/NSMetadataQuery.h"

#include <gtest/gtest.h>

#include <random>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

using Answer = NameMatcher::Answer;

class NameMatcherTest : public ::testing::Test {
protected:
    Answer answerFor(const NameMatcher& matcher, const QString& name, bool isFolder = false) {
        const FileNames::Entry entry = *mNames.add(FileNames::kTop, name.toUtf8().toStdString(), isFolder);
        return matcher.match({mNames.name(entry), mNames.reducedName(entry), mNames.letters()[entry], mNames.isASCII(entry),
                              mNames.isPlain(entry), isFolder});
    }

private:
    FileNames mNames;
};

} // namespace

TEST_F(NameMatcherTest, KnowsWhatItCannotKnow) {
    const struct {
        const char *format, *name;
        bool isFolder;
        Answer answer;
    } rows[] = {
        {"kMDItemFSName LIKE[cdw] 're*p*o*' AND kMDItemContentType == 'public.png'", "Report", false, Answer::unknown},
        {"kMDItemContentType == 'public.png' AND kMDItemFSName LIKE[cdw] 're*p*o*'", "Other", false, Answer::no},
        {"kMDItemContentType == 'public.png' OR kMDItemFSName LIKE[cdw] 're*p*o*'", "Report", false, Answer::yes},
        {"NOT kMDItemContentType == 'public.png'", "a", false, Answer::unknown},
        {"NOT kMDItemFSName LIKE 'a*'", "b", false, Answer::yes},
        {"kMDItemContentType != 'public.folder'", "a", false, Answer::yes},
        {"kMDItemContentType == 'public.folder'", "a", false, Answer::no},
        {"kMDItemContentType != 'public.folder'", "a.app", true, Answer::unknown},
        {"kMDItemFSName ENDSWITH '.jpg'", "é.jpg", false, Answer::yes},
        {"kMDItemFSName ENDSWITH '.jpg'", "a.JPG", false, Answer::no},
        {"kMDItemFSName ENDSWITH[c] '.jpg'", "a.JPG", false, Answer::yes},
        {"kMDItemFSName == 'a'", "a", false, Answer::yes},
        {"kMDItemFSName != 'a'", "a", false, Answer::no},
        {"TRUEPREDICATE", "a", false, Answer::yes},
    };
    for (const auto& row : rows)
        EXPECT_EQ(answerFor(*NameMatcher::compile(*NSPredicate::predicateWithFormat(QString::fromUtf8(row.format))),
                            QString::fromUtf8(row.name), row.isFolder),
                  row.answer)
            << row.format;
}

/// The pattern's "*" stands between the two halves of a surrogate pair.
TEST_F(NameMatcherTest, FindsNamesByHalvesOfACharacter) {
    const QString name = u"a😀bc.txt"_s;
    const QString pattern = name.first(2) + u'*' + name.mid(2, 1) + u"*b*c*"_s;
    const NSPredicateRef predicate = *NSPredicate::predicateWithFormat(u"kMDItemFSName LIKE[cdw] %@"_s, {pattern});
    EXPECT_EQ(answerFor(*NameMatcher::compile(predicate), name), Answer::yes);
    EXPECT_EQ(answerFor(*NameMatcher::compile(predicate), u"a😁bc.txt"_s), Answer::no);
}

TEST_F(NameMatcherTest, AgreesWithThePredicate) {
    std::mt19937 engine(5);
    const auto random = [&engine](const QStringList& pieces, std::size_t most) {
        QString text;
        for (std::size_t i = engine() % most + 1; i > 0; --i)
            text += pieces[static_cast<qsizetype>(engine() % static_cast<std::size_t>(pieces.size()))];
        return text;
    };
    // Composed and decomposed accents; letters that fold to others, to several and to none; digits and signs of other scripts.
    const QStringList letters{u"a"_s,      u"A"_s, u"b"_s,       u"B"_s,       u"1"_s,      u"."_s,      u"é"_s,
                              u"É"_s,      u"e"_s, u"e\u0301"_s, u"E\u0301"_s, u"\u212A"_s, u"k"_s,      u"ß"_s,
                              u"\u0130"_s, u"i"_s, u"\u0345"_s,  u"\u2260"_s,  u"="_s,      u"٣"_s,      u"日"_s,
                              u"가"_s,     u"😀"_s, u"я"_s,       u"Я"_s,       u"ǅ"_s,      u"\u1FEF"_s, u"\u00AA"_s};
    const QStringList ascii = letters.first(6), few = letters.mid(0, 10);
    QStringList wild = letters + QStringList{u"*"_s, u"*"_s, u"?"_s}, wildASCII = ascii + QStringList{u"*"_s, u"?"_s, u"e"_s};
    for (const char* options : {"", "[c]", "[d]", "[cd]", "[cdw]", "[w]"}) {
        int matches = 0;
        for (int i = 0; i < 4'000; ++i) {
            const NSPredicateRef predicate = *NSPredicate::predicateWithFormat(u"kMDItemFSName LIKE%1 %@"_s.arg(QLatin1StringView(options)),
                                                                               {random(i % 2 ? wild : wildASCII, 5)});
            const auto matcher = NameMatcher::compile(predicate);
            for (int j = 0; j < 10; ++j) {
                const QString name = random(j % 3 == 0 ? letters : j % 3 == 1 ? few : ascii, 7);
                const bool holds = predicate->evaluateWithObject(QVariantMap{{NSMetadataItemFSNameKey, name}});
                matches += holds;
                ASSERT_EQ(answerFor(*matcher, name), holds ? Answer::yes : Answer::no)
                    << predicate->predicateFormat().toStdString() << " " << name.toStdString();
            }
        }
        EXPECT_GT(matches, 100) << options;
    }
}

} // namespace quoddle
