// SPDX-License-Identifier: MIT
#include "platform/foundation/NSBundle.h"

#include "platform/foundation/NSLog.h"
#include "platform/foundation/QtPrinters.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QTemporaryDir>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

class NSBundleTest : public testing::Test {
protected:
    void write(const QString& below, const QByteArray& content) {
        const QString path = bundlePath() + u"/Contents/"_s + below;
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QString bundlePath() const { return mFolder.path() + u"/Demo.app"_s; }
    std::shared_ptr<NSBundle> bundle() const { return NSBundle::bundleWithPath(bundlePath()); }
    void TearDown() override { QLocale::setDefault(QLocale::system()); }

    QTemporaryDir mFolder;
};

} // namespace

TEST_F(NSBundleTest, IsFoundByPathAndByExecutable) {
    write(u"Linux/Demo"_s, "");
    EXPECT_EQ(NSBundle::bundleWithPath(bundlePath() + u'/')->bundlePath(), bundlePath());
    EXPECT_EQ(NSBundle::bundleForExecutable(bundlePath() + u"/Contents/Linux/Demo"_s)->bundlePath(), bundlePath());
    EXPECT_FALSE(NSBundle::bundleWithPath(bundlePath() + u"/Contents/Linux/Demo"_s)); // a file is no bundle
    EXPECT_FALSE(NSBundle::bundleWithPath(u""_s));
    EXPECT_FALSE(NSBundle::bundleForExecutable(u"/usr/bin/quoddle-shell"_s));
    EXPECT_FALSE(NSBundle::bundleForExecutable(mFolder.path() + u"/None.app/Contents/Linux/None"_s));
}

TEST_F(NSBundleTest, WaitsForNoPipe) {
    write(u"Resources/en.lproj/Other.strings"_s, "");
    const QString contents = bundlePath() + u"/Contents/"_s;
    for (const char* file : {"Info.plist", "Resources/en.lproj/Localizable.strings"})
        ASSERT_EQ(::mkfifo(QFile::encodeName(contents + QString::fromLatin1(file)).constData(), 0600), 0);
    EXPECT_TRUE(bundle()->infoDictionary().isEmpty());
    EXPECT_EQ(bundle()->localizedString(u"Key"_s), u"Key"_s);
}

TEST_F(NSBundleTest, ReadsItsInformation) {
    write(u"Info.plist"_s, "{ CFBundleIdentifier = \"org.example.demo\"; CFBundleName = Demo; }");
    write(u"Resources/en.lproj/InfoPlist.strings"_s, "CFBundleName = \"Demonstration\";");
    QLocale::setDefault(QLocale(u"en_GB"_s));
    const auto demo = bundle();
    EXPECT_EQ(demo->bundleIdentifier(), u"org.example.demo"_s);
    EXPECT_EQ(demo->infoDictionary().value(u"CFBundleName"_s), QVariant(u"Demo"_s));
    EXPECT_EQ(demo->objectForInfoDictionaryKey(u"CFBundleName"_s), QVariant(u"Demonstration"_s));
    EXPECT_FALSE(demo->objectForInfoDictionaryKey(u"None"_s).isValid());

    EXPECT_EQ(demo->name(), u"Demo"_s);

    write(u"Info.plist"_s, "{ CFBundleName = \"\"; }");
    EXPECT_EQ(bundle()->name(), u"Demo"_s) << "the folder's name";

    for (const char* bad : {"just a word", "<plist><dict>", ""}) {
        write(u"Info.plist"_s, bad);
        EXPECT_TRUE(bundle()->infoDictionary().isEmpty()) << bad;
    }
}

TEST_F(NSBundleTest, ChoosesLanguages) {
    struct {
        const char *locale, *region;
        QStringList folders, chosen;
    } const table[] = {
        {"fr_CA", "", {u"en"_s, u"fr"_s}, {u"fr"_s, u"en"_s}},
        {"fr_CA", "", {u"fr_CA"_s, u"fr"_s, u"de"_s}, {u"fr_CA"_s, u"fr"_s}},
        {"zh_TW", "", {u"zh-Hant"_s, u"en"_s}, {u"zh-Hant"_s, u"en"_s}},
        {"de_DE", "", {u"Base"_s, u"fr"_s, u"en"_s}, {u"Base"_s, u"en"_s}},
        {"de_DE", "nl", {u"nl"_s, u"fr"_s}, {u"nl"_s}},
        {"de_AT", "English", {u"German"_s, u"English"_s}, {u"German"_s, u"English"_s}},
        {"ja_JP", "", {}, {}},
    };
    for (const auto& row : table) {
        QDir(bundlePath()).removeRecursively();
        write(u"Info.plist"_s, "{ CFBundleDevelopmentRegion = \"" + QByteArray(row.region) + "\"; }");
        for (const QString& folder : row.folders)
            write(u"Resources/"_s + folder + u".lproj/x"_s, "");
        QLocale::setDefault(QLocale(QLatin1StringView(row.locale)));
        EXPECT_EQ(bundle()->preferredLocalizations(), row.chosen) << row.locale << ' ' << row.region;
    }
}

