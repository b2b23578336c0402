// SPDX-License-Identifier: MIT
// Packed bundles can be unpacked again, and the same bundle makes the same file each time.
#include "platform/delivery/BundleArchive.h"
#include "platform/delivery/BundlePacking.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace quoddle;
using namespace Qt::StringLiterals;

namespace {

class BundlePacking : public ::testing::Test {
protected:
    BundlePacking() { QDir(place.path()).mkpath(u"A.app/Contents/Empty"_s); }

    QString path(const QString& name) const { return place.filePath(name); }
    void write(const QString& name, const QByteArray& bytes) const {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QByteArray read(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("nothing");
    }
    QString packed() const { return packBundle(path(u"A.app"_s), path(u"A.zip"_s)); }
    QString unpacked() const {
        QDir().mkpath(path(u"out"_s));
        const auto bundle = unpackBundle(path(u"A.zip"_s), path(u"out"_s), {.onlyZip = true});
        return bundle ? QString() : bundle.error();
    }

    QTemporaryDir place;
};

TEST_F(BundlePacking, GivesTheBundleBack) {
    write(u"A.app/Contents/é \"q\" %"_s, "text");
    write(u"A.app/Icon\r"_s, "a picture");
    write(u"A.app/Contents/zeros"_s, QByteArray(40 << 20, '\0')); // would be refused when it was compressed
    write(u"A.app/Contents/program"_s, "#!");
    write(u"A.app/Contents/._note"_s, "of another system");
    ASSERT_EQ(::chmod(QFile::encodeName(path(u"A.app/Contents/program"_s)).constData(), 04755), 0);
    ASSERT_EQ(::symlink("../program", QFile::encodeName(path(u"A.app/Contents/Empty/link"_s)).constData()), 0);
    ASSERT_EQ(packed(), u""_s);
    ASSERT_EQ(unpacked(), u""_s);
    EXPECT_EQ(read(u"out/A.app/Contents/é \"q\" %"_s), "text");
    EXPECT_EQ(read(u"out/A.app/Icon\r"_s), "a picture");
    EXPECT_EQ(QFileInfo(path(u"out/A.app/Contents/zeros"_s)).size(), 40 << 20);
    EXPECT_TRUE(QFileInfo(path(u"out/A.app/Contents/program"_s)).isExecutable());
    EXPECT_FALSE(QFileInfo(path(u"out/A.app/Contents/zeros"_s)).isExecutable());
    EXPECT_EQ(read(u"out/A.app/Contents/Empty/link"_s), "#!");
    EXPECT_FALSE(QFile::exists(path(u"out/A.app/Contents/._note"_s)));
}

TEST_F(BundlePacking, IsTheSameEachTime) {
    for (const char* name : {"b", "a", "c"})
        write(u"A.app/Contents/"_s + QLatin1StringView(name), name);
    ASSERT_EQ(packed(), u""_s);
    const QByteArray first = read(u"A.zip"_s);
    QDir(path(u"A.app"_s)).removeRecursively();
    QDir(place.path()).mkpath(u"A.app/Contents/Empty"_s);
    for (const char* name : {"c", "b", "a"})
        write(u"A.app/Contents/"_s + QLatin1StringView(name), name);
    QFile file(path(u"A.app/Contents/a"_s));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.setFileTime(QDateTime::fromSecsSinceEpoch(1'000'000'000), QFileDevice::FileModificationTime);
    ASSERT_EQ(packed(), u""_s);
    EXPECT_EQ(read(u"A.zip"_s), first);
}

TEST_F(BundlePacking, RefusesWhatCouldNotBeUnpacked) {
    const QString contents = path(u"A.app/Contents/"_s);
    const auto make = [&](const char* name) { return QFile::encodeName(contents + QString::fromUtf8(name)).toStdString(); };
    const struct {
        const char* name;
        std::function<int()> make;
        const char* error;
    } cases[] = {
        {"out", [&] { return ::symlink("/etc/passwd", make("out").c_str()); }, "leads out"},
        {"up", [&] { return ::symlink("../../x", make("up").c_str()); }, "leads out"},
        {"pipe", [&] { return ::mkfifo(make("pipe").c_str(), 0600); }, "neither a file"},
        {"one\atwo", [&] { return ::mkdir(make("one\atwo").c_str(), 0700); }, "rename it"},
        {"empty", [&] { return ::mkdir(make("empty").c_str(), 0700); }, "capitals"},
    };
    write(u"A.zip"_s, "what was there");
    for (const auto& row : cases) {
        ASSERT_EQ(row.make(), 0) << row.name;
        EXPECT_TRUE(packed().contains(QLatin1StringView(row.error))) << row.name << ": " << packed().toStdString();
        EXPECT_EQ(read(u"A.zip"_s), "what was there");
        EXPECT_EQ(QDir(place.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 2);
        ASSERT_EQ(std::remove(make(row.name).c_str()), 0) << row.name;
    }
}

} // namespace
