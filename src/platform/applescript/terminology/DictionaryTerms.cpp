// SPDX-License-Identifier: MIT
#include "platform/applescript/terminology/DictionaryTerms.h"

#include "platform/applescript/terminology/TermRows.h"

#include <unordered_map>

namespace quoddle {

namespace {

using namespace termrows;

struct KnownType {
    std::string_view name;
    FourCharCode code;
};

/// The types that a dictionary may name without defining them, as far as scripts do not call them the same.
constexpr KnownType kKnownTypes[] = {
    {"any", "****"_4cc},       {"specifier", "obj "_4cc}, {"location specifier", "insl"_4cc}, {"point", "QDpt"_4cc},
    {"rectangle", "qdrt"_4cc}, {"type", "type"_4cc},      {"property", "prop"_4cc},           {"file", "file"_4cc},
};

/// Set in the flags of a direct parameter whose command may change what the parameter names.
constexpr std::uint32_t kChangesState = 0x1000;

bool isWord(unsigned char c) {
    return c == ' ' || c == '_' || c >= 0x80 || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool canBeWritten(std::string_view words) {
    return !words.empty() && std::ranges::all_of(words, [](char c) { return isWord(static_cast<unsigned char>(c)); });
}

class Builder {
public:
    explicit Builder(const sdef::Dictionary& dictionary) : mDictionary(dictionary), mTerms(std::make_unique<TermDictionary>()) {
        for (const KnownType& type : kKnownTypes)
            mTypes.emplace(type.name, Type{type.code, false});
        forEach([this](const auto& definition) { note(definition); });
    }

    std::unique_ptr<TermDictionary> build() {
        // Every object of an application answers a record of its properties, whether the dictionary says so or not.
        mTerms->addProperty("properties", "pALL"_4cc);
        forEach([this](const auto& definition) { add(definition); });
        mTerms->finish();
        return std::move(mTerms);
    }

private:
    struct Type {
        FourCharCode code;
        bool isEnumeration;
    };

    template<class Visit>
    void forEach(Visit visit) const {
        for (const sdef::Suite& suite : mDictionary.suites) {
            for (const sdef::Definition& definition : suite.definitions)
                std::visit(visit, definition);
        }
    }

    // --- types

    template<class D>
    void note(const D& definition) {
        mTypes.insert_or_assign(definition.name, Type{definition.code, false});
    }
    void note(const sdef::Command&) {}
    void note(const sdef::Enumeration& enumeration) { mTypes.insert_or_assign(enumeration.name, Type{enumeration.code, true}); }
    void note(const sdef::Class& definition) {
        if (!definition.isExtension)
            mTypes.insert_or_assign(definition.name, Type{definition.code, false});
    }

    /// The first type that is named. One that neither this dictionary nor the language has is any type.
    Type typeOf(const std::vector<sdef::Type>& types) const {
        if (types.empty())
            return {"null"_4cc, false};
        const std::string& name = types[0].name;
        if (const auto known = mTypes.find(name); known != mTypes.end())
            return known->second;
        return {languageClass(name).value_or("****"_4cc), false};
    }

    /// The code of the language's class that a name stands for.
    static std::optional<FourCharCode> languageClass(const std::string& name) {
        std::string firstWord = name.substr(0, name.find(' '));
        std::ranges::transform(firstWord, firstWord.begin(), asciiLower);
        for (const Term& term : languageTerms().startingWith(firstWord)) {
            if (term.kind == TermKind::Class && std::ranges::equal(term.words, name, {}, asciiLower, asciiLower))
                return term.code;
        }
        return std::nullopt;
    }

    std::uint32_t flagsOf(const std::vector<sdef::Type>& types) const {
        return (typeOf(types).isEnumeration ? kEnumerated : 0) | (types[0].isList ? kList : 0);
    }

    // --- words

    /// Calls addOne(words, synonym, isSynonym) for each word of a definition that can be written, the own word last. A synonym without
    /// a word is another code for the own word.
    template<class AddOne>
    static void forEachWord(const sdef::Named& named, AddOne addOne) {
        for (const sdef::Synonym& synonym : named.synonyms) {
            const std::string& words = synonym.name.empty() ? named.name : synonym.name;
            if (canBeWritten(words))
                addOne(words, &synonym, named.hidden || synonym.hidden || synonym.code == 0);
        }
        if (canBeWritten(named.name))
            addOne(named.name, static_cast<const sdef::Synonym*>(nullptr), named.hidden);
    }

    static FourCharCode codeOf(const sdef::Synonym* synonym, FourCharCode own) { return synonym && synonym->code ? synonym->code : own; }

    void addProperties(const std::vector<sdef::Property>& properties) {
        for (const sdef::Property& property : properties) {
            // QUIRK: `text` of a document is stored as all its text, although the dictionary calls it a property.
            if (property.code == "ctxt"_4cc && property.name == "text")
                continue;
            const bool boolean = property.types.size() == 1 && property.types[0].name == "boolean" && !property.types[0].isList;
            forEachWord(property, [&](const std::string& words, const sdef::Synonym* synonym, bool isSynonym) {
                mTerms->addProperty(words, codeOf(synonym, property.code), boolean, isSynonym);
            });
        }
    }

    void add(const sdef::Class& definition) {
        if (!definition.isExtension) {
            forEachWord(definition, [&](const std::string& words, const sdef::Synonym* synonym, bool isSynonym) {
                const bool own = words == definition.name && canBeWritten(definition.plural);
                mTerms->addClass(words, own ? definition.plural : words + "s", codeOf(synonym, definition.code), isSynonym);
            });
        }
        addProperties(definition.properties);
    }

    template<class D>
    void addType(const D& type) {
        forEachWord(type, [&](const std::string& words, const sdef::Synonym* synonym, bool isSynonym) {
            mTerms->addClass(words, words == type.name && canBeWritten(type.plural) ? type.plural : std::string(),
                             codeOf(synonym, type.code), isSynonym);
        });
    }

    void add(const sdef::RecordType& record) {
        addType(record);
        addProperties(record.properties);
    }

    void add(const sdef::ValueType& type) { addType(type); }

    void add(const sdef::Enumeration& enumeration) {
        for (const sdef::Enumerator& enumerator : enumeration.enumerators) {
            // Of a format `text` the word is the class: `text 1 thru 3 of x` goes on meaning the same.
            if (languageClass(enumerator.name) == enumerator.code)
                continue;
            forEachWord(enumerator, [&](const std::string& words, const sdef::Synonym* synonym, bool isSynonym) {
                mTerms->addConstant(words, enumeration.code, codeOf(synonym, enumerator.code), isSynonym);
            });
        }
    }

    void add(const sdef::Command& command) {
        std::vector<ParameterTerm> parameters;
        for (const sdef::Parameter& parameter : command.parameters) {
            // The first word of a code is the one that is printed.
            const auto first = static_cast<std::ptrdiff_t>(parameters.size());
            forEachWord(parameter, [&](const std::string& words, const sdef::Synonym* synonym, bool) {
                parameters.insert(parameters.begin() + first, {words, codeOf(synonym, parameter.code), typeOf(parameter.types).code});
            });
        }
        EventTerm event;
        event.replyType = typeOf(command.result).code;
        event.replyFlags = command.storedResultFlags.value_or(command.result.empty() ? kAbsent : flagsOf(command.result));
        event.directType = command.direct ? typeOf(command.direct->types).code : "null"_4cc;
        event.directFlags = kAbsent;
        if (command.direct && !command.direct->types.empty()) {
            event.directFlags = flagsOf(command.direct->types) | (command.direct->isOptional ? kOptional : 0) |
                                (command.direct->isReadOnly ? 0 : kChangesState);
        }
        if (command.direct)
            event.directFlags = command.direct->storedFlags.value_or(event.directFlags);
        event.parameters = parameters;
        forEachWord(command, [&](const std::string& words, const sdef::Synonym* synonym, bool isSynonym) {
            const bool other = synonym && synonym->code;
            mTerms->addEvent(words, other ? synonym->eventClass : command.eventClass, other ? synonym->code : command.eventID, event,
                             isSynonym);
        });
    }

    const sdef::Dictionary& mDictionary;
    std::unordered_map<std::string_view, Type> mTypes;
    std::unique_ptr<TermDictionary> mTerms;
};

} // namespace

std::unique_ptr<TermDictionary> termsOfDictionary(const sdef::Dictionary& dictionary) {
    return Builder(dictionary).build();
}

} // namespace quoddle
