// SPDX-License-Identifier: MIT
// Writes what editors need to colour AppleScript, from the tables of the language's words and the commands that every script has.
//
//   make-syntax TEMPLATES FOLDER     below FOLDER each editor's file is made at its place in a share/ folder
//
// All that is no word of the language stands in the templates; a line @NAME@ there is replaced by the words in the editor's manner.
#include "platform/applescript/syntax/Keyword.h"
#include "platform/applescript/terminology/Term.h"
#include "platform/applescript/terminology/TermTable.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using namespace quoddle;

namespace {

/// In the order in which a use of words counts when there are several.
enum class Use { Keyword, Command, Constant, Class, Property, Parameter };
constexpr const char* kUses[] = {"Keyword", "Command", "Constant", "Class", "Property", "Parameter"};

/// Terms of as many words, by their use, longest first.
struct Group {
    std::size_t length;
    Use use;
    std::vector<std::string> terms;
};

std::string lower(std::string_view words) {
    std::string text(words);
    std::ranges::transform(text, text.begin(), asciiLower);
    return text;
}

Use useOf(TermKind kind) {
    switch (kind) {
    case TermKind::Event:
        return Use::Command;
    case TermKind::Constant:
        return Use::Constant;
    case TermKind::Property:
        return Use::Property;
    case TermKind::Class:
    case TermKind::Plural:
        break;
    }
    return Use::Class;
}

std::vector<Group> groups() {
    std::map<std::string, Use> uses;
    const auto add = [&uses](std::string_view words, Use use) {
        const auto [at, isNew] = uses.try_emplace(lower(words), use);
        at->second = std::min(at->second, use);
    };
    for (const std::string_view word : syntax::keywords())
        add(word, Use::Keyword);
    for (const TermSource* source : {&languageTerms(), &standardAdditionsTerms()}) {
        for (const Term& term : source->terms()) {
            add(term.words, useOf(term.kind));
            if (!term.event)
                continue;
            for (const ParameterTerm& parameter : term.event->parameters)
                add(parameter.words, Use::Parameter);
        }
    }
    std::map<std::pair<std::size_t, Use>, std::vector<std::string>> sorted;
    for (const auto& [words, use] : uses)
        sorted[{static_cast<std::size_t>(std::ranges::count(words, ' ')) + 1, use}].push_back(words);
    std::vector<Group> result;
    for (auto at = sorted.rbegin(); at != sorted.rend(); ++at)
        result.push_back({at->first.first, at->first.second, at->second});
    // Of the groups of one length that with the use which counts most comes first.
    std::ranges::stable_sort(result,
                             [](const Group& a, const Group& b) { return a.length != b.length ? a.length > b.length : a.use < b.use; });
    return result;
}

std::string replaced(std::string_view text, char from, std::string_view to) {
    std::string out;
    for (const char c : text)
        c == from ? out += to : out += c;
    return out;
}

/// The terms as alternatives of a regular expression.
std::string alternatives(const Group& group, std::string_view blanks) {
    std::string out;
    for (const std::string& term : group.terms)
        out += (out.empty() ? "" : "|") + replaced(term, ' ', blanks);
    return out;
}

/// KSyntaxHighlighting finds single words fast in lists; a word with an apostrophe would end there at the apostrophe.
bool standsInList(const Group& group, const std::string& term) {
    return group.length == 1 && term.find('\'') == std::string::npos;
}

std::string katesLists() {
    std::string out;
    for (const Group& group : groups()) {
        if (group.length > 1)
            continue;
        out += "    <list name=\"" + std::string(kUses[static_cast<int>(group.use)]) + "\">\n";
        for (const std::string& term : group.terms) {
            if (standsInList(group, term))
                out += "      <item>" + term + "</item>\n";
        }
        out += "    </list>\n";
    }
    return out;
}

std::string katesRules() {
    std::string expressions, lists;
    for (const Group& group : groups()) {
        const std::string use = kUses[static_cast<int>(group.use)];
        Group rest = group;
        std::erase_if(rest.terms, [&group](const std::string& term) { return standsInList(group, term); });
        if (!rest.terms.empty())
            expressions += "        <RegExpr String=\"\\b(?:" + alternatives(rest, "\\s+") + ")\\b\" insensitive=\"true\" attribute=\"" +
                           use + "\"/>\n";
        if (group.length == 1)
            lists += "        <keyword String=\"" + use + "\" attribute=\"" + use + "\"/>\n";
    }
    return expressions + lists;
}

std::string gtksContexts() {
    std::string out;
    for (const Group& group : groups()) {
        out += "        <context style-ref=\"" + lower(kUses[static_cast<int>(group.use)]) + "\">\n";
        for (const std::string& term : group.terms)
            out += "          <keyword>" + replaced(term, ' ', "\\s+") + "</keyword>\n";
        out += "        </context>\n";
    }
    return out;
}

std::string vimsMatches() {
    std::string out;
    std::vector<Group> all = groups();
    std::ranges::reverse(all);
    for (const Group& group : all)
        out +=
            "syn match applescript" + std::string(kUses[static_cast<int>(group.use)]) + " /\\v<%(" + alternatives(group, "\\s+") + ")>/\n";
    return out;
}

bool write(const std::filesystem::path& source, const std::filesystem::path& file) {
    static const std::map<std::string, std::function<std::string()>> parts = {
        {"@LISTS@", katesLists}, {"@RULES@", katesRules}, {"@CONTEXTS@", gtksContexts}, {"@MATCHES@", vimsMatches}};
    std::ifstream in(source);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream out(file);
    for (std::string line; std::getline(in, line);) {
        const auto part = parts.find(line);
        out << (part == parts.end() ? line + "\n" : part->second());
    }
    return in.eof() && bool(out.flush());
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: make-syntax TEMPLATES FOLDER\n";
        return 2;
    }
    const std::filesystem::path templates = argv[1], folder = argv[2];
    const std::pair<const char*, const char*> files[] = {
        {"applescript.xml", "org.kde.syntax-highlighting/syntax/applescript.xml"},
        {"applescript.lang", "gtksourceview-5/language-specs/applescript.lang"},
        {"applescript.vim", "vim/vimfiles/syntax/applescript.vim"},
        {"applescript-ftdetect.vim", "vim/vimfiles/ftdetect/applescript.vim"},
    };
    for (const auto& [name, place] : files) {
        if (!write(templates / name, folder / place)) {
            std::cerr << "make-syntax: " << (folder / place).string() << ": cannot be written\n";
            return 1;
        }
    }
    return 0;
}
