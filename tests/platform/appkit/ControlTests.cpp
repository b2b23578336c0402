// SPDX-License-Identifier: MIT
#include "platform/appkit/Appearance.h"
#include "platform/appkit/CursorRest.h"
#include "platform/appkit/ElidedLabel.h"
#include "platform/appkit/NSSegmentedControl.h"
#include "platform/appkit/ProgressBar.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPalette>
#include <QScreen>
#include <QTest>

namespace quoddle {

using namespace Qt::StringLiterals;

TEST(ElidedLabel, KeepsItsSizeAndTellsTheWholeElsewhere) {
    ElidedLabel label;
    label.resize(120, 20);
    label.show();
    const QSize size = label.sizeHint();
    const QString text = u"a <b>very</b> long line\nthat no label of this width could show in full"_s;
    label.setText(text);
    EXPECT_EQ(label.sizeHint(), size);
    EXPECT_EQ(label.minimumSizeHint().width(), 0);
    EXPECT_TRUE(label.isElided());
    EXPECT_TRUE(label.toolTip().contains(u"&lt;b&gt;very"_s)) << label.toolTip().toStdString();
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&label)->text(QAccessible::Name), text);
    label.resize(2000, 20);
    EXPECT_FALSE(label.isElided());
    EXPECT_TRUE(label.toolTip().isEmpty());
    label.setText({});
    EXPECT_EQ(label.sizeHint(), size);
}

TEST(ElidedLabel, StandsWhereItsAlignmentSays) {
    struct Row {
        Qt::Alignment alignment;
        Qt::LayoutDirection direction;
        double middle; // the middle of the visible text, as a part of the width
    };
    for (const Row& row :
         {Row{Qt::AlignLeft, Qt::LeftToRight, 0.05}, Row{Qt::AlignCenter, Qt::LeftToRight, 0.5}, Row{Qt::AlignRight, Qt::LeftToRight, 0.95},
          Row{Qt::AlignLeft, Qt::RightToLeft, 0.95}, Row{Qt::AlignCenter, Qt::RightToLeft, 0.5}}) {
        ElidedLabel label;
        label.setLayoutDirection(row.direction);
        label.setAlignment(row.alignment);
        label.setText(u"HHH"_s);
        label.resize(400, 30);
        const QImage image = label.grab().toImage();
        int first = image.width(), last = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixelColor(x, y) != image.pixelColor(200, 0)) {
                    first = std::min(first, x);
                    last = std::max(last, x);
                }
        EXPECT_NEAR((first + last) / 2.0 / image.width(), row.middle, 0.06);
    }
}

TEST(ElidedLabel, FiguresDoNotTremble) {
    // In a font whose 1 is narrower than its other figures, two counts of equal length must take equal room. The test paints both and
    // compares the ink after the figures.
    auto inkOfLastLetter = [](const QString& text) {
        ElidedLabel label;
        label.setTabularFigures(true);
        label.setText(text);
        label.resize(300, 30);
        const QImage image = label.grab().toImage();
        int last = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixelColor(x, y) != image.pixelColor(image.width() - 1, 0))
                    last = std::max(last, x);
        return last;
    };
    EXPECT_EQ(inkOfLastLetter(u"111 of 111 x"_s), inkOfLastLetter(u"888 of 888 x"_s));
}

TEST(NSSegmentedControl, IsAGroupOfRadioButtonsToAScreenReader) {
    NSSegmentedControl control(2);
    control.setSegment(0, {}, u"One"_s);
    control.setSegment(1, {}, u"Two"_s);
    control.setAccessibleName(u"Number"_s);
    QList<int> chosen;
    QObject::connect(&control, &NSSegmentedControl::action, [&chosen](int segment) { chosen << segment; });
    QAccessibleInterface* group = QAccessible::queryAccessibleInterface(&control);
    EXPECT_EQ(group->role(), QAccessible::Grouping);
    EXPECT_EQ(group->text(QAccessible::Name), u"Number"_s);
    ASSERT_EQ(group->childCount(), 2);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(group->child(i)->role(), QAccessible::RadioButton);
        EXPECT_EQ(group->child(i)->text(QAccessible::Name), i == 0 ? u"One"_s : u"Two"_s);
        EXPECT_EQ(group->child(i)->state().checked, i == 0);
    }
    QAccessibleActionInterface* actions = group->child(1)->actionInterface();
    ASSERT_TRUE(actions && !actions->actionNames().isEmpty());
    actions->doAction(actions->actionNames().first());
    EXPECT_EQ(chosen, QList<int>{1});
    EXPECT_TRUE(group->child(1)->state().checked && !group->child(0)->state().checked);
}

