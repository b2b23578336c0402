// SPDX-License-Identifier: MIT
// The desktop's style, except for two things:
//
// Two icons that every window has and few show, the ones that stand for the rest of a menu bar or a tool bar that is too narrow. The
// toolkit reads them from picture files when it makes a menu bar, and loads all of its picture formats to do so, which takes longer than
// the rest of the window. Here they are drawn when they are needed.
//
// Frames of lists and texts at scales such as 1.5. The toolkit's own style draws their lines where the contents cover them, on one side or
// the other.
// Main thread only.
#pragma once

#include <QProxyStyle>

namespace quoddle {

class DesktopStyle final : public QProxyStyle {
    Q_OBJECT
public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option = nullptr, const QWidget* widget = nullptr) const override;
};

} // namespace quoddle
