// SPDX-License-Identifier: MIT
#include "platform/appkit/WindowFrame.h"

#include <QStringList>

namespace quoddle::WindowFrame {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaxExtent = 32767; // the largest number that the window system can say

// The part of the upper edge that must be visible for the user to drag a window back.
constexpr QSize kHandle(64, 24);

qint64 areaOf(const QRect& rect) {
    return rect.isValid() ? qint64(rect.width()) * rect.height() : 0;
}

qint64 squaredDistance(const QRect& a, const QRect& b) {
    const QPoint way = a.center() - b.center();
    return qint64(way.x()) * way.x() + qint64(way.y()) * way.y();
}

bool canBeGrabbed(const QRect& frame, const QRect& screen) {
    const QRect edge(frame.topLeft(), QSize(frame.width(), kHandle.height()));
    const QRect visible = edge & screen;
    return visible.width() >= std::min(kHandle.width(), frame.width()) && visible.height() >= kHandle.height();
}

/// Moves, and shrinks if need be, a frame into the screen that shows most of it or, when none does, lies nearest.
QRect moved(const QRect& frame, const QList<QRect>& availableScreens) {
    if (availableScreens.isEmpty())
        return frame;
    const QRect screen = *std::min_element(availableScreens.begin(), availableScreens.end(), [&](const QRect& a, const QRect& b) {
        const qint64 areaA = areaOf(a & frame);
        const qint64 areaB = areaOf(b & frame);
        return areaA != areaB ? areaA > areaB : squaredDistance(a, frame) < squaredDistance(b, frame);
    });
    QRect fitted(frame.topLeft(), frame.size().boundedTo(screen.size()));
    fitted.moveLeft(std::clamp(fitted.left(), screen.left(), screen.right() + 1 - fitted.width()));
    fitted.moveTop(std::clamp(fitted.top(), screen.top(), screen.bottom() + 1 - fitted.height()));
    return fitted;
}

} // namespace

QString defaultsKey(const QString& autosaveName) {
    return u"NSWindow Frame "_s + autosaveName;
}

QString toString(const QRect& frame) {
    return u"%1 %2 %3 %4"_s.arg(frame.x()).arg(frame.y()).arg(frame.width()).arg(frame.height());
}

std::optional<QRect> fromString(const QString& text) {
    const QStringList parts = text.split(u' ');
    if (parts.size() != 4)
        return std::nullopt;
    int numbers[4];
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        numbers[i] = parts[i].toInt(&ok);
        if (!ok || std::abs(numbers[i]) > kMaxExtent)
            return std::nullopt;
    }
    if (numbers[2] < 1 || numbers[3] < 1)
        return std::nullopt;
    return QRect(numbers[0], numbers[1], numbers[2], numbers[3]);
}

QRect constrained(const QRect& frame, const QList<QRect>& availableScreens) {
    const bool within =
        std::any_of(availableScreens.begin(), availableScreens.end(), [&](const QRect& screen) { return canBeGrabbed(frame, screen); });
    return within ? frame : moved(frame, availableScreens);
}

QRect whollyVisible(const QRect& frame, const QList<QRect>& availableScreens) {
    const bool within =
        std::any_of(availableScreens.begin(), availableScreens.end(), [&](const QRect& screen) { return screen.contains(frame); });
    return within ? frame : moved(frame, availableScreens);
}

} // namespace quoddle::WindowFrame
