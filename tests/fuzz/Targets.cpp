// SPDX-License-Identifier: MIT
#include "fuzz/Targets.h"

#include "IconFile.h"
#include "platform/ae/AECoercion.h"
#include "platform/ae/AEFlatten.h"
#include "platform/ae/transport/AEFrame.h"
#include "platform/appkit/ImageFile.h"
#include "platform/appkit/rtf/RichText.h"
#include "platform/applescript/terminology/DictionaryTerms.h"
#include "platform/base/File.h"
#include "platform/base/SourceEncoding.h"
#include "platform/base/Text.h"
#include "platform/delivery/BundleArchive.h"
#include "platform/delivery/BundlePacking.h"
#include "platform/foundation/BinaryPlistBuilder.h"
#include "platform/foundation/DesktopEntry.h"
#include "platform/foundation/Plist.h"
#include "platform/osa/OSA.h"
#include "platform/preview/PictureStream.h"
#include "platform/preview/PreviewContents.h"
#include "platform/sdef/DictionaryReader.h"
#include "platform/updater/Appcast.h"
#include "platform/updater/NotesText.h"
#include "ScriptNeeds.h"
#include "ShellWords.h"

#include <filesystem>

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QThread>

namespace quoddle::fuzz {

namespace {

namespace fs = std::filesystem;
using Inputs = std::vector<std::string>;

constexpr std::size_t kMaximumSeed = std::size_t(1) << 20;

ComponentInstance language() {
    static const ComponentInstance sInstance = OpenDefaultComponent(kOSAComponentType, "ascr"_4cc);
    return sInstance;
}

/// The path of a temporary file with these bytes. Each call overwrites the file of the name.
QString fileWith(const std::string& bytes, const QString& name) {
    static const QTemporaryDir sFolder;
    const QString path = sFolder.filePath(name);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes.data(), static_cast<qint64>(bytes.size()));
    return path;
}

// --- Descriptors

AEDesc sampleEvent() {
    AEDesc record = AEDesc::record();
    (void)record.put("name"_4cc, AEDesc::ofUTF8("häl😀"));
    (void)record.put("list"_4cc, AEDesc::list({AEDesc::ofInt32(-1), AEDesc::ofDouble(2.5), AEDesc::list({}), AEDesc()}));
    AEDesc event = AEDesc::appleEvent("core"_4cc, "getd"_4cc, AEDesc::ofCurrentProcess());
    (void)event.put("----"_4cc, std::move(record));
    return event;
}

Inputs descriptors() {
    std::string bytes;
    (void)AEFlattenDesc(sampleEvent(), bytes);
    return {bytes};
}

void readDescriptor(const std::string& bytes) {
    AEDesc desc;
    if (AEUnflattenDesc(bytes, desc) == noErr) {
        std::string again;
        (void)AEFlattenDesc(desc, again);
        for (DescType type : {"utxt"_4cc, "long"_4cc, "doub"_4cc, "list"_4cc, "furl"_4cc, "ldt "_4cc})
            (void)AECoerced(desc, type);
    }
}

Inputs frames() {
    const std::string event = descriptors().front();
    return {AEFrame{.flags = AEFrame::kWantsReply, .id = 7, .payload = event}.bytes() +
            AEFrame{.kind = AEFrame::Kind::Reply, .id = 7}.bytes()};
}

void readFrames(const std::string& bytes) {
    AEFrameReader reader;
    AEFrame frame;
    for (std::size_t at = 0; at < bytes.size(); at += 100) {
        reader.append(std::string_view(bytes).substr(at, 100));
        auto complete = reader.next(frame);
        for (; complete && *complete; complete = reader.next(frame))
            readDescriptor(frame.payload);
        if (!complete)
            return;
    }
}

// --- Dictionaries of applications, and the form in which their terms are kept

const std::string kDictionaries = QUODDLE_TEST_SOURCE_DIR "/../resources/dictionaries";

Inputs dictionaries() {
    Inputs found;
    for (const char* name : {"/CocoaStandard.sdef", "/Reminders.sdef", "/Notes.sdef", "/Mail.sdef"})
        found.push_back(*readFile(kDictionaries + name, kMaximumSeed));
    return found;
}

void readDictionary(const std::string& bytes) {
    const auto dictionary = sdef::readDictionary(fileWith(bytes, QStringLiteral("input.sdef")).toStdString(), kDictionaries);
    if (dictionary)
        (void)termsOfDictionary(*dictionary)->compactForm();
}

Inputs compactTerms() {
    return {termsOfDictionary(*sdef::readDictionary(kDictionaries + "/Reminders.sdef", kDictionaries))->compactForm()};
}

void readCompactTerms(const std::string& bytes) {
    const auto terms = TermDictionary::fromCompactForm(bytes);
    for (const Term& term : terms ? terms->terms() : std::span<const Term>()) {
        (void)terms->startingWith(term.words);
        (void)terms->find(term.kind, term.code, term.group);
    }
}

// --- Scripts, which are read and shown but not run

Inputs sources() {
    Inputs found;
    for (const char* folder : {"/scripts", "/../examples"})
        for (const auto& entry : fs::recursive_directory_iterator(QUODDLE_TEST_SOURCE_DIR + std::string(folder)))
            if (entry.path().extension() == ".applescript")
                found.push_back(*readFile(entry.path(), kMaximumSeed));
    return found;
}

void show(OSAID script) {
    AEDesc text;
    (void)OSAGetSource(language(), script, "utxt"_4cc, text);
    (void)OSADisplay(language(), script, "utxt"_4cc, kOSAModeNull, text);
    (void)OSAGetHandlerNames(language(), kOSAModeNull, script, text);
    (void)OSAStore(language(), script, "scpt"_4cc, kOSAModeNull, text);
    (void)OSADispose(language(), script);
}

void compile(const std::string& bytes) {
    OSAID script = kOSANullScript;
    if (OSACompile(language(), AEDesc::ofText(utf16FromSourceBytes(bytes)), kOSAModeCompileIntoContext, script) == noErr)
        show(script);
}

Inputs compiledScripts() {
    Inputs images;
    for (const std::string& source : sources()) {
        OSAID script = kOSANullScript;
        AEDesc stored;
        if (OSACompile(language(), AEDesc::ofText(utf16FromSourceBytes(source)), kOSAModeCompileIntoContext, script) == noErr &&
            OSAStore(language(), script, "scpt"_4cc, kOSAModeNull, stored) == noErr)
            images.emplace_back(stored.data());
        (void)OSADispose(language(), script);
    }
    return images;
}

void load(const std::string& bytes) {
    OSAID script = kOSANullScript;
    if (OSALoad(language(), AEDesc("scpt"_4cc, bytes), kOSAModeNull, script) == noErr)
        show(script);
}

// --- The contents of bundles

Inputs propertyLists() {
    test::BinaryPlistBuilder builder;
    const int key = builder.addText("CFBundleName"), value = builder.addText("Tool");
    const int list = builder.addArray({key, value, key});
    const int top = builder.add(test::BinaryPlistBuilder::counted(0xD0, 2) + test::BinaryPlistBuilder::references({key, value, list, key}));
    return {
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict><key>a</key><array><integer>-7</integer><real>1e3</real>"
        "<true/><date>2024-02-29T10:00:00Z</date><data>AAEC</data><string>x &amp; &#233;</string></array></dict></plist>",
        "{ a = (1, \"two\\n\\U00e9\", <0fbd77 1c2735ae>); \"b c\" = { d = /* none */ e; }; }", builder.finished(top).toStdString()};
}

void readPropertyList(const std::string& bytes) {
    const auto list = Plist::read(QByteArray::fromStdString(bytes));
    if (list)
        (void)Plist::writeXML(*list);
}

Inputs stringsTables() {
    const QString text = QStringLiteral("/* note */\n\"Quit\" = \"Beenden\";\nopen = \"\\U00d6ffnen \\\"%@\\\"\\n\"; // rest\n\"same\";\n");
    const QByteArray wide("\xFF\xFE");
    return {text.toStdString(), (wide + QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2)).toStdString(),
            propertyLists().front(), propertyLists().back()};
}

