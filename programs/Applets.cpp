// SPDX-License-Identifier: MIT
#include "Applets.h"

#include "PackedApplets.h"
#include "platform/ae/transport/AEApplicationLookup.h"
#include "platform/base/Text.h"

#include <cstdlib>
#include <filesystem>
#include <unistd.h>

#include <QFile>

namespace quoddle::tool {

namespace {

namespace fs = std::filesystem;

std::shared_ptr<NSBundle> bundleAt(const std::string& path) {
    std::error_code error;
    if (!fs::is_directory(path + "/Contents", error))
        return nullptr;
    return NSBundle::bundleWithPath(QFile::decodeName(AECanonicalPath(path).c_str()));
}

} // namespace

Result<std::shared_ptr<NSBundle>, std::string> findApplet(const std::string& word) {
    if (auto bundle = bundleAt(word))
        return bundle;
    if (!isValidUTF8(word))
        return Failure{printable(QFile::decodeName(word.c_str())) + ": the path is not UTF-8; rename it"};
    std::error_code error;
    if (fs::exists(word, error))
        return Failure{printable(QFile::decodeName(word.c_str())) + ": this is not an applet bundle; give the folder that ends in .app"};
    if (word.find('/') == std::string::npos)
        if (const auto found = AEFindApplication(AEDesc("aprl"_4cc, word)))
            if (auto bundle = bundleAt(found->path))
                return bundle;
    const std::string shown = printable(QFile::decodeName(word.c_str()));
    if (isPackedAppletName(word))
        return Failure{shown + ": there is no such file"};
    return Failure{shown + ": no such applet; give the path of its .app folder"};
}

Result<std::string, std::string> findShell() {
    std::error_code error;
    const char* chosen = std::getenv("QUODDLE_SHELL");
    const std::string shell = chosen && *chosen ? fs::absolute(chosen, error).lexically_normal().string()
                                                : (fs::read_symlink("/proc/self/exe", error).parent_path() / "quoddle-shell").string();
    if (fs::is_regular_file(shell, error) && ::access(shell.c_str(), X_OK) == 0)
        return shell;
    return Failure{shell + ": the applet shell is not there; set QUODDLE_SHELL to the path of quoddle-shell"};
}

std::string printable(const QString& text) {
    QString out = text;
    for (QChar& c : out)
        if (c.category() == QChar::Other_Control || c.category() == QChar::Other_Format || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            c = u'?';
    return out.toStdString();
}

std::string unwritten(const QString& path, OSStatus status) {
    switch (status) {
    case -54:
        return printable(path) + ": no permission to write there";
    case -44:
        return printable(path) + ": the disk is write protected";
    case -34:
        return printable(path) + ": the disk is full";
    case -48:
        return printable(path) + ": a link that leads nowhere";
    case -120:
        return printable(path) + ": there is no such folder";
    default:
        return printable(path) + ": cannot be written (" + std::to_string(status) + ")";
    }
}

} // namespace quoddle::tool
