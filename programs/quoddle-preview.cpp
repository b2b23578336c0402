// SPDX-License-Identifier: MIT
// quoddle-preview: decodes a picture, or the pages of a document, and writes their pixels to standard output as PictureStream reads them.
//
//   quoddle-preview picture|pages WIDTH HEIGHT PAGES FILE      for programs only; nothing is larger than WIDTH × HEIGHT pixels
//
// One decision: the file may come from anybody, and may crash or take over the code that decodes it. So this process can do little: it has
// some seconds and some memory, cannot write files, start programs or make connections, and ends with the process that has started it.
#include "platform/appkit/BestPictures.h"
#include "platform/appkit/ImageFile.h"
#include "platform/base/Confinement.h"
#include "platform/base/ProgramMain.h"
#include "platform/foundation/FileBytes.h"
#include "platform/preview/PictureStream.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sys/prctl.h>
#include <sys/resource.h>

#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>
#include <QPainter>
#ifdef QUODDLE_HAS_QTPDF
#include <QPdfDocument>
#endif

using namespace quoddle;

namespace {

using End = PictureStream::End;

constexpr int kUsageError = 2;
// Decoders of newer toolkits make pictures smaller only when they have them whole, and this process may use more than one with windows.
constexpr int kMostMegabytes = 768;
constexpr qint64 kMostPixels = (qint64{kMostMegabytes} << 20) / 4; // the most pixels of a picture
constexpr qint64 kMostPageBytes = qint64{128} << 20;               // the most bytes of a document's pages
constexpr rlim_t kProcessorTime = 10;                              // seconds
// The address sanitizer reserves terabytes of addresses and looks for leaks by another process, so it runs without these limits.
#ifndef __SANITIZE_ADDRESS__
constexpr rlim_t kMemory = rlim_t{2} << 30;     // bytes that can be written to
constexpr rlim_t kAddresses = rlim_t{64} << 30; // bytes; the reader of documents reserves far more addresses than it uses
#endif

void limitProcess() {
    const auto limit = [](int resource, rlim_t most) {
        const rlimit both{most, most};
        ::setrlimit(static_cast<__rlimit_resource>(resource), &both);
    };
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0);
    // When standard error is a file, messages to it are lost; the process goes on.
    std::signal(SIGXFSZ, SIG_IGN);
    limit(RLIMIT_CPU, kProcessorTime);
#ifndef __SANITIZE_ADDRESS__
    limit(RLIMIT_DATA, kMemory);
    limit(RLIMIT_AS, kAddresses);
    confineProcess(); // on systems that can
#endif
}

bool write(const QByteArray& bytes) {
    return std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout) == static_cast<std::size_t>(bytes.size());
}

bool write(const QImage& image) {
    const QImage picture = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    bool isWritten = write(PictureStream::head(picture));
    for (int y = 0; y < picture.height() && isWritten; ++y)
        isWritten = std::fwrite(picture.constScanLine(y), 4, static_cast<std::size_t>(picture.width()), stdout) ==
                    static_cast<std::size_t>(picture.width());
    return isWritten && std::fflush(stdout) == 0;
}

/// Writes the picture of the file. An icon has several sizes, of which the best is written.
End writePicture(const QString& path, QSize largest) {
    if (QFileInfo(path).size() > ImageFile::kMostBytesOfPhotograph)
        return End::tooLarge;
    ImageFile file(path, ImageFile::kMostBytesOfPhotograph);
    QImageReader::setAllocationLimit(kMostMegabytes);
    const QSize size = file.size();
    const bool isOne = file.count() == 1;
    const QImage picture = isOne ? file.read(largest) : bestPictures(file, path, std::max(largest.width(), largest.height()), 1).value(0);
    if (picture.isNull())
        return isOne && qint64{size.width()} * size.height() > kMostPixels ? End::tooLarge : End::unreadable;
    write(picture.width() > largest.width() || picture.height() > largest.height()
              ? picture.scaled(largest, Qt::KeepAspectRatio, Qt::SmoothTransformation)
              : picture);
    return End::whole;
}

End writePages([[maybe_unused]] const QString& path, [[maybe_unused]] QSize largest, [[maybe_unused]] int mostPages) {
#ifdef QUODDLE_HAS_QTPDF
    auto bytes = bytesOfFile(path, kMostPageBytes);
    if (!bytes)
        return bytes.error() == memFullErr ? End::tooLarge : End::unreadable;
    QBuffer buffer(&*bytes);
    buffer.open(QIODevice::ReadOnly);
    QPdfDocument document;
    document.load(&buffer);
    if (document.status() != QPdfDocument::Status::Ready || document.pageCount() < 1)
        return End::unreadable;
    const int count = std::min(document.pageCount(), mostPages);
    for (int i = 0; i < count; ++i) {
        const QSize size = document.pagePointSize(i).scaled(largest, Qt::KeepAspectRatio).toSize().expandedTo({1, 1}).boundedTo(largest);
        QImage page(size, QImage::Format_ARGB32_Premultiplied);
        page.fill(Qt::white);
        const QImage drawn = document.render(i, size);
        if (drawn.isNull() || page.isNull())
            return i == 0 ? End::unreadable : End::cut;
        QPainter(&page).drawImage(0, 0, drawn);
        if (!write(page))
            return End::cut;
    }
    return count < document.pageCount() ? End::cut : End::whole;
#else
    return End::unreadable;
#endif
}

int perform(int argc, char** argv) {
    const QByteArrayView source = argc == 6 ? argv[1] : "";
    const bool isPages = source == "pages";
    if (!isPages && source != "picture") {
        const bool isAsked = argc == 2 && QByteArrayView(argv[1]) == "--help";
        std::fputs("quoddle-preview: decodes pictures for other programs, which start it\n", isAsked ? stdout : stderr);
        return isAsked ? EXIT_SUCCESS : kUsageError;
    }
    limitProcess();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const QString path = QFile::decodeName(argv[5]);
    const QSize largest(std::atoi(argv[2]), std::atoi(argv[3]));
    write(PictureStream::head(isPages ? writePages(path, largest, std::atoi(argv[4])) : writePicture(path, largest)));
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv) {
    return programMain("quoddle-preview", argc, argv, &perform);
}
