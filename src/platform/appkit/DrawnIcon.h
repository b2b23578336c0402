// SPDX-License-Identifier: MIT
// An icon that is painted anew at every size.
// Main thread only.
#pragma once

#include <QIcon>

class QPainter;

namespace quoddle {

/// The function paints on a field of 64 by 64; it may leave the painter as it likes.
QIcon makeDrawnIcon(void (*paintOn64)(QPainter& painter));

} // namespace quoddle
