// SPDX-License-Identifier: MIT
#include "MissingParts.h"

#include "Applets.h"
#include "JsonText.h"
#include "platform/ae/transport/AEApplicationLookup.h"
#include "platform/osa/ScriptBundle.h"
#include "ScriptNeeds.h"
#include "ScriptTool.h"

#include <cstdlib>
#include <iostream>
#include <optional>

#include <QString>

namespace quoddle::tool {

namespace {

/// Names come from scripts: without what would control a terminal.
std::string shown(const std::string& text) {
    return printable(QString::fromStdString(text));
}

std::string otherLines(const std::vector<std::size_t>& lines) {
    std::string text;
    for (std::size_t i = 1; i < lines.size(); ++i)
        text += (i > 1 ? ", " : lines.size() > 2 ? " (also in lines " : " (also in line ") + std::to_string(lines[i]);
    return text.empty() ? "" : text + ")";
}

void print(const std::string& file, const ScriptNeed& need) {
    std::cout << shown(file) << ":" << (need.lines.empty() ? "" : std::to_string(need.lines.front()) + ":") << " " << wordFor(need.kind)
              << (need.isIdentifier ? " id" : "") << " \"" << shown(need.name) << "\" is not here" << otherLines(need.lines) << "\n";
}

void printJSON(const std::string& file, const ScriptNeed& need) {
    std::cout << "{\"file\": " << inJSON(file) << ", \"kind\": " << inJSON(wordFor(need.kind)) << ", \"name\": " << inJSON(need.name)
              << ", \"lines\": [";
    for (std::size_t i = 0; i < need.lines.size(); ++i)
        std::cout << (i ? ", " : "") << need.lines[i];
    std::cout << "]}";
}

/// Why a file could not be read, or not whole.
struct Fault {
    std::string message;
    std::optional<SourcePlace> place;
};

void print(const std::string& file, const Fault& fault) {
    std::cerr << "quoddle: " << shown(file) << ":";
    if (fault.place)
        std::cerr << fault.place->line << ":" << fault.place->column << ":";
    std::cerr << " " << shown(fault.message) << "\n";
}

void printJSON(const std::string& file, const Fault& fault) {
    std::cout << "{\"file\": " << inJSON(file) << ", \"kind\": \"error\", \"message\": " << inJSON(fault.message) << ", \"lines\": [";
    if (fault.place)
        std::cout << fault.place->line << "], \"column\": " << fault.place->column << "}";
    else
        std::cout << "]}";
}

/// The needs of a file that are not here.
std::vector<ScriptNeed> missingIn(const std::string& file, std::optional<Fault>& fault) {
    if (fault)
        return {};
    const auto bytes = readScript(file, Input::Files);
    if (!bytes) {
        fault = {bytes.error().message, {}};
        return {};
    }
    auto found = needsOf(*bytes);
    if (!found) {
        fault = {found.error(), {}};
        return {};
    }
    if (!found->note.empty())
        fault = {found->note, found->notePlace};
    const std::string bundle = file == "-" ? "" : bundleOfScriptFile(AECanonicalPath(scriptFileOf(file)));
    std::erase_if(found->needs, [&bundle](const ScriptNeed& need) { return isHere(need, bundle); });
    return std::move(found->needs);
}

} // namespace

int tellMissingParts(const std::vector<CheckedFile>& files, bool asJSON) {
    int status = EXIT_SUCCESS;
    const char* separator = "\n  ";
    if (asJSON)
        std::cout << "[";
    const auto tell = [&](const std::string& file, const auto& what) {
        status = EXIT_FAILURE;
        if (!asJSON)
            return print(file, what);
        std::cout << separator;
        printJSON(file, what);
        separator = ",\n  ";
    };
    for (const CheckedFile& file : files) {
        std::optional<Fault> fault = file.fault.empty() ? std::nullopt : std::optional(Fault{file.fault, {}});
        for (const ScriptNeed& need : missingIn(file.path, fault))
            tell(file.name, need);
        if (fault)
            tell(file.name, *fault);
    }
    if (asJSON)
        std::cout << (*separator == ',' ? "\n]\n" : "]\n");
    return status;
}

} // namespace quoddle::tool
