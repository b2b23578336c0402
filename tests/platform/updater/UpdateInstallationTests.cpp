// SPDX-License-Identifier: MIT
// Obstacles to an installation, faults of unpacked bundles, and the replacement of a bundle.
#include "platform/updater/UpdateInstallation.h"

#include "platform/foundation/NSBundle.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/updater/UpdateSettings.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <unistd.h>

using namespace quoddle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class UpdateInstallation : public ::testing::Test {
protected:
    void write(const QString& path, const QByteArray& content) {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    /// Makes a bundle; `info` is its property list in the old form: "key = value;".
    std::shared_ptr<NSBundle> made(const QString& name, const QByteArray& info) {
        const QString path = place.filePath(name);
        write(path + "/Contents/Info.plist"_L1, "{" + info + "}");
        write(path + "/Contents/Resources/Scripts/main.scpt"_L1, "script of " + name.toUtf8());
        return NSBundle::bundleWithPath(path);
    }
    QString content(const QString& path) const {
        QFile file(place.filePath(path));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : u"nothing"_s;
    }

    QTemporaryDir place;
    AppcastItem item = {.version = u"2"_s, .archive = QUrl(u"https://a.example/a.zip"_s), .archiveLength = 10, .signature = "c2ln"};
};

TEST_F(UpdateInstallation, NeedsAKeyASignatureAndAPlaceOfItsOwn) {
    const auto withKey = made(u"K.app"_s, "SUPublicEDKey = \"a2V5\";"), without = made(u"N.app"_s, "CFBundleVersion = 1;");
    EXPECT_EQ(obstacleToInstalling(*withKey, item), QString());
    EXPECT_NE(obstacleToInstalling(*without, item), QString());
    const struct {
        const char* what;
        void (*spoil)(AppcastItem&);
    } cases[] = {
        {"no archive", [](AppcastItem& each) { each.archive.clear(); }},
        {"no signature", [](AppcastItem& each) { each.signature.clear(); }},
        {"no length", [](AppcastItem& each) { each.archiveLength = 0; }},
        {"a length below nothing", [](AppcastItem& each) { each.archiveLength = -1; }},
        {"more than anybody has room for", [](AppcastItem& each) { each.archiveLength = qint64(1) << 50; }},
    };
    for (const auto& [what, spoil] : cases) {
        AppcastItem spoiled = item;
        spoil(spoiled);
        EXPECT_NE(obstacleToInstalling(*withKey, spoiled), QString()) << what;
    }
    // Applets that belong to a package of the system are updated by the system, whoever may write there.
    for (const char* package : {"/usr/share/A.app", "/app/A.app", "/nix/store/x/A.app"})
        EXPECT_TRUE(belongsToPackage(QString::fromUtf8(package))) << package;
    for (const char* own : {"/usr/local/A.app", "/home/me/usr/A.app", "/opt/A.app", "/apps/A.app"})
        EXPECT_FALSE(belongsToPackage(QString::fromUtf8(own))) << own;
    if (::geteuid() != 0) { // root may write anywhere
        QFile::setPermissions(place.path(), QFile::ReadOwner | QFile::ExeOwner);
        EXPECT_NE(obstacleToInstalling(*withKey, item), QString());
        QFile::setPermissions(place.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
}

TEST_F(UpdateInstallation, TakesOnlyWhatWasAnnounced) {
    const auto installed = made(u"A.app"_s, "CFBundleIdentifier = \"a.b\"; CFBundleVersion = 1;");
    const struct {
        const char* info;
        bool isRight;
    } cases[] = {
        {"CFBundleIdentifier = \"a.b\"; CFBundleVersion = 2;", true},
        {"CFBundleIdentifier = \"a.b\"; CFBundleVersion = \"2.0\";", true},
        {"CFBundleIdentifier = \"a.b\"; CFBundleShortVersionString = 2;", true},
        {"CFBundleIdentifier = \"a.b\"; CFBundleVersion = 1; CFBundleShortVersionString = 2;", false},
        {"CFBundleIdentifier = \"a.c\"; CFBundleVersion = 2;", false},
        {"CFBundleVersion = 2;", false},
        {"CFBundleIdentifier = \"a.b\"; CFBundleVersion = 3;", false},
        {"CFBundleIdentifier = \"a.b\";", false},
        {"broken", false},
    };
    int number = 0;
    for (const auto& [info, isRight] : cases) {
        const auto unpacked = made(QString::number(++number) + "/A.app"_L1, info);
        EXPECT_EQ(faultOfUnpackedBundle(*unpacked, *installed, item).isEmpty(), isRight) << info;
    }
    const auto scriptless = made(u"S.app"_s, cases[0].info);
    QDir(scriptless->resourcePath()).removeRecursively();
    EXPECT_NE(faultOfUnpackedBundle(*NSBundle::bundleWithPath(scriptless->bundlePath()), *installed, item), QString());
}

TEST_F(UpdateInstallation, ExchangesTheBundlesAndKeepsWhatStartsThem) {
    const auto installed = made(u"A.app"_s, "CFBundleExecutable = Old; CFBundleVersion = 1;");
    write(place.filePath(u"A.app/Contents/Linux/Old"_s), "ours");
    write(place.filePath(u"A.app/Contents/Resources/obsolete"_s), "x");
    QTemporaryDir staging(stagingTemplate(*installed));
    ASSERT_TRUE(staging.isValid());
    EXPECT_EQ(QFileInfo(staging.path()).path(), place.path());
    const QString name = QFileInfo(staging.path()).fileName() + "/New.app"_L1;
    const auto made2 = made(name, "CFBundleExecutable = New; CFBundleVersion = 2;");
    write(made2->bundlePath() + "/Contents/Linux/New"_L1, "theirs");
    ASSERT_EQ(installUpdate(made2->bundlePath(), installed->bundlePath()), noErr);
    EXPECT_EQ(versionOfBundle(*NSBundle::bundleWithPath(installed->bundlePath())), u"2"_s);
    EXPECT_EQ(content(u"A.app/Contents/Linux/New"_s), u"ours"_s);
    EXPECT_EQ(content(u"A.app/Contents/Linux/Old"_s), u"ours"_s);
    EXPECT_EQ(content(u"A.app/Contents/Resources/obsolete"_s), u"nothing"_s);
    EXPECT_FALSE(QFile::exists(made2->bundlePath()));
    // When the new bundle is missing, the installed one stays unchanged.
    EXPECT_NE(installUpdate(made2->bundlePath(), installed->bundlePath()), noErr);
    EXPECT_EQ(versionOfBundle(*NSBundle::bundleWithPath(installed->bundlePath())), u"2"_s);
    staging.setAutoRemove(false);
    removeStaleStaging(*installed);
    EXPECT_EQ(QDir(place.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList{u"A.app"_s});
}

TEST_F(UpdateInstallation, SettingsOfTheUserComeFirst) {
    QSettings& defaults = standardUserDefaults();
    defaults.clear();
    UpdateSettings settings(
        made(u"A.app"_s, "SUFeedURL = \"https://a.example/feed\"; SUScheduledCheckInterval = 7200; SUEnableAutomaticChecks = 1;"));
    UpdateSettings silent(made(u"B.app"_s, "SUFeedURL = \"feed.xml\";"));
    EXPECT_EQ(settings.feedURL(), QUrl(u"https://a.example/feed"_s));
    EXPECT_TRUE(silent.feedURL().isEmpty());
    EXPECT_EQ(settings.checksAutomatically(), true);
    EXPECT_EQ(silent.checksAutomatically(), std::nullopt);
    settings.setChecksAutomatically(false);
    EXPECT_EQ(settings.checksAutomatically(), false);
    const struct {
        QVariant interval;
        std::chrono::seconds expected;
    } intervals[] = {{{}, 7200s}, {5000, 5000s},        {1, 3600s},         {-5, 24h},
                     {0, 24h},    {u"nonsense"_s, 24h}, {1e300, 24h * 365}, {u"nan"_s, 24h}};
    for (const auto& [interval, expected] : intervals) {
        defaults.setValue(u"SUScheduledCheckInterval"_s, interval);
        EXPECT_EQ(settings.interval(), expected) << qPrintable(interval.toString());
    }
    defaults.setValue(u"SUScheduledCheckInterval"_s, 7200);
    EXPECT_EQ(settings.timeToNextCheck(), 0s);
    settings.noteCheck();
    EXPECT_GT(settings.timeToNextCheck(), 7100s);
    EXPECT_LE(settings.timeToNextCheck(), 7200s);
    for (const auto& last : {QDateTime::currentDateTimeUtc().addSecs(-7200), QDateTime::currentDateTimeUtc().addYears(9), QDateTime()}) {
        defaults.setValue(u"SULastCheckTime"_s, last.toString(Qt::ISODate));
        EXPECT_EQ(settings.timeToNextCheck(), 0s);
    }
    EXPECT_FALSE(settings.noteLaunch());
    EXPECT_TRUE(settings.noteLaunch());
}

} // namespace