void readStringsTable(const std::string& bytes) {
    (void)Plist::readStrings(QByteArray::fromStdString(bytes));
}

Inputs richTexts() {
    return {*readFile(QUODDLE_TEST_SOURCE_DIR "/../examples/Folder Watch/description.rtf", kMaximumSeed),
            "{\\rtf1\\ansi\\ansicpg932{\\fonttbl\\f0\\fcharset128 Mincho;\\f1\\fswiss "
            "Arial;}{\\colortbl;\\red255\\green0\\blue9;}\\f0\\fs24\\cf1 "
            "\\'93\\'fa\\u26412 ?\\uc2\\par\\pard\\qc\\li200{\\b b\\i i}{\\field{\\*\\fldinst{HYPERLINK \"https://a.b/\"}}{\\fldrslt l}}"
            "{{\\NeXTGraphic p.png \\width320 \\height200}\\'ac}{\\*\\x\\bin3 }}}}\\trowd\\cell\\row}"};
}

void readRTF(const std::string& bytes) {
    QTextDocument document;
    if (readRichText(fileWith(bytes, QStringLiteral("d.rtf")), document) == noErr)
        (void)document.toPlainText();
}

std::string pictureIn(const char* format, int side) {
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(0x80FF0000);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes.toStdString();
}

std::string withLength(std::string kind, const std::string& body) {
    return kind + test::BinaryPlistBuilder::bigEndian(body.size() + 8, 4).toStdString() + body;
}

