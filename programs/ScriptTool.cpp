// SPDX-License-Identifier: MIT
#include "ScriptTool.h"

#include "platform/additions/StandardAdditions.h"
#include "platform/ae/transport/AETransport.h"
#include "platform/applescript/AppleScriptComponent.h"
#include "platform/applescript/image/Image.h"
#include "platform/base/File.h"
#include "platform/base/FileDescriptor.h"
#include "platform/base/SourceEncoding.h"
#include "platform/base/Text.h"
#include "platform/osa/ScriptBundle.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <iostream>
#include <sys/stat.h>
#include <unistd.h>

namespace quoddle::tool {

namespace {

constexpr std::size_t kMaximumInput = std::size_t(128) << 20;

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

/// Reads a stream to its end; waits until somebody writes.
Result<std::string, OSStatus> readStream(const std::string& path) {
    const FileDescriptor stream(::open(path.c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC));
    if (!stream.isOpen())
        return Failure{statusFromErrno(errno)};
    return readToEnd(stream.number(), kMaximumInput);
}

} // namespace

void setUp() {
    registerAppleScriptComponent();
    installStandardAdditions();
    AEInstallTransport();
}

std::optional<ComponentInstance> openLanguage(const std::string& program, const std::string& name) {
    for (const ComponentDescription& component : RegisteredComponents())
        if (equalIgnoringCase(component.name, name))
            if (const ComponentInstance instance = OpenDefaultComponent(kOSAComponentType, component.subType))
                return instance;
    complain(program, "there is no language \"" + name + "\"; osalang lists them");
    return std::nullopt;
}

std::optional<std::string> readInput(const std::string& program, const std::string& path) {
    const bool isInput = path == "-";
    const std::string file = isInput ? "standard input" : scriptFileOf(path);
    auto bytes = isInput                          ? readToEnd(STDIN_FILENO, kMaximumInput)
                 : file == path && isStream(path) ? readStream(path)
                                                  : readFile(file, kMaximumInput);
    if (bytes)
        return std::move(*bytes);
    std::cerr << program << ": " << file << ": " << messageForStatus(bytes.error()) << "\n";
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
    case errOSASourceNotAvailable:
        return "The script has no source.";
    case errOSAInternalTableOverflow:
        return "The script is too large for a compiled script.";
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

void printError(ComponentInstance instance, const std::string& file, const std::string& kind, OSStatus status) {
    const ScriptFailure failure = failureOf(instance, status);
    if (!file.empty())
        std::cerr << file << ":";
    if (failure.range)
        std::cerr << failure.range->first << ":" << failure.range->second << ":";
    std::cerr << (file.empty() && !failure.range ? "" : " ") << kind << " error: " << failure.message << " (" << failure.number << ")\n";
}

void printResult(ComponentInstance instance, OSAID value, bool asSource) {
    AEDesc text;
    if (OSADisplay(instance, value, "utxt"_4cc, asSource ? kOSAModeNull : kOSAModeDisplayForHumans, text) == noErr)
        std::cout << text.asUTF8().value_or("") << std::endl;
}

void complain(const std::string& program, const std::string& message) {
    std::cerr << program << ": " << message << "\nTry '" << program << " --help'.\n";
}

std::optional<Options> parseOptions(const std::string& program, const std::string& letters, const std::vector<std::string>& words,
                                    bool optionsAnywhere) {
    Options options;
    bool ended = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (ended || word.size() < 2 || word[0] != '-') {
            options.rest.push_back(word);
            ended |= !optionsAnywhere;
            continue;
        }
        if (word == "--") {
            ended = true;
            continue;
        }
        if (word == "--help") {
            options.help = true;
            return options;
        }
        for (std::size_t at = 1; at < word.size(); ++at) {
            const auto known = letters.find(word[at]);
            if (known == std::string::npos || word[at] == ':') {
                complain(program, std::string("unknown option -") + word[at]);
                return std::nullopt;
            }
            if (known + 1 >= letters.size() || letters[known + 1] != ':') {
                options.given.emplace_back(word[at], "");
                continue;
            }
            std::string value = word.substr(at + 1);
            if (value.empty() && i + 1 >= words.size()) {
                complain(program, std::string("option -") + word[at] + " needs a value");
                return std::nullopt;
            }
            options.given.emplace_back(word[at], value.empty() ? words[++i] : value);
            break;
        }
    }
    return options;
}

} // namespace quoddle::tool
