// SPDX-License-Identifier: MIT
#include "platform/ae/transport/AERunningApplications.h"

#include "platform/ae/AEFlatten.h"
#include "platform/ae/transport/AERuntimeDirectory.h"
#include "platform/base/File.h"
#include "platform/base/Text.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <mutex>
#include <unicode/unistr.h>
#include <unistd.h>

namespace quoddle {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMaximumRecordSize = 64 << 10;
constexpr std::string_view kRecordExtension = ".app";
constexpr std::string_view kSocketExtension = ".sock";
constexpr AEKeyword kStartTime = "strt"_4cc;

std::mutex sNameMutex;
std::string sOwnName; // of the application in this process, once it has registered

/// The start time of a process in clock ticks since the machine started; 0 when there is no such process any more, nullopt when that cannot
/// be found out.
std::optional<std::int64_t> startTimeOf(std::int32_t processID) {
    const auto text = readFile("/proc/" + std::to_string(processID) + "/stat", 4096);
    if (!text)
        return text.error() == fnfErr ? std::optional<std::int64_t>(0) : std::nullopt;
    // The second field is a name in parentheses that may hold any character; the third is the state, the 22nd the start time.
    std::size_t at = text->rfind(") ");
    if (at == std::string::npos || at + 2 >= text->size() || (*text)[at + 2] == 'Z' || (*text)[at + 2] == 'X')
        return 0;
    for (int field = 2; field < 22 && at != std::string::npos; ++field)
        at = text->find(' ', at + 1);
    return at == std::string::npos ? 0 : std::strtoll(text->c_str() + at, nullptr, 10);
}

std::string textOf(const AEDesc& record, AEKeyword key) {
    const AEDesc* field = record.find(key);
    return field ? field->asUTF8().value_or("") : "";
}

/// The null descriptor when the file has other contents than a record.
Result<AEDesc, OSStatus> readRecord(const std::string& path) {
    const auto bytes = readFile(path, kMaximumRecordSize);
    if (!bytes)
        return Failure{bytes.error()};
    AEDesc record;
    if (AEUnflattenDesc(*bytes, record) != noErr || !record.isRecord())
        return AEDesc();
    return record;
}

std::int32_t processIDOf(const fs::path& file) {
    const std::string digits = file.stem().string();
    const bool isNumber =
        !digits.empty() && digits.size() < 10 && std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
    return isNumber ? std::atoi(digits.c_str()) : 0;
}

std::string recordPath(const std::string& directory, std::int32_t processID) {
    return directory + "/" + std::to_string(processID) + std::string(kRecordExtension);
}

void removeFilesOf(const std::string& directory, std::int32_t processID) {
    unlink((directory + "/" + AESocketName(processID)).c_str());
    unlink(recordPath(directory, processID).c_str());
}

/// Whether a socket has no record and its process has ended.
bool isLeftSocket(const fs::path& file) {
    std::error_code error;
    return file.extension() == kSocketExtension && !fs::exists(fs::path(file).replace_extension(kRecordExtension), error) && !error &&
           startTimeOf(processIDOf(file)) == std::int64_t{0};
}

std::u16string folded(std::string_view name) {
    if (name.ends_with(".app"))
        name.remove_suffix(4);
    icu::UnicodeString text = icu::UnicodeString::fromUTF8({name.data(), static_cast<std::int32_t>(name.size())});
    text.foldCase();
    return {text.getBuffer(), static_cast<std::size_t>(text.length())};
}

} // namespace

bool AEIsProcessAlive(std::int32_t processID) {
    return startTimeOf(processID) != std::int64_t{0};
}

std::string AESocketName(std::int32_t processID) {
    return std::to_string(processID) + std::string(kSocketExtension);
}

bool AESameApplicationName(std::string_view a, std::string_view b) {
    return folded(a) == folded(b);
}

std::vector<AERunningApplication> AEListRunningApplications() {
    std::vector<std::pair<std::int64_t, AERunningApplication>> found;
    const auto directory = AERuntimeDirectory();
    if (!directory)
        return {};
    std::error_code error;
    for (fs::directory_iterator entry(*directory, error), end; !error && entry != end; entry.increment(error)) {
        const std::int32_t processID = processIDOf(entry->path());
        if (processID != 0 && isLeftSocket(entry->path()))
            removeFilesOf(*directory, processID);
        if (processID == 0 || entry->path().extension() != kRecordExtension)
            continue;
        const auto record = readRecord(entry->path().string());
        const auto startTime = startTimeOf(processID);
        if (!record || !startTime)
            continue; // this process may be short of descriptors or memory; the other is not known to have ended
        const AEDesc* start = record->find(kStartTime);
        if (!start || *startTime == 0 || start->asInt64() != *startTime) {
            removeFilesOf(*directory, processID);
            continue;
        }
        found.push_back({*startTime, {processID, textOf(*record, "pnam"_4cc), textOf(*record, "ID  "_4cc), textOf(*record, "ppth"_4cc)}});
    }
    std::sort(found.begin(), found.end(),
              [](const auto& a, const auto& b) { return std::pair(a.first, a.second.processID) > std::pair(b.first, b.second.processID); });
    std::vector<AERunningApplication> applications;
    for (auto& [startTime, application] : found)
        applications.push_back(std::move(application));
    return applications;
}

std::string AECurrentApplicationName() {
    std::lock_guard lock(sNameMutex);
    return sOwnName.empty() ? program_invocation_short_name : sOwnName;
}

OSStatus AERegisterApplication(const AERunningApplication& application) {
    {
        std::lock_guard lock(sNameMutex);
        sOwnName = application.name;
    }
    const auto directory = AERuntimeDirectory();
    if (!directory)
        return directory.error();
    AEDesc record = AEDesc::record();
    (void)record.put("pnam"_4cc, AEDesc::ofUTF8(application.name));
    (void)record.put("ID  "_4cc, AEDesc::ofUTF8(application.bundleIdentifier));
    (void)record.put("ppth"_4cc, AEDesc::ofUTF8(application.path));
    (void)record.put(kStartTime, AEDesc::ofInt64(startTimeOf(getpid()).value_or(0)));
    std::string bytes;
    if (const OSStatus status = AEFlattenDesc(record, bytes); status != noErr)
        return status;
    return writeFile(recordPath(*directory, getpid()), bytes);
}

void AEWithdrawApplication() {
    if (const auto directory = AERuntimeDirectory())
        unlink(recordPath(*directory, getpid()).c_str());
}

void AEUnregisterApplication() {
    if (const auto directory = AERuntimeDirectory())
        removeFilesOf(*directory, getpid());
}

} // namespace quoddle
