// SPDX-License-Identifier: MIT
#include "ScriptTool.h"

#include "OwnNames.h"
#include "platform/additions/StandardAdditions.h"
#include "platform/ae/transport/AETransport.h"
#include "platform/applescript/AppleScriptComponent.h"
#include "platform/applescript/image/Image.h"
#include "platform/base/File.h"
#include "platform/base/FileDescriptor.h"
#include "platform/base/SourceEncoding.h"
#include "platform/base/Text.h"
#include "platform/osa/ScriptBundle.h"
#include "SourcePlace.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <sys/stat.h>
#include <unistd.h>

namespace quoddle::tool {

namespace {

bool equalIgnoringCase(const std::string& left, const std::string& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

std::string messageForStatus(OSStatus status) {
    switch (status) {
    case fnfErr:
        return "No such file or directory";
    case -54:
        return "No permission.";
    case memFullErr:
        return "It is too large.";
    case paramErr:
        return "This is not an ordinary file.";
    default:
        return "It could not be read (" + std::to_string(status) + ").";
    }
}

/// Whether the path is a pipe or a device, which gives bytes one after the other.
bool isStream(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && (S_ISFIFO(info.st_mode) || S_ISCHR(info.st_mode));
}

bool isNameOfOpenFile(const std::string& path) {
    return path == "/dev/stdin" || path == "/dev/null" || path.starts_with("/dev/fd/") || path.starts_with("/proc/self/fd/");
}

bool leadsOutOf(const std::string& bundle, const std::string& file) {
    std::error_code error;
    const std::string folder = std::filesystem::canonical(bundle, error).string(), real = std::filesystem::canonical(file, error).string();
    return !error && !real.starts_with(folder + "/");
}

/// Reads a stream to its end; waits until somebody writes.
Result<std::string, OSStatus> readStream(const std::string& path) {
    const FileDescriptor stream(::open(path.c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC));
    if (!stream.isOpen())
        return Failure{statusFromErrno(errno)};
    return readToEnd(stream.number(), kLargestScript);
}

} // namespace

void setUp() {
    registerAppleScriptComponent();
    installStandardAdditions();
    AEInstallTransport();
}

std::optional<ComponentInstance> openLanguage(const Program& program, const std::string& name) {
    for (const ComponentDescription& component : RegisteredComponents())
        if (equalIgnoringCase(component.name, name))
            if (const ComponentInstance instance = OpenDefaultComponent(kOSAComponentType, component.subType))
                return instance;
    misuse(program, "there is no language \"" + name + "\"; osalang lists them");
    return std::nullopt;
}

Result<std::string, InputFault> readScript(const std::string& path, Input input) {
    const std::string file = scriptFileOf(path);
    if (input == Input::Files && path != "-") {
        if (file == path && isStream(path) && !isNameOfOpenFile(path))
            return Failure{InputFault{paramErr, "This is a pipe or a device; give what it holds on standard input, as -."}};
        if (file != path && leadsOutOf(path, file))
            return Failure{InputFault{paramErr, "The script of the bundle is a link to a file elsewhere."}};
    }
    auto bytes = path == "-"                      ? readToEnd(STDIN_FILENO, kLargestScript)
                 : file == path && isStream(path) ? readStream(path)
                                                  : readFile(file, kLargestScript);
    if (bytes)
        return std::move(*bytes);
    const bool isFolderOnly = file != path && bytes.error() == fnfErr;
    return Failure{InputFault{bytes.error(), isFolderOnly ? "There is no script in this folder." : messageForStatus(bytes.error())}};
}

std::optional<std::string> readInput(const Program& program, const std::string& path, Input input) {
    auto bytes = readScript(path, input);
    if (bytes)
        return std::move(*bytes);
    std::cerr << program.name << ": " << (path == "-" ? "standard input" : withoutControls(scriptFileOf(path))) << ": "
              << bytes.error().message << "\n";
    return std::nullopt;
}

std::string messageForWriting(OSStatus status) {
    switch (status) {
    case -34:
        return "The disk is full.";
    case -37:
        return "No file can have this name.";
    case -44:
        return "The disk is write protected.";
    case -47:
        return "Somebody else is writing it.";
    case -48:
        return "Something else stands there already.";
    case paramErr:
        return "There is something that is neither a file nor a bundle.";
    case -54:
        return "No permission.";
    case -120:
    case fnfErr:
        return "The folder does not exist.";
    case memFullErr:
        return "The script is too large: a compiled script may have " + std::to_string(kLargestScript >> 20) +
               " MiB, and must fit into memory.";
    case errOSASourceNotAvailable:
        return "The script has no source.";
    case errOSAInternalTableOverflow:
        return "The script is too large: a compiled script has room for 32,767 texts, handlers, and statements beside handlers.";
    default:
        return "It could not be written (" + std::to_string(status) + ").";
    }
}

OSStatus loadOrCompile(ComponentInstance instance, const std::string& bytes, OSAID& id, bool& isCompiled) {
    isCompiled = looksLikeImage(bytes);
    if (isCompiled)
        return OSALoad(instance, AEDesc("scpt"_4cc, bytes), kOSAModeNull, id);
    return OSACompile(instance, AEDesc::ofText(utf16FromSourceBytes(bytes)), kOSAModeCompileIntoContext, id);
}

ScriptFailure failureOf(ComponentInstance instance, OSStatus status) {
    ScriptFailure failure;
    failure.number = status;
    failure.message = status == memFullErr ? "Out of memory." : "The script could not be read.";
    if (status != errOSAScriptError)
        return failure;
    AEDesc part;
    if (OSAScriptError(instance, "errn"_4cc, "long"_4cc, part) == noErr)
        failure.number = part.asInt32().value_or(status);
    failure.message = OSAScriptError(instance, "errs"_4cc, "utxt"_4cc, part) == noErr ? part.asUTF8().value_or("") : "";
    if (OSAScriptError(instance, "erng"_4cc, "erng"_4cc, part) == noErr) {
        const auto place = [&part](AEKeyword key) {
            const AEDesc* found = part.find(key);
            return static_cast<std::size_t>(std::max(0, found ? found->asInt32().value_or(0) : 0));
        };
        failure.range = {{place("srcs"_4cc), place("srce"_4cc)}};
    }
    return failure;
}

void printError(const ScriptFailure& failure, const std::string& file, const std::string& kind) {
    if (!file.empty())
        std::cerr << withoutControls(file) << ":";
    if (failure.range)
        std::cerr << failure.range->first << ":" << failure.range->second << ":";
    std::cerr << (file.empty() && !failure.range ? "" : " ") << kind << " error: " << failure.message << " (" << failure.number << ")\n";
}

void printPlaceOnTerminal(const ScriptFailure& failure, const std::string& source) {
    if (!failure.range || !::isatty(STDERR_FILENO))
        return;
    const std::u16string text = utf16FromSourceBytes(source);
    std::cerr << markedLine(text, failure.range->first, failure.range->second);
    if (const std::string advice = adviceOnNames(failure, text); !advice.empty())
        std::cerr << advice << "\n";
}

void printResult(ComponentInstance instance, OSAID value, bool asSource) {
    AEDesc text;
    if (OSADisplay(instance, value, "utxt"_4cc, asSource ? kOSAModeNull : kOSAModeDisplayForHumans, text) == noErr)
        std::cout << text.asUTF8().value_or("") << std::endl;
}

} // namespace quoddle::tool
