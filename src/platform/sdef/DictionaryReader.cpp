// SPDX-License-Identifier: MIT
#include "platform/sdef/DictionaryReader.h"

#include "platform/base/Text.h"
#include "platform/sdef/XmlDocuments.h"

#include <charconv>

namespace quoddle::sdef {

namespace {

constexpr std::size_t kMaximumNodes = 200'000;
constexpr std::size_t kMaximumName = 255;

bool isYes(const xmlNode* node, std::string_view attribute) {
    return XmlDocuments::attribute(node, attribute) == "yes";
}

/// Words with single blanks between them; nullopt when there is none, too much, or something that is no text.
std::optional<std::string> wordsOf(std::string_view text) {
    std::string words;
    for (const char c : text) {
        const bool blank = c == ' ' || c == '\t' || c == '\n' || c == '\r';
        if (!blank && static_cast<unsigned char>(c) < 0x20)
            return std::nullopt;
        if (!blank)
            words += c;
        else if (!words.empty() && words.back() != ' ')
            words += ' ';
    }
    if (words.ends_with(' '))
        words.pop_back();
    return words.empty() || words.size() > kMaximumName ? std::nullopt : std::optional(words);
}

/// The bytes of a code: characters of Mac Roman, or 0x and hexadecimal digits. nullopt when they are not `size` bytes.
std::optional<std::string> codeBytes(std::string_view text, std::size_t size) {
    std::string bytes;
    if (text.size() == 2 + 2 * size && text.starts_with("0x")) {
        for (std::size_t at = 2; at < text.size(); at += 2) {
            unsigned byte = 0;
            const auto read = std::from_chars(text.data() + at, text.data() + at + 2, byte, 16);
            if (read.ptr != text.data() + at + 2)
                return std::nullopt;
            bytes += static_cast<char>(byte);
        }
        return bytes;
    }
    const std::u16string characters = utf16FromUTF8(text);
    bytes = macRomanFromUTF16(characters);
    return bytes.size() == size && utf16FromMacRoman(bytes) == characters ? std::optional(bytes) : std::nullopt;
}

Access accessOf(std::string_view text) {
    return text == "r" ? Access::Read : text == "w" ? Access::Write : Access::ReadWrite;
}

class Reader {
public:
    explicit Reader(const std::string& sharedFolder) : mFiles(sharedFolder) {}

    Result<Dictionary, std::string> read(const std::string& path) {
        const xmlNode* root = mFiles.open(path);
        if (root && XmlDocuments::nameOf(root) != "dictionary")
            mFiles.fail(root, "this is no dictionary but “" + std::string(XmlDocuments::nameOf(root)) + "”");
        else if (root)
            readSuites(root);
        if (!mFiles.error().empty())
            return Failure{mFiles.error()};
        mDictionary.title = root ? XmlDocuments::attribute(root, "title") : std::string();
        mDictionary.files = mFiles.paths();
        return std::move(mDictionary);
    }

private:
    using Visit = std::function<bool(const xmlNode*)>;

    /// Calls visit for each element inside `parent`, with what is included in its place.
    bool forEach(const xmlNode* parent, const Visit& visit) {
        for (const xmlNode* node = parent->children; node; node = node->next) {
            if (node->type == XML_ELEMENT_NODE && !handOver(node, visit))
                return false;
        }
        return true;
    }

    bool handOver(const xmlNode* node, const Visit& visit) {
        if (++mNodes > kMaximumNodes)
            return mFiles.fail(node, "the dictionary has too many definitions");
        if (XmlDocuments::isInclusion(node))
            return mFiles.include(node, [&](const xmlNode* included) { return handOver(included, visit); });
        // A whole file was included.
        if (XmlDocuments::nameOf(node) == "dictionary")
            return forEach(node, visit);
        return visit(node);
    }

    bool readSuites(const xmlNode* root) {
        return forEach(root, [&](const xmlNode* node) {
            if (XmlDocuments::nameOf(node) != "suite")
                return true;
            Suite suite{XmlDocuments::attribute(node, "name"), isYes(node, "hidden"), {}};
            mSuiteHidden = suite.hidden;
            const bool done = forEach(node, [&](const xmlNode* definition) { return readDefinition(definition, suite); });
            mDictionary.suites.push_back(std::move(suite));
            return done;
        });
    }

    bool readDefinition(const xmlNode* node, Suite& suite) {
        const std::string_view kind = XmlDocuments::nameOf(node);
        if (kind == "class" || kind == "class-extension")
            return add(suite, readClass(node, kind != "class"));
        if (kind == "command" || kind == "event")
            return add(suite, readCommand(node, kind == "event"));
        if (kind == "enumeration")
            return add(suite, readEnumeration(node));
        if (kind == "record-type")
            return add(suite, readRecord(node));
        if (kind == "value-type")
            return add(suite, readValueType(node));
        return true;
    }

