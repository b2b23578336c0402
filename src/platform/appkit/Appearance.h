// SPDX-License-Identifier: MIT
// Light, dark and the accent: what the palette says, the few colours that a palette lacks, and the palette we install when the desktop
// wants another one but the toolkit has not heard of it. One decision: the palette is the truth. Code that draws asks the palette, and a
// change of appearance is an ordinary palette change. The desktop's wish is read from its portal only after the first window has been
// painted; until then the wish of the last launch holds. Main thread only.
#pragma once

#include <QColor>

class QPalette;

namespace quoddle::Appearance {

bool isDark(const QPalette& palette);
/// The colour for text of lesser weight.
QColor secondaryLabelColor(const QPalette& palette);
/// The colour for the empty part of a bar.
QColor grooveColor(const QPalette& palette);

/// Applies the wish that the last launch remembered; to be called before the first window. The variable QUODDLE_APPEARANCE ("light",
/// "dark") overrides everything.
void applyRememberedScheme();
/// Asks the desktop for its wish and follows it from then on; to be called after the first paint. Does nothing without a session bus.
void followDesktop();
/// Installs our dark palette, or takes it away again. Nothing changes where the desktop's own palette is dark already.
void setWantsDark(bool dark);
/// Marks selections and progress in this colour; an invalid colour gives them that of the palette again.
void setAccent(const QColor& accent);

} // namespace quoddle::Appearance