void readNeeds(const std::string& bytes) {
    (void)tool::needsOf(bytes);
}

Inputs shellLines() {
    return {"A=1 env no-a \"$(no-b 'x' | `no-c`)\" 2>/dev/null || f() { no-d; }; if no-e; then no-g; fi"};
}

void readShellLine(const std::string& bytes) {
    (void)tool::commandsIn(bytes);
}

Inputs pictures() {
    Inputs found = {
        "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'><defs><linearGradient id='g'><stop offset='1'/></linearGradient>"
        "</defs><path d='M1 1 L9 9 A 3 3 0 0 1 5 5 Z' fill='url(#g)'/><use href='#g'/><text>t</text></svg>",
        withLength("icns", withLength("ic07", pictureIn("png", 128)) + withLength("is32", std::string(800, '\x90')))};
    for (const char* format : {"png", "jpeg", "bmp", "ico", "tiff", "webp", "icns"})
        if (std::string bytes = pictureIn(format, 16); !bytes.empty())
            found.push_back(std::move(bytes));
    return found;
}

void readPicture(const std::string& bytes) {
    (void)tool::pngFromIcon(bytes);
    ImageFile file(fileWith(bytes, QStringLiteral("picture")));
    for (int i = 0; i < std::min(file.count(), 4) && file.select(i); ++i)
        (void)file.read({64, 64});
}

Inputs pictureStreams() {
    const QImage picture(4, 3, QImage::Format_ARGB32_Premultiplied);
    const QByteArray pixels(static_cast<qsizetype>(picture.sizeInBytes()), 'p');
    const QByteArray one = PictureStream::head(picture) + pixels;
    return {(one + one + PictureStream::head(PictureStream::End::whole)).toStdString()};
}

void readPictureStream(const std::string& bytes) {
    PictureStream stream({100, 100}, 1000);
    for (qsizetype at = 0; at < static_cast<qsizetype>(bytes.size()); at += 7) {
        stream.feed(QByteArray::fromStdString(bytes.substr(static_cast<std::size_t>(at), 7)));
        while (const auto picture = stream.take())
            (void)picture->pixel(picture->width() - 1, picture->height() - 1);
    }
}

