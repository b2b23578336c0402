// SPDX-License-Identifier: MIT
#include "Completion.h"

#include "platform/applescript/syntax/Keyword.h"
#include "platform/applescript/terminology/Term.h"
#include "platform/base/Text.h"

#include <algorithm>

namespace quoddle::tool {

namespace {

constexpr std::size_t kMostWords = 6; // no term is longer

bool isPartOfWord(char c) {
    return c == '_' || static_cast<unsigned char>(c) >= 0x80 || (c >= '0' && c <= '9') || (foldedASCII(c) >= 'a' && foldedASCII(c) <= 'z');
}

bool beginsWith(std::string_view phrase, std::string_view typed) {
    return phrase.size() > typed.size() &&
           std::equal(typed.begin(), typed.end(), phrase.begin(), [](char a, char b) { return foldedASCII(a) == foldedASCII(b); });
}

/// The text or the name in bars that the end of the line is inside of: where it begins, npos for none.
std::size_t openQuote(std::string_view line) {
    std::size_t start = std::string_view::npos;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const bool isInside = start != std::string_view::npos;
        if (isInside && line[i] == '\\')
            ++i;
        else if (isInside && line[i] == line[start])
            start = std::string_view::npos;
        else if (!isInside && (line[i] == '"' || line[i] == '|'))
            start = i;
    }
    return start;
}

/// The places where the last words of the line begin, the longest run first.
std::vector<std::size_t> runsOfWords(std::string_view line) {
    std::vector<std::size_t> starts;
    std::size_t at = line.size();
    if (at > 1 && line[at - 1] == ' ') // the next word of a term is asked for
        --at;
    while (starts.size() < kMostWords) {
        const std::size_t end = at;
        while (at > 0 && isPartOfWord(line[at - 1]))
            --at;
        if (at == end)
            break;
        starts.push_back(at);
        if (at == 0 || line[at - 1] != ' ')
            break;
        --at;
    }
    std::reverse(starts.begin(), starts.end());
    return starts;
}

} // namespace

Completion completionOf(std::string_view line, const std::vector<std::string>& phrases) {
    Completion completion;
    const std::size_t quote = openQuote(line);
    if (quote != std::string_view::npos && line[quote] == '"')
        return completion;
    const std::vector<std::size_t> starts = quote == std::string_view::npos ? runsOfWords(line) : std::vector{quote};
    for (const std::size_t start : starts) {
        const std::string_view typed = line.substr(start);
        for (const std::string& phrase : phrases)
            if (beginsWith(phrase, typed))
                completion.choices.push_back(phrase);
        if (completion.choices.empty())
            continue;
        std::sort(completion.choices.begin(), completion.choices.end());
        completion.choices.erase(std::unique(completion.choices.begin(), completion.choices.end()), completion.choices.end());
        completion.inserted = completion.choices.front().substr(typed.size());
        for (const std::string& choice : completion.choices) {
            const std::string_view rest = std::string_view(choice).substr(typed.size());
            const auto differs = std::mismatch(completion.inserted.begin(), completion.inserted.end(), rest.begin(), rest.end());
            completion.inserted.erase(differs.first, completion.inserted.end());
        }
        if (completion.choices.size() == 1)
            completion.inserted += ' ';
        break;
    }
    return completion;
}

std::vector<std::string> phrasesOfLanguage() {
    std::vector<std::string> phrases;
    for (const std::string_view word : syntax::keywords())
        phrases.emplace_back(word);
    for (const TermSource* source : {&languageTerms(), &standardAdditionsTerms()})
        for (const Term& term : source->terms())
            if (!term.synonym)
                phrases.emplace_back(term.words);
    return phrases;
}

} // namespace quoddle::tool
