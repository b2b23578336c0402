// SPDX-License-Identifier: MIT
// Icons that are painted anew at every size.
// Main thread only.
#pragma once

#include <QIcon>

class QPainter;

namespace quoddle {

/// Paints on a field of 64 by 64.
using PaintOn64 = void (*)(QPainter& painter);

/// In colours of its own, half transparent where it is disabled. The function may leave the painter as it likes.
QIcon makeDrawnIcon(PaintOn64 paint);

/// Lines in one colour that the application has just then: that of the text on buttons, enabled or disabled, and that of a selection where
/// the button is down. The function comes as to paintTemplate().
QIcon makeTemplateIcon(PaintOn64 paint);
/// Lines in any colour, from the origin of the painter on. The function gets a round pen in the colour, five of its field wide.
void paintTemplate(QPainter& painter, double extent, PaintOn64 paint, const QColor& color);

} // namespace quoddle