Inputs texts() {
    return {"plain\ntext \xc3\xa9\r\n" + std::string(9000, 'x'), std::string("\xff\xfe"
                                                                             "a\0\x3d\xd8",
                                                                             6)};
}

void readText(const std::string& bytes) {
    const std::atomic<bool> isCancelled = false;
    (void)previewContentsOfFile(fileWith(bytes, QStringLiteral("preview.txt")), isCancelled, QThread::currentThread());
}

Inputs desktopEntries() {
    return {"[Desktop Entry]\nType=Application\nName=A\\sB\\\\\n# c\nExec=\"/a b\" "
            "%F\nMimeType=a/b;c/d;\nX-Quoddle-Bundle=/a.app\n[Other]\nName=x\n"};
}

void readDesktopEntry(const std::string& bytes) {
    (void)desktopEntryValues(fileWith(bytes, QStringLiteral("e.desktop")));
}

// --- Updates

Inputs feeds() {
    return {"<?xml version='1.0'?><rss xmlns:s='urn:s'><channel><link>https://a.example/</link><item><s:version>2.0b1</s:version>"
            "<description><![CDATA[<p>New &amp; <b>bold</b></p>]]></description><enclosure url='a.zip' length='12' s:edSignature='c2ln' "
            "s:os='linux'/></item></channel></rss>"};
}

void readFeed(const std::string& bytes) {
    const auto feed = readAppcast(QByteArray::fromStdString(bytes), QUrl(QStringLiteral("https://a.example/feed.xml")));
    if (feed)
        if (const auto item = newestItem(*feed, QStringLiteral("1"), QStringLiteral("1")))
            (void)plainNotes(item->description);
    (void)plainNotes(QString::fromStdString(bytes));
}

/// One file in a bundle, as a zip archive without compression and as a tar archive.
Inputs archives() {
    const std::string name = "A.app/Contents/Info.plist", content = "content", link = "A.app/l";
    const auto number = [](std::size_t value, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i, value /= 256)
            text += static_cast<char>(value % 256);
        return text;
    };
    const std::string fields = number(20, 2) + number(0, 8) + number(0xFEC530A9, 4) + number(content.size(), 4) +
                               number(content.size(), 4) + number(name.size(), 2) + number(0, 2);
    const std::string local = "PK\3\4" + fields + name + content;
    const std::string central = "PK\1\2" + number(20, 2) + fields + number(0, 14) + name;
    const std::string end =
        "PK\5\6" + number(0, 4) + number(1, 2) + number(1, 2) + number(central.size(), 4) + number(local.size(), 4) + number(0, 2);
    const auto entry = [](std::string header, const std::string& mode, const std::string& size, const std::string& rest) {
        header.resize(100);
        header += mode;
        header.resize(124);
        header += size;
        header.resize(148);
        header += "        " + rest;
        header.resize(512);
        unsigned sum = 0;
        for (const char c : header)
            sum += static_cast<unsigned char>(c);
        std::string octal(6, '0');
        for (std::size_t i = 6; i-- > 0; sum /= 8)
            octal[i] = static_cast<char>('0' + sum % 8);
        return header.replace(148, 7, octal + '\0');
    };
    std::string block = content;
    block.resize(512);
    const std::string tar =
        entry(name, "0000644", "00000000007", "0") + block + entry(link, "0000777", "00000000000", "2Contents") + std::string(1024, '\0');
    return {local + central + end, tar};
}

