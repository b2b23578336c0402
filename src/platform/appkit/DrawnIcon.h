// SPDX-License-Identifier: MIT
// Icons that are painted anew at every size.
// Main thread only.
#pragma once

#include <QIcon>

class QPainter;

namespace quoddle {

/// Paints an icon on a field of 64 by 64.
using PaintOn64 = void (*)(QPainter& painter);

/// An icon in colours of its own, half transparent where it is disabled. The function may leave the painter in any state.
QIcon makeDrawnIcon(PaintOn64 paint);

/// An icon of lines in one colour, which is looked up at each painting: the text colour of buttons, enabled or disabled, and the colour of
/// a selection where the button is down. The function is called by paintTemplate().
QIcon makeTemplateIcon(PaintOn64 paint);
/// Paints lines in one colour, from the origin of the painter on. The function gets a round pen in the colour, five of the 64 units of its
/// field wide.
void paintTemplate(QPainter& painter, double extent, PaintOn64 paint, const QColor& color);

} // namespace quoddle
