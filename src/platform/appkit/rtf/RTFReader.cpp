// SPDX-License-Identifier: MIT
#include "platform/appkit/rtf/RTFReader.h"

#include "platform/appkit/ImageFile.h"
#include "platform/appkit/rtf/CodePage.h"

#include <QDir>
#include <QRegularExpression>
#include <QTextDocument>
#include <QUrl>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kMaximumDepth = 200;
constexpr int kMaximumFonts = 256; // in the table; the toolkit searches all fonts in use at each change of format
constexpr int kMaximumFamily = 100;
constexpr int kMaximumColors = 10'000;
constexpr int kTwipsPerPoint = 20;
// A point in the files stands for a pixel of a screen that has 72 of them to the inch. Our screens count 96, so the same number of pixels
// is fewer points.
constexpr double kPointScale = 0.75;
constexpr int kMaximumPictureSide = 4000;
constexpr int kKeptPictureSide = 1600; // pixels; wider than any description on a screen of any scale
const QTextCharFormat kPlainFormat;

qint64 pixelsIn(QSize size) {
    return qint64{size.width()} * size.height();
}

bool isOn(const RTFToken& token) {
    return !token.hasParameter || token.parameter != 0;
}

} // namespace

RTFReader::RTFReader(QByteArray bytes, QString folder, QTextDocument& document)
    : mTokens(std::move(bytes)), mFolder(std::move(folder)), mDocument(document), mCursor(&document) {}

void RTFReader::read() {
    mCursor.beginEditBlock();
    for (RTFToken token = mTokens.next(); token.kind != RTFToken::Kind::End; token = mTokens.next()) {
        if (token.kind != RTFToken::Kind::Text)
            flush();
        switch (token.kind) {
        case RTFToken::Kind::GroupBegin:
            beginGroup();
            break;
        case RTFToken::Kind::GroupEnd:
            endGroup();
            break;
        case RTFToken::Kind::Control:
            control(token);
            break;
        default:
            text(token.text);
        }
    }
    flush();
    mCursor.endEditBlock();
}

void RTFReader::beginGroup() {
    if (mStates.size() >= kMaximumDepth)
        ++mSkippedDepth;
    else
        mStates.push_back(state());
    mIgnorable = false;
}

void RTFReader::endGroup() {
    if (mSkippedDepth > 0) {
        --mSkippedDepth;
        return;
    }
    if (mStates.size() < 2)
        return;
    const Destination ended = state().destination;
    mStates.pop_back();
    if (ended != state().destination) {
        if (ended == Destination::FieldInstruction)
            applyLink();
        else if (ended == Destination::Picture)
            insertPicture();
    }
    mFallbackLeft = 0;
}

void RTFReader::text(const QByteArray& bytes) {
    const qsizetype skipped = std::min<qsizetype>(mFallbackLeft, bytes.size());
    mFallbackLeft -= static_cast<int>(skipped);
    mPending += bytes.mid(skipped);
}

/// Ends a run of bytes: decodes them by the code page in force and puts the text where the current destination wants it.
void RTFReader::flush() {
    if (mPending.isEmpty())
        return;
    const QByteArray bytes = std::exchange(mPending, {});
    insert(decodeCodePage(bytes, state().codePage ? state().codePage : mCodePage));
}

void RTFReader::insert(const QString& text) {
    switch (state().destination) {
    case Destination::Text: {
        if (mCursor.blockFormat() != state().paragraph)
            mCursor.setBlockFormat(state().paragraph);
        const bool isPlaceholder = std::exchange(mPlaceholderFollows, false) && !text.isEmpty();
        mCursor.insertText(isPlaceholder ? text.mid(1) : text, state().character);
        break;
    }
    case Destination::Fonts: {
        if (Font* font = fontInTable(); font && !font->isNamed) {
            const qsizetype end = text.indexOf(u';');
            font->family = (font->family + (end < 0 ? text : text.left(end))).left(kMaximumFamily);
            font->isNamed = end >= 0;
        }
        break;
    }
    case Destination::Colors: // each entry ends with a semicolon; an empty one is the automatic colour
        for (qsizetype i = text.count(u';'); i > 0 && mColors.size() < kMaximumColors; --i)
            mColors.append(std::exchange(mColorInTable, QColor()));
        break;
    case Destination::FieldInstruction:
        mInstruction += text;
        break;
    case Destination::Picture:
        mPictureName += text;
        break;
    case Destination::Skipped:
        break;
    }
}

