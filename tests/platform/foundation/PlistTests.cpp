// SPDX-License-Identifier: MIT
#include "platform/foundation/Plist.h"

#include "BinaryPlistBuilder.h"

#include <ctime>
#include <gtest/gtest.h>

#include <QDateTime>
#include <QRandomGenerator>
#include <QStringEncoder>
#include <QTimeZone>
#include <QUrl>

namespace quoddle {

using namespace Qt::StringLiterals;
using test::BinaryPlistBuilder;

namespace {

std::string text(const QString& string) {
    return string.toStdString();
}

// The same value in all the formats that can represent it.
const QByteArray kXML = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0"><dict>
<!-- a comment --><key>text</key><string>Zoë 😀 &lt;&#x41;</string><key>yes</key><true/><key>no</key><false/>
<key>int</key><integer>-5</integer><key>big</key><integer>9223372036854775813</integer><key>hex</key><integer>0xFF</integer>
<key>real</key><real>2.5</real><key>data</key><data> AAH+
  </data><key>date</key><date>2026-03-05T14:07:09Z</date>
<key>list</key><array><integer>1</integer><string>two</string><array><integer>3</integer></array></array>
<key>dict</key><dict><key>a</key><dict/></dict><key>empty</key><string/>
</dict></plist>)";

const QByteArray kBinary = QByteArray::fromHex(
    "62706c6973743030dc0102030405060708090a0b0c0d0e0f10111617181d1e1f2055617363696953626967546461746154646174655464696374"
    "55656d70747953696e74546c697374526e6f547265616c54746578745379657355706c61696e1400000000000000008000000000000005430001"
    "fe3341c7ace2c6800000d112135161d11415516251635013fffffffffffffffba3191a1b10015374776fa11c1003082340040000000000006600"
    "5a006f00eb0020d83dde00090821272b30353a4044494c51565a6071757e818386888a8b94989a9ea0a2a3acb900000000000001010000000000"
    "000021000000000000000000000000000000ba");

QVariant readOrReport(const QByteArray& bytes) {
    auto value = Plist::read(bytes);
    if (!value) {
        ADD_FAILURE() << text(value.error());
        return {};
    }
    return *value;
}

QByteArray nested(const char* open, const char* inner, const char* close, int levels) {
    return QByteArray(open).repeated(levels) + inner + QByteArray(close).repeated(levels);
}

} // namespace

TEST(Plist, ReadsEveryTypeFromXMLAndBinary) {
    for (const QByteArray& bytes : {kXML, kBinary}) {
        const QVariantMap map = readOrReport(bytes).toMap();
        EXPECT_TRUE(map.value(u"text"_s).toString().startsWith(u"Zoë 😀"_s));
        EXPECT_EQ(map.value(u"yes"_s), QVariant(true));
        EXPECT_EQ(map.value(u"no"_s), QVariant(false));
        EXPECT_EQ(map.value(u"int"_s), QVariant(qlonglong(-5)));
        EXPECT_EQ(map.value(u"big"_s).typeId(), QMetaType::ULongLong);
        EXPECT_EQ(map.value(u"big"_s).toULongLong(), 9223372036854775813ull);
        EXPECT_EQ(map.value(u"real"_s), QVariant(2.5));
        EXPECT_EQ(map.value(u"data"_s), QVariant(QByteArray("\x00\x01\xfe", 3)));
        EXPECT_EQ(map.value(u"date"_s).toDateTime(), QDateTime(QDate(2026, 3, 5), QTime(14, 7, 9), QTimeZone::utc()));
        EXPECT_EQ(map.value(u"list"_s).toList().value(2).toList().value(0).toInt(), 3);
        EXPECT_EQ(map.value(u"empty"_s), QVariant(u""_s));
    }
    EXPECT_EQ(readOrReport(kXML).toMap().value(u"hex"_s).toInt(), 255);
    EXPECT_EQ(text(readOrReport(kXML).toMap().value(u"text"_s).toString()), "Zoë 😀 <A");
}

TEST(Plist, ReadsOpenStepTexts) {
    struct {
        const char* source;
        QVariant value;
    } const table[] = {
        {"word", u"word"_s},
        {"\"a\\\"b\\n\\U00e9\\u00E9\\101\\341\\q\"", u"a\"b\nééAÆq"_s}, // \341 is Æ in the NeXTSTEP encoding
        {"'single'", u"single"_s},
        {"<00 01 fE>", QByteArray("\x00\x01\xfe", 3)},
        {"( a, (b), )", QVariantList{u"a"_s, QVariantList{u"b"_s}}},
        {"{ a = b; \"c d\" = (); last = x }", QVariantMap{{u"a"_s, u"b"_s}, {u"c d"_s, QVariantList()}, {u"last"_s, u"x"_s}}},
        {"// line\n/* block */ { a = /* in */ 1; }", QVariantMap{{u"a"_s, u"1"_s}}},
        {"a = b;\n\"only key\";", QVariantMap{{u"a"_s, u"b"_s}, {u"only key"_s, u"only key"_s}}},
        {"path/to:some-file.txt", u"path/to:some-file.txt"_s},
    };
    for (const auto& row : table)
        EXPECT_EQ(readOrReport(row.source), row.value) << row.source;
}

