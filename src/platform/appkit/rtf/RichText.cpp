// SPDX-License-Identifier: MIT
#include "platform/appkit/rtf/RichText.h"

#include "platform/appkit/rtf/RTFReader.h"
#include "platform/foundation/FileBytes.h"

#include <QFileInfo>
#include <QTextBlock>
#include <QTextDocument>

namespace quoddle {

using namespace Qt::StringLiterals;

OSStatus readRichText(const QString& path, QTextDocument& document) {
    const bool isFolder = QFileInfo(path).isDir();
    const auto bytes = bytesOfFile(isFolder ? path + u"/TXT.rtf"_s : path, kLargestRichTextFile);
    if (!bytes)
        return bytes.error();
    if (!bytes->startsWith("{\\rtf"))
        return paramErr;
    document.clear();
    RTFReader(*bytes, isFolder ? path : QString(), document).read();
    return noErr;
}

bool readRichTextData(const QByteArray& bytes, QTextDocument& document) {
    if (bytes.size() > kLargestRichText || !bytes.startsWith("{\\rtf"))
        return false;
    document.clear();
    RTFReader(bytes, {}, document).read();
    return true;
}

void adaptRichText(QTextDocument& document, bool isDark, const QColor& labelColor) {
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        std::vector<QTextFragment> fragments; // collected first, because a change of format may join fragments
        for (auto it = block.begin(); !it.atEnd(); ++it)
            fragments.push_back(it.fragment());
        for (const QTextFragment& fragment : fragments) {
            QTextCharFormat format = fragment.charFormat();
            const auto written = static_cast<RichTextColor>(format.property(kRichTextColorProperty).toInt());
            if (written == RichTextColor::Other || format.isImageFormat())
                continue;
            if (isDark)
                format.setForeground(labelColor);
            else if (written == RichTextColor::Black)
                format.setForeground(Qt::black);
            else
                format.clearForeground();
            if (format == fragment.charFormat())
                continue; // setting a format is costly, even the same one
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.setCharFormat(format);
        }
    }
    cursor.endEditBlock();
}

} // namespace quoddle