bool RTFReader::openDestination(const RTFToken& token) {
    static const QHash<QByteArray, Destination> destinations{{"fonttbl", Destination::Fonts},
                                                             {"colortbl", Destination::Colors},
                                                             {"fldinst", Destination::FieldInstruction},
                                                             {"fldrslt", Destination::Text},
                                                             {"stylesheet", Destination::Skipped},
                                                             {"info", Destination::Skipped},
                                                             {"pict", Destination::Skipped},
                                                             {"header", Destination::Skipped},
                                                             {"footer", Destination::Skipped},
                                                             {"footnote", Destination::Skipped},
                                                             {"object", Destination::Skipped},
                                                             {"listtable", Destination::Skipped},
                                                             {"listoverridetable", Destination::Skipped},
                                                             {"generator", Destination::Skipped},
                                                             {"xe", Destination::Skipped}};
    const bool ignorable = std::exchange(mIgnorable, false);
    const auto known = destinations.constFind(token.word);
    if (known == destinations.constEnd()) {
        if (ignorable)
            state().destination = Destination::Skipped;
        return ignorable;
    }
    if (state().destination == Destination::Skipped)
        return true;
    state().destination = *known;
    if (*known == Destination::FieldInstruction)
        mInstruction.clear();
    return true;
}

void RTFReader::control(const RTFToken& token) {
    if (token.word == "*") {
        mIgnorable = true;
        return;
    }
    if (openDestination(token))
        return;
    if (mFallbackLeft > 0) { // a control word counts as one character of the fallback
        --mFallbackLeft;
        return;
    }
    if (const Method method = methods().value(token.word))
        (this->*method)(token);
}

void RTFReader::character(const RTFToken& token) {
    static const QHash<QByteArray, QString> characters{{"tab", u"\t"_s},
                                                       {"line", QString(QChar::LineSeparator)},
                                                       {"emdash", u"—"_s},
                                                       {"endash", u"–"_s},
                                                       {"lquote", u"‘"_s},
                                                       {"rquote", u"’"_s},
                                                       {"ldblquote", u"“"_s},
                                                       {"rdblquote", u"”"_s},
                                                       {"bullet", u"•"_s},
                                                       {"~", u"\u00A0"_s},
                                                       {"_", u"\u2011"_s},
                                                       {"-", u"\u00AD"_s},
                                                       {"\\", u"\\"_s},
                                                       {"{", u"{"_s},
                                                       {"}", u"}"_s},
                                                       {"emspace", u"\u2003"_s},
                                                       {"enspace", u"\u2002"_s},
                                                       {"cell", u"\t"_s}};
    insert(characters.value(token.word));
}

void RTFReader::unicode(const RTFToken& token) {
    insert(QString(QChar(static_cast<char16_t>(token.parameter))));
    mFallbackLeft = state().fallbackLength;
}

void RTFReader::paragraphEnd(const RTFToken&) {
    if (state().destination != Destination::Text)
        return;
    mCursor.setBlockFormat(state().paragraph);
    mCursor.insertBlock(state().paragraph, state().character);
}

void RTFReader::paragraphFormat(const RTFToken& token) {
    QTextBlockFormat& format = state().paragraph;
    const double points = std::clamp(token.parameter, -20'000, 20'000) / static_cast<double>(kTwipsPerPoint);
    if (token.word == "pard")
        format = QTextBlockFormat();
    else if (token.word == "ql")
        format.setAlignment(Qt::AlignLeft);
    else if (token.word == "qr")
        format.setAlignment(Qt::AlignRight);
    else if (token.word == "qc")
        format.setAlignment(Qt::AlignHCenter);
    else if (token.word == "qj")
        format.setAlignment(Qt::AlignJustify);
    else if (token.word == "li")
        format.setLeftMargin(points);
    else if (token.word == "ri")
        format.setRightMargin(points);
    else if (token.word == "fi")
        format.setTextIndent(points);
    else if (token.word == "sb")
        format.setTopMargin(points);
    else if (token.word == "sa")
        format.setBottomMargin(points);
}

