// SPDX-License-Identifier: MIT
#include "platform/preview/PreviewContents.h"

#include "platform/appkit/rtf/QuickLayout.h"
#include "platform/appkit/rtf/RichText.h"
#include "platform/base/File.h"
#include "platform/base/SourceEncoding.h"
#include "platform/base/Text.h"
#include "platform/foundation/UTType.h"

#include <array>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QTextBlock>
#include <QTextCursor>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kMostText = std::size_t(1) << 20;       // bytes
constexpr qsizetype kLongestLine = 4000;                      // UTF-16 units; the layout of an endless line would block the window
constexpr std::size_t kMostRichText = std::size_t(512) << 10; // bytes; formatted text takes long to read and to lay out

/// The bytes without a UTF-8 character that is cut at the end.
std::string_view withoutCutCharacter(std::string_view bytes) {
    for (std::size_t back = 1; back <= std::min<std::size_t>(3, bytes.size()); ++back) {
        const auto byte = static_cast<unsigned char>(bytes[bytes.size() - back]);
        if (byte < 0x80)
            break;
        if (byte >= 0xc0)
            return bytes.substr(0, bytes.size() - back);
    }
    return bytes;
}

bool isText(std::string_view bytes) {
    const bool isUTF16 = bytes.starts_with("\xff\xfe") || bytes.starts_with("\xfe\xff");
    return isUTF16 || bytes.find('\0') == std::string_view::npos;
}

QString withShortLines(const QString& text) {
    QString broken;
    broken.reserve(text.size() + text.size() / kLongestLine);
    qsizetype length = 0;
    for (const QChar c : text) {
        length = c == u'\n' || c == u'\r' ? 0 : length + 1;
        if (length > kLongestLine && !c.isLowSurrogate() && !c.isMark()) {
            broken += u'\n';
            length = 1;
        }
        broken += c;
    }
    return broken;
}

void readText(PreviewContents& contents) {
    const auto bytes = readFileStart(QFile::encodeName(contents.facts.path).toStdString(), kMostText);
    if (!bytes) {
        contents.notice = QCoreApplication::translate("PreviewContents", "The file could not be read.");
        return;
    }
    if (!isText(*bytes))
        return;
    contents.isCut = contents.facts.size > static_cast<qint64>(bytes->size());
    const std::u16string text = utf16FromSourceBytes(contents.isCut ? withoutCutCharacter(*bytes) : std::string_view(*bytes));
    contents.text = withShortLines(QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size())));
    const std::array sourceTypes{u"public.source-code"_s, u"public.script"_s, u"public.xml"_s,
                                 u"public.json"_s,        u"public.yaml"_s,   u"public.html"_s};
    contents.isSource = std::any_of(sourceTypes.begin(), sourceTypes.end(),
                                    [&](const QString& type) { return UTTypeConformsTo(contents.facts.type, type); });
    contents.kind = PreviewKind::Text;
}

/// Reads the beginning of a formatted text, which is a valid text, too. Attached pictures are left out, because this process decodes no
/// pictures.
bool readBeginning(PreviewContents& contents, QTextDocument& document) {
    const QString file = contents.facts.isDirectory ? contents.facts.path + u"/TXT.rtf"_s : contents.facts.path;
    contents.isCut = QFileInfo(file).size() > static_cast<qint64>(kMostRichText);
    const auto bytes = readFileStart(QFile::encodeName(file).toStdString(), kMostRichText);
    return bytes && readRichTextData(QByteArray::fromStdString(*bytes), document);
}

void readFormats(PreviewContents& contents, QThread* thread) {
    auto document = std::make_shared<QTextDocument>();
    document->setUndoRedoEnabled(false);
    if (!readBeginning(contents, *document)) {
        contents.notice = QCoreApplication::translate("PreviewContents", "The file could not be read.");
        return;
    }
    const int most = quicklyLaidOutParagraphs(*document);
    if (most == 0) {
        contents.notice = QCoreApplication::translate("PreviewContents", "The text has too many formats to be shown.");
        return;
    }
    if (document->blockCount() > most) {
        QTextCursor rest(document->findBlockByNumber(most));
        rest.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
        rest.removeSelectedText();
        contents.isCut = true;
    }
    document->moveToThread(thread);
    contents.richText = std::move(document);
    contents.kind = PreviewKind::RichText;
}

} // namespace

PreviewKind previewKindOf(const FileFacts& facts) {
    const auto conformsTo = [&](const QString& type) { return UTTypeConformsTo(facts.type, type); };
    if (conformsTo(u"com.apple.rtfd"_s))
        return PreviewKind::RichText;
    if (facts.size < 0)
        return PreviewKind::Card;
    if (conformsTo(u"public.rtf"_s))
        return PreviewKind::RichText;
    if (conformsTo(u"com.adobe.pdf"_s))
        return PreviewKind::Pages;
    if (conformsTo(u"public.image"_s))
        return PreviewKind::Picture;
    if (conformsTo(u"public.audiovisual-content"_s))
        return PreviewKind::Card;
    if (conformsTo(u"public.text"_s) || QMimeDatabase().mimeTypeForFile(facts.path).inherits(u"text/plain"_s))
        return PreviewKind::Text;
    return PreviewKind::Card;
}

PreviewContents previewContentsOfFile(const QString& path, const std::atomic<bool>& isCancelled, QThread* thread) {
    PreviewContents contents;
    contents.facts = factsOfFile(path, isCancelled);
    if (!contents.facts.exists()) {
        contents.notice = QCoreApplication::translate("PreviewContents", "The file is not there any more.");
        return contents;
    }
    const PreviewKind kind = previewKindOf(contents.facts);
    if (kind == PreviewKind::Text)
        readText(contents);
    else if (kind == PreviewKind::RichText)
        readFormats(contents, thread);
    else
        contents.kind = kind;
    return contents;
}

} // namespace quoddle
