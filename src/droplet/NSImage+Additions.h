// SPDX-License-Identifier: MIT
// Images in another colour, and the droplet's own artwork, which has no colour of its own.
// Main thread only.
#pragma once

#include <QColor>
#include <QIcon>
#include <QPainter>
#include <QPixmap>

namespace quoddle {

/// A new image of the same size: the image, and over all of it the colour, by the given operation.
QPixmap tintedImageWithColor(const QPixmap& image, const QColor& color,
                             QPainter::CompositionMode operation = QPainter::CompositionMode_SourceAtop);

/// "ForthcomingTemplate", "DropTemplate" or "SpotlightTemplate": black on nothing, to be tinted. Null for another name.
QPixmap templateImageNamed(const QString& name, int points, double devicePixelRatio);
/// One of them for a button, as makeTemplateIcon() paints it. Null for another name.
QIcon templateIconNamed(const QString& name);

} // namespace quoddle