void RTFReader::style(const RTFToken& token) {
    QTextCharFormat& format = state().character;
    if (token.word == "b")
        format.setFontWeight(isOn(token) ? QFont::Bold : QFont::Normal);
    else if (token.word == "i")
        format.setFontItalic(isOn(token));
    else if (token.word == "ul")
        format.setFontUnderline(isOn(token));
    else if (token.word == "ulnone")
        format.setFontUnderline(false);
    else if (token.word == "strike" || token.word == "striked")
        format.setFontStrikeOut(isOn(token));
    else if (token.word == "super")
        format.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
    else if (token.word == "sub")
        format.setVerticalAlignment(QTextCharFormat::AlignSubScript);
    else if (token.word == "nosupersub")
        format.setVerticalAlignment(QTextCharFormat::AlignNormal);
}

void RTFReader::plain(const RTFToken&) {
    state().character = kPlainFormat;
}

void RTFReader::fontNumber(const RTFToken& token) {
    if (state().destination == Destination::Fonts) {
        mFontInTable = token.parameter;
        return;
    }
    const Font font = mFonts.value(token.parameter);
    if (!font.family.isEmpty())
        state().character.setFontFamilies({font.family.trimmed()});
    state().codePage = font.codePage;
}

RTFReader::Font* RTFReader::fontInTable() {
    return mFonts.size() < kMaximumFonts || mFonts.contains(mFontInTable) ? &mFonts[mFontInTable] : nullptr;
}

void RTFReader::fontCharset(const RTFToken& token) {
    if (Font* font = state().destination == Destination::Fonts ? fontInTable() : nullptr)
        font->codePage = codePageOfCharset(token.parameter);
}

void RTFReader::fontSize(const RTFToken& token) {
    if (token.parameter > 0)
        state().character.setFontPointSize(std::clamp(token.parameter / 2.0, 4.0, 400.0) * kPointScale);
}

void RTFReader::colorPart(const RTFToken& token) {
    if (state().destination != Destination::Colors)
        return;
    if (!mColorInTable.isValid())
        mColorInTable = Qt::black;
    const int part = std::clamp(token.parameter, 0, 255);
    if (token.word == "red")
        mColorInTable.setRed(part);
    else if (token.word == "green")
        mColorInTable.setGreen(part);
    else
        mColorInTable.setBlue(part);
}

void RTFReader::foreground(const RTFToken& token) {
    const QColor color = mColors.value(token.parameter);
    QTextCharFormat& format = state().character;
    if (!color.isValid()) {
        format.clearForeground();
        format.clearProperty(kRichTextColorProperty);
        return;
    }
    format.setForeground(color);
    const bool isBlack = color == QColor(Qt::black);
    format.setProperty(kRichTextColorProperty, static_cast<int>(isBlack ? RichTextColor::Black : RichTextColor::Other));
}

void RTFReader::background(const RTFToken& token) {
    const QColor color = mColors.value(token.parameter);
    if (color.isValid())
        state().character.setBackground(color);
    else
        state().character.clearBackground();
}

void RTFReader::codePage(const RTFToken& token) {
    mCodePage = token.word == "mac"   ? 10000
                : token.word == "pc"  ? 437
                : token.word == "pca" ? 850
                : token.hasParameter  ? token.parameter
                                      : mCodePage;
}

void RTFReader::fallback(const RTFToken& token) {
    state().fallbackLength = std::clamp(token.parameter, 0, 100);
}

void RTFReader::picture(const RTFToken&) {
    state().destination = Destination::Picture;
    mPictureName.clear();
    mPictureSize = {};
}