    template<class D>
    bool add(Suite& suite, std::optional<D> definition) {
        if (definition)
            suite.definitions.push_back(std::move(*definition));
        return definition.has_value();
    }

    bool readName(const xmlNode* node, Named& named) {
        const auto words = wordsOf(XmlDocuments::attribute(node, "name"));
        if (!words)
            return mFiles.fail(node, "“" + std::string(XmlDocuments::nameOf(node)) + "” has no name, or one that is too long");
        named.name = *words;
        named.hidden = mSuiteHidden || isYes(node, "hidden");
        return true;
    }

    bool readCode(const xmlNode* node, FourCharCode& code) {
        const std::string text = XmlDocuments::attribute(node, "code");
        const auto bytes = codeBytes(text, 4);
        if (!bytes)
            return mFiles.fail(node, "“" + text + "” is no code of four characters");
        code = fourCharCode(*bytes);
        return true;
    }

    bool readEventCode(const xmlNode* node, FourCharCode& eventClass, FourCharCode& eventID) {
        const std::string text = XmlDocuments::attribute(node, "code");
        const auto bytes = codeBytes(text, 8);
        if (!bytes)
            return mFiles.fail(node, "“" + text + "” is no code of eight characters");
        eventClass = fourCharCode(std::string_view(*bytes).substr(0, 4));
        eventID = fourCharCode(std::string_view(*bytes).substr(4));
        return true;
    }

    bool readSynonym(const xmlNode* node, Named& named, bool ofCommand) {
        Synonym synonym;
        synonym.hidden = isYes(node, "hidden");
        if (const auto words = wordsOf(XmlDocuments::attribute(node, "name")))
            synonym.name = *words;
        if (!XmlDocuments::attribute(node, "code").empty() &&
            !(ofCommand ? readEventCode(node, synonym.eventClass, synonym.code) : readCode(node, synonym.code)))
            return false;
        if (synonym.name.empty() && !synonym.code)
            return mFiles.fail(node, "a synonym has neither a name nor a code");
        named.synonyms.push_back(std::move(synonym));
        return true;
    }

    /// Reads the types that stand in an attribute and in elements.
    bool readTypes(const xmlNode* node, std::vector<Type>& types) {
        if (const std::string name = XmlDocuments::attribute(node, "type"); !name.empty())
            types.push_back({name, false});
        return forEach(node, [&](const xmlNode* child) {
            if (XmlDocuments::nameOf(child) == "type")
                types.push_back({XmlDocuments::attribute(child, "type"), isYes(child, "list")});
            return true;
        });
    }

    bool readProperty(const xmlNode* node, std::vector<Property>& properties) {
        Property property;
        property.isContents = XmlDocuments::nameOf(node) == "contents";
        property.access = accessOf(XmlDocuments::attribute(node, "access"));
        property.inProperties =
            XmlDocuments::attribute(node, "in-properties") != "no" && XmlDocuments::attribute(node, "not-in-properties") != "yes";
        property.code = "pcnt"_4cc;
        const bool bare = property.isContents && XmlDocuments::attribute(node, "code").empty();
        if (property.isContents && XmlDocuments::attribute(node, "name").empty())
            property.name = "contents";
        else if (!readName(node, property))
            return false;
        if (!(bare || readCode(node, property.code)) || !readTypes(node, property.types) || !readSynonyms(node, property))
            return false;
        properties.push_back(std::move(property));
        return true;
    }

    bool readSynonyms(const xmlNode* node, Named& named, bool ofCommand = false) {
        return forEach(
            node, [&](const xmlNode* child) { return XmlDocuments::nameOf(child) != "synonym" || readSynonym(child, named, ofCommand); });
    }

    bool readElement(const xmlNode* node, Class& owner) {
        Element element;
        element.type = XmlDocuments::attribute(node, "type");
        element.access = accessOf(XmlDocuments::attribute(node, "access"));
        element.hidden = isYes(node, "hidden");
        if (element.type.empty())
            return mFiles.fail(node, "an element has no type");
        const bool done = forEach(node, [&](const xmlNode* child) {
            if (XmlDocuments::nameOf(child) == "accessor")
                element.keyForms.push_back(XmlDocuments::attribute(child, "style"));
            return true;
        });
        owner.elements.push_back(std::move(element));
        return done;
    }

