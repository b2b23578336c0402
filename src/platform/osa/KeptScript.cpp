// SPDX-License-Identifier: MIT
#include "platform/osa/KeptScript.h"

#include "platform/base/File.h"
#include "platform/base/UserFolders.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <unistd.h>

namespace quoddle {

namespace fs = std::filesystem;

namespace {

std::string fingerprint(std::string_view bytes) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (char byte : bytes)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash));
    return digits;
}

std::string folderOfCopies() {
    return dataFolder() + "/quoddle/properties";
}

/// The beginning of the names of a script's copies, made from the path of its file.
std::string nameOfPlace(const std::string& file) {
    std::error_code error;
    const fs::path place = fs::weakly_canonical(file, error);
    return fingerprint(error ? file : place.string()) + "-";
}

/// The path of a script's copy, whether there is one or not; empty when the script's file cannot be read.
fs::path copyOf(const std::string& file) {
    const fs::path folder = folderOfCopies();
    const auto bytes = readFile(file, kLargestScript);
    return bytes ? folder / (nameOfPlace(file) + fingerprint(*bytes) + ".scpt") : fs::path();
}

/// Removes the copies that were made from former contents of the file.
void removeCopies(const std::string& file, const fs::path& except) {
    const std::string name = nameOfPlace(file);
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folderOfCopies(), error))
        if (entry.path().filename().string().starts_with(name) && entry.path() != except)
            fs::remove(entry.path(), error);
}

} // namespace

std::string fileOfLastRun(const std::string& file) {
    std::error_code error;
    if (!fs::exists(folderOfCopies(), error)) // so the usual case costs no reading
        return file;
    const fs::path copy = copyOf(file);
    return !copy.empty() && fs::exists(copy, error) ? copy.string() : file;
}

OSStatus keepScript(const std::string& file, std::string_view bytes) {
    if (bytes.size() > kLargestScript)
        return memFullErr;
    const fs::path copy = copyOf(file);
    if (::access(file.c_str(), W_OK) == 0 && writeFile(file, bytes) == noErr) {
        removeCopies(file, {});
        return noErr;
    }
    if (copy.empty())
        return fnfErr;
    std::error_code error;
    fs::create_directories(copy.parent_path(), error);
    const OSStatus status = writeFile(copy.string(), bytes);
    if (status == noErr)
        removeCopies(file, copy);
    return status;
}

} // namespace quoddle
