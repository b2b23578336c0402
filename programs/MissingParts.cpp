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

void complain(const std::string& file, std::size_t line, const std::string& message) {
    std::cerr << "quoddle: " << shown(file) << ":" << (line ? std::to_string(line) + ":" : "") << " " << shown(message) << "\n";
}

/// The needs of a file that are not here. False when not all of it could be read, which has been told.
bool missingIn(const std::string& file, std::vector<ScriptNeed>& missing) {
    const auto bytes = readScript(file);
    if (!bytes) {
        complain(file, 0, bytes.error().message);
        return false;
    }
    auto found = needsOf(*bytes);
    if (!found) {
        complain(file, 0, found.error());
        return false;
    }
    const std::string bundle = file == "-" ? "" : bundleOfScriptFile(AECanonicalPath(scriptFileOf(file)));
    for (ScriptNeed& need : found->needs)
        if (!isHere(need, bundle))
            missing.push_back(std::move(need));
    if (!found->note.empty())
        complain(file, found->noteLine, found->note);
    return found->note.empty();
}

} // namespace

int tellMissingParts(const std::vector<std::string>& files, bool asJSON) {
    int status = EXIT_SUCCESS;
    const char* separator = "\n  ";
    if (asJSON)
        std::cout << "[";
    for (const std::string& file : files) {
        std::vector<ScriptNeed> missing;
        if (!missingIn(file, missing) || !missing.empty())
            status = EXIT_FAILURE;
        for (const ScriptNeed& need : missing) {
            if (!asJSON) {
                print(file, need);
                continue;
            }
            std::cout << separator;
            printJSON(file, need);
            separator = ",\n  ";
        }
    }
    if (asJSON)
        std::cout << (*separator == ',' ? "\n]\n" : "]\n");
    return status;
}

} // namespace quoddle::tool
