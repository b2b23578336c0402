// SPDX-License-Identifier: MIT
#include "platform/delivery/BundleArchive.h"

#include "platform/base/FileDescriptor.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <optional>
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
constexpr std::size_t kLongestName = 1024;
constexpr std::size_t kDeepest = 64;

struct ArchiveReleaser {
    void operator()(archive* opened) const { archive_read_free(opened); }
};

using Path = std::vector<std::string>; // the components

/// nullopt when a part leads out of the folder or names nothing.
std::optional<Path> partsOf(std::string_view name) {
    const bool hasControls = std::any_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; });
    if (name.empty() || name.size() > kLongestName || name.front() == '/' || hasControls)
        return std::nullopt;
    Path parts;
    while (!name.empty()) {
        const std::string_view part = name.substr(0, name.find('/'));
        name.remove_prefix(std::min(name.size(), part.size() + 1));
        if (part == "..")
            return std::nullopt;
        if (!part.empty() && part != ".")
            parts.emplace_back(part);
    }
    return parts.size() <= kDeepest ? std::optional(parts) : std::nullopt;
}

/// Whether a link `depth` folders below the bundle stays within the bundle. ".." is only allowed at the beginning, among real folders;
/// behind a name it could start from wherever another link leads.
bool staysInside(std::string_view target, std::size_t depth) {
    if (target.empty() || target.size() > kLongestName || target.front() == '/')
        return false;
    std::size_t up = 0;
    bool isDescending = false;
    while (!target.empty()) {
        const std::string_view part = target.substr(0, target.find('/'));
        target.remove_prefix(std::min(target.size(), part.size() + 1));
        if (part == "..") {
            if (isDescending || ++up > depth)
                return false;
        } else if (!part.empty() && part != ".") {
            isDescending = true;
        }
    }
    return isDescending;
}

class Unpacking {
public:
    Unpacking(fs::path folder, const UnpackingBounds& bounds) : mFolder(std::move(folder)), mBounds(bounds) {}

    Result<QString, QString> run(const QString& path) {
        const FileDescriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
        mArchive.reset(archive_read_new());
        archive_read_support_format_zip(mArchive.get());
        archive_read_support_format_tar(mArchive.get());
        archive_read_support_filter_gzip(mArchive.get());
        archive_read_support_filter_bzip2(mArchive.get());
        archive_read_support_filter_xz(mArchive.get());
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

    void take(archive_entry& entry) {
        const char* name = archive_entry_pathname_utf8(&entry);
        const auto parts = name ? partsOf(name) : std::nullopt;
        if (++mEntries > mBounds.entries) {
            mError = QCoreApplication::translate("BundleArchive", "There are too many files in the archive.");
            return;
        }
        if (!parts)
            return refuse(name);
        if (parts->empty() || !parts->front().ends_with(".app") || parts->back().starts_with("._"))
            return; // files beside the bundle, and "._" files with other systems' notes about a file
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
        if (!target || !staysInside(target, depth))
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
            if (mBytes > mBounds.bytes) {
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
    const UnpackingBounds mBounds;
    std::unique_ptr<archive, ArchiveReleaser> mArchive;
    std::string mBundle; // the name of the bundle's folder
    std::vector<Link> mLinks;
    qint64 mBytes = 0;
    int mEntries = 0;
    QString mError;
};

} // namespace

Result<QString, QString> unpackBundle(const QString& archive, const QString& folder, const UnpackingBounds& bounds) {
    return Unpacking(QFile::encodeName(folder).toStdString(), bounds).run(archive);
}

} // namespace quoddle