void unpack(const std::string& bytes) {
    const QTemporaryDir folder;
    const QString archive = fileWith(bytes, QStringLiteral("archive"));
    (void)unpackBundle(archive, folder.path(), {.bytes = 1 << 20, .entries = 100});
    if (const auto bundle =
            unpackBundle(archive, folder.filePath(QStringLiteral("zip")), {.bytes = 1 << 20, .entries = 100, .onlyZip = true}))
        (void)packBundle(*bundle, folder.filePath(QStringLiteral("again")));
}

} // namespace

const std::vector<Target>& targets() {
    static const std::vector<Target> sTargets = {
        {"descriptor", descriptors, {"QAE1", "reco", "list", "obj ", "utxt"}, readDescriptor},
        {"frame", frames, {"QAE2", "QAE1"}, readFrames},
        {"source",
         sources,
         {"\n",
          " of ",
          "tell ",
          "end\n",
          "on f(x)\n",
          "{",
          "}",
          "(",
          ")",
          "\"",
          "«class abcd»",
          "|a|",
          "¬\n",
          "try\n",
          "repeat\n",
          "if x then\n",
          " & ",
          "with timeout of 1 second\n",
          "script s\n",
          "(*",
          "*)",
          "--",
          " as ",
          "every ",
          " whose ",
          "considering case\n",
          "1.0E+5",
          "99999999999"},
         compile},
        {"compiled", compiledScripts, {"FasdUAS 1.101.10"}, load},
        {"needs", compiledScripts, {"FasdUAS 1.101.10", "sysoexec"}, readNeeds},
        {"shell", shellLines, {"$(", "`", "'", "\"", "\\", "| ", "env ", "<<", "()", "case "}, readShellLine},
        {"dictionary",
         dictionaries,
         {"<xi:include href='CocoaStandard.sdef'", " xpointer='xpointer(/dictionary/suite)'/>", "<!DOCTYPE a [<!ENTITY b 'c'>]>",
          "<synonym ", "code='0x61626364'", "<suite>", "<class ", "</class>", "&amp;", "<type type='text' list='yes'/>"},
         readDictionary},
        {"terms", compactTerms, {std::string("\xff\xff\xff\xff"), std::string("\0\0\0\1", 4)}, readCompactTerms},
        {"plist",
         propertyLists,
         {"bplist00", "<dict>", "</dict>", "<array>", "<key>", "<!ENTITY a \"b\">", "&#x0;", "(", "{", "<", "\"\\U"},
         readPropertyList},
        {"strings", stringsTables, {"\"", "\\U", " = ", ";", "/*", "*/", "{", "<plist>"}, readStringsTable},
        {"rtf",
         richTexts,
         {"{", "}", "\\", "\\u-10179 ", "\\uc99999 ", "\\bin99999999 ", "\\'", "{\\fonttbl", "{\\*\\", "\\fs-1 ", "\\cf99999 ",
          "{\\NeXTGraphic ", "\\li-99999 "},
         readRTF},
        {"picture", pictures, {"icns", "\x89PNG\r\n\x1a\n", "IHDR", "<use href='#g'/>", "<svg>", "II*", "RIFF"}, readPicture},
        {"stream", pictureStreams, {"tcip", "ddne"}, readPictureStream},
        {"text", texts, {"\xef\xbb\xbf", "\xff\xfe", "\r\n", "\xf0\x9f"}, readText},
        {"feed",
         feeds,
         {"<item>", "</item>", "<!DOCTYPE rss [<!ENTITY a 'b'>]>", "<![CDATA[", "&a;", "<!--", "<script>", "&#x2603;", "<enclosure ", "'"},
         readFeed},
        {"archive",
         archives,
         {"PK\1\2", "PK\3\4", "../", "/", "A.app/", "ustar", "\x1f\x8b\x08", "BZh9",
          "\xfd"
          "7zXZ",
          "PK\6\6", "a.app/", "\xcc\x81"},
         unpack},
        {"entry", desktopEntries, {"[Desktop Entry]\n", "=", "\\"}, readDesktopEntry},
    };
    return sTargets;
}

} // namespace quoddle::fuzz
