// SPDX-License-Identifier: MIT
// Files with several pictures: which of them are decoded, and how many.
#include "platform/appkit/BestPictures.h"
#include "platform/appkit/ImageFile.h"
#include "platform/appkit/StockIcons.h"
#include "platform/foundation/LogCatcher.h"
#include "platform/foundation/TemporaryFiles.h"

#include <map>

#include <QtEndian>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

struct Page {
    int width, height;
    bool isDamaged = false;
};

QByteArray number(quint32 value, int bytes) {
    return QByteArray::fromHex(QByteArray::number(value, 16).rightJustified(bytes * 2, '0'));
}

/// A TIFF file with these pages, all black and packed to a few bytes. Damaged pages have a packing that no decoder knows.
QByteArray tiff(const std::vector<Page>& pages) {
    constexpr quint32 kDeflate = 8, kUnheardOf = 12345;
    QByteArray file("MM\0*\0\0\0\0", 8);
    qsizetype link = 4;
    std::map<int, quint32> strips; // offsets of the packed pages by the number of their bytes
    for (const Page& page : pages) {
        const int size = page.width * page.height;
        if (!strips.contains(size)) {
            strips[size] = static_cast<quint32>(file.size());
            file += qCompress(QByteArray(size, '\0'), 9).mid(4);
        }
        qToBigEndian(static_cast<quint32>(file.size()), file.data() + link);
        const std::pair<quint32, quint32> tags[] = {
            {256, page.width},   {257, page.height}, {258, 8},           {259, page.isDamaged ? kUnheardOf : kDeflate},          {262, 1},
            {273, strips[size]}, {277, 1},           {278, page.height}, {279, static_cast<quint32>(file.size()) - strips[size]}};
        file += number(std::size(tags), 2);
        for (const auto& [tag, value] : tags)
            file += number(tag, 2) + number(4, 2) + number(1, 4) + number(value, 4);
        link = file.size();
        file += number(0, 4);
    }
    return file;
}

class BestPicturesTest : public test::TemporaryFiles {
protected:
    QList<QSize> sizes(const std::vector<Page>& pages, int extent, int most) {
        ImageFile file(write(u"pages.tiff"_s, tiff(pages)));
        QList<QSize> sizes;
        for (const QImage& picture : bestPictures(file, u"pages.tiff"_s, extent, most))
            sizes << picture.size();
        return sizes;
    }
};

} // namespace

TEST_F(BestPicturesTest, ThoseThatServeBestAreRead) {
    const struct {
        const char* what;
        std::vector<Page> pages;
        int most;
        QList<QSize> read;
        bool isTold; // whether the log says that a picture was left out
    } rows[] = {
        {"the only one", {{300, 200}}, 1, {{300, 200}}, false},
        {"the largest of small ones", {{100, 100}, {300, 200}, {200, 100}}, 1, {{300, 200}}, false},
        {"one that is just large enough", {{4000, 2000}, {100, 100}, {600, 300}}, 1, {{500, 250}}, false},
        {"the next one", {{600, 300, true}, {4000, 4000, true}, {300, 300}, {200, 200}}, 1, {{300, 300}}, false},
        {"several", {{32, 32}, {128, 128}, {600, 600}, {128, 128}, {2000, 2000}}, 9, {{500, 500}, {128, 128}, {32, 32}}, false},
        {"back to the first", {{100, 100}, {700, 700, true}}, 1, {{100, 100}}, false},
        {"one of too many", std::vector<Page>(64, {8100, 8100}), 1, {{500, 500}}, false},
        {"none", {{100, 100, true}, {700, 700, true}}, 1, {}, false},
        // Seven failed pictures of nine million pixels each leave no room for another one.
        {"not all",
         {{3000, 3000, true},
          {3000, 3001, true},
          {3000, 3002, true},
          {3000, 3003, true},
          {3000, 3004, true},
          {3000, 3005, true},
          {3000, 3006, true},
          {3000, 3007},
          {64, 64}},
         1,
         {{64, 64}},
         true},
    };
    for (const auto& row : rows) {
        const LogCatcher log;
        EXPECT_EQ(sizes(row.pages, 500, row.most), row.read) << row.what;
        EXPECT_EQ(log.count(u"A picture of pages.tiff is not shown: it has 3000 × 3007 pixels"_s), row.isTold ? 1 : 0) << row.what;
        EXPECT_EQ(log.count(u"pages.tiff is not shown: it cannot be decoded"_s), row.read.isEmpty() ? 1 : 0) << row.what;
    }
}

TEST_F(BestPicturesTest, PicturesBehindTheFirstAreNotCounted) {
    for (const int count : {63, 64, 65, 5000}) {
        QByteArray file = tiff(std::vector<Page>(static_cast<std::size_t>(count), {8, 8}));
        ImageFile whole(file, u"tiff"_s);
        EXPECT_EQ(whole.count(), std::min(count, ImageFile::kMostPictures));
        EXPECT_EQ(whole.read({9, 9}).size(), QSize(8, 8));
        qToBigEndian(static_cast<quint32>(file.size()), file.data() + 4);
        EXPECT_TRUE(ImageFile(file, u"tiff"_s).read({9, 9}).isNull());
    }
}

TEST_F(BestPicturesTest, AnIconHasTheSizesOfItsFile) {
    const QIcon icon = iconFromImageFile(write(u"icon.tiff"_s, tiff({{16, 16}, {256, 256}, {2048, 2048}, {4096, 4096}})));
    EXPECT_EQ(icon.availableSizes(), (QList<QSize>{{1024, 1024}, {256, 256}, {16, 16}}));
}

} // namespace quoddle
