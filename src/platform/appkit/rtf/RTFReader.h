// SPDX-License-Identifier: MIT
// Reads one stream of Rich Text Format into a document. Private to this folder.
#pragma once

#include "platform/appkit/rtf/RTFTokenizer.h"

#include <QColor>
#include <QHash>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>

namespace quoddle {

/// The colour that the file gave to a text. Kept beside the colour that is shown, which may be replaced.
enum class RichTextColor { Absent, Black, Other };
constexpr int kRichTextColorProperty = QTextFormat::UserProperty + 1;

class RTFReader {
public:
    /// Pictures are looked for in the folder; with an empty one there are none.
    RTFReader(QByteArray bytes, QString folder, QTextDocument& document);
    void read();

private:
    enum class Destination { Text, Skipped, Fonts, Colors, FieldInstruction, Picture };
    struct State {
        Destination destination = Destination::Text;
        QTextCharFormat character;
        QTextBlockFormat paragraph;
        int codePage = 0;       // of the font; 0: the document's
        int fallbackLength = 1; // the number of characters after a \u for readers that do not understand it
    };
    struct Font {
        QString family;
        bool isNamed = false; // the name is complete
        int codePage = 0;
    };
    using Method = void (RTFReader::*)(const RTFToken&);
    static const QHash<QByteArray, Method>& methods();

    void control(const RTFToken& token);
    bool openDestination(const RTFToken& token);
    void beginGroup();
    void endGroup();
    void text(const QByteArray& bytes);
    void flush();
    void insert(const QString& text);

    void character(const RTFToken& token);
    void unicode(const RTFToken& token);
    void paragraphEnd(const RTFToken& token);
    void paragraphFormat(const RTFToken& token);
    void style(const RTFToken& token);
    void plain(const RTFToken& token);
    void fontNumber(const RTFToken& token);
    void fontSize(const RTFToken& token);
    void fontCharset(const RTFToken& token);
    void colorPart(const RTFToken& token);
    void foreground(const RTFToken& token);
    void background(const RTFToken& token);
    void codePage(const RTFToken& token);
    void fallback(const RTFToken& token);
    void binary(const RTFToken& token) { mTokens.skip(token.parameter); }
    void picture(const RTFToken& token);
    void pictureSize(const RTFToken& token);

    /// The entry that the table is defining; null when the table is too long.
    Font* fontInTable();

    void applyLink();
    void insertPicture();
    QSize readPicture(const QString& name, const QUrl& url);
    State& state() { return mStates.back(); }

    static constexpr qint64 kMaximumPixels = qint64{16} << 20; // of all pictures together, in their own sizes
    RTFTokenizer mTokens;
    const QString mFolder;
    QTextDocument& mDocument;
    QTextCursor mCursor;
    std::vector<State> mStates{State()};
    int mSkippedDepth = 0; // the number of open groups that are nested too deeply to be read
    QHash<int, Font> mFonts;
    int mFontInTable = 0;
    QList<QColor> mColors;
    QColor mColorInTable;
    int mCodePage = 1252;
    QByteArray mPending; // bytes of text whose meaning depends on the signs that follow
    int mFallbackLeft = 0;
    bool mIgnorable = false; // "\*" was read: an unknown destination is to be skipped
    bool mPlaceholderFollows = false;
    QString mInstruction;
    QString mPictureName;
    QSize mPictureSize;
    QHash<QString, QSize> mPictures; // sizes of the pictures that the text has named, by file name; empty for one that cannot be read
    qint64 mPixelsLeft = kMaximumPixels;
};

} // namespace quoddle