TEST(ProgressBar, StandsStillBehindADialog) {
    QWidget window;
    ProgressBar bar(&window);
    bar.setIndeterminate(true);
    bar.startAnimation();
    window.show();
    const auto picture = [&bar] { return bar.grab().toImage(); };
    const QImage first = picture();
    EXPECT_TRUE(QTest::qWaitFor([&] { return picture() != first; })) << "it wanders";
    {
        QDialog dialog(&window);
        dialog.setModal(true);
        dialog.show();
        EXPECT_FALSE(bar.isAnimating());
        const QImage before = picture();
        QTest::qWait(60);
        EXPECT_EQ(picture(), before);
        bar.stopAnimation();
        EXPECT_NE(picture(), before) << "what stands still is not gone";
        bar.startAnimation();
    }
    EXPECT_TRUE(bar.isAnimating());
    const QImage after = picture();
    EXPECT_TRUE(QTest::qWaitFor([&] { return picture() != after; }));
}

TEST(CursorRest, ACursorThatNobodyUsesStandsStill) {
    const int blinking = QApplication::cursorFlashTime();
    ASSERT_GT(blinking, 0);
    const auto stands = [] { return QApplication::cursorFlashTime() == 0; };
    QLineEdit text;
    text.show();
    {
        const CursorRest rest(nullptr, std::chrono::milliseconds(30));
        for (const bool isKey : {true, false}) {
            if (isKey)
                QTest::keyClick(&text, Qt::Key_A);
            else
                QTest::mouseClick(&text, Qt::LeftButton);
            EXPECT_EQ(QApplication::cursorFlashTime(), blinking);
            EXPECT_TRUE(QTest::qWaitFor(stands));
        }
    }
    EXPECT_EQ(QApplication::cursorFlashTime(), blinking);
}

TEST(ProgressBar, CountsOrWanders) {
    ProgressBar bar;
    bar.setDoubleValue(37);
    EXPECT_EQ(bar.value(), 37);
    bar.setIndeterminate(true);
    EXPECT_EQ(bar.maximum(), 0); // screen readers take an empty range for "busy"
    EXPECT_FALSE(bar.isAnimating());
    bar.startAnimation();
    EXPECT_TRUE(bar.isAnimating());
    bar.setDoubleValue(250);
    EXPECT_EQ(bar.maximum(), 0);
    bar.setIndeterminate(false);
    EXPECT_FALSE(bar.isAnimating());
    EXPECT_EQ(bar.value(), 100);
    bar.setDoubleValue(-3);
    EXPECT_EQ(bar.doubleValue(), 0);

    bar.resize(200, 8);
    auto filledPixels = [&bar] {
        const QImage image = bar.grab().toImage();
        int filled = 0;
        for (int x = 0; x < image.width(); ++x)
            filled += image.pixelColor(x, image.height() / 2) == bar.palette().color(QPalette::Highlight);
        return filled;
    };
    EXPECT_EQ(filledPixels(), 0);
    bar.setDoubleValue(50);
    EXPECT_NEAR(filledPixels(), 100, 4);
    bar.setDoubleValue(100);
    EXPECT_NEAR(filledPixels(), 200, 4);
}

TEST(Appearance, DarkComesAndGoesAndStaysReadable) {
    auto contrast = [](const QColor& a, const QColor& b) {
        auto luminance = [](const QColor& c) {
            auto linear = [](double v) { return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
            return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
        };
        const double light = std::max(luminance(a), luminance(b));
        const double dark = std::min(luminance(a), luminance(b));
        return (light + 0.05) / (dark + 0.05);
    };
    const QPalette original = QApplication::palette();
    ASSERT_FALSE(Appearance::isDark(original));
    for (const bool dark : {true, false}) {
        Appearance::setWantsDark(dark);
        const QPalette palette = QApplication::palette();
        EXPECT_EQ(Appearance::isDark(palette), dark);
        const QColor window = palette.color(QPalette::Window);
        EXPECT_GE(contrast(palette.color(QPalette::WindowText), window), 7);
        EXPECT_GE(contrast(Appearance::secondaryLabelColor(palette), window), 4.5);
        EXPECT_GE(contrast(palette.color(QPalette::Highlight), window), 3);
        EXPECT_GE(contrast(palette.color(QPalette::ButtonText), palette.color(QPalette::Button)), 4.5);
    }
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), original.color(QPalette::Window));
}

