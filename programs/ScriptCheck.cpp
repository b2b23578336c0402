// SPDX-License-Identifier: MIT
#include "ScriptCheck.h"

#include "JsonText.h"
#include "platform/base/SourceEncoding.h"
#include "platform/base/Text.h"
#include "SourcePlace.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <optional>

namespace quoddle::tool {

namespace {

struct Finding {
    std::string file;
    SourcePlace start, end; // behind the last character; both the beginning when the place is not known
    OSStatus number = noErr;
    std::string message;
};

std::string objectOf(const Finding& finding) {
    return "{\"file\": " + inJSON(finding.file) + ", \"line\": " + std::to_string(finding.start.line) +
           ", \"column\": " + std::to_string(finding.start.column) + ", \"endLine\": " + std::to_string(finding.end.line) +
           ", \"endColumn\": " + std::to_string(finding.end.column) + ", \"number\": " + std::to_string(finding.number) +
           ", \"message\": " + inJSON(finding.message) + "}";
}

/// A message may quote texts of the script, in several lines.
std::string inOneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    return withoutControls(text);
}

std::optional<Finding> check(ComponentInstance instance, const ScriptSource& source) {
    if (!source.bytes)
        return Finding{source.name, {}, {}, source.bytes.error().number, source.bytes.error().message};
    OSAID script = kOSANullScript;
    bool isCompiled = false;
    const OSStatus status = loadOrCompile(instance, *source.bytes, script, isCompiled);
    if (status == noErr) {
        OSADispose(instance, script);
        return std::nullopt;
    }
    const ScriptFailure failure = failureOf(instance, status);
    Finding finding{source.name, {}, {}, failure.number, failure.message};
    if (failure.range && !isCompiled) {
        const std::u16string text = utf16FromSourceBytes(*source.bytes);
        finding.start = placeOf(text, failure.range->first);
        finding.end = placeOf(text, failure.range->second);
    }
    return finding;
}

} // namespace

int checkScripts(ComponentInstance instance, const std::vector<ScriptSource>& sources, bool asJSON) {
    int status = EXIT_SUCCESS;
    const char* separator = "";
    if (asJSON)
        std::cout << "[";
    for (const ScriptSource& source : sources) {
        const auto finding = check(instance, source);
        if (!finding)
            continue;
        status = EXIT_FAILURE;
        if (asJSON)
            std::cout << separator << "\n  " << objectOf(*finding);
        else
            std::cout << withoutControls(finding->file) << ":" << finding->start.line << ":" << finding->start.column << ": "
                      << inOneLine(finding->message) << "\n";
        separator = ",";
    }
    if (asJSON)
        std::cout << (*separator ? "\n]\n" : "]\n");
    return status;
}

} // namespace quoddle::tool