void RTFReader::pictureSize(const RTFToken& token) {
    const int side = std::clamp(token.parameter / kTwipsPerPoint, 0, kMaximumPictureSide);
    if (token.word == "width")
        mPictureSize.setWidth(side);
    else
        mPictureSize.setHeight(side);
}

/// Makes the text of the field, which follows in a group of the same level, a link.
void RTFReader::applyLink() {
    static const QRegularExpression hyperlink(u"\\bHYPERLINK\\s+\"([^\"]+)\""_s);
    const auto match = hyperlink.match(mInstruction);
    const QUrl url(match.captured(1));
    if (!match.hasMatch() || !url.isValid() || url.isRelative())
        return;
    state().character.setAnchor(true);
    state().character.setAnchorHref(url.toString());
    state().character.setFontUnderline(true);
}

/// Inserts the picture. The file has a character in its place behind the group, which is left out.
void RTFReader::insertPicture() {
    mPlaceholderFollows = true;
    const QString name = mPictureName.trimmed();
    if (mFolder.isEmpty() || name.isEmpty() || name.contains(u'/') || name.startsWith(u'.'))
        return;
    const QUrl url(u"attachment:"_s + name);
    auto size = mPictures.constFind(name);
    if (size == mPictures.constEnd())
        size = mPictures.insert(name, readPicture(name, url));
    if (size->isEmpty())
        return;
    QTextImageFormat format;
    format.setName(url.toString());
    format.setWidth(mPictureSize.width() > 0 ? mPictureSize.width() : size->width());
    format.setHeight(mPictureSize.height() > 0 ? mPictureSize.height() : size->height());
    mCursor.insertImage(format);
}

/// Reads a picture and answers its own size, in which it is shown even when it is kept smaller. Empty when the picture cannot be read, does
/// not say how large it is, or exceeds the pixels that are left for pictures. Decoding uses up those pixels even when it fails.
QSize RTFReader::readPicture(const QString& name, const QUrl& url) {
    ImageFile file(QDir(mFolder).filePath(name));
    const QSize size = file.size();
    if (size.isEmpty() || size.width() > kMaximumPictureSide || size.height() > kMaximumPictureSide || pixelsIn(size) > mPixelsLeft)
        return {};
    mPixelsLeft -= pixelsIn(size);
    const QImage image = file.read({kKeptPictureSide, kKeptPictureSide});
    if (image.isNull())
        return {};
    mDocument.addResource(QTextDocument::ImageResource, url, image);
    return size;
}

const QHash<QByteArray, RTFReader::Method>& RTFReader::methods() {
    using T = RTFReader;
    static const QHash<QByteArray, Method> methods = [] {
        QHash<QByteArray, Method> table;
        const auto set = [&table](Method method, std::initializer_list<const char*> words) {
            for (const char* word : words)
                table.insert(word, method);
        };
        set(&T::character, {"tab", "line", "emdash", "endash", "lquote", "rquote", "ldblquote", "rdblquote", "bullet", "~", "_", "-", "\\",
                            "{", "}", "emspace", "enspace", "cell"});
        set(&T::unicode, {"u"});
        set(&T::fallback, {"uc"});
        set(&T::paragraphEnd, {"par", "sect", "page", "row", "\n", "\r"});
        set(&T::paragraphFormat, {"pard", "ql", "qr", "qc", "qj", "li", "ri", "fi", "sb", "sa"});
        set(&T::style, {"b", "i", "ul", "ulnone", "strike", "striked", "super", "sub", "nosupersub"});
        set(&T::plain, {"plain"});
        set(&T::fontNumber, {"f"});
        set(&T::fontCharset, {"fcharset"});
        set(&T::fontSize, {"fs"});
        set(&T::colorPart, {"red", "green", "blue"});
        set(&T::foreground, {"cf"});
        set(&T::background, {"cb", "highlight"});
        set(&T::codePage, {"ansicpg", "mac", "pc", "pca"});
        set(&T::binary, {"bin"});
        set(&T::picture, {"NeXTGraphic"});
        set(&T::pictureSize, {"width", "height"});
        return table;
    }();
    return methods;
}

} // namespace quoddle
