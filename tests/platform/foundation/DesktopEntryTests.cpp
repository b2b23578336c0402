// SPDX-License-Identifier: MIT
#include "platform/foundation/DesktopEntry.h"

#include "platform/foundation/Plist.h"
#include "platform/foundation/QtPrinters.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

class DesktopEntryTest : public testing::Test {
protected:
    void SetUp() override { qputenv("XDG_DATA_HOME", mFolder.path().toLocal8Bit()); }
    void TearDown() override { qunsetenv("XDG_DATA_HOME"); }

    std::shared_ptr<NSBundle> bundle(const QString& folder, const QString& identifier) {
        const QString path = mFolder.path() + u'/' + folder;
        write(path + u"/Contents/Info.plist"_s, *Plist::writeXML(QVariantMap{{u"CFBundleIdentifier"_s, identifier}}));
        return NSBundle::bundleWithPath(path);
    }
    static void write(const QString& path, const QByteArray& content) {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QTemporaryDir mFolder;
};

} // namespace

TEST_F(DesktopEntryTest, EveryNameIsOneThatABusTakes) {
    const struct {
        const char16_t* folder;
        QString identifier;
        const char* name;
    } cases[] = {
        {u"A.app", u"com.example.My-Tool_2"_s, "applet-com.example.My-Tool_2"},
        {u"A.app", u"com..example."_s, "applet-com.example"},
        {u"A.app", u"com.2nd.tool"_s, "applet-com._2nd.tool"},
        {u"A.app", u"com.a b/../c;d"_s, "applet-com.a_b_._c_d"},
        {u"A.app", u"com.日"_s, "applet-com._65e5"},
        {u"Two Words.app", u""_s, "applet-io.quoddle.applet.Two_Words"},
        {u"7.app", u"single"_s, "applet-io.quoddle.applet._7"},
    };
    for (const auto& row : cases)
        EXPECT_EQ(desktopNameForBundle(*bundle(QString::fromUtf16(row.folder), row.identifier)), QString::fromLatin1(row.name));

    const QString longest = u"com."_s + QString(5000, u'x');
    const QString name = desktopNameForBundle(*bundle(u"L.app"_s, longest + u'1'));
    EXPECT_LT(name.size(), 230);
    EXPECT_NE(name, desktopNameForBundle(*bundle(u"M.app"_s, longest + u'2')));
    EXPECT_TRUE(QRegularExpression(u"^applet-[A-Za-z_][A-Za-z0-9_-]*(\\.[A-Za-z_-][A-Za-z0-9_-]*)+$"_s).match(name).hasMatch());
    EXPECT_EQ(desktopObjectPath(u"applet-com.my-tool.x"_s), u"/applet_com/my_tool/x"_s);
}

TEST_F(DesktopEntryTest, ReadsOnlyTheGroupOfTheEntryAndResolvesEscapes) {
    const QString path = mFolder.path() + u"/x.desktop"_s;
    write(path, "Key=before\n[Other]\nKey=other\n[Desktop Entry]\n# Key=comment\n Key = \\sa\\\\b\\n\\q \r\nKey=second\n[Desktop Action "
                "a]\nLast=no\n");
    EXPECT_EQ(desktopEntryValue(path, u"Key"_s), u" a\\b\n\\q"_s);
    EXPECT_FALSE(desktopEntryValue(path, u"Last"_s));
    EXPECT_FALSE(desktopEntryValue(path + u"x"_s, u"Key"_s));
    write(path, "[Desktop Entry]\nKey=a\n" + QByteArray(100'000, '#'));
    EXPECT_FALSE(desktopEntryValue(path, u"Key"_s));
}

TEST_F(DesktopEntryTest, OnlyTheBundleThatTheEntryNamesIsInstalled) {
    const auto original = bundle(u"one/A.app"_s, u"com.example.a"_s);
    const auto copy = bundle(u"two/A.app"_s, u"com.example.a"_s);
    EXPECT_FALSE(isInstalledOnDesktop(*original));
    const QString entry = desktopEntryPath(u"applet-com.example.a"_s);
    write(entry, "[Desktop Entry]\nX-Quoddle-Bundle=" + original->bundlePath().toUtf8() + "\n");
    EXPECT_TRUE(isInstalledOnDesktop(*original));
    EXPECT_FALSE(isInstalledOnDesktop(*copy));
    write(entry, "[Desktop Entry]\nX-Quoddle-Bundle=/gone/A.app\n");
    EXPECT_FALSE(isInstalledOnDesktop(*original));
}

} // namespace quoddle
