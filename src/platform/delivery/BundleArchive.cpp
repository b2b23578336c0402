// SPDX-License-Identifier: MIT
#include "platform/delivery/BundleArchive.h"

#include "platform/base/FileDescriptor.h"
#include "platform/delivery/ArchiveNames.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include <archive.h>
#include <archive_entry.h>

#include <QCoreApplication>
#include <QFile>

namespace quoddle {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBlock = 1 << 16;
struct ArchiveReleaser {
    void operator()(archive* opened) const { archive_read_free(opened); }
};

class Unpacking {
public:
    Unpacking(fs::path folder, const UnpackingRules& rules) : mFolder(std::move(folder)), mRules(rules) {}

    Result<QString, QString> run(const QString& path) {
        const FileDescriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        mArchive.reset(archive_read_new());
        // By its directory, which is at the end: an archive without that is not whole.
        archive_read_support_format_zip_seekable(mArchive.get());
        if (!mRules.onlyZip) {
            archive_read_support_format_zip_streamable(mArchive.get());
            archive_read_support_format_tar(mArchive.get());
            archive_read_support_filter_gzip(mArchive.get());
            archive_read_support_filter_bzip2(mArchive.get());
            archive_read_support_filter_xz(mArchive.get());
        }
        struct stat info {};
        if (file.isOpen() && ::fstat(file.number(), &info) == 0)
            mMostBytes = mRules.mostBytesFor(info.st_size);
        if (!file.isOpen() || archive_read_open_fd(mArchive.get(), file.number(), kBlock) != ARCHIVE_OK)
            return Failure{unreadable()};
        archive_entry* entry = nullptr;
        int status = ARCHIVE_OK;
        while (mError.isEmpty() && (status = archive_read_next_header(mArchive.get(), &entry)) >= ARCHIVE_WARN && status != ARCHIVE_EOF)
            take(*entry);
        if (mError.isEmpty() && status != ARCHIVE_EOF)
            return Failure{unreadable()};
        for (std::size_t i = 0; mError.isEmpty() && i < mLinks.size(); ++i)
            if (::symlink(mLinks[i].target.c_str(), mLinks[i].place.c_str()) != 0)
                fail(std::error_code(errno, std::generic_category()));
        if (mError.isEmpty() && mBundle.empty())
            mError = QCoreApplication::translate("BundleArchive", "There is no applet in the archive.");
        if (!mError.isEmpty())
            return Failure{mError};
        return QFile::decodeName((mFolder / mBundle).c_str());
    }

private:
    struct Link {
        fs::path place;
        std::string target;
    };

    QString unreadable() const {
        const char* why = archive_error_string(mArchive.get());
        return QCoreApplication::translate("BundleArchive", "The archive cannot be unpacked: %1")
            .arg(why ? QString::fromUtf8(why) : QCoreApplication::translate("BundleArchive", "it is damaged"));
    }
    void fail(const std::error_code& error) {
        if (error)
            mError = QCoreApplication::translate("BundleArchive", "The archive cannot be unpacked: %1")
                         .arg(QString::fromStdString(error.message()));
    }
    void refuse(const char* name) {
        mError = QCoreApplication::translate("BundleArchive", "The archive is not to be trusted: %1")
                     .arg(QString::fromUtf8(name ? name : "").left(200));
    }

    void refuseNumber() { mError = QCoreApplication::translate("BundleArchive", "There are too many files in the archive."); }

    void take(archive_entry& entry) {
        const char* name = archive_entry_pathname_utf8(&entry);
        const auto parts = name ? partsOfArchiveName(name) : std::nullopt;
        if (++mEntries > mRules.entries)
            return refuseNumber();
        if (!parts)
            return refuse(name);
        if (parts->empty() || !parts->front().ends_with(".app") || isNoteOfOtherSystem(parts->back()))
            return; // no part of the bundle
        if (mBundle.empty())
            mBundle = parts->front();
        if (mBundle != parts->front()) {
            mError = QCoreApplication::translate("BundleArchive", "There is more than one applet in the archive.");
            return;
        }
        const auto type = archive_entry_filetype(&entry);
        const bool isLink = type == AE_IFLNK;
        if (archive_entry_hardlink(&entry) || (type != AE_IFDIR && parts->size() < 2))
            return refuse(name);
        if (!mNames.add(*parts))
            return refuse(name);
        if (mNames.count() > mRules.entries)
            return refuseNumber();
        fs::path place = mFolder;
        for (const std::string& part : *parts)
            place /= part;
        std::error_code error;
        fs::create_directories(type == AE_IFDIR ? place : place.parent_path(), error);
        if (error)
            fail(error);
        else if (type == AE_IFREG)
            takeFile(entry, place);
        else if (isLink)
            takeLink(entry, place, parts->size() - 2, name);
        else if (type != AE_IFDIR)
            refuse(name);
    }

    void takeLink(archive_entry& entry, const fs::path& place, std::size_t depth, const char* name) {
        const char* target = archive_entry_symlink_utf8(&entry);
        if (!target || !staysInBundle(target, depth))
            return refuse(name);
        mLinks.push_back({place, target});
    }

    void takeFile(archive_entry& entry, const fs::path& place) {
        const mode_t mode = (archive_entry_perm(&entry) & 0111) != 0 ? 0755 : 0644;
        const FileDescriptor descriptor(::open(place.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
        QFile file;
        if (!descriptor.isOpen() || !file.open(descriptor.number(), QIODevice::WriteOnly | QIODevice::Unbuffered))
            return fail(std::error_code(errno, std::generic_category()));
        std::string block(kBlock, '\0');
        la_ssize_t count = 0;
        while ((count = archive_read_data(mArchive.get(), block.data(), block.size())) > 0) {
            mBytes += count;
            if (mBytes > mMostBytes) {
                mError = QCoreApplication::translate("BundleArchive", "What is in the archive is too large.");
                return;
            }
            if (file.write(block.data(), count) != count) {
                mError = QCoreApplication::translate("BundleArchive", "The archive cannot be unpacked: %1").arg(file.errorString());
                return;
            }
        }
        if (count < 0)
            mError = unreadable();
    }

    const fs::path mFolder;
    const UnpackingRules mRules;
    std::unique_ptr<archive, ArchiveReleaser> mArchive;
    std::string mBundle; // the name of the bundle's folder
    std::vector<Link> mLinks;
    ArchiveNames mNames;
    qint64 mBytes = 0, mMostBytes = 0;
    int mEntries = 0;
    QString mError;
};

} // namespace

Result<QString, QString> unpackBundle(const QString& archive, const QString& folder, const UnpackingRules& rules) {
    return Unpacking(QFile::encodeName(folder).toStdString(), rules).run(archive);
}

} // namespace quoddle
