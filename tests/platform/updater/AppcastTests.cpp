// SPDX-License-Identifier: MIT
// Tables of version texts, feeds and notes.
#include "platform/updater/Appcast.h"
#include "platform/updater/NotesText.h"
#include "platform/updater/VersionOrder.h"

#include <gtest/gtest.h>

using namespace quoddle;
using namespace Qt::StringLiterals;

namespace {

TEST(VersionOrder, IsThatOfPeople) {
    // The versions in a line are sorted from the oldest to the newest; those joined by "=" are equal.
    const char* const lines[] = {
        "0 1 1.0.1 1.1 1.9 1.10 1.10.1 2",
        "1.0=1.0.0=1=v1.0=01.0 1.0.0.1",
        "2.0a1 2.0a2 2.0a10 2.0b1=2.0B1=2.0-b.1 2.0b2 2.0rc1 2.0=2.0.0 2.0.1b1 2.0.1",
        "1.0+zzz=1.0+aaa=1.0 1.1",
        "9 10 99999999999999999998 99999999999999999999 100000000000000000000",
        "2024.1.31 2024.2.1 2024.10.1",
    };
    for (const char* line : lines) {
        const QStringList groups = QString::fromUtf8(line).split(u' ');
        for (qsizetype i = 0; i < groups.size(); ++i)
            for (qsizetype j = 0; j < groups.size(); ++j)
                for (const QString& one : groups[i].split(u'='))
                    for (const QString& other : groups[j].split(u'='))
                        EXPECT_TRUE(versionOrder(one, other) == (i <=> j)) << qPrintable(one + " and " + other);
    }
}

QByteArray feedOf(const QByteArray& items) {
    return "<?xml version='1.0' encoding='utf-8'?><rss version='2.0' "
           "xmlns:s='urn:s'><channel><title>T</title><link>https://a.example/all</link>" +
           items + "</channel></rss>";
}

const QUrl kSource(u"https://a.example/feeds/feed.xml"_s);

TEST(Appcast, ReadsItems) {
    const auto feed = readAppcast(feedOf(R"(
        <item><title>Two</title><link>two.html</link><s:minimumSystemVersion>0.1</s:minimumSystemVersion>
          <s:releaseNotesLink>https://b.example/two</s:releaseNotesLink><description><![CDATA[<p>New</p>]]></description><unknown><deep/></unknown>
          <enclosure url="A-2.zip" length="1234" type="application/zip" s:version="200" s:shortVersionString="2.0" s:edSignature="c2ln" s:os="linux"/></item>
        <item><s:version>300</s:version><link>javascript:alert(1)</link><enclosure url="file:///etc/passwd" length="-3"/></item>
        <item><title>without a version</title></item>)"),
                                  kSource);
    ASSERT_TRUE(feed) << qPrintable(feed.error());
    EXPECT_EQ(feed->page, QUrl(u"https://a.example/all"_s));
    ASSERT_EQ(feed->items.size(), 2);
    const AppcastItem& two = feed->items[0];
    EXPECT_EQ(two.version, u"200"_s);
    EXPECT_EQ(two.displayVersion, u"2.0"_s);
    EXPECT_EQ(two.page, QUrl(u"https://a.example/feeds/two.html"_s));
    EXPECT_EQ(two.notesURL, QUrl(u"https://b.example/two"_s));
    EXPECT_EQ(two.description, u"<p>New</p>"_s);
    EXPECT_EQ(two.archive, QUrl(u"https://a.example/feeds/A-2.zip"_s));
    EXPECT_EQ(two.archiveLength, 1234);
    EXPECT_EQ(two.signature, "c2ln");
    EXPECT_EQ(two.operatingSystem, u"linux"_s);
    EXPECT_EQ(two.minimumSystemVersion, u"0.1"_s);
    const AppcastItem& three = feed->items[1];
    EXPECT_EQ(three.displayVersion, u"300"_s);
    EXPECT_TRUE(three.page.isEmpty());
    EXPECT_TRUE(three.archive.isEmpty());
}

TEST(Appcast, OffersTheNewestThatIsForUs) {
    const auto item = [](const QByteArray& version, const QByteArray& system = {}, const QByteArray& minimum = {}) {
        return "<item><s:version>" + version + "</s:version><s:minimumSystemVersion>" + minimum +
               "</s:minimumSystemVersion><enclosure s:os='" + system + "'/></item>";
    };
    const struct {
        QByteArray items;
        const char* installed;
        const char* offered;
    } cases[] = {
        {item("1.9") + item("1.10") + item("1.2"), "1.2", "1.10"},
        {item("1.2"), "1.2", ""},
        {item("1.2"), "1.2.0", ""},
        {item("1.2"), "1.3", ""},
        {item("2.0b1"), "2.0", ""},
        {item("2.0b1"), "1.9", "2.0b1"},
        {item("3", "windows") + item("2", "Linux") + item("4", "macos"), "1", "2"},
        {item("2", "linux", "0.9") + item("3", "linux", "1.1"), "1", "2"},
        {item("3", "", "10.15"), "1", "3"}, // the required version is that of another system
        {"", "1", ""},
    };
    for (const auto& each : cases) {
        const auto feed = readAppcast(feedOf(each.items), kSource);
        ASSERT_TRUE(feed);
        const auto offered = newestItem(*feed, QString::fromUtf8(each.installed), u"1.0"_s);
        EXPECT_EQ(offered ? offered->version : QString(), QString::fromUtf8(each.offered)) << each.items.constData();
    }
}

TEST(Appcast, HostileFeedsEndWithAnError) {
    QByteArray deep, entities = "<!DOCTYPE rss [<!ENTITY a 'aaaaaaaaaa'>";
    for (int i = 0; i < 200'000; ++i)
        deep += "<d>";
    for (char name = 'b'; name <= 'z'; ++name) {
        entities += QByteArray("<!ENTITY ") + name + " '";
        for (int i = 0; i < 10; ++i)
            entities += QByteArray("&") + static_cast<char>(name - 1) + ";";
        entities += "'>";
    }
    const QByteArray cases[] = {
        "",
        "no feed",
        "<html/>",
        "<rss>",
        feedOf("<item>"),
        feedOf(deep),
        feedOf("<item><s:version>1</s:version>" + deep),
        entities + "]><rss><channel><item><version>&z;</version></item></channel></rss>",
        "<!DOCTYPE rss [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><rss><channel><link>&x;</link></channel></rss>",
        feedOf(QByteArray(kMaximumFeedSize, ' ')),
    };
    for (const QByteArray& feed : cases) {
        const auto read = readAppcast(feed, kSource);
        ASSERT_FALSE(read) << feed.left(100).constData();
        EXPECT_FALSE(read.error().isEmpty());
    }
    // A part of an item that is too long, or too many items, are dropped without making the feed invalid.
    QByteArray many, version(1000, '1');
    for (int i = 1; i <= 5000; ++i)
        many += "<item><s:version>" + QByteArray::number(i) + "</s:version></item>";
    const auto feed = readAppcast(feedOf("<item><s:version>" + version + "</s:version></item>" + many), kSource);
    ASSERT_TRUE(feed);
    EXPECT_LE(feed->items.size(), 2000);
    EXPECT_EQ(feed->items.value(0).version, u"1"_s);
}

TEST(NotesText, IsPlainText) {
    const struct {
        const char* notes;
        const char* text;
    } cases[] = {
        {"Plain, 1 < 2 & 3 > 2\n\n- a list", "Plain, 1 < 2 & 3 > 2\n\n- a list"},
        {"<p>One</p>\n\n  <p>Two\n  lines</p>", "One\n\nTwo lines"},
        {"<h2>New</h2><ul><li>a</li> <li>b <b>bold</b></li></ul>End", "New\n\n\u2022 a\n\u2022 b bold\n\nEnd"},
        {"<ul><li><p>in a paragraph</p></li></ul>", "\u2022 in a paragraph"},
        {"a<br>b<br/>c", "a\nb\nc"},
        {"<p>1 &lt; 2 &amp;&#38; &#x2603; &nosuch; & &#xD800; &amp;lt;</p>", "1 < 2 && \u2603 &nosuch; & &#xD800; &lt;"},
        {"<p>a</p><script>alert('<p>x</p>')</script><style>p{}</style><!-- <p>hidden</p> -->b", "a\n\nb"},
        {"<img src='https://evil.example/p.png' onerror=alert(1)>a<p>", "a"},
        {"<pre>  x\n    y</pre>", "x\n    y"},
        {"<p>cut <b off", "cut"},
        {"<SCRIPT>never closed", ""},
        {"<p>\xEF\xBF\xBC</p>", ""},
    };
    for (const auto& each : cases)
        EXPECT_EQ(plainNotes(QString::fromUtf8(each.notes)), QString::fromUtf8(each.text)) << each.notes;
    // Time and result grow in proportion to the notes.
    for (const char* piece : {"<", "<a", "&", "<p>", "<li>", "<!--", "&#1114111;", "<script>"})
        EXPECT_LE(plainNotes(QString::fromUtf8(piece).repeated(500'000)).size(), 400'000) << piece;
}

} // namespace
