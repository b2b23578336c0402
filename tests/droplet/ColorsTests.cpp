// SPDX-License-Identifier: MIT
#include "droplet/NSColor+Additions.h"
#include "droplet/NSImage+Additions.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>

namespace quoddle {

TEST(Colors, LabelsCanBeRead) {
    EXPECT_EQ(contrastingLabelColor(QColor::fromRgbF(0.5f, 0.5f, 0.5f)), QColor(Qt::black));
    EXPECT_EQ(contrastingLabelColor(QColor::fromRgbF(0.49f, 0.49f, 0.49f)), QColor(Qt::white));
    EXPECT_EQ(contrastingLabelColor(QColor()), QColor(Qt::black));
    EXPECT_EQ(contrastingLabelNoteColor(QColor()), QColor(Qt::black));
    EXPECT_NEAR(contrastingLabelNoteColor(Qt::white).redF(), 1.0 / 3, 0.01);
    EXPECT_NEAR(contrastingLabelNoteColor(Qt::black).valueF(), 0.955, 0.001);
}

TEST(Colors, DarkerAndLighter) {
    const QColor nearGrey = darkenedColor(QColor::fromHsvF(0.5f, 0.03f, 0.02f, 0.5f));
    EXPECT_EQ(nearGrey.hsvSaturationF(), 0);
    EXPECT_EQ(nearGrey.valueF(), 0);
    EXPECT_NEAR(nearGrey.alphaF(), 0.5, 0.001);
    const QColor blue = QColor::fromHsvF(0.6f, 0.5f, 0.5f);
    EXPECT_NEAR(darkenedColor(blue).hsvSaturationF(), 0.62, 0.001);
    EXPECT_NEAR(darkenedColor(blue).valueF(), 0.455, 0.001);
    EXPECT_NEAR(darkenedColor(blue).hsvHueF(), 0.6, 0.001);
    EXPECT_NEAR(lightenedColor(blue).hsvSaturationF(), 0.38, 0.001);
    EXPECT_NEAR(lightenedColor(blue).valueF(), 0.8, 0.001);
}

TEST(Images, IconsFollowThePalette) {
    const QPalette before = QApplication::palette();
    const QIcon icon = templateIconNamed(QStringLiteral("DropTemplate"));
    for (const auto& [text, selection] : {std::pair(Qt::black, Qt::blue), std::pair(Qt::white, Qt::yellow)}) {
        QPalette palette;
        palette.setColor(QPalette::ButtonText, text);
        palette.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::gray);
        palette.setColor(QPalette::Highlight, selection);
        QApplication::setPalette(palette);
        for (const auto& [mode, state, color] :
             {std::tuple(QIcon::Normal, QIcon::Off, text), std::tuple(QIcon::Normal, QIcon::On, selection),
              std::tuple(QIcon::Disabled, QIcon::On, Qt::gray)}) {
            const QImage drawn = icon.pixmap(QSize(32, 32), 2, mode, state).toImage();
            ASSERT_EQ(drawn.size(), QSize(64, 64));
            EXPECT_EQ(drawn.pixelColor(32, 20), QColor(color)); // a pixel of the arrow's shaft
            EXPECT_EQ(drawn.pixelColor(0, 0).alpha(), 0);
        }
    }
    QApplication::setPalette(before);
    EXPECT_TRUE(templateIconNamed(QStringLiteral("none")).isNull());
}

TEST(Images, OnlyOpaquePixelsTakeATint) {
    QPixmap image(4, 2);
    image.fill(Qt::transparent);
    QPainter(&image).fillRect(0, 0, 2, 2, Qt::black);
    const QImage tinted = tintedImageWithColor(image, Qt::red).toImage();
    EXPECT_EQ(tinted.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(tinted.pixelColor(3, 0).alpha(), 0);
    EXPECT_TRUE(templateImageNamed(QStringLiteral("none"), 8, 1).isNull());
    EXPECT_EQ(templateImageNamed(QStringLiteral("DropTemplate"), 8, 2).size(), QSize(16, 16));
}

} // namespace quoddle
