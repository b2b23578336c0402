// SPDX-License-Identifier: MIT
#include "platform/panels/DialogIcon.h"

#include "platform/appkit/StockIcons.h"

#include <QFileInfo>
#include <QPainter>

namespace quoddle {

namespace {

constexpr int kIconSize = 64;
constexpr int kBadgeSize = 32;

} // namespace

QPixmap addAppIconToIconImage(const QIcon& icon, const QIcon& applicationIcon, double devicePixelRatio) {
    QPixmap image(QSize(kIconSize, kIconSize) * devicePixelRatio);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(QRect(0, 0, kIconSize, kIconSize), pixmapForIcon(icon, kIconSize, devicePixelRatio));
    painter.drawPixmap(QRect(kIconSize - kBadgeSize, kIconSize - kBadgeSize, kBadgeSize, kBadgeSize),
                       pixmapForIcon(applicationIcon, kBadgeSize, devicePixelRatio));
    return image;
}

std::optional<CommandError> readDialogIcon(const IconParameter& parameter, const std::function<QIcon()>& applicationIcon,
                                           double devicePixelRatio, QPixmap& pixmap) {
    using Kind = IconParameter::Kind;
    switch (parameter.kind) {
    case Kind::stop:
        pixmap = addAppIconToIconImage(iconForFileType("stop"_4cc), applicationIcon(), devicePixelRatio);
        break;
    case Kind::note:
        pixmap = pixmapForIcon(applicationIcon(), kIconSize, devicePixelRatio);
        break;
    case Kind::caution:
        pixmap = addAppIconToIconImage(iconForFileType("caut"_4cc), applicationIcon(), devicePixelRatio);
        break;
    case Kind::file:
        if (parameter.name.isEmpty() || !QFileInfo::exists(parameter.name))
            return resourceNotFound();
        pixmap = pixmapForIcon(iconFromImageFile(parameter.name), kIconSize, devicePixelRatio);
        break;
    case Kind::none:
    case Kind::resource:
        break;
    }
    return std::nullopt;
}

} // namespace quoddle
