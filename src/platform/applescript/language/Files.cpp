// SPDX-License-Identifier: MIT
#include "platform/applescript/language/Files.h"

#include "platform/base/Text.h"
#include "platform/base/UserFolders.h"

#include <filesystem>

namespace quoddle::language {

using namespace machine;

namespace {

constexpr std::u16string_view kStartupDisk = u"Macintosh HD";
constexpr std::string_view kScheme = "file://";

int hexDigit(char c) {
    return c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

std::string pathFromURL(std::string_view url) {
    if (!url.starts_with(kScheme))
        return std::string(url);
    url.remove_prefix(kScheme.size());
    url.remove_prefix(std::min(url.find('/'), url.size()));
    std::string path;
    for (std::size_t i = 0; i < url.size(); ++i) {
        if (url[i] == '%' && i + 2 < url.size() && hexDigit(url[i + 1]) >= 0 && hexDigit(url[i + 2]) >= 0) {
            path += static_cast<char>(hexDigit(url[i + 1]) * 16 + hexDigit(url[i + 2]));
            i += 2;
        } else {
            path += url[i];
        }
    }
    return path;
}

std::string urlFromPath(std::string_view path) {
    constexpr std::string_view kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/!$&'()*+,;=:@";
    constexpr char kHex[] = "0123456789ABCDEF";
    std::string url(kScheme);
    for (char c : path) {
        if (kPlain.find(c) != std::string_view::npos) {
            url += c;
        } else {
            url += '%';
            url += kHex[static_cast<unsigned char>(c) >> 4];
            url += kHex[static_cast<unsigned char>(c) & 15];
        }
    }
    return url;
}

std::string absolute(std::string_view path) {
    if (path.starts_with("~/") || path == "~")
        return homeFolder() + std::string(path.substr(1));
    std::error_code error;
    return path.starts_with('/') ? std::string(path) : (std::filesystem::current_path(error) / path).string();
}

} // namespace

bool isFile(Value value) {
    const Data* data = as<Data>(value);
    return data && (data->dataType == "alis"_4cc || data->dataType == "furl"_4cc || data->dataType == "file"_4cc);
}

std::string posixPath(const Data& file) {
    if (file.bytes.starts_with(kScheme) || file.bytes.starts_with('/'))
        return pathFromURL(file.bytes);
    // An alias record from a Mac has tagged items from byte 150 on; item 18 is the path on its volume.
    std::string_view record = file.bytes;
    for (std::size_t at = 150; at + 4 <= record.size();) {
        const int tag = static_cast<std::int16_t>(static_cast<unsigned char>(record[at]) << 8 | static_cast<unsigned char>(record[at + 1]));
        const std::size_t length =
            static_cast<std::size_t>(static_cast<unsigned char>(record[at + 2]) << 8 | static_cast<unsigned char>(record[at + 3]));
        if (tag < 0 || at + 4 + length > record.size())
            break;
        if (tag == 18)
            return "/" + std::string(record.substr(at + 4, length));
        at += 4 + length + length % 2;
    }
    return {};
}

std::string posixPathFromColons(std::u16string_view path) {
    if (path.starts_with(u'/'))
        return utf8FromUTF16(path);
    const auto colon = path.find(u':');
    std::string out = "/";
    if (colon == std::u16string_view::npos)
        return out + utf8FromUTF16(path);
    for (char c : utf8FromUTF16(path.substr(colon + 1)))
        out += c == ':' ? '/' : c == '/' ? ':' : c;
    return out;
}

std::u16string colonsFromPosixPath(std::string_view path) {
    std::u16string out(kStartupDisk);
    for (char16_t c : utf16FromUTF8(path))
        out += c == u'/' ? u':' : c == u':' ? u'/' : c;
    return out;
}

std::u16string hfsPath(const Data& file) {
    std::string path = posixPath(file);
    std::error_code error;
    if (!path.ends_with('/') && std::filesystem::is_directory(path, error))
        path += '/';
    return colonsFromPosixPath(path);
}

Value fileFromPath(Machine& machine, std::string_view path, FourCharCode kind) {
    const std::string whole = absolute(path);
    std::error_code error;
    if (kind == "alis"_4cc && !std::filesystem::exists(whole, error))
        return Value::failure();
    return Value::object(machine.heap().make<Data>(kind == "alis"_4cc ? "alis"_4cc : "furl"_4cc, urlFromPath(whole)));
}

Value makeFile(Machine& machine, Value from, FourCharCode kind) {
    if (const Text* text = as<Text>(from)) {
        const bool isPosix = kind == "psxf"_4cc || text->view().starts_with(u'/') || text->view().starts_with(u'~');
        return fileFromPath(machine, isPosix ? utf8FromUTF16(text->view()) : posixPathFromColons(text->view()), kind);
    }
    if (const Data* data = as<Data>(from); data && isFile(from)) {
        if ((kind == "alis"_4cc) == (data->dataType == "alis"_4cc))
            return from;
        return fileFromPath(machine, posixPath(*data), kind);
    }
    return Value::failure();
}

} // namespace quoddle::language