TEST(Plist, ReadsWideAndOldEncodings) {
    auto encoded = [](QStringConverter::Encoding encoding, bool mark) {
        QStringEncoder encoder(encoding, mark ? QStringConverter::Flag::WriteBom : QStringConverter::Flag::Default);
        return QByteArray(encoder(u"\"key\" = \"Zoë 日 😀\";"_s));
    };
    struct {
        const char* name;
        QByteArray bytes;
    } const table[] = {
        {"UTF-8", encoded(QStringConverter::Utf8, false)},
        {"UTF-8 with mark", encoded(QStringConverter::Utf8, true)},
        {"UTF-16LE with mark", encoded(QStringConverter::Utf16LE, true)},
        {"UTF-16BE with mark", encoded(QStringConverter::Utf16BE, true)},
        {"UTF-16LE", encoded(QStringConverter::Utf16LE, false)},
        {"UTF-16BE", encoded(QStringConverter::Utf16BE, false)},
        {"UTF-32 with mark", encoded(QStringConverter::Utf32LE, true)},
    };
    for (const auto& row : table) {
        auto strings = Plist::readStrings(row.bytes);
        ASSERT_TRUE(strings) << row.name;
        EXPECT_EQ(text(strings->value(u"key"_s)), "Zoë 日 😀") << row.name;
    }
    EXPECT_EQ(text(Plist::readStrings("k = \"caf\x8e\";")->value(u"k"_s)), "café"); // decoded as Mac Roman
    EXPECT_TRUE(Plist::readStrings("/* nothing yet */")->isEmpty());
    EXPECT_EQ(Plist::readStrings(kXML)->value(u"empty"_s), u""_s);

    QByteArray wideXML = kXML;
    wideXML.replace("UTF-8", "UTF-16");
    QStringEncoder wide(QStringConverter::Utf16BE, QStringConverter::Flag::WriteBom);
    const QByteArray bytes = wide(QString::fromUtf8(wideXML));
    EXPECT_EQ(readOrReport(bytes).toMap().value(u"int"_s).toInt(), -5);
}

