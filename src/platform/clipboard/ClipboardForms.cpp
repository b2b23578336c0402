// SPDX-License-Identifier: MIT
#include "platform/clipboard/ClipboardForms.h"

#include "platform/ae/AECoercion.h"
#include "platform/ae/AEFlatten.h"
#include "platform/appkit/rtf/RichText.h"
#include "platform/base/FileURL.h"
#include "platform/base/TextArgument.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string>

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QTextDocument>

namespace quoddle {

using namespace Qt::StringLiterals;

namespace {

constexpr auto kOwnType = "application/x-quoddle-forms"_L1;
constexpr auto kPlainType = "text/plain"_L1;
constexpr auto kFilesType = "text/uri-list"_L1;
constexpr auto kFileManagerType = "x-special/gnome-copied-files"_L1; // the type that file managers read
constexpr qsizetype kLongestRichText = qsizetype{32} << 20;
constexpr std::size_t kMostFiles = 100'000;

/// The MIME types of a form; the usual one comes first.
struct Kind {
    DescType form;
    const char* imageFormat; // null for text
    std::span<const QLatin1StringView> types;
};
constexpr QLatin1StringView kPlainTypes[] = {"text/plain;charset=utf-8"_L1, kPlainType, "UTF8_STRING"_L1};
constexpr QLatin1StringView kRTFTypes[] = {"text/rtf"_L1, "application/rtf"_L1, "text/richtext"_L1};
constexpr QLatin1StringView kHTMLTypes[] = {"text/html"_L1};
constexpr QLatin1StringView kPNGTypes[] = {"image/png"_L1};
constexpr QLatin1StringView kTIFFTypes[] = {"image/tiff"_L1};
constexpr QLatin1StringView kJPEGTypes[] = {"image/jpeg"_L1};
constexpr QLatin1StringView kGIFTypes[] = {"image/gif"_L1};
constexpr QLatin1StringView kBMPTypes[] = {"image/bmp"_L1};
constexpr Kind kKinds[] = {
    {"utxt"_4cc, nullptr, kPlainTypes}, {"RTF "_4cc, nullptr, kRTFTypes}, {"HTML"_4cc, nullptr, kHTMLTypes}, {"PNGf"_4cc, "png", kPNGTypes},
    {"TIFF"_4cc, "tiff", kTIFFTypes},   {"JPEG"_4cc, "jpeg", kJPEGTypes}, {"GIFf"_4cc, "gif", kGIFTypes},    {"BMPf"_4cc, "bmp", kBMPTypes},
};

const Kind* kindOf(DescType form) {
    const auto found = std::find_if(std::begin(kKinds), std::end(kKinds), [form](const Kind& kind) { return kind.form == form; });
    return found == std::end(kKinds) ? nullptr : found;
}

bool isPicture(const Kind* kind) {
    return kind && kind->imageFormat;
}

QByteArray bytesOf(const AEDesc& desc) {
    return {desc.data().data(), static_cast<qsizetype>(desc.data().size())};
}

AEDesc descOf(DescType type, const QByteArray& bytes) {
    return {type, {bytes.constData(), static_cast<std::size_t>(bytes.size())}};
}

QByteArray convertedPicture(QByteArray bytes, const char* format) {
    QBuffer source(&bytes);
    const QImage image = QImageReader(&source).read();
    QByteArray result;
    QBuffer target(&result);
    return !image.isNull() && QImageWriter(&target, format).write(image) ? result : QByteArray();
}

QString plainTextOf(const QByteArray& bytes, DescType form) {
    QTextDocument document;
    if (bytes.size() > kLongestRichText)
        return {};
    if (form == "RTF "_4cc)
        (void)readRichTextData(bytes, document);
    else
        document.setHtml(QString::fromUtf8(bytes));
    return document.toPlainText();
}

/// The paths in a form that is a file or a list of files; empty for any other form.
std::vector<std::string> pathsOf(const AEDesc& form) {
    const auto isFile = [](const AEDesc& desc) { return desc.type() == "furl"_4cc || desc.type() == "alis"_4cc; };
    const auto items = form.isList() ? form.items() : std::span(&form, 1);
    std::vector<std::string> paths;
    for (const AEDesc& item : items)
        if (auto path = isFile(item) ? item.asFilePath() : std::nullopt)
            paths.push_back(std::move(*path));
    return paths.size() == items.size() ? paths : std::vector<std::string>();
}

class Collector {
public:
    void add(const QString& type, const QByteArray& bytes) {
        if (std::none_of(data.begin(), data.end(), [&](const auto& item) { return item.first == type; }))
            data.emplace_back(type, bytes);
    }
    void addText(const QByteArray& text) { add(kPlainType, text); }
    void addFiles(const std::vector<std::string>& paths) {
        QByteArray list, forFileManagers = "copy", text;
        for (const std::string& path : paths) {
            const QByteArray url = QByteArray::fromStdString(fileURLFromPath(path));
            list += url + "\r\n";
            forFileManagers += "\n" + url;
            text += (text.isEmpty() ? "" : "\n") + QByteArray::fromStdString(path);
        }
        add(kFilesType, list);
        add(kFileManagerType, forFileManagers);
        addText(text);
    }
    void addForm(const AEDesc& form) {
        if (const auto paths = pathsOf(form); !paths.empty())
            return addFiles(paths);
        const Kind* kind = kindOf(form.type());
        if (kind && kind->form != "utxt"_4cc) {
            for (const QLatin1StringView type : kind->types)
                add(type, bytesOf(form));
        } else if (const auto text = AECoerced(form, "utf8"_4cc)) {
            addText(bytesOf(*text));
        }
    }
    /// Adds simpler types for programs that do not know the form itself.
    void addSimpler(const AEDesc& form) {
        if (form.type() == "RTF "_4cc || form.type() == "HTML"_4cc)
            addText(plainTextOf(bytesOf(form), form.type()).toUtf8());
        else if (isPicture(kindOf(form.type())))
            if (const QByteArray png = convertedPicture(bytesOf(form), "png"); !png.isEmpty())
                add(kPNGTypes[0], png);
    }

