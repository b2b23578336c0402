// SPDX-License-Identifier: MIT
#include "platform/osa/ScriptBundle.h"

#include "platform/base/File.h"
#include "platform/base/FolderReplacement.h"
#include "platform/base/Text.h"

#include <filesystem>

namespace quoddle {

namespace {

namespace fs = std::filesystem;

constexpr OSStatus kBadName = -37;
constexpr std::string_view kScript = "/Contents/Resources/Scripts/main.scpt";

std::string escaped(const std::string& text) {
    std::string out;
    for (char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        default:
            out += c;
        }
    }
    return out;
}

/// The file name without its extension, made safe for property lists and terminals. Empty when the name is nothing but the extension.
std::string bundleName(std::string_view path) {
    path.remove_prefix(path.rfind('/') + 1);
    std::u16string name = utf16FromUTF8(path.substr(0, path.rfind('.')));
    for (char16_t& c : name)
        if (c < 0x20 || (c >= 0x7F && c < 0xA0) || c >= 0xFFFD)
            c = u'-';
    return utf8FromUTF16(name);
}

/// A short hash that is the same at all times and on all machines.
std::string digestOf(std::string_view text) {
    std::uint32_t hash = 2166136261;
    for (char c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619;
    std::string digits;
    for (int shift = 28; shift >= 0; shift -= 4)
        digits += "0123456789abcdef"[hash >> shift & 0xF];
    return digits;
}

/// An identifier of letters, digits and dashes. A name with other characters, blanks aside, gets a digest, because different names may lose
/// those characters and become alike.
std::string identifierFrom(const std::string& name) {
    std::string word;
    bool isWhole = true;
    for (char c : name) {
        const char lower = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        const bool isPlain = (lower >= 'a' && lower <= 'z') || (lower >= '0' && lower <= '9');
        isWhole = isWhole && (isPlain || c == ' ' || c == '-');
        if (isPlain || !word.ends_with('-') || isWhole)
            word += isPlain ? lower : '-';
    }
    if (!isWhole)
        word += (word.ends_with('-') ? "" : "-") + digestOf(name);
    return "local.applet." + word;
}

std::string propertyList(const BundleOptions& options, const std::string& name, bool isApplet) {
    const auto text = [](const char* key, const std::string& value) {
        return std::string("\t<key>") + key + "</key>\n\t<string>" + escaped(value) + "</string>\n";
    };
    const auto flag = [](const char* key, bool value) {
        return std::string("\t<key>") + key + "</key>\n\t<" + (value ? "true" : "false") + "/>\n";
    };
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n";
    out += text("CFBundleIdentifier", identifierFrom(name)) + text("CFBundleName", name) + text("CFBundleInfoDictionaryVersion", "6.0");
    out += text("CFBundleShortVersionString", "1.0");
    if (isApplet) {
        out += text("CFBundleExecutable", name) + text("CFBundlePackageType", "APPL");
        out += flag("KVBStayOpen", options.stayOpen) + flag("KVBShowStartupScreen", options.startupScreen);
        if (options.isDroplet)
            out += "\t<key>CFBundleDocumentTypes</key>\n\t<array>\n\t\t<dict>\n\t\t\t<key>CFBundleTypeExtensions</key>\n\t\t\t<array>\n"
                   "\t\t\t\t<string>*</string>\n\t\t\t</array>\n\t\t\t<key>CFBundleTypeRole</key>\n\t\t\t<string>Viewer</string>\n\t\t</"
                   "dict>\n\t</array>\n";
    } else {
        out += text("CFBundlePackageType", "????");
    }
    return out + "</dict>\n</plist>\n";
}

OSStatus fill(const fs::path& root, const BundleOptions& options, const std::string& name, bool isApplet, std::string_view script) {
    std::error_code error;
    fs::create_directories(root / "Contents/Resources/Scripts", error);
    if (error)
        return statusFromErrno(error.value());
    OSStatus status = writeFile(root / "Contents/Resources/Scripts/main.scpt", script);
    if (status == noErr)
        status = writeFile(root / "Contents/Info.plist", propertyList(options, name, isApplet));
    if (status != noErr || !isApplet)
        return status;
    return writeLauncher(root / "Contents/Linux" / name, options.shell);
}

} // namespace

bool isBundleName(std::string_view path) {
    while (path.ends_with('/'))
        path.remove_suffix(1);
    return path.ends_with(".app") || path.ends_with(".scptd");
}

std::string scriptFileOf(const std::string& path) {
    std::error_code error;
    return fs::is_directory(path, error) ? path + std::string(kScript) : path;
}

std::string bundleOfScriptFile(std::string_view path) {
    return std::string(path.ends_with(kScript) ? path.substr(0, path.size() - kScript.size()) : std::string_view());
}

std::string launcherText(const std::string& shell) {
    std::string quoted;
    for (char c : shell)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    const std::string otherwise = shell.empty() ? "" : " || printf %s '" + quoted + "'";
    return "#!/bin/sh\n"
           "program=$(readlink -f -- \"$0\") || exit 1\n"
           "bundle=${program%/*/*/*}\n"
           "shell=${QUODDLE_SHELL:-$(command -v quoddle-shell" +
           otherwise +
           ")}\n"
           "if [ ! -x \"$shell\" ]; then\n"
           "\techo \"The applet shell was not found. Set QUODDLE_SHELL to the path of quoddle-shell, or put it on the PATH.\" >&2\n"
           "\texit 1\n"
           "fi\n"
           "exec \"$shell\" \"$bundle\" \"$@\"\n";
}

OSStatus writeLauncher(const std::filesystem::path& program, const std::string& shell) {
    std::error_code error;
    fs::create_directories(program.parent_path(), error);
    const OSStatus status = error ? statusFromErrno(error.value()) : writeFile(program, launcherText(shell));
    if (status == noErr)
        fs::permissions(program, fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec, fs::perm_options::add, error);
    return error ? statusFromErrno(error.value()) : status;
}

OSStatus writeBundle(const BundleOptions& options, std::string_view compiledScript) {
    std::string path = options.path;
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    const bool isApplet = path.ends_with(".app");
    const std::string name = bundleName(path);
    if (name.empty())
        return kBadName;
    const auto isBundle = [](const std::string& old) {
        std::error_code error;
        return fs::is_directory(old + "/Contents", error);
    };
    return replaceFolder(path, isBundle, [&](const std::string& folder) { return fill(folder, options, name, isApplet, compiledScript); });
}

} // namespace quoddle
