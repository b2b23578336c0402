// SPDX-License-Identifier: MIT
#include "IconFile.h"

#include "platform/base/File.h"

#include <QFileInfo>
#include <QXmlStreamReader>

namespace quoddle::tool {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kMaximumFileSize = 16 << 20;
constexpr std::uint32_t kMaximumExtent = 1024;
constexpr std::uint32_t kWantedExtent = 256;
constexpr std::string_view kPNGSignature("\x89PNG\r\n\x1a\n", 8);

std::uint32_t numberAt(std::string_view bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = at; i < at + 4; ++i)
        number = number << 8 | static_cast<unsigned char>(bytes[i]);
    return number;
}

/// The width in pixels of a square PNG picture of a useful size; 0 for anything else.
std::uint32_t extentOf(std::string_view bytes) {
    if (bytes.size() < 33 || !bytes.starts_with(kPNGSignature) || bytes.substr(12, 4) != "IHDR")
        return 0;
    const std::uint32_t width = numberAt(bytes, 16);
    return width == numberAt(bytes, 20) && width <= kMaximumExtent ? width : 0;
}

/// Whether the first element of a document is that of a vector graphic.
bool isVectorGraphic(const std::string& bytes) {
    QXmlStreamReader reader(QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())));
    return reader.readNextStartElement() && reader.name() == "svg"_L1;
}

bool isBetter(std::uint32_t extent, std::uint32_t best) {
    if ((extent < kWantedExtent) != (best < kWantedExtent))
        return extent >= kWantedExtent;
    return extent < kWantedExtent ? extent > best : extent < best;
}

} // namespace

std::optional<std::string> pngFromIcon(std::string_view bytes) {
    if (extentOf(bytes) > 0)
        return std::string(bytes);
    if (!bytes.starts_with("icns"))
        return std::nullopt;
    std::string_view chosen;
    for (std::size_t at = 8; at + 8 <= bytes.size();) {
        const std::size_t size = numberAt(bytes, at + 4);
        if (size < 8 || size > bytes.size() - at)
            break;
        const std::string_view picture = bytes.substr(at + 8, size - 8);
        if (const std::uint32_t extent = extentOf(picture); extent > 0 && (chosen.empty() || isBetter(extent, extentOf(chosen))))
            chosen = picture;
        at += size;
    }
    return chosen.empty() ? std::nullopt : std::optional(std::string(chosen));
}

std::optional<Icon> iconOf(const NSBundle& bundle) {
    const QString name = bundle.infoDictionary().value(u"CFBundleIconFile"_s).toString();
    if (name.isEmpty() || name.contains(u'/'))
        return std::nullopt;
    for (const QString& type : {QString(), u"icns"_s, u"png"_s, u"svg"_s}) {
        const QString path = bundle.pathForResource(name, type);
        const auto bytes = path.isEmpty() ? Result<std::string, OSStatus>(Failure{fnfErr}) : readFile(path.toStdString(), kMaximumFileSize);
        if (!bytes)
            continue;
        if (auto png = pngFromIcon(*bytes))
            return Icon{std::move(*png), u"png"_s};
        if (path.endsWith(".svg"_L1, Qt::CaseInsensitive) && isVectorGraphic(*bytes))
            return Icon{*bytes, u"svg"_s};
    }
    return std::nullopt;
}

} // namespace quoddle::tool
