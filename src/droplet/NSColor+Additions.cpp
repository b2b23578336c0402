// SPDX-License-Identifier: MIT
#include "droplet/NSColor+Additions.h"

#include <algorithm>

namespace quoddle {

namespace {

const QColor kDarkGray = QColor::fromRgbF(1.0f / 3, 1.0f / 3, 1.0f / 3); // the system's dark grey

bool isLight(const QColor& color) {
    const QColor rgb = color.toRgb();
    const double sum = double(rgb.redF()) + double(rgb.greenF()) + double(rgb.blueF());
    return static_cast<float>(sum / 3) >= 0.5f;
}

QColor withSaturationAndBrightness(const QColor& color, float saturation, float brightness) {
    const QColor hsv = color.toHsv();
    return QColor::fromHsvF(std::max(0.0f, hsv.hsvHueF()), saturation, brightness, hsv.alphaF()); // QColor gives greys the hue -1
}

} // namespace

QColor contrastingLabelColor(const QColor& color) {
    return !color.isValid() || isLight(color) ? Qt::black : Qt::white;
}

QColor contrastingLabelNoteColor(const QColor& color) {
    if (!color.isValid())
        return Qt::black;
    return isLight(color) ? kDarkGray : darkenedColor(Qt::white);
}

QColor darkenedColor(const QColor& color) {
    constexpr float kNearGrey = 0.04f;
    const QColor hsv = color.toHsv();
    const float saturation = hsv.hsvSaturationF() > kNearGrey ? std::min(1.0f, hsv.hsvSaturationF() + 0.12f) : 0.0f;
    return withSaturationAndBrightness(color, saturation, std::max(0.0f, hsv.valueF() - 0.045f));
}

QColor lightenedColor(const QColor& color) {
    const QColor hsv = color.toHsv();
    return withSaturationAndBrightness(color, std::max(0.0f, hsv.hsvSaturationF() - 0.12f), std::min(1.0f, hsv.valueF() + 0.3f));
}

} // namespace quoddle
