// SPDX-License-Identifier: MIT
// Archives as makers of applets pack them, and archives that try to write elsewhere.
#include "platform/delivery/BundleArchive.h"

#include <archive.h>
#include <archive_entry.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

using namespace quoddle;
using namespace Qt::StringLiterals;

namespace {

struct Entry {
    std::string name;
    std::string content;   ///< the contents of a file
    std::string link = {}; ///< the target of a symbolic link
    unsigned mode = 0644;
    std::string hardLink = {};
    unsigned type = AE_IFREG;
};
using Entries = std::vector<Entry>;

Entry folder(std::string name) {
    return {.name = std::move(name), .mode = 0755, .type = AE_IFDIR};
}

Entry link(std::string name, std::string target) {
    return {.name = std::move(name), .link = std::move(target), .type = AE_IFLNK};
}

const Entry kInfo = {"A.app/Contents/Info.plist", "info"};

void pack(const QString& path, const Entries& entries, bool asZip) {
    archive* writer = archive_write_new();
    asZip ? archive_write_set_format_zip(writer) : archive_write_set_format_pax_restricted(writer);
    if (!asZip)
        archive_write_add_filter_gzip(writer);
    ASSERT_EQ(archive_write_open_filename(writer, QFile::encodeName(path).constData()), ARCHIVE_OK);
    for (const Entry& entry : entries) {
        archive_entry* header = archive_entry_new();
        archive_entry_set_pathname(header, entry.name.c_str());
        archive_entry_set_filetype(header, entry.type);
        archive_entry_set_perm(header, entry.mode);
        archive_entry_set_size(header, static_cast<la_int64_t>(entry.content.size()));
        if (!entry.link.empty())
            archive_entry_set_symlink(header, entry.link.c_str());
        if (!entry.hardLink.empty())
            archive_entry_set_hardlink(header, entry.hardLink.c_str());
        archive_write_header(writer, header);
        archive_write_data(writer, entry.content.data(), entry.content.size());
        archive_entry_free(header);
    }
    archive_write_free(writer);
}

class BundleArchive : public ::testing::Test {
protected:
    /// The name of the unpacked bundle, or "error: …".
    QString unpacked(const Entries& entries, bool asZip = false, const UnpackingRules& rules = {}) {
        target = place.filePath(QString::number(++count));
        QDir().mkpath(target);
        pack(archivePath(), entries, asZip);
        return unpack(rules);
    }
    QString unpack(const UnpackingRules& rules = {}) {
        const auto bundle = unpackBundle(archivePath(), target, rules);
        return bundle ? QFileInfo(*bundle).fileName() : "error: "_L1 + bundle.error();
    }
    QString archivePath() const { return place.filePath(u"archive"_s); }
    QString content(const QString& name) const {
        QFile file(target + u'/' + name);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : u"nothing"_s;
    }