TEST(Plist, RefusesBrokenInputWithAText) {
    BinaryPlistBuilder cycle;
    cycle.addArray({1});
    cycle.addArray({0});
    BinaryPlistBuilder badReference;
    badReference.addArray({7});
    BinaryPlistBuilder numberAsKey;
    numberAsKey.add("\xD1" + BinaryPlistBuilder::references({1, 1}));
    numberAsKey.add("\x10\x01");
    BinaryPlistBuilder hugeCount;
    hugeCount.add(BinaryPlistBuilder::counted(0xA0, 0x7FFFFFFF));
    BinaryPlistBuilder hugeText;
    hugeText.add(QByteArray("\x6F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 10));
    struct {
        const char* name;
        QByteArray bytes;
        const char* error;
    } const table[] = {
        {"empty", "", "nothing"},
        {"blank", " \n", "nothing"},
        {"XML cut short", kXML.left(300), "line"},
        {"XML without value", "<plist></plist>", "empty"},
        {"XML with two values", "<plist><true/><true/></plist>", "second"},
        {"XML key without value", "<plist><dict><key>a</key></dict></plist>", "no value"},
        {"XML value without key", "<plist><dict><true/></dict></plist>", "key"},
        {"XML unknown element", "<plist><blob/></plist>", "unknown element"},
        {"XML bad integer", "<plist><integer>12x</integer></plist>", "bad integer"},
        {"XML integer too large", "<plist><integer>-9223372036854775809</integer></plist>", "bad integer"},
        {"XML bad date", "<plist><date>yesterday</date></plist>", "bad date"},
        {"XML bad data", "<plist><data>A*B</data></plist>", "bad data"},
        {"XML too deep", "<plist>" + nested("<array>", "", "</array>", 200'000) + "</plist>", "too deep"},
        {"XML entities that multiply",
         "<!DOCTYPE p [<!ENTITY a \"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa\">" + QByteArray("<!ENTITY b \"") + QByteArray("&a;").repeated(400) +
             "\"><!ENTITY c \"" + QByteArray("&b;").repeated(400) + "\">]><plist><string>&c;</string></plist>",
         "line"},
        {"binary cut short", kBinary.left(100), "binary"},
        {"binary only a header", "bplist00", "binary"},
        {"binary cycle", cycle.finished(0), "cycle"},
        {"binary bad reference", badReference.finished(0), "no object"},
        {"binary number as key", numberAsKey.finished(0), "key"},
        {"binary huge count", hugeCount.finished(0), "outside"},
        {"binary huge text", hugeText.finished(0), "outside"},
        {"OpenStep too deep", nested("(", "", ")", 100'000), "too deep"},
        {"OpenStep without semicolon", "{ a = b c = d; }", "semicolon"},
        {"OpenStep without brace", "{ a = b;", "too early"},
        {"OpenStep text without end", "{ a = \"b; }", "without an end"},
        {"OpenStep comment without end", "{ a = b; /* }", "comment"},
        {"OpenStep odd data", "<012>", "bad data"},
        {"OpenStep rest", "{} {}", "after the value"},
        {"broken UTF-16", QByteArray("\xFF\xFE\x00\xD8\x61\x00", 6), "broken"},
    };
    for (const auto& row : table) {
        const auto value = Plist::read(row.bytes);
        ASSERT_FALSE(value) << row.name;
        EXPECT_TRUE(value.error().contains(QLatin1StringView(row.error))) << row.name << ": " << text(value.error());
    }
    EXPECT_FALSE(Plist::readStrings("plain word"));
    EXPECT_FALSE(Plist::readFile(u"/nonexistent/Info.plist"_s));
}

TEST(Plist, SharedObjectsAreCheapAndOverlappingOnesRefused) {
    BinaryPlistBuilder shared; // 10^9 leaves in less than 1 KB
    int below = shared.addText("leaf");
    for (int level = 0; level < 9; ++level)
        below = shared.addArray(std::vector<int>(10, below));
    const std::clock_t before = std::clock(); // processor time, which other processes do not change
    EXPECT_TRUE(Plist::read(shared.finished(below)));
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 2);
    EXPECT_FALSE(Plist::writeXML(*Plist::read(shared.finished(below)))); // writing walks through all leaves

    BinaryPlistBuilder overlapping; // many texts that share the same bytes
    const quint32 start = overlapping.size();
    QByteArray headers;
    for (int i = 0; i < 2000; ++i)
        headers += BinaryPlistBuilder::counted(0x50, 100'000);
    overlapping.add(headers + QByteArray(120'000, 'x'));
    std::vector<int> all;
    for (int i = 0; i < 2000; ++i)
        all.push_back(overlapping.addAt(start + static_cast<quint32>(i) * 6));
    const int top = overlapping.addArray(all);
    const auto value = Plist::read(overlapping.finished(top));
    ASSERT_FALSE(value);
    EXPECT_TRUE(value.error().contains(u"overlapping"_s)) << text(value.error());
}

TEST(Plist, WritesWhatItReads) {
    for (const QByteArray& bytes : {kXML, kBinary}) {
        const QVariant value = readOrReport(bytes);
        auto written = Plist::writeXML(value);
        ASSERT_TRUE(written);
        EXPECT_EQ(readOrReport(*written), value);
    }
    for (double number : {0.1, 1e300, -HUGE_VAL}) {
        auto written = Plist::writeXML(number);
        ASSERT_TRUE(written);
        EXPECT_EQ(readOrReport(*written).toDouble(), number);
    }
    QVariant deep;
    deep = u"x"_s;
    for (int i = 0; i < Plist::kMaxDepth; ++i)
        deep = QVariantList{deep};
    EXPECT_FALSE(Plist::writeXML(deep));
    EXPECT_FALSE(Plist::writeXML(QVariant::fromValue(QUrl())));
    EXPECT_FALSE(Plist::writeXML(QString(QChar(1))));
}

// Checks no values: damaged bytes must not lead to a crash, a hang or unbounded memory.
TEST(Plist, SurvivesDamage) {
    QRandomGenerator random(20260305);
    const QByteArray openStep = "{ a = \"Foo \\U00e9\"; D = <0001 02>; L = ( x, { y = z; } ); /* c */ }";
    for (const QByteArray& original : {kXML, kBinary, openStep}) {
        for (int round = 0; round < 4000; ++round) {
            QByteArray bytes = original;
            for (int i = random.bounded(1, 5); i > 0; --i)
                bytes[random.bounded(bytes.size())] = static_cast<char>(random.bounded(256));
            if (random.bounded(4) == 0)
                bytes.truncate(random.bounded(bytes.size()));
            if (auto value = Plist::read(bytes))
                std::ignore = Plist::writeXML(*value);
        }
    }
}

} // namespace quoddle
