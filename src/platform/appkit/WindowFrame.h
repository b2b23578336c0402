// SPDX-License-Identifier: MIT
// The remembered frame of a window: its text form, and how it is fitted to the screens there are now. Computes only; knows no window.
#pragma once

#include <optional>

#include <QList>
#include <QRect>
#include <QString>

namespace quoddle::WindowFrame {

/// "NSWindow Frame NAME": the key of the user defaults.
QString defaultsKey(const QString& autosaveName);
/// The frame as "X Y WIDTH HEIGHT", in the toolkit's pixels from the top left.
QString toString(const QRect& frame);
/// The frame of such a text; nullopt for any other text, and for sizes no screen ever has.
std::optional<QRect> fromString(const QString& text);

/// The frame itself while enough of its upper edge is visible to be grabbed; otherwise moved, and if need be shrunk, into the screen that
/// shows most of it or, when none does, lies nearest. Unchanged without screens.
QRect constrained(const QRect& frame, const QList<QRect>& availableScreens);
/// The frame moved and shrunk so that it is visible as a whole. For windows that may hold the only button that leads on.
QRect whollyVisible(const QRect& frame, const QList<QRect>& availableScreens);

} // namespace quoddle::WindowFrame
