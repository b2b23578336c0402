// SPDX-License-Identifier: MIT
#include "DesktopFiles.h"

#include "platform/foundation/DesktopEntry.h"
#include "platform/foundation/Translations.h"

#include <QRegularExpression>
#include <QXmlStreamWriter>

namespace quoddle::tool {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMaximumTitleLength = 120;
constexpr auto kPackageMark = " Made by quoddle install "_L1;
constexpr auto kServiceMark = "# Made by quoddle install\n"_L1;

QString withBackslashes(const QString& text, QLatin1StringView before) {
    QString out;
    for (QChar c : text) {
        if (before.contains(c))
            out += u'\\';
        out += c;
    }
    return out;
}

/// One word of a command line, quoted for the program that reads the desktop file.
QString word(const QString& text) {
    return u'"' + withBackslashes(text, "\\\"`$"_L1) + u'"';
}

/// The first word of a command line. Some readers understand no quotes there, so it has them only when it needs them.
QString programWord(const QString& path) {
    static const QRegularExpression plain(u"^[A-Za-z0-9/_.+-]+$"_s);
    return plain.match(path).hasMatch() ? path : word(path);
}

/// A line with the key and the value. Line ends and tabs are written as escapes and other control characters become blanks, so that a value
/// cannot add lines.
QString line(const QString& key, const QString& value) {
    QString text = withBackslashes(value.trimmed(), "\\"_L1);
    text.replace(u'\n', u"\\n"_s).replace(u'\r', u"\\r"_s).replace(u'\t', u"\\t"_s);
    for (QChar& c : text)
        if (c.category() == QChar::Other_Control)
            c = u' ';
    return key + u'=' + text + u'\n';
}

/// Whether the character turns the direction of the text behind it, which would make a menu show another name.
bool isDirectionControl(QChar c) {
    return c == QChar(0x061C) || c == QChar(0x200E) || c == QChar(0x200F) || (c >= QChar(0x202A) && c <= QChar(0x202E)) ||
           (c >= QChar(0x2066) && c <= QChar(0x2069));
}

QString plainTitle(const QString& title) {
    QString plain;
    for (QChar c : title.left(kMaximumTitleLength))
        if (!isDirectionControl(c))
            plain += c == QChar::LineSeparator || c == QChar::ParagraphSeparator || c.category() == QChar::Other_Control ? u' ' : c;
    return plain.trimmed().isEmpty() ? u"Applet"_s : plain;
}

QString entryHead(const DesktopApplet& applet) {
    return u"[Desktop Entry]\nType=Application\nVersion=1.4\n"_s + line(u"Name"_s, plainTitle(applet.title));
}

} // namespace

std::string hiddenEntryText(const DesktopApplet& applet) {
    return (entryHead(applet) + u"Hidden=true\n"_s + line(kDesktopEntryBundleKey, applet.bundlePath)).toStdString();
}

std::string desktopEntryText(const DesktopApplet& applet) {
    const QString command = programWord(applet.shell) + u' ' + word(applet.bundlePath);
    QString text = entryHead(applet);
    text += line(u"Exec"_s, QString(command).replace(u'%', u"%%"_s) + u" %F"_s);
    if (!applet.icon.isEmpty())
        text += line(u"Icon"_s, applet.icon);
    QStringList types = applet.mimeTypes;
    for (const OwnType& type : applet.ownTypes)
        types << type.mimeType;
    if (!types.isEmpty())
        text += line(u"MimeType"_s, types.join(u';') + u';');
    text += u"Categories=Utility;\nDBusActivatable=true\nActions=quit;\n"_s;
    text += line(kDesktopEntryBundleKey, applet.bundlePath);
    // Desktops that do not send actions over the bus run this command.
    const QString quit = programWord(applet.tool) + u" quit "_s + word(applet.bundlePath);
    text += u"\n[Desktop Action quit]\n"_s;
    for (const QString& language : interfaceLanguages())
        text += line(language == "en"_L1 ? u"Name"_s : u"Name["_s + language + u']', textInLanguage(language, u"QuitButton"_s));
    text += line(u"Exec"_s, QString(quit).replace(u'%', u"%%"_s));
    return text.toStdString();
}

std::string serviceText(const DesktopApplet& applet) {
    return (kServiceMark + u"[D-BUS Service]\n"_s + line(u"Name"_s, applet.desktopName) +
            line(u"Exec"_s, word(applet.shell) + u" --activated "_s + word(applet.bundlePath)))
        .toStdString();
}

std::string mimePackageText(const DesktopApplet& applet) {
    QString text;
    QXmlStreamWriter writer(&text);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeComment(kPackageMark);
    writer.writeDefaultNamespace(u"http://www.freedesktop.org/standards/shared-mime-info"_s);
    writer.writeStartElement(u"mime-info"_s);
    for (const OwnType& type : applet.ownTypes) {
        writer.writeStartElement(u"mime-type"_s);
        writer.writeAttribute(u"type"_s, type.mimeType);
        writer.writeTextElement(u"comment"_s, plainTitle(type.comment.isEmpty() ? applet.title + u" document"_s : type.comment));
        if (!applet.icon.isEmpty()) {
            writer.writeEmptyElement(u"icon"_s);
            writer.writeAttribute(u"name"_s, applet.desktopName);
        }
        writer.writeEmptyElement(u"glob"_s);
        writer.writeAttribute(u"pattern"_s, u"*."_s + type.extension);
        writer.writeEndElement();
    }
    writer.writeEndDocument();
    return text.toStdString();
}

bool isMIMEPackageOfOurs(std::string_view text) {
    return text.substr(0, 200).find(kPackageMark.data()) != std::string_view::npos;
}

bool isServiceOfOurs(std::string_view text) {
    return text.starts_with(std::string_view(kServiceMark.data(), static_cast<std::size_t>(kServiceMark.size())));
}

} // namespace quoddle::tool