    ClipboardData data;
};

std::vector<AEDesc> filesOf(const QByteArray& list) {
    std::vector<AEDesc> files;
    for (const QByteArray& line : list.split('\n'))
        if (const auto path = pathFromFileURL(line.trimmed().toStdString()); path && files.size() < kMostFiles)
            files.push_back(AEDesc::ofFilePath(*path));
    return files;
}

class Reader {
public:
    Reader(const QStringList& offered, const std::function<QByteArray(const QString&)>& get) : mOffered(offered), mGet(get) {}

    /// Reads the form of our own that a script's copy has. False when another program has copied.
    bool readOwn() {
        AEDesc list;
        const QByteArray bytes = mOffered.contains(kOwnType) ? mGet(kOwnType) : QByteArray();
        if (AEUnflattenDesc({bytes.constData(), static_cast<std::size_t>(bytes.size())}, list) != noErr || list.count() == 0)
            return false;
        forms.assign(list.items().begin(), list.items().end());
        return !forms.empty();
    }
    void readFiles() {
        if (!mOffered.contains(kFilesType))
            return;
        const QByteArray list = mGet(kFilesType);
        const auto files = filesOf(list);
        if (files.empty() && !mOffered.contains(kPlainType)) // URLs of other things than files
            addText(list.trimmed());
        if (files.size() > 1)
            forms.push_back(AEDesc::list(files));
        if (!files.empty())
            forms.push_back(files.front());
    }
    bool read(const Kind& kind) {
        for (const QLatin1StringView type : kind.types) {
            if (!mOffered.contains(type))
                continue;
            const QByteArray bytes = mGet(type);
            if (kind.form == "utxt"_4cc) {
                addText(bytes);
            } else if (!bytes.isEmpty()) {
                forms.push_back(descOf(kind.form, bytes));
            }
            return true;
        }
        return false;
    }
    void readPictureAs(const Kind& wanted) {
        if (read(wanted))
            return;
        for (const Kind& kind : kKinds) {
            if (!kind.imageFormat || !read(kind) || forms.empty() || forms.back().type() != kind.form)
                continue;
            const QByteArray converted = convertedPicture(bytesOf(forms.back()), wanted.imageFormat);
            if (converted.isEmpty())
                continue;
            forms.push_back(descOf(wanted.form, converted));
            return;
        }
    }

    std::vector<AEDesc> forms;

private:
    void addText(const QByteArray& utf8) {
        const QString text = QString::fromUtf8(utf8);
        forms.push_back(AEDesc::ofText(TextArgument(text).view()));
    }

    const QStringList& mOffered;
    const std::function<QByteArray(const QString&)>& mGet;
};

} // namespace

ClipboardData dataFromForms(const std::vector<AEDesc>& forms) {
    Collector collector;
    for (const AEDesc& form : forms)
        collector.addForm(form);
    for (const AEDesc& form : forms)
        collector.addSimpler(form);
    std::string bytes;
    if (AEFlattenDesc(AEDesc::list(forms), bytes) == noErr)
        collector.add(kOwnType, QByteArray::fromStdString(bytes));
    return std::move(collector.data);
}

std::vector<AEDesc> formsFromData(const QStringList& offered, const std::function<QByteArray(const QString& type)>& get, DescType wanted) {
    Reader reader(offered, get);
    const Kind* wantedKind = kindOf(wanted);
    const bool isOwn = reader.readOwn();
    if (isPicture(wantedKind) &&
        std::none_of(reader.forms.begin(), reader.forms.end(), [wanted](const AEDesc& form) { return form.type() == wanted; }))
        reader.readPictureAs(*wantedKind);
    if (isOwn || isPicture(wantedKind))
        return std::move(reader.forms);
    reader.readFiles();
    for (const Kind& kind : kKinds)
        if (!wanted || !kind.imageFormat)
            reader.read(kind);
    return std::move(reader.forms);
}

} // namespace quoddle
