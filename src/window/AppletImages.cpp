// SPDX-License-Identifier: MIT
#include "window/AppletImages.h"

#include "platform/appkit/BestPictures.h"
#include "platform/appkit/ImageFile.h"
#include "platform/appkit/StockIcons.h"
#include "runtime/AppDelegate.h"

#include <QFileInfo>
#include <QGuiApplication>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kExtent = 512;     // pixels; more than any pane shows
constexpr int kDrawnExtent = 96; // points, as in the drop zone; a larger drawing delays the first window

/// The best picture of the file. When there is none, the log says so and calls the file `name`.
QImage bestPicture(ImageFile& file, const QString& name) {
    return bestPictures(file, name, kExtent, 1).value(0);
}

/// The path of an image in the bundle, named with or without its extension; empty when there is none.
QString pathInBundle(const QString& name) {
    const auto bundle = AppDelegate::instance()->mainBundle();
    for (const QString& type : {u""_s, u"icns"_s, u"png"_s, u"tiff"_s, u"tif"_s, u"jpg"_s, u"jpeg"_s, u"gif"_s, u"svg"_s})
        if (const QString path = bundle->pathForResource(name, type); !path.isEmpty() && QFileInfo(path).isFile())
            return path;
    return {};
}

} // namespace

QImage AppletImages::imageNamed(const QString& name) {
    if (name.isEmpty() || name.contains(u'/'))
        return {};
    if (const QString path = pathInBundle(name); !path.isEmpty())
        return imageFile(path);
    if (name == kMultipleDocumentsImage)
        return multipleDocumentsIcon().pixmap(QSize(kDrawnExtent, kDrawnExtent), qGuiApp->devicePixelRatio()).toImage();
    return QIcon::fromTheme(name).pixmap(QSize(kExtent, kExtent), 1.0).toImage();
}

QImage AppletImages::imageFile(const QString& path) {
    ImageFile file(path, ImageFile::kMostBytesOfPhotograph);
    return bestPicture(file, path);
}

QImage AppletImages::imageWithData(const std::string& data) {
    ImageFile file(QByteArray::fromStdString(data));
    return bestPicture(file, u"A picture in the script"_s);
}

} // namespace quoddle