TEST(ElidedLabel, BeginsWhereTheLayoutDoes) {
    for (const bool tabular : {false, true})
        for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
            ElidedLabel label;
            label.setTabularFigures(tabular);
            label.setLayoutDirection(direction);
            label.setText(QStringLiteral("3 of 8"));
            label.resize(300, 24);
            const QImage picture = label.grab().toImage();
            const auto inked = [&picture](int from) {
                for (int x = from; x < from + 100; ++x)
                    for (int y = 0; y < picture.height(); ++y)
                        if (picture.pixel(x, y) != picture.pixel(150, 0))
                            return true;
                return false;
            };
            EXPECT_EQ(inked(0), direction == Qt::LeftToRight) << tabular << direction;
            EXPECT_EQ(inked(200), direction == Qt::RightToLeft) << tabular << direction;
        }
}

namespace {

QImage inkedPartOf(const QImage& picture) {
    QRect inked;
    for (int x = 0; x < picture.width(); ++x)
        for (int y = 0; y < picture.height(); ++y)
            if (picture.pixel(x, y) != picture.pixel(150, 0))
                inked |= QRect(x, y, 1, 1);
    return picture.copy(inked);
}

/// The mean difference of two pictures of text in grey levels. Smoothed edges may have moved by a pixel.
double differenceOf(const QImage& a, const QImage& b) {
    double least = 255;
    for (int shift = -1; shift <= 1; ++shift) {
        double sum = 0;
        for (int x = 1; x + 1 < a.width(); ++x)
            for (int y = 0; y < a.height(); ++y) {
                const QPoint other(x + shift, y);
                sum += std::abs(qGray(a.pixel(x, y)) - (b.valid(other) ? qGray(b.pixel(other)) : 255));
            }
        least = std::min(least, sum / (a.width() * a.height()));
    }
    return least;
}

} // namespace

TEST(ElidedLabel, ReadsAsItIsWrittenWhereverItBegins) {
    for (const bool tabular : {false, true})
        for (const char16_t* text : {u"83% completed", u"3 of 8", u"(a) b:", u"\u05d3\u05d5\u05d7 83%", u"3 \u05de\u05ea\u05d5\u05da 8"}) {
            std::vector<QImage> pictures; // pictures of the text without its surroundings
            for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
                QApplication::setLayoutDirection(direction);
                ElidedLabel label;
                label.setTabularFigures(tabular);
                label.setText(QString::fromUtf16(text));
                label.resize(300, 24);
                pictures.push_back(inkedPartOf(label.grab().toImage()));
            }
            QApplication::setLayoutDirection(Qt::LeftToRight);
            EXPECT_LT(differenceOf(pictures[0], pictures[1]), 35) << QString::fromUtf16(text).toStdString() << tabular;
        }
}

// The test runs once for each of several scales of the screen, which the environment sets.
TEST(DesktopStyle, FramesAreWhole) {
    for (int extent = 60; extent < 68; ++extent) {
        QDialog window;
        QListWidget list(&window);
        list.setGeometry(extent - 57, 7, extent, extent);
        window.resize(100, 100);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
        const QImage image = QApplication::primaryScreen()->grabWindow(window.winId()).toImage();
        const double scale = image.devicePixelRatio();
        const auto pixel = [scale](int place) { return qRound(place * scale); };
        const QRect frame(QPoint(pixel(list.x()), pixel(list.y())), QPoint(pixel(list.x() + extent) - 1, pixel(list.y() + extent) - 1));
        const int dark = image.pixelColor(frame.center()).lightness() - 20;
        const QPoint middle = frame.center();
        for (const QPoint& point : {QPoint(frame.left(), middle.y()), QPoint(frame.right(), middle.y()), QPoint(middle.x(), frame.top()),
                                    QPoint(middle.x(), frame.bottom())})
            EXPECT_LT(image.pixelColor(point).lightness(), dark) << scale << " " << extent << " " << point.x() << " " << point.y();
    }
}

} // namespace quoddle
