// SPDX-License-Identifier: MIT
// Colours that go with a colour: labels that can be read on it, a darker and a lighter one.
#pragma once

#include <QColor>

namespace quoddle {

/// Black or white, whichever stands out more. Black for an invalid colour.
QColor contrastingLabelColor(const QColor& color);
/// The same for a label of less weight: a dark grey or an almost white. Black for an invalid colour.
QColor contrastingLabelNoteColor(const QColor& color);
/// Hue and alpha stay. Near-greys become pure greys when they are darkened.
QColor darkenedColor(const QColor& color);
QColor lightenedColor(const QColor& color);

} // namespace quoddle
