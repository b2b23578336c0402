// SPDX-License-Identifier: MIT
#include "platform/delivery/BundlePacking.h"

#include "platform/base/FileDescriptor.h"
#include "platform/delivery/ArchiveNames.h"
#include "platform/delivery/BundleArchive.h"

#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>

#include <archive.h>
#include <archive_entry.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBlock = 1 << 16;

struct WriterReleaser {
    void operator()(archive* opened) const { archive_write_free(opened); }
};
struct EntryReleaser {
    void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};

la_ssize_t writeBlock(archive*, void* file, const void* bytes, std::size_t count) {
    return static_cast<QSaveFile*>(file)->write(static_cast<const char*>(bytes), static_cast<qint64>(count));
}

QString shown(const std::string& name) {
    return QString::fromStdString(name);
}

class Packing {
public:
    explicit Packing(const QString& bundle)
        : mFolder(QFile::encodeName(QDir(bundle).canonicalPath()).toStdString()), mTop(mFolder.filename().string()) {
        if (!mTop.ends_with(".app"))
            mTop += ".app";
    }

    QString run(const QString& path) {
        collect();
        // Files of little but repetition become so small that the archive would be taken for one that was made to do harm.
        for (const char* compression : {"deflate", "store"})
            if (mError.isEmpty() && write(path, compression))
                break;
        return mError;
    }

private:
    void fail(const std::string& name, const QString& why) { mError = shown(name) + u": "_s + why; }
    void failToWrite() {
        const char* why = archive_error_string(mArchive.get());
        mError = u"The archive cannot be written: "_s + (why ? QString::fromUtf8(why) : u"the disk may be full"_s);
    }

    /// False when the archive would not be unpacked; nothing has been written then.
    bool write(const QString& path, const char* compression) {
        QSaveFile file(path);
        mBytes = 0;
        mArchive.reset(archive_write_new());
        if (!file.open(QIODevice::WriteOnly))
            mError = path + u": cannot be written: "_s + file.errorString();
        else if (archive_write_set_format_zip(mArchive.get()) != ARCHIVE_OK ||
                 archive_write_set_format_option(mArchive.get(), "zip", "hdrcharset", "UTF-8") != ARCHIVE_OK ||
                 archive_write_set_format_option(mArchive.get(), "zip", "compression", compression) != ARCHIVE_OK ||
                 archive_write_set_bytes_in_last_block(mArchive.get(), 1) != ARCHIVE_OK ||
                 archive_write_open(mArchive.get(), &file, nullptr, writeBlock, nullptr) != ARCHIVE_OK)
            failToWrite();
        for (std::size_t i = 0; mError.isEmpty() && i < mNames.size(); ++i)
            add(mNames[i]);
        if (mError.isEmpty() && archive_write_close(mArchive.get()) != ARCHIVE_OK)
            failToWrite();
        mArchive.reset();
        const bool fits = !mError.isEmpty() || mBytes <= UnpackingRules().mostBytesFor(file.pos());
        if (mError.isEmpty() && fits && !file.commit())
            mError = path + u": cannot be written: "_s + file.errorString();
        return fits;
    }

    /// Finds all names, sorted. The bundle is the first; the others are relative to it.
    void collect() {
        std::error_code error;
        ArchiveNames all;
        mNames = {""};
        checkName("", all);
        for (fs::recursive_directory_iterator entry(mFolder, error), end; !error && entry != end && mError.isEmpty();
             entry.increment(error))
            if (!isNoteOfOtherSystem(entry->path().filename().string())) {
                mNames.push_back(entry->path().lexically_relative(mFolder).string());
                checkName(mNames.back(), all);
            }
        if (error)
            fail(mTop, u"cannot be read: "_s + QString::fromStdString(error.message()));
        std::sort(mNames.begin(), mNames.end());
    }

    void checkName(const std::string& name, ArchiveNames& all) {
        const auto parts = partsOfArchiveName(mTop + "/" + name);
        if (!parts)
            fail(name.empty() ? mTop : name, u"the name is too long or has characters that cannot be packed; rename it"_s);
        else if (!all.add(*parts))
            fail(name, u"another name differs from it in capitals or accents only; rename one, for not every system tells them apart"_s);
        else if (all.count() > UnpackingRules().entries)
            fail(mTop, u"has too many files to be packed"_s);
    }

    void add(const std::string& name) {
        const fs::path place = mFolder / name;
        struct stat info {};
        if (::lstat(place.c_str(), &info) != 0)
            return fail(name, QString::fromLocal8Bit(std::strerror(errno)));
        const std::unique_ptr<archive_entry, EntryReleaser> entry(archive_entry_new());
        archive_entry_set_pathname_utf8(entry.get(), name.empty() ? mTop.c_str() : (mTop + "/" + name).c_str());
        archive_entry_set_filetype(entry.get(), info.st_mode & S_IFMT);
        archive_entry_set_size(entry.get(), 0);
        if (S_ISDIR(info.st_mode)) {
            archive_entry_set_perm(entry.get(), 0755);
            writeHeader(*entry);
        } else if (S_ISLNK(info.st_mode)) {
            addLink(*entry, name, place);
        } else if (S_ISREG(info.st_mode)) {
            addFile(*entry, name, place);
        } else {
            fail(name, u"this is neither a file nor a folder nor a link; take it out of the applet"_s);
        }
    }

    void writeHeader(archive_entry& entry) {
        if (archive_write_header(mArchive.get(), &entry) != ARCHIVE_OK)
            failToWrite();
    }

    void addLink(archive_entry& entry, const std::string& name, const fs::path& place) {
        std::error_code error;
        const std::string target = fs::read_symlink(place, error).string();
        const auto depth = static_cast<std::size_t>(std::count(name.begin(), name.end(), '/'));
        if (error || !staysInBundle(target, depth))
            return fail(name, u"the link leads out of the applet, to "_s + shown(target) + u"; put a copy in its place"_s);
        archive_entry_set_symlink_utf8(&entry, target.c_str());
        archive_entry_set_perm(&entry, 0777);
        writeHeader(entry);
    }

    void addFile(archive_entry& entry, const std::string& name, const fs::path& place) {
        const FileDescriptor file(::open(place.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        struct stat info {};
        if (!file.isOpen() || ::fstat(file.number(), &info) != 0)
            return fail(name, u"cannot be read: "_s + QString::fromLocal8Bit(std::strerror(errno)));
        mBytes += info.st_size;
        if (mBytes > UnpackingRules().bytes)
            return fail(mTop, u"is too large to be packed"_s);
        archive_entry_set_size(&entry, info.st_size);
        archive_entry_set_perm(&entry, (info.st_mode & 0111) != 0 ? 0755 : 0644);
        writeHeader(entry);
        std::string block(kBlock, '\0');
        off_t left = info.st_size;
        ssize_t count = 0;
        while (mError.isEmpty() && (count = ::read(file.number(), block.data(), block.size())) > 0 && (left -= count) >= 0)
            if (archive_write_data(mArchive.get(), block.data(), static_cast<std::size_t>(count)) != count)
                failToWrite();
        if (mError.isEmpty() && (count < 0 || left != 0))
            fail(name, u"has changed while it was packed; try again"_s);
    }

    const fs::path mFolder;
    std::string mTop; // the bundle's name in the archive
    std::vector<std::string> mNames;
    std::unique_ptr<archive, WriterReleaser> mArchive;
    qint64 mBytes = 0;
    QString mError;
};

} // namespace

QString packBundle(const QString& bundle, const QString& archive) {
    return Packing(bundle).run(archive);
}

} // namespace quoddle
