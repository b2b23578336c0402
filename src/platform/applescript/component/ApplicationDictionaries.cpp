// SPDX-License-Identifier: MIT
#include "platform/applescript/component/ApplicationDictionaries.h"

#include "platform/ae/transport/AEApplicationLookup.h"
#include "platform/applescript/component/DictionaryCache.h"
#include "platform/applescript/terminology/DictionaryTerms.h"
#include "platform/applescript/terminology/ShippedDictionaries.h"
#include "platform/applescript/terminology/TermTable.h"
#include "platform/base/FileURL.h"
#include "platform/base/Text.h"
#include "platform/base/UserFolders.h"
#include "platform/sdef/BundleDictionary.h"
#include "platform/sdef/DictionaryReader.h"

#include <filesystem>
#include <map>
#include <mutex>

namespace quoddle::component {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kExtension = ".sdef";
constexpr std::string_view kApplicationExtension = ".app";

struct Known {
    std::unique_ptr<TermDictionary> terms; // null: no dictionary, or one with a fault
    std::string fault;
};

/// An application as a script names it: by a name, by a path of this system or of a Mac, or by an identifier.
struct Wanted {
    std::string text; // UTF-8; a path is absolute
    bool isBundleIdentifier = false;

    bool isPath() const { return text.starts_with('/'); }
    /// "Safari" for a path; the text itself otherwise.
    std::string name() const {
        std::string_view last = text;
        while (last.ends_with('/') || last.ends_with(':'))
            last.remove_suffix(1);
        if (!isBundleIdentifier)
            last = last.substr(last.find_last_of("/:") + 1);
        if (last.ends_with(kApplicationExtension))
            last.remove_suffix(kApplicationExtension.size());
        return std::string(last);
    }
};

Wanted wantedFrom(const syntax::ApplicationName& application) {
    std::string text = utf8FromUTF16(application.text);
    if (auto path = pathFromFileURL(text))
        text = *path;
    return {std::move(text), application.isBundleIdentifier};
}

std::string inBundle(const Wanted& wanted) {
    const auto found = AEFindApplication(AEDesc(wanted.isBundleIdentifier ? "bund"_4cc : "aprl"_4cc, wanted.text));
    return found && !found->path.empty() ? sdef::dictionaryOfBundle(found->path) : std::string();
}

std::string ofUser(const std::string& name) {
    std::error_code error;
    for (fs::directory_iterator entry(dataFolder() + "/quoddle/dictionaries", error), end; !error && entry != end; entry.increment(error)) {
        const std::string file = entry->path().filename().string();
        if (std::ranges::equal(file, name + std::string(kExtension), {}, asciiLower, asciiLower))
            return entry->path().string();
    }
    return {};
}

std::string fileFor(const Wanted& wanted) {
    if (std::string file = inBundle(wanted); !file.empty())
        return file;
    if (std::string file = ofUser(wanted.name()); !file.empty())
        return file;
    const std::string_view shipped = shippedDictionaryFor(wanted.name(), wanted.isBundleIdentifier);
    return shipped.empty() ? std::string() : shippedDictionariesFolder() + "/" + std::string(shipped);
}

Known read(const Wanted& wanted) {
    const std::string file = fileFor(wanted);
    if (file.empty())
        return {};
    if (auto terms = cachedTerms(file))
        return {std::move(terms), {}};
    const auto dictionary = sdef::readDictionary(file, shippedDictionariesFolder());
    if (!dictionary)
        return {nullptr, dictionary.error()};
    auto terms = termsOfDictionary(*dictionary);
    cacheTerms(file, dictionary->files, *terms);
    return {std::move(terms), {}};
}

const Known& known(const syntax::ApplicationName& application) {
    static std::mutex sMutex;
    static std::map<std::pair<std::string, bool>, Known> sKnown;
    const Wanted wanted = wantedFrom(application);
    const std::lock_guard lock(sMutex);
    const auto [entry, isNew] = sKnown.try_emplace({wanted.text, wanted.isBundleIdentifier});
    if (isNew)
        entry->second = read(wanted);
    return entry->second;
}

} // namespace

const TermSource* termsOfApplication(const syntax::ApplicationName& application) {
    return known(application).terms.get();
}

std::string dictionaryFault(const syntax::ApplicationName& application) {
    return known(application).fault;
}

} // namespace quoddle::component
