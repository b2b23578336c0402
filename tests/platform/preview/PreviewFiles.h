// SPDX-License-Identifier: MIT
// Files for tests of previews, in a folder that is removed with the test.
#pragma once

#include "platform/foundation/TemporaryFiles.h"

#include <QImage>

namespace quoddle {

class PreviewFiles : public test::TemporaryFiles {
protected:
    QString picture(const QString& name, QSize size) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::red);
        EXPECT_TRUE(image.save(folder.filePath(name)));
        return folder.filePath(name);
    }
    /// A document whose pages have 200 × 400 points and are white except for a red square at the top left.
    QString document(const QString& name, int pages) {
        const QByteArray drawing = "1 0 0 rg 0 300 100 100 re f";
        QByteArray bytes =
            "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n2 0 obj<</Type/Pages/Count " + QByteArray::number(pages) + "/Kids[";
        for (int i = 0; i < pages; ++i)
            bytes += QByteArray::number(4 + i) + " 0 R ";
        bytes += "]>>endobj\n3 0 obj<</Length " + QByteArray::number(drawing.size()) + ">>stream\n" + drawing + "\nendstream endobj\n";
        for (int i = 0; i < pages; ++i)
            bytes += QByteArray::number(4 + i) + " 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 200 400]/Contents 3 0 R>>endobj\n";
        return write(name, bytes + "trailer<</Root 1 0 R>>\n%%EOF\n");
    }
};

} // namespace quoddle