    QTemporaryDir place;
    QString target;
    int count = 0;
};

TEST_F(BundleArchive, UnpacksWhatIsInTheBundle) {
    for (const bool asZip : {true, false}) {
        ASSERT_EQ(unpacked({folder("./A.app/"),
                            kInfo,
                            {"A.app/Contents/Linux/A", "#!", {}, 04777},
                            {"A.app/Contents/Resources/\xC3\xA9t\xC3\xA9.txt", std::string(200'000, 'x')},
                            folder("A.app/Contents/Empty/"),
                            link("A.app/Contents/Resources/Current", "../Info.plist"),
                            {"README", "beside"},
                            {"__MACOSX/A.app/._b", "notes"},
                            {"A.app/Contents/._Info.plist", "notes"}},
                           asZip),
                  u"A.app"_s);
        EXPECT_EQ(content(u"A.app/Contents/Info.plist"_s), u"info"_s);
        EXPECT_EQ(content(u"A.app/Contents/Resources/Current"_s), u"info"_s);
        EXPECT_EQ(content(u"A.app/Contents/Resources/été.txt"_s).size(), 200'000);
        EXPECT_TRUE(QFileInfo(target + "/A.app/Contents/Empty"_L1).isDir());
        const auto program = QFile::permissions(target + "/A.app/Contents/Linux/A"_L1);
        EXPECT_TRUE(program.testFlag(QFile::ExeOwner));
        EXPECT_FALSE(program.testFlag(QFile::WriteOther));
        EXPECT_FALSE(QFile::permissions(target + "/A.app/Contents/Info.plist"_L1).testFlag(QFile::ExeOwner));
        EXPECT_EQ(QDir(target).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList{u"A.app"_s});
        EXPECT_FALSE(QFile::exists(target + "/A.app/Contents/._Info.plist"_L1));
    }
}

TEST_F(BundleArchive, RefusesWhatLeadsOutside) {
    const struct {
        const char* what;
        Entries entries;
    } cases[] = {
        {"a step up", {kInfo, {"A.app/../../evil", "x"}}},
        {"a step up beside the bundle", {kInfo, {"../evil", "x"}}},
        {"an absolute name", {kInfo, {"/tmp/evil", "x"}}},
        {"a link to elsewhere", {kInfo, link("A.app/Contents/l", "/etc")}},
        {"a link above the bundle", {kInfo, link("A.app/Contents/l", "../../x")}},
        {"a link to itself as a whole", {kInfo, link("A.app/l", ".")}},
        {"a step up behind a name", {kInfo, link("A.app/a/b/c/d/m", "l/../../evil")}},
        {"writing through a link", {kInfo, link("A.app/Contents/l", "Resources"), {"A.app/Contents/l/evil", "x"}}},
        {"a link that is a folder already", {kInfo, link("A.app/Contents", "Other")}},
        {"a file below a file", {kInfo, {"A.app/Contents/Info.plist/x", "x"}}},
        {"one file twice", {kInfo, kInfo}},
        {"a hard link", {kInfo, {.name = "A.app/h", .hardLink = "/etc/passwd"}}},
        {"a hard link within", {kInfo, {.name = "A.app/h", .hardLink = "A.app/Contents/Info.plist"}}},
        {"a pipe", {kInfo, {.name = "A.app/p", .type = AE_IFIFO}}},
        {"a device", {kInfo, {.name = "A.app/d", .type = AE_IFCHR}}},
        {"a bundle that is a link", {link("A.app", "B")}},
        {"a bundle that is a file", {{"A.app", "x"}}},
        {"two bundles", {kInfo, {"B.app/Contents/Info.plist", "x"}}},
        {"no bundle", {{"README", "x"}}},
        {"nothing", {}},
        {"an escape sequence in a name", {kInfo, {"A.app/a\x1b[b", "x"}}},
        {"one name in two spellings", {kInfo, {"A.app/Name", "x"}, {"A.app/name", "x"}}},
        {"one folder in two spellings", {kInfo, {"A.app/contents/x", "x"}}},
        {"one accent in two forms", {kInfo, {"A.app/\xC3\xA9", "x"}, {"A.app/e\xCC\x81", "x"}}},
        {"a name that is no text", {kInfo, {"A.app/\xFF", "x"}}},
        {"an endless name", {kInfo, {"A.app/" + std::string(1100, 'n'), "x"}}},
    };
    for (const auto& [what, entries] : cases) {
        EXPECT_TRUE(unpacked(entries).startsWith("error: "_L1)) << what;
        for (const QString& outside : {place.filePath(u"evil"_s), place.filePath(u"../evil"_s), u"/tmp/evil"_s})
            EXPECT_FALSE(QFile::exists(outside)) << what;
        EXPECT_FALSE(QFile::exists(target + "/A.app/Contents/Resources/evil"_L1)) << what;
    }
    std::string deep = "A.app";
    for (int i = 0; i < 200; ++i)
        deep += "/d";
    EXPECT_TRUE(unpacked({kInfo, {deep, "x"}}).startsWith("error: "_L1));
}

TEST_F(BundleArchive, HasBounds) {
    const Entries entries = {kInfo, {"A.app/b", std::string(5000, 'b')}, {"A.app/c", std::string(5000, 'c')}};
    EXPECT_EQ(unpacked(entries, false, {.bytes = 10'004, .entries = 5}), u"A.app"_s);
    EXPECT_EQ(unpacked(entries, false, {.bytes = 10'003, .entries = 5}), u"error: What is in the archive is too large."_s);
    EXPECT_EQ(unpacked(entries, false, {.bytes = 10'004, .entries = 4}), u"error: There are too many files in the archive."_s);
    // A small archive that expands to much data.
    EXPECT_EQ(unpacked({kInfo, {"A.app/z", std::string(30 << 20, '\0')}}, true, {.bytes = 1 << 20, .entries = 4}),
              u"error: What is in the archive is too large."_s);
    EXPECT_LT(QFileInfo(archivePath()).size(), 100'000);
    EXPECT_LE(QFileInfo(target + "/A.app/z"_L1).size(), 1 << 20);
    // The size alone would pass; such an archive was made to fill the disk.
    EXPECT_EQ(unpacked({kInfo, {"A.app/z", std::string(30 << 20, '\0')}}, true), u"error: What is in the archive is too large."_s);
    EXPECT_EQ(unpacked({kInfo, {"A.app/z", std::string(15 << 20, '\0')}}, true), u"A.app"_s);
    EXPECT_EQ(unpacked({kInfo}, false, {.onlyZip = true}).left(6), u"error:"_s);
}

TEST_F(BundleArchive, ReadsNoDamagedOne) {
    std::string noise; // cannot be compressed
    for (unsigned i = 0, value = 1; i < 100'000; ++i)
        noise += static_cast<char>((value = value * 1664525 + 1013904223) >> 24);
    for (const bool asZip : {true, false}) {
        ASSERT_EQ(unpacked({kInfo, {"A.app/noise", noise}}, asZip), u"A.app"_s);
        QFile file(archivePath());
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        const QByteArray whole = file.readAll();
        for (const qsizetype size : {qsizetype(0), qsizetype(100), whole.size() / 2}) {
            file.resize(size);
            EXPECT_TRUE(unpack().startsWith("error: "_L1)) << asZip << " " << size;
            QDir(target + "/A.app"_L1).removeRecursively();
        }
        file.seek(0);
        file.write(whole);
        file.seek(whole.size() / 2);
        file.write("damaged here");
        file.flush();
        // A tar archive has no checksum over its contents; for downloads the signature finds the damage.
        EXPECT_TRUE(unpack().startsWith("error: "_L1) || !asZip);
    }
    QFile::remove(archivePath());
    EXPECT_TRUE(unpack().startsWith("error: "_L1));
}

} // namespace
