// SPDX-License-Identifier: MIT
#include "platform/panels/NotificationSender.h"

#include "platform/appkit/BundleIcon.h"
#include "platform/appkit/NSApplication.h"
#include "platform/foundation/DesktopEntry.h"
#include "platform/foundation/NSBundle.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QImage>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr int kExtent = 64; // pixels; services show it no larger

/// The value of the hint "image-data", of the D-Bus type (iiibiiay): 8 bits for each of red, green, blue and alpha.
struct ImageData {
    QImage image;
};

QDBusArgument& operator<<(QDBusArgument& argument, const ImageData& data) {
    const QImage& image = data.image;
    const auto bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
    argument.beginStructure();
    argument << image.width() << image.height() << static_cast<int>(image.bytesPerLine()) << true << 8 << 4 << bytes;
    argument.endStructure();
    return argument;
}

/// Nothing asks for it; the registration of the type does.
const QDBusArgument& operator>>(const QDBusArgument& argument, ImageData&) {
    return argument;
}

} // namespace

NotificationSender notificationSender() {
    const NSApplication* application = NSApplication::sharedApplication();
    if (!application || !application->delegate())
        return {u"dialog-information"_s, {}};
    static const QMetaType kImageType = qDBusRegisterMetaType<ImageData>();
    const auto bundle = NSBundle::mainBundle();
    const ImageData icon{applicationIcon(bundle.get()).pixmap(kExtent).toImage().convertToFormat(QImage::Format_RGBA8888)};
    NotificationSender sender{{}, {{u"image-data"_s, QVariant(kImageType, &icon)}}};
    if (bundle && isInstalledOnDesktop(*bundle))
        sender.hints.insert(u"desktop-entry"_s, desktopNameForBundle(*bundle));
    return sender;
}

} // namespace quoddle
