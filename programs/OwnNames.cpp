// SPDX-License-Identifier: MIT
#include "OwnNames.h"

#include "platform/applescript/component/ApplicationDictionaries.h"
#include "platform/applescript/syntax/Keyword.h"
#include "platform/applescript/terminology/Terminology.h"
#include "platform/base/Text.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace quoddle::tool {

namespace {

constexpr std::size_t kMostApplications = 8; // of those that the script tells
constexpr OSStatus kPropertyNotSet = -10006;

bool isBlank(char16_t c) {
    return c == u' ' || c == u'\t';
}

/// In small letters, with single blanks. Empty when there is anything else than words.
std::string wordsIn(std::u16string_view text) {
    std::string words;
    for (char16_t c : text) {
        if (c >= 0x80 || (!isBlank(c) && c != u'_' && !(c >= u'0' && c <= u'9') && !(foldedASCII(c) >= u'a' && foldedASCII(c) <= u'z')))
            return "";
        if (!isBlank(c))
            words += static_cast<char>(foldedASCII(c));
        else if (!words.empty() && words.back() != ' ')
            words += ' ';
    }
    if (words.ends_with(' '))
        words.pop_back();
    return words;
}

/// The words where a name was expected: what "set … to" sets, or all that the error marks.
std::string suspectIn(std::u16string_view marked, OSStatus number) {
    if (number == OSASyntaxTypeError || number == OSASyntaxError)
        return wordsIn(marked);
    if (number != OSAIllegalAssign && number != kPropertyNotSet)
        return "";
    const std::u16string_view set = u"set ", to = u" to ";
    if (marked.size() < set.size() ||
        !std::equal(set.begin(), set.end(), marked.begin(), [](char16_t a, char16_t b) { return a == foldedASCII(b); }))
        return "";
    marked.remove_prefix(set.size());
    return wordsIn(marked.substr(0, marked.find(to)));
}

/// Whether a message says that something else than words of a dictionary was expected.
bool isAboutNames(const ScriptFailure& failure) {
    if (failure.number != OSASyntaxTypeError && failure.number != OSASyntaxError)
        return true;
    const std::string& message = failure.message;
    for (const char* kind : {"found class name", "found plural class name", "found property", "found command name",
                             "found application constant", "Expected variable name", "Expected handler name"})
        if (message.find(kind) != std::string::npos)
            return true;
    return false;
}

/// The applications that the text in front of an error names, the nearest first.
std::vector<std::u16string> applicationsIn(std::u16string_view text) {
    std::vector<std::u16string> names;
    for (std::size_t at = text.size(); names.size() < kMostApplications && (at = text.rfind(u"application \"", at)) != text.npos; --at) {
        const std::size_t start = text.find(u'"', at) + 1;
        const std::size_t end = text.find_first_of(u"\"\r\n", start);
        if (end != text.npos && text[end] == u'"')
            names.emplace_back(text.substr(start, end - start));
        if (at == 0)
            break;
    }
    return names;
}

bool isTermOf(const TermSource* source, std::string_view words) {
    if (!source)
        return false;
    const auto terms = source->startingWith(words.substr(0, words.find(' ')));
    return std::any_of(terms.begin(), terms.end(), [&](const Term& term) { return wordsIn(utf16FromUTF8(term.words)) == words; });
}

/// Whose word it is, as a sentence names it.
std::optional<std::u16string> ownerOf(const std::string& words, std::u16string_view textBefore) {
    const syntax::Keyword keyword = syntax::keywordOf(words);
    if ((keyword != syntax::Keyword::None && syntax::isReserved(keyword)) || isTermOf(&languageTerms(), words))
        return u"AppleScript";
    if (isTermOf(&standardAdditionsTerms(), words))
        return u"the Standard Additions";
    for (const std::u16string& name : applicationsIn(textBefore))
        if (isTermOf(component::termsOfApplication({name}), words))
            return u"“" + name + u"”";
    return std::nullopt;
}

} // namespace

std::string adviceOnNames(const ScriptFailure& failure, std::u16string_view source) {
    if (!failure.range || !isAboutNames(failure))
        return "";
    const std::size_t start = std::min(failure.range->first, source.size());
    const std::size_t end = std::clamp(failure.range->second, start, source.size());
    const std::string words = suspectIn(source.substr(start, end - start), failure.number);
    const auto owner = words.empty() ? std::nullopt : ownerOf(words, source.substr(0, start));
    if (!owner)
        return "";
    return "“" + words + "” is a word of " + utf8FromUTF16(*owner) + ". As a name of your own it is written |" + words + "|.";
}

} // namespace quoddle::tool