TEST_F(NSBundleTest, FindsResources) {
    write(u"Resources/Scripts/main.scpt"_s, "");
    write(u"Resources/fr.lproj/Description.rtf"_s, "");
    write(u"Resources/en.lproj/Description.rtf"_s, "");
    write(u"Resources/en.lproj/sub/only"_s, "");
    QLocale::setDefault(QLocale(u"fr_FR"_s));
    const QString resources = bundlePath() + u"/Contents/Resources/"_s;
    const auto demo = bundle();
    EXPECT_EQ(demo->pathForResource(u"main"_s, u"scpt"_s, u"Scripts"_s), resources + u"Scripts/main.scpt"_s);
    EXPECT_EQ(demo->pathForResource(u"Description"_s, u"rtf"_s), resources + u"fr.lproj/Description.rtf"_s);
    EXPECT_EQ(demo->pathForResource(u"only"_s, {}, u"sub"_s), resources + u"en.lproj/sub/only"_s);
    EXPECT_EQ(demo->pathForResource(u"main"_s, u"scpt"_s), QString());
}

TEST_F(NSBundleTest, TranslatesKeyByKey) {
    write(u"Resources/de.lproj/Localizable.strings"_s, "both = \"beide\"; onlyGerman = \"nur\"; empty = \"\";");
    write(u"Resources/en.lproj/Localizable.strings"_s, "both = \"both\"; onlyEnglish = \"only\"; empty = \"full\";");
    write(u"Resources/Base.lproj/Localizable.strings"_s, "both = \"broken"); // a broken table must not make the others unavailable
    write(u"Resources/en.lproj/Other.strings"_s, "both = \"other\";");
    QLocale::setDefault(QLocale(u"de_CH"_s));
    NSBundle::setFallbackStrings({}, {{u"both"_s, u"fallback"_s}, {u"unknown"_s, u"fallback"_s}});
    const auto demo = bundle();
    EXPECT_EQ(demo->localizedString(u"both"_s), u"beide"_s);
    EXPECT_EQ(demo->localizedString(u"onlyEnglish"_s), u"only"_s);
    EXPECT_EQ(demo->localizedString(u"empty"_s), u""_s);
    EXPECT_EQ(demo->localizedString(u"both"_s, {}, u"Other"_s), u"other"_s);
    EXPECT_EQ(demo->localizedString(u"unknown"_s), u"fallback"_s);
    EXPECT_EQ(demo->localizedString(u"none"_s), u"none"_s);
    EXPECT_EQ(demo->localizedString(u"none"_s, u"value"_s), u"value"_s);
    NSBundle::setFallbackStrings({}, {});
    EXPECT_EQ(demo->localizedString(u"unknown"_s), u"unknown"_s);
}

TEST(BoolValue, FollowsThePlatform) {
    struct {
        QVariant object;
        bool truth, number;
    } const table[] = {
        {true, true, true},
        {false, false, true},
        {qlonglong(2), true, true},
        {0.0, false, true},
        {0.25, true, true},
        {u"YES"_s, true, false},
        {u"no"_s, false, false},
        {u"true"_s, true, false},
        {u" -00Y"_s, true, false},
        {u"0"_s, false, false},
        {u"10"_s, true, false},
        {u"false"_s, false, false},
        {u"on"_s, false, false},
        {u""_s, false, false},
        {QVariant(), false, false},
        {QVariantList{true}, false, false},
        {QVariantMap{}, false, false},
        {u"+tRUE"_s, true, false},
    };
    for (const auto& row : table) {
        EXPECT_EQ(boolValue(row.object), row.truth) << row.object.toString().toStdString();
        EXPECT_EQ(isNumber(row.object), row.number) << row.object.toString().toStdString();
    }
}

TEST(StringWithFormat, FillsPlaceholdersAndTrustsNone) {
    struct {
        const char* format;
        QVariantList arguments;
        const char* text;
    } const table[] = {
        {"%d%% completed", {40}, "40% completed"},
        {"%@ of %@", {u"3"_s, u"8"_s}, "3 of 8"},
        {"%2$@ sur %1$@", {u"3"_s, u"10"_s}, "10 sur 3"},
        {"error: %@", {QVariant()}, "error: (null)"},
        {"%@ %@", {u"one"_s}, "one (null)"},
        {"%ld %n %s 100%", {7}, "7 %n %s 100%"},
        {"%@", {QVariantMap{{u"steps"_s, 3}}}, "{ steps = 3; }"},
        {"%@", {u"a %@ b"_s}, "a %@ b"},
    };
    for (const auto& row : table)
        EXPECT_EQ(stringWithFormat(QString::fromUtf8(row.format), row.arguments).toStdString(), row.text) << row.format;
}

} // namespace quoddle
