// SPDX-License-Identifier: MIT
#include "platform/additions/Bundle.h"

#include "platform/additions/FileParameter.h"
#include "platform/additions/StandardAdditions.h"
#include "platform/base/File.h"
#include "platform/base/Text.h"

#include <cstdlib>
#include <filesystem>
#include <mutex>

namespace quoddle {

namespace {

std::mutex pathMutex;
std::string pathOfApplication;

} // namespace

void setApplicationPath(std::string path) {
    const std::lock_guard lock(pathMutex);
    pathOfApplication = std::move(path);
}

namespace additions {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestTable = std::size_t(16) << 20;

void addLanguage(std::vector<std::string>& folders, std::string_view locale) {
    locale = locale.substr(0, locale.find_first_of(".@"));
    if (locale.empty() || locale == "C" || locale == "POSIX" || locale.find('/') != std::string_view::npos)
        return;
    folders.push_back(std::string(locale) + ".lproj");
    if (const std::size_t country = locale.find('_'); country != std::string_view::npos) {
        std::string dashed(locale);
        dashed[country] = '-';
        folders.push_back(dashed + ".lproj");
        folders.push_back(std::string(locale.substr(0, country)) + ".lproj");
    }
}

std::vector<std::string> languageFolders() {
    std::vector<std::string> folders{""};
    std::string_view list;
    if (const char* languages = std::getenv("LANGUAGE"))
        list = languages;
    for (; !list.empty(); list.remove_prefix(std::min(list.find(':') + 1, list.size()))) {
        addLanguage(folders, list.substr(0, list.find(':')));
        if (list.find(':') == std::string_view::npos)
            break;
    }
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const char* locale = std::getenv(variable); locale && *locale) {
            addLanguage(folders, locale);
            break;
        }
    for (const char* folder : {"en.lproj", "English.lproj", "Base.lproj"})
        folders.emplace_back(folder);
    return folders;
}

bool staysInside(const fs::path& relative) {
    if (relative.is_absolute())
        return false;
    for (const fs::path& part : relative)
        if (part == "..")
            return false;
    return true;
}

/// Reads a table from left to right.
class TableReader {
public:
    explicit TableReader(std::u16string_view source) : mRest(source) {}

    /// A key or a text: between quotes, or a bare word. Nothing at the end and where there is none.
    std::optional<std::u16string> string() {
        skipBlanks();
        if (!take(u"\""))
            return word();
        std::u16string text;
        while (!mRest.empty() && mRest.front() != u'"')
            text += character();
        return take(u"\"") ? std::optional(text) : std::nullopt;
    }
    bool take(std::u16string_view mark) {
        skipBlanks();
        if (!mRest.starts_with(mark))
            return false;
        mRest.remove_prefix(mark.size());
        return true;
    }

private:
    void skipBlanks() {
        while (!mRest.empty()) {
            if (mRest.front() <= u' ')
                mRest.remove_prefix(1);
            else if (mRest.starts_with(u"//"))
                mRest.remove_prefix(std::min(mRest.find_first_of(u"\r\n"), mRest.size()));
            else if (mRest.starts_with(u"/*"))
                mRest.remove_prefix(std::min(mRest.find(u"*/", 2), mRest.size() - 2) + 2);
            else
                return;
        }
    }
    std::optional<std::u16string> word() {
        const std::size_t end = std::min(mRest.find_first_of(u" \t\r\n=;\""), mRest.size());
        std::u16string text(mRest.substr(0, end));
        mRest.remove_prefix(end);
        return text.empty() ? std::nullopt : std::optional(text);
    }
    char16_t character() {
        const char16_t first = mRest.front();
        mRest.remove_prefix(1);
        if (first != u'\\' || mRest.empty())
            return first;
        const char16_t escaped = mRest.front();
        mRest.remove_prefix(1);
        switch (escaped) {
        case u'n':
            return u'\n';
        case u'r':
            return u'\r';
        case u't':
            return u'\t';
        case u'U':
        case u'u': {
            char16_t code = 0;
            for (int i = 0; i < 4 && !mRest.empty() && mRest.front() < 0x80 && std::isxdigit(mRest.front()); ++i) {
                const char16_t digit = mRest.front() | 0x20; // of letters: lower case
                code = static_cast<char16_t>(code * 16 + (digit >= u'a' ? digit - u'a' + 10 : digit - u'0'));
                mRest.remove_prefix(1);
            }
            return code;
        }
        default:
            return escaped;
        }
    }

    std::u16string_view mRest;
};

} // namespace

std::string applicationPath() {
    {
        const std::lock_guard lock(pathMutex);
        if (!pathOfApplication.empty())
            return pathOfApplication;
    }
    std::error_code error;
    const std::string program = fs::read_symlink("/proc/self/exe", error).string();
    const std::size_t contents = program.rfind("/Contents/");
    return contents == std::string::npos ? program : program.substr(0, contents);
}

std::optional<std::string> bundleParameter(const AEDesc& event) {
    return event.find("in B"_4cc) ? fileParameter(event, "in B"_4cc) : applicationPath();
}

std::optional<std::string> resourceInBundle(const std::string& bundle, std::string_view folder, std::string_view name) {
    if (!staysInside(folder) || !staysInside(name))
        return std::nullopt;
    std::error_code error;
    for (const std::string& language : languageFolders()) {
        const fs::path candidate = fs::path(bundle) / "Contents" / "Resources" / language / folder / name;
        if (fs::exists(candidate, error))
            return candidate.lexically_normal().string();
    }
    return std::nullopt;
}

std::vector<std::u16string> textsOfTable(std::u16string_view source) {
    std::vector<std::u16string> texts;
    TableReader reader(source);
    while (auto key = reader.string()) {
        auto text = reader.take(u"=") ? reader.string() : std::optional(*key); // a key alone stands for itself
        if (!text || !reader.take(u";"))
            break;
        texts.push_back(std::move(*key));
        texts.push_back(std::move(*text));
    }
    return texts;
}

std::optional<std::u16string> localizedText(const std::string& bundle, std::string_view table, std::u16string_view key) {
    const auto file = resourceInBundle(bundle, "", std::string(table) + ".strings");
    const auto bytes = file ? readFile(*file, kLargestTable) : Result<std::string, OSStatus>(Failure{fnfErr});
    if (!bytes)
        return std::nullopt;
    const std::vector<std::u16string> texts = textsOfTable(utf16FromSourceBytes(*bytes));
    for (std::size_t i = 0; i + 1 < texts.size(); i += 2)
        if (texts[i] == key)
            return texts[i + 1];
    return std::nullopt;
}

} // namespace additions

} // namespace quoddle
