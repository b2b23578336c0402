// SPDX-License-Identifier: MIT
// Pictures in an applet's bundle: large ones are shown, and impossible ones are reported in the log.
#include "Shell.h"

#include "platform/appkit/BundleIcon.h"
#include "platform/foundation/LogCatcher.h"
#include "window/AppletImages.h"

#include <QBuffer>
#include <QImage>

namespace quoddle {

using namespace Qt::StringLiterals;
using test::Shell;

namespace {

/// A picture without compression, so that its file is as large as possible.
QByteArray png(QSize size, QImage::Format format) {
    QImage image(size, format);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    EXPECT_TRUE(buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "png", 100));
    return bytes;
}

/// A picture whose header promises more than fits into memory.
QByteArray bomb(const QByteArray& width, const QByteArray& height) {
    return "P6 " + width + ' ' + height + " 255 x";
}

} // namespace

TEST(AppletImages, AreShownWhereTheirSizeMakesSense) {
    Shell shell;
    AppletImages images;
    const struct {
        QString name;
        QByteArray content;
        QString problem; // empty: the picture is shown
    } rows[] = {
        {u"photograph.png"_s, png({6000, 4000}, QImage::Format_RGBX64), u""_s},
        {u"wide.ppm"_s, bomb("30000", "2"), u"it has 30000 × 2 pixels, which is more than 16384 to a side"_s},
        {u"large.ppm"_s, bomb("16000", "16000"), u"it has 16000 × 16000 pixels, which take more than 256 MiB"_s},
        {u"text.png"_s, "text", u"it cannot be decoded (Unsupported image format)"_s},
        {u"empty.png"_s, "", u"it is empty"_s},
        {u"endless.png"_s, QByteArray((192 << 20) + 1, 'x'), u"it is larger than 192 MiB"_s},
        {u"drawing.svg"_s, "<svg xmlns='http://www.w3.org/2000/svg'><image href='/etc/hosts'/></svg>",
         u"it is a drawing that is damaged or refers to other files"_s},
    };
    for (const auto& row : rows) {
        shell.addResource(row.name, row.content);
        const QString path = shell.delegate->mainBundle()->resourcePath() + u'/' + row.name;
        const LogCatcher log;
        const QImage image = images.imageFile(path);
        EXPECT_EQ(image.isNull(), !row.problem.isEmpty()) << row.name.toStdString();
        EXPECT_EQ(log.count(row.name + u" is not shown: "_s + row.problem), row.problem.isEmpty() ? 0 : 1)
            << log.lines().join(u'\n').toStdString();
    }
    const LogCatcher log;
    EXPECT_TRUE(images.imageWithData(bomb("30000", "2").toStdString()).isNull());
    EXPECT_EQ(log.count(u"A picture in the script is not shown: it has 30000"_s), 1);
}

TEST(AppletImages, AnIconThatCannotBeShownIsToldOf) {
    Shell shell("CFBundleIconFile = icon;");
    shell.addResource(u"icon.png"_s, bomb("30000", "30000"));
    const LogCatcher log;
    EXPECT_FALSE(iconForBundle(*shell.delegate->mainBundle()).isNull()) << "there is always one";
    EXPECT_EQ(log.count(u"icon.png is not shown: it has 30000 × 30000 pixels"_s), 1);
}

} // namespace quoddle
