// SPDX-License-Identifier: MIT
#include "AppletAdoption.h"

#include "Applets.h"
#include "platform/base/File.h"
#include "platform/base/FolderReplacement.h"
#include "platform/foundation/Plist.h"
#include "platform/osa/ScriptBundle.h"
#include "ScriptTool.h"

#include <filesystem>

namespace quoddle::tool {

namespace fs = std::filesystem;
using namespace Qt::StringLiterals;

namespace {

constexpr const char* kInfo = "Contents/Info.plist";
constexpr const char* kPrograms = "Contents/Linux";
constexpr std::size_t kLargestLauncher = 64 << 10;

/// A setting of ours and the one of Macs that it follows. Both are off where the bundle has neither; without a key of its own an applet
/// would show its startup screen.
constexpr struct {
    const char *own, *original;
} kSettings[] = {{"KVBStayOpen", "OSAAppletStayOpen"}, {"KVBShowStartupScreen", "OSAAppletShowStartupScreen"}};

/// The start script has the name of the bundle's executable, by which other programs find it.
std::string launcherName(const QVariantMap& info, const fs::path& bundle) {
    const std::string name = info.value(u"CFBundleExecutable"_s).toString().toStdString();
    const bool isPlain = !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
    return isPlain ? name : bundle.stem().string();
}

/// The part of the bundle that is in the way of what has to be written and is not ours to replace; empty when there is none.
std::string obstacleIn(const fs::path& folder, const fs::path& program) {
    std::error_code error;
    for (const char* part : {"Contents", kPrograms})
        if (const auto kind = fs::symlink_status(folder / part, error); fs::exists(kind) && !fs::is_directory(kind))
            return part;
    for (const fs::path& part : {fs::path(kInfo), program})
        if (const auto kind = fs::symlink_status(folder / part, error); fs::exists(kind) && !fs::is_regular_file(kind))
            return part.string();
    const auto old = readFile(folder / program, kLargestLauncher);
    const bool isForeign = fs::exists(folder / program, error) && (!old || old->find("QUODDLE_SHELL") == std::string::npos);
    return isForeign ? program.string() : "";
}

} // namespace

Result<std::vector<std::string>, std::string> adopt(const NSBundle& bundle, const std::string& shell) {
    const fs::path folder = bundle.bundlePath().toStdString();
    const std::string shown = printable(bundle.bundlePath());
    std::error_code error;
    if (!fs::is_regular_file(scriptFileOf(folder.string()), error))
        return Failure{shown + ": this is no applet: it has no script at Contents/Resources/Scripts/main.scpt"};
    const auto read = Plist::readFile(QString::fromStdString((folder / kInfo).string()));
    if (!read || read->typeId() != QMetaType::QVariantMap)
        return Failure{shown + ": its property list (" + kInfo + ") cannot be read"};
    QVariantMap info = read->toMap();
    std::vector<std::string> added;
    for (const auto& [own, original] : kSettings) {
        if (info.contains(QLatin1StringView(own)))
            continue;
        const bool value = boolValue(info.value(QLatin1StringView(original)));
        info.insert(QLatin1StringView(own), value);
        added.push_back(std::string(own) + " = " + (value ? "true" : "false"));
    }
    if (!info.contains(u"CFBundleName"_s)) {
        info.insert(u"CFBundleName"_s, bundle.name());
        added.push_back("CFBundleName = " + printable(bundle.name()));
    }
    const bool changesInfo = !added.empty();
    const fs::path program = fs::path(kPrograms) / launcherName(info, folder);
    if (const std::string obstacle = obstacleIn(folder, program); !obstacle.empty())
        return Failure{shown + ": " + printable(QString::fromStdString(obstacle)) +
                       " is a link or somebody else's; put a copy or nothing in its place first"};
    const std::string launcher = launcherText(shell);
    if (const auto old = readFile(folder / program, kLargestLauncher); !old || *old != launcher)
        added.push_back("start script " + printable(QString::fromStdString(program.string())));
    else if (!changesInfo)
        return added;
    const auto bytes = Plist::writeXML(info);
    if (!bytes)
        return Failure{shown + ": its property list cannot be written again: " + bytes.error().toStdString()};
    const auto isBundle = [](const std::string& old) { return fs::is_regular_file(scriptFileOf(old)); };
    const OSStatus status = replaceFolder(folder.string(), isBundle, [&](const std::string& made) {
        std::error_code failed;
        fs::create_directories(fs::path(made) / "Contents", failed);
        OSStatus written = failed ? statusFromErrno(failed.value()) : static_cast<OSStatus>(noErr);
        if (changesInfo && written == noErr)
            written = writeFile(fs::path(made) / kInfo, bytes->toStdString());
        return written == noErr ? writeLauncher(fs::path(made) / program, shell) : written;
    });
    if (status != noErr)
        return Failure{shown + ": " + messageForWriting(status)};
    return added;
}

} // namespace quoddle::tool