    std::optional<Class> readClass(const xmlNode* node, bool isExtension) {
        Class made;
        made.isExtension = isExtension;
        made.plural = wordsOf(XmlDocuments::attribute(node, "plural")).value_or("");
        made.inherits = XmlDocuments::attribute(node, "inherits");
        made.hidden = mSuiteHidden || isYes(node, "hidden");
        if (isExtension)
            made.name = wordsOf(XmlDocuments::attribute(node, "extends")).value_or("");
        if (isExtension ? made.name.empty() && !mFiles.fail(node, "an extension names no class")
                        : !readName(node, made) || !readCode(node, made.code))
            return std::nullopt;
        const bool done = forEach(node, [&](const xmlNode* child) {
            const std::string_view kind = XmlDocuments::nameOf(child);
            if (kind == "property" || kind == "contents")
                return readProperty(child, made.properties);
            if (kind == "element")
                return readElement(child, made);
            if (kind == "synonym")
                return readSynonym(child, made, false);
            if (kind == "responds-to") {
                const std::string command = XmlDocuments::attribute(child, "command");
                made.respondsTo.push_back(command.empty() ? XmlDocuments::attribute(child, "name") : command);
            }
            return true;
        });
        return done ? std::optional(std::move(made)) : std::nullopt;
    }

    /// Reads the flags that compiled scripts store, where the element says any.
    bool readFlags(const xmlNode* node, std::optional<std::uint32_t>& flags) {
        const std::string text = XmlDocuments::ownAttribute(node, "flags");
        if (text.empty())
            return true;
        std::uint32_t value = 0;
        if (!text.starts_with("0x") ||
            std::from_chars(text.data() + 2, text.data() + text.size(), value, 16).ptr != text.data() + text.size())
            return mFiles.fail(node, "“" + text + "” are no flags");
        flags = value;
        return true;
    }

    std::optional<Parameter> readParameter(const xmlNode* node, bool isDirect) {
        Parameter parameter;
        parameter.code = "----"_4cc;
        parameter.isOptional = isYes(node, "optional");
        parameter.isReadOnly = XmlDocuments::attribute(node, "requires-access") == "r";
        if (!(isDirect || (readName(node, parameter) && readCode(node, parameter.code))) || !readTypes(node, parameter.types) ||
            !readSynonyms(node, parameter) || !readFlags(node, parameter.storedFlags))
            return std::nullopt;
        return parameter;
    }

    std::optional<Command> readCommand(const xmlNode* node, bool isEvent) {
        Command command;
        command.isEvent = isEvent;
        if (!readName(node, command) || !readEventCode(node, command.eventClass, command.eventID))
            return std::nullopt;
        const bool done = forEach(node, [&](const xmlNode* child) {
            const std::string_view kind = XmlDocuments::nameOf(child);
            if (kind == "direct-parameter" || kind == "parameter") {
                std::optional<Parameter> parameter = readParameter(child, kind == "direct-parameter");
                if (parameter && kind == "parameter")
                    command.parameters.push_back(std::move(*parameter));
                else if (parameter)
                    command.direct = std::move(parameter);
                return !mFiles.error().size();
            }
            if (kind == "result")
                return readTypes(child, command.result) && readFlags(child, command.storedResultFlags);
            return kind != "synonym" || readSynonym(child, command, true);
        });
        return done ? std::optional(std::move(command)) : std::nullopt;
    }

    std::optional<Enumeration> readEnumeration(const xmlNode* node) {
        Enumeration enumeration;
        if (!readName(node, enumeration) || !readCode(node, enumeration.code))
            return std::nullopt;
        const bool done = forEach(node, [&](const xmlNode* child) {
            if (XmlDocuments::nameOf(child) != "enumerator")
                return true;
            Enumerator enumerator;
            if (!readName(child, enumerator) || !readCode(child, enumerator.code) || !readSynonyms(child, enumerator))
                return false;
            enumeration.enumerators.push_back(std::move(enumerator));
            return true;
        });
        return done ? std::optional(std::move(enumeration)) : std::nullopt;
    }

    std::optional<RecordType> readRecord(const xmlNode* node) {
        RecordType record;
        record.plural = wordsOf(XmlDocuments::attribute(node, "plural")).value_or("");
        if (!readName(node, record) || !readCode(node, record.code))
            return std::nullopt;
        const bool done = forEach(node, [&](const xmlNode* child) {
            if (XmlDocuments::nameOf(child) == "property")
                return readProperty(child, record.properties);
            return XmlDocuments::nameOf(child) != "synonym" || readSynonym(child, record, false);
        });
        return done ? std::optional(std::move(record)) : std::nullopt;
    }

    std::optional<ValueType> readValueType(const xmlNode* node) {
        ValueType type;
        type.plural = wordsOf(XmlDocuments::attribute(node, "plural")).value_or("");
        if (!readName(node, type) || !readCode(node, type.code) || !readSynonyms(node, type))
            return std::nullopt;
        return type;
    }

    XmlDocuments mFiles;
    Dictionary mDictionary;
    std::size_t mNodes = 0;
    bool mSuiteHidden = false;
};

} // namespace

Result<Dictionary, std::string> readDictionary(const std::string& path, const std::string& sharedFolder) {
    return Reader(sharedFolder).read(path);
}

} // namespace quoddle::sdef
