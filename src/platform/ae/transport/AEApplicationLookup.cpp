// SPDX-License-Identifier: MIT
#include "platform/ae/transport/AEApplicationLookup.h"

#include "platform/ae/AEFlatten.h"
#include "platform/base/File.h"
#include "platform/base/UserFolders.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace quoddle {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMaximumListSize = 1 << 20;
constexpr std::size_t kMaximumRemembered = 500;
constexpr std::string_view kApplicationExtension = ".app";

std::string rememberedPath() {
    return dataFolder() + "/quoddle/applications";
}

std::vector<AERunningApplication> remembered() {
    std::vector<AERunningApplication> applications;
    const auto bytes = readFile(rememberedPath(), kMaximumListSize);
    AEDesc list;
    if (!bytes || AEUnflattenDesc(*bytes, list) != noErr)
        return applications;
    for (const AEDesc& record : list.items()) {
        const auto text = [&record](AEKeyword key) {
            const AEDesc* field = record.find(key);
            return field ? field->asUTF8().value_or("") : std::string();
        };
        applications.push_back({0, text("pnam"_4cc), text("ID  "_4cc), text("ppth"_4cc)});
    }
    return applications;
}

std::vector<std::string> applicationFolders() {
    std::vector<std::string> folders;
    std::string path = std::getenv("QUODDLE_APPLET_PATH") ? std::getenv("QUODDLE_APPLET_PATH") : "";
    for (std::size_t start = 0; start < path.size();) {
        const std::size_t end = std::min(path.find(':', start), path.size());
        if (end > start)
            folders.push_back(path.substr(start, end - start));
        start = end + 1;
    }
    folders.insert(folders.end(), {homeFolder() + "/Applications", "/usr/local/share/quoddle/applets", "/usr/share/quoddle/applets"});
    return folders;
}

bool isApplicationAt(const std::string& path) {
    std::error_code error;
    return fs::exists(path + "/Contents", error);
}

std::string nameOf(const std::string& path) {
    return fs::path(path).stem().string();
}

using Test = std::function<bool(const AERunningApplication&)>;

std::optional<AERunningApplication> findRunning(const Test& test) {
    for (AERunningApplication& application : AEListRunningApplications())
        if (test(application))
            return std::move(application);
    return std::nullopt;
}

std::optional<AERunningApplication> findRemembered(const Test& test) {
    for (AERunningApplication& application : remembered())
        if (test(application) && isApplicationAt(application.path))
            return std::move(application);
    return std::nullopt;
}

std::optional<AERunningApplication> findInFolders(std::string_view name) {
    for (const std::string& folder : applicationFolders()) {
        std::error_code error;
        for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
            const std::string path = entry->path().string();
            if (path.ends_with(kApplicationExtension) && AESameApplicationName(nameOf(path), name) && isApplicationAt(path))
                return AERunningApplication{0, nameOf(path), {}, path};
        }
    }
    return std::nullopt;
}

Result<AERunningApplication, OSStatus> orNotFound(std::optional<AERunningApplication> application) {
    if (!application)
        return Failure{procNotFound};
    return std::move(*application);
}

Result<AERunningApplication, OSStatus> findByPath(const std::string& path) {
    if (auto running = AEFindRunningApplicationAtPath(path))
        return std::move(*running);
    if (!isApplicationAt(path))
        return Failure{procNotFound};
    return AERunningApplication{0, nameOf(path), {}, AECanonicalPath(path)};
}

Result<AERunningApplication, OSStatus> findByName(const std::string& name) {
    const Test test = [&](const AERunningApplication& application) { return AESameApplicationName(application.name, name); };
    if (auto found = findRunning(test))
        return std::move(*found);
    if (auto found = findInFolders(name))
        return std::move(*found);
    return orNotFound(findRemembered(test));
}

Result<AERunningApplication, OSStatus> findByIdentifier(const std::string& identifier) {
    const Test test = [&](const AERunningApplication& application) {
        return !identifier.empty() && AESameApplicationName(application.bundleIdentifier, identifier);
    };
    if (auto found = findRunning(test))
        return std::move(*found);
    return orNotFound(findRemembered(test));
}

Result<AERunningApplication, OSStatus> findByProcess(std::int32_t processID) {
    if (auto found = findRunning([&](const AERunningApplication& application) { return application.processID == processID; }))
        return std::move(*found);
    return Failure{procNotFound};
}

} // namespace

std::string AECanonicalPath(const std::string& path) {
    std::error_code error;
    const fs::path canonical = fs::canonical(path, error);
    return error ? path : canonical.string();
}

std::optional<AERunningApplication> AEFindRunningApplicationAtPath(const std::string& path) {
    const std::string canonical = AECanonicalPath(path);
    return findRunning([&](const AERunningApplication& application) { return application.path == canonical; });
}

Result<AERunningApplication, OSStatus> AEFindApplication(const AEDesc& address) {
    switch (address.type()) {
    case "kpid"_4cc:
        return findByProcess(address.asInt32().value_or(0));
    case "bund"_4cc:
        return findByIdentifier(std::string(address.data()));
    case "aprl"_4cc: {
        const std::string text(address.data());
        const auto path = text.starts_with("file:") ? AEDesc("furl"_4cc, text).asFilePath() : std::optional(text);
        if (!path)
            return Failure{procNotFound};
        return path->starts_with('/') ? findByPath(*path) : findByName(*path);
    }
    case "sign"_4cc:
    case "psn "_4cc:
        return Failure{procNotFound};
    default:
        return Failure{errAEUnknownAddressType};
    }
}

void AERememberApplication(const AERunningApplication& application) {
    std::vector<AERunningApplication> applications = remembered();
    const auto isSame = [&](const AERunningApplication& other) {
        return other.path == application.path && other.name == application.name && other.bundleIdentifier == application.bundleIdentifier;
    };
    if (application.path.empty() || std::any_of(applications.begin(), applications.end(), isSame))
        return;
    std::erase_if(applications,
                  [&](const AERunningApplication& other) { return other.path == application.path || !isApplicationAt(other.path); });
    applications.insert(applications.begin(), application);
    if (applications.size() > kMaximumRemembered)
        applications.resize(kMaximumRemembered);
    std::vector<AEDesc> items;
    for (const AERunningApplication& each : applications) {
        AEDesc record = AEDesc::record();
        (void)record.put("pnam"_4cc, AEDesc::ofUTF8(each.name));
        (void)record.put("ID  "_4cc, AEDesc::ofUTF8(each.bundleIdentifier));
        (void)record.put("ppth"_4cc, AEDesc::ofUTF8(each.path));
        items.push_back(std::move(record));
    }
    std::string bytes;
    std::error_code error;
    fs::create_directories(fs::path(rememberedPath()).parent_path(), error);
    if (!error && AEFlattenDesc(AEDesc::list(std::move(items)), bytes) == noErr)
        (void)writeFile(rememberedPath(), bytes);
}

} // namespace quoddle
