// SPDX-License-Identifier: MIT
// Writes the terms of a dictionary as a table in C++, so that programs have them without reading anything.
//
//   make-term-table DICTIONARY.sdef FUNCTION OUTPUT.cpp      FUNCTION is that of Term.h which answers the table
#include "platform/applescript/terminology/DictionaryTerms.h"
#include "platform/sdef/DictionaryReader.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>

using namespace quoddle;

namespace {

constexpr const char* kKinds[] = {"Class", "Plural", "Property", "Constant", "Event"};

std::string quoted(std::string_view words) {
    std::string text = "\"";
    for (const char c : words) {
        if (c == '"' || c == '\\')
            text += '\\';
        text += c;
    }
    return text + "\"";
}

void writeEvents(std::ostream& out, const TermDictionary& terms, std::map<const EventTerm*, std::size_t>& numbers) {
    for (const Term& term : terms.terms()) {
        if (!term.event || !numbers.try_emplace(term.event, numbers.size()).second)
            continue;
        const std::size_t number = numbers.size() - 1;
        if (!term.event->parameters.empty()) {
            out << "constexpr ParameterTerm kParameters" << number << "[] = {\n";
            for (const ParameterTerm& parameter : term.event->parameters)
                out << "    {" << quoted(parameter.words) << ", " << parameter.code << "u, " << parameter.type << "u},\n";
            out << "};\n";
        }
        out << "constexpr EventTerm kEvent" << number << "{" << term.event->replyType << "u, " << term.event->replyFlags << "u, "
            << term.event->directFlags << "u, " << term.event->directType << "u, ";
        out << (term.event->parameters.empty() ? std::string("{}") : "kParameters" + std::to_string(number)) << "}; // " << term.words
            << '\n';
    }
}

void write(std::ostream& out, const TermDictionary& terms, std::string_view source, std::string_view function) {
    out << "// Made from " << source << ".\n#include \"platform/applescript/terminology/TermTable.h\"\n\n"
        << "namespace quoddle {\n\nnamespace {\n\n";
    std::map<const EventTerm*, std::size_t> events;
    writeEvents(out, terms, events);
    out << "\nconstexpr Term kTerms[] = {\n";
    for (const Term& term : terms.terms()) {
        out << "    {" << quoted(term.words) << ", TermKind::" << kKinds[static_cast<int>(term.kind)] << ", " << term.code << "u, "
            << term.group << "u, " << (term.event ? "&kEvent" + std::to_string(events.at(term.event)) : "nullptr") << ", "
            << (term.boolean ? "true" : "false") << ", " << (term.synonym ? "true" : "false") << "},\n";
    }
    out << "};\n\nconstexpr std::uint16_t kByCode[] = {";
    for (const Term* term : terms.byCode())
        out << term - terms.terms().data() << ", ";
    out << "};\n\n} // namespace\n\nconst TermSource& " << function << "() {\n    static const TermTable table(kTerms, kByCode);\n"
        << "    return table;\n}\n\n} // namespace quoddle\n";
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "make-term-table DICTIONARY.sdef FUNCTION OUTPUT.cpp\n";
        return 2;
    }
    const std::filesystem::path source(argv[1]);
    const auto dictionary = sdef::readDictionary(source.string(), source.parent_path().string());
    if (!dictionary) {
        std::cerr << dictionary.error() << '\n';
        return 1;
    }
    std::ofstream out(argv[3]);
    write(out, *termsOfDictionary(*dictionary), source.filename().string(), argv[2]);
    return out.flush() ? 0 : 1;
}
