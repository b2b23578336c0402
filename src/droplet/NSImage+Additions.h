// SPDX-License-Identifier: MIT
// Images in another colour, and the droplet's own artwork, which has no colour of its own.
// Main thread only.
#pragma once

#include <QColor>
#include <QIcon>
#include <QPainter>
#include <QPixmap>

namespace quoddle {

/// A new image of the same size: the image with the colour painted over all of it by the given operation.
QPixmap tintedImageWithColor(const QPixmap& image, const QColor& color,
                             QPainter::CompositionMode operation = QPainter::CompositionMode_SourceAtop);

/// The image as large as fits into a square of so many points, at the resolution of a screen.
QPixmap pixmapWithin(const QImage& image, int points, double devicePixelRatio);

/// The image "ForthcomingTemplate", "DropTemplate" or "SpotlightTemplate": black on transparent ground, to be tinted. Null for another
/// name.
QPixmap templateImageNamed(const QString& name, int points, double devicePixelRatio);
/// The same images as icons for buttons, made by makeTemplateIcon(). Null for another name.
QIcon templateIconNamed(const QString& name);

} // namespace quoddle
