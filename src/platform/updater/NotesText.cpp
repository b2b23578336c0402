// SPDX-License-Identifier: MIT
#include "platform/updater/NotesText.h"

#include <optional>

#include <QHash>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestNotes = 200'000; // characters that are read
constexpr qsizetype kLongestEntity = 10;
const QString kBullet = QStringLiteral("\u2022 ");

bool isTagStart(QStringView text, qsizetype at) {
    if (at + 1 >= text.size() || text[at] != u'<')
        return false;
    const QChar next = text[at + 1];
    return next == u'/' || next == u'!' || next == u'?' || (next < QChar(0x80) && next.isLetter());
}

QString nameOfTag(QStringView tag) {
    qsizetype end = 0;
    while (end < tag.size() && (tag[end].isLetterOrNumber() || (end == 0 && tag[end] == u'/')))
        ++end;
    return tag.left(end).toString().toLower();
}

std::optional<char32_t> characterNamed(QStringView name) {
    static const QHash<QString, char32_t> sNames = {
        {u"amp"_s, U'&'},        {u"lt"_s, U'<'},         {u"gt"_s, U'>'},          {u"quot"_s, U'"'},        {u"apos"_s, U'\''},
        {u"nbsp"_s, U' '},       {u"ndash"_s, U'\u2013'}, {u"mdash"_s, U'\u2014'},  {u"hellip"_s, U'\u2026'}, {u"bull"_s, U'\u2022'},
        {u"lsquo"_s, U'\u2018'}, {u"rsquo"_s, U'\u2019'}, {u"ldquo"_s, U'\u201C'},  {u"rdquo"_s, U'\u201D'},  {u"copy"_s, U'\u00A9'},
        {u"trade"_s, U'\u2122'}, {u"reg"_s, U'\u00AE'},   {u"middot"_s, U'\u00B7'}, {u"rarr"_s, U'\u2192'},   {u"times"_s, U'\u00D7'}};
    if (name.startsWith(u'#')) {
        const bool isHexadecimal = name.size() > 1 && name[1].toLower() == u'x';
        bool isNumber = false;
        const uint code = name.mid(isHexadecimal ? 2 : 1).toUInt(&isNumber, isHexadecimal ? 16 : 10);
        const bool isCharacter = isNumber && (code >= 0x20 || code == '\n') && code <= 0x10FFFF && !(code >= 0xD800 && code <= 0xDFFF);
        return isCharacter ? std::optional(static_cast<char32_t>(code)) : std::nullopt;
    }
    const auto found = sNames.constFind(name.toString());
    return found != sNames.cend() ? std::optional(*found) : std::nullopt;
}

/// Removes markup in one pass from the beginning to the end.
class MarkupRemover {
public:
    explicit MarkupRemover(QStringView source) : mSource(source) {}

    QString run() {
        while (mAt < mSource.size()) {
            if (isTagStart(mSource, mAt))
                takeTag();
            else if (mSource[mAt] != u'&' || !takeEntity())
                addCharacter(mSource[mAt++]);
        }
        return mText.trimmed();
    }

private:
    void takeTag() {
        const bool isComment = mSource.mid(mAt).startsWith("<!--"_L1);
        const qsizetype end = mSource.indexOf(isComment ? "-->"_L1 : ">"_L1, mAt);
        const QString name = isComment ? QString() : nameOfTag(mSource.mid(mAt + 1));
        mAt = end < 0 ? mSource.size() : end + (isComment ? 3 : 1);
        if (name == "script"_L1 || name == "style"_L1 || name == "title"_L1)
            skipTo("</"_L1 + name);
        else if (name == "br"_L1)
            mText += u'\n';
        else if (name == "pre"_L1 || name == "/pre"_L1)
            mIsPreformatted = name == "pre"_L1;
        else if (name == "li"_L1)
            beginItem();
        else if (isParagraph(name))
            beginLine(2);
        else if (isLine(name))
            beginLine(1);
    }

    static bool isParagraph(QStringView name) {
        const QStringView bare = name.startsWith(u'/') ? name.mid(1) : name;
        return bare == "p"_L1 || bare == "ul"_L1 || bare == "ol"_L1 || bare == "table"_L1 || bare == "hr"_L1 || bare == "blockquote"_L1 ||
               (bare.size() == 2 && bare[0] == u'h' && bare[1].isDigit());
    }

    static bool isLine(QStringView name) {
        const QStringView bare = name.startsWith(u'/') ? name.mid(1) : name;
        return bare == "div"_L1 || bare == "tr"_L1 || bare == "li"_L1 || bare == "dt"_L1 || bare == "dd"_L1 || bare == "section"_L1;
    }

    void skipTo(const QString& tag) {
        const qsizetype end = mSource.indexOf(tag, mAt, Qt::CaseInsensitive);
        mAt = end < 0 ? mSource.size() : end;
    }

    /// Takes an entity such as "&amp;". False when the text is an ordinary ampersand.
    bool takeEntity() {
        const qsizetype end = mSource.mid(mAt, kLongestEntity + 2).indexOf(u';');
        if (end < 2)
            return false;
        const auto character = characterNamed(mSource.mid(mAt + 1, end - 1));
        if (!character)
            return false;
        mText += QString::fromUcs4(&*character, 1);
        mAt += end + 1;
        return true;
    }

    void addCharacter(QChar character) {
        if (mIsPreformatted || !character.isSpace())
            mText += character;
        else if (!mText.isEmpty() && !mText.back().isSpace())
            mText += u' ';
    }

    void beginItem() {
        beginLine(1);
        if (!mText.endsWith(kBullet))
            mText += kBullet;
    }

    /// Ends the line and adds the given number of line ends.
    void beginLine(int lineEnds) {
        while (mText.endsWith(u' ') && !mText.endsWith(kBullet))
            mText.chop(1);
        if (mText.isEmpty() || mText.endsWith(kBullet))
            return;
        while (!mText.endsWith(QString(lineEnds, u'\n')))
            mText += u'\n';
    }

    const QStringView mSource;
    qsizetype mAt = 0;
    QString mText;
    bool mIsPreformatted = false;
};

bool hasMarkup(QStringView notes) {
    const qsizetype last = notes.lastIndexOf(u'>');
    for (qsizetype at = notes.indexOf(u'<'); at >= 0 && at < last; at = notes.indexOf(u'<', at + 1))
        if (isTagStart(notes, at))
            return true;
    return false;
}

} // namespace

QString plainNotes(const QString& notes) {
    const QString read = notes.left(kLongestNotes);
    QString text = hasMarkup(read) ? MarkupRemover(read).run() : read.trimmed();
    text.remove(QChar::ObjectReplacementCharacter);
    return text;
}

} // namespace quoddle
