// SPDX-License-Identifier: MIT
// Colours that are derived from a colour: labels that can be read on it, a darker and a lighter one.
#pragma once

#include <QColor>

namespace quoddle {

/// Black or white, whichever stands out more. Black for an invalid colour.
QColor contrastingLabelColor(const QColor& color);
/// A dark grey or an almost white for a label of less weight, whichever stands out more. Black for an invalid colour.
QColor contrastingLabelNoteColor(const QColor& color);
/// The colour with the same hue and alpha, darker or lighter. Near-greys become pure greys when they are darkened.
QColor darkenedColor(const QColor& color);
QColor lightenedColor(const QColor& color);

} // namespace quoddle
